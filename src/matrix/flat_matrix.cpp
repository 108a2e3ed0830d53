/* Sums of products of words: eight of them at a time, two lines of one operand by four of the other, which stay in the
   nearest memory while a block of lines of the left operand passes by.

   A sum of 2^s products of words of a and b bits fits 64 bits where a + b + s <= 64. Where a whole line does not fit, the
   left words are split at 16 bits: products have 47 bits then, and stretches of 2^17 of them are summed without a
   reduction. */
#include "matrix/flat_matrix.h"

#include "top/interrupts.h"

#include <immintrin.h>

namespace tolvek {

bool wide_vectors = __builtin_cpu_supports("avx2");

constexpr std::size_t words_at_once = 8, left_lines = 2, right_lines = 4;

static std::size_t rounded_up(std::size_t n, std::size_t step) { return (n + step - 1) / step * step; }

word_lines::word_lines(std::size_t lines, std::size_t its_length)
    : count(lines), length(its_length), stride(rounded_up(its_length, words_at_once)),
      words(rounded_up(lines, right_lines) * stride) {
    if (!words.empty()) std::memset(words.data(), 0, words.size() * sizeof(uint32_t));
}

/* ---- the kernel: sums[i][j] := line i of a times line j of b, both from one place on for n words ---- */

using tile = uint64_t[left_lines][right_lines];

[[gnu::target("avx2")]] static void wide_tile(const uint32_t *a, const uint32_t *b, std::size_t stride, std::size_t n,
                                              tile sums) {
    __m256i total[left_lines][right_lines];
    for (auto &row : total)
        for (__m256i &t : row) t = _mm256_setzero_si256();
    for (std::size_t k = 0; k < n; k += 8) {
        __m256i even[left_lines], odd[left_lines];
        for (std::size_t i = 0; i < left_lines; i++) {
            even[i] = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(a + i * stride + k));
            odd[i] = _mm256_srli_epi64(even[i], 32);
        }
        for (std::size_t j = 0; j < right_lines; j++) {
            const __m256i b_even = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(b + j * stride + k));
            const __m256i b_odd = _mm256_srli_epi64(b_even, 32);
            for (std::size_t i = 0; i < left_lines; i++) {
                total[i][j] = _mm256_add_epi64(total[i][j], _mm256_mul_epu32(even[i], b_even));
                total[i][j] = _mm256_add_epi64(total[i][j], _mm256_mul_epu32(odd[i], b_odd));
            }
        }
    }
    for (std::size_t i = 0; i < left_lines; i++)
        for (std::size_t j = 0; j < right_lines; j++) {
            alignas(32) uint64_t parts[4];
            _mm256_store_si256(reinterpret_cast<__m256i *>(parts), total[i][j]);
            sums[i][j] = parts[0] + parts[1] + parts[2] + parts[3];
        }
}

static void plain_tile(const uint32_t *a, const uint32_t *b, std::size_t stride, std::size_t n, tile sums) {
    for (std::size_t i = 0; i < left_lines; i++)
        for (std::size_t j = 0; j < right_lines; j++) {
            __m128i total = _mm_setzero_si128();
            for (std::size_t k = 0; k < n; k += 4) {
                const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i *>(a + i * stride + k));
                const __m128i y = _mm_loadu_si128(reinterpret_cast<const __m128i *>(b + j * stride + k));
                total = _mm_add_epi64(total, _mm_mul_epu32(x, y));
                total = _mm_add_epi64(total, _mm_mul_epu32(_mm_srli_epi64(x, 32), _mm_srli_epi64(y, 32)));
            }
            alignas(16) uint64_t parts[2];
            _mm_store_si128(reinterpret_cast<__m128i *>(parts), total);
            sums[i][j] = parts[0] + parts[1];
        }
}

/* ---- residues ---- */

static int bits_of(uint64_t v) { return v ? 64 - __builtin_clzll(v) : 0; }

/* How a line is summed: whole words or halves of the left ones, so many at a time. */
struct line_plan {
    bool halves;
    std::size_t stretch;

    line_plan(std::size_t length, uint64_t p) {
        const int bits = bits_of(p - 1), spare = 64 - 2 * bits;
        halves = spare < bits_of(length - 1);
        stretch = halves ? std::size_t{1} << (48 - bits) : rounded_up(length, words_at_once);
    }
};

class line_products {
  public:
    line_products(const word_lines &left, const word_lines &right, const word_divisor &divisor, uint32_t *out)
        : a(left), b(right), p(divisor), c(out), plan(left.length, divisor.n),
          kernel(wide_vectors ? wide_tile : plain_tile), high(plan.halves ? left.count : 0, left.length) {
        if (plan.halves) split();
    }
    void run() {
        for (std::size_t i = 0; i < a.count; i += lines_of_block)
            for (std::size_t j = 0; j < b.count; j += right_lines) {
                safe_point();
                for (std::size_t l = i; l < a.count && l < i + lines_of_block; l += left_lines) one_tile(l, j);
            }
    }

  private:
    static constexpr std::size_t lines_of_block = 64;
    static constexpr int half_bits = 16;

    void split() {
        low.resize(a.words.size());
        for (std::size_t i = 0; i < a.words.size(); i++) {
            low[i] = a.words[i] & ((1u << half_bits) - 1);
            high.words[i] = a.words[i] >> half_bits;
        }
    }
    /* The words of two lines of a times four of b, from `from` on. */
    void add_stretch(std::size_t i, std::size_t j, std::size_t from, std::size_t n, tile reduced) {
        tile sums;
        const uint32_t *left = plan.halves ? low.data() : a.words.data();
        kernel(left + i * a.stride + from, b.line(j) + from, a.stride, n, sums);
        if (!plan.halves) return add_reduced(sums, reduced);
        tile upper;
        kernel(high.line(i) + from, b.line(j) + from, a.stride, n, upper);
        for (std::size_t k = 0; k < left_lines * right_lines; k++) {
            uint64_t &sum = (&sums[0][0])[k];
            sum = p.remainder(sum) + (uint64_t{p.remainder((&upper[0][0])[k])} << half_bits);
        }
        add_reduced(sums, reduced);
    }
    void add_reduced(const tile sums, tile reduced) const {
        for (std::size_t i = 0; i < left_lines; i++)
            for (std::size_t j = 0; j < right_lines; j++)
                reduced[i][j] = p.remainder(reduced[i][j] + p.remainder(sums[i][j]));
    }
    void one_tile(std::size_t i, std::size_t j) {
        tile reduced = {};
        for (std::size_t from = 0; from < a.stride; from += plan.stretch) {
            const std::size_t left = a.stride - from;
            add_stretch(i, j, from, left < plan.stretch ? left : plan.stretch, reduced);
        }
        for (std::size_t l = i; l < a.count && l < i + left_lines; l++)
            for (std::size_t k = j; k < b.count && k < j + right_lines; k++)
                c[k * a.count + l] = static_cast<uint32_t>(reduced[l - i][k - j]);
    }

    const word_lines &a, &b;
    const word_divisor &p;
    uint32_t *c;
    line_plan plan;
    void (*kernel)(const uint32_t *, const uint32_t *, std::size_t, std::size_t, tile);
    word_lines high;
    buffer<uint32_t> low;
};

void residue_lines_product(const word_lines &a, const word_lines &b, const word_divisor &p, uint32_t *c) {
    line_products(a, b, p, c).run();
}

static uint32_t residue_of(const quolynode *q) { return static_cast<uint32_t>(q->numb->lint_val); }

void residue_product(const matrix_value &a, const matrix_value &b, matrix_value &r) {
    const auto rows = static_cast<std::size_t>(a.rows), cols = static_cast<std::size_t>(b.cols());
    const auto inner = static_cast<std::size_t>(b.rows);
    word_lines left(rows, inner), right(cols, inner);
    for (std::size_t i = 0; i < rows * inner; i++)
        left.line(i % rows)[i / rows] = residue_of(a.cell(static_cast<int64_t>(i)));
    for (std::size_t i = 0; i < inner * cols; i++)
        right.line(i / inner)[i % inner] = residue_of(b.cell(static_cast<int64_t>(i)));
    buffer<uint32_t> product(rows * cols);
    residue_lines_product(left, right, ring_divisor(), product.data());
    r.make_dense(a.rows, b.cols());
    for (std::size_t i = 0; i < rows * cols; i++)
        quoly_set(static_cast<int32_t>(product[i]), &r.cell(static_cast<int64_t>(i)));
}

/* ---- floats ---- */

/* Sums of one line with up to four others, each in the order of the entries. */
static void flote_sums(const long double *a, const long double *b, std::size_t n, long double sums[4]) {
    const long double *b1 = b + n, *b2 = b + 2 * n, *b3 = b + 3 * n;
    long double s0 = 0, s1 = 0, s2 = 0, s3 = 0;
    for (std::size_t k = 0; k < n; k++) {
        s0 += a[k] * b[k];
        s1 += a[k] * b1[k];
        s2 += a[k] * b2[k];
        s3 += a[k] * b3[k];
    }
    sums[0] = s0;
    sums[1] = s1;
    sums[2] = s2;
    sums[3] = s3;
}

void flote_product(const matrix_value &a, const matrix_value &b, matrix_value &r) {
    constexpr std::size_t columns_at_once = 4;
    const auto rows = static_cast<std::size_t>(a.rows), cols = static_cast<std::size_t>(b.cols());
    const auto inner = static_cast<std::size_t>(b.rows);
    buffer<long double> left(rows * inner), right(rounded_up(cols, columns_at_once) * inner);
    for (std::size_t i = 0; i < rows * inner; i++)
        left[i % rows * inner + i / rows] = a.cell(static_cast<int64_t>(i))->numb->flote_val;
    for (std::size_t i = 0; i < right.size(); i++)
        right[i] = i < inner * cols ? b.cell(static_cast<int64_t>(i))->numb->flote_val : 0;
    matrix_value product;
    product.make_dense(a.rows, b.cols());
    for (std::size_t j = 0; j < cols; j += columns_at_once)
        for (std::size_t i = 0; i < rows; i++) {
            safe_point();
            long double sums[columns_at_once];
            flote_sums(&left[i * inner], &right[j * inner], inner, sums);
            for (std::size_t k = j; k < cols && k < j + columns_at_once; k++)
                quoly_set_flote(sums[k - j], &product.cell(static_cast<int64_t>(k * rows + i)));
        }
    r.take(product);
}

} // namespace tolvek
