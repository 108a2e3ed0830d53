/* Quotients and remainders of flat numbers. */
#pragma once

#include "numbers/flat_basic.h"

namespace tolvek {

/* Limbs of divisor and quotient from which the division goes by blocks instead of limb by limb. Measured by
   bench/kernels/numbers.cpp (flat_divide_method). Tests lower it; not below 4. */
extern size_t flat_divide_cut;
/* q := floor(a / b) in na - nb + 1 limbs, r := a - q b in nb limbs. b is normal and na >= nb. A null q or r is not
   wanted. q and r overlap neither each other nor b; either may lie over a. Long ones pass safe points. */
void flat_divide(limb *q, limb *r, const limb *a, size_t na, const limb *b, size_t nb);

/* What divisions by one limb need of it: the divisor with its top bit set, and its reciprocal
   (N. Moeller and T. Granlund, Improved division by invariant integers, 2011). */
struct limb_divisor {
    limb d;       /* the divisor times 2^shift */
    limb inverse; /* floor((2^128 - 1) / d) - 2^64 */
    int shift;

    explicit limb_divisor(limb divisor); /* not 0 */
};

/* q := floor(a / b) in n limbs; a mod b comes back. q may be a. n may be 0. */
limb flat_divide_limb(limb *q, const limb *a, size_t n, const limb_divisor &b);
limb flat_divide_limb(limb *q, const limb *a, size_t n, limb b);
limb flat_mod_limb(const limb *a, size_t n, limb b); /* without reciprocal steps for long a and b below 2^61 */

/* The kernels. b has its top bit set and n >= 2 limbs (n >= 4 by blocks). a has n + m limbs; it becomes the remainder
   in its low n limbs and zeros above. q gets m limbs; the limb above them, 0 or 1, comes back. */
limb flat_divide_school(limb *q, limb *a, size_t m, const limb *b, size_t n);
limb flat_divide_blocks(limb *q, limb *a, size_t m, const limb *b, size_t n);

} // namespace tolvek
