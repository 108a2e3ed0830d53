/* Greatest common divisors by pseudo-remainders of primitive parts. */
#include "quoly/plain_divisor.h"

#include "numbers/modular.h"
#include "poly/add.h"
#include "poly/model_work.h"
#include "poly/mult.h"
#include "quoly/plain_work.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tolvek {

/* ---- the form of an answer ---- */

static void set_answer_form(poly_handle &g) {
    if (poly_iszero(g.get())) return;
    const number *leading = leading_coef(g.get())->num;
    if (!lintmode) {
        if (num_sign(leading) < 0) poly_inplace(g.get());
        return;
    }
    int32_t inverse;
    bool is_unit = flotemode || (modularmode && find_inverse(leading->lint_val, &inverse));
    if (!is_unit) return;
    number_handle c;
    num_assign(leading, &c);
    num_poly_quot(g.slot(), &c);
}

/* ---- floats ---- */

/* NaN counts as infinite. */
static long double largest(const polynode *p) {
    long double most = 0;
    for (; p; p = p->next) {
        long double x = p->is_number ? std::fabs(p->num->flote_val) : largest(p->poly);
        if (std::isnan(x)) return HUGE_VALL;
        most = std::max(most, x);
    }
    return most;
}

/* p without the numbers below the bound. */
static polynode *without_noise(const polynode *p, long double bound) {
    growing_list kept;
    for (; p; p = p->next) {
        coefficient c(p);
        polynode *cleared = nullptr, *term = nullptr;
        if (!p->is_number)
            cleared = without_noise(p->poly, bound);
        else if (std::fabs(p->num->flote_val) >= bound)
            node_assign(c.get(), &cleared);
        else
            poly_set(0, &cleared);
        make_monomial(&term, p->expo, cleared);
        if (poly_iszero(term))
            free_poly(&term);
        else
            kept.append(term);
    }
    return list_or_zero(kept.release());
}

/* The largest number becomes 1. */
static void scale_flotes(poly_handle &p) {
    number size{};
    size.flote_val = largest(p.get());
    if (size.flote_val > 0 && std::isfinite(size.flote_val)) num_poly_quot(p.slot(), &size);
}

/* Is p = q g but for rounding? */
static bool divides_roughly(const polynode *p, const polynode *g) {
    poly_handle q, rest;
    if (!rough_quotient(p, g, q.slot())) return false;
    poly_mult(q.get(), g, rest.slot(), nullptr);
    long double size = std::max(largest(p), largest(rest.get()));
    poly_sub(p, rest.get(), rest.slot());
    return largest(rest.get()) <= size * flote_noise;
}

/* ---- contents ---- */

/* *c := the content of p in its main variable, a polynomial of the next level. */
static void plain_content(const polynode *p, polynode **c) {
    for (const polynode *t = p; t; t = t->next) {
        if (!t->is_number && !is_constant(t->poly)) continue;
        gcd_coefs(p, c); /* one number among the coefficients: the content is a number */
        return;
    }
    poly_handle content;
    poly_assign(p->poly, content.slot());
    for (const polynode *t = p->next; t && !poly_eq_1(content.get()); t = t->next)
        plain_gcd(content.get(), t->poly, content.slot());
    content.release_to(c);
}

static void divide_exactly(const polynode *a, const polynode *b, polynode **q) {
    if (flotemode)
        rough_quotient(a, b, q);
    else
        exact_quotient(a, b, q);
}

/* *c := the content, *p := the primitive part. A constant has itself as its content. */
static void split_content(poly_handle &p, polynode **c) {
    plain_content(p.get(), c);
    poly_handle as_wrapper;
    poly_assign(*c, as_wrapper.slot());
    make_monomial(as_wrapper.slot(), 0, as_wrapper.release());
    if (!poly_eq_1(as_wrapper.get())) divide_exactly(p.get(), as_wrapper.get(), p.slot());
}

/* ---- remainders ---- */

/* The coefficients by which the leading terms of rest and v become equal. */
static void make_factors(const polynode *rest, const polynode *v, poly_handle &of_rest, poly_handle &of_v) {
    coefficient l(rest), m(v);
    poly_assign(m.get(), of_rest.slot());
    poly_assign(l.get(), of_v.slot());
    if (!is_constant(l.get()) || !is_constant(m.get())) return;
    if (lintmode) { /* v is monic */
        poly_set(1, of_rest.slot());
        return;
    }
    number_handle g;
    int coprime;
    extgcd(m.get()->num, l.get()->num, &g, of_rest->num, of_v->num, &coprime);
}

static void multiply(poly_handle &p, const polynode *factor, int32_t shift) {
    poly_handle monomial;
    poly_assign(factor, monomial.slot());
    make_monomial(monomial.slot(), shift, monomial.release());
    if (!poly_eq_1(monomial.get())) poly_mult(p.get(), monomial.get(), p.slot(), nullptr);
}

/* u := a multiple of u by a coefficient, less a multiple of v, of lower degree than v. The leading terms cancel by
   structure. */
static void pseudo_remainder(poly_handle &u, const polynode *v) {
    while (!is_constant(u.get()) && u->expo >= v->expo) {
        safe_point();
        poly_handle of_rest, of_v, multiple;
        make_factors(u.get(), v, of_rest, of_v);
        int32_t shift = u->expo - v->expo;
        drop_head(u);
        multiply(u, of_rest.get(), 0);
        if (!v->next) continue;
        poly_assign(v->next, multiple.slot());
        multiply(multiple, of_v.get(), shift);
        best_poly_sub(u.release(), multiple.release(), u.slot());
    }
}

static bool has_main_variable(const polynode *p) { return !is_constant(p) && p->expo > 0; }

/* u := the GCD of primitive u and v, both with the main variable, but for a factor of the ring. */
static void primitive_gcd(poly_handle &u, poly_handle &v) {
    if (u->expo < v->expo) std::swap(*u.slot(), *v.slot());
    if (images_are_coprime(u.get(), v.get())) {
        poly_set(1, u.slot());
        return;
    }
    for (;;) {
        if (flotemode) scale_flotes(u);
        if (lintmode) set_answer_form(v);
        long double bound = flotemode ? std::max(largest(u.get()), largest(v.get())) * flote_noise : 0;
        pseudo_remainder(u, v.get());
        if (flotemode) *u.slot() = without_noise(poly_handle(u.release()).get(), bound);
        if (poly_iszero(u.get())) break;
        if (!has_main_variable(u.get())) {
            poly_set(1, v.slot());
            break;
        }
        poly_handle c;
        split_content(u, c.slot());
        std::swap(*u.slot(), *v.slot());
    }
    std::swap(*u.slot(), *v.slot());
}

/* ---- the cases ---- */

static void gcd_with_constant(const polynode *a, const polynode *b, poly_handle &g) {
    poly_set(1, g.slot());
    if (lintmode) return;
    number_handle x, y;
    find_gcdcoefs(a, &x);
    find_gcdcoefs(b, &y);
    binary_gcd(&x, &y, g->num);
}

static bool takes_divisor(const polynode *a, const polynode *b, poly_handle &g) {
    poly_handle q;
    if (!exact_quotient(a, b, q.slot())) return false;
    poly_assign(b, g.slot());
    return true;
}

/* Modulo a composite number, and for 32-bit integers. */
static void gcd_by_division(const polynode *a, const polynode *b, poly_handle &g) {
    if (takes_divisor(a, b, g) || takes_divisor(b, a, g)) return;
    poly_set(1, g.slot());
}

/* Only one of the two has the main variable, or none: the GCD lies below it. */
static void gcd_below(const polynode *a, const polynode *b, poly_handle &g) {
    poly_handle c, d;
    plain_content(a, c.slot());
    plain_content(b, d.slot());
    plain_gcd(c.get(), d.get(), g.slot());
    make_monomial(g.slot(), 0, g.release());
}

static void gcd_of_lists(const polynode *a, const polynode *b, poly_handle &g) {
    poly_handle u, v, c, d;
    poly_assign(a, u.slot());
    poly_assign(b, v.slot());
    split_content(u, c.slot());
    split_content(v, d.slot());
    plain_gcd(c.get(), d.get(), c.slot());
    primitive_gcd(u, v);
    poly_handle content;
    make_monomial(content.slot(), 0, c.release());
    if (!poly_eq_1(content.get())) poly_mult(u.get(), content.get(), u.slot(), nullptr);
    u.release_to(g.slot());
}

static bool has_coefficient_quotients() { return !lintmode || flotemode || (modularmode && mod_is_prime()); }

void plain_gcd(const polynode *a, const polynode *b, polynode **result) {
    check_stack();
    poly_handle g;
    if (poly_iszero(a) || poly_iszero(b))
        poly_assign(poly_iszero(a) ? b : a, g.slot());
    else if (is_constant(a) || is_constant(b))
        gcd_with_constant(a, b, g);
    else if (poly_equal(a, b))
        poly_assign(a, g.slot());
    else if (!has_coefficient_quotients())
        gcd_by_division(a, b, g);
    else if (flotemode && !(std::isfinite(largest(a)) && std::isfinite(largest(b))))
        poly_set(1, g.slot());
    else if (!has_main_variable(a) || !has_main_variable(b))
        gcd_below(a, b, g);
    else
        gcd_of_lists(a, b, g);
    set_answer_form(g);
    if (flotemode && !is_constant(g.get()) && !(divides_roughly(a, g.get()) && divides_roughly(b, g.get())))
        poly_set(1, g.slot());
    g.release_to(result);
}

} // namespace tolvek
