/* Private to the quoly arithmetic: what two plain numbers do, and where a number result goes. */
#pragma once

#include "numbers/number.h"
#include "quoly/quoly.h"

namespace tolvek {

/* Makes *r a plain number by `compute(a, b, its number)`; the record of a plain number in *r is overwritten, which may
   be an operand's. */
void number_result(void (*compute)(const number *, const number *, number *), const number *a, const number *b,
                   quolynode **r);

/* The product of two numbers in the ring in force. */
void num_mult(const number *a, const number *b, number *dst);

/* The sign of a plain number or rational. */
int quoly_sign(const quolynode *q);

} // namespace tolvek
