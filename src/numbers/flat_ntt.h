/* Number-theoretic transforms modulo primes of 62 bits: what flat_transform.cpp is built of.

   Values modulo p are kept in [0, 4p) or [0, 2p), not reduced further until the end (D. Harvey, Faster arithmetic for
   number-theoretic transforms, 2014). A fixed factor w comes with w 2^64 / p, truncated, which makes a product modulo
   p of two plain products and no division (V. Shoup's method, in Harvey's paper). */
#pragma once

#include "numbers/flat_basic.h"
#include "top/heap.h"

namespace tolvek {

struct ntt_root {
    limb value;    /* w, below p */
    limb quotient; /* floor(w 2^64 / p) */
};

/* One prime p = 2^62 - delta, and a root of unity of order 2^32 modulo p. */
struct ntt_prime {
    limb p;
    limb delta;   /* below 2^39 */
    limb inverse; /* 1 / p modulo 2^64 */
    limb root;
};

constexpr int ntt_primes = 3;
extern const ntt_prime ntt_fields[ntt_primes];

/* x w modulo p in [0, 2p), for any limb x. */
inline limb ntt_times(limb x, const ntt_root &w, limb p) {
    const limb q = static_cast<limb>(static_cast<limb2>(x) * w.quotient >> limb_bits);
    return x * w.value - q * p;
}

/* x or x - bound, whichever is in [0, bound); x is below 2 bound. */
inline limb ntt_cut(limb x, limb bound) { return x >= bound ? x - bound : x; }

ntt_root ntt_prepare(limb w, limb p); /* w below p, one of the primes */
limb ntt_inverse_of(limb x, limb p);  /* 1 / x modulo p */

/* The length of a transform: N = whole + tail points, whole a power of 2, at least 8, and tail 0 or whole / 2^split
   with split 1, 2 or 3. It works modulo (x^whole - 1)(x^tail - c), c^(2^split) = -1, so that sizes lie closer
   together than powers of 2. */
struct ntt_size {
    size_t whole, tail;
    int split;
    size_t points() const { return whole + tail; }
};
ntt_size ntt_size_for(size_t points); /* the least that holds so many */

/* Makes the table of roots for transforms of this size modulo each of the first so many primes. */
void ntt_prepare_roots(const ntt_size &size, int fields = ntt_primes);

/* a[0 .. N) below 2p, coefficients; zero from `used` on. Becomes the values, below 4p, in an order of their own. */
void ntt_forward(limb *a, size_t used, const ntt_size &size, int field);

/* a[i] := a[i] b[i] / 2^64 modulo p, below 2p. Operands below 4p. */
void ntt_multiply_values(limb *a, const limb *b, size_t n, int field);

/* Values below 2p become coefficients, below p, multiplied by 2^64: undoes ntt_forward and the factor of
   ntt_multiply_values. */
void ntt_backward(limb *a, const ntt_size &size, int field);

} // namespace tolvek
