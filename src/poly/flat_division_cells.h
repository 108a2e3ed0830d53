/* The coefficients of a division on packed exponents. The rest is held in cells; the terms of the divisor and of the
   quotient have handles of one word, which are their values or tell where these lie.

   load(x) makes a handle, put(handle, x) a number; add(cell, x) adds a term of the dividend; divide(cell, &handle) divides
   by the leading coefficient; subtract takes products off. Sums are right modulo the size of a cell, and a quotient whose
   products could leave it is too large: so a rest of zeros proves the quotient. */
#pragma once

#include "numbers/flat_basic.h"
#include "numbers/modular.h"
#include "poly/flat_emit.h"
#include "poly/flat_rings.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace tolvek {

enum class division_step { found, zero, fails, too_large };

template <class word> word chain_value(const number *x) {
    word v = 0;
    for (const numnode *d = x->num_head; d; d = d->next) v = v * digit_radix + d->digit;
    return v;
}

/* Integers in cells of n words, 1 or 2. Coefficients of the quotient stay below a limit, so that all sums fit. */
template <int n> class integer_cells {
  public:
    using value = std::conditional_t<n == 1, int64_t, __int128>;

    integer_cells(uint32_t cells, const poly_extent &a, const poly_extent &b, const number *leading)
        : lead(chain_value<int64_t>(leading)), word(std::size_t{cells} * n) {
        std::fill(word.begin(), word.end(), 0);
        const double room = std::ldexp(1.0, 64 * n - 2) - std::ldexp(1.0, a.bits);
        const double by_sums = room / (b.norm * 1.001), by_words = std::ldexp(1.0, 62);
        most = static_cast<int64_t>(std::min(by_sums, by_words));
    }
    static bool fits(const poly_extent &a, const poly_extent &b) {
        return a.bits <= 64 * n - 3 && b.bits <= 62 && b.norm < std::ldexp(1.0, 62);
    }

    static uint64_t cost() { return 1; } /* of a product, in products of words */
    static int64_t load(const number *x) { return chain_value<int64_t>(x); }
    void add(uint32_t cell, const number *x) { store(cell, of(cell) + chain_value<value>(x)); }
    bool is_zero(uint32_t cell) const { return exact_ring<n>::empty(&word[std::size_t{cell} * n]); }
    void clear(uint32_t cell) { store(cell, 0); }
    division_step divide(uint32_t cell, int64_t *q) const {
        const value v = of(cell), quotient = v / lead;
        if (v == 0) return division_step::zero;
        if (quotient * lead != v) return division_step::fails;
        if (quotient > most || quotient < -most) return division_step::too_large;
        *q = static_cast<int64_t>(quotient);
        return division_step::found;
    }
    /* The cells from `from` on, at the places, -= q * y. */
    void subtract(uint32_t from, int64_t q, const int64_t *y, const uint32_t *at, uint32_t count) {
        uint64_t *c = &word[std::size_t{from} * n];
        for (uint32_t k = 0; k < count; k++) exact_ring<n>::add(c + std::size_t{at[k]} * n, -q, y[k]);
    }
    static void put(int64_t q, number *x) {
        put_chain(q < 0 ? -static_cast<uint64_t>(q) : static_cast<uint64_t>(q), q < 0 ? -1 : 1, x);
    }

  private:
    using bits = std::conditional_t<n == 1, uint64_t, unsigned __int128>;
    value of(uint32_t cell) const {
        bits v = word[std::size_t{cell} * n];
        if constexpr (n == 2) v |= static_cast<bits>(word[std::size_t{cell} * n + 1]) << 64;
        return static_cast<value>(v);
    }
    void store(uint32_t cell, value v) {
        word[std::size_t{cell} * n] = static_cast<uint64_t>(v);
        if constexpr (n == 2) word[std::size_t{cell} * n + 1] = static_cast<uint64_t>(static_cast<bits>(v) >> 64);
    }
    const int64_t lead;
    int64_t most;
    buffer<uint64_t> word;
};

/* Residues modulo a prime. */
class residue_cells {
  public:
    residue_cells(uint32_t cells, const number *leading)
        : m(static_cast<uint32_t>(modulus)), inverse(static_cast<uint64_t>(mod_inverse(leading->lint_val))),
          word(cells) {
        std::fill(word.begin(), word.end(), 0);
    }
    static uint64_t cost() { return 1; }
    static int64_t load(const number *x) { return x->lint_val; }
    void add(uint32_t cell, const number *x) { m.add(word[cell], 1, static_cast<uint64_t>(x->lint_val)); }
    bool is_zero(uint32_t cell) const { return word[cell] == 0; } /* as far as can be seen at a glance */
    void clear(uint32_t cell) { word[cell] = 0; }
    division_step divide(uint32_t cell, int64_t *q) const {
        *q = static_cast<int64_t>(m.settle(m.settle(word[cell]) * inverse));
        return *q ? division_step::found : division_step::zero;
    }
    void subtract(uint32_t from, int64_t q, const int64_t *y, const uint32_t *at, uint32_t count) {
        uint64_t *c = &word[from];
        const uint64_t minus = m.n - static_cast<uint64_t>(q);
        for (uint32_t k = 0; k < count; k++) m.add(c[at[k]], minus, static_cast<uint64_t>(y[k]));
    }
    static void put(int64_t q, number *x) { x->lint_val = static_cast<int32_t>(q); }

  private:
    const residue_sum m;
    const uint64_t inverse;
    buffer<uint64_t> word;
};

/* Integers in cells of any one number of limbs, in two's complement, which hold the products of quotients of so many bits.
   A handle is the place of a magnitude. */
class long_cells {
  public:
    long_cells(uint32_t cells, const poly_extent &a, const poly_extent &b, const number *leading, int quotient_bits);
    uint64_t cost() const { return 4 + width * width / 4; }
    int64_t load(const number *x);
    void add(uint32_t cell, const number *x);
    bool is_zero(uint32_t cell) const { return flat_length(at(cell), width) == 0; }
    void clear(uint32_t cell) { flat_clear(at(cell), width); }
    division_step divide(uint32_t cell, int64_t *q);
    void subtract(uint32_t from, int64_t q, const int64_t *y, const uint32_t *at, uint32_t count);
    void put(int64_t q, number *x) const;

  private:
    struct place {
        std::size_t first, limbs;
        bool negative;
    };
    limb *at(uint32_t cell) { return &word[std::size_t{cell} * width]; }
    const limb *at(uint32_t cell) const { return &word[std::size_t{cell} * width]; }
    int64_t keep(const limb *m, std::size_t n, bool negative);

    const std::size_t width;     /* limbs of a cell */
    const std::size_t most_bits; /* of a quotient */
    buffer<limb> word, limbs;    /* the cells; all magnitudes */
    buffer<place> places;
    buffer<limb> magnitude, quotient, rest;
    place lead;
};

} // namespace tolvek
