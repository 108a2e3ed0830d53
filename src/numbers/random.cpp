#include "numbers/random.h"

#include "numbers/handles.h"
#include "quoly/quoly.h"
#include "top/start_tables.h"

#include <cstdlib>
#include <ctime>

namespace tolvek {

/* ---- the generator ---- */

constexpr int lag = 31, short_lag = 3;
constexpr int discarded = 10 * lag; /* until the seed's own pattern is gone */

static uint32_t state[lag]; /* the last numbers of the sequence; the oldest at `oldest` */
static int oldest = -1;     /* below 0: not seeded yet */

static uint32_t next_word() {
    uint32_t word = state[oldest] += state[(oldest + lag - short_lag) % lag];
    oldest = (oldest + 1) % lag;
    return word;
}

void seed_random(uint32_t seed) {
    constexpr int64_t multiplier = 16807, prime_modulus = 2147483647;
    int64_t word = static_cast<int32_t>(seed ? seed : 1);
    for (uint32_t &place : state) {
        place = static_cast<uint32_t>(word);
        word = word * multiplier % prime_modulus;
        if (word < 0) word += prime_modulus;
    }
    oldest = short_lag;
    for (int i = 0; i < discarded; i++) next_word();
}

int32_t random_31() {
    if (oldest < 0) seed_random(first_seed);
    return static_cast<int32_t>(next_word() >> 1);
}

/* ---- the forms of it ---- */

int32_t scaled_to_14_bits(int32_t value) {
    const double scaled = value / two_thirty1 * 16384;
    return scaled < 16383 ? static_cast<int32_t>(scaled) : 16383;
}

int32_t rand_integer2() { return scaled_to_14_bits(random_31()); }

int32_t rand_integer() {
    int32_t upper = rand_integer2();
    return rand_integer2() + (upper << 14);
}

int32_t rand_integer3() {
    return static_cast<int32_t>(static_cast<uint64_t>(std::clock()) * static_cast<uint64_t>(rand_integer2()) % 48871);
}

void randomize(int seed_flag, quolynode **q) {
    int32_t v = rand_integer();
    if (seed_flag) v = static_cast<int32_t>(std::labs(v + std::clock()) & 0xfffffff);
    quoly_handle value, denominator;
    quoly_set(v, value.slot());
    if (!equal(&rand_denom_n, &number_1)) {
        number_handle copy;
        num_assign(&rand_denom_n, &copy);
        scalar_to_quoly(&copy, denominator.slot());
        fast_quoly_quot(value.slot(), denominator.get(), 0);
    }
    value.release_to(q);
}

} // namespace tolvek
