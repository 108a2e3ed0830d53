/* Pieces that both forms of a polynomial are made of. */
#include "display/show_work.h"

#include "numbers/number.h"
#include "poly/model.h"

#include <cmath>
#include <cstring>

namespace tolvek {

void checklength(poly_writer &w) { checklength(w.out, w.want_continuation, w.column, w.lines); }

void next_line(poly_writer &w) {
    break_line(w.out, w.want_continuation, w.column);
    ++*w.lines;
}

void plus_sign(poly_writer &w) {
    if (uglyprint)
        w.put("+", 1);
    else
        w.put("+ ", 2);
    checklength(w);
}

void write_expo(poly_writer &w, int32_t e) {
    if (e == 0 || e == 1) return;
    put_format(w.out, e < 0 && uglyprint ? "^(%li)" : "^%li", static_cast<long>(e));
    if (e < 0) *w.column += uglyprint ? 3 : 1;
    *w.column += 1 + static_cast<int>(0.3 * logg2lint(e)); /* of an exponent as of a residue in a modular ring */
}

void put_variable(poly_writer &w, const pt *names, int32_t e) {
    w.put(names->pt_name, static_cast<int>(std::strlen(names->pt_name)));
    write_expo(w, e);
}

void put_number(poly_writer &w, const number *x) {
    const int apart = w.blank_after_minus && !uglyprint;
    display(w.out, w.want_continuation, 0, x, w.column, apart && !is_shown_positive(x));
}

bool suppressed(poly_writer &w) {
    if (!do_line_sup || !w.want_continuation || *w.lines < most_lines_on_screen) return false;
    if (w.message_due) put_text(w.out, "   ... more output suppressed ... \n");
    w.message_due = false;
    return true;
}

/* ---- numbers as they are shown ---- */

static bool residues_have_signs() { return modularmode && alt_form_display && !finf; }

static int32_t shown_residue(const number *x) {
    return residues_have_signs() && x->lint_val > half_modulus ? x->lint_val - modulus : x->lint_val;
}

bool is_shown_positive(const number *x) {
    if (modularmode) return shown_residue(x) > 0;
    if (flotemode) return !std::signbit(x->flote_val);
    return num_sign(x) > 0;
}

unit shown_unit(const number *x) {
    if (modularmode) {
        int32_t v = shown_residue(x);
        return v == 1 ? unit::plus : v == -1 ? unit::minus : unit::none;
    }
    int is_minus_one = 0;
    if (!equal_to_pm1(x, &is_minus_one)) return unit::none;
    return is_minus_one ? unit::minus : unit::plus;
}

bool broken_term(const polynode *term, const pt *names) {
    if (!names) {
        tolvek_error(" q = NULL at start of poly_display.", 1);
        return true;
    }
    if (term->expo != 0 || !term->poly->is_number || (laurent && term->poly->next)) return false;
    tolvek_error(" Warning! extra 0-exponent node in this polynomial. Trash it.", 1);
    return true;
}

} // namespace tolvek
