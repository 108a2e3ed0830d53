/* Expressions of arrays, read and evaluated in one pass. A value is a scalar or a matrix (matrix_value.h); a factor that
   names an array borrows its elements, and what must change them copies them first.

   Precedence as in scalar expressions (language/expressions.h); the products take `_`, which concatenates, as well.

   Arguments: `input` and `cursor` say where tokens come from; `result` is replaced. Entered with the first token of the
   form in `token`; on return `token` is the first token behind it. Errors unwind (arrays.h), leave every array as it was
   and give back what is in flight. */
#pragma once

#include "language/execution.h" /* want_sparse: the right side of an assignment to a sparse array is being read */
#include "matrix/matrix_value.h"

namespace tolvek {

void arr_expre(stream *input, name **cursor, matrix_value &result);
void arr_term(stream *input, name **cursor, matrix_value &result);
void arr_fact(stream *input, name **cursor, matrix_value &result);

/* Continues an expression whose first factor is in the result; a postfix operator in `token` still applies to it. */
void half_arr_expre(stream *input, name **cursor, matrix_value &result);
/* Reads the postfix operator behind a factor, if there is one: ^ and #, behind a scalar also ! and ". */
void half_arr_fact(stream *input, name **cursor, matrix_value &result);

/* A polynomial at a matrix, behind "#" with "[" as the token. The scalar p becomes the matrix. Errors 186, 241. */
void evaluate_at_array(stream *input, name **cursor, matrix_value &p);
/* The same behind a scalar factor: the matrix goes to the system array, and *q becomes 0. Error 62: in an index or an
   exponent of the modular ring. */
void evaluate_into_syst_array(stream *input, name **cursor, quolynode **q);

/* The value of a statement: a matrix goes to the system array, and *result is 0; a scalar is the result. */
void give_statement_value(matrix_value &value, quolynode **result);
/* An expression as a statement. */
void array_expression(stream *input, quolynode **result, name **cursor);

/* The shape that forms without one of their own take from where they stand: that of the operand on the left, or, for
   random matrices alone, of the array that is assigned to. rows 0: none is known. */
struct known_shape {
    int64_t rows = 0, cols = 0;
    bool of_target = false; /* not known to a diagonal [n] */
};
extern known_shape shape_at_hand;

} // namespace tolvek
