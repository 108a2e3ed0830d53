/* Exact division by way of flat arrays: exponents packed in one word, and a heap of products (M. Monagan and R. Pearce,
   Polynomial division using dynamic arrays, heaps, and packed exponent vectors, 2007). */
#pragma once

#include "poly/flat_poured.h"

namespace tolvek {

/* Least number of terms of dividend and divisor, multiplied, for which an exact division is tried in flat arrays. */
extern int64_t flat_division_cut;

enum class flat_division { not_taken, exact, inexact };

/* *q := a / b, b no constant and a not 0, when the method fits and pays. With not_taken and inexact *q is as it was. A
   null q is not wanted. */
flat_division divide_flat(const polynode *a, const polynode *b, polynode **q);

} // namespace tolvek
