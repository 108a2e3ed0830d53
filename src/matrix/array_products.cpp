/* The operators * / \ | and _ between array values: which operation they stand for. */
#include "language/scanner.h"
#include "matrix/array_arithmetic.h"
#include "matrix/determinant.h"

namespace tolvek {

static void combine_scalars(int op, matrix_value &a, matrix_value &b) {
    if (op == '*')
        fast_quoly_mult(a.scalar.slot(), b.scalar.get());
    else if (op == '/')
        fast_quoly_quot(a.scalar.slot(), b.scalar.get(), 0);
    else
        quoly_mod_or_div(a.scalar.get(), b.scalar.get(), a.scalar.slot(), op);
}

/* b := its inverse. Error 89: no work array is left for it. */
static void invert_divisor(matrix_value &b) {
    if (first_available > work_arrays) array_error(89, token);
    mat_inverse(b);
}

/* A scalar times each entry, or times the inverse; for other operators it stands beside each entry, those that a sparse
   matrix does not store among them, so that such a one is refused. */
static void scalar_with_matrix(int op, matrix_value &a, matrix_value &b) {
    const bool quotient = op == '/' && b.is_square();
    if (quotient) invert_divisor(b);
    if (op == '*' || quotient) {
        entries_with_scalar('*', b, a.scalar.get());
        a.take(b);
        return;
    }
    if (b.is_sparse()) array_error(242, token);
    entrywise(op, a, b);
}

static void combine_entries(int op, matrix_value &a, matrix_value &b) {
    if (a.size != b.size || a.rows != b.rows) array_error(39, token);
    if (a.is_sparse() || b.is_sparse()) array_error(191, token);
    entrywise(op, a, b);
}

/* Matrices that could be multiplied are, though they have one shape: a product entry by entry needs another one. */
static void combine_matrices(int op, matrix_value &a, matrix_value &b) {
    const bool chain = a.cols() == b.rows, quotient = op == '/' && chain && b.is_square();
    if (!(op == '*' && chain) && !quotient) return combine_entries(op, a, b);
    if (quotient) invert_divisor(b);
    matrix_value product;
    a.fill_holes();
    b.fill_holes();
    matrix_product(a, b, product);
    a.take(product);
}

void multiply_values(int op, matrix_value &a, matrix_value &b) {
    if (op == '_')
        concatenate(a, b);
    else if (a.is_scalar() && b.is_scalar())
        combine_scalars(op, a, b);
    else if (b.is_scalar())
        entries_with_scalar(op, a, b.scalar.get());
    else if (a.is_scalar())
        scalar_with_matrix(op, a, b);
    else
        combine_matrices(op, a, b);
    b.clear();
}

} // namespace tolvek
