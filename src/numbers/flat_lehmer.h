/* The steps of D. Lehmer's method (Euclid's algorithm for large numbers, 1938) with windows of two limbs: Euclid's steps
   are found on the top 128 bits of both operands, collected in a matrix with entries of one limb, and applied at once,
   which takes about 64 bits off either operand in four passes. Shared by the routines that take such steps.

   The steps are right for the whole operands, whatever their lower bits are, as long as each remainder exceeds its
   cofactors as told at steps_of_windows (T. Jebelean, A double-digit Lehmer-Euclid algorithm for finding the GCD of
   long integers, 1995). */
#pragma once

#include "numbers/flat_divide.h"

namespace tolvek {

/* Euclid's steps on (x, y): after an even number of them the pair is (u0 x - v0 y, v1 y - u1 x), after an odd number
   (v0 y - u0 x, u1 x - v1 y). */
struct lehmer_matrix {
    limb u0 = 1, v0 = 0, u1 = 0, v1 = 1;
    bool odd = false;
    bool is_identity() const { return u1 == 0; }
};

/* Collects steps while they are certain. x >= y are aligned windows. What remains of y is at least 2^64. */
lehmer_matrix steps_of_windows(limb2 x, limb2 y);

/* The top 128 bits of x, which has n >= 3 limbs, when it is shifted left by `shift`. */
inline limb2 lehmer_window(const limb *x, size_t n, int shift) {
    const limb2 top = static_cast<limb2>(x[n - 1]) << limb_bits | x[n - 2];
    return shift ? top << shift | x[n - 3] >> (limb_bits - shift) : top;
}

/* A pair x >= y in n limbs, y filled with zeros, and room for the next pair. */
struct lehmer_pair {
    limb *x, *y, *next_x, *next_y;
    size_t n;

    void swap() {
        limb *t = x;
        x = y;
        y = t;
    }
    void apply(const lehmer_matrix &m);
    /* The steps that the top bits of the pair tell; n >= 3, and x's top limb is not 0. */
    lehmer_matrix steps() const {
        const int shift = __builtin_clzll(x[n - 1]);
        return steps_of_windows(lehmer_window(x, n, shift), lehmer_window(y, n, shift));
    }
    /* (x, y) := (y, x mod y) for y with ny > 0 limbs. A null q is not wanted. */
    void divide(size_t ny, limb *q = nullptr) {
        flat_divide(q, x, x, n, y, ny);
        n = ny;
        swap();
    }
};

} // namespace tolvek
