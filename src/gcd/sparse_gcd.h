/* GCDs of sparse polynomials over the integers modulo a prime, from few images in the main variable. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* *g := the GCD of u and v, both primitive with respect to the main variable and of positive degree in it, and true. False,
   and *g as it was, where the prime is too small for the degrees, and where images turn out bad time and again. The answer
   divides both. */
bool sparse_gcd(const polynode *u, const polynode *v, polynode **g, pt *names);

} // namespace tolvek
