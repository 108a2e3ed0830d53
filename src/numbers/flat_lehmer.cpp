#include "numbers/flat_lehmer.h"

namespace tolvek {

/* floor(a / b) and the remainder in a, for a >= b. Two of three quotients are 1, 2 or 3. */
static limb2 quotient_of_windows(limb2 &a, limb2 b) {
    limb2 q = 1;
    a -= b;
    if (a < b) return q;
    a -= b;
    if (a < b) return q + 1;
    a -= b;
    if (a < b) return q + 2;
    q = a / b;
    a -= q * b;
    return q + 3;
}

/* With remainders r(i) and cofactors v(i) >= u(i) of y, step i is certain if r(i+1) >= v(i+1) and
   r(i) - r(i+1) >= v(i) + v(i+1). The first holds while r(i+1) >= 2^64:
   since r(i) v(i+1) is at most x, v(i+1) is below 2^64, which also keeps the entries in one limb. */
lehmer_matrix steps_of_windows(limb2 x, limb2 y) {
    lehmer_matrix m;
    if (y >> limb_bits == 0) return m;
    for (;;) {
        limb2 r = x;
        const limb q = static_cast<limb>(quotient_of_windows(r, y));
        if (r >> limb_bits == 0) return m;
        const limb u = m.u0 + q * m.u1, v = m.v0 + q * m.v1;
        if (y - r < static_cast<limb2>(v) + m.v1) return m;
        x = y;
        y = r;
        m = {m.u1, m.v1, u, v, !m.odd};
    }
}

/* dst := p a - q b over n limbs; the value is known to be in 0 .. 2^(64 n) - 1. */
static void combine(limb *dst, limb p, const limb *a, limb q, const limb *b, size_t n) {
    flat_mult_limb(dst, a, n, p);
    flat_sub_product(dst, b, n, q);
}

void lehmer_pair::apply(const lehmer_matrix &m) {
    if (m.odd) {
        combine(next_x, m.v0, y, m.u0, x, n);
        combine(next_y, m.u1, x, m.v1, y, n);
    } else {
        combine(next_x, m.u0, x, m.v0, y, n);
        combine(next_y, m.v1, y, m.u1, x, n);
    }
    limb *tx = x, *ty = y;
    x = next_x;
    y = next_y;
    next_x = tx;
    next_y = ty;
}

} // namespace tolvek
