/* Division by blocks: a quotient of n limbs is found as two of n/2, each from the upper halves of the operands, with
   the product of quotient and lower half taken off afterwards (C. Burnikel and J. Ziegler, Fast recursive division,
   1998; the form that works in place is in R. Brent and P. Zimmermann, Modern Computer Arithmetic, algorithm 1.8). */
#include "numbers/flat_divide.h"

#include "numbers/flat_mult.h"
#include "top/heap.h"
#include "top/interrupts.h"

namespace tolvek {

size_t flat_divide_cut = 50;

namespace {

/* a holds n + k limbs of a remainder by the upper part of the divisor; takes off q times the divisor's lower k limbs,
   with q of m limbs and `above` the limb over them. A negative rest is mended by lowering q. `scratch` has m + k
   limbs. n = m + k limbs are the whole divisor. */
limb take_off_lower(limb *q, size_t m, limb above, limb *a, const limb *b, size_t k, limb *scratch) {
    const size_t n = m + k;
    flat_mult(scratch, q, m, b, k);
    limb borrow = flat_sub(a, a, scratch, n);
    if (above) borrow += flat_sub(a + m, a + m, b, k);
    while (borrow) {
        above -= flat_sub_limb(q, q, m, 1);
        borrow -= flat_add(a, a, b, n);
    }
    return above;
}

/* 2n limbs by n. */
limb divide_even(limb *q, limb *a, const limb *b, size_t n, limb *scratch) {
    if (n < flat_divide_cut) return flat_divide_school(q, a, n, b, n);
    safe_point();
    const size_t low = n / 2, high = n - low;
    limb above = divide_even(q + low, a + 2 * low, b + low, high, scratch);
    above = take_off_lower(q + low, high, above, a + low, b, low, scratch);
    const limb middle = divide_even(q, a + high, b + high, low, scratch);
    take_off_lower(q, low, middle, a, b, high, scratch); /* the rest is below b, so that nothing stays above q */
    return above;
}

/* n + m limbs by n with m <= n. */
limb divide_block(limb *q, limb *a, size_t m, const limb *b, size_t n, limb *scratch) {
    if (m == n) return divide_even(q, a, b, n, scratch);
    if (m < flat_divide_cut) return flat_divide_school(q, a, m, b, n);
    const limb above = divide_even(q, a + n - m, b + n - m, m, scratch);
    return take_off_lower(q, m, above, a, b, n - m, scratch);
}

} // namespace

/* Quotient limbs that the plain method finds between two safe points: some milliseconds. */
static constexpr size_t school_stretch = 16384;

/* The plain method in stretches, for a short divisor. */
static limb divide_stretches(limb *q, limb *a, size_t m, const limb *b, size_t n) {
    size_t at = (m - 1) / school_stretch * school_stretch;
    const limb above = flat_divide_school(q + at, a + at, m - at, b, n);
    while (at) {
        safe_point();
        at -= school_stretch;
        flat_divide_school(q + at, a + at, school_stretch, b, n);
    }
    return above;
}

limb flat_divide_blocks(limb *q, limb *a, size_t m, const limb *b, size_t n) {
    if (m < flat_divide_cut || n < flat_divide_cut) return divide_stretches(q, a, m, b, n);
    buffer<limb> scratch(n);
    size_t at = (m - 1) / n * n; /* the blocks are of n limbs but for the first one, from the top */
    limb above = divide_block(q + at, a + at, m - at, b, n, scratch.data());
    while (at) {
        at -= n;
        divide_even(q + at, a + at, b, n, scratch.data());
    }
    return above;
}

} // namespace tolvek
