/* A state in the order in which it can be read:

     settings          one statement each, where they differ from the default
     variables         of polynomials, with their relations; then negative exponents and the modular ring
     functions         sorted by name
     scalars           sorted by name
     arrays            sorted by name, each behind its declaration
     &x

   A load brings all of it back, and a save of that writes the same text again. */
#include "top/save.h"

#include "display/listings.h"
#include "display/progress.h"
#include "display/show_array.h"
#include "display/show_poly.h"
#include "display/show_quoly.h"
#include "language/execution.h"
#include "language/names.h"
#include "language/scanner.h"
#include "language/stored.h"
#include "matrix/arrays.h"
#include "matrix/sparse.h"
#include "numbers/number_decimal.h"
#include "top/defaults.h"
#include "top/driver.h"
#include "top/file_names.h"
#include "top/guards.h"
#include "top/interrupts.h"
#include "top/output_file.h"
#include "top/settings.h"
#include "top/switches_table.h"

#include <algorithm>
#include <cmath>

namespace tolvek {

/* ---- settings ---- */

struct saved_setting {
    const int *variable;
    bool (*is_due)(int value);
    const char *line; /* a format for the value */
};

static bool always(int) { return true; }
static bool when_on(int value) { return value != 0; }
static bool when_off(int value) { return value == 0; }
static bool when_1(int value) { return value == 1; }
static bool from_0(int value) { return value >= 0; }
static bool other_than_10(int value) { return value != 10; }

/* In the order of the file; the prompt stands between the two tables. */
static const saved_setting settings_before_prompt[] = {
    {&errorpush, when_on, "&(e = 1);\n"},     {&noisy, when_off, "&(N = 0);\n"},
    {&m_interrupt, always, "&(m = %i);\n"},   {&addresser, always, "&(a = %i);\n"},
    {&chpoly_block, when_off, "&(B = 0);\n"}, {&detcutoff, from_0, "&(D = %i);\n"},
};
static const saved_setting settings_behind_prompt[] = {
    {&namelength, other_than_10, "&(n = %i);\n"}, {&uglyprint, when_on, "&(U = 1);\n"},
    {&monomial_list, when_on, "&(_l = 1);\n"},    {&timerflag, when_on, "&(t = 1);\n"},
    {&verbose, when_on, "&(V = 1);\n"},           {&windy, when_on, "&(W = 1);\n"},
    {&lagrange_stash, when_on, "&(_L = 1);\n"},   {&rat_det_method_cut, when_1, "&(L = 1);\n"},
    {&pseudet_heur, always, "&(u = %i);\n"},
};

template <int count> static void save_settings(text_out *out, const saved_setting (&rows)[count]) {
    for (const saved_setting &row : rows)
        if (row.is_due(*row.variable)) put_format(out, row.line, *row.variable);
}

/* A prompt with a quote or the continuation mark in it cannot be read back. */
static void save_prompt(text_out *out) {
    if (prompt[0] == carriage_return_mode)
        put_text(out, "&(M = ' ');\n");
    else if (std::strcmp(prompt, ">") != 0 && !std::strchr(prompt, '\'') && !std::strchr(prompt, continuation))
        put_format(out, "&(M = '%s');\n", prompt);
}

static void save_ring(text_out *out) {
    if (polynames) polylist(out, 1);
    if (laurent) put_text(out, "&(l = 1);\n");
    if (modularmode) put_format(out, "&(p = %li);\n", static_cast<long>(modulus));
}

/* ---- scalars ---- */

static bool has_numeral(const number *x) { return !flotemode || std::isfinite(x->flote_val); }

static bool is_finite(const polynode *p) {
    for (; p; p = p->next)
        if (p->is_number ? !has_numeral(p->num) : !is_finite(p->poly)) return false;
    return true;
}

static bool reads_back(const quolynode *q) {
    if (!flotemode) return true;
    return q->is_num ? has_numeral(q->numb) : is_finite(q->num) && is_finite(q->den);
}

/* Is the value read by &_n? */
static bool is_long(const quolynode *q) {
    return !monomial_list && !uglyprint && !q->is_num && !(q->is_rat && !lintmode);
}

static void save_scalar(text_out *out, const variable *v) {
    if (!v->value || (v->value->is_num && v->value->array_mark)) return;
    if (!reads_back(v->value)) {
        put_format(out, ";; %s has no finite value.\n", v->tok.text);
        return;
    }
    const bool through_reader = is_long(v->value);
    put_format(out, " %s := %s", v->tok.text, through_reader ? "&_n " : "");
    int column = static_cast<int>(std::strlen(v->tok.text)) + (through_reader ? 9 : 5);
    quoly_display(out, v->value, &column, {.after_value = 1, .terminator = ";"});
}

/* Sorted addresses of the parameters of all running functions. */
static void gather_parameters(buffer<const variable *> &all) {
    for (int i = 0; i < statcount; i++)
        for (const variable *v = running_frame(i).bound; v; v = v->next_of_call) all.push(v);
    std::sort(all.begin(), all.end());
}

enum class of_one_name { oldest, newest };

/* Sorted by name, each name once: of its records, which come as they stand in their chain, the last or the first. */
static void keep_one(buffer<listed_name> &rows, of_one_name which) {
    sort_vars(rows.data(), static_cast<int>(rows.size()));
    std::size_t kept = 0;
    for (const listed_name &row : rows) {
        const bool repeated = kept > 0 && std::strcmp(rows[kept - 1].text, row.text) == 0;
        if (!repeated)
            rows[kept++] = row;
        else if (which == of_one_name::oldest)
            rows[kept - 1] = row;
    }
    rows.resize(kept);
}

static void save_scalars(text_out *out) {
    buffer<const variable *> parameters;
    buffer<listed_name> rows;
    gather_parameters(parameters);
    for (const variable *chain : sca_store)
        for (const variable *v = chain; v; v = v->next)
            if (!std::binary_search(parameters.begin(), parameters.end(), v))
                rows.push({v->tok.text, static_cast<int>(rows.size()), v});
    keep_one(rows, of_one_name::oldest); /* the others belong to calls that are under way */
    for (const listed_name &row : rows) {
        safe_point();
        if (out->failed) return;
        save_scalar(out, static_cast<const variable *>(row.record));
    }
}

/* ---- arrays ---- */

static bool has_holes(const array_record *a) {
    for (int64_t i = 0; i < a->size; i++)
        if (!element(a, i)) return true;
    return false;
}

/* An element without a value stays so: a literal would make it 0. */
static void do_array_p(text_out *out, array_record *a) {
    constexpr int width = 10;
    put_char(out, '\n');
    arrdescribe(out, a);
    if (a->sparse_head) {
        if (sparse_count(a->sparse_head, a->rows) > 0) sparse_display(out, a, false);
        return;
    }
    array_region whole;
    whole_array(a, whole);
    if (all_small(a) && !has_holes(a))
        arrdis(out, whole, width);
    else
        arrdisplay(out, whole, {.framed = true, .first_row = addresser, .first_col = addresser});
}

static void save_arrays(text_out *out) {
    buffer<listed_name> rows;
    for (array_record *chain : arr_store)
        for (array_record *a = chain; a; a = a->next)
            if (!a->is_parameter()) rows.push({a->tok.text, static_cast<int>(rows.size()), a});
    keep_one(rows, of_one_name::newest); /* no name reaches the others */
    for (const listed_name &row : rows) {
        safe_point();
        if (out->failed) return;
        do_array_p(out, const_cast<array_record *>(static_cast<const array_record *>(row.record)));
    }
}

/* ---- the state ---- */

/* The margin and the signs of residues are not saved: the text is the same with any of them. Elements of a table field
   have no signs. */
struct plain_display {
    kept_value<int> margin{dispcutoff, find_setting(&dispcutoff)->value};
    kept_value<int> signs{alt_form_display, finf ? 0 : find_setting(&alt_form_display)->value};
};

void write_state(text_out *out) {
    plain_display display;
    save_settings(out, settings_before_prompt);
    save_prompt(out);
    save_settings(out, settings_behind_prompt);
    save_ring(out);
    put_text(out, "\n\n;;** functions:\n");
    save_functions(out);
    put_text(out, "\n;;** scalars:\n");
    save_scalars(out);
    put_text(out, "\n;;**  arrays:\n");
    save_arrays(out);
    put_text(out, "&x;\n");
}

static int saving = 0;

/* A state that is not written to its end is taken back. */
class state_on_its_way {
  public:
    ~state_on_its_way() {
        if (!complete) take_back_output();
    }
    bool complete = false;

  private:
    kept_value<int> under_way{saving, 1};
};

static void save_state() {
    if (!settle_output()) abandon_statement();
    state_on_its_way state;
    write_state(outpuf);
    state.complete = settle_output();
    if (!state.complete) abandon_statement();
    if (uglyprint) say(" Warning: You saved with ugly format! File is unreadable, except for the variables.\n");
}

/* ---- the output file ---- */

static void close_by_command(bool quiet) {
    if (!outpuf)
        say(" *** Warning. No output file had been open.\n");
    else if (!quiet)
        sayf(" Now closing %s.\n", output_file_name);
    close_output();
}

static void choose_output(const char *path, bool quiet) {
    if (saving) {
        say(" *** Warning. A state is being saved to this file. Save cancelled.\n");
    } else if (std::strcmp(path, "@") == 0) {
        close_by_command(quiet);
    } else if (is_usable(path, input_file_name)) {
        close_output();
        open_output(path);
    }
}

void save(switch_call &call) {
    if (outpuf && call.row->code == 's') {
        if (!saving) return save_state();
        say(" *** Warning. A state is being saved to this file. Save cancelled.\n");
        return;
    }
    file_name answer;
    scanner(call.input, token, call.cursor);
    call.token_is_read = true;
    if (ask_for_name("Enter name of output file: \n", "*** Save cancelled\n", answer))
        choose_output(answer.text, *call.cursor != nullptr);
}

void save_to(switch_call &call, const char *name) { choose_output(name, *call.cursor != nullptr); }

} // namespace tolvek
