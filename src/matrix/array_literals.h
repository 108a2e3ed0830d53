/* Operands of array expressions that stand in brackets or quotes: named arrays and their parts, slots, literals.

   What is read from a named array is borrowed (matrix_value.h), the rest belongs to the expression. */
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

/* Shapes that operands without one of their own take over; rows 0: none. */
struct matrix_shape {
    int32_t rows = 0;
    int64_t cols = 0;
};
extern matrix_shape left_shape;   /* of the operand on the left, while the one on the right is read */
extern matrix_shape target_shape; /* of the array that is assigned to */
extern bool want_sparse;          /* the array that is assigned to is sparse */

/* While the operand on the right of a matrix is read. */
class right_operand {
  public:
    explicit right_operand(const matrix_value &left) : found(left_shape) {
        if (left.size) left_shape = {left.rows, left.size / left.rows};
    }
    ~right_operand() { left_shape = found; }
    right_operand(const right_operand &) = delete;
    right_operand &operator=(const right_operand &) = delete;

  private:
    matrix_shape found;
};

} // namespace tolvek
