/* Entries of a sparse array, row by row: [[1, [2, 5], [3, 7] ] [4, [1, x] ]]. Entries that are given twice add up. Commas
   between pairs and between rows may be left out. */
#include "matrix/array_expressions.h"
#include "matrix/elements.h"
#include "matrix/literal_work.h"
#include "top/driver.h"
#include "top/interrupts.h"

#include <cmath>

namespace tolvek {

/* One number from addresser on, below addresser + count: the result counts from 1. */
static int32_t read_index(stream *input, name **cursor, int64_t count) {
    modular_pause pause;
    quoly_handle value;
    old_expre(input, value.slot(), cursor);
    if (!value->is_num) array_error(265, token);
    if (flotemode && value->numb->flote_val != std::floor(value->numb->flote_val)) array_error(265, token);
    const int64_t index = coordinate_value(value.get()) - addresser;
    if (index < 0 || index >= count) array_error(27, token);
    return static_cast<int32_t>(index) + 1;
}

int32_t sparse_row_number(stream *input, name **cursor) { return read_index(input, cursor, shape_at_hand.rows); }

static void skip_comma(stream *input, name **cursor) {
    if (token_is(token, ",")) scanner(input, token, cursor);
}

/* [j, v] with "[" as the token. */
static void read_pair(stream *input, name **cursor, sparse_frame *head, int32_t row, int64_t cols) {
    scanner(input, token, cursor);
    const int32_t column = read_index(input, cursor, cols);
    require(",", 202, input, cursor);
    quoly_handle value;
    old_expre(input, value.slot(), cursor);
    sparse_adjoin(head, row, column, value);
    require("]", 251, input, cursor);
}

/* The pairs of a row and its "]". */
static void read_pairs(stream *input, name **cursor, sparse_frame *head, int32_t row, int64_t cols) {
    while (token_is(token, "[")) {
        safe_point();
        read_pair(input, cursor, head, row, cols);
        skip_comma(input, cursor);
    }
    require("]", 251, input, cursor);
    skip_comma(input, cursor);
}

void read_sparse_entries(stream *input, name **cursor, int32_t row, matrix_value &result) {
    const known_shape shape = shape_at_hand;
    sparse_handle entries(static_cast<int32_t>(shape.rows));
    held_value so_far;
    read_pairs(input, cursor, entries.get(), row, shape.cols);
    while (token_is(token, "[")) {
        scanner(input, token, cursor);
        row = sparse_row_number(input, cursor);
        require(",", 202, input, cursor);
        if (!token_is(token, "[")) array_error(255, token);
        read_pairs(input, cursor, entries.get(), row, shape.cols);
    }
    if (!token_is(token, "]")) array_error(251, token);
    result.make_sparse(entries.release(), static_cast<int32_t>(shape.rows), shape.cols);
}

} // namespace tolvek
