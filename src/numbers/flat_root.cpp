/* P. Zimmermann, Karatsuba square root, 1999: with a = a' X^2 + a1 X + a0 and (s', r') the root and remainder of a',

     r' X + a1 = 2 s' q + u,   s = s' X + q,   r = u X + a0 - q^2,

   and s is one too great if r is negative. The time is that of a division. */
#include "numbers/flat_root.h"

#include "numbers/flat_divide.h"
#include "numbers/flat_mult.h"
#include "top/heap.h"
#include "top/interrupts.h"

#include <cmath>

namespace tolvek {

namespace {

/* Two limbs. The extended float is within a few units of the root, which the loops mend. */
limb root_of_double_word(limb *s, limb *a) {
    const limb2 value = static_cast<limb2>(a[1]) << limb_bits | a[0];
    const long double guess = std::sqrt(static_cast<long double>(value));
    limb root = guess >= 0x1p64L ? ~limb{0} : static_cast<limb>(guess);
    while (static_cast<limb2>(root) * root > value) root--;
    limb2 rest = value - static_cast<limb2>(root) * root;
    while (rest > 2 * static_cast<limb2>(root)) rest -= 2 * static_cast<limb2>(root++) + 1;
    *s = root;
    a[0] = static_cast<limb>(rest);
    return static_cast<limb>(rest >> limb_bits);
}

/* q := a / b with m quotient limbs, b of n limbs with its top bit set; as flat_divide_school, for n = m = 1 as well. */
limb divide_by_root(limb *q, limb *a, size_t m, const limb *b, size_t n) {
    if (n > 1) return flat_divide_blocks(q, a, m, b, n);
    const limb above = a[1] >= b[0];
    const limb2 rest = static_cast<limb2>(above ? a[1] - b[0] : a[1]) << limb_bits | a[0];
    q[0] = static_cast<limb>(rest / b[0]);
    a[0] = static_cast<limb>(rest % b[0]);
    a[1] = 0;
    return above;
}

} // namespace

limb flat_root_remainder(limb *s, limb *a, size_t n, limb *scratch) {
    if (n == 1) return root_of_double_word(s, a);
    if (n > 1000) safe_point();
    const size_t low = n / 2, high = n - low;
    limb *const upper = s + low;
    limb above = flat_root_remainder(upper, a + 2 * low, high, scratch);

    /* (above, a[low ..)) is r' X + a1. It is divided by s', and the quotient then halved. */
    if (above) flat_sub(a + 2 * low, a + 2 * low, upper, high);
    above += divide_by_root(s, a + low, low, upper, high);
    const limb odd = s[0] & 1;
    flat_shift_right(s, s, low, 1);
    s[low - 1] |= above << (limb_bits - 1);
    above >>= 1; /* q = X: its square is X^2, and s' takes the carry */
    int64_t carry = odd ? static_cast<int64_t>(flat_add(a + low, a + low, upper, high)) : 0;

    flat_square(scratch, s, low);
    limb borrow = above + flat_sub(a, a, scratch, 2 * low);
    if (high > low) borrow = flat_sub_limb(a + 2 * low, a + 2 * low, 1, borrow);
    carry -= static_cast<int64_t>(borrow);
    above = flat_add_limb(upper, upper, high, above);
    if (carry < 0) { /* r += 2 s - 1, s -= 1 */
        carry += static_cast<int64_t>(flat_add_product(a, s, n, 2) + 2 * above);
        carry -= static_cast<int64_t>(flat_sub_limb(a, a, n, 1));
        flat_sub_limb(s, s, n, 1);
    }
    return static_cast<limb>(carry);
}

void flat_root(limb *s, const limb *a, size_t n) {
    const size_t half = (n + 1) / 2;
    const int pad = n % 2, even = __builtin_clzll(a[n - 1]) & ~1;
    buffer<limb> work(3 * half);
    limb *const value = work.data();
    value[0] = 0;
    flat_copy(value + pad, a, n);
    if (even) flat_shift_left(value, value, 2 * half, even);
    flat_root_remainder(s, value, half, value + 2 * half);
    const int back = even / 2 + pad * (limb_bits / 2); /* the value was multiplied by 4^back */
    if (back) flat_shift_right(s, s, half, back);
}

} // namespace tolvek
