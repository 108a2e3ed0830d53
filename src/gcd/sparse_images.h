/* Sparse GCDs from images in the main variable, over the integers modulo a prime. Private to src/gcd.

   The deeper variables become powers of one, y_j = w^(K_j), so that different exponents within the degrees of the answer
   make different powers (L. Kronecker). At the points w^s, w^(s+1), ... Euclid's algorithm gives monic images in the main
   variable, which are multiplied by the values of a polynomial that the leading coefficient of the GCD divides. Each
   coefficient of what results is a sparse polynomial in one variable; its values are taken until it is found
   (sparse_interpolation.h). So the number of images is about twice the number of terms of the longest coefficient,
   whatever the degrees are. (Compare J. Hu, M. Monagan, 2016.) */
#pragma once

#include "gcd/sparse_interpolation.h"
#include "poly/model.h"

namespace tolvek {

/* A polynomial as its terms, the highest first. Variables count from 0, the main one. */
struct term_table {
    int variables = 0;
    buffer<int32_t> expo; /* `variables` for each term, the main one first */
    buffer<const number *> given;
    buffer<uint32_t> coefficient;  /* residues */
    buffer<uint32_t> value, ratio; /* of what stands in front of the main variable at the current point; step by step */
    buffer<int32_t> degrees;       /* by variable */

    /* The terms of p, which must outlive the table; its own variable is the one of the number `first`. */
    void pour(const polynode *p, int first, int its_variables);
    /* The coefficients modulo p; false where the first one vanishes. */
    bool reduce(uint32_t p);
    std::size_t terms() const { return given.size(); }
    const int32_t *exponents(std::size_t i) const { return &expo[i * static_cast<std::size_t>(variables)]; }
    int32_t degree(int variable) const { return degrees[static_cast<std::size_t>(variable)]; }

  private:
    void pour_list(const polynode *p, int at, int32_t *now);
};

/* A term of the answer: the exponent of the main variable, and that of the one for all others. Terms come in the order of
   both, the highest first. */
struct image_term {
    int32_t main;
    uint64_t exponent;
    uint32_t coefficient;

    bool comes_before(const image_term &b) const { return main != b.main ? main > b.main : exponent > b.exponent; }
};

enum class outcome { found, coprime, bad_points, hopeless };

/* Over the field of `f`: the operands, both primitive with respect to the main variable and of positive degree in it, and
   the normaliser, which divides both leading coefficients and is divisible by that of the GCD. */
struct sparse_work {
    int variables;
    term_table u, v, normaliser;
    buffer<image_term> terms; /* of the GCD times what its leading coefficient lacks of the normaliser */

    /* The tables have no residues yet. */
    void pour(const polynode *first, const polynode *second, const polynode *its_normaliser, int its_variables);
    bool has_high_degrees() const;
    /* The degrees of the answer in the variables, which make the exponents of image_term; they serve all primes. `hopeless`
       where a prime of this size cannot tell the exponents apart. Before both routines come the residues. */
    outcome set_radices(const uni_field &f);
    outcome take_images(const uni_field &f);
    /* bounds: the degrees of the GCD in the variables from `first` on, never too low; they are met unless a random point is
       unlucky. Those below the main variable are left out where its own is positive. False where an image loses degree. */
    bool find_degrees(const uni_field &f, int first, int32_t *bounds);
    /* By the degrees of the GCD in the variables; false where no word holds the exponents. */
    bool set_radices(const int32_t *degree);
    std::size_t degree_bound(int variable) const { return static_cast<std::size_t>(radix[variable] - 1); }
    uint64_t step_of(int variable) const { return weight[variable]; } /* in the exponents of image_term */
    int32_t exponent(const image_term &t, int variable) const {
        if (variable == 0) return t.main;
        return static_cast<int32_t>(t.exponent / weight[variable] % radix[variable]);
    }

    /* Of exponents within the degrees of the answer. */
    uint64_t packed(const int32_t *exponents) const {
        uint64_t e = 0;
        for (int k = 1; k < variables; k++) e += static_cast<uint64_t>(exponents[k]) * weight[k];
        return e;
    }
    /* The terms, none with coefficient 0, as a polynomial: in lintmode of their residues, else of the integers next to 0 that
       they stand for modulo p. */
    polynode *built(const buffer<image_term> &list, uint32_t p) const { return built_part(list, 0, list.size(), 0, p); }

  private:
    uint64_t radix[most_variables], weight[most_variables], bound = 1;

    polynode *built_part(const buffer<image_term> &list, std::size_t from, std::size_t to, int variable,
                         uint32_t p) const;

    void start(const uni_field &f, uint32_t w, uint64_t s, term_table *t) const;
    class recurrences;
    bool collect(const uni_field &f, uint32_t w, uint64_t s, recurrences &of_coefficient, std::size_t degree);
};

} // namespace tolvek
