/* Powers, factorials and square roots of numbers. */
#pragma once

#include "numbers/number.h"

namespace tolvek {

extern int sqcut; /* length from which int_sqrt recurs */

void number_power(number *x, uint32_t n); /* x := x^n in all forms; 0^0 is 1 */
/* x := x! in all forms. Errors: 94 too large, 240 lintmode from 14 on, 347 in a table field. */
void factorial(number *x);
/* The table of factorials: entry i, 0 to 21, is (10 i)!, in all three forms where they hold it; *argument := 10 i.
   Computed when first asked for. */
const number *fact_entry(int i, int32_t *argument);
/* dst := the product of from .. to, in all forms. */
void multout(int32_t from, int32_t to, number *dst, number *slot);
int32_t modout(const number *x); /* chain x modulo `modulus` */
/* Chain: the integer square root of positive x: rounded to nearest for one digit, else the floor. */
void int_sqrt(const number *x, number *dst, int copy_flag);
int its_a_square(int32_t v); /* prime modulus: is the residue v a square */

} // namespace tolvek
