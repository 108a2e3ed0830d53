/* Statements that begin with an array: assignments, expressions whose value goes to the system array, ?[x]. */
#pragma once

#include "language/expressions.h"

namespace tolvek {

/* The statement that begins with "[", Diag, Trans, Adjoint, Altmult, Altpower or MPowermod, with that token; leaves the
   token behind it. The value of the statement is 0; a matrix that is not stored goes to the system array, and what comes
   out as a scalar is the value. */
void arr_parse(stream *input, quolynode **result, name **cursor);

/* [x] := e, [x[2~3,]] := e, Diag [x] := e, and expressions that begin with [x] or Diag [x], with "[" or Diag as the token.

   The right side is complete before the target changes, and copied first where it borrows from the target. A matrix of
   another size than the target makes a new array of that name, which hides the old one; one of the same size and another
   shape keeps the target's. Errors 60, 92, 93, 176, 242, 244, 249, 297, 316, 317. */
void arr_asstat(stream *input, quolynode **result, name **cursor);

/* An expression whose first factor is the array of a slot, with the token behind it. */
void expression_of_array(stream *input, quolynode **result, name **cursor, array_record *a);

/* Behind an array in front of ":", which is the token. True: it was ":=". False: the statement is a silent expression, and
   has ended. Error 317. */
bool reads_array_assignment(stream *input, name **cursor);

/* ?[x], ?[x[2~3,]], ?[x]'..., ?[x] := [x]'...: reads elements from the terminal, with "[" as the token. Errors 28, 107, 242,
   334. */
void whole_arrinsert(stream *input, name **cursor);
/* ?x[i] and ?x[i,j], with "[" as the token. Errors 28, 242. */
void ask_for_element(stream *input, name **cursor, token_record &array_name);

} // namespace tolvek
