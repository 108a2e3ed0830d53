/* Polynomials as lists of monomials. */
#include "display/show_work.h"

#include "poly/model.h"
#include "top/interrupts.h"

namespace tolvek {

/* The way from the top of the polynomial to a monomial: one step for each level, the innermost first. Steps of
   exponent 0 are left out of it. */
struct path_step {
    const path_step *above;
    const pt *variable;
    int32_t expo;
};

/* Columns in front of the margin at which a line ends: before a term, before a variable, behind a term. */
constexpr int before_term = 10, before_variable = 1, behind_term = 4;

/* Ends a line that has come near the margin. False: the rest is to be left out. */
static bool leave_room(poly_writer &w, int columns) {
    if (!near_margin(*w.column, columns)) return true;
    next_line(w);
    return !suppressed(w);
}

/* The variables behind a coefficient. False: the rest is to be left out. */
static bool show_path(poly_writer &w, const path_step *path, bool has_coefficient) {
    for (const path_step *step = path; step; step = step->above) {
        if (step != path || has_coefficient) put_char(w.out, '*');
        ++*w.column;
        if (!leave_room(w, before_variable)) return false;
        put_variable(w, step->variable, step->expo);
    }
    return true;
}

static bool show_monomial(poly_writer &w, const number *coefficient, const path_step *path, bool *begun) {
    if (*begun && is_shown_positive(coefficient))
        plus_sign(w);
    else if (*begun)
        w.blank_after_minus = 1;
    *begun = true;

    const unit which = path ? shown_unit(coefficient) : unit::none;
    if (which == unit::none)
        put_number(w, coefficient);
    else if (which == unit::minus)
        w.put(uglyprint ? "-" : "- ", uglyprint ? 1 : 2);
    w.blank_after_minus = 0;
    if (!show_path(w, path, which == unit::none)) return false;
    if (!uglyprint) w.put(" ", 1);
    return true;
}

/* False: the rest is to be left out, or the list is broken. */
static bool monomial_disp(poly_writer &w, const polynode *p, const pt *names, const path_step *path, bool *begun) {
    for (const polynode *term = p; term; term = term->next) {
        safe_point();
        if (!term->is_number && broken_term(term, names)) return false;
        if (!leave_room(w, before_term)) return false;
        if (term->is_number) {
            if (!show_monomial(w, term->num, path, begun)) return false;
        } else {
            const path_step step{path, names, term->expo};
            const path_step *way = term->expo == 0 ? path : &step;
            if (!monomial_disp(w, term->poly, names->pt_next, way, begun) || suppressed(w)) return false;
        }
        if (term->next && !leave_room(w, behind_term)) return false;
    }
    return true;
}

void show_monomials(poly_writer &w, const polynode *p, const pt *names) {
    bool begun = false;
    monomial_disp(w, p, names, nullptr, &begun);
}

} // namespace tolvek
