/* Residues modulo `modulus` in one word, 0 .. modulus - 1. */
#pragma once

#include "top/tolvek.h"

namespace tolvek {

inline int32_t modmult(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<int64_t>(a) * b % modulus);
}

/* The inverse of x; error 85 when there is none, and 1 where that returns. */
int32_t mod_inverse(int32_t x);

} // namespace tolvek
