/* Products of flat numbers. flat_mult and flat_square choose; each method can be called by name.

   The destination has na + nb (2n) limbs, all of which are written, and overlaps no operand. Counts are at least 1.
   Products longer than some thousand limbs pass safe points, at which nothing is borrowed from the caller. */
#pragma once

#include "numbers/flat_basic.h"

namespace tolvek {

/* Cut-offs, in limbs of the shorter operand: the least length for which the method is taken. Measured by
   bench/kernels/numbers.cpp (flat_mult_method). Tests lower them; none may be below 4. */
extern size_t flat_karatsuba_cut;        /* splitting in halves beats the plain product */
extern size_t flat_transform_cut;        /* the number-theoretic transform beats both */
extern size_t flat_square_karatsuba_cut; /* the same two for squares */
extern size_t flat_square_transform_cut;

void flat_mult(limb *dst, const limb *a, size_t na, const limb *b, size_t nb);
void flat_square(limb *dst, const limb *a, size_t n);

/* The plain methods: time na * nb, no safe points. */
void flat_mult_school(limb *dst, const limb *a, size_t na, const limb *b, size_t nb);
void flat_square_school(limb *dst, const limb *a, size_t n);

/* Karatsuba's method (A. Karatsuba and Yu. Ofman, 1962) on operands of one length, going on with flat_mult's plain
   and split methods for the parts. `scratch` has flat_karatsuba_room(n) limbs. */
void flat_mult_karatsuba(limb *dst, const limb *a, const limb *b, size_t n, limb *scratch);
void flat_square_karatsuba(limb *dst, const limb *a, size_t n, limb *scratch);
/* Each level takes 2h + 1 limbs with h = (n + 1) / 2, at most n + 2; there are at most 64 levels. */
inline size_t flat_karatsuba_room(size_t n) { return 2 * n + 4 * 64; }

} // namespace tolvek
