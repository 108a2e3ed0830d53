/* The fast path: statements of a function that says Float run on the extended floats of their numbers, and no value is
   ever built. It reads stored tokens alone. The forms are those of ordinary expressions, with these differences: / and
   \ both give the float quotient, and x :* n multiplies in place.
   Errors: 1, 19, 22, 27, 28, 63, 68, 129, 227, 317, 340. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

/* A sum, or an assignment, whose value is 0. */
long double iexpre(stream *input, name **cursor);
/* A sum. */
long double old_iexpre(stream *input, name **cursor);

} // namespace tolvek
