/* Arithmetic of residues in one word, 0 .. modulus - 1. Operands are residues; so are results. In a table field (finf)
   elements are polynomials over two elements, bit by bit, and every routine here but those on exponents and words
   computes in the field. */
#pragma once

#include "top/tolvek.h"

#include <cassert>

namespace tolvek {

/* ---- reduction without division ---- */

/* A word n from 2 to 2^31 and 2^64 / n rounded up, (2^64 + e) / n with 0 <= e < n (N. Moeller, T. Granlund, 2011, and
   D. Lemire, O. Kaser, N. Kurz, 2019, for the two ways to use it). */
struct word_divisor {
    uint64_t n, inverse;

    explicit word_divisor(uint32_t divisor) : n(divisor), inverse(UINT64_MAX / divisor + 1) {}
    word_divisor(uint32_t divisor, uint64_t its_inverse) : n(divisor), inverse(its_inverse) {}

    static uint64_t high_word(uint64_t a, uint64_t b) {
        return static_cast<uint64_t>(static_cast<unsigned __int128>(a) * b >> 64);
    }
    /* v mod n for every v. The quotient is too large by less than v e / (n 2^64) < 1. */
    uint32_t remainder(uint64_t v) const { return settle(v, high_word(v, inverse) * n); }

    /* a b mod n for a and b below n. The factor that is there first should be b: its product with the inverse does
       not wait for a. For n up to largest_one_step the remainder is the part of a b / n behind the point times n: the
       excess of the inverse adds a b e / 2^64, less than n^3 / 2^64 <= 1. */
    static constexpr uint32_t largest_one_step = 2642245;
    uint32_t product(uint64_t a, uint64_t b) const {
        const uint64_t b_by_n = kept_apart(b * inverse);
        if (inverse >= UINT64_MAX / largest_one_step) return static_cast<uint32_t>(high_word(a * b_by_n, n));
        return settle(a * b, high_word(a, b_by_n) * n);
    }

  private:
    /* v - multiple, which is n too low at times. Both candidates are ready at the same time. */
    /* Keeps the compiler from forming a * inverse first, which would have to wait. */
    static uint64_t kept_apart(uint64_t factor) {
#if __has_builtin(__builtin_assoc_barrier)
        return __builtin_assoc_barrier(factor);
#else
        return factor;
#endif
    }
    uint32_t settle(uint64_t v, uint64_t multiple) const {
        uint64_t r = v - multiple, s = v + n - multiple;
        return static_cast<uint32_t>(static_cast<int64_t>(r) < 0 ? s : r);
    }
};

/* The modulus as a divisor. */
inline word_divisor ring_divisor() { return {static_cast<uint32_t>(int32_t{modulus}), modulus_inverse}; }

/* ---- products, sums, differences ---- */

/* In the field with `modulus` elements, 256 or 65536: polynomials modulo x^8 + x^4 + x^3 + x^2 + 1 or
   x^16 + x^12 + x^3 + x + 1. */
int32_t field_product(int32_t a, int32_t b);
int32_t field_inverse(int32_t x); /* x other than 0 */

/* a * b. Where one factor is known earlier than the other it should be b. */
inline int32_t modmult(int32_t a, int32_t b) {
    assert(a >= 0 && a < modulus && b >= 0 && b < modulus);
    if (finf) [[unlikely]]
        return field_product(a, b);
    return static_cast<int32_t>(ring_divisor().product(static_cast<uint32_t>(a), static_cast<uint32_t>(b)));
}
int32_t nmodmult(int32_t a, int32_t b); /* the same, never in line */

/* a + b and a - b for residues modulo m; in a table field both are the exclusive or. */
inline int32_t mod_add(int32_t a, int32_t b, int32_t m) {
    if (finf) [[unlikely]]
        return a ^ b;
    uint32_t sum = static_cast<uint32_t>(a) + static_cast<uint32_t>(b), n = static_cast<uint32_t>(m);
    return static_cast<int32_t>(sum >= n ? sum - n : sum);
}
inline int32_t mod_sub(int32_t a, int32_t b, int32_t m) {
    if (finf) [[unlikely]]
        return a ^ b;
    return a >= b ? a - b : a - b + m;
}

/* The integer v in the modular ring: its residue, or in a table field the word of the last bits of its size. */
int32_t residue_of_integer(int64_t v);

/* ---- words and exponents: integers in every ring ---- */

/* a * b mod m for a product below 2^32, divided only when it is not reduced yet. */
inline int32_t mod_mult(int32_t a, int32_t b, int32_t m) {
    uint32_t p = static_cast<uint32_t>(a) * static_cast<uint32_t>(b), n = static_cast<uint32_t>(m);
    return static_cast<int32_t>(p < n ? p : p % n);
}
/* a + b mod m for every a and b from 0 on: the digits of a chain, folded into a residue, need not be below m. */
inline int32_t spec_mod_add(int32_t a, int32_t b, int32_t m) {
    uint32_t sum = static_cast<uint32_t>(a) + static_cast<uint32_t>(b), n = static_cast<uint32_t>(m);
    return static_cast<int32_t>(sum < n ? sum : sum % n);
}
int32_t spec_modmult(int32_t a, int32_t b); /* a * b mod (modulus - 1), a and b from 0 on */

/* The chain x mod m, 0 .. m - 1 for either sign; m from 2 to 2^31. */
uint32_t chain_modulo(const number *x, uint32_t m);
uint32_t chain_modulo(const number *x, const word_divisor &m);

/* ---- inverses: the extended Euclidean algorithm ---- */

/* y := the inverse of x modulo n, 0 <= x < n, or false and y unchanged when there is none. */
bool inverse_modulo(uint32_t x, const word_divisor &n, uint32_t *y);
/* The same in the ring in force. */
bool find_inverse(int32_t x, int32_t *y);
/* The inverse of x; error 85 for a residue that is no unit, 0 among them, and 1 where that returns. */
int32_t mod_inverse(int32_t x);
/* The same, and the line "bad2: " with x in front of the error. */
int32_t imod_inverse(int32_t x);
inline void mod_inverse(int32_t x, int32_t *y) { *y = mod_inverse(x); }
inline void emod_inverse(int32_t x, int32_t *y) { *y = mod_inverse(x); }
inline void verse(int32_t *x) { *x = mod_inverse(*x); }

/* ---- powers and roots ---- */

/* y := x^e in every modular ring; x^0 is 1, for x = 0 too. */
void mod_number_power(int32_t x, uint32_t e, int32_t *y);

/* The smaller square root of x in a prime field; 0 when x is 0 or no square. In a table field the one root. What
   belongs to the modulus is kept for the next call, as long as sqrt_mod is the modulus. */
int32_t modular_sqrt(int32_t x);
extern int32_t sqrt_mod;

} // namespace tolvek
