/* Elements of arrays as factors and as targets. */
#pragma once

#include "language/expressions.h"
#include "matrix/arrays.h"

namespace tolvek {

/* What stands in brackets: one coordinate or two, as they were typed. */
struct coordinates {
    int64_t a = 0, b = 0;
    bool two = false;
};

/* Reads coordinates up to the token `end`, which is left in `token`. Each is a sum, evaluated outside the modular ring.
   Entered with the token in front of them. Errors: 27 too large, 61 another end, 118 no number, 314 below 0 where that
   is forbidden. */
coordinates evalcoords(stream *input, name **cursor, const char *end, const char *separator, bool no_negative);

/* The value of a coordinate. Errors 27 too large, 118 no number. */
int64_t coordinate_value(const quolynode *q);
/* One coordinate, with its first token as the token, in the ring in force. Errors 27, 118, 314. */
int64_t coordinate(stream *input, name **cursor, bool no_negative);

/* The index of an element from 0, column by column. Error 27. */
int64_t element_index(const array_record *a, const coordinates &c);
/* The slot of an element; null: a sparse array has no entry there. */
quolynode **array_quoly_ptr(array_record *a, int64_t index);

/* The factor a[i] or a[i,j], with "[" as the token; leaves the token behind it. An element without a value becomes 0. A
   missing one of a sparse array gives 0, or a place without a slot if ":" follows. Error 28. */
void new_arretrieve(stream *input, name **cursor, token_record &array_name, place &at, quolynode **result);
/* <[i,j], with "[" as the token: a copy. Error 175. */
void syst_element(stream *input, name **cursor, quolynode **result);

/* Stores into a place that is an element of a sparse array: the value is taken over, a 0 leaves no entry. */
void store_sparse_element(const place &at, quolynode *value);

/* The statement Array x[3], y[2,2] Sparse, with the word as the token. Errors 40, 125, 178. */
void create_array(stream *input, name **cursor);
/* Sparse[x] or Sparse([x]), with the word as the token. Errors 1, 24, 28, 138, 176, 178. */
void make_sparse(stream *input, name **cursor);

} // namespace tolvek
