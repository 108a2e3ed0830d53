/* Flat numbers: natural numbers as arrays of 64-bit limbs, least significant first. The form in which long operands
   are worked on; values live and pass as chains (number.h), and flat_pour.h takes them across.

   For the whole flat_ family: operands first for the eye only: the destination is the FIRST argument and the count of
   limbs stands behind each array, as in flat_mult(dst, a, na, b, nb). Nothing here knows of signs or rings, raises
   numbered errors or owns memory; room is the caller's matter. A limb count may be 0 only where a line says so, and
   leading zero limbs are fine unless a line says "normal" (top limb not 0). Unless a line says otherwise dst may be
   one of the operands but must not overlap them in part.

   The routines of this file take time linear in their counts and hold no safe point. */
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tolvek {

using std::size_t;
using limb = uint64_t;
using limb2 = unsigned __int128; /* a product of two limbs, a carry included */

constexpr int limb_bits = 64;

inline void flat_copy(limb *dst, const limb *a, size_t n) {
    if (n) std::memmove(dst, a, n * sizeof(limb));
}
inline void flat_clear(limb *dst, size_t n) {
    if (n) std::memset(dst, 0, n * sizeof(limb));
}

/* n less the zero limbs at the top; 0 for the value 0. */
inline size_t flat_length(const limb *a, size_t n) {
    while (n && !a[n - 1]) n--;
    return n;
}

/* Bits of a normal number; 0 for n = 0. */
inline size_t flat_bits(const limb *a, size_t n) {
    return n ? n * limb_bits - static_cast<size_t>(__builtin_clzll(a[n - 1])) : 0;
}

int flat_compare(const limb *a, const limb *b, size_t n);             /* -1, 0, 1; n may be 0 */
int flat_compare(const limb *a, size_t na, const limb *b, size_t nb); /* both normal */

/* Sums and differences; the carry or borrow, 0 or 1, comes back. n may be 0; na is at least nb. */
limb flat_add(limb *dst, const limb *a, const limb *b, size_t n);
limb flat_sub(limb *dst, const limb *a, const limb *b, size_t n);
limb flat_add(limb *dst, const limb *a, size_t na, const limb *b, size_t nb);
limb flat_sub(limb *dst, const limb *a, size_t na, const limb *b, size_t nb);
limb flat_add_limb(limb *dst, const limb *a, size_t n, limb w);
limb flat_sub_limb(limb *dst, const limb *a, size_t n, limb w);

/* dst := |a - b|; 1 when a < b, else 0. */
int flat_difference(limb *dst, const limb *a, const limb *b, size_t n);

/* dst := a * 2^bits or a / 2^bits with 0 < bits < 64. The limb that was shifted out comes back: of a left shift in
   its low bits, of a right shift in its high bits. Left: dst may lie above a; right: below it, overlapping it. */
limb flat_shift_left(limb *dst, const limb *a, size_t n, int bits);
limb flat_shift_right(limb *dst, const limb *a, size_t n, int bits);

/* dst := a * w, dst += a * w, dst -= a * w over n limbs; what goes beyond them comes back. */
limb flat_mult_limb(limb *dst, const limb *a, size_t n, limb w);
limb flat_add_product(limb *dst, const limb *a, size_t n, limb w);
limb flat_sub_product(limb *dst, const limb *a, size_t n, limb w);

} // namespace tolvek
