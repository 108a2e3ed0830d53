/* Products of chains. All work on the chain whatever the flags. Operands come back unchanged; the destination may
   alias an operand; its old chain goes back when the product is complete. */
#pragma once

#include "numbers/number.h"

namespace tolvek {

extern int multcut; /* length from which fast_mult splits (Karatsuba) */

/* dst := a * digit (signed). penultimate: the node before dst's tail, null when dst has one node. */
void simp_mult(const number *a, number *dst, int32_t digit, numnode **penultimate);
void multiply(const number *a, const number *b, number *dst);  /* schoolbook on chains */
void fast_mult(const number *a, const number *b, number *dst); /* the chooser: every length */

/* The same three in radix 10^8. */
void simp_base_10_mult(const number *a, number *dst, int32_t digit, numnode **penultimate);
void base_10_multiply(const number *a, const number *b, number *dst);
void base_10_fast_mult(const number *a, const number *b, number *dst);

void special_set_2(int32_t a, int32_t b, number *x); /* x := a * b */
int is_product_of(const number *x, int32_t a, int32_t b);
int oversize(int32_t a, int32_t b);        /* a * b exceeds 1,000,000: too many cells for an array */
int sparse_oversize(int32_t a, int32_t b); /* a * b is 2^31 or more */

} // namespace tolvek
