/* Greatest common divisors of integers. All of them are in chain form, whatever the flags, unless a line says
   otherwise. Operands are only read; a destination may own an operand. gcd(0, b) is |b|, gcd(0, 0) is 0. */
#pragma once

#include "numbers/number.h"

namespace tolvek {

uint32_t smallgcd(uint32_t a, uint32_t b); /* both above 0 */

/* dst := the greatest common divisor, not negative. Any lengths, best for very unequal ones too. */
void binary_gcd(const number *a, const number *b, number *dst);
/* The same by Euclid's divisions of chains, without flat limbs: kept as a second method. */
void gcd(const number *a, const number *b, number *dst);

/* g := gcd(a, b), ca := a / g, cb := b / g, with the signs of a and b; *coprime := g is 1. The three destinations
   differ. For a = b = 0 all three are 0. */
void extgcd(const number *a, const number *b, number *g, number *ca, number *cb, int *coprime);

/* Two plain numbers in the ring in force: *q1 := their greatest common divisor, 1 while flotemode or lintmode is on.
   Where *q1 is 0 it takes over the record of *q2, which is left with the 0; else *q2 is kept. */
void gcdnum(quolynode **q1, quolynode **q2);

/* g := the greatest common divisor of all the numbers of p, its integer content, above 0. For a lone number 0, which
   has none, the internal error "0 in find gcd coefs." is told and g is 1. Passes safe points. */
void find_gcdcoefs(const polynode *p, number *g);
/* *q := the content as a lone number; 1 in the ring in force while flotemode or lintmode is on. The old *q goes. */
void gcd_coefs(const polynode *p, polynode **q);

} // namespace tolvek
