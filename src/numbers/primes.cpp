/* Primality and least factors.

   Primality: the strong pseudoprime test (G. Miller, 1976; M. Rabin, 1980). The bases 2, 3, 5, 7 decide every n below
   3,215,031,751 (C. Pomerance, J. Selfridge, S. Wagstaff, 1980), the first 12 primes every n below
   318,665,857,834,031,151,167,461 (J. Sorenson, J. Webster, 2017).

   Least factor: trial division up to trial_limit, then the rho method (J. Pollard, 1975) with the cycle finding of
   R. Brent (1980), by which a composite is split until only primes are left; the smallest of them is the answer. */
#include "numbers/primes.h"

#include "numbers/modular.h"
#include "quoly/quoly.h"
#include "top/interrupts.h"
#include "top/start_tables.h"

#include <cmath>
#include <numeric>

namespace tolvek {

/* ---- products modulo n ---- */

struct half_word_ring { /* n below 2^32 */
    word_divisor divisor;
    explicit half_word_ring(uint64_t n) : divisor(static_cast<uint32_t>(n)) {}
    uint64_t product(uint64_t a, uint64_t b) const { return divisor.remainder(a * b); }
};

struct word_ring { /* every n */
    uint64_t n;
    explicit word_ring(uint64_t modulo) : n(modulo) {}
    uint64_t product(uint64_t a, uint64_t b) const {
        return static_cast<uint64_t>(static_cast<unsigned __int128>(a) * b % n);
    }
};

/* ---- primality ---- */

constexpr uint64_t first_primes[] = {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37};
constexpr int first_prime_count = 12;
constexpr uint64_t four_bases_suffice = 3215031751;

/* Does odd n pass the test to the base? n - 1 is 2^twos times odd. */
template <class Ring> static bool passes(uint64_t n, uint64_t base, uint64_t odd, int twos) {
    const Ring ring(n);
    uint64_t power = 1;
    for (uint64_t square = base, e = odd; e; e >>= 1) {
        if (e & 1) power = ring.product(power, square);
        square = ring.product(square, square);
    }
    if (power == 1 || power == n - 1) return true;
    while (--twos > 0) {
        power = ring.product(power, power);
        if (power == n - 1) return true;
    }
    return false;
}

bool is_prime_word(uint64_t n) {
    if (n < 2) return false;
    for (uint64_t p : first_primes)
        if (n % p == 0) return n == p;
    if (n < 41 * 41) return true;
    const bool short_one = n < four_bases_suffice;
    const int twos = __builtin_ctzll(n - 1);
    const uint64_t odd = (n - 1) >> twos;
    for (int i = 0; i < (short_one ? 4 : first_prime_count); i++)
        if (!(short_one ? passes<half_word_ring>(n, first_primes[i], odd, twos)
                        : passes<word_ring>(n, first_primes[i], odd, twos)))
            return false;
    return true;
}

int is_prime(int32_t n) { return n > 1 && is_prime_word(static_cast<uint64_t>(n)); }

/* ---- least factors ---- */

constexpr uint64_t trial_limit = 1 << 21; /* no more than 2 factors of a number below 2^63 lie above it */

/* The least factor of n up to the limit, or 1 when there is none. */
static uint64_t trial_factor(uint64_t n, uint64_t limit) {
    if (n % 2 == 0) return 2;
    if (n % 3 == 0) return 3;
    for (uint64_t d = 5; d <= limit && d * d <= n; d += 6) {
        if (n % d == 0) return d;
        if (n % (d + 2) == 0) return d + 2;
        if ((d & 0xffff) < 6) safe_point();
    }
    return 1;
}

static uint64_t distance(uint64_t a, uint64_t b) { return a > b ? a - b : b - a; }

/* A divisor of odd composite n, or n when the sequence x^2 + c fails. The differences of up to `batch` steps are
   multiplied before a divisor is asked for; when that gives n itself they are tried one by one. */
static uint64_t rho_divisor(uint64_t n, uint64_t c) {
    const word_ring ring(n);
    constexpr uint64_t batch = 128;
    auto step = [&ring, n, c](uint64_t x) {
        x = ring.product(x, x);
        return x >= n - c ? x - (n - c) : x + c;
    };
    uint64_t y = 2, x, before, product = 1, divisor = 1;
    for (uint64_t length = 1; divisor == 1; length *= 2) {
        x = before = y;
        for (uint64_t i = 0; i < length; i++) y = step(y);
        for (uint64_t done = 0; done < length && divisor == 1; done += batch) {
            safe_point();
            before = y;
            for (uint64_t i = 0; i < batch && i < length - done; i++) {
                y = step(y);
                product = ring.product(product, distance(x, y));
            }
            divisor = std::gcd(product, n);
        }
    }
    if (divisor != n) return divisor;
    do {
        before = step(before);
        divisor = std::gcd(distance(x, before), n);
    } while (divisor == 1);
    return divisor;
}

static uint64_t square_root(uint64_t n) { /* the floor */
    uint64_t r = static_cast<uint64_t>(std::sqrt(static_cast<long double>(n)));
    while (r * r > n) r--;
    return r;
}

/* The least factor of n, none of whose factors is small. */
static uint64_t least_large_factor(uint64_t n) {
    if (is_prime_word(n)) return n;
    uint64_t divisor = square_root(n);
    if (divisor * divisor == n) return least_large_factor(divisor);
    divisor = n;
    for (uint64_t c = 1; divisor == n; c++) divisor = rho_divisor(n, c);
    uint64_t p = least_large_factor(divisor), q = least_large_factor(n / divisor);
    return p < q ? p : q;
}

uint64_t least_factor(uint64_t n) {
    if (is_prime_word(n)) return n;
    uint64_t d = trial_factor(n, trial_limit);
    return d > 1 ? d : least_large_factor(n);
}

int32_t long_is_prime(int32_t n) {
    if (n < 2) return 0;
    uint64_t d = least_factor(static_cast<uint64_t>(n));
    return d == static_cast<uint64_t>(n) ? 1 : static_cast<int32_t>(d);
}

uint64_t longg_is_prime(int32_t hi, int32_t mid, int32_t lo) {
    uint64_t n = (static_cast<uint64_t>(hi) << 56) + (static_cast<uint64_t>(mid) << 28) + static_cast<uint64_t>(lo);
    if (n < 2) return 0;
    uint64_t d = least_factor(n);
    return d == n ? 1 : d;
}

/* ---- enumeration ---- */

int32_t nextprime(int32_t n) {
    if (n < 2) return n + 2;
    for (int64_t next = int64_t{n} + (n % 2 == 0 ? 1 : 2); next <= INT32_MAX; next += 2)
        if (is_prime_word(static_cast<uint64_t>(next))) return static_cast<int32_t>(next);
    return 0;
}

int32_t nth_prime(int32_t n) {
    if (n >= 1 && n <= small_prime_count) return small_prime[n - 1];
    error(346, blank);
    return 2;
}

/* The value of a plain number as an index; 0 for one that is out of every table's range. */
static int32_t index_of(const number *x) {
    if (flotemode) return std::fabs(x->flote_val) < 1e9L ? static_cast<int32_t>(std::lround(x->flote_val)) : 0;
    if (lintmode) return x->lint_val;
    return x->num_len == 1 ? x->num_head->digit : 0;
}

void nth_prime(quolynode **q) { quoly_set(nth_prime(index_of((*q)->numb)), q); }

/* d, when it divides n: out of n, and in front of the list. */
static void strip_factor(int32_t d, int32_t *n, numnode **list) {
    if (*n % d) return;
    while (*n % d == 0) *n /= d;
    numnode *factor = newdigit();
    factor->digit = d;
    factor->next = *list;
    *list = factor;
}

void prime_factors(int32_t n, numnode **list) {
    strip_factor(2, &n, list);
    strip_factor(3, &n, list);
    for (int32_t d = 5; int64_t{d} * d <= n; d += 6) {
        strip_factor(d, &n, list);
        strip_factor(d + 2, &n, list);
    }
    if (n > 1) strip_factor(n, &n, list);
}

} // namespace tolvek
