/* The product of long flat numbers by number-theoretic transforms, in time n log n.

   The operands are cut into points of 80 bits, which are the coefficients of two polynomials. The product polynomial
   is computed modulo three primes of 62 bits (J. Pollard, The fast Fourier transform in a finite field, 1971), its
   coefficients are put together by the Chinese remainder theorem, and their carries are released. No rounding is
   involved: the value is exact by construction. */
#pragma once

#include "numbers/flat_basic.h"

namespace tolvek {

/* Limbs of the longest product: 2^25 points. Then a coefficient is below 2^25 (2^80 - 1)^2, the three primes'
   product is above 2^185.9, and the primes have roots of unity of order 2^32. */
constexpr size_t flat_transform_limit = (size_t{1} << 25) / 4 * 5;
extern size_t flat_transform_longest; /* tests lower it; longer products are split first */

/* dst := a * b in na + nb limbs, at most flat_transform_longest. dst overlaps no operand. For a = b (the same array
   and count) one of two transforms is spared. Passes safe points. Tables of roots, about 24 bytes a point of the
   longest product so far, are kept until the program ends. */
void flat_mult_transform(limb *dst, const limb *a, size_t na, const limb *b, size_t nb);

} // namespace tolvek
