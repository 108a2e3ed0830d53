/* Second methods: exact quotients term by term, and greatest common divisors by pseudo-remainders of primitive parts. Over the
   integers and modulo primes. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* *q := a / b and true, or false and *q as it was, when b, other than 0, does not divide a. */
bool plain_quotient(const polynode *a, const polynode *b, polynode **q);
/* *g := the greatest common divisor, in the form of an answer of polygcd. */
void plain_gcd(const polynode *a, const polynode *b, polynode **g);

} // namespace tolvek
