/* What the routines on flat polynomials share among themselves. */
#pragma once

#include "poly/flat_uni.h"

#include <cstddef>

/* Compiled twice, for processors with 32-byte vectors and for all others; which one runs is chosen when the program
   starts. The sanitizers are not ready so early. */
#if defined(__SANITIZE_ADDRESS__) || !defined(__x86_64__) || !defined(__OPTIMIZE__)
#define TOLVEK_WIDE_VECTORS
#else
#define TOLVEK_WIDE_VECTORS [[gnu::target_clones("avx2", "default")]]
#endif

namespace tolvek {

/* x or x - bound, whichever is in [0, bound); x is below 2 bound. Without a branch. */
inline uint32_t uni_cut(uint32_t x, uint32_t bound) { return x - bound < x ? x - bound : x; }

/* t / 2^32 modulo an odd p in [0, p); t is below p 2^32. p_inverse: 1 / p modulo 2^32 (P. Montgomery, 1985). */
inline uint32_t uni_reduce(uint64_t t, uint32_t p, uint32_t p_inverse) {
    const uint32_t m = static_cast<uint32_t>(t) * p_inverse;
    const uint32_t r = static_cast<uint32_t>(t >> 32) - static_cast<uint32_t>(uint64_t{m} * p >> 32); /* above -p */
    return r + p < r ? r + p : r;
}

/* x[i] += c * y[i] for 0 <= i < n. x does not overlap y. */
void uni_add_row(const uni_field &f, uint32_t *x, const uint32_t *y, std::size_t n, uint32_t c);
/* x[i] += low * y[i] + high * y[i - 1] for 0 <= i <= n, where y[-1] and y[n] count as 0; n is not 0. */
void uni_add_two_rows(const uni_field &f, uint32_t *x, const uint32_t *y, std::size_t n, uint32_t low, uint32_t high);
/* x[i] := c * x[i] */
void uni_scale_row(const uni_field &f, uint32_t *x, std::size_t n, uint32_t c);
/* x[i] += y[i], x[i] -= y[i] */
void uni_add_to(const uni_field &f, uint32_t *x, const uint32_t *y, std::size_t n);
void uni_take_from(const uni_field &f, uint32_t *x, const uint32_t *y, std::size_t n);

/* z[0 .. nx + ny - 1) += or -= x * y by rows; nx and ny are not 0. z overlaps neither. */
void uni_add_product(const uni_field &f, uint32_t *z, const uint32_t *x, std::size_t nx, const uint32_t *y,
                     std::size_t ny, bool minus = false);
/* x[0 .. nx) := its remainder by y[0 .. ny), whose last entry is lead other than 0 with the given inverse, in
   x[0 .. ny - 1); the quotient's nx - ny + 1 entries go to q if not null. nx >= ny >= 1. */
void uni_divide_rows(const uni_field &f, uint32_t *x, std::size_t nx, const uint32_t *y, std::size_t ny,
                     uint32_t inverse, uint32_t *q);

/* x := its remainder by y, which is not zero; q, if not null, := the quotient. */
void uni_divide_in_place(const uni_field &f, uni_poly *x, const uni_poly &y, uni_poly *q);

/* The number of entries up to the last one that is not 0. */
inline std::size_t uni_length(const uint32_t *x, std::size_t n) {
    while (n && x[n - 1] == 0) n--;
    return n;
}

/* *a, to be replaced, := b. */
inline void uni_move(uni_poly *b, uni_poly *a) { *a = static_cast<uni_poly &&>(*b); }

} // namespace tolvek
