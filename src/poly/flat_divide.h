/* Exact division of polynomials in several variables on packed exponents. */
#pragma once

#include "poly/flat_poured.h"

namespace tolvek {

/* Sizes that steer exact division on packed exponents; what they cost is seen in bench/kernels/poly.cpp (quotient4,
   quotient5). Tests change them. */
struct flat_division_limits {
    int64_t least_terms;   /* of the dividend */
    uint64_t most_cells;   /* of a slice: they stay near the processor */
    uint64_t cells_a_term; /* slices are cut so that there are at most so many cells for a term of the dividend */
};
extern flat_division_limits flat_division_limit;

enum class flat_verdict {
    divides,
    fails,
    unfit /* this method does not apply; nothing is said about the division */
};

/* *q := a / b and `divides`, or *q stays as it was. Over the integers and modulo a prime; a and b are not 0. A null q is
   not wanted. power_units: exponents of the quotient may be negative, and those of a and b. */
flat_verdict divide_flat(const polynode *a, const polynode *b, polynode **q, bool power_units);

} // namespace tolvek
