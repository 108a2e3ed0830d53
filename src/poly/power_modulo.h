/* Powers of polynomials modulo a polynomial or an integer. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* *p := a^e | m, the remainder that the operator | gives, for e from 0 on as a chain. m is other than 0: a constant, in
   chain form alone, or a polynomial whose leading coefficient in its main variable is a unit. No exponent is negative.
   a, m and *p lie at the top level. Passes safe points. */
void poly_power_modulo(const polynode *a, const number *e, const polynode *m, polynode **p);

} // namespace tolvek
