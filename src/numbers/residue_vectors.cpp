/* Products of residues are below 2^62, so that four of them fit a word. Their sums are split into halves of 32 bits,
   which are added apart, and only the two totals are reduced. SSE2, which every 64-bit processor of this family has,
   forms two products at a time. */
#include "numbers/residue_vectors.h"

#include "numbers/modular.h"
#include "top/interrupts.h"

#include <emmintrin.h>

namespace tolvek {

/* Sums of the low and of the high halves; of fewer than 2^32 terms each. */
struct half_sums {
    uint64_t low = 0, high = 0;

    void add(uint64_t product) {
        low += static_cast<uint32_t>(product);
        high += product >> 32;
    }
    uint32_t reduced(const word_divisor &n) const {
        uint64_t upper = static_cast<uint64_t>(n.remainder(high)) << 32;
        return n.remainder(upper + n.remainder(low));
    }
};

static __m128i four_words(const int32_t *p) { return _mm_loadu_si128(reinterpret_cast<const __m128i *>(p)); }

/* The sums of the products of words 0 and 1, and of words 2 and 3. */
static __m128i four_products(__m128i a, __m128i b) {
    return _mm_add_epi64(_mm_mul_epu32(a, b), _mm_mul_epu32(_mm_srli_epi64(a, 32), _mm_srli_epi64(b, 32)));
}

static half_sums add_products(const int32_t *a, const int32_t *b, std::size_t n) {
    __m128i low = _mm_setzero_si128(), high = low;
    const __m128i low_half = _mm_set_epi32(0, -1, 0, -1);
    std::size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        __m128i sum = _mm_add_epi64(four_products(four_words(a + i), four_words(b + i)),
                                    four_products(four_words(a + i + 4), four_words(b + i + 4)));
        low = _mm_add_epi64(low, _mm_and_si128(sum, low_half));
        high = _mm_add_epi64(high, _mm_srli_epi64(sum, 32));
    }
    alignas(16) uint64_t lows[2], highs[2];
    _mm_store_si128(reinterpret_cast<__m128i *>(lows), low);
    _mm_store_si128(reinterpret_cast<__m128i *>(highs), high);
    half_sums sums{lows[0] + lows[1], highs[0] + highs[1]};
    for (; i < n; i++) sums.add(static_cast<uint64_t>(static_cast<uint32_t>(a[i])) * static_cast<uint32_t>(b[i]));
    return sums;
}

static int32_t field_sum(const int32_t *a, const int32_t *b, std::size_t n) {
    int32_t sum = 0;
    for (std::size_t i = 0; i < n; i++) sum ^= field_product(a[i], b[i]);
    return sum;
}

int32_t sum_of_products(const int32_t *a, const int32_t *b, std::size_t n) {
    constexpr std::size_t stretch = 1 << 22; /* between safe points */
    int32_t sum = 0;
    for (std::size_t i = 0; i < n; i += stretch) {
        if (i > 0) safe_point();
        const std::size_t count = n - i < stretch ? n - i : stretch;
        const int32_t part = finf ? field_sum(a + i, b + i, count)
                                  : static_cast<int32_t>(add_products(a + i, b + i, count).reduced(ring_divisor()));
        sum = mod_add(sum, part, modulus);
    }
    return sum;
}

} // namespace tolvek
