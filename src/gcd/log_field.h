/* Finite fields of moderate size, whose elements are known by their logarithms. Private to src/gcd.

   The field has p^k elements over the integers modulo a small prime p: enough for points at which images in one variable
   are rarely unlucky, and few enough for tables. An element is its logarithm to a base that generates the units, so a
   product is a sum; and a sum is a^i + a^j = a^i (1 + a^(j-i)), with the logarithms of 1 + a^n in a table (K. Huber, Some
   comments on Zech's logarithms, 1990). */
#pragma once

#include "top/heap.h"

#include <cstddef>
#include <cstdint>

namespace tolvek {

struct log_tables {
    uint32_t p = 0;              /* 0: none */
    int k;                       /* p^k elements */
    uint32_t order;              /* of the group of units: one less than the field has elements */
    buffer<uint32_t> next;       /* the logarithm of 1 + a^n, by n */
    buffer<uint32_t> of_residue; /* the logarithm, by residue */
    buffer<uint32_t> residue;    /* of the element with the logarithm n * order / (p - 1), by n */
    int users = 0;
};

/* How many elements: about as many as keep the table near the processor, or so many that points are hardly ever unlucky. */
enum class field_size { near, large };

/* The tables stay when a frame is left, for the next one with this prime. */
class log_field {
  public:
    static constexpr uint32_t largest_prime = 1 << 21;
    explicit log_field(uint32_t p, field_size size = field_size::near);
    ~log_field() {
        if (t) t->users--;
    }
    log_field(const log_field &) = delete;
    log_field &operator=(const log_field &) = delete;
    /* False while frames further out hold all the tables that there are. */
    bool is_there() const { return t; }

    uint32_t prime() const { return t->p; }
    uint32_t units() const { return order; }
    uint32_t zero() const { return order; }
    uint32_t one() const { return 0; }
    /* The sum of two logarithms, none of which is that of 0. */
    uint32_t shifted(uint32_t a, uint32_t b) const { return a + b >= order ? a + b - order : a + b; }
    uint32_t product(uint32_t a, uint32_t b) const { return a == order || b == order ? order : shifted(a, b); }
    uint32_t quotient(uint32_t a, uint32_t b) const { /* b is not 0 */
        return a == order ? order : a >= b ? a - b : a + order - b;
    }
    uint32_t sum(uint32_t a, uint32_t b) const {
        if (a == order) return b;
        if (b == order) return a;
        const uint32_t n = table[b >= a ? b - a : b + order - a];
        return n == order ? order : shifted(a, n);
    }
    uint32_t negative(uint32_t a) const { return a == order ? order : shifted(a, minus_one); }
    uint32_t difference(uint32_t a, uint32_t b) const { return sum(a, negative(b)); }
    /* The e-th power of a, which is not 0. */
    uint32_t power(uint32_t a, uint32_t e) const { return static_cast<uint32_t>(uint64_t{a} * e % order); }

    uint32_t of_residue(uint32_t r) const { return t->of_residue[r]; }
    /* False where a is no residue. */
    bool is_residue(uint32_t a, uint32_t *r) const;
    uint32_t random_unit() const;

  private:
    log_tables *t;
    const uint32_t *table;
    uint32_t order, minus_one;
};

/* ---- polynomials in one variable ---- */

/* By exponents; the last coefficient is not 0, and 0 is empty. */
using log_poly = buffer<uint32_t>;

void log_trim(const log_field &f, log_poly *a);
/* a := the monic greatest common divisor of a and b, which are not 0; b is used up. */
void log_gcd(const log_field &f, log_poly *a, log_poly *b);
/* y := the coefficients, by ascending powers, of the polynomial of degree below n that has the values y at the n points. */
void log_interpolate(const log_field &f, const uint32_t *points, uint32_t *y, std::size_t n);

/* The transposed system of Vandermonde (R. Zippel, 1990): x_k with sum of x_k m_k^t = w_t for t = 1, 2, ..., n. */
class log_vandermonde {
  public:
    /* m: n elements, different and not 0. */
    log_vandermonde(const log_field &field, const uint32_t *m, std::size_t n);
    void solve(const uint32_t *w, uint32_t *x) const;

  private:
    const log_field &f;
    const uint32_t *const roots;
    const std::size_t n;
    log_poly master; /* the product of z - m_k */
};

} // namespace tolvek
