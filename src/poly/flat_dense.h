/* Products of well-filled polynomials by number-theoretic transforms. Those of residues: flat_residues.h. */
#pragma once

#include "poly/flat_poured.h"

namespace tolvek {

/* Cells of the longest product; tests lower it. */
extern uint64_t flat_dense_longest;

/* The estimated cost of a * b by transforms, in nanoseconds, and without them, by flat arrays or, for long
   coefficients, by lists; for choosing only. Infinite where the
   method does not apply. The operands fit flat products. */
double transform_cost(const poly_extent &a, const poly_extent &b);
double plain_flat_cost(const poly_extent &a, const poly_extent &b);

/* *p := a * b by transforms; in no modular ring. */
void mult_dense(const polynode *a, const poly_extent &xa, const polynode *b, const poly_extent &xb, polynode **p);

} // namespace tolvek
