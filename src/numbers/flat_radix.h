/* Flat numbers as decimal figures and back, by divide and conquer: the time of a long product or division, times the
   logarithm of the length. */
#pragma once

#include "numbers/flat_basic.h"

namespace tolvek {

/* Limbs up to which a number is converted by single divisions or products. Measured by bench/kernels/numbers.cpp
   (flat_radix_method). Tests lower it; at least 1. */
extern size_t flat_radix_cut;

constexpr int figures_per_group = 8; /* of a decimal-form number's node */

/* Room for the groups of n limbs: 64 log10(2) is below 19.266, a group has 8 figures, groups come in pairs. */
inline size_t flat_groups_room(size_t n) { return n * 5 / 2 + 4; }
/* groups := a in radix 10^8, least significant first, in flat_groups_room(n) elements; the count without zeros at the
   top comes back, at least 1. Passes safe points. */
size_t flat_to_groups(uint32_t *groups, const limb *a, size_t n);

/* Room for the value of so many figures: a limb holds 19 of them. */
inline size_t flat_figures_room(size_t count) { return count / 19 + 2; }
/* dst := the value of `count` figures '0' to '9', most significant first, in flat_figures_room(count) limbs; the count
   of limbs of the normal value comes back. Passes safe points. */
size_t flat_from_figures(limb *dst, const char *figures, size_t count);

} // namespace tolvek
