/* Lehmer's method (D. Lehmer, Euclid's algorithm for large numbers, 1938) with windows of two limbs: Euclid's steps are
   found on the top 128 bits of both operands, collected in a matrix with entries of one limb, and applied at once,
   which takes about 64 bits off either operand in four passes.

   The steps are right for the whole operands, whatever their lower bits are, as long as each remainder exceeds its
   cofactors as told at `steps_of_windows` (T. Jebelean, A double-digit Lehmer-Euclid algorithm for finding the GCD of
   long integers, 1995). */
#include "numbers/flat_gcd.h"

#include "numbers/flat_divide.h"
#include "top/heap.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

/* Euclid's steps on (x, y): after an even number of them the pair is (u0 x - v0 y, v1 y - u1 x), after an odd number
   (v0 y - u0 x, u1 x - v1 y). */
struct lehmer_matrix {
    limb u0 = 1, v0 = 0, u1 = 0, v1 = 1;
    bool odd = false;
    bool is_identity() const { return u1 == 0; }
};

/* floor(a / b) and the remainder in a, for a >= b. Two of three quotients are 1, 2 or 3. */
inline limb2 quotient_of_windows(limb2 &a, limb2 b) {
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

/* Collects steps while they are certain. x >= y are aligned windows. With remainders r(i) and cofactors v(i) >= u(i) of
   y, step i is certain if r(i+1) >= v(i+1) and r(i) - r(i+1) >= v(i) + v(i+1). The first holds while r(i+1) >= 2^64:
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
void combine(limb *dst, limb p, const limb *a, limb q, const limb *b, size_t n) {
    flat_mult_limb(dst, a, n, p);
    flat_sub_product(dst, b, n, q);
}

/* The top 128 bits of x, which has n >= 3 limbs, when it is shifted left by `shift`. */
limb2 window(const limb *x, size_t n, int shift) {
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

    void apply(const lehmer_matrix &m) {
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

    /* (x, y) := (y, x mod y) for y with ny > 0 limbs. */
    void divide(size_t ny) {
        flat_divide(nullptr, x, x, n, y, ny);
        n = ny;
        swap();
    }
};

limb2 double_word(const limb *a, size_t n) { return n > 1 ? static_cast<limb2>(a[1]) << limb_bits | a[0] : a[0]; }

size_t store_double_word(limb *dst, limb2 g) {
    dst[0] = static_cast<limb>(g);
    const limb high = static_cast<limb>(g >> limb_bits);
    if (high) dst[1] = high;
    return high ? 2 : 1;
}

/* Steps until y is 0 or x has at most two limbs; the limbs of y, 0 in the first case. */
size_t reduce_pair(lehmer_pair &p) {
    size_t work = 0;
    for (;;) {
        p.n = flat_length(p.x, p.n);
        const size_t ny = flat_length(p.y, p.n);
        if (ny == 0 || p.n <= 2) return ny;
        const int shift = __builtin_clzll(p.x[p.n - 1]);
        const lehmer_matrix m = steps_of_windows(window(p.x, p.n, shift), window(p.y, p.n, shift));
        if (m.is_identity())
            p.divide(ny);
        else
            p.apply(m);
        if ((work += p.n) > 100000) { /* limbs passed over four times: well below a millisecond */
            work = 0;
            safe_point();
        }
    }
}

} // namespace

limb flat_gcd_word(limb a, limb b) {
    const int twos = __builtin_ctzll(a | b);
    a >>= __builtin_ctzll(a);
    do {
        b >>= __builtin_ctzll(b);
        const limb less = a < b ? a : b;
        b = a < b ? b - a : a - b;
        a = less;
    } while (b);
    return a << twos;
}

limb2 flat_gcd_double_word(limb2 a, limb2 b) {
    const auto zeros = [](limb2 x) {
        const limb low = static_cast<limb>(x);
        return low ? __builtin_ctzll(low) : limb_bits + __builtin_ctzll(static_cast<limb>(x >> limb_bits));
    };
    const int twos = zeros(a | b);
    a >>= zeros(a);
    b >>= zeros(b);
    while (a >> limb_bits || b >> limb_bits) {
        if (a == b) return a << twos;
        if (a < b) {
            const limb2 t = a;
            a = b;
            b = t;
        }
        a -= b;
        a >>= zeros(a);
    }
    return static_cast<limb2>(flat_gcd_word(static_cast<limb>(a), static_cast<limb>(b))) << twos;
}

size_t flat_gcd(limb *dst, limb *a, size_t na, limb *b, size_t nb) {
    if (flat_compare(a, na, b, nb) < 0) return flat_gcd(dst, b, nb, a, na);
    if (nb == 1) {
        const limb rest = na == 1 ? a[0] : flat_mod_limb(a, na, b[0]);
        dst[0] = rest ? flat_gcd_word(b[0], rest) : b[0];
        return 1;
    }
    if (na == 2) return store_double_word(dst, flat_gcd_double_word(double_word(a, 2), double_word(b, 2)));
    buffer<limb> room(3 * nb);
    lehmer_pair p{b, a, room.data(), room.data() + nb, nb};
    if (na > nb)
        flat_divide(nullptr, a, a, na, b, nb);
    else
        p.swap();
    /* From here on both have nb limbs; x may be the longer one by value, either way round. */
    if (flat_compare(p.x, p.y, p.n) < 0) p.swap();
    const size_t ny = reduce_pair(p);
    if (ny == 0) {
        flat_copy(dst, p.x, p.n);
        return p.n;
    }
    return store_double_word(dst, flat_gcd_double_word(double_word(p.x, p.n), double_word(p.y, ny)));
}

} // namespace tolvek
