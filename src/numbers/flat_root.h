/* Square roots of flat numbers. */
#pragma once

#include "numbers/flat_basic.h"

namespace tolvek {

/* s := floor(sqrt(a)) in (n + 1) / 2 limbs. a is normal, n >= 1. s does not overlap a. Long ones pass safe points. */
void flat_root(limb *s, const limb *a, size_t n);

/* The kernel: s := floor(sqrt(a)) in n limbs, for a of 2n limbs with one of its two top bits set. The remainder, at
   most 2 s, is left in the low n limbs of a; the bit above them comes back. `scratch` has n limbs. */
limb flat_root_remainder(limb *s, limb *a, size_t n, limb *scratch);

} // namespace tolvek
