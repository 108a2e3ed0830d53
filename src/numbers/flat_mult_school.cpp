/* The plain product and square, by columns: column k sums the products a[i] b[k-i] in three limbs before it stores
   one, so that the inner loop writes nothing (P. Comba, Exponentiation cryptosystems on the IBM PC, 1990). */
#include "numbers/flat_mult.h"

namespace tolvek {

namespace {

/* The running sum of a column and what it hands to the next one. A column of c products takes 128 + log2(c) bits. */
struct column_sum {
    limb2 low = 0;
    limb high = 0;

    void add(limb2 product) { high += __builtin_add_overflow(low, product, &low); }

    /* The finished limb; the rest moves on to the next column. */
    limb take() {
        const limb done = static_cast<limb>(low);
        low = low >> limb_bits | static_cast<limb2>(high) << limb_bits;
        high = 0;
        return done;
    }
};

/* sum += a[0] b[0] + a[1] b[-1] + ..., count products. */
inline void add_column(column_sum &sum, const limb *a, const limb *b, size_t count) {
    for (; count; count--) sum.add(static_cast<limb2>(*a++) * *b--);
}

} // namespace

void flat_mult_school(limb *dst, const limb *a, size_t na, const limb *b, size_t nb) {
    if (na < nb) {
        const limb *t = a;
        a = b;
        b = t;
        const size_t n = na;
        na = nb;
        nb = n;
    }
    column_sum sum;
    for (size_t k = 0; k < nb; k++) {
        add_column(sum, a, b + k, k + 1);
        dst[k] = sum.take();
    }
    for (size_t k = nb; k < na; k++) {
        add_column(sum, a + (k - nb + 1), b + nb - 1, nb);
        dst[k] = sum.take();
    }
    for (size_t k = na; k + 1 < na + nb; k++) {
        add_column(sum, a + (k - nb + 1), b + nb - 1, na + nb - 1 - k);
        dst[k] = sum.take();
    }
    dst[na + nb - 1] = sum.take();
}

/* Each pair i < k - i is multiplied once; the column is doubled before the square in its middle is added. */
void flat_square_school(limb *dst, const limb *a, size_t n) {
    column_sum sum;
    for (size_t k = 0; k + 1 < 2 * n; k++) {
        const size_t first = k < n ? 0 : k - n + 1;
        const size_t pairs = (k + 1) / 2 - first;
        column_sum half;
        add_column(half, a + first, a + k - first, pairs);
        const limb out = static_cast<limb>(half.low >> (2 * limb_bits - 1));
        sum.high += 2 * half.high + out;
        sum.add(half.low << 1);
        if (k % 2 == 0) sum.add(static_cast<limb2>(a[k / 2]) * a[k / 2]);
        dst[k] = sum.take();
    }
    dst[2 * n - 1] = sum.take();
}

} // namespace tolvek
