/* Private to the built-in functions: arrays as arguments. */
#pragma once

#include "language/builtin_args.h"
#include "matrix/array_expressions.h"
#include "matrix/array_names.h"

namespace tolvek {

/* One array factor with its postfix operator, behind the token: a named array, a literal, a scalar, (...). */
void read_array_factor(builtin_call &call, matrix_value &m);

/* A named array in an argument list: "*" in front is ignored with a warning. Errors 28, 178 and those of left_side. */
class array_argument {
  public:
    explicit array_argument(builtin_call &call); /* `token` is its first token */
    array_record *whole() const;                 /* error 182 */
    array_record *whole_sparse() const;          /* errors 182, 333 */
    array_region region;

  private:
    held_cells held;
};

} // namespace tolvek
