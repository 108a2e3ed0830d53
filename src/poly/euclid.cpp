/* Euclid's algorithm on polynomials, poured into flat arrays and back. */
#include "poly/euclid.h"

#include "poly/flat_uni.h"
#include "top/errors.h"

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

} // namespace tolvek
