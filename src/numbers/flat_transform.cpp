#include "numbers/flat_transform.h"

#include "numbers/flat_ntt.h"
#include "top/interrupts.h"

namespace tolvek {

size_t flat_transform_longest = flat_transform_limit;

namespace {

constexpr int point_bits = 80;              /* four points are five limbs */
constexpr size_t points_per_stretch = 4096; /* of reading and writing, between two safe points */

size_t points_of(size_t limbs) { return (limbs * limb_bits + point_bits - 1) / point_bits; }

/* Points first .. last - 1 of a, modulo p, below 2p. With 2^62 = delta modulo p, the 18 bits above the lowest 62 weigh
   delta < 2^39 each. */
void load_points(limb *dst, const limb *a, size_t n, size_t first, size_t last, limb delta) {
    for (size_t i = first; i < last; i++) {
        const size_t at = i / 4 * 5 + i % 4, shift = i % 4 * 16;
        const limb below = a[at], above = at + 1 < n ? a[at + 1] : 0;
        const limb low = shift ? below >> shift | above << (limb_bits - shift) : below;
        const limb high = (above >> shift & 0xFFFF) << 2 | low >> 62;
        dst[i] = (low & ((limb{1} << 62) - 1)) + high * delta;
    }
}

/* dst := the values of the polynomial of a. */
void load_and_transform(limb *dst, const limb *a, size_t n, const ntt_size &size, int field) {
    const size_t points = points_of(n);
    for (size_t i = 0; i < points; i += points_per_stretch) {
        const size_t end = i + points_per_stretch;
        load_points(dst, a, n, i, end < points ? end : points, ntt_fields[field].delta);
        safe_point();
    }
    flat_clear(dst + points, size.points() - points);
    ntt_forward(dst, points, size, field);
}

/* What puts three residues together: x = v0 + p0 (v1 + p1 v2) (H. Garner, The residue number system, 1959). */
struct garner {
    limb p0, p1, p2;
    ntt_root inverse_01;    /* 1 / p0 modulo p1 */
    ntt_root inverse_012;   /* 1 / (p0 p1) modulo p2 */
    ntt_root inverse_12;    /* 1 / p1 modulo p2 */
    limb p01_low, p01_high; /* p0 p1 */

    garner() : p0(ntt_fields[0].p), p1(ntt_fields[1].p), p2(ntt_fields[2].p) {
        const limb i02 = ntt_inverse_of(p0 % p2, p2), i12 = ntt_inverse_of(p1 % p2, p2);
        const limb2 p01 = static_cast<limb2>(p0) * p1;
        inverse_01 = ntt_prepare(ntt_inverse_of(p0 % p1, p1), p1);
        inverse_012 = ntt_prepare(static_cast<limb>(static_cast<limb2>(i02) * i12 % p2), p2);
        inverse_12 = ntt_prepare(i12, p2);
        p01_low = static_cast<limb>(p01);
        p01_high = static_cast<limb>(p01 >> limb_bits);
    }
};

/* A coefficient and the carry into it: 186 bits and a little. */
struct wide {
    limb low, middle, high;

    void add(limb l, limb m, limb h) {
        limb2 t = static_cast<limb2>(low) + l;
        low = static_cast<limb>(t);
        t = static_cast<limb2>(middle) + m + static_cast<limb>(t >> limb_bits);
        middle = static_cast<limb>(t);
        high += h + static_cast<limb>(t >> limb_bits);
    }
    void drop_point() { /* a shift by 80 bits */
        low = middle >> 16 | high << 48;
        middle = high >> 16;
        high = 0;
    }
};

/* sum += the number below p0 p1 p2 with these residues. The primes differ by less than 2^39, so that each is below
   twice another one. */
inline void add_coefficient(wide &sum, const garner &g, limb v0, limb c1, limb c2) {
    const limb v1 = ntt_cut(ntt_times(c1 + 2 * g.p1 - v0, g.inverse_01, g.p1), g.p1);
    const limb t = ntt_times(c2 + 2 * g.p2 - v0, g.inverse_012, g.p2), u = ntt_times(v1, g.inverse_12, g.p2);
    const limb v2 = ntt_cut(ntt_cut(t + 2 * g.p2 - u, 2 * g.p2), g.p2);
    const limb2 a = static_cast<limb2>(g.p0) * v1 + v0, b = static_cast<limb2>(g.p01_low) * v2,
                c = static_cast<limb2>(g.p01_high) * v2 + static_cast<limb>(b >> limb_bits);
    sum.add(static_cast<limb>(a), static_cast<limb>(a >> limb_bits), 0);
    sum.add(static_cast<limb>(b), static_cast<limb>(c), static_cast<limb>(c >> limb_bits));
}

/* Releases the carries: limbs of dst from `count` coefficients in three residues. */
void store_product(limb *dst, size_t limbs, limb *const residues[ntt_primes], size_t count) {
    static const garner g;
    wide sum{0, 0, 0};
    for (size_t i = 0, at = 0; at < limbs; i += 4, at += 5) {
        if (i % points_per_stretch == 0) safe_point();
        limb five[5] = {0, 0, 0, 0, 0};
        for (size_t k = 0; k < 4; k++) {
            if (i + k < count) add_coefficient(sum, g, residues[0][i + k], residues[1][i + k], residues[2][i + k]);
            const size_t shift = 16 * k;
            five[k] |= sum.low << shift;
            five[k + 1] = (sum.middle & 0xFFFF) << shift | (shift ? sum.low >> (limb_bits - shift) : 0);
            sum.drop_point();
        }
        flat_copy(dst + at, five, limbs - at < 5 ? limbs - at : 5);
    }
}

} // namespace

void flat_mult_transform(limb *dst, const limb *a, size_t na, const limb *b, size_t nb) {
    const size_t count = points_of(na) + points_of(nb) - 1;
    const ntt_size size = ntt_size_for(count);
    const size_t points = size.points();
    const bool square = a == b && na == nb;
    ntt_prepare_roots(size);
    buffer<limb> work((square ? 3 : 4) * points);
    limb *const residues[ntt_primes] = {work.data(), work.data() + points, work.data() + 2 * points};
    for (int field = 0; field < ntt_primes; field++) {
        limb *const values = residues[field], *const others = square ? values : work.data() + 3 * points;
        load_and_transform(values, a, na, size, field);
        if (!square) load_and_transform(others, b, nb, size, field);
        ntt_multiply_values(values, others, points, field);
        ntt_backward(values, size, field);
    }
    store_product(dst, na + nb, residues, count);
}

} // namespace tolvek
