/* Operands of array expressions that stand in brackets or quotes: named arrays and their parts, slots, literals.

   What is read from a named array is borrowed (matrix_value.h), the rest belongs to the expression. Forms that have no
   shape of their own take the one at hand, and some read differently while a sparse array is assigned to
   (array_expressions.h). */
#pragma once

#include "matrix/array_names.h"
#include "matrix/matrix_value.h"

namespace tolvek {

/* Reads one operand, with "[" or "'" as the token; leaves the token behind it. Errors 24, 40 and those of the forms:

     [x]  [x[2~3,]]  [%[n]]  [<]    a named array, a part of one, the array of a slot, a copy of the system array
     [3]  [-3]  [t]                 a number or polynomial variable on the diagonal of a sparse square matrix: 45
     [(a, b, c)]                    one row: 70, 71
     [[a, b][c, d]]                 row by row; the end of a line behind a separator ends a row too: 70, 71, 173
     [[i, [j, v] ...] ...]          entries, when a sparse array is the target: 27, 202, 251, 255, 265
     [<i = a,b,s> <j = c,d,t> e]    e for each pair of coordinates: 43, 47, 78 to 80, 82, 336
     [Rand]  [RRand]                random numbers: 142
     []                             no entry, when a sparse array is the target: 40
     'text'                         one row of character codes: 71, 110 */
void read_array_literal(stream *input, name **cursor, matrix_value &result);

/* Reads the rectangle of an array that a subscript names, with "[" as the token; leaves the token behind its "]".
   Errors: 244 of a sparse array, and those of `subarray`. */
void read_subarray(stream *input, name **cursor, array_record *a, matrix_value &result);

/* The elements of a region, borrowed; those of the system array as a copy. Errors 28, 244. */
void fetch_region(const array_region &region, matrix_value &result);

} // namespace tolvek
