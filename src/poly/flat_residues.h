/* Products of residues by way of one variable. */
#pragma once

#include "poly/flat_poured.h"

namespace tolvek {

/* The estimated cost of mult_residues, in nanoseconds; for choosing only. Infinite where it does not apply. The operands
   fit flat products. */
double residues_cost(const poly_extent &a, const poly_extent &b);

/* *p := a * b, in a modular ring that is no table field. */
void mult_residues(const polynode *a, const poly_extent &xa, const polynode *b, const poly_extent &xb, polynode **p);

} // namespace tolvek
