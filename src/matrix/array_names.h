/* How arrays and rectangles of them are named: [x], [x[2~3,]], [%[1]], [<]. */
#pragma once

#include "language/expressions.h"
#include "matrix/arrays.h"

namespace tolvek {

/* A rectangle of an array, or a whole one. Its cell (r, c), counted from 0, is element first + c * stride + r. */
struct array_region {
    token_record tok{};            /* the name: "%" for a slot, "<" for the system array */
    array_record *array = nullptr; /* null: there is no array of this name */
    bool sub = false;              /* a subscript was given */
    int64_t first = 0;
    int32_t rows = 0;
    int64_t cols = 0;
    int32_t stride = 0;

    int64_t size() const { return rows * cols; }
    int64_t index(int64_t r, int64_t c) const { return first + c * stride + r; }
    bool is_whole() const { return array && size() == array->size; }
};

/* Reads a name with its subscript, with "[" as the token, and leaves the token behind "]". Errors: 24, 42 no lower-case
   name, no_such_array for a subscript on an array that does not exist, 83 one on [<], 125 a polynomial variable, 175 the system array is
   empty, 176 it stands where it is not allowed, 220 an empty slot. */
void left_side(stream *input, name **cursor, array_region &region, bool syst_allowed, int no_such_array = 55);

/* Reads the subscript of the region's array, with "[" as the token, and leaves the token behind its "]": rows, a comma,
   columns; each a coordinate, two with "~" between, or nothing, which stands for all. A single coordinate without a comma is
   a row. Errors: 56 and 57 rows out of range and reversed, 58 and 59 columns, 61, 118. */
void subarray(stream *input, name **cursor, array_region &region);

void whole_array(array_record *a, array_region &region); /* region := all of a */

/* The record of the array, which must exist. */
inline array_record *existing(const array_region &r) {
    if (!r.array) array_error(28, r.tok);
    return r.array;
}

} // namespace tolvek
