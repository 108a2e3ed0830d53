/* Random numbers. They all come from one generator, whose sequence is the same in every run unless it is seeded. */
#pragma once

#include "top/tolvek.h"

namespace tolvek {

/* 31 bits: the additive generator r[i] = r[i-3] + r[i-31] (D. Knuth, The Art of Computer Programming 2, 3.2.2), whose
   lowest bit is dropped. */
int32_t random_31();

/* Starts the sequence of a seed, by the multiplicative generator of S. Park and K. Miller (1988). The sequence at the
   start of the system is that of first_seed; a seed of 0 is taken as 1. */
constexpr uint32_t first_seed = 1;
void seed_random(uint32_t seed);

/* The share of a 31-bit value in 2^31 - 1, times 16384, without its fraction. The largest value, which would give 16384,
   gives 16383. */
int32_t scaled_to_14_bits(int32_t value);

int32_t rand_integer();  /* 28 bits */
int32_t rand_integer2(); /* 14 bits */
int32_t rand_integer3(); /* 0 to 48870; mixed with the processor time, and so not the same in every run */

/* The built-in: *q := a 28-bit random integer divided by rand_denom_n, in the form in force; with seed_flag mixed with
   the processor time. */
void randomize(int seed_flag, quolynode **q);

} // namespace tolvek
