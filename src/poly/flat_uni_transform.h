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
    /* c := the image of the product of a[0 .. na) and b[0 .. nb), which may be one. It takes less room than two images. */
    void multiply(const uint32_t *a, std::size_t na, const uint32_t *b, std::size_t nb, image *c) const;
    /* z[0 .. length) := the first coefficients. The image is used up. */
    void coefficients(image *c, uint32_t *z, std::size_t length) const;

  private:
    void fold(const uint32_t *x, std::size_t length, uint32_t *to) const;

    const uni_field field;
    std::size_t n;
    int primes;
};

/* The least number of points that a transform has, from this number on. */
std::size_t uni_transform_points(std::size_t least);
/* More would not fit: each prime has roots of unity of order 2^21, and the last three levels need none. */
constexpr std::size_t most_uni_points = std::size_t{1} << 24;
/* Over how many primes, for residues modulo a number and sums of so many products. */
int uni_transform_primes(uint32_t ring_modulus, std::size_t terms);

} // namespace tolvek
