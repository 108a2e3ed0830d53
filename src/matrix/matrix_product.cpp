/* Products of two matrices: which arithmetic the entries need, and where the product goes. */
#include "language/scanner.h"
#include "matrix/array_arithmetic.h"
#include "matrix/flat_matrix.h"
#include "matrix/row_products.h"

namespace tolvek {

/* ---- the arithmetics (row_products.h) ---- */

struct flote_entries {
    using value = long double;
    using sum = long double;
    static value pour(const quolynode *q) { return q->numb->flote_val; }
    static void first(value x, value y, sum *s) { *s = x * y; }
    static void add(value x, value y, sum *s) { *s += x * y; }
    static void give(sum s, quolynode **r) { quoly_set_flote(s, r); }
    static void drop(sum) {}
};

struct residue_entries {
    using value = int32_t;
    using sum = int32_t;
    static value pour(const quolynode *q) { return q->numb->lint_val; }
    static void first(value x, value y, sum *s) { *s = modmult(x, y); }
    static void add(value x, value y, sum *s) { *s = mod_add(*s, modmult(x, y), modulus); }
    static void give(sum s, quolynode **r) { quoly_set(s, r); }
    static void drop(sum) {}
};

struct general_entries {
    using value = const quolynode *;
    using sum = quolynode *;
    static value pour(const quolynode *q) { return q; }
    static void first(value x, value y, sum *s) {
        *s = nullptr;
        safe_point();
        quoly_mult(x, y, s);
    }
    static void add(value x, value y, sum *s) {
        safe_point();
        quoly_handle product;
        quoly_mult(x, y, product.slot());
        best_quoly_add(s, product.release());
    }
    static void give(sum s, quolynode **r) { *r = s; }
    static void drop(sum s) { free_quoly(&s); }
};

/* ---- which one ---- */

static bool all_numbers(const matrix_value &m) {
    if (m.is_sparse()) return sparse_allpolys(m.sparse, m.rows);
    for (int64_t i = 0; i < m.size; i++)
        if (!m.cell(i)->is_num) return false;
    return true;
}

enum class entries { flotes, residues, integers, general };

/* 32-bit integers, a stretch inside routines, go the general way. */
static entries kind_of_entries(const matrix_value &a, const matrix_value &b) {
    if (lintmode && !modularmode && !flotemode) return entries::general;
    if (!all_numbers(a) || !all_numbers(b)) return entries::general;
    return flotemode ? entries::flotes : modularmode ? entries::residues : entries::integers;
}

/* ---- where it goes: two sparse matrices have a sparse product ---- */

template <class arithmetic> static void sparse_product(const matrix_value &a, const matrix_value &b, matrix_value &r) {
    sparse_handle product(a.rows);
    row_walk walk(product.get());
    int32_t at = 0;
    row_builder row(&*walk);
    row_products<arithmetic>(a, b, [&](int32_t i, int32_t c, quoly_handle &value) {
        if (at < i) {
            for (; at < i; at++) walk.next();
            row = row_builder(&*walk);
        }
        row.add(c + 1, value);
    });
    r.make_sparse(product.release(), a.rows, b.size / b.rows);
}

template <class arithmetic> static void dense_product(const matrix_value &a, const matrix_value &b, matrix_value &r) {
    matrix_value product;
    product.make_dense(a.rows, b.cols());
    row_products<arithmetic>(a, b, [&](int32_t i, int32_t c, quoly_handle &value) {
        product.cell(int64_t{c} * a.rows + i) = value.release();
    });
    for (int64_t i = 0; i < product.size; i++)
        if (!product.cell(i)) quoly_set(0, &product.cell(i));
    r.take(product);
}

template <class arithmetic> static void product_by_rows(const matrix_value &a, const matrix_value &b, matrix_value &r) {
    if (a.is_sparse() && b.is_sparse())
        sparse_product<arithmetic>(a, b, r);
    else
        dense_product<arithmetic>(a, b, r);
}

/* The product of dense matrices of numbers on flat arrays, where that is known to be exact. */
static bool flat_product(entries kind, const matrix_value &a, const matrix_value &b, matrix_value &r) {
    if (kind == entries::flotes)
        flote_product(a, b, r);
    else if (kind == entries::residues && !finf)
        residue_product(a, b, r);
    else
        return kind == entries::integers && integer_product(a, b, r);
    return true;
}

void matrix_product(const matrix_value &a, const matrix_value &b, matrix_value &r) {
    if (!(a.is_sparse() && b.is_sparse()) && oversize(a.rows, b.size / b.rows)) array_error(43, token);
    const entries kind = kind_of_entries(a, b);
    if (a.is_dense() && b.is_dense() && flat_product(kind, a, b, r)) return;
    switch (kind) {
    case entries::flotes: return product_by_rows<flote_entries>(a, b, r);
    case entries::residues: return product_by_rows<residue_entries>(a, b, r);
    default: return product_by_rows<general_entries>(a, b, r);
    }
}

/* ---- Winograd's inner products ---- */

/* *r := the sum of products of neighbours x(2k-1) x(2k) along a line of n entries, `step` apart. */
static void sum_of_pairs(const matrix_value &m, int64_t from, int64_t step, int32_t n, quolynode **r) {
    quoly_set(0, r);
    for (int32_t k = 0; k + 1 < n; k += 2) {
        quoly_handle product;
        quoly_mult(m.cell(from + k * step), m.cell(from + (k + 1) * step), product.slot());
        best_quoly_add(r, product.release());
    }
}

/* *r := the entry from row i of a and column j of b, without the sums of pairs of that row and column. */
static void winograd_entry(const matrix_value &a, const matrix_value &b, int32_t i, int32_t j, quolynode **r) {
    const int32_t inner = b.rows;
    const auto in_row = [&](int32_t k) { return a.cell(int64_t{k} * a.rows + i); };
    const auto in_column = [&](int32_t k) { return b.cell(int64_t{j} * inner + k); };
    quoly_set(0, r);
    for (int32_t k = 0; k + 1 < inner; k += 2) {
        safe_point();
        quoly_handle x, y;
        quoly_add(in_row(k), in_column(k + 1), x.slot());
        quoly_add(in_row(k + 1), in_column(k), y.slot());
        fast_quoly_mult(x.slot(), y.get());
        best_quoly_add(r, x.release());
    }
    if (inner % 2 == 1) {
        quoly_handle last;
        quoly_mult(in_row(inner - 1), in_column(inner - 1), last.slot());
        best_quoly_add(r, last.release());
    }
}

/* The pairs of each row and each column are summed once, and taken off every entry of their row or column. */
void fast_mat_mult(const matrix_value &a, const matrix_value &b, matrix_value &r) {
    if (oversize(a.rows, b.cols())) array_error(43, token);
    const int32_t rows = a.rows, inner = b.rows, cols = b.cols();
    matrix_value product, row_pairs, column_pairs;
    product.make_dense(rows, cols);
    row_pairs.make_dense(rows, 1);
    column_pairs.make_dense(1, cols);
    for (int32_t i = 0; i < rows; i++) sum_of_pairs(a, i, rows, inner, &row_pairs.cell(i));
    for (int32_t j = 0; j < cols; j++) sum_of_pairs(b, int64_t{j} * inner, 1, inner, &column_pairs.cell(j));
    for (int32_t j = 0; j < cols; j++)
        for (int32_t i = 0; i < rows; i++) {
            quolynode *&cell = product.cell(int64_t{j} * rows + i);
            winograd_entry(a, b, i, j, &cell);
            better_quoly_sub(cell, row_pairs.cell(i), &cell);
            better_quoly_sub(cell, column_pairs.cell(j), &cell);
        }
    r.take(product);
}

} // namespace tolvek
