/* a = a1 X + a0 and b = b1 X + b0 with X = 2^(64 h): three products instead of four,

     a b = a1 b1 X^2 + (a0 b0 + a1 b1 - (a0 - a1)(b0 - b1)) X + a0 b0.

   The differences are taken in magnitude, so that no operand grows by a carry. */
#include "numbers/flat_mult.h"

namespace tolvek {

namespace {

/* dst := |low - high| for the halves of a number of n limbs, the lower one of h; 1 when the difference is negative. */
int half_difference(limb *dst, const limb *a, size_t h, size_t n) {
    const size_t top = n - h; /* h or h - 1 */
    if (top == h) return flat_difference(dst, a, a + h, h);
    if (a[h - 1]) {
        flat_sub(dst, a, h, a + h, top);
        return 0;
    }
    dst[h - 1] = 0;
    return flat_difference(dst, a, a + h, top);
}

/* dst holds z0 (2h limbs) and z2 (the rest), `cross` holds |(a0 - a1)(b0 - b1)| in 2h limbs and has one limb more:
   adds the middle term z0 + z2 -+ cross. It is never negative and below 2 X^2, so its carry is 0 or 1. */
void add_middle(limb *dst, limb *cross, size_t h, size_t n, int cross_is_negative) {
    const size_t top = 2 * n - 2 * h;
    if (cross_is_negative) {
        cross[2 * h] = flat_add(cross, cross, dst, 2 * h);
        cross[2 * h] += flat_add(cross, cross, 2 * h, dst + 2 * h, top);
    } else {
        /* z0 - cross may be negative for a moment: the borrow meets the carry of the next line. */
        const limb borrow = flat_sub(cross, dst, cross, 2 * h);
        cross[2 * h] = flat_add(cross, cross, 2 * h, dst + 2 * h, top) - borrow;
    }
    flat_add(dst + h, dst + h, 2 * n - h, cross, 2 * h + 1); /* from n = 4 on the room suffices */
}

void part_product(limb *dst, const limb *a, const limb *b, size_t n, limb *scratch) {
    if (n < flat_karatsuba_cut)
        flat_mult_school(dst, a, n, b, n);
    else if (n >= flat_transform_cut)
        flat_mult(dst, a, n, b, n);
    else
        flat_mult_karatsuba(dst, a, b, n, scratch);
}

void part_square(limb *dst, const limb *a, size_t n, limb *scratch) {
    if (n < flat_square_karatsuba_cut)
        flat_square_school(dst, a, n);
    else if (n >= flat_square_transform_cut)
        flat_square(dst, a, n);
    else
        flat_square_karatsuba(dst, a, n, scratch);
}

} // namespace

void flat_mult_karatsuba(limb *dst, const limb *a, const limb *b, size_t n, limb *scratch) {
    const size_t h = (n + 1) / 2;
    limb *cross = scratch, *rest = scratch + 2 * h + 1;
    const int a_less = half_difference(dst, a, h, n), b_less = half_difference(dst + h, b, h, n);
    part_product(cross, dst, dst + h, h, rest);
    part_product(dst, a, b, h, rest);
    part_product(dst + 2 * h, a + h, b + h, n - h, rest);
    add_middle(dst, cross, h, n, a_less != b_less);
}

void flat_square_karatsuba(limb *dst, const limb *a, size_t n, limb *scratch) {
    const size_t h = (n + 1) / 2;
    limb *cross = scratch, *rest = scratch + 2 * h + 1;
    half_difference(dst, a, h, n);
    part_square(cross, dst, h, rest);
    part_square(dst, a, h, rest);
    part_square(dst + 2 * h, a + h, n - h, rest);
    add_middle(dst, cross, h, n, 0);
}

} // namespace tolvek
