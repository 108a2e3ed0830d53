/* The coefficient arithmetic of flat products. A ring adds products of poured coefficients into cells of a fixed number
   of words, and turns a cell into a number at the end. A cell of zeros is empty. cost() is that of one product, in
   products of words. */
#pragma once

#include "poly/flat_emit.h"
#include "poly/residue_arrays.h"

#include <cstring>

namespace tolvek {

/* The poured coefficients of both operands; i counts in `swapped` ? b : a, and j in the other. */
struct word_operands {
    const int64_t *word[2];
    const uint32_t *cell[2];

    static uint64_t cost() { return 1; }
    word_operands(const poured_poly &a, const poured_poly &b)
        : word{a.word.data(), b.word.data()}, cell{a.cell.data(), b.cell.data()} {}
};

/* Signed words; sums in n words, which hold them. With one word sums may also wrap around, as 32-bit integers do. */
template <int n> struct exact_ring : word_operands {
    static_assert(n >= 1 && n <= 3);
    static constexpr std::size_t words = n;
    using word_operands::word_operands;

    static void add(uint64_t *c, int64_t x, int64_t y) {
        if constexpr (n == 1) {
            c[0] += static_cast<uint64_t>(x) * static_cast<uint64_t>(y);
            return;
        }
        const __int128 product = static_cast<__int128>(x) * y;
        unsigned __int128 sum = (static_cast<unsigned __int128>(c[1]) << 64 | c[0]);
        const unsigned __int128 before = sum;
        sum += static_cast<unsigned __int128>(product);
        c[0] = static_cast<uint64_t>(sum);
        c[1] = static_cast<uint64_t>(sum >> 64);
        if constexpr (n == 3) c[2] += static_cast<uint64_t>(product >> 127) + (sum < before);
    }
    void add(uint64_t *c, uint32_t i, uint32_t j) const { add(c, word[0][i], word[1][j]); }

    /* acc[cell of i + cell of j] += x_i * y_j for the `count` terms from j on. */
    void row(uint64_t *acc, bool swapped, uint32_t i, uint32_t j, uint32_t count) const {
        const int64_t x = word[swapped][i];
        const int64_t *y = word[!swapped] + j;
        const uint32_t *at = cell[!swapped] + j;
        uint64_t *from = acc + words * cell[swapped][i];
        for (uint32_t k = 0; k < count; k++) add(from + words * at[k], x, y[k]);
    }

    static bool empty(const uint64_t *c) {
        uint64_t any = c[0];
        for (int k = 1; k < n; k++) any |= c[k];
        return any == 0;
    }
    /* The value of c, if not 0, goes to the number. */
    bool put(const uint64_t *c, poly_emitter &out) const {
        if (empty(c)) return false;
        if (lintmode) {
            const int32_t v = static_cast<int32_t>(static_cast<uint32_t>(c[0]));
            if (v) out.next_number()->lint_val = v;
            return v != 0;
        }
        number *x = out.next_number();
        const bool negative = static_cast<int64_t>(c[n - 1]) < 0;
        if constexpr (n == 1) {
            put_chain(negative ? -c[0] : c[0], negative ? -1 : 1, x);
        } else if constexpr (n == 2) {
            const unsigned __int128 v = static_cast<unsigned __int128>(c[1]) << 64 | c[0];
            put_chain(negative ? -v : v, negative ? -1 : 1, x);
        } else {
            uint64_t m[n];
            bool borrow = negative; /* of ~c + 1 */
            for (int k = 0; k < n; k++) {
                m[k] = negative ? ~c[k] + borrow : c[k];
                borrow = borrow && m[k] == 0;
            }
            put_chain(m, n, negative ? -1 : 1, x);
        }
        return true;
    }
};

/* Residues modulo `modulus`. */
struct residue_ring : word_operands {
    static constexpr std::size_t words = 1;
    residue_sum m;

    residue_ring(const poured_poly &a, const poured_poly &b, uint32_t n) : word_operands(a, b), m(n) {}

    void add(uint64_t *c, uint32_t i, uint32_t j) const {
        m.add(*c, static_cast<uint64_t>(word[0][i]), static_cast<uint64_t>(word[1][j]));
    }
    void row(uint64_t *acc, bool swapped, uint32_t i, uint32_t j, uint32_t count) const {
        const uint64_t x = static_cast<uint64_t>(word[swapped][i]);
        const int64_t *y = word[!swapped] + j;
        const uint32_t *at = cell[!swapped] + j;
        uint64_t *from = acc + cell[swapped][i];
        for (uint32_t k = 0; k < count; k++) m.add(from[at[k]], x, static_cast<uint64_t>(y[k]));
    }
    static bool empty(const uint64_t *c) { return *c == 0; }
    bool put(const uint64_t *c, poly_emitter &out) const {
        const uint64_t v = m.settle(*c);
        if (!v) return false;
        out.next_number()->lint_val = static_cast<int32_t>(v);
        return true;
    }
};

/* Coefficients of any one size: magnitudes of a.width and b.width limbs; sums in two's complement of `words` limbs. */
struct limb_ring {
    std::size_t words;
    const poured_poly *operand[2];
    buffer<uint64_t> magnitude; /* of a result */

    limb_ring(const poured_poly &a, const poured_poly &b, std::size_t w) : words(w), operand{&a, &b}, magnitude(w) {}

    uint64_t cost() const {
        return 2 + static_cast<uint64_t>(operand[0]->width) * static_cast<uint64_t>(operand[1]->width);
    }
    /* c += or -= x * y. */
    void add(uint64_t *c, const uint64_t *x, int wx, const uint64_t *y, int wy, bool minus) const;
    void add(uint64_t *c, uint32_t i, uint32_t j) const {
        const poured_poly &a = *operand[0], &b = *operand[1];
        add(c, &a.limbs[std::size_t{i} * static_cast<std::size_t>(a.width)], a.width,
            &b.limbs[std::size_t{j} * static_cast<std::size_t>(b.width)], b.width, a.negative[i] != b.negative[j]);
    }
    void row(uint64_t *acc, bool swapped, uint32_t i, uint32_t j, uint32_t count) const {
        uint64_t *from = acc + words * operand[swapped]->cell[i];
        const uint32_t *at = operand[!swapped]->cell.data();
        for (uint32_t k = j; k < j + count; k++)
            swapped ? add(from + words * at[k], k, i) : add(from + words * at[k], i, k);
    }
    bool empty(const uint64_t *c) const {
        uint64_t any = 0;
        for (std::size_t k = 0; k < words; k++) any |= c[k];
        return any == 0;
    }
    bool put(const uint64_t *c, poly_emitter &out);
};

} // namespace tolvek
