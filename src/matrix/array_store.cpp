#include "matrix/array_store.h"

#include "matrix/array_work.h"
#include "top/interrupts.h"

#include <algorithm>

namespace tolvek {

/* ---- cells ---- */

/* Stores the cells of an owned dense matrix, column by column; those without a value leave cells without one. */
static void move_cells(const array_region &region, matrix_value &value) {
    int64_t from = 0;
    for (int64_t c = 0; c < region.cols; c++)
        for (int64_t r = 0; r < region.rows; r++) {
            quolynode *&cell = value.cell(from++);
            store_element(&element(region.array, region.index(r, c)), cell);
            cell = nullptr;
        }
}

/* Copies for `count` cells, so that nothing can fail once the first one is stored. */
static void repeat_scalar(const quolynode *value, int64_t rows, int64_t cols, matrix_value &copies) {
    copies.make_dense(rows, cols);
    for (int64_t i = 0; i < copies.size; i++) {
        quoly_assign(value, &copies.cell(i));
        if (i % 4096 == 0) safe_point();
    }
}

/* ---- sparse arrays ---- */

/* A dense value in a sparse array: its zeros go. */
static void standard_to_sparse(array_record *array, matrix_value &value) {
    if (value.rows != array->rows) array_error(249, array->tok);
    value.to_sparse();
    own_rows(array);
    put_back_sparse(value.sparse, array->sparse_head, array->rows);
}

/* ---- whole arrays ---- */

static void new_dense_array(const token_record &array_name, matrix_value &value) {
    const int64_t cols = value.cols();
    array_region fresh;
    whole_array(insertarr(array_name, value.rows, cols, cols == 1), fresh);
    move_cells(fresh, value);
}

static void new_sparse_array(const token_record &array_name, matrix_value &value) {
    const int64_t cols = value.size / value.rows;
    array_record *a = sparse_create(array_name, value.rows, cols, cols == 1, false);
    a->sparse_head = value.release_sparse();
}

/* A new array of the name. The old one stays behind it, until the new one is deleted. */
static void make_new(const array_region &region, matrix_value &value) {
    if (token_is(region.tok, "%")) array_error(297, region.tok);
    if (value.is_sparse())
        new_sparse_array(region.tok, value);
    else
        new_dense_array(region.tok, value);
    new_array = 1;
}

static void scalar_to_array(const array_region &region, const matrix_value &value) {
    if (region.array && region.array->sparse_head) {
        sparse_set_scalar(region.array, value.scalar.get());
        return;
    }
    matrix_value copies;
    if (region.array) {
        repeat_scalar(value.scalar.get(), region.rows, region.cols, copies);
        move_cells(region, copies);
    } else {
        repeat_scalar(value.scalar.get(), 1, 1, copies);
        make_new(region, copies);
    }
}

/* A sparse value for a whole array of the same shape. An ordinary array turns sparse, unless a parameter shares it. */
static void sparse_to_array(const array_region &region, matrix_value &value) {
    array_record *a = region.array;
    if (a->sparse_head) {
        own_rows(a);
        put_back_sparse(value.sparse, a->sparse_head, a->rows);
    } else if (is_shared(a)) {
        value.to_dense();
        move_cells(region, value);
    } else {
        drop_cells(a);
        a->sparse_head = value.release_sparse();
    }
}

/* The number of cells decides, not the shape: of as many cells, a dense value goes in column by column, and the array keeps
   its rows. A sparse value needs as many rows too. */
static void matrix_to_array(const array_region &region, matrix_value &value) {
    const bool same_size = region.array && value.size == region.array->size;
    const bool fits = same_size && (!value.is_sparse() || value.rows == region.array->rows);
    if (!fits)
        make_new(region, value);
    else if (value.is_sparse())
        sparse_to_array(region, value);
    else if (region.array->sparse_head)
        standard_to_sparse(region.array, value);
    else
        move_cells(region, value);
}

/* ---- rectangles ---- */

/* The same shape, or a row for a column and the other way round. */
static bool fits_rectangle(const array_region &region, const matrix_value &value) {
    if (value.rows == region.rows && value.cols() == region.cols) return true;
    const bool vectors = (region.rows == 1 || region.cols == 1) && (value.rows == 1 || value.cols() == 1);
    return vectors && value.size == region.size();
}

static void matrix_to_rectangle(const array_region &region, matrix_value &value) {
    if (value.is_sparse()) array_error(244, region.tok);
    if (!fits_rectangle(region, value)) array_error(60, region.tok);
    move_cells(region, value);
}

void store_matrix(array_region &region, matrix_value &value) {
    value.own_in_ring();
    if (region.sub && region.array->sparse_head) array_error(244, region.tok);
    if (value.is_scalar())
        scalar_to_array(region, value);
    else if (region.sub)
        matrix_to_rectangle(region, value);
    else
        matrix_to_array(region, value);
}

/* ---- diagonals ---- */

/* A square array with the entries on its diagonal and 0 elsewhere. */
static void new_diagonal(const array_region &region, matrix_value &value) {
    if (value.is_scalar()) {
        scalar_to_array({.tok = region.tok}, value);
        return;
    }
    const int64_t n = value.size;
    matrix_value square;
    square.make_dense(n, n);
    for (int64_t i = 0; i < square.size; i++) {
        if (i % (n + 1) == 0)
            std::swap(square.cell(i), value.cell(i / (n + 1)));
        else
            quoly_set(0, &square.cell(i));
        if (i % 4096 == 0) safe_point();
    }
    make_new(region, square);
}

void store_diagonal(array_region &region, matrix_value &value) {
    value.own_in_ring();
    const bool sparse_target = region.array && region.array->sparse_head;
    if (value.is_sparse() || sparse_target) array_error(242, region.tok);
    const int64_t n = std::min<int64_t>(region.rows, region.cols);
    const bool fits = region.array && (value.is_scalar() || value.size == n);
    if (!fits && region.sub) array_error(93, region.tok);
    if (!fits) {
        new_diagonal(region, value);
        return;
    }
    matrix_value entries;
    if (value.is_scalar())
        repeat_scalar(value.scalar.get(), n, 1, entries);
    else
        entries.take(value);
    for (int64_t i = 0; i < n; i++) {
        quolynode *&cell = entries.cell(i);
        store_element(&element(region.array, region.index(i, i)), cell);
        cell = nullptr;
    }
}

} // namespace tolvek
