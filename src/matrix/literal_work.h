/* Private to the literals of arrays. */
#pragma once

#include "matrix/matrix_value.h"

namespace tolvek {

/* Values that are being read. */
class value_list {
  public:
    value_list() = default;
    ~value_list() {
        for (quolynode *&q : values) free_quoly(&q);
    }
    value_list(const value_list &) = delete;
    value_list &operator=(const value_list &) = delete;
    void add(quoly_handle &value); /* error 71: there are most_cells already */
    int64_t count() const { return static_cast<int64_t>(values.size()); }
    void move_by_rows(int64_t rows, matrix_value &result); /* result := a dense matrix of them, row by row */

  private:
    buffer<quolynode *> values;
};

/* [[i, [j, v] [j, v] ...] ...] in the shape at hand, with the first "[j" as the token; `row` is the value of i. Leaves the
   last "]". Errors 27, 202, 251, 255, 265. */
void read_sparse_entries(stream *input, name **cursor, int32_t row, matrix_value &result);
/* The number of a row of the shape at hand, from 1, with its first token as the token. Errors 27, 265. */
int32_t sparse_row_number(stream *input, name **cursor);

/* <i = a, b, s> <j = c, d, t> e with the token behind the first "<"; leaves the "]" behind e. */
void read_comprehension(stream *input, name **cursor, matrix_value &result);

} // namespace tolvek
