/* The primes below 2^31, the largest first: moduli of Chinese remainders that no message tells of. */
#pragma once

#include "numbers/chinese.h"
#include "numbers/primes.h"
#include "top/heap.h"
#include "top/start_tables.h"

namespace tolvek {

constexpr double word_prime_bits = 30.99; /* at least, of the first 100,000 */

class word_primes {
  public:
    /* They never end where they are used: there are more than 10^8. */
    uint32_t next() {
        if (left > 0) return last = static_cast<uint32_t>(lrgpme[--left]);
        do last -= 2;
        while (!is_prime_word(last));
        return last;
    }

  private:
    int left = lrgpme_count;
    uint32_t last = 0;
};

/* How many of them have a product above 2^bits. */
inline int word_primes_for(double bits) { return static_cast<int>((bits < 0 ? 0 : bits) / word_prime_bits) + 1; }

/* x := the integer of at most so many bits, and of either sign, that image(p) gives modulo each of the primes. */
template <class Image> void integer_by_primes(double bits, Image image, number *x) {
    const int count = word_primes_for(bits + 1); /* and its sign */
    buffer<int32_t> residues, moduli;
    word_primes primes;
    for (int i = 0; i < count; i++) {
        const uint32_t p = primes.next();
        moduli.push(static_cast<int32_t>(p));
        residues.push(static_cast<int32_t>(image(p)));
    }
    number_from_residues(residues.data(), moduli.data(), count, 1, x);
}

} // namespace tolvek
