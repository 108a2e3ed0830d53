#include "gcd/rough_gcd.h"

#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "poly/add.h"
#include "poly/mult.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tolvek {

/* ---- sizes ---- */

/* NaN counts as infinite. */
static long double largest(const polynode *p) {
    long double most = 0;
    for (; p; p = p->next) {
        const long double x = p->is_number ? std::fabs(p->num->flote_val) : largest(p->poly);
        if (std::isnan(x)) return HUGE_VALL;
        most = std::max(most, x);
    }
    return most;
}

/* p without the numbers below the bound. */
static polynode *without_noise(const polynode *p, long double bound) {
    growing_list kept;
    for (; p; p = p->next) {
        poly_handle cleared, term;
        if (!p->is_number)
            *cleared.slot() = without_noise(p->poly, bound);
        else if (std::fabs(p->num->flote_val) >= bound)
            node_assign(p, cleared.slot());
        else
            continue;
        if (poly_iszero(cleared.get())) continue;
        make_monomial(term.slot(), p->expo, cleared.release());
        kept.append(term.release());
    }
    return list_or_zero(kept.release());
}

/* The largest number becomes 1. */
static void scale(poly_handle &p) {
    number size{};
    size.flote_val = largest(p.get());
    if (size.flote_val > 0 && std::isfinite(size.flote_val)) num_poly_quot(p.slot(), &size);
}

/* Is p = q g but for rounding? */
static bool divides_roughly(const polynode *p, const polynode *g, pt *names) {
    poly_handle q, rest;
    if (!rough_poly_divide(p, g, q.slot(), names)) return false;
    poly_mult(q.get(), g, rest.slot(), names);
    const long double size = std::max(largest(p), largest(rest.get()));
    poly_sub(p, rest.get(), rest.slot());
    return largest(rest.get()) <= size * flote_noise;
}

/* ---- contents ---- */

static void copy_coefficient(const polynode *t, poly_handle &c) {
    if (t->is_number)
        node_assign(t, c.slot());
    else
        poly_assign(t->poly, c.slot());
}

/* *c := the content of p in its main variable, a polynomial of the next level. */
static void rough_content(const polynode *p, poly_handle &content, pt *names) {
    poly_set(1, content.slot());
    if (!names->pt_next || any_number_coefficient(p)) return;
    poly_assign(p->poly, content.slot());
    for (const polynode *t = p->next; t && !poly_eq_1(content.get()); t = t->next)
        rough_gcd(content.get(), t->poly, content.slot(), names->pt_next);
}

/* p := its primitive part; c := the content. */
static void split_content(poly_handle &p, poly_handle &c, pt *names) {
    rough_content(p.get(), c, names);
    if (is_constant(c.get())) return;
    poly_handle divisor;
    poly_assign(c.get(), divisor.slot());
    padded(divisor, 1);
    rough_poly_divide(p.get(), divisor.get(), p.slot(), names);
}

/* ---- remainders ---- */

static void drop_head(poly_handle &p) {
    polynode *rest = std::exchange(p->next, nullptr);
    poly_handle head(p.release());
    *p.slot() = list_or_zero(rest);
}

static void multiply(poly_handle &p, const poly_handle &factor, int32_t shift, pt *names) {
    poly_handle monomial;
    poly_assign(factor.get(), monomial.slot());
    make_monomial(monomial.slot(), shift, monomial.release());
    if (!poly_eq_1(monomial.get())) poly_mult(p.get(), monomial.get(), p.slot(), names);
}

/* u := a multiple of u by a coefficient, less a multiple of v, of lower degree than v. The leading terms cancel by
   structure. */
static void pseudo_remainder(poly_handle &u, const polynode *v, pt *names) {
    while (!is_constant(u.get()) && u->expo >= v->expo) {
        safe_point();
        poly_handle of_rest, of_v, multiple;
        copy_coefficient(v, of_rest);
        copy_coefficient(u.get(), of_v);
        const int32_t shift = u->expo - v->expo;
        drop_head(u);
        multiply(u, of_rest, 0, names);
        if (!v->next) continue;
        poly_assign(v->next, multiple.slot());
        multiply(multiple, of_v, shift, names);
        best_poly_sub(u.release(), multiple.release(), u.slot());
    }
}

static bool has_main_variable(const polynode *p) { return !is_constant(p) && p->expo > 0; }

/* u := the GCD of primitive u and v, both with the main variable, but for a number. */
static void primitive_gcd(poly_handle &u, poly_handle &v, pt *names) {
    if (u->expo < v->expo) std::swap(*u.slot(), *v.slot());
    for (;;) {
        scale(u);
        const long double bound = std::max(largest(u.get()), largest(v.get())) * flote_noise;
        pseudo_remainder(u, v.get(), names);
        replace_poly(without_noise(u.get(), bound), u.slot());
        if (poly_iszero(u.get())) break;
        if (!has_main_variable(u.get())) {
            poly_set(1, v.slot());
            break;
        }
        poly_handle c;
        split_content(u, c, names);
        std::swap(*u.slot(), *v.slot());
    }
    std::swap(*u.slot(), *v.slot());
}

/* ---- the cases ---- */

/* One of the two does not contain the main variable: the GCD lies below it. Both are divided by their contents, whose GCD
   g becomes. */
static void contents(poly_handle &u, poly_handle &v, poly_handle &g, pt *names) {
    poly_handle c, d;
    split_content(u, c, names);
    split_content(v, d, names);
    if (is_constant(c.get()) || is_constant(d.get()))
        poly_set(1, g.slot());
    else
        rough_gcd(c.get(), d.get(), g.slot(), names->pt_next);
    padded(g, 1);
}

static void gcd_of_lists(const polynode *a, const polynode *b, poly_handle &g, pt *names) {
    poly_handle u, v;
    poly_assign(a, u.slot());
    poly_assign(b, v.slot());
    contents(u, v, g, names);
    if (!has_main_variable(a) || !has_main_variable(b)) return;
    primitive_gcd(u, v, names);
    poly_mult(u.get(), g.get(), g.slot(), names);
}

void rough_gcd(const polynode *a, const polynode *b, polynode **result, pt *names) {
    check_stack();
    poly_handle g;
    if (poly_iszero(a) || poly_iszero(b))
        poly_assign(poly_iszero(a) ? b : a, g.slot());
    else if (is_constant(a) || is_constant(b) || !std::isfinite(largest(a)) || !std::isfinite(largest(b)))
        poly_set(1, g.slot());
    else if (poly_equal(a, b))
        poly_assign(a, g.slot());
    else
        gcd_of_lists(a, b, g, names);
    if (!poly_iszero(g.get())) answer_form(g, names);
    if (!is_constant(g.get()) && !poly_iszero(a) && !poly_iszero(b) &&
        !(divides_roughly(a, g.get(), names) && divides_roughly(b, g.get(), names)))
        poly_set(1, g.slot());
    g.release_to(result);
}

} // namespace tolvek
