/* Powers by way of flat arrays. */
#pragma once

#include "poly/flat_poured.h"

namespace tolvek {

/* *p := p^e, e at least 2, when the method applies: exact integers of one word, or residues modulo a prime that divides
   no denominator of the recurrence. Else false, and *p is as it was. x: the extent of p; exponents of the power are in
   range. */
bool power_flat(polynode **p, uint32_t e, const poly_extent &x);

/* The estimated cost of p^e in nanoseconds: by power_flat (infinite if it does not apply), by e - 1 products by p, and
   by binary powering. For choosing only. */
struct power_costs {
    double flat, steps, squares;
};
power_costs estimate_power(const poly_extent &x, uint32_t e);

} // namespace tolvek
