/* Operations on chains by way of flat limbs: what the choosers take for long operands. Chain form whatever the flags;
   operands come back unchanged; the destination may own an operand, and its old chain goes back when the new value is
   complete. All pass safe points when they take long. */
#pragma once

#include "numbers/number.h"

#include <cstddef>

namespace tolvek {

/* Cut-offs, in digits of 28 bits of the shorter operand (of the divisor; of the only operand; in figures for
   flat_figures_cut): the least length for which pouring pays. Measured by bench/kernels/numbers.cpp (chain_method). Tests
   lower them; not below 2. */
extern int flat_mult_cut, flat_quotient_cut, flat_gcd_cut, flat_root_cut, flat_decimal_cut;
extern std::size_t flat_figures_cut;

void flat_chain_mult(const numnode *a, int len_a, const numnode *b, int len_b, number *dst);
/* Magnitudes: q := floor(|a| / |b|), r := |a| - q |b|, b not 0. A null q is not wanted. */
void flat_chain_divide(const numnode *a, int len_a, const numnode *b, int len_b, number *q, number *r);
/* dst := gcd(a, b) >= 0 of any signs; neither is 0. */
void flat_chain_gcd(const numnode *a, int len_a, const numnode *b, int len_b, number *dst);
/* The same with the cofactors ca := a / g and cb := b / g, which have the signs of a and b. */
void flat_chain_extgcd(const number *a, const number *b, number *g, number *ca, number *cb);
/* dst := floor(sqrt(x)) of a positive chain. */
void flat_chain_root(const numnode *x, int len, number *dst);
/* dst := x in decimal form. */
void flat_chain_base_10(const numnode *x, int len, number *dst);
/* x := the value of `count` figures, most significant first. */
void flat_chain_figures(const char *figures, std::size_t count, number *x);

} // namespace tolvek
