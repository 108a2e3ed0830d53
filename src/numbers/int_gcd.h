/* Greatest common divisors of integers. Operands come back as they were, digit for digit, on every way out. */
#pragma once

#include "numbers/number.h"

namespace tolvek {

uint32_t smallgcd(uint32_t a, uint32_t b); /* both above 0 */
void binary_gcd(number *a, number *b, number *dst); /* chain; positive; gcd(0, b) = |b| */
void gcd(number *a, number *b, number *dst);
/* Chain: g := gcd(a, b), ca := a / g, cb := b / g; *coprime := g is 1. */
void extgcd(number *a, number *b, number *g, number *ca, number *cb, int *coprime);
void gcdnum(quolynode **q1, quolynode **q2);
void find_gcdcoefs(polynode *p, number *g); /* g := the integer content */
void gcd_coefs(polynode *p, quolynode **q);

} // namespace tolvek
