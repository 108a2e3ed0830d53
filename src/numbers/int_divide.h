/* Quotients and remainders. Destinations may alias operands and each other's operands, but q and r differ. */
#pragma once

#include "numbers/number.h"

namespace tolvek {

/* Chain. Both q and r get the sign of a * b: -7 by -2 gives 3 and 1, 7 by -2 gives -3 and -1. b = 0 leaves both as
   they were. */
void divide(const number *a, const number *b, number *q, number *r);
void pos_divide(const number *a, const number *b, number *q, number *r); /* chain; a >= 0, b > 0 */
void pos_divide_noq(const numnode *chain_a, const numnode *chain_b, int len_a, int len_b, number *r);
/* Chain: one quotient digit; the dividend is at most one digit longer than b. */
void simp_divide(const numnode *chain, int len, const number *b, number *q, number *r);
void simp_divide_noq(const numnode *chain_a, const numnode *chain_b, int len_a, int len_b, number *r);

/* The operators \ and | on numbers, in all forms; obeys pos_mod. b = 0: error 22, r := 1 where it returns. The chain
   remainder is congruent to a modulo b, and with pos_mod on 0 <= r < |b|. */
void mod_and_div(const number *a, const number *b, number *r, number *q);
void mod_or_div(const number *a, const number *b, number *result, int want_quotient);

/* The head digit of x / d for a digit d > 0, in the chain form: reads a small number as an integer. */
int32_t quotient_of(const number *x, int32_t d);

void fast_modout(number *a, const number *b); /* chain: cuts a down to its last num_len(b) - 1 digits */

extern int pos_mod; /* remainders are not negative */

} // namespace tolvek
