/* The routes of powers. p is no constant, e is at least 2 and the exponents of the power are in range; names as for
   poly_mult. */
#pragma once

#include "poly/model.h"

namespace tolvek {

void power_by_steps(polynode **p, uint32_t e, pt *names);   /* e - 1 products by p */
void power_by_squares(polynode **p, uint32_t e, pt *names); /* binary powering from the top bit of e down */

/* Over a finite field whose size is `modulus`: by the digits of e in this radix, since the power of p by the field's
   size has the exponents times that and the same coefficients. */
void poly_mod_prime(polynode **p, uint32_t e, pt *names);

} // namespace tolvek
