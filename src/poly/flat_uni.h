/* Polynomials in one variable on flat arrays, over a field whose elements are words: the integers modulo a prime below
   2^31, or a table field. Sums, multiples and products are the same modulo any number from 2 to 2^31.

   A flat polynomial is the array of its coefficients by exponent, trimmed: its last entry is not 0, and zero is the
   empty array. The field is told by an operand of its own, not by the ring in force; only a table field is that of the
   ring in force.

   Operands come back unchanged. A destination may hold an operand; its old value goes when the new one is complete.
   Long work passes safe points, and an unwinding leaves destinations as they were or empty. */
#pragma once

#include "numbers/modular.h"
#include "poly/model.h"
#include "top/heap.h"

#include <cassert>

namespace tolvek {

/* ---- the field ---- */

struct uni_field {
    uint32_t p;             /* the number of elements */
    bool table;             /* a table field, that of the ring in force */
    uint32_t p_inverse;     /* of an odd p, modulo 2^32 */
    uint32_t word, word_sq; /* 2^32 and 2^64 modulo p */
    uint64_t reciprocal;    /* 2^64 / p, rounded up */

    explicit uni_field(uint32_t prime, bool is_table = false);
    static uni_field in_force(); /* modularmode is on, and the ring is a field */

    bool odd_prime() const { return !table && p % 2; } /* or another odd modulus, where that is allowed */
    bool transforms() const { return !table; }   /* do products have the method of transforms? */
    uint32_t sum(uint32_t a, uint32_t b) const {
        if (table) return a ^ b;
        return a + b >= p ? a + b - p : a + b;
    }
    uint32_t difference(uint32_t a, uint32_t b) const {
        if (table) return a ^ b;
        return a >= b ? a - b : a - b + p;
    }
    uint32_t negative(uint32_t a) const { return difference(0, a); }
    uint32_t product(uint32_t a, uint32_t b) const {
        if (table) return static_cast<uint32_t>(field_product(static_cast<int32_t>(a), static_cast<int32_t>(b)));
        return word_divisor(p, reciprocal).product(a, b);
    }
    uint32_t inverse(uint32_t a) const; /* a is not 0 */
};

/* ---- flat polynomials ---- */

using uni_poly = buffer<uint32_t>;

inline int64_t uni_degree(const uni_poly &a) { return static_cast<int64_t>(a.size()) - 1; } /* -1 for zero */
inline uint32_t uni_lead(const uni_poly &a) { return a[a.size() - 1]; }                     /* a is not zero */
void uni_trim(uni_poly *a);                                                                 /* drops zeros at the end */
void uni_copy(const uni_poly &a, uni_poly *b);
void uni_constant(uint32_t c, uni_poly *a);
bool uni_equal(const uni_poly &a, const uni_poly &b);

/* Does p have coefficients that are numbers, no negative exponents, and a degree of at most most_flat_degree? Then it
   can be poured out, in a modular ring. */
constexpr int32_t most_flat_degree = 1 << 26;
bool is_uni(const polynode *p);
void uni_from_poly(const polynode *p, uni_poly *a);
void uni_to_poly(const uni_poly &a, polynode **p);

/* ---- arithmetic ---- */

void uni_sum(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *c);
void uni_difference(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *c);
void uni_multiple(const uni_field &f, uint32_t c, const uni_poly &a, uni_poly *b); /* b := c * a */
void uni_make_monic(const uni_field &f, uni_poly *a);                              /* zero stays zero */
uint32_t uni_value(const uni_field &f, const uni_poly &a, uint32_t x);
void uni_derivative(const uni_field &f, const uni_poly &a, uni_poly *b);

/* c := a * b: by rows, or by transforms (flat_uni_transform.h). */
void uni_mult(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *c);

/* a = q * b + r, deg r < deg b; b is not zero. q and r are two; either may be null. By rows with delayed reduction, or
   by Newton's method for the inverse of a power series (M. Sieveking, 1972; H. T. Kung, 1974). */
void uni_divide(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *q, uni_poly *r);
/* Does b divide a? Then q := a / b, if not null. */
bool uni_divides(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *q);

/* b := b^e modulo m, for e from 0 on in 2^28-digits as a chain; m is not zero. */
void uni_power_modulo(const uni_field &f, const uni_poly &a, const number *e, const uni_poly &m, uni_poly *b);

/* ---- Euclid ---- */

/* g := the monic greatest common divisor; zero for two zeros. */
void uni_gcd(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *g);

/* The same in place: x := the greatest common divisor, but for a factor of the field; y := 0. */
void uni_euclid(const uni_field &f, uni_poly *x, uni_poly *y);

/* g := the monic greatest common divisor, with s * a + t * b = g. deg s < deg b - deg g and deg t < deg a - deg g, but for operands of which one divides
   the other: then the other's cofactor is 0 and that of the divisor a constant (for a = b, t is the constant). g, s and t
   are three; each may be null. */
void uni_extended_gcd(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *g, uni_poly *s, uni_poly *t);

/* s := the inverse of a modulo m, or false. m has a positive degree. */
bool uni_inverse_modulo(const uni_field &f, const uni_poly &a, const uni_poly &m, uni_poly *s);

/* A product of matrices (0 1; 1 -q): [x'; y'] = [a b; c d] [x; y] with determinant 1, or -1 after an odd number of
   steps. */
struct hg_matrix {
    uni_poly a, b, c, d;
    bool odd = false;
    void make_identity();
};

/* Half of Euclid's steps. deg x >= deg y; with n = deg x and h = (n + 1) / 2, the steps go on while deg y >= h, so that
   afterwards deg x' >= h > deg y'. The matrix may be null. (R. Moenck, 1973; as in K. Thull and C. Yap, 1990) */
void uni_half_gcd(const uni_field &f, uni_poly *x, uni_poly *y, hg_matrix *m);

/* Sizes that steer the routes above, each measured by bench/kernels/univariate.cpp. Tests lower them. */
struct uni_limits {
    uint32_t mult;     /* least length of both factors for a product by transforms */
    uint32_t divide;   /* least length of quotient and divisor for Newton's method */
    uint32_t half_gcd; /* least degree for the recursion of uni_half_gcd */
    uint32_t gcd;      /* least degree for half-GCDs in uni_gcd, without a matrix */
};
extern uni_limits uni_limit;

} // namespace tolvek
