/* The transform is a descent: a polynomial modulo x^2m - w^2 is taken modulo x^m - w and x^m + w, as in
   numbers/flat_ntt.cpp, where the order of the blocks and of the table of roots is told. It ends at blocks of eight
   coefficients, modulo x^8 - c: these are multiplied by rows, which costs no more than the last three levels would, and
   every loop runs over at least eight neighbours, so that the compiler can take them together.

   Values are below 4p on the way down and below 2p on the way up (D. Harvey, Faster arithmetic for number-theoretic
   transforms, 2014); a fixed factor w comes with w 2^32 / p, truncated (V. Shoup's method, in Harvey's paper). */
#include "poly/flat_uni_transform.h"

#include "poly/residue_arrays.h"
#include "top/interrupts.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace tolvek {

namespace {

constexpr std::size_t block = 8;

struct root {
    uint32_t value, quotient;
};

constexpr uint32_t power(uint64_t x, uint32_t e, uint32_t p) {
    uint64_t r = 1;
    for (; e; e >>= 1, x = x * x % p)
        if (e & 1) r = r * x % p;
    return static_cast<uint32_t>(r);
}
constexpr uint32_t inverse_word(uint32_t p) {
    uint32_t x = p;
    for (int i = 0; i < 4; i++) x *= 2 - p * x;
    return x;
}

struct prime {
    uint32_t p, p_inverse;
    uint32_t order_log; /* 2^order_log divides p - 1 */
    uint32_t unity;     /* a root of unity of that order */
};
constexpr prime make_prime(uint32_t p, uint32_t non_square) {
    const uint32_t k = static_cast<uint32_t>(__builtin_ctz(p - 1));
    return {p, inverse_word(p), k, power(non_square, (p - 1) >> k, p)};
}

/* Primes below 2^30 with 2^21 in p - 1, and an element that is no square. */
constexpr int most_primes = 3;
constexpr prime fields[most_primes] = {make_prime(998244353, 3), make_prime(1004535809, 3), make_prime(985661441, 3)};
constexpr double prime_bits = 29.87; /* each is above 2^29.87 */
static_assert(fields[0].order_log >= 21 && fields[1].order_log >= 21 && fields[2].order_log >= 21);
static_assert(power(3, (998244353 - 1) / 2, 998244353) == 998244352);
static_assert(power(3, (1004535809 - 1) / 2, 1004535809) == 1004535808);
static_assert(power(3, (985661441 - 1) / 2, 985661441) == 985661440);

constexpr root prepare(uint32_t w, uint32_t p) { return {w, static_cast<uint32_t>((uint64_t{w} << 32) / p)}; }

/* x w modulo p in [0, 2p), for every x. */
inline uint32_t times(uint32_t x, const root &w, uint32_t p) {
    const uint32_t q = static_cast<uint32_t>(uint64_t{x} * w.quotient >> 32);
    return x * w.value - q * p;
}

/* ---- the table of roots ---- */

buffer<root> tables[most_primes];

/* w[2^k + i] = w[i] times the root of order 2^(k+2), for `count` roots. */
void extend_roots(int which, std::size_t count) {
    buffer<root> &table = tables[which];
    const uint32_t p = fields[which].p;
    table.reserve(count);
    if (table.empty()) table.push(prepare(1, p));
    while (table.size() < count) {
        const uint32_t k = static_cast<uint32_t>(63 - __builtin_clzll(table.size()));
        const std::size_t run = std::size_t{1} << k;
        const uint32_t step = power(fields[which].unity, uint32_t{1} << (fields[which].order_log - k - 2), p);
        const std::size_t i = table.size() - run;
        table.push(prepare(static_cast<uint32_t>(uint64_t{table[i].value} * step % p), p));
        if (table.size() % 65536 == 0) safe_point();
    }
}

/* ---- down and up ---- */

/* Two levels on one block; q, a quarter of its length, is a multiple of 8. */
TOLVEK_WIDE_VECTORS
void split_4(uint32_t *a, std::size_t eighths, const root *w, std::size_t j, uint32_t p) {
    const std::size_t q = eighths * block;
    const root w1 = w[j], w2 = w[2 * j], w3 = w[2 * j + 1];
    const uint32_t twice = 2 * p;
    uint32_t *__restrict a0 = a, *__restrict a1 = a + q, *__restrict a2 = a + 2 * q, *__restrict a3 = a + 3 * q;
    for (std::size_t i = 0; i < eighths * block; i++) {
        const uint32_t x0 = uni_cut(a0[i], twice), x1 = uni_cut(a1[i], twice);
        const uint32_t y2 = times(a2[i], w1, p), y3 = times(a3[i], w1, p);
        const uint32_t s0 = uni_cut(x0 + y2, twice), s2 = uni_cut(x0 - y2 + twice, twice);
        const uint32_t z1 = times(x1 + y3, w2, p), z3 = times(x1 - y3 + twice, w3, p);
        a0[i] = s0 + z1;
        a1[i] = s0 - z1 + twice;
        a2[i] = s2 + z3;
        a3[i] = s2 - z3 + twice;
    }
}

TOLVEK_WIDE_VECTORS
void split_2(uint32_t *a, std::size_t eighths, const root w, uint32_t p) {
    const std::size_t half = eighths * block;
    const uint32_t twice = 2 * p;
    uint32_t *__restrict a0 = a, *__restrict a1 = a + half;
    for (std::size_t i = 0; i < eighths * block; i++) {
        const uint32_t x = uni_cut(a0[i], twice), y = times(a1[i], w, p);
        a0[i] = x + y;
        a1[i] = x - y + twice;
    }
}

/* -1 / w[j]: within a run [2^k, 2^(k+1)) of the table w[j] w[its mirror image] = -1. */
inline root minus_inverse(const root *w, std::size_t j, uint32_t p) {
    if (j == 0) return prepare(p - 1, p);
    const std::size_t run = std::size_t{1} << (63 - __builtin_clzll(j));
    return w[3 * run - 1 - j];
}

TOLVEK_WIDE_VECTORS
void join_2(uint32_t *a, std::size_t eighths, const root w, uint32_t p) {
    const std::size_t half = eighths * block;
    const uint32_t twice = 2 * p;
    uint32_t *__restrict a0 = a, *__restrict a1 = a + half;
    for (std::size_t i = 0; i < eighths * block; i++) {
        const uint32_t x = a0[i], y = a1[i];
        a0[i] = uni_cut(x + y, twice);
        a1[i] = times(y - x + twice, w, p);
    }
}

TOLVEK_WIDE_VECTORS
void join_4(uint32_t *a, std::size_t eighths, const root w1, const root w2, const root w3, uint32_t p) {
    const std::size_t q = eighths * block;
    const uint32_t twice = 2 * p;
    uint32_t *__restrict a0 = a, *__restrict a1 = a + q, *__restrict a2 = a + 2 * q, *__restrict a3 = a + 3 * q;
    for (std::size_t i = 0; i < eighths * block; i++) {
        const uint32_t x0 = a0[i], x1 = a1[i], x2 = a2[i], x3 = a3[i];
        const uint32_t s0 = uni_cut(x0 + x1, twice), s1 = times(x1 - x0 + twice, w2, p);
        const uint32_t s2 = uni_cut(x2 + x3, twice), s3 = times(x3 - x2 + twice, w3, p);
        a0[i] = uni_cut(s0 + s2, twice);
        a1[i] = uni_cut(s1 + s3, twice);
        a2[i] = times(s2 - s0 + twice, w1, p);
        a3[i] = times(s3 - s1 + twice, w1, p);
    }
}

/* Blocks up to this length are taken level by level: they stay in the nearest cache. */
constexpr std::size_t cached = 4096;

void descend(uint32_t *a, std::size_t len, std::size_t j, const root *w, uint32_t p) {
    if (len > cached) {
        safe_point();
        split_4(a, len / 4 / block, w, j, p);
        for (std::size_t k = 0; k < 4; k++) descend(a + k * (len / 4), len / 4, 4 * j + k, w, p);
        return;
    }
    std::size_t blocks = 1, m = len;
    for (; m >= 4 * block; m /= 4, blocks *= 4)
        for (std::size_t b = 0; b < blocks; b++) split_4(a + b * m, m / 4 / block, w, j * blocks + b, p);
    if (m == 2 * block)
        for (std::size_t b = 0; b < blocks; b++) split_2(a + b * m, 1, w[j * blocks + b], p);
}

void ascend(uint32_t *a, std::size_t len, std::size_t j, const root *w, uint32_t p) {
    if (len > cached) {
        safe_point();
        for (std::size_t k = 0; k < 4; k++) ascend(a + k * (len / 4), len / 4, 4 * j + k, w, p);
        join_4(a, len / 4 / block, minus_inverse(w, j, p), minus_inverse(w, 2 * j, p), minus_inverse(w, 2 * j + 1, p),
               p);
        return;
    }
    std::size_t m = block, blocks = len / block;
    if (__builtin_ctzll(len / block) % 2) {
        m *= 2;
        blocks /= 2;
        for (std::size_t b = 0; b < blocks; b++) join_2(a + b * m, 1, minus_inverse(w, j * blocks + b, p), p);
    }
    while (blocks > 1) {
        m *= 4;
        blocks /= 4;
        for (std::size_t b = 0; b < blocks; b++) {
            const std::size_t at = j * blocks + b;
            join_4(a + b * m, m / 4 / block, minus_inverse(w, at, p), minus_inverse(w, 2 * at, p),
                   minus_inverse(w, 2 * at + 1, p), p);
        }
    }
}

/* ---- products of blocks ---- */

/* c := (or +=) a b / 2^32 modulo x^8 - w for one block; a and b below 4p, the product below 2p. With a and b cut below
   p < 2^30 a sum of eight products is below 2^63, and what the reduction leaves of it is below 2^31 + p. */
inline void multiply_block(const uint32_t *a, const uint32_t *b, uint32_t *c, const root &w, uint32_t p,
                           uint32_t p_inverse, bool add) {
    const uint32_t twice = 2 * p;
    uint32_t first[block], both[2 * block];
    for (std::size_t k = 0; k < block; k++) {
        first[k] = uni_cut(uni_cut(a[k], twice), p);
        both[block + k] = uni_cut(uni_cut(b[k], twice), p);
        both[k] = uni_cut(times(b[k], w, p), p);
    }
    uint64_t sum[block] = {};
    for (std::size_t i = 0; i < block; i++) {
        const uint64_t x = first[i];
        const uint32_t *y = both + block - i;
        for (std::size_t k = 0; k < block; k++) sum[k] += x * y[k];
    }
    for (std::size_t k = 0; k < block; k++) {
        const uint32_t m = static_cast<uint32_t>(sum[k]) * p_inverse;
        const uint32_t r = static_cast<uint32_t>(sum[k] >> 32) + p - static_cast<uint32_t>(uint64_t{m} * p >> 32);
        const uint32_t v = uni_cut(r, twice); /* r is below 2^31 + 2^30 < 4p */
        c[k] = add ? uni_cut(c[k] + v, twice) : v;
    }
}

/* The blocks of number 2j and 2j + 1 are modulo x^8 - w[j] and x^8 + w[j]. */
TOLVEK_WIDE_VECTORS
void multiply_blocks(const uint32_t *a, const uint32_t *b, uint32_t *c, std::size_t blocks, const root *w, uint32_t p,
                     uint32_t p_inverse, bool add) {
    for (std::size_t j = 0; j < blocks; j++, a += block, b += block, c += block) {
        root here = w[j / 2];
        if (j % 2) here = {p - here.value, ~here.quotient}; /* floor((p - w) 2^32 / p), as p divides no w 2^32 */
        multiply_block(a, b, c, here, p, p_inverse, add);
    }
}

/* ---- back to the field ---- */

/* The number v0 + p0 d1 + p0 p1 d2 that has the residues. */
struct mixed_digits {
    root inverse_0, p0_in_2, inverse_01; /* 1 / p0 modulo p1; p0 modulo p2, 1 / (p0 p1) modulo p2 */
    root scale[most_primes];             /* 2^32 / (number of blocks) modulo each prime */
    uint32_t weight[most_primes];        /* 1, p0, p0 p1 modulo the field's p, times 2^32 if that is odd */
};

TOLVEK_WIDE_VECTORS
void scale_all(uint32_t *a, std::size_t n, const root w, uint32_t p) {
    for (std::size_t i = 0; i < n; i++) a[i] = uni_cut(times(a[i], w, p), p);
}

/* v1 := d1 */
TOLVEK_WIDE_VECTORS
void second_digits(const uint32_t *__restrict v0, uint32_t *__restrict v1, std::size_t n, const mixed_digits &d) {
    const uint32_t p1 = fields[1].p;
    for (std::size_t i = 0; i < n; i++)
        v1[i] = uni_cut(times(v1[i] + p1 + p1 - v0[i], d.inverse_0, p1), p1); /* each prime is below twice another */
}

/* v2 := d2, from v0 and v1, which holds d1 */
TOLVEK_WIDE_VECTORS
void third_digits(const uint32_t *__restrict v0, const uint32_t *__restrict v1, uint32_t *__restrict v2, std::size_t n,
                  const mixed_digits &d) {
    const uint32_t p2 = fields[2].p, twice = 2 * p2;
    for (std::size_t i = 0; i < n; i++) {
        const uint32_t lower = uni_cut(times(v1[i], d.p0_in_2, p2) + uni_cut(v0[i], p2), twice);
        v2[i] = uni_cut(times(v2[i] + twice - uni_cut(lower, twice), d.inverse_01, p2), p2);
    }
}

/* Digits are below 2^30 and weights below p, so that the sum is below 3 p 2^30. */
TOLVEK_WIDE_VECTORS
void weigh(const uint32_t *v0, const uint32_t *v1, const uint32_t *v2, uint32_t *z, std::size_t n,
           const uint32_t *weight, uint32_t p, uint32_t p_inverse) {
    const uint32_t w0 = weight[0], w1 = weight[1], w2 = weight[2];
    for (std::size_t i = 0; i < n; i++)
        z[i] = uni_reduce(uint64_t{v0[i]} * w0 + uint64_t{v1[i]} * w1 + uint64_t{v2[i]} * w2, p, p_inverse);
}

mixed_digits digits_for(const uni_field &f, std::size_t blocks) {
    const uint64_t p0 = fields[0].p, p1 = fields[1].p, p2 = fields[2].p;
    mixed_digits d;
    d.inverse_0 = prepare(power(p0 % p1, fields[1].p - 2, fields[1].p), fields[1].p);
    d.p0_in_2 = prepare(static_cast<uint32_t>(p0 % p2), fields[2].p);
    d.inverse_01 = prepare(power(p0 % p2 * (p1 % p2) % p2, fields[2].p - 2, fields[2].p), fields[2].p);
    for (int i = 0; i < most_primes; i++) {
        const uint64_t p = fields[i].p;
        const uint64_t inverse = power(blocks % p, fields[i].p - 2, fields[i].p);
        d.scale[i] = prepare(static_cast<uint32_t>((uint64_t{1} << 32) % p * inverse % p), fields[i].p);
    }
    d.weight[0] = f.odd_prime() ? f.word : 1;
    d.weight[1] = f.product(static_cast<uint32_t>(p0 % f.p), d.weight[0]);
    d.weight[2] = f.product(static_cast<uint32_t>(p1 % f.p), d.weight[1]);
    return d;
}

} // namespace

int uni_transform_primes(uint32_t ring_modulus, std::size_t terms) {
    const double bits = 2 * std::log2(static_cast<double>(ring_modulus)) + std::log2(static_cast<double>(terms));
    return bits < prime_bits - 0.1 ? 1 : bits < 2 * prime_bits - 0.1 ? 2 : 3;
}

std::size_t uni_transform_points(std::size_t least) {
    std::size_t n = 2 * block;
    while (n < least) n *= 2;
    return n;
}

uni_transformer::uni_transformer(const uni_field &f, std::size_t least, std::size_t terms)
    : field(f), n(uni_transform_points(least)), primes(uni_transform_primes(f.p, terms)) {
    assert(f.transforms() && n <= most_uni_points);
    const std::size_t count = n / (2 * block);
    for (int i = 0; i < primes; i++)
        if (tables[i].size() < count) extend_roots(i, count);
}

void uni_transformer::fold(const uint32_t *x, std::size_t length, uint32_t *to) const {
    std::copy(x, x + std::min(length, n), to);
    std::fill(to + std::min(length, n), to + n, 0);
    for (std::size_t from = n; from < length; from += n)
        for (std::size_t i = 0; i < std::min(n, length - from); i++) to[i] = field.sum(to[i], x[from + i]);
}

void uni_transformer::transform(const uint32_t *x, std::size_t length, image *to) const {
    to->resize(n * static_cast<std::size_t>(primes));
    uint32_t *first = to->data();
    fold(x, length, first);
    for (int i = primes - 1; i >= 0; i--) { /* residues are below 2^31 < 4p */
        uint32_t *a = first + static_cast<std::size_t>(i) * n;
        if (i) std::copy(first, first + n, a);
        descend(a, n, 0, tables[i].data(), fields[i].p);
    }
}

void uni_transformer::multiply(const image &a, const image &b, image *c) const {
    c->resize(a.size());
    for (int i = 0; i < primes; i++) {
        const std::size_t at = static_cast<std::size_t>(i) * n;
        multiply_blocks(a.data() + at, b.data() + at, c->data() + at, n / block, tables[i].data(), fields[i].p,
                        fields[i].p_inverse, false);
    }
}

void uni_transformer::multiply(const uint32_t *a, std::size_t na, const uint32_t *b, std::size_t nb, image *c) const {
    const bool square = a == b && na == nb;
    c->resize(n * static_cast<std::size_t>(primes));
    image other;
    if (!square) other.resize(n);
    for (int i = 0; i < primes; i++) {
        const root *w = tables[i].data();
        const uint32_t p = fields[i].p;
        uint32_t *x = c->data() + static_cast<std::size_t>(i) * n;
        fold(a, na, x);
        descend(x, n, 0, w, p);
        if (!square) fold(b, nb, other.data());
        if (!square) descend(other.data(), n, 0, w, p);
        multiply_blocks(x, square ? x : other.data(), x, n / block, w, p, fields[i].p_inverse, false);
    }
}

void uni_transformer::add_product(const image &a, const image &b, image *c) const {
    for (int i = 0; i < primes; i++) {
        const std::size_t at = static_cast<std::size_t>(i) * n;
        multiply_blocks(a.data() + at, b.data() + at, c->data() + at, n / block, tables[i].data(), fields[i].p,
                        fields[i].p_inverse, true);
    }
}

void uni_transformer::coefficients(image *c, uint32_t *z, std::size_t length) const {
    mixed_digits d = digits_for(field, n / block);
    uint32_t *v[most_primes];
    for (int i = 0; i < most_primes; i++) {
        v[i] = c->data() + static_cast<std::size_t>(std::min(i, primes - 1)) * n;
        if (i >= primes) d.weight[i] = 0;
    }
    for (int i = 0; i < primes; i++) {
        ascend(v[i], n, 0, tables[i].data(), fields[i].p);
        scale_all(v[i], length, d.scale[i], fields[i].p);
    }
    if (primes > 1) second_digits(v[0], v[1], length, d);
    if (primes > 2) third_digits(v[0], v[1], v[2], length, d);
    if (field.odd_prime()) return weigh(v[0], v[1], v[2], z, length, d.weight, field.p, field.p_inverse);
    const residue_sum sum(field.p); /* as in weigh, below 2^63 */
    for (std::size_t i = 0; i < length; i++) {
        uint64_t v_i = 0;
        for (int k = 0; k < primes; k++) v_i += uint64_t{v[k][i]} * d.weight[k];
        z[i] = static_cast<uint32_t>(sum.settle(v_i));
    }
}

} // namespace tolvek
