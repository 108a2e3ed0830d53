/* &(x = y), in steps:
     1  the letter, or "_" and a letter
     2  "="; for J also ">"
     3  the letters P and J have a syntax of their own
     4  # and "[": cut-offs from an array
     5  a number, for every letter but M, R, S and every value but a text: the value, ")", then the row of the letter
     6  a text: its characters, ")", then the row of the letter */
#include "top/set_switch.h"

#include "display/progress.h"
#include "language/execution.h"
#include "language/expressions.h"
#include "language/stored.h"
#include "matrix/array_names.h"
#include "poly/variables.h"
#include "top/change_ring.h"
#include "top/driver.h"
#include "top/file_names.h"
#include "top/parse.h"
#include "top/settings.h"
#include "top/switches_table.h"

#include <cstring>

namespace tolvek {

/* ---- the letter ---- */

constexpr int no_letter = 0;

static int letter_of(const token_record &t) { return t.text[0] && t.text[1] == 0 ? first_char(t) : no_letter; }

/* Behind "_" a letter of its own, or the same as without. */
static int read_letter(switch_call &call) {
    scanner(call.input, token, call.cursor);
    if (!token_is(token, "_")) return letter_of(token);
    scanner(call.input, token, call.cursor);
    const switch_row *row = find_underscore_assigned(letter_of(token));
    return row ? row->letter : letter_of(token);
}

static bool read_equals_sign(switch_call &call, int letter) {
    scanner(call.input, token, call.cursor);
    if (token_is(token, "=") || (letter == 'J' && token_is(token, ">"))) return true;
    error(4, token);
    return false;
}

static bool closed() {
    if (token_is(token, ")")) return true;
    error(135, token);
    return false;
}

/* ---- the ring ---- */

/* The names behind ":", up to ")", the end of the stored list or the end of the line, closed by ";". */
static void get_stream(switch_call &call, name_list &list) {
    scanner(call.input, token, call.cursor);
    while (!is_end_of_list(token) && !token_is(token, ";") && !(token_is(token, ")") && func_def_count == 0)) {
        list.add(token);
        scanner(call.input, token, call.cursor);
    }
    list.add(semicolon);
}

/* From one modulus to another the way leads over the rationals. */
static void change_ring(bool back, int n, const name *names) {
    if (modularmode) change_to_rational(back, names);
    if (!back && !modularmode) change_to_modular(n, true, names);
}

/* _i is the way back to the rationals. `names`: what changes for good, or null. */
static void assign_ring(bool back, int modulus_wanted, const name *names) {
    if (lintmode && !modularmode)
        error(62, token);
    else if (levelcount > 1 || values_held > 0)
        error(73, token);
    else if (!back && (modulus_wanted < 2 || modulus_wanted > greatest_modulus))
        error(84, token);
    else if (back && !modularmode)
        say(" Already in rational mode.\n");
    else if (!back && modularmode && modulus_wanted == modulus)
        say(" Already in that arithmetic mode\n");
    else
        change_ring(back, modulus_wanted, names);
}

/* ---- numbers ---- */

/* "_" and a name that begins with i, which are taken. Anything else behind "_" is left to the expression. */
static bool take_way_back(switch_call &call) {
    if (!token_is(token, "_")) return false;
    int behind = 0;
    if (*call.cursor)
        behind = (*call.cursor)->next ? first_char((*call.cursor)->next->tok) : 0;
    else if (!at_line_end(*call.input))
        behind = peek_char(*call.input);
    if (behind != 'i') return false;
    scanner(call.input, token, call.cursor);
    scanner(call.input, token, call.cursor);
    return true;
}

static void say_unchanged(const switch_row &row) { sayf(" Already had that value; no change%s.\n", row.unchanged); }

static void assign_flag(const switch_row &row, int value) {
    if (is_forbidden(row)) return;
    bool same = *row.variable == value;
    if (!same && !store_flag(row, value)) return;
    if (same && row.unchanged)
        say_unchanged(row);
    else
        say_flag(row, true);
}

/* The words of a number are for a listener: somebody at the prompt, or who asked for comments. */
static switch_form form_of(const switch_call &call) {
    return verbose || !*call.cursor ? switch_form::assignment : switch_form::silent_assignment;
}

static void assign_number(const switch_row &row, int value, switch_call &call) {
    switch_form how = form_of(call);
    if (!row.unchanged || *row.variable != value)
        store_number(row, value, how);
    else if (how == switch_form::assignment)
        say_unchanged(row);
}

/* The value as an integer, before its row is asked; false when an error was reported. */
static bool legal_integer(const switch_row *row, const quoly_handle &value, int &figure) {
    if (!integer_value(value.get(), figure)) {
        error(147, token);
        return false;
    }
    if (figure < 0 && !(row && row->any_sign)) {
        error(137, token);
        return false;
    }
    return true;
}

/* A letter without a row counts as a flag. */
static bool takes_only_0_and_1(const switch_row *row) {
    return !row || (row->kind == switch_kind::flag && !row->any_number);
}

static void run_row(const switch_row *row, int figure, quoly_handle &value, switch_call &call) {
    if (takes_only_0_and_1(row) && figure != 0 && figure != 1) {
        error(133, token);
    } else if (!row || row->kind == switch_kind::command) {
        error(136, token);
    } else if (row->kind == switch_kind::flag) {
        assign_flag(*row, figure == 1);
    } else {
        assign_number(*row, figure, call);
        if (!row->keeps_assigned) return;
        value.release_to(call.result);
        call.keeps_result = true;
    }
}

static void evaluate_value(switch_call &call, bool in_ring, quoly_handle &value) {
    if (in_ring) return old_expre(call.input, value.slot(), call.cursor);
    modular_pause pause;
    old_expre(call.input, value.slot(), call.cursor);
}

static void number_switch(switch_call &call, int letter) {
    const switch_row *row = call.row;
    bool by_value = row && row->assign_value;
    bool changes_ring = letter == 'p';
    quoly_handle value;
    int figure = 0;
    bool back = take_way_back(call);
    const int overflows = warn_cnt;
    if (!back) evaluate_value(call, by_value, value);
    if (!(back && changes_ring) && !by_value && !legal_integer(row, value, figure)) return;
    if (changes_ring && warn_cnt > overflows) figure = 0; /* no modulus */

    name_list names;
    bool local = changes_ring && token_is(token, ":");
    if (local) get_stream(call, names);
    if (!closed()) return;
    if (changes_ring) {
        free_quoly(value.slot()); /* in the ring that it belongs to */
        assign_ring(back, figure, names.first());
    } else if (by_value) {
        row->assign_value(call, value);
    } else {
        run_row(row, figure, value, call);
    }
}

/* ---- texts ---- */

static bool is_quote(const token_record &t) { return token_is(t, quotesign.text); }

/* The characters up to the closing quote, which is left in `token`. */
static bool read_quoted(switch_call &call, file_name &t) {
    std::size_t length = 0;
    for (;;) {
        int line_end;
        dumbscanner(call.input, token, call.cursor, &line_end);
        if (line_end || is_end_of_list(token)) {
            error(33, quotesign);
            return false;
        }
        if (is_quote(token)) return true;
        std::size_t more = std::strlen(token.text);
        if (length + more > t.longest) {
            error(209, quotesign);
            return false;
        }
        std::strcpy(t.text + length, token.text);
        length += more;
    }
}

static bool read_text(switch_call &call, file_name &t) {
    if (token_is(token, "[")) return name_from_array(call.input, call.cursor, t);
    if (is_quote(token)) {
        if (!read_quoted(call, t)) return false;
    } else {
        std::strcpy(t.text, token.text);
    }
    scanner(call.input, token, call.cursor);
    return true;
}

static void text_switch(switch_call &call, int letter) {
    file_name t;
    if (!read_text(call, t) || !closed()) return;
    const switch_row *row = call.row;
    if (letter != 'M' && std::strcmp(t.text, " ") == 0)
        error(33, token);
    else if (row && row->assign_text)
        row->assign_text(call, t.text);
    else
        error(141, token);
}

/* ---- cut-offs from an array ---- */

/* The elements go to the variables in step, the first one to the general cut-off too; smaller ones than 6 are passed over. */
static void set_cutoffs(const array_region &r) {
    constexpr int least = 6, instead_of_smaller = 40;
    bool nothing = true;
    for (int64_t i = 0; i < r.size(); i++) {
        const quolynode *q = element(r.array, i);
        int value;
        if (!q) continue;
        if (!integer_value(q, value)) {
            error(260, r.tok);
            return;
        }
        nothing = false;
        if (i == 0) poly_cutoff = value < least ? instead_of_smaller : value;
        pt *v = variable_at(static_cast<int>(i) + 1);
        if (v && value >= least) v->pt_cutoff = value;
        if (i + 1 >= number_polys) break;
    }
    if (nothing) sayf("*** Warning. array [%s] is empty.\n", r.tok.text);
}

static void get_cut_from_array(switch_call &call) {
    array_region r;
    left_side(call.input, call.cursor, r, false, 28);
    existing(r);
    if (!closed()) return;
    if (!r.is_whole())
        error(258, r.tok);
    else if (r.array->sparse_head)
        error(259, r.tok);
    else
        set_cutoffs(r);
}

/* ---- the statement ---- */

static bool names_text(int letter) { return letter == 'M' || letter == 'R' || letter == 'S'; }

void set_switch(switch_call &call) {
    int letter = read_letter(call);
    if (!read_equals_sign(call, letter)) return;
    call.row = find_assigned(letter);
    if (call.row && call.row->assign_rest) return call.row->assign_rest(call);
    scanner(call.input, token, call.cursor);
    if (letter == '#' && token_is(token, "[")) {
        get_cut_from_array(call);
    } else if (names_text(letter) || is_quote(token)) {
        text_switch(call, letter);
    } else {
        number_switch(call, letter);
    }
}

} // namespace tolvek
