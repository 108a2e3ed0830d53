/* The dense product of integers: all exponents become one (L. Kronecker, 1882), by mixed radix with the spans of the product, and
   the product of the polynomials in one variable comes from transforms modulo primes of 62 bits.

   Long coefficients are cut into pieces of equal bits, as polynomials in one variable more. The coefficients of the
   product of the pieces are put together from their residues modulo one, two or three primes (H. Garner, The residue
   number system, 1959), symmetric about 0; a bound of theirs, known beforehand, tells how many primes it takes. So the
   value is exact by construction. */
#include "poly/flat_dense.h"

#include "numbers/flat_ntt.h"
#include "poly/flat_emit.h"
#include "poly/flat_product.h"
#include "top/interrupts.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>

namespace tolvek {

uint64_t flat_dense_longest = uint64_t{1} << 25;

namespace {

constexpr int prime_bits = 61;                  /* each prime is above 2^61 */
constexpr int longest_piece = 62;               /* bits of a piece of several */
constexpr std::size_t cells_per_stretch = 8192; /* between two safe points */

/* How coefficients are cut, and how many primes their products take. */
struct dense_plan {
    int primes = 0; /* 0: there is no way */
    int piece_bits, pieces_a, pieces_b;
    int pieces() const { return pieces_a + pieces_b - 1; }
    int work() const { return primes * pieces(); }
};

int bits_of(const poly_extent &x) { return std::max(x.bits, 1); }

dense_plan plan_for(const poly_extent &a, const poly_extent &b) {
    const int bits_a = bits_of(a), bits_b = bits_of(b);
    const int sums = 64 - __builtin_clzll(static_cast<uint64_t>(std::min(a.terms, b.terms)));
    dense_plan best;
    for (int primes = 1; primes <= ntt_primes; primes++) { /* uncut, with a sign */
        if (bits_a > 63 || bits_b > 63 || bits_a + bits_b + sums + 1 > primes * prime_bits) continue;
        best = {primes, 63, 1, 1};
        break;
    }
    if (lintmode) return best;
    for (int primes = 1; primes <= 2; primes++) {
        int piece = std::min(longest_piece, (primes * prime_bits - 1 - sums) / 2);
        for (; piece > 0; piece--) { /* a cell of the pieces' product is a sum of so many times more products */
            const int pieces = (std::min(bits_a, bits_b) + piece - 1) / piece;
            if (2 * piece + sums + 32 - __builtin_clz(static_cast<unsigned>(pieces)) + 1 <= primes * prime_bits) break;
        }
        if (piece < 8) continue;
        const dense_plan cut{primes, piece, (bits_a + piece - 1) / piece, (bits_b + piece - 1) / piece};
        if (!best.primes || cut.work() < best.work()) best = cut;
    }
    return best;
}

/* Cells of the product, as a float since there may be too many. */
double cells_of(const poly_extent &a, const poly_extent &b) {
    double cells = 1;
    for (int l = std::max(a.levels, b.levels); l > 0; l--) {
        const exponent_range ra = a.range_at(l), rb = b.range_at(l);
        cells *= static_cast<double>(int64_t{ra.high} - ra.low + rb.high - rb.low + 1);
    }
    return cells;
}

/* ---- the transforms ---- */

class dense_multiplier {
  public:
    dense_multiplier(const flat_shape &s, const dense_plan &p, int bits);
    void multiply(const poured_poly &a, const poured_poly &b, bool square);
    void pour(polynode **p);

  private:
    void load(const poured_poly &f, int pieces, int q, buffer<limb> &to);
    limb second_digit(std::size_t i) const;
    limb2 two_residues(std::size_t i) const;
    __int128 symmetric(std::size_t i) const;
    bool put(uint32_t cell, poly_emitter &out);
    bool put_sum(poly_emitter &out);
    void add_three_residues(std::size_t i);
    void add_shifted(__int128 v, int bits);
    void add_words(const limb *w, int n, int at);

    const flat_shape &shape;
    const dense_plan plan;
    const std::size_t total;
    const ntt_size size;
    buffer<limb> values[ntt_primes];
    buffer<limb> sum; /* a coefficient in two's complement, one limb more than its bound takes */
    const limb p0, p1, p2;
    const limb2 p01;
    ntt_root inverse_01, inverse_012, p0_mod_2; /* 1 / p0 modulo p1; 1 / (p0 p1) and p0 modulo p2 */
};

dense_multiplier::dense_multiplier(const flat_shape &s, const dense_plan &p, int bits)
    : shape(s), plan(p), total(s.cells * static_cast<std::size_t>(p.pieces())), size(ntt_size_for(total)),
      sum(static_cast<std::size_t>(limbs_for(bits) + 4)), p0(ntt_fields[0].p), p1(ntt_fields[1].p), p2(ntt_fields[2].p),
      p01(static_cast<limb2>(p0) * p1) {
    const limb of_p01 = static_cast<limb>(p01 % p2);
    inverse_01 = ntt_prepare(ntt_inverse_of(p0 % p1, p1), p1);
    inverse_012 = ntt_prepare(ntt_inverse_of(of_p01, p2), p2);
    p0_mod_2 = ntt_prepare(p0 % p2, p2);
    ntt_prepare_roots(size, plan.primes);
    for (int q = 0; q < plan.primes; q++) values[q].resize(size.points());
}

/* `bits` bits of a magnitude of n limbs, from bit `at` on. */
limb piece_of(const limb *m, int n, int at, int bits) {
    const int word = at / limb_bits, within = at % limb_bits;
    if (word >= n) return 0;
    limb v = m[word] >> within;
    if (within && word + 1 < n) v |= m[word + 1] << (limb_bits - within);
    return v & ((limb{1} << bits) - 1);
}

/* to := the pieces of the coefficients at their places, modulo prime q. */
void dense_multiplier::load(const poured_poly &f, int pieces, int q, buffer<limb> &to) {
    const limb p = ntt_fields[q].p;
    const std::size_t stride = static_cast<std::size_t>(plan.pieces());
    const std::size_t used = (std::size_t{f.cell[0]} + 1) * stride;
    std::fill(to.begin(), to.end(), 0);
    for (std::size_t i = 0; i < f.terms(); i++) {
        if (i % cells_per_stretch == 0) safe_point();
        limb *place = &to[f.cell[i] * stride];
        const int64_t word = f.width ? 0 : f.word[i];
        const limb lone = word < 0 ? -static_cast<limb>(word) : static_cast<limb>(word);
        const limb *m = f.width ? &f.limbs[i * static_cast<std::size_t>(f.width)] : &lone;
        const bool negative = f.width ? f.negative[i] : word < 0;
        for (int k = 0; k < pieces; k++) {
            limb v = piece_of(m, f.width ? f.width : 1, k * plan.piece_bits, plan.piece_bits);
            v = ntt_cut(ntt_cut(v, p), p); /* 2^63 is below 3 p */
            place[k] = negative && v ? p - v : v;
        }
    }
    ntt_forward(to.data(), used, size, q);
}

void dense_multiplier::multiply(const poured_poly &a, const poured_poly &b, bool square) {
    buffer<limb> other;
    if (!square) other.resize(size.points());
    for (int q = 0; q < plan.primes; q++) {
        load(a, plan.pieces_a, q, values[q]);
        if (!square) load(b, plan.pieces_b, q, other);
        ntt_multiply_values(values[q].data(), square ? values[q].data() : other.data(), size.points(), q);
        ntt_backward(values[q].data(), size, q);
    }
}

/* ---- from residues to coefficients ---- */

/* v1 of the number v0 + p0 v1 that has the first two residues. Each prime is below twice another one. */
limb dense_multiplier::second_digit(std::size_t i) const {
    return ntt_cut(ntt_times(values[1][i] + 2 * p1 - values[0][i], inverse_01, p1), p1);
}
limb2 dense_multiplier::two_residues(std::size_t i) const {
    return static_cast<limb2>(p0) * second_digit(i) + values[0][i];
}

/* The coefficient, of less than two primes' bits, with its sign. */
__int128 dense_multiplier::symmetric(std::size_t i) const {
    if (plan.primes == 1) {
        const limb v = values[0][i];
        return v > p0 / 2 ? static_cast<__int128>(v) - p0 : static_cast<__int128>(v);
    }
    const limb2 v = two_residues(i);
    return static_cast<__int128>(v > p01 / 2 ? v - p01 : v);
}

/* sum += v * 2^(64 at) for n limbs in two's complement. */
void dense_multiplier::add_words(const limb *w, int n, int at) {
    const limb fill = static_cast<int64_t>(w[n - 1]) < 0 ? ~limb{0} : 0;
    limb2 carry = 0;
    for (int k = 0; at + k < static_cast<int>(sum.size()); k++) {
        limb &place = sum[static_cast<std::size_t>(at + k)];
        carry += static_cast<limb2>(place) + (k < n ? w[k] : fill);
        place = static_cast<limb>(carry);
        carry >>= limb_bits;
    }
}

void dense_multiplier::add_shifted(__int128 v, int bits) {
    const int within = bits % limb_bits;
    const limb low = static_cast<limb>(v), high = static_cast<limb>(v >> 64), sign = static_cast<limb>(v >> 127);
    limb w[3] = {low, high, sign};
    if (within) {
        w[0] = low << within;
        w[1] = high << within | low >> (limb_bits - within);
        w[2] = sign << within | high >> (limb_bits - within);
    }
    add_words(w, 3, bits / limb_bits);
}

/* sum += the coefficient from all three residues: v01 + p0 p1 v2, less p0 p1 p2 for the upper half of v2. Bounds leave
   the halves far apart. */
void dense_multiplier::add_three_residues(std::size_t i) {
    const limb v1 = second_digit(i);
    const limb2 v01 = static_cast<limb2>(p0) * v1 + values[0][i];
    const limb r =
        ntt_cut(ntt_cut(ntt_times(v1, p0_mod_2, p2), p2) + ntt_cut(values[0][i], p2), p2); /* v01 modulo p2 */
    const limb v2 = ntt_cut(ntt_times(values[2][i] + p2 - r, inverse_012, p2), p2);
    const bool negative = v2 > p2 / 2;
    const limb factor = negative ? p2 - v2 : v2;
    const limb2 low = static_cast<limb2>(static_cast<limb>(p01)) * factor;
    const limb2 high = static_cast<limb2>(static_cast<limb>(p01 >> 64)) * factor + static_cast<limb>(low >> 64);
    limb w[4] = {static_cast<limb>(low), static_cast<limb>(high), static_cast<limb>(high >> 64), 0};
    if (negative) {
        limb carry = 1;
        for (limb &x : w) {
            x = ~x + carry;
            carry = carry && x == 0;
        }
    }
    add_words(w, 4, 0);
    const limb v[3] = {static_cast<limb>(v01), static_cast<limb>(v01 >> 64), 0};
    add_words(v, 3, 0);
}

/* ---- pouring out ---- */

bool dense_multiplier::put_sum(poly_emitter &out) {
    const bool negative = static_cast<int64_t>(sum.back()) < 0;
    bool carry = negative;
    limb any = 0;
    for (limb &x : sum) {
        if (negative) x = ~x + carry;
        carry = carry && x == 0;
        any |= x;
    }
    if (any) put_chain(sum.data(), static_cast<int>(sum.size()), negative ? -1 : 1, out.next_number());
    return any != 0;
}

bool dense_multiplier::put(uint32_t cell, poly_emitter &out) {
    if (cell % cells_per_stretch == 0) safe_point();
    const std::size_t pieces = static_cast<std::size_t>(plan.pieces()), i = cell * pieces;
    if (pieces == 1 && plan.primes < 3) {
        const __int128 v = symmetric(i);
        if (lintmode) {
            const int32_t word = static_cast<int32_t>(static_cast<uint32_t>(v));
            if (word) out.next_number()->lint_val = word;
            return word != 0;
        }
        if (v) put_chain(static_cast<limb2>(v < 0 ? -v : v), v < 0 ? -1 : 1, out.next_number());
        return v != 0;
    }
    std::fill(sum.begin(), sum.end(), 0);
    if (pieces == 1) add_three_residues(i);
    for (std::size_t k = 0; pieces > 1 && k < pieces; k++)
        add_shifted(symmetric(i + k), static_cast<int>(k) * plan.piece_bits);
    return put_sum(out);
}

void dense_multiplier::pour(polynode **p) {
    poly_emitter out(shape);
    pour_box(shape, out, 0, 0, 0, static_cast<uint32_t>(shape.cells - 1),
             [&](uint32_t cell) { return put(cell, out); });
    out.release_to(p);
}

/* Measured by bench/kernels/poly.cpp (mult_dense): a point of a transform costs so many nanoseconds for each doubling of
   the size, and the rest of its way so many. */
constexpr double point_step = 2.6, point_rest = 20;

} // namespace

double transform_cost(const poly_extent &a, const poly_extent &b) {
    if (modularmode) return std::numeric_limits<double>::infinity();
    const dense_plan plan = plan_for(a, b);
    const double points = cells_of(a, b) * plan.pieces();
    if (!plan.primes || points > static_cast<double>(flat_dense_longest))
        return std::numeric_limits<double>::infinity();
    return plan.primes * points * (point_step * std::log2(points + 1) + point_rest);
}

/* Measured there as well: a product of terms costs about so much where cells are well filled, and where they are not. */
constexpr double residue_step = 1.0, word_step = 1.6, limb_step = 1.5, sparse_step = 25, list_step = 100,
                 long_step = 64;
constexpr double well_filled = 32; /* cells for a product, at most */

double plain_flat_cost(const poly_extent &a, const poly_extent &b) {
    const double products = static_cast<double>(a.terms) * static_cast<double>(b.terms);
    const double wide_a = limbs_for(a.bits), wide_b = limbs_for(b.bits);
    double step = modularmode || lintmode ? residue_step : word_step;
    if (!narrow_coefficients(a, b)) /* products of chains, which are faster than quadratic from some length on */
        step += list_step + limb_step * std::min(wide_a * wide_b, long_step * (wide_a + wide_b));
    else if (!lintmode && std::max(a.bits, b.bits) > 63)
        step += limb_step * (wide_a * wide_b + wide_a);
    if (cells_of(a, b) > products * well_filled) step += sparse_step;
    return products * step;
}

void mult_dense(const polynode *a, const poly_extent &xa, const polynode *b, const poly_extent &xb, polynode **p) {
    flat_shape shape;
    make_flat_shape(xa, xb, flat_dense_longest, flat_dense_longest, &shape);
    assert(!modularmode && shape.zone == 0);
    const dense_plan plan = plan_for(xa, xb);
    const bool words = lintmode || (xa.bits < 64 && xb.bits < 64);
    poured_poly fa, fb;
    pour_poly(a, xa, shape, false, words ? 0 : limbs_for(xa.bits), &fa);
    if (a != b) pour_poly(b, xb, shape, true, words ? 0 : limbs_for(xb.bits), &fb);
    const int bits = lintmode ? 192 : product_bits(xa, xb) + 1;
    dense_multiplier product(shape, plan, bits);
    product.multiply(fa, a == b ? fa : fb, a == b);
    product.pour(p);
}

} // namespace tolvek
