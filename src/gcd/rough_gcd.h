/* Greatest common divisors of floats to within rounding, in several variables: by pseudo-remainders of primitive parts
   (G. E. Collins, 1967; W. S. Brown, 1971), from which what rounding leaves is dropped. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* *g := a divisor of a and b whose leading number is 1. Remainders lose what is below flote_noise of their operands, and an
   answer that does not divide both within flote_noise is 1. GCD(0, b) is b in that form, GCD(0, 0) is 0. a and b come back
   unchanged; *g may hold one of them. */
void rough_gcd(const polynode *a, const polynode *b, polynode **g, pt *names);

} // namespace tolvek
