/* Products of flat polynomials by number-theoretic transforms modulo primes of 30 bits. */
#pragma once

#include "poly/flat_uni_work.h"

namespace tolvek {

/* Products modulo x^points - 1 over one field. The transforms of an operand, its image, can be used again.

   A coefficient of a sum of products of images, as an integer, must stay below the product of the primes: `terms` is a
   bound for the number of products of residues in it. */
class uni_transformer {
  public:
    using image = buffer<uint32_t>;

    /* points: at least the number of coefficients that must not meet their wrapped-around companions. */
    uni_transformer(const uni_field &f, std::size_t points, std::size_t terms);

    std::size_t points() const { return n; }
    /* x[0 .. length), which is folded modulo x^points - 1. */
    void transform(const uint32_t *x, std::size_t length, image *to) const;
    void multiply(const image &a, const image &b, image *c) const;    /* c := a * b; c is neither */
    void add_product(const image &a, const image &b, image *c) const; /* c := c + a * b */
    /* z[0 .. length) := the first coefficients. The image is used up. */
    void coefficients(image *c, uint32_t *z, std::size_t length) const;

  private:
    const uni_field field;
    std::size_t n;
    int primes;
};

/* The least number of points that a transform has, from this number on. */
std::size_t uni_transform_points(std::size_t least);
/* More would not fit. */
constexpr std::size_t most_uni_points = std::size_t{1} << 21;

} // namespace tolvek
