/* Sparse polynomials from the values of a geometric sequence of points, over a prime field.

   f = sum of c_k y^(e_k), taken at w^s, w^(s+1), ..., gives a sequence with the recurrence whose polynomial has the
   roots w^(e_k) (M. Ben-Or, P. Tiwari, 1988). The recurrence is found value by value (J. Massey, 1969), the roots by trial
   of all exponents or by splitting (E. Berlekamp, 1970), their exponents by small and large steps (D. Shanks, 1971), and
   the coefficients by the transposed system of Vandermonde (R. Zippel, 1990). */
#pragma once

#include "poly/flat_uni.h"

namespace tolvek {

/* The shortest recurrence of a sequence, which comes value by value. */
class recurrence {
  public:
    /* Takes the next value; true where it agrees with what the recurrence has foretold. */
    bool add(const uni_field &f, uint32_t value);
    std::size_t length() const { return order; }
    /* Has it foretold so many values that it can be believed? */
    bool is_settled() const { return values.size() >= 2 * order + surplus; }
    const buffer<uint32_t> &sequence() const { return values; }
    /* *p := the monic polynomial of degree length() whose roots are the ratios of the sequence. */
    void roots_polynomial(uni_poly *p) const;

  private:
    static constexpr std::size_t surplus = 2;
    uint32_t discrepancy(const uni_field &f) const;
    void correct(const uni_field &f, uint32_t by);

    buffer<uint32_t> values;
    uni_poly connection, before; /* by ascending powers; both begin with 1 (empty: 1 alone) */
    uint32_t before_by = 1;      /* the discrepancy at which `before` was left */
    std::size_t since = 1;       /* values since then */
    std::size_t order = 0;
};

/* Logarithms to the base w of powers with exponents below `bound`. */
class logarithms {
  public:
    /* wanted: about how many will be asked for. */
    logarithms(const uni_field &f, uint32_t w, uint64_t bound, uint64_t wanted);
    /* False when x is none of the powers. */
    bool find(uint32_t x, uint64_t *e) const;

  private:
    struct entry {
        uint32_t power, exponent_plus_1; /* 0: free */
    };
    const uni_field &f;
    uint64_t bound, steps;
    uint32_t back; /* w^(- steps) */
    std::size_t mask = 0;
    buffer<entry> table;
};

struct sparse_term {
    uint64_t exponent;
    uint32_t coefficient;
};

/* *terms := those of the polynomial with these values, by descending exponents, where start is w^s of the head remark: the
   first value was taken at w^s. False where the roots are no powers of w, or the same twice. */
bool sparse_terms(const uni_field &f, const recurrence &values, uint32_t w, uint64_t s, const logarithms &logs,
                  uint64_t bound, buffer<sparse_term> *terms);

uint32_t field_power(const uni_field &f, uint32_t x, uint64_t e);

} // namespace tolvek
