#include "numbers/flat_basic.h"

#include <immintrin.h>

namespace tolvek {

namespace {

/* Limb i of a sum or difference; `carry` runs from limb to limb in the processor's carry flag. */
inline void add_step(limb *dst, const limb *a, const limb *b, size_t i, unsigned char &carry) {
    unsigned long long s;
    carry = _addcarry_u64(carry, a[i], b[i], &s);
    dst[i] = s;
}

inline void sub_step(limb *dst, const limb *a, const limb *b, size_t i, unsigned char &borrow) {
    unsigned long long s;
    borrow = _subborrow_u64(borrow, a[i], b[i], &s);
    dst[i] = s;
}

} // namespace

int flat_compare(const limb *a, const limb *b, size_t n) {
    while (n--)
        if (a[n] != b[n]) return a[n] < b[n] ? -1 : 1;
    return 0;
}

int flat_compare(const limb *a, size_t na, const limb *b, size_t nb) {
    if (na != nb) return na < nb ? -1 : 1;
    return flat_compare(a, b, na);
}

limb flat_add(limb *dst, const limb *a, const limb *b, size_t n) {
    unsigned char carry = 0;
    size_t i = 0;
    for (; i + 4 <= n; i += 4) {
        add_step(dst, a, b, i, carry);
        add_step(dst, a, b, i + 1, carry);
        add_step(dst, a, b, i + 2, carry);
        add_step(dst, a, b, i + 3, carry);
    }
    for (; i < n; i++) add_step(dst, a, b, i, carry);
    return carry;
}

limb flat_sub(limb *dst, const limb *a, const limb *b, size_t n) {
    unsigned char borrow = 0;
    size_t i = 0;
    for (; i + 4 <= n; i += 4) {
        sub_step(dst, a, b, i, borrow);
        sub_step(dst, a, b, i + 1, borrow);
        sub_step(dst, a, b, i + 2, borrow);
        sub_step(dst, a, b, i + 3, borrow);
    }
    for (; i < n; i++) sub_step(dst, a, b, i, borrow);
    return borrow;
}

limb flat_add(limb *dst, const limb *a, size_t na, const limb *b, size_t nb) {
    const limb carry = flat_add(dst, a, b, nb);
    return flat_add_limb(dst + nb, a + nb, na - nb, carry);
}

limb flat_sub(limb *dst, const limb *a, size_t na, const limb *b, size_t nb) {
    const limb borrow = flat_sub(dst, a, b, nb);
    return flat_sub_limb(dst + nb, a + nb, na - nb, borrow);
}

limb flat_add_limb(limb *dst, const limb *a, size_t n, limb w) {
    size_t i = 0;
    for (; i < n && w; i++) w = __builtin_add_overflow(a[i], w, &dst[i]);
    if (dst != a) flat_copy(dst + i, a + i, n - i);
    return w;
}

limb flat_sub_limb(limb *dst, const limb *a, size_t n, limb w) {
    size_t i = 0;
    for (; i < n && w; i++) w = __builtin_sub_overflow(a[i], w, &dst[i]);
    if (dst != a) flat_copy(dst + i, a + i, n - i);
    return w;
}

int flat_difference(limb *dst, const limb *a, const limb *b, size_t n) {
    const int less = flat_compare(a, b, n) < 0;
    if (less)
        flat_sub(dst, b, a, n);
    else
        flat_sub(dst, a, b, n);
    return less;
}

limb flat_shift_left(limb *dst, const limb *a, size_t n, int bits) {
    const int back = limb_bits - bits;
    limb above = a[n - 1];
    const limb out = above >> back;
    for (size_t i = n - 1; i > 0; i--) {
        const limb below = a[i - 1];
        dst[i] = above << bits | below >> back;
        above = below;
    }
    dst[0] = above << bits;
    return out;
}

limb flat_shift_right(limb *dst, const limb *a, size_t n, int bits) {
    const int back = limb_bits - bits;
    limb below = a[0];
    const limb out = below << back;
    for (size_t i = 0; i + 1 < n; i++) {
        const limb above = a[i + 1];
        dst[i] = below >> bits | above << back;
        below = above;
    }
    dst[n - 1] = below >> bits;
    return out;
}

/* The three below: a product, a limb and a carry are at most (2^64 - 1)^2 + 2 (2^64 - 1) = 2^128 - 1. */

limb flat_mult_limb(limb *dst, const limb *a, size_t n, limb w) {
    limb carry = 0;
#pragma GCC unroll 4
    for (size_t i = 0; i < n; i++) {
        const limb2 t = static_cast<limb2>(a[i]) * w + carry;
        dst[i] = static_cast<limb>(t);
        carry = static_cast<limb>(t >> limb_bits);
    }
    return carry;
}

limb flat_add_product(limb *dst, const limb *a, size_t n, limb w) {
    limb carry = 0;
#pragma GCC unroll 4
    for (size_t i = 0; i < n; i++) {
        const limb2 t = static_cast<limb2>(a[i]) * w + dst[i] + carry;
        dst[i] = static_cast<limb>(t);
        carry = static_cast<limb>(t >> limb_bits);
    }
    return carry;
}

limb flat_sub_product(limb *dst, const limb *a, size_t n, limb w) {
    limb carry = 0;
#pragma GCC unroll 4
    for (size_t i = 0; i < n; i++) {
        const limb2 t = static_cast<limb2>(a[i]) * w + carry;
        const limb low = static_cast<limb>(t), was = dst[i];
        dst[i] = was - low;
        carry = static_cast<limb>(t >> limb_bits) + (was < low); /* the high half is at most 2^64 - 2 */
    }
    return carry;
}

} // namespace tolvek
