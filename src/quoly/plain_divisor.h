/* Common divisors and exact quotients by plain methods: term by term, and by pseudo-remainders of primitive parts
   (G. E. Collins, 1967; W. S. Brown, 1971). They serve the arithmetic of values in every ring, and as second methods.

   Operands come back unchanged and are not rewritten meanwhile; *g and *q may hold an operand, and their old values go
   when the new one is complete. All pass safe points. Exponents are not negative. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* *q := a / b and true, or false and *q as it was, when b, other than 0, does not divide a with coefficients of the ring
   in force. Where the modulus is not prime a leading number that is no unit divides nothing. */
bool exact_quotient(const polynode *a, const polynode *b, polynode **q);
/* For floats: *q := the quotient, each step of which drops the leading term whatever rounding leaves of it; the remainder
   is forgotten. False where degrees forbid a step. */
bool rough_quotient(const polynode *a, const polynode *b, polynode **q);

/* *q and *r with a = *q * b + *r, the degree of *r in the main variable of b below that of b; that variable may lie below
   the one of a, whose coefficients are divided then. b is no constant. False, with both as they were, where the leading
   coefficient of b does not divide what it meets. */
bool quotient_and_rest(const polynode *a, const polynode *b, polynode **q, polynode **r);

/* *g := the greatest common divisor. Over the integers its leading number is positive and its integer content is in it; in
   a prime field and over floats its leading number is 1. GCD(0, b) is b in that form, GCD(0, 0) is 0. Modulo a composite
   number it is a common divisor: one of the operands where it divides the other, else 1. Over floats remainders lose what
   is below flote_noise of their operands, and an answer that does not divide both within flote_noise is 1. */
void plain_gcd(const polynode *a, const polynode *b, polynode **g);

/* The largest coefficient of a remainder over floats, in proportion to those it comes from, that counts as rounding: 24
   of the 64 bits of a float may be lost. */
constexpr long double flote_noise = 0x1p-40L;

} // namespace tolvek
