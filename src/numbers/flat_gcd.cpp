/* Lehmer's method (flat_lehmer.h), and halving for one or two limbs. */
#include "numbers/flat_gcd.h"

#include "numbers/flat_lehmer.h"
#include "top/heap.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

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
        const lehmer_matrix m = p.steps();
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
