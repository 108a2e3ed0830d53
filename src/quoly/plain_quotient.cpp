/* Exact quotients term by term, and quotients of floats. */
#include "numbers/modular.h"
#include "poly/add.h"
#include "poly/model_work.h"
#include "poly/mult.h"
#include "quoly/plain_work.h"
#include "top/interrupts.h"

namespace tolvek {

/* ---- by a number ---- */

static bool number_divides(const number *c, const polynode *a) {
    int32_t inverse;
    if (flotemode) return true;
    if (modularmode) return mod_is_prime() || find_inverse(c->lint_val, &inverse);
    if (lintmode) return c->lint_val == 1 || c->lint_val == -1;
    number_handle content, common;
    find_gcdcoefs(a, &content);
    binary_gcd(&content, c, &common);
    number_handle magnitude;
    abs_val_num(c, &magnitude);
    return equal(&common, &magnitude);
}

static bool quotient_by_number(const polynode *a, const number *c, polynode **q) {
    if (!number_divides(c, a)) return false;
    poly_handle quotient;
    poly_assign(a, quotient.slot());
    num_poly_quot(quotient.slot(), c);
    quotient.release_to(q);
    return true;
}

/* ---- term by term ---- */

/* b is below the main variable of a: each coefficient is divided by the one of b. */
static bool divide_coefficients(const polynode *a, const polynode *b, polynode **q, quotient_routine divide) {
    growing_list quotient;
    coefficient below(b);
    for (const polynode *t = a; t; t = t->next) {
        polynode *c = nullptr, *term = nullptr;
        if (!divide(coefficient(t).get(), below.get(), &c)) return false;
        make_monomial(&term, t->expo, c);
        if (!poly_iszero(term))
            quotient.append(term);
        else
            free_poly(&term);
    }
    replace_poly(list_or_zero(quotient.release()), q);
    return true;
}

void drop_head(poly_handle &p) {
    polynode *rest = p->next;
    p->next = nullptr;
    poly_handle head(p.release());
    *p.slot() = list_or_zero(rest);
}

/* rest := rest - term * b, both without their leading terms, which cancel. */
static void subtract_multiple(poly_handle &rest, const polynode *term, const polynode *b) {
    drop_head(rest);
    if (!b->next) return;
    poly_handle multiple;
    poly_mult(term, b->next, multiple.slot(), nullptr);
    best_poly_sub(rest.release(), multiple.release(), rest.slot());
}

/* The classical division; what is left behind comes back in `rest`. */
static bool divide_lists(const polynode *a, const polynode *b, polynode **q, poly_handle &rest,
                         quotient_routine divide) {
    growing_list quotient;
    coefficient leading(b);
    poly_assign(a, rest.slot());
    while (!is_constant(rest.get()) && rest->expo >= b->expo) {
        safe_point();
        polynode *c = nullptr;
        poly_handle term;
        if (!divide(coefficient(rest.get()).get(), leading.get(), &c)) return false;
        make_monomial(term.slot(), rest->expo - b->expo, c);
        if (poly_iszero(term.get())) {
            drop_head(rest);
            continue;
        }
        subtract_multiple(rest, term.get(), b);
        quotient.append(term.release());
    }
    replace_poly(list_or_zero(quotient.release()), q);
    return true;
}

bool exact_quotient(const polynode *a, const polynode *b, polynode **q) {
    if (is_constant(b)) return quotient_by_number(a, b->num, q);
    if (poly_iszero(a)) return poly_set(0, q), true;
    if (is_constant(a) || a->expo < b->expo) return false;
    if (b->expo == 0) return divide_coefficients(a, b, q, exact_quotient);
    poly_handle quotient, rest;
    if (!divide_lists(a, b, quotient.slot(), rest, exact_quotient) || !poly_iszero(rest.get())) return false;
    quotient.release_to(q);
    return true;
}

bool rough_quotient(const polynode *a, const polynode *b, polynode **q) {
    if (is_constant(b)) return quotient_by_number(a, b->num, q);
    if (poly_iszero(a)) return poly_set(0, q), true;
    if (is_constant(a) || a->expo < b->expo) return false;
    if (b->expo == 0) return divide_coefficients(a, b, q, rough_quotient);
    poly_handle quotient, rest;
    if (!divide_lists(a, b, quotient.slot(), rest, rough_quotient)) return false;
    quotient.release_to(q);
    return true;
}

/* ---- with a remainder ---- */

static polynode *term_of(int32_t expo, poly_handle &c) {
    polynode *term = nullptr;
    make_monomial(&term, expo, c.release());
    return term;
}

static void append_term(growing_list &list, int32_t expo, poly_handle &c) {
    if (!poly_iszero(c.get())) list.append(term_of(expo, c));
}

static bool divide_below(const polynode *a, const polynode *b, polynode **q, polynode **r) {
    growing_list quotient, rest;
    coefficient below(b);
    for (const polynode *t = a; t; t = t->next) {
        poly_handle c, d;
        if (!quotient_and_rest(coefficient(t).get(), below.get(), c.slot(), d.slot())) return false;
        append_term(quotient, t->expo, c);
        append_term(rest, t->expo, d);
    }
    replace_poly(list_or_zero(quotient.release()), q);
    replace_poly(list_or_zero(rest.release()), r);
    return true;
}

bool quotient_and_rest(const polynode *a, const polynode *b, polynode **q, polynode **r) {
    if (is_constant(a) || (b->expo > 0 && a->expo < b->expo)) {
        poly_assign(a, r);
        poly_set(0, q);
        return true;
    }
    if (b->expo == 0) return divide_below(a, b, q, r);
    poly_handle quotient, rest;
    if (!divide_lists(a, b, quotient.slot(), rest, flotemode ? rough_quotient : exact_quotient)) return false;
    quotient.release_to(q);
    rest.release_to(r);
    return true;
}

} // namespace tolvek
