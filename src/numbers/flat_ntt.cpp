/* The transform is a descent through x^2m - w^2 = (x^m - w)(x^m + w). Block j of a level stands for x^len - (its
   constant); it is split by the root w[j] into the blocks 2j and 2j + 1 of the next level. The roots are kept in one
   table for all levels: w[j] has the bits of j, in reversed order, as its exponent, so that w[0] = 1, w[1] = i,
   w[2j]^2 = w[j] and w[2j+1] = i w[2j]. Nothing has to be reordered, since the way back ascends through the same
   blocks. Two levels are done in one pass over the data; long blocks are descended depth first, which keeps the short
   ones in the cache. */
#include "numbers/flat_ntt.h"

#include "top/interrupts.h"

namespace tolvek {

namespace {

inline size_t minimum(size_t a, size_t b) { return a < b ? a : b; }

constexpr limb ntt_base = limb{1} << 62;

/* 1 / p modulo 2^64 by Newton's step: each doubles the number of right bits, from 3. */
constexpr limb inverse_modulo_word(limb p) {
    limb x = p;
    for (int i = 0; i < 5; i++) x *= 2 - p * x;
    return x;
}

constexpr limb power(limb x, uint64_t n, limb p) {
    limb result = 1;
    for (; n; n >>= 1) {
        if (n & 1) result = static_cast<limb>(static_cast<limb2>(result) * x % p);
        x = static_cast<limb>(static_cast<limb2>(x) * x % p);
    }
    return result;
}

/* p = 2^62 - k 2^32 + 1; `non_square` is not a square modulo p. */
constexpr ntt_prime make_prime(limb k, limb non_square) {
    const limb p = ntt_base - (k << 32) + 1;
    return {p, ntt_base - p, inverse_modulo_word(p), power(non_square, (p - 1) >> 32, p)};
}

constexpr int root_order_log = 32;

/* Blocks up to this length, in points, are taken level by level: 16 KiB, half of a first-level cache. */
constexpr size_t ntt_cached_block = 2048;

/* Points between two safe points: below a millisecond. */
constexpr size_t points_per_stretch = 65536;

/* Does work(first, last) for all of 0 .. n - 1. */
template <class F> inline void in_stretches(size_t n, F work) {
    for (size_t i = 0; i < n; i += points_per_stretch) {
        safe_point();
        work(i, minimum(n, i + points_per_stretch));
    }
}

buffer<ntt_root> root_table[ntt_primes];
ntt_root minus_one[ntt_primes];

/* What the passes read of a prime. */
struct field_view {
    limb p, twice;
    const ntt_root *roots;
    ntt_root minus_one_root;
};

field_view view_of(int field) {
    const limb p = ntt_fields[field].p;
    return {p, 2 * p, root_table[field].data(), minus_one[field]};
}

/* -1 / w[j]. Within a run [2^k, 2^(k+1)) of the table the exponents of j and of its mirror image add up to a half
   turn, so that w[j] w[mirror] = -1. */
const ntt_root &minus_inverse_root(const field_view &f, size_t j) {
    if (j == 0) return f.minus_one_root;
    const size_t run = size_t{1} << (63 - __builtin_clzll(j));
    return f.roots[3 * run - 1 - j];
}

/* ---- down ---- */

/* One level on one block: (x, y) -> (x + w y, x - w y). Values below 4p. */
void split_2(limb *a, size_t len, size_t j, const field_view &f) {
    const size_t half = len / 2;
    const ntt_root w = f.roots[j];
    for (size_t i = 0; i < half; i++) {
        const limb x = ntt_cut(a[i], f.twice), y = ntt_times(a[i + half], w, f.p);
        a[i] = x + y;
        a[i + half] = x - y + f.twice;
    }
}

/* Two levels on one block, for the columns first .. last - 1 of its four quarters. */
inline void split_4(limb *a, size_t len, size_t j, const field_view &f, size_t first, size_t last) {
    const size_t q = len / 4;
    const ntt_root w1 = f.roots[j], w2 = f.roots[2 * j], w3 = f.roots[2 * j + 1];
    for (size_t i = first; i < last; i++) {
        limb *x = a + i;
        const limb x0 = ntt_cut(x[0], f.twice), x1 = ntt_cut(x[q], f.twice);
        const limb y2 = ntt_times(x[2 * q], w1, f.p), y3 = ntt_times(x[3 * q], w1, f.p);
        const limb s0 = ntt_cut(x0 + y2, f.twice), s2 = ntt_cut(x0 - y2 + f.twice, f.twice);
        const limb z1 = ntt_times(x1 + y3, w2, f.p), z3 = ntt_times(x1 - y3 + f.twice, w3, f.p);
        x[0] = s0 + z1;
        x[q] = s0 - z1 + f.twice;
        x[2 * q] = s2 + z3;
        x[3 * q] = s2 - z3 + f.twice;
    }
}

void descend_levels(limb *a, size_t len, size_t j, const field_view &f) {
    size_t blocks = 1, m = len;
    for (; m >= 4; m /= 4, blocks *= 4)
        for (size_t b = 0; b < blocks; b++) split_4(a + b * m, m, j * blocks + b, f, 0, m / 4);
    if (m == 2)
        for (size_t b = 0; b < blocks; b++) split_2(a + 2 * b, 2, j * blocks + b, f);
}

void descend(limb *a, size_t len, size_t j, const field_view &f) {
    if (len <= ntt_cached_block) {
        descend_levels(a, len, j, f);
        return;
    }
    in_stretches(len / 4, [&](size_t first, size_t last) { split_4(a, len, j, f, first, last); });
    for (size_t k = 0; k < 4; k++) descend(a + k * (len / 4), len / 4, 4 * j + k, f);
}

/* ---- up ---- */

/* One level: (x, y) -> (x + y, (x - y) / w). Values below 2p. */
void join_2(limb *a, size_t len, size_t j, const field_view &f) {
    const size_t half = len / 2;
    const ntt_root w = minus_inverse_root(f, j);
    for (size_t i = 0; i < half; i++) {
        const limb x = a[i], y = a[i + half];
        a[i] = ntt_cut(x + y, f.twice);
        a[i + half] = ntt_times(y - x + f.twice, w, f.p);
    }
}

inline void join_4(limb *a, size_t len, size_t j, const field_view &f, size_t first, size_t last) {
    const size_t q = len / 4;
    const ntt_root w1 = minus_inverse_root(f, j), w2 = minus_inverse_root(f, 2 * j),
                   w3 = minus_inverse_root(f, 2 * j + 1);
    for (size_t i = first; i < last; i++) {
        limb *x = a + i;
        const limb x0 = x[0], x1 = x[q], x2 = x[2 * q], x3 = x[3 * q];
        const limb s0 = ntt_cut(x0 + x1, f.twice), s1 = ntt_times(x1 - x0 + f.twice, w2, f.p);
        const limb s2 = ntt_cut(x2 + x3, f.twice), s3 = ntt_times(x3 - x2 + f.twice, w3, f.p);
        x[0] = ntt_cut(s0 + s2, f.twice);
        x[q] = ntt_cut(s1 + s3, f.twice);
        x[2 * q] = ntt_times(s2 - s0 + f.twice, w1, f.p);
        x[3 * q] = ntt_times(s3 - s1 + f.twice, w1, f.p);
    }
}

void ascend_levels(limb *a, size_t len, size_t j, const field_view &f) {
    size_t m = 4, blocks = len / 4;
    if (__builtin_ctzll(len) % 2) {
        for (size_t b = 0; b < len / 2; b++) join_2(a + 2 * b, 2, j * (len / 2) + b, f);
        m = 8;
        blocks = len / 8;
    }
    for (; m <= len; m *= 4, blocks /= 4)
        for (size_t b = 0; b < blocks; b++) join_4(a + b * m, m, j * blocks + b, f, 0, m / 4);
}

void ascend(limb *a, size_t len, size_t j, const field_view &f) {
    if (len <= ntt_cached_block) {
        ascend_levels(a, len, j, f);
        return;
    }
    for (size_t k = 0; k < 4; k++) ascend(a + k * (len / 4), len / 4, 4 * j + k, f);
    in_stretches(len / 4, [&](size_t first, size_t last) { join_4(a, len, j, f, first, last); });
}

/* ---- the tail ---- */

/* Coefficient i of a modulo x^tail - c, from the `terms` coefficients i, i + tail, i + 2 tail, ...; below 4p. */
inline limb fold_to_tail(const limb *a, size_t i, size_t terms, size_t tail, const ntt_root &c, limb p) {
    limb t = a[i + (terms - 1) * tail];
    for (size_t k = terms - 1; k-- > 0;) t = ntt_times(t, c, p) + a[i + k * tail];
    return t;
}

ntt_root tail_constant(const ntt_size &s, const field_view &f) { return f.roots[size_t{1} << (s.split - 1)]; }

/* Coefficients below 2p, N of them, to the two residues. */
void part_with_tail(limb *a, size_t used, const ntt_size &s, const field_view &f) {
    const ntt_root c = tail_constant(s, f);
    const size_t terms = used ? (used - 1) / s.tail + 1 : 1;
    in_stretches(s.tail, [&](size_t first, size_t last) {
        for (size_t i = first; i < last; i++) {
            const limb t = fold_to_tail(a, i, terms, s.tail, c, f.p);
            a[i] += a[s.whole + i];
            a[s.whole + i] = t;
        }
    });
}

/* The way back: with r the residue modulo x^whole - 1 and t that modulo x^tail - c, the polynomial is
   r + (x^whole - 1) h with h = (r mod (x^tail - c) - t) / 2, as x^whole is -1 there. Values below p. */
void join_tail(limb *a, const ntt_size &s, const field_view &f) {
    const ntt_root c = tail_constant(s, f), half = ntt_prepare((f.p + 1) / 2, f.p);
    in_stretches(s.tail, [&](size_t first, size_t last) {
        for (size_t i = first; i < last; i++) {
            const limb r = ntt_cut(fold_to_tail(a, i, s.whole / s.tail, s.tail, c, f.p), f.twice);
            const limb h = ntt_cut(ntt_times(r + f.twice - a[s.whole + i], half, f.p), f.p);
            a[i] = ntt_cut(a[i] + f.p - h, f.p);
            a[s.whole + i] = h;
        }
    });
}

/* a[i] := a[i] 2^64 2^64 / len modulo p: out of the transform and out of the factor 1 / 2^64. */
void scale(limb *a, size_t len, const field_view &f) {
    const limb word = static_cast<limb>((static_cast<limb2>(1) << limb_bits) % f.p);
    const limb inverse = f.p - (f.p - 1) / len; /* len divides p - 1 */
    const ntt_root r = ntt_prepare(static_cast<limb>(static_cast<limb2>(word) * inverse % f.p), f.p);
    in_stretches(len, [&](size_t first, size_t last) {
        for (size_t i = first; i < last; i++) a[i] = ntt_cut(ntt_times(a[i], r, f.p), f.p);
    });
}

/* Fills the table of a prime up to `count`: w[2^k + i] = w[i] times the root of order 2^(k+2). A table left in the
   middle is gone on with. */
void extend_roots(int field, size_t count) {
    buffer<ntt_root> &table = root_table[field];
    const limb p = ntt_fields[field].p;
    table.reserve(count);
    if (table.empty()) {
        table.push(ntt_prepare(1, p));
        minus_one[field] = ntt_prepare(p - 1, p);
    }
    while (table.size() < count) {
        const int k = 63 - __builtin_clzll(table.size());
        const size_t run = size_t{1} << k, end = minimum(2 * run, table.size() + 4096);
        const ntt_root step = ntt_prepare(power(ntt_fields[field].root, uint64_t{1} << (root_order_log - k - 2), p), p);
        while (table.size() < end)
            table.push(ntt_prepare(ntt_cut(ntt_times(table[table.size() - run].value, step, p), p), p));
        safe_point();
    }
}

} // namespace

/* The three greatest primes 2^62 - k 2^32 + 1. */
const ntt_prime ntt_fields[ntt_primes] = {make_prime(18, 5), make_prime(76, 17), make_prime(96, 3)};

/* With p = 2^62 - delta, w 2^64 = 4 w p + 4 delta w; what the division by p leaves of the second part is found by two
   divisions by 2^62: q p = q 2^62 - q delta. The first quotient is below 2^41 and the second below 2^19, so that the
   last rest is below 2p. */
ntt_root ntt_prepare(limb w, limb p) {
    constexpr int base_bits = 62;
    const limb delta = ntt_base - p;
    const limb2 part = static_cast<limb2>(w) * (4 * delta);
    const limb first = static_cast<limb>(part >> base_bits);
    const limb2 rest = (part & (ntt_base - 1)) + static_cast<limb2>(first) * delta;
    const limb second = static_cast<limb>(rest >> base_bits);
    const limb last = (static_cast<limb>(rest) & (ntt_base - 1)) + second * delta;
    return {w, 4 * w + first + second + (last >= p)};
}

limb ntt_inverse_of(limb x, limb p) { return power(x, p - 2, p); }

ntt_size ntt_size_for(size_t points) {
    size_t whole = 8;
    while (2 * whole <= points) whole *= 2;
    if (points <= whole) return {whole, 0, 0};
    for (int split = 3; split > 0; split--)
        if (whole + (whole >> split) >= points) return {whole, whole >> split, split};
    return {2 * whole, 0, 0};
}

void ntt_prepare_roots(const ntt_size &size, int fields) {
    const size_t count = size.tail ? size.whole : size.whole / 2;
    for (int field = 0; field < fields; field++)
        if (root_table[field].size() < count) extend_roots(field, count);
}

void ntt_forward(limb *a, size_t used, const ntt_size &size, int field) {
    const field_view f = view_of(field);
    if (size.tail) {
        part_with_tail(a, used, size, f);
        descend(a + size.whole, size.tail, size_t{1} << size.split, f);
    }
    descend(a, size.whole, 0, f);
}

void ntt_multiply_values(limb *a, const limb *b, size_t n, int field) {
    const limb p = ntt_fields[field].p, inverse = ntt_fields[field].inverse;
    in_stretches(n, [&](size_t first, size_t last) {
        for (size_t i = first; i < last; i++) {
            /* Montgomery's reduction: t and (t / p mod 2^64) p agree in their low limbs. */
            const limb2 t = static_cast<limb2>(ntt_cut(a[i], 2 * p)) * ntt_cut(b[i], 2 * p);
            const limb m = static_cast<limb>(t) * inverse;
            a[i] = static_cast<limb>(t >> limb_bits) - static_cast<limb>(static_cast<limb2>(m) * p >> limb_bits) + p;
        }
    });
}

void ntt_backward(limb *a, const ntt_size &size, int field) {
    const field_view f = view_of(field);
    ascend(a, size.whole, 0, f);
    scale(a, size.whole, f);
    if (!size.tail) return;
    ascend(a + size.whole, size.tail, size_t{1} << size.split, f);
    scale(a + size.whole, size.tail, f);
    join_tail(a, size, f);
}

} // namespace tolvek
