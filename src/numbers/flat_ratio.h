/* Fractions from their residues. */
#pragma once

#include "numbers/flat_value.h"

namespace tolvek {

/* The residue v modulo m, 0 <= v < m, as a fraction: num := the first remainder of Euclid's steps on (m, v) that is at most
   `bound`, and den := the magnitude of its cofactor, so that den v = num or -num modulo m; true: -num. If v is the residue
   of a reduced fraction a / b with |a| <= bound and 2 bound b < m, b and m without a common factor, then this is the
   fraction (P. Wang, 1981). bound is below m. The destinations are none of the operands. Passes safe points. */
bool flat_ratio(flat_value &num, flat_value &den, const flat_value &v, const flat_value &m, const flat_value &bound);

} // namespace tolvek
