/* Reduction: the cofactors of two polynomials by their greatest common divisor, and what is done when that was wrong.

   GCDs are found by methods that may err, and exact division is what shows it. A divisor that does not divide both
   operands is taken anew: with it the fast test that may have misled it is turned off for good (try_rat, then rat_yes),
   and under `verbose` a warning tells so. After most_reductions rounds the divisor is 1: the value stays right, and is
   not in lowest terms.

   Over floats the quotient by rough_poly_divide counts and its remainder does not. If the degrees forbid that, the
   divisor becomes 1 at once.

   a and b come back unchanged; *a2 may hold a, *b2 may hold b, which go when both cofactors are complete. *g is what was
   divided by in the end. */
#pragma once

#include "poly/model.h"

namespace tolvek {

constexpr int most_reductions = 20;

struct gcd_cofactors; /* gcd/gcd.h */

/* *a2 := a / *g, *b2 := b / *g in the list of variables in force. *g may be a number. known: cofactors that came with *g,
   which are taken; null: there are none. */
void reduce(const polynode *a, const polynode *b, polynode **g, polynode **a2, polynode **b2,
            gcd_cofactors *known = nullptr);

/* *g := the greatest common divisor that values are reduced by, of two polynomials that are no constants. It is
   Lpolygcd, and rough_gcd over floats; tests put another one in its place, which counts or lies. */
extern void (*gcd_of_parts)(const polynode *a, const polynode *b, polynode **g, gcd_cofactors *found);

} // namespace tolvek
