/* Values from their residues modulo several words, by the mixed radix of those (H. Garner, 1959): with moduli m0, m1,
   ... the digits d0, d1, ... of a value are v = d0 + d1 m0 + d2 m0 m1 + ..., 0 <= dk < mk. */
#pragma once

#include "top/tolvek.h"

namespace tolvek {

/* The inverse modulo `modulus` of the product of the list's integers, which are not negative. Without an inverse: the
   line "bad2: " with the product, and error 85; 1 where that returns. */
int32_t inverse_prod(const numnode *list);
/* The same of the product of v - e for the residues e of the list; v exclusive-or e in a table field. */
int32_t multi_inverse_prod(const numnode *list, int32_t v);

/* digits[k] of the value that is residues[k] modulo moduli[k], 0 <= k < n. Moduli from 2 on, no two with a common
   factor: else error 85 (and a digit of 0 where that returns). The ring in force plays no part. */
void mixed_radix_digits(const int32_t *residues, const int32_t *moduli, int n, int32_t *digits);

/* x := the value with these digits, and product := the product of the moduli, which may be null; chains. */
void number_from_mixed_radix(const int32_t *digits, const int32_t *moduli, int n, number *x, number *product);

/* x := the chain with 0 <= x < M, or with `symmetric` -M < 2 x <= M, M the product of the moduli. */
void number_from_residues(const int32_t *residues, const int32_t *moduli, int n, int symmetric, number *x);

} // namespace tolvek
