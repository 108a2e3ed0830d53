/* Binomial coefficients C(n, k) for 0 <= k <= n. *q becomes the plain number, and may hold anything before, null
   included. What is refused gives the value 1 where the error returns. */
#pragma once

#include "numbers/number.h"

namespace tolvek {

/* In chain form (flotemode and lintmode off). Error 87 from n = 1755 on, but for k or n - k below 3. */
void rat_binom(int32_t n, int32_t k, quolynode **q);
/* In lint_val; error 239 for n above 30. In modular rings the value is not reduced. */
void lint_binom(int32_t n, int32_t k, quolynode **q);
/* As a float; error 377 for n above 152. */
void flote_binom(int32_t n, int32_t k, quolynode **q);
/* Modulo `modulus`. A prime modulus above k reduces n first (E. Lucas, 1878); error 87 if n is then 151 or more. */
void mod_binom(int32_t n, int32_t k, quolynode **q);

} // namespace tolvek
