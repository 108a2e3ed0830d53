/* Division limb by limb (D. Knuth, The Art of Computer Programming 2, 4.3.1, algorithm D) with quotient limbs from a
   precomputed reciprocal of the two top limbs of the divisor, and the entries that normalise. */
#include "numbers/flat_divide.h"

#include "top/heap.h"

namespace tolvek {

namespace {

/* floor((2^128 - 1) / d) - 2^64 for d with its top bit set. */
limb reciprocal(limb d) { return static_cast<limb>((static_cast<limb2>(~d) << limb_bits | ~limb{0}) / d); }

limb2 join(limb high, limb low) { return static_cast<limb2>(high) << limb_bits | low; }

/* floor((2^192 - 1) / d) - 2^64 for d of two limbs (Moeller and Granlund, algorithm 6). */
limb reciprocal_2(limb d1, limb d0) {
    limb v = reciprocal(d1), p = d1 * v + d0;
    if (p < d0) {
        v--;
        if (p >= d1) {
            v--;
            p -= d1;
        }
        p -= d1;
    }
    const limb2 t = static_cast<limb2>(v) * d0;
    const limb t1 = static_cast<limb>(t >> limb_bits);
    p += t1;
    if (p < t1) {
        v--;
        if (join(p, static_cast<limb>(t)) >= join(d1, d0)) v--;
    }
    return v;
}

/* The quotient limb of (u2 u1 u0) by d, whose two top limbs exceed (u2 u1) (algorithm 5 there). */
inline limb quotient_limb(limb u2, limb u1, limb u0, limb2 d, limb v) {
    const limb d1 = static_cast<limb>(d >> limb_bits), d0 = static_cast<limb>(d);
    const limb2 q = static_cast<limb2>(v) * u2 + join(u2, u1);
    limb q1 = static_cast<limb>(q >> limb_bits);
    const limb q0 = static_cast<limb>(q);
    limb2 r = join(u1 - q1 * d1, u0) - static_cast<limb2>(q1) * d0 - d;
    q1++;
    if (static_cast<limb>(r >> limb_bits) >= q0) {
        q1--;
        r += d;
    }
    if (r >= d) [[unlikely]]
        q1++;
    return q1;
}

/* The quotient and remainder of (high low) by the normalised d > high (algorithm 4 there). */
inline limb divide_step(limb high, limb low, const limb_divisor &b, limb *remainder) {
    const limb2 q = static_cast<limb2>(b.inverse) * high + join(high, low);
    limb q1 = static_cast<limb>(q >> limb_bits) + 1;
    limb r = low - q1 * b.d;
    if (r > static_cast<limb>(q)) {
        q1--;
        r += b.d;
    }
    if (r >= b.d) [[unlikely]] {
        q1++;
        r -= b.d;
    }
    *remainder = r;
    return q1;
}

/* a modulo d < 2^61, four limbs a turn: with B = 2^64 the limbs above the lowest are replaced by multiples of
   B, B^2, ... modulo d. A turn sums 2^64 and five products below 2^64 2^61, less than 2^128; what waits for the division
   at the end is two limbs. */
constexpr limb most_for_folding = limb{1} << 61;
limb fold_modulo(const limb *a, size_t n, limb d) {
    limb power[6] = {1};
    for (int i = 1; i < 6; i++) power[i] = static_cast<limb>((static_cast<limb2>(power[i - 1]) << limb_bits) % d);
    const auto times = [](limb x, limb y) { return static_cast<limb2>(x) * y; };
    limb2 sum = join(a[n - 1], a[n - 2]);
    size_t i = n - 2;
    for (; i >= 4; i -= 4) {
        const limb *x = a + i - 4;
        sum = times(static_cast<limb>(sum >> limb_bits), power[5]) + times(static_cast<limb>(sum), power[4]) +
              times(x[3], power[3]) + times(x[2], power[2]) + times(x[1], power[1]) + x[0];
    }
    while (i-- > 0)
        sum = times(static_cast<limb>(sum >> limb_bits), power[2]) + times(static_cast<limb>(sum), power[1]) + a[i];
    return static_cast<limb>(sum % d);
}

/* Division by more than one limb; the top bit of b is brought up first. */
void divide_long(limb *q, limb *r, const limb *a, size_t na, const limb *b, size_t nb) {
    const int shift = __builtin_clzll(b[nb - 1]);
    const size_t m = na - nb + 1; /* one quotient limb more than needed when the shift fills no limb: it is 0 */
    buffer<limb> work(na + 1 + (shift ? nb : 0) + (q ? 0 : m));
    limb *const rest = work.data(), *const quotient = q ? q : rest + na + 1;
    const limb *divisor = b;
    if (shift) {
        limb *const shifted = rest + na + 1 + (q ? 0 : m);
        flat_shift_left(shifted, b, nb, shift);
        divisor = shifted;
        rest[na] = flat_shift_left(rest, a, na, shift);
    } else {
        flat_copy(rest, a, na);
        rest[na] = 0;
    }
    flat_divide_blocks(quotient, rest, m, divisor, nb);
    if (!r) return;
    if (shift)
        flat_shift_right(r, rest, nb, shift);
    else
        flat_copy(r, rest, nb);
}

} // namespace

limb_divisor::limb_divisor(limb divisor) : shift(__builtin_clzll(divisor)) {
    d = divisor << shift;
    inverse = reciprocal(d);
}

limb flat_divide_limb(limb *q, const limb *a, size_t n, const limb_divisor &b) {
    if (n == 0) return 0;
    limb r = b.shift ? a[n - 1] >> (limb_bits - b.shift) : 0;
    for (size_t i = n; i-- > 0;) {
        limb low = a[i] << b.shift;
        if (b.shift && i) low |= a[i - 1] >> (limb_bits - b.shift);
        q[i] = divide_step(r, low, b, &r);
    }
    return r >> b.shift;
}

limb flat_divide_limb(limb *q, const limb *a, size_t n, limb b) { return flat_divide_limb(q, a, n, limb_divisor(b)); }

limb flat_mod_limb(const limb *a, size_t n, limb b) {
    if (n >= 8 && b < most_for_folding) return fold_modulo(a, n, b);
    const limb_divisor divisor(b);
    limb r = 0;
    if (!divisor.shift) {
        for (size_t i = n; i-- > 0;) divide_step(r, a[i], divisor, &r);
        return r;
    }
    limb above = 0;
    for (size_t i = n; i-- > 0; above = a[i])
        divide_step(r, above << divisor.shift | a[i] >> (limb_bits - divisor.shift), divisor, &r);
    if (n) divide_step(r, a[0] << divisor.shift, divisor, &r);
    return r >> divisor.shift;
}

limb flat_divide_school(limb *q, limb *a, size_t m, const limb *b, size_t n) {
    const limb d1 = b[n - 1], d0 = b[n - 2];
    const limb2 d = join(d1, d0);
    const limb inverse = reciprocal_2(d1, d0);
    const limb above = flat_compare(a + m, b, n) >= 0;
    if (above) flat_sub(a + m, a + m, b, n);
    for (size_t j = m; j-- > 0;) {
        limb *const at = a + j;
        limb digit = ~limb{0};
        if (join(at[n], at[n - 1]) != d) [[likely]]
            digit = quotient_limb(at[n], at[n - 1], at[n - 2], d, inverse);
        const limb borrow = flat_sub_product(at, b, n, digit);
        if (at[n] < borrow) [[unlikely]] { /* one too many: never more, as two limbs were looked at */
            digit--;
            flat_add(at, at, b, n);
        }
        at[n] = 0;
        q[j] = digit;
    }
    return above;
}

void flat_divide(limb *q, limb *r, const limb *a, size_t na, const limb *b, size_t nb) {
    if (nb > 1) {
        divide_long(q, r, a, na, b, nb);
        return;
    }
    const limb rest = q ? flat_divide_limb(q, a, na, b[0]) : flat_mod_limb(a, na, b[0]);
    if (r) r[0] = rest;
}

} // namespace tolvek
