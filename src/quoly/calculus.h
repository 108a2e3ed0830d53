/* Values at values, derivatives and roots of quolys. *q is replaced by the result, and stays on an unwinding. */
#pragma once

#include "quoly/quoly.h"

namespace tolvek {

/* The operator #: *q with values[0] for the first variable, values[1] for the second, and so on, all at once; count is at
   most number_polys. Numbers stay. Errors, with the result 1 where they return: 210 the denominator becomes 0; 22 a
   negative power of a variable whose value is 0. */
void get_evalquoly(quolynode **q, const quolynode *const *values, int count);

/* The k-th derivative by the variable of the level; k from 0 on. */
void differentiate(quolynode **q, int level, int32_t k);
void quoly_differen_once(quolynode **q, int times); /* by the first variable */

/* The p-th root over a finite field of characteristic p. Errors: 186 a denominator, 198 negative exponents, 301 no
   root. */
void quoly_pth_root(quolynode **q);

} // namespace tolvek
