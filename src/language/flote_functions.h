/* The functions of the float ring: _sqrt(x) and its like. */
#pragma once

#include "language/tokens.h"

namespace tolvek {

/* sqrt, sin, cos, ln, e, atan, tan or asin of x; any other name warns, and x stands. */
long double apply_flote_function(const token_record &function, long double x);

} // namespace tolvek
