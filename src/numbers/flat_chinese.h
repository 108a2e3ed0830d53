/* Integers from their residues modulo the same primes again and again. What belongs to the primes is computed once; then
   a value of m primes costs m passes over its limbs. (For moduli that are no primes, and for one value: chinese.h.) */
#pragma once

#include "numbers/modular.h"
#include "numbers/number.h"
#include "top/heap.h"

#include "numbers/flat_basic.h"

namespace tolvek {

class chinese_values {
  public:
    /* Distinct primes below 2^31; at least one. */
    chinese_values(const uint32_t *its_primes, std::size_t count);

    std::size_t count() const { return primes.size(); }
    uint32_t prime(std::size_t i) const { return primes[i]; }
    /* x := the chain v with |v| <= P / 2, P the product of the primes, whose residue modulo prime i is residues[i * step].
       No safe points. */
    void value(const uint32_t *residues, std::size_t step, number *x);

  private:
    limb *part(std::size_t i) { return parts.data() + i * limbs; }

    std::size_t limbs;                /* of sums: those of P and one more */
    buffer<uint32_t> primes, weights; /* weights: the inverse of part i modulo prime i */
    buffer<uint64_t> reciprocals;
    buffer<limb> product, half, parts, sum, quotient; /* parts: P / prime i */
};

} // namespace tolvek
