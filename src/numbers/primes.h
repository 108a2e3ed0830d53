/* Primes and factors of integers that fit a word, and lists of primes with residues.

   The tests are exact: a strong pseudoprime test to a set of bases that is known to suffice decides primality, and the
   factors that are told are those that trial division would find first. */
#pragma once

#include "top/tolvek.h"

namespace tolvek {

/* ---- primality ---- */

int is_prime(int32_t n); /* 1 or 0; 0 below 2 */
/* 1 for a prime, otherwise the least prime factor; 0 below 2. */
int32_t long_is_prime(int32_t n);
/* The same for hi * 2^56 + mid * 2^28 + lo, the digits of a chain, hi below 256. May take a few milliseconds. */
uint64_t longg_is_prime(int32_t hi, int32_t mid, int32_t lo);

/* The same two for every word. */
bool is_prime_word(uint64_t n);
uint64_t least_factor(uint64_t n); /* n itself for a prime; n from 2 on */

/* The next prime above an n that is odd and above 1; n + 2 below 2, unchecked. 0 when it does not fit. */
int32_t nextprime(int32_t n);

/* The built-in: the nth prime, n from 1 to 1229, else error 346, and 2 where that returns. */
int32_t nth_prime(int32_t n);
void nth_prime(quolynode **q); /* *q := the prime whose index is the plain number *q, in the form in force */

/* Pushes the distinct prime factors of n, from 1 on, in front of *list: the largest comes first. */
void prime_factors(int32_t n, numnode **list);

/* ---- lists of primes ----

   Entries are numbers that hold the prime in lint_val and, as the only digit of the chain, the residue of the list's
   subject modulo it. The list owns them and is linked by num_link, in descending order of prime. */

/* A new entry in front of *list. */
void insert_new_prime(int32_t p, int32_t residue, number **list);
/* A new entry at its place; a p that is there already keeps its entry. */
void add_prime_to_list(number **list, int32_t p, int32_t residue);
/* Adds each prime from 41 on among the first 4916 primes that divides the chain n, with value modulo the prime as its
   residue. Nothing is added for n = 0. */
void add_all_to_list(number **list, int32_t value, const number *n);
void free_prime_list(number **list);

/* An index of `primes`, 0 .. count - 1, whose prime divides neither of the numbers at the bottom of the leading terms of
   x and y: the first one from count - low - (a random value below range) upward; count + 1 when there is none. The
   primes are valid in lint_val; x and y are polynomials over chains. */
int select_prime(const polynode *x, const polynode *y, int low, int range, int count, number *const *primes);

} // namespace tolvek
