/* Arithmetic on arrays of residues modulo `modulus`, 0 .. modulus - 1. */
#pragma once

#include "top/tolvek.h"

#include <cstddef>

namespace tolvek {

/* The sum of a[i] * b[i], 0 <= i < n. */
int32_t sum_of_products(const int32_t *a, const int32_t *b, std::size_t n);

} // namespace tolvek
