/* Sparse GCDs modulo small primes from images over a larger field. Private to src/gcd.

   The field is one of log_field.h. At a random point of the deeper variables Euclid's algorithm gives a monic image in the
   main variable, which is multiplied by the value of a polynomial that the leading coefficient of the GCD divides. Then the
   variables come in one after the other: the terms that are there without a variable have polynomials in it as
   coefficients, whose values are found for as many points as their degree asks for. For one point that takes as many
   images as the longest coefficient of a power of the main variable has terms (R. Zippel, Probabilistic algorithms for
   sparse polynomials, 1979). */
#pragma once

#include "gcd/log_field.h"
#include "gcd/sparse_images.h"

namespace tolvek {

class log_images {
  public:
    /* The work has its operands; it gets logarithms for residues. */
    log_images(const log_field &field, sparse_work &tables);
    /* degree[k] := the degree in the variable k of the image of the GCD at a random point of the others, for all variables:
       never below that of the GCD. False where an operand loses degree. */
    bool find_degrees(int32_t *degree);
    /* The terms of the answer go to work.terms. The degrees have been found. */
    outcome find_terms(const int32_t *degree);

  private:
    struct group { /* the terms with one power of the main variable */
        std::size_t first, count;
    };

    bool image_in(const term_table &t, int variable, log_poly *image) const;
    void add_power(term_table *t, int variable, uint32_t x) const;
    void next_point();
    outcome take_image(log_poly *image);
    void set_values(int stage, uint32_t x);
    void find_groups();
    bool choose_ratios(int stage);
    outcome start();
    outcome lift(int stage);
    outcome take_values(int stage, uint32_t x, uint32_t *to, std::size_t stride);
    bool collect();

    const log_field &f;
    sparse_work &work;
    int32_t main_degree = 0;
    uint32_t point[most_variables]; /* of the variables that are not yet there */
    buffer<image_term> known;       /* below the leading one; coefficients are elements of the field */
    buffer<group> groups;
    buffer<uint32_t> monomial; /* the value of each known term at the first point of a stage */
};

} // namespace tolvek
