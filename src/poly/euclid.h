/* Euclid's algorithm on polynomials: greatest common divisors in one variable over a prime field, or a table field, by way
   of flat arrays; cofactors, in other rings too.

   But for rev_euclid and reverse_euclid the operands have numbers as coefficients and no negative exponents; the modulus is a
   prime, and the ring in force is modular. Operands come back unchanged; a destination may hold an operand, and its old value goes when the new one is
   complete. pt: the record of the variable, which is not asked. All routines pass safe points. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* *g := the greatest common divisor, monic unless it is 0. Degrees above most_flat_degree (flat_uni.h) are an internal
   error, and *g is 1. Both names are one routine: it suits every modulus. */
void fastest_poly_gcd(const polynode *u, const polynode *v, polynode **g, int make_monic, pt *names);
void faster_poly_gcd(const polynode *u, const polynode *v, polynode **g, int make_monic, pt *names);
/* The same; a number other than 0 as the last remainder gives 1. test_first is for nothing but the road. */
void emgcd_poly(const polynode *a, const polynode *b, polynode **g, pt *names, int test_first);

/* s * a + t * b = 1, and 1; or 0, and s and t as they were, when a and b have a common factor or b is 0. The degrees of
   s and t are below those of b and a unless one of the operands is a constant. */
int mod_rev_euclid(const polynode *a, const polynode *b, polynode **s, polynode **t, pt *names);

/* The same in every ring in which the leading coefficients that are met are units; 0 where one is none. */
int rev_euclid(const polynode *a, const polynode *b, polynode **s, polynode **t, pt *names);

/* s * a + t * b = d, where d, other than 0, has no top variable: b has the inverse t / d modulo a, with d in the ring of
   the coefficients, which has no zero divisors. Over the integers s, t and d have no common integer factor. Result 1; or
   error 85 when a and b have a common factor with the variable, or b is 0, and 0 where that returns, with s, t and d as
   they were. (G. Collins, 1967: remainders that are made primitive) */
int reverse_euclid(const polynode *a, const polynode *b, polynode **s, polynode **t, polynode **d, pt *names);

/* g := the greatest common divisor, monic, with s * a + t * b = g. g, s and t are three; each may be null. */
void extended_poly_gcd(const polynode *a, const polynode *b, polynode **g, polynode **s, polynode **t);

} // namespace tolvek
