/* Greatest common divisors of flat numbers. */
#pragma once

#include "numbers/flat_basic.h"

namespace tolvek {

/* By halving and subtracting; operands above 0. */
limb flat_gcd_word(limb a, limb b);
limb2 flat_gcd_double_word(limb2 a, limb2 b);

/* dst := gcd(a, b), normal; its count of limbs comes back. a and b are normal, not 0, and are destroyed; dst has room
   for the shorter one and overlaps neither. Passes safe points. */
size_t flat_gcd(limb *dst, limb *a, size_t na, limb *b, size_t nb);

} // namespace tolvek
