/* Sums of polynomials. All families share one merge of descending term lists; they differ in who owns the operands:
   poly_ keeps both, better_ consumes a, best_ and simplest_ consume both and reuse their nodes. The destination is
   replaced when the sum is complete and may hold either operand. Consuming forms want a and b to differ.
   simplest_ is for floats and modular rings only. Operands are canonical, and so is the sum.

   Sums pass safe points. An unwinding gives consumed operands back, and a destination that held one is null. */
#pragma once

#include "poly/model.h"

namespace tolvek {

void poly_add(const polynode *a, const polynode *b, polynode **p);
void poly_sub(const polynode *a, const polynode *b, polynode **p);
void better_poly_add(polynode *a, const polynode *b, polynode **p);
void better_poly_sub(polynode *a, const polynode *b, polynode **p);
void best_poly_add(polynode *a, polynode *b, polynode **p);
void best_poly_sub(polynode *a, polynode *b, polynode **p);
void simplest_poly_add(polynode *a, polynode *b, polynode **p);
void simplest_poly_sub(polynode *a, polynode *b, polynode **p);

/* a := a + b * x^shift for quolys whose numerators have few terms in common; b becomes the quoly 1. */
void splice_poly(quolynode **a, quolynode **b, int32_t shift);

} // namespace tolvek
