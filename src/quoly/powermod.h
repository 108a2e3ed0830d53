/* Powers of values modulo a value. */
#pragma once

#include "quoly/quoly.h"

namespace tolvek {

/* *r := base^exponent modulo the modulus: the remainder that | gives. The base has no denominator; the exponent is an
   integer in chain form. Errors, with the result 0: 287 a negative exponent, which is shown before; 22 a modulus 0; 288
   a modulus with a denominator, or a number in a modular ring; 197 a leading coefficient other than 1 of a polynomial
   modulus; 198 negative exponents of variables; 291 a modulus in field variables. Not for floats. */
void powermod(const quolynode *base, const quolynode *m, const number *exponent, quolynode **r);

} // namespace tolvek
