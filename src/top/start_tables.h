/* The tables that come from the data files. initialize reads the files, checks them, and fills the tables that every
   session needs; a table that a session may never need is built when it is first asked for.

   Tables belong to this module: nobody changes or frees what the routines here hand out. */
#pragma once

#include "numbers/number.h"
#include "top/tolvek.h"

namespace tolvek {

/* Sets every default and loads the data files from the directory, to whose text the names are appended as it stands.
   The stashes are open and the chain form is in force. What is wrong with a file is fatal, in the order in which
   the files are read: tolvek_error ends the program while it is starting up; where it returns, false is the result.
   Two checks of pprods only warn. May be called again, for another directory. */
bool initialize(const char *directory);

/* ---- primes ---- */

constexpr int small_prime_count = 1229, med_prime_count = 2466, big_prime_count = 1516, lrgpme_count = 2000;
constexpr int prime_count = 604, first_file_prime = 5; /* prime[0..4] are fixed, the others stand in a file */
constexpr int num_prod_count = prime_count - first_file_prime, invs_prod_count = num_prod_count - 1;
constexpr int global_list_count = 151;

extern uint16_t small_prime[small_prime_count]; /* all primes below 10000 */
extern int32_t med_prime[med_prime_count];      /* 17021 to 42349 */
extern int32_t big_prime[big_prime_count];      /* 48871 to 65521 */
extern int32_t lrgpme[lrgpme_count];            /* the last is 2147483629 */
extern uint16_t global_list[global_list_count]; /* small_prime from its eighth entry, 19, on */

/* The primes of modular methods, in all three forms: 3001, 16087, 16273, 16339, 19997, then 42359 to 48869. */
extern number *prime[prime_count];

/* The product of prime[5] to prime[5 + i], 0 <= i < num_prod_count: a chain, and its float. */
const number *num_prod(int i);

/* The inverse of the product of prime[5] to prime[i + 5] modulo prime[i + 6], 0 <= i < invs_prod_count. */
int32_t invs_prod(int i);

/* ---- binomial coefficients ---- */

constexpr int binom_count = 1900, small_binom_count = 80;

/* C(n, k) for n = 3, 6, ..., 150 and k from 1 to n / 2, in this order: a chain, and its value as a sum in double
   precision; the first 80 (n up to 30) also in lint_val and exact as floats. */
const number *binom(int i);

/* ---- the Lagrange basis polynomials ----

   The file chdat stays at hand for as long as the program runs and is read from its beginning onward: for r from 1
   to 37 and c from 0 to r the polynomial of degree r that is 1 at the point c + 1 and 0 at the other points of 1 to
   r + 1, as a denominator, the degree r, and r + 1 coefficients from the leading one down. */
constexpr int lagrange_rows = 37;

/* x := the next number: a chain. False, with x := 0, where the file does not hold one. */
bool direct_number_read(number *x);
bool direct_integer_read(int32_t *value); /* a degree */
/* *p := the next polynomial of level 1: its degree and its coefficients from the leading one down; terms that are 0 are
   left out. *q := the next quotient: a denominator, which is dropped when it is 1, and a polynomial. Both in the chain
   form. False, with the old value gone and 0 in its place, where the file does not hold one (top/direct_read.cpp). */
bool direct_poly_read(polynode **p);
bool direct_quoly_read(quolynode **q);

/* ---- constants ---- */

/* Logarithms to six significant digits, as the estimates that use them expect. */
constexpr double log_of_2 = 0.693147, log_of_10 = 2.30259;
constexpr double two_thirty1 = 2147483647.0;

constexpr int32_t pow_10[9] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};

/* Bits of an entry that count as small, by the size 1 to 13 of a sparse matrix. */
constexpr int32_t small_arr[13] = {100000, 100, 80, 60, 44, 28, 20, 15, 15, 15, 11, 5, 1};

/* Schedules of evaluation points over the fields of characteristic 2, 3 and 7. */
constexpr uint16_t base_2_list[4] = {0, 3, 1, 2};
constexpr uint16_t base_3_list[7] = {0, 4, 1, 3, 8, 5, 2};
constexpr uint16_t base_7_list[21] = {0, 8, 1, 7, 16, 9, 2, 14, 3, 10, 22, 23, 17, 24, 32, 40, 31, 39, 48, 41, 26};

/* ---- accounting ---- */

/* Bytes of a record in the memory reports, which count a pointer as four bytes. */
constexpr int numnodesize = 8, numbersize = 48, polynodesize = 16, quolysize = 20;

/* Digits in the tables of numbers. */
constexpr int two_28_digits = 9037, facts_digits = 476, binom_digits = 5749, num_prod_digits = 99399;

extern int64_t size_data_strucs; /* bytes of the tables and of the work space that lasts, for the memory reports */

} // namespace tolvek
