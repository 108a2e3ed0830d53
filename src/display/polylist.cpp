/* The list of polynomial variables and their relations. */
#include "display/listings.h"
#include "display/show_poly.h"
#include "poly/variables.h"

namespace tolvek {

/* ---- relations ---- */

static const polynode *relation_of(const pt *v) {
    const polynode *m = v->pt_mod_poly;
    return m && m->is_number ? v->pt_mod_poly2 : m; /* for t^n + c the first field holds the value of t^n */
}

static bool makes_field(const pt *v) { return v->pt_mod_flags != 0; }

static void show_relation(text_out *out, const pt *v, int want_continuation) {
    int column = 0, lines = 0;
    poly_display(out, relation_of(v), v, &column, &lines, {.want_continuation = want_continuation});
}

/* ---- as a list ---- */

static void list_variables(text_out *out) {
    constexpr int a_line = 12;
    int on_line = 0;
    for (int level = number_polys; level > 0; level--) {
        const pt *v = variable_at(level);
        const bool has_relation = relation_of(v);
        if (has_relation && on_line > 0) {
            put_char(out, '\n');
            on_line = 0;
        }
        put_format(out, "    %s;", v->pt_name);
        if (has_relation) {
            put_text(out, "  subject to ");
            show_relation(out, v, 1);
            put_text(out, " = 0.");
            if (makes_field(v)) put_text(out, " This creates a field.");
        }
        if (!has_relation && ++on_line < a_line) continue;
        put_char(out, '\n');
        on_line = 0;
    }
    if (on_line > 0) put_char(out, '\n');
}

/* ---- as saved ---- */

static void warn_of_conversion(text_out *out) {
    put_text(out, "\n;; Warning. This file was saved in modular mode. The polynomial written\n"
                  ";;   below after &(P = has been converted back to rational mode. It may\n"
                  ";;   not be correct. Check it before reading this file.\n");
}

/* The primes of a field with the roots modulo them, six pairs to a line. */
static void save_roots(text_out *out, const pt *v) {
    constexpr int a_line = 6;
    put_text(out, "\n :");
    int written = 0;
    for (const number *x = v->pt_nums; x; x = x->num_link) {
        const int32_t root = x->num_len > 0 ? x->num_head->digit : 0;
        put_format(out, " %li, %li", static_cast<long>(x->lint_val), static_cast<long>(root));
        if (x->num_link) put_char(out, ',');
        if (++written % a_line == 0) put_char(out, '\n');
    }
}

/* Residues are shown as the integers that they become when the ring is left. */
static void save_relation(text_out *out, const pt *v) {
    if (modularmode) warn_of_conversion(out);
    put_text(out, "\n &(P = ");
    show_relation(out, v, 0);
    if (makes_field(v)) {
        put_text(out, ", 1");
        if (v->pt_num_count > 0) {
            put_text(out, ": ");
            save_roots(out, v);
        }
    }
    put_text(out, ");\n");
}

static void save_variables(text_out *out) {
    for (const pt *v = polynames; v; v = v->pt_next) put_format(out, "    &(J = %s);\n", v->pt_name);
    for (int level = number_polys; level > 0; level--)
        if (relation_of(variable_at(level))) save_relation(out, variable_at(level));
    put_char(out, '\n');
}

void polylist(text_out *out, int as_saved) {
    if (as_saved)
        save_variables(out);
    else
        list_variables(out);
}

} // namespace tolvek
