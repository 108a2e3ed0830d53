/* How the value of an array expression is stored in an array.

   The value is consumed. An existing array changes only when nothing can fail any more; what borrows from it was copied
   before. A value of another size than a whole array makes a new one of its name, which hides the old one. */
#pragma once

#include "matrix/array_names.h"
#include "matrix/matrix_value.h"

namespace tolvek {

/* region := value. Errors 26, 43, 60 the shapes differ, 244 a sparse value in a rectangle, 249 rows differ, 297 a new array
   by a slot. */
void store_matrix(array_region &region, matrix_value &value);

/* The diagonal of the region := the entries of the value, column by column. Errors 26, 43, 93, 242, 297. */
void store_diagonal(array_region &region, matrix_value &value);

} // namespace tolvek
