/* The entries of exact division. */
#include "poly/divide_work.h"
#include "top/stack_limit.h"

namespace tolvek {

static void answer(bool divides, polynode **q, int *failed) {
    *failed = !divides;
    if (!divides) poly_set(0, q);
}

void gen_poly_divide(const polynode *a, const polynode *b, polynode **q, pt *names, int *failed) {
    if (!names) {
        tolvek_error("pt nil in poly_divide.", 1);
        return answer(false, q, failed);
    }
    answer(divides_exactly(a, b, q, names, {}), q, failed);
}

void Lpoly_divide(const polynode *a, const polynode *b, polynode **q, pt *names, int *failed) {
    division_rule rule;
    rule.power_units = laurent;
    answer(divides_exactly(a, b, q, names, rule), q, failed);
}

bool rough_poly_divide(const polynode *a, const polynode *b, polynode **q, pt *names) {
    division_rule rule;
    rule.rough = true;
    if (divides_exactly(a, b, q, names, rule)) return true;
    poly_set(0, q);
    return false;
}

/* ---- known to be exact ---- */

static void not_exact(const polynode *a, const polynode *b, int depth) {
    sayf("*** bad exps %i, %i, %i\n", depth, a->expo, b->expo);
    tolvek_error("bad exps in fast_poly divide. ", 1);
}

/* *a := *a / b, or false. */
static bool divide_in_place(polynode **a, const polynode *b, pt *names) {
    division_rule rule;
    rule.power_units = laurent;
    rule.rough = flotemode;
    return divides_exactly(*a, b, a, names, rule);
}

void fast_poly_divide(polynode **a, const polynode *b, pt *names, int depth) {
    if (!names)
        tolvek_error("pt nil in fast_poly_divide.", 1);
    else if (is_constant(b))
        poly_quot(*a, b, a, depth);
    else if (!divide_in_place(a, b, names))
        not_exact(*a, b, depth);
}

static polynode *take_term(polynode **list) {
    polynode *t = *list;
    *list = t->next;
    t->next = nullptr;
    return t;
}

void fast_divide(polynode **a, const polynode *b, pt *names, int depth) {
    poly_handle rest;
    growing_list quotient;
    poly_assign(*a, rest.slot());
    while (rest) {
        poly_handle t(take_term(rest.slot()));
        if (!t->is_number) {
            fast_poly_divide(&t->poly, b, names_below(names), 2 * depth);
            remove_dummy(t.get());
        } else if (is_constant(b)) {
            poly_quot(t.get(), b, t.slot(), depth);
        } else if (!poly_iszero(t.get())) {
            tolvek_error(" tp numb in fast_divide.", 1);
            return;
        }
        quotient.append(t.release());
    }
    poly_handle result(quotient.release());
    result.release_to(a);
}

} // namespace tolvek
