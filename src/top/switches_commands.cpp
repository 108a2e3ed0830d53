/* Commands without a value: ends, levels, reports, figures of memory and time. */
#include "display/listings.h"
#include "gcd/gcd.h"
#include "language/execution.h"
#include "language/expressions.h"
#include "language/float_path.h"
#include "language/poly_reader.h"
#include "language/stored.h"
#include "numbers/storage_report.h"
#include "poly/variables.h"
#include "top/change_ring.h"
#include "top/driver.h"
#include "top/parse.h"
#include "top/settings.h"
#include "top/settings_report.h"
#include "top/switches_table.h"

namespace tolvek {

/* ---- ends and levels ---- */

void panic_stop(switch_call &) { error(0, blank); }

void quit(switch_call &) { throw unwind{unwind::quit}; }

void leave_level(switch_call &) { time_to_quit = 1; }

void new_level(switch_call &call) {
    error(-1, blank);
    call.token_is_read = !tt_flag && !*call.cursor;
}

void end_loop_early(switch_call &call) {
    const switch_row &row = *call.row;
    if (*call.cursor)
        *row.variable = 1;
    else
        say(row.now);
}

void end_load(switch_call &) {
    if (!tt_flag) done_load = 1;
}

/* &_n: a polynomial, or a quotient, term by term. */
void read_terms(switch_call &call) {
    call.keeps_result = call.token_is_read = true;
    scanner(call.input, token, call.cursor);
    quoly_readin(call.input, call.result, call.cursor);
}

/* ---- &_m(statement): runs the statement outside the modular ring ---- */

void run_exactly(switch_call &call) {
    call.keeps_result = call.token_is_read = true;
    quoly_set(0, call.result);
    scanner(call.input, token, call.cursor);
    modular_pause pause;
    require("(", 131, call.input, call.cursor);
    if (integerflag)
        quoly_set_flote(iexpre(call.input, call.cursor), call.result);
    else
        parse(call.input, call.result, call.cursor);
    require(")", 1, call.input, call.cursor);
    if (!ends_statement(token)) error(350, token);
}

/* ---- reports ---- */

/* The listing is all that is shown. */
void list_functions(switch_call &call) {
    scanner(call.input, token, call.cursor);
    listfuncs(call.input, call.cursor);
    call.token_is_read = true;
}

/* ";" asks for values, ":" for names alone. */
void list_variables(switch_call &call) {
    scanner(call.input, token, call.cursor);
    call.token_is_read = true;
    const bool with_values = token_is(token, ";");
    if (with_values || token_is(token, ":"))
        listvars(with_values);
    else
        error(303, token);
}

void report_settings(switch_call &) { global_dump(); }

void report_garbage(switch_call &) { garbage(); }

/* No minors are stashed: the expansion that stashes them is not there. */
void report_minors(switch_call &) {
    constexpr unsigned long minor_memory = 0;
    constexpr long minor_prime = 0, total_branches = 0, leaf_count = 0, stash_nodes = 0, hits = 0;
    sayf(" memavail, minor memory, garbsize, minor prime, total branches, leaf count, stash nodes, hits: "
         "%lui, %lui, %li, %li, %li, %li, %li, %li\n",
         static_cast<unsigned long>(memavail()), minor_memory, static_cast<long>(med_garbsize()), minor_prime,
         total_branches, leaf_count, stash_nodes, hits);
}

/* Records on the free lists hold no values, so that nothing has to be given back from them. */
void clean_up(switch_call &) {}

/* ---- values ---- */

void give_memavail(switch_call &call) {
    uint64_t bytes = memavail();
    call.keeps_result = true;
    if (flotemode) {
        quoly_set_flote(static_cast<long double>(bytes), call.result);
    } else if (lintmode) {
        uint64_t residues = modularmode ? static_cast<uint64_t>(modulus) : uint64_t{1} << 31;
        quoly_set(static_cast<int32_t>(bytes % residues), call.result);
        if (!*call.cursor && tt_flag) sayf("%lui\n", static_cast<unsigned long>(bytes));
    } else {
        quoly_set_int64(static_cast<int64_t>(bytes), call.result);
    }
}

void give_time(switch_call &call) {
    constexpr int64_t ticks_a_millisecond = 1000;
    quoly_set_int64(time_now().ticks / ticks_a_millisecond, call.result);
    call.keeps_result = true;
}

/* ---- output ---- */

void output_argument(switch_call &) { error(262, token); }

text_out *handle_andsign(stream *input, name **cursor) {
    scanner(input, token, cursor);
    if (!token_is(token, "o")) {
        error(261, token);
        return nullptr;
    }
    if (!outpuf) error(263, token);
    return outpuf;
}

/* ---- the cache of GCDs ---- */

/* &C+ and &C-: caching for the statements that follow. They nest with the stretches of single computations. */
void stash_gcds(switch_call &call) {
    scanner(call.input, token, call.cursor);
    const bool opens = token_is(token, "+");
    if (!opens && !token_is(token, "-")) {
        error(285, token);
        return;
    }
    const char *text;
    if (opens) {
        init_gcd_stash();
        text = lookupgcd > 0 ? " stashing on.\n" : " pushed, but stashing still off.\n";
    } else {
        pop_gcd_stash();
        text = lookupgcd > 0 ? " popped, but stashing remains in effect.\n" : " stashing off.\n";
    }
    if (!*call.cursor && tt_flag) say(text);
    quoly_set(lookupgcd, call.result);
    call.keeps_result = true;
}

/* ---- the ring ---- */

/* The names behind &p, up to ")", closed by ";". False: there are none. */
static bool save_input_stream(switch_call &call, name_list &names) {
    scanner(call.input, token, call.cursor);
    while (!token_is(token, ")") && !ends_statement(token)) {
        names.add(token);
        scanner(call.input, token, call.cursor);
    }
    const bool some = token_is(token, ")") && !names.empty();
    names.add(semicolon);
    return some;
}

/* &p: the other ring. Names in parentheses say which values change for good; the modulus is asked for, or stands behind. */
void choose_ring(switch_call &call) {
    if (!variables_may_change()) return;
    scanner(call.input, token, call.cursor);
    call.token_is_read = true;
    name_list names;
    const bool has_names = token_is(token, "(");
    int n = 0;
    if (has_names && *call.cursor) {
        error(264, token);
    } else if (lintmode && !modularmode) {
        error(62, token);
    } else if (has_names && !save_input_stream(call, names)) {
        error(1, token);
    } else {
        if (has_names) scanner(call.input, token, call.cursor);
        if (modularmode)
            change_to_rational(true, names.first());
        else if (read_modulus(call.input, call.cursor, &n))
            change_to_modular(n, true, names.first());
    }
}

/* ---- the variables of polynomials ---- */

static void read_variable_change() { attach_poly(&Input, &zilch, 0); }

void ask_for_variable(switch_call &call) {
    if (variables_may_change()) ask_and_run(call.row->question, read_variable_change);
}

void change_variables(switch_call &call) { attach_poly(call.input, call.cursor, 1); }

/* ---- commands whose layer is not there ---- */

void not_open(switch_call &) { error(layer_is_missing, token); }


} // namespace tolvek
