/* Derivatives, and roots of the order of the characteristic. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* *p := its k-th derivative, k from 0 on, in its main variable, or in that of the level `level`. *p is null on an
   unwinding. Error 32: an exponent would fall below -2^31 + 1; *p stays. */
void poly_diff(polynode **p, int32_t k);
void general_poly_diff(polynode **p, int level, int32_t k);

/* Over a finite field of prime size or one held in tables: *p := the polynomial whose p-th power, p being the
   characteristic, it is. False, and *p as it was, when there is none. A number always has one root. */
bool whole_pth_root(polynode **p);
void pth_root_of_number(number *x);

} // namespace tolvek
