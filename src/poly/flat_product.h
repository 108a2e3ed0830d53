/* Products by way of flat arrays. */
#pragma once

#include "poly/flat_poured.h"

namespace tolvek {

/* Sizes that steer the product of flat polynomials, each with what it was measured by in bench/kernels/poly.cpp. Tests
   lower them to reach every branch. */
struct flat_limits {
    uint64_t zone_cells;      /* cells of the dense zone: they stay in the nearest cache */
    uint64_t lone_cells;      /* the same where the zone is the last level alone */
    uint64_t cells_a_product; /* a set of products goes through cells if there are at most so many for each */
    uint64_t sorted_products; /* else a set of at most so many products is written out and sorted, ... */
    uint64_t sparse_products; /* ... or of so many where there are very many places for each */
    uint64_t window_pairs;    /* pairs of nodes that are brought into order at one time */
};
extern flat_limits flat_limit;

/* Limbs of a coefficient beyond which products of single coefficients are better left to the long-integer product. */
extern int flat_widest;
bool narrow_coefficients(const poly_extent &a, const poly_extent &b);

/* Can a * b be computed by way of flat arrays? Not for floats, table fields and constants. */
bool fits_flat_product(const poly_extent &a, const poly_extent &b);

/* *p := a * b, whose extents are given and fit; exponents of the product are in range. Coefficients of any length are
   right, but all take the room of the longest. */
void mult_flat(const polynode *a, const poly_extent &xa, const polynode *b, const poly_extent &xb, polynode **p);

} // namespace tolvek
