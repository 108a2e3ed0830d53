/* The measure that the choosers look at, and products of one term. */
#include "poly/model_work.h"
#include "poly/mult_work.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

namespace tolvek {

/* ---- the measure of one operand ---- */

int exp_poly_length(const polynode *p, int32_t *last, int *flag) {
    const bool one_variable = number_polys == 1;
    int n = 0;
    bool lean = modularmode;
    const polynode *t = p;
    for (;; t = t->next) {
        n++;
        if (!t->is_number && !one_variable && !is_constant(t->poly)) lean = false;
        if (!t->next) break;
    }
    *last = t->expo;
    if (!lean || t->expo < 0) *flag = 0;
    const int64_t span = int64_t{p->expo} - t->expo;
    return span <= 6 * int64_t{n} ? n : -n;
}

/* ---- one term times a polynomial ---- */

/* c times the list p: null when nothing is left. */
static polynode *scaled_list(const number *c, const polynode *p) {
    growing_list product;
    for (; p; p = p->next) {
        safe_point();
        if (p->is_number) {
            poly_handle t(new_number_term());
            number_product(c, p->num, t->num);
            if (!poly_iszero(t.get())) product.append(t.release());
            continue;
        }
        poly_handle coefficient(scaled_list(c, p->poly));
        if (!coefficient) continue;
        if (p->expo == 0 && is_constant(coefficient.get())) {
            product.append(coefficient.release());
            continue;
        }
        polynode *t = new_term();
        t->expo = p->expo;
        t->poly = coefficient.release();
        product.append(t);
    }
    return product.release();
}

void scalar_by_poly(const number *c, const polynode *p, polynode **q) {
    check_stack();
    if (num_sign(c) == 0) return poly_set(0, q);
    replace_poly(list_or_zero(scaled_list(c, p)), q);
}

/* The coefficient of t as a polynomial: `lone` stands for a number term. */
static const polynode *coefficient_of(const polynode *t, polynode *lone) {
    if (!t->is_number) return t->poly;
    *lone = *t;
    lone->next = nullptr;
    return lone;
}

void node_by_poly_1(const polynode *t, const polynode *p, polynode **q, pt *names) {
    polynode lone_t, lone_s;
    const polynode *x = coefficient_of(t, &lone_t);
    growing_list product;
    for (const polynode *s = p; s; s = s->next) {
        const polynode *y = coefficient_of(s, &lone_s);
        poly_handle coefficient;
        mult_lists(x, y, coefficient.slot(), names_below(names));
        if (poly_iszero(coefficient.get())) continue;
        const int32_t expo = t->expo + s->expo;
        if (expo == 0 && is_constant(coefficient.get())) {
            product.append(coefficient.release());
            continue;
        }
        polynode *term = new_term();
        term->expo = expo;
        term->poly = coefficient.release();
        product.append(term);
    }
    replace_poly(list_or_zero(product.release()), q);
}

void node_by_poly(const polynode *t, const polynode *p, polynode **q) { node_by_poly_1(t, p, q, nullptr); }

} // namespace tolvek
