/* Arithmetic of array values.

   Unless its line says otherwise the first operand becomes the result and the second one is left empty. Operands that the
   expression owns are changed in place, borrowed ones are never touched. Shapes that do not fit are error 39. Entries of
   sparse results that become 0 are not stored. Null cells count as 0, with a warning. */
#pragma once

#include "matrix/matrix_value.h"

namespace tolvek {

/* ---- entry by entry ---- */

/* a op b for dense matrices of one shape and scalars, not both scalars; op is one of + - * / \ |. */
void entrywise(int op, matrix_value &a, matrix_value &b);

/* a + b or a - b: scalars; matrices of one shape; a scalar and each entry of a matrix. Two sparse matrices have a sparse
   sum; a sparse matrix with anything else becomes dense (error 250). */
void add_values(matrix_value &a, matrix_value &b, bool minus);

/* -m. */
void negate_value(matrix_value &m);

} // namespace tolvek
