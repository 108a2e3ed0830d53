/* Euclid's algorithm on polynomials, poured into flat arrays and back; and on lists. */
#include "poly/euclid.h"

#include "numbers/int_gcd.h"
#include "poly/add.h"
#include "poly/divide_work.h"
#include "poly/flat_uni.h"
#include "poly/mult.h"
#include "top/errors.h"
#include "top/stack_limit.h"

#include <initializer_list>

namespace tolvek {

static bool suits_arrays(const polynode *a, const polynode *b, const char *complaint) {
    if (is_uni(a) && is_uni(b)) return true;
    tolvek_error(complaint, 1);
    return false;
}

static void poured_gcd(const polynode *u, const polynode *v, polynode **g, const char *complaint) {
    if (!suits_arrays(u, v, complaint)) return poly_set(1, g);
    const uni_field f = uni_field::in_force();
    uni_poly a, b, d;
    uni_from_poly(u, &a);
    uni_from_poly(v, &b);
    uni_gcd(f, a, b, &d);
    uni_to_poly(d, g);
}

void fastest_poly_gcd(const polynode *u, const polynode *v, polynode **g, int, pt *) {
    poured_gcd(u, v, g, "operands in fastest_poly_gcd.");
}

void faster_poly_gcd(const polynode *u, const polynode *v, polynode **g, int, pt *) {
    poured_gcd(u, v, g, "operands in faster_poly_gcd.");
}

void emgcd_poly(const polynode *a, const polynode *b, polynode **g, pt *, int) {
    poured_gcd(a, b, g, "operands in emgcd_poly.");
}

void extended_poly_gcd(const polynode *a, const polynode *b, polynode **g, polynode **s, polynode **t) {
    if (!suits_arrays(a, b, "operands in extended_poly_gcd.")) return;
    const uni_field f = uni_field::in_force();
    uni_poly x, y, d, u, v;
    uni_from_poly(a, &x);
    uni_from_poly(b, &y);
    uni_extended_gcd(f, x, y, &d, &u, t ? &v : nullptr);
    poly_handle left, right;
    uni_to_poly(u, left.slot());
    if (t) uni_to_poly(v, right.slot());
    if (g) uni_to_poly(d, g);
    if (s) left.release_to(s);
    if (t) right.release_to(t);
}

int mod_rev_euclid(const polynode *a, const polynode *b, polynode **s, polynode **t, pt *) {
    if (poly_iszero(b)) return 0;
    poly_handle g, left, right;
    extended_poly_gcd(a, b, g.slot(), left.slot(), right.slot());
    if (!g || !is_constant(g.get())) return 0;
    left.release_to(s);
    right.release_to(t);
    return 1;
}

/* ---- on lists ---- */

/* p := p * x - y * z */
static void multiply_and_subtract(poly_handle &p, const polynode *x, const polynode *y, const polynode *z, pt *names) {
    poly_handle product;
    poly_mult(p.get(), x, p.slot(), names);
    poly_mult(y, z, product.slot(), names);
    best_poly_sub(p.release(), product.release(), p.slot());
}

/* b is a number: s = 0, t = 1 / b. */
static int reciprocal(const polynode *b, polynode **s, polynode **t) {
    if (!is_unit(b->num)) return 0;
    poly_handle inverse;
    poly_quot(poly_1, b, inverse.slot(), 0);
    poly_set(0, s);
    inverse.release_to(t);
    return 1;
}

int rev_euclid(const polynode *a, const polynode *b, polynode **s, polynode **t, pt *names) {
    check_stack();
    if (poly_iszero(b)) return 0;
    if (is_constant(b)) return reciprocal(b, s, t);
    if (lean_operands(a, b)) return mod_rev_euclid(a, b, s, t, names);
    if (!first_coef_invrtble(b, 1)) return 0;
    poly_handle q, r, left, right;
    basic_poly_divide(a, b, q.slot(), r.slot(), 1);
    if (!rev_euclid(b, r.get(), left.slot(), right.slot(), names)) return 0;
    /* 1 = left b + right (a - q b) */
    multiply_and_subtract(left, poly_1, right.get(), q.get(), names);
    right.release_to(s);
    left.release_to(t);
    return 1;
}

/* ---- with a denominator ---- */

/* Divides all three by the integers that divide them. Chain form. */
static void make_primitive(poly_handle &x, poly_handle &y, poly_handle &z) {
    number_handle common, content;
    find_gcdcoefs(x.get(), &common);
    for (poly_handle *p : {&y, &z}) {
        if (poly_iszero(p->get())) continue;
        find_gcdcoefs(p->get(), &content);
        binary_gcd(&common, &content, &common);
    }
    for (poly_handle *p : {&x, &y, &z}) num_poly_quot(p->slot(), &common);
}

/* *p := its primitive part, and *content its integer content; 1 where the ring is one of words. */
static void take_content(poly_handle &p, poly_handle &content) {
    poly_set(1, content.slot());
    if (lintmode || flotemode) return;
    find_gcdcoefs(p.get(), content->num);
    num_poly_quot(p.slot(), content->num);
}

static bool has_no_variable(const polynode *p) { return is_constant(p) || (p->expo == 0 && !p->next); }

struct cofactors {
    poly_handle s, t, d; /* s a + t b = d */
};

/* False where a and b have a common factor with the variable. b is not 0. */
static bool find_cofactors(const polynode *a, const polynode *b, cofactors &w, pt *names) {
    check_stack();
    if (has_no_variable(b)) {
        poly_set(0, w.s.slot());
        poly_set(1, w.t.slot());
        poly_assign(b, w.d.slot());
        return true;
    }
    poly_handle q, r, c, g;
    poly_mod_and_div(a, b, q.slot(), r.slot(), c.slot(), names);
    if (poly_iszero(r.get())) return false;
    take_content(r, g);
    cofactors below;
    if (!find_cofactors(b, r.get(), below, names)) return false;
    /* d = s' b + t' r with g r = c a - q b: g d = (t' c) a + (g s' - t' q) b */
    multiply_and_subtract(below.s, g.get(), below.t.get(), q.get(), names);
    poly_mult(below.t.get(), c.get(), w.s.slot(), names);
    below.s.release_to(w.t.slot());
    poly_mult(below.d.get(), g.get(), w.d.slot(), names);
    if (!lintmode && !flotemode) make_primitive(w.d, w.s, w.t);
    return true;
}

int reverse_euclid(const polynode *a, const polynode *b, polynode **s, polynode **t, polynode **d, pt *names) {
    cofactors w;
    if (poly_iszero(b) || !find_cofactors(a, b, w, names)) {
        error(85, blank);
        return 0;
    }
    w.s.release_to(s);
    w.t.release_to(t);
    w.d.release_to(d);
    return 1;
}

} // namespace tolvek
