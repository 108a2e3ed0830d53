/* Euclid's steps by name, in one variable over a prime or a table field: single divisions of flat arrays, half of the
   steps with their matrix, complete greatest common divisors; and the same on lists of terms. All of them are entries to
   the one implementation of flat_uni.h, and the ring in force is their field.

   An array is flat (flat_uni.h): its degree is uni_degree, -1 for the zero polynomial. The operands are rewritten in
   place. All routines pass safe points; on an unwinding an operand may be empty. */
#pragma once

#include "poly/flat_uni.h"

namespace tolvek {

/* ---- divisions ----

   x := x mod y; is it 0? q, where it is there, := the quotient. y = 0 is an internal error. In the _one forms the degree of
   x is that of y plus 1. */

bool onevar_array_mod(uni_poly *x, const uni_poly &y);
bool onevar_array_div_mod(uni_poly *x, const uni_poly &y, uni_poly *q);
bool onevar_one(uni_poly *x, const uni_poly &y);
bool onevar_one_div(uni_poly *x, const uni_poly &y, uni_poly *q);

/* ---- half of the steps ----

   With n the degree of x at the start and h = (n + 1) / 2, deg x >= deg y: steps until deg y is below h. The matrix m
   takes the x and y that were to those that come out. */

void euclid_onevar(uni_poly *x, uni_poly *y, hg_matrix *m); /* step by step */
/* By recursion. deg y above deg x: a line of text, and nothing is done. */
void parthg(uni_poly *x, uni_poly *y, hg_matrix *m);
void fullhg(uni_poly *x, uni_poly *y); /* without the matrix; where deg y is above deg x they are exchanged first */

/* ---- complete ---- */

/* Step by step to the end: x becomes the greatest common divisor, but for a factor of the field, and y 0. */
void euclid_total(uni_poly *x, uni_poly *y);

/* Two operands, of any degrees; afterwards as above. found: the greatest common divisor is no constant, and not 0. */
struct hgcd_state {
    uni_poly xx, yy;
    bool found = false;
};
void simple_onevar_gcd(hgcd_state *state); /* step by step */
void hgcd(hgcd_state *state);              /* by halves, where they pay */

/* ---- on lists of terms ----

   The same steps: *x and *y are replaced, and with_matrix gives [*x; *y] = [a b; c d] [x; y]; without it the four are
   not touched. The degree of y is at most that of x. Operands that is_uni refuses are an internal error, and stay. */

void emgcd_basic(polynode **x, polynode **y, polynode **a, polynode **b, polynode **c, polynode **d, int with_matrix);
void emgcd_full(polynode **x, polynode **y, polynode **a, polynode **b, polynode **c, polynode **d, int with_matrix);
void emgcd_fastest(polynode **x, polynode **y, polynode **a, polynode **b, polynode **c, polynode **d);

} // namespace tolvek
