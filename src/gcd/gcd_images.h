/* Images of polynomials modulo primes and at points, which bound the degree of a GCD from above.

   An image is a copy: the operands are only read, so that an interrupt finds them as they were. An image that loses the
   degree of an operand tells nothing. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* The numbers of p, chains, as residues of the modulus in force; terms that become 0 go. For use in a modular ring. */
polynode *modular_image(const polynode *p);

/* A stretch modulo a prime inside integer arithmetic: the ring, the counters of the GCD in progress and the cache are
   put back at its end. */
class modular_stretch {
  public:
    explicit modular_stretch(int32_t p);
    ~modular_stretch();
    modular_stretch(const modular_stretch &) = delete;
    modular_stretch &operator=(const modular_stretch &) = delete;

  private:
    ring_guard ring;
    int counters[8];
};

/* Over the integers: the degree in the main variable of the GCD modulo a prime that divides neither leading number.
   False where none of a few primes is such. */
bool use_modular(const polynode *u, const polynode *v, pt *names, int32_t *degree);

/* Modulo a prime: the degree of the GCD of u and v at random points of all deeper variables. False where one of them
   loses degree there. */
bool evaluation_test(const polynode *u, const polynode *v, pt *names, int32_t *degree);

} // namespace tolvek
