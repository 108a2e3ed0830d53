/* Concatenation: matrices beside or below each other, scalars at an end. */
#include "language/scanner.h"
#include "matrix/array_arithmetic.h"

namespace tolvek {

/* Moves the entries of an owned matrix, or copies them, into the cells from `at` on, `stride` of them for a column. */
static void place_entries(matrix_value &m, matrix_value &to, int64_t at, int64_t stride) {
    for (int64_t i = 0; i < m.size; i++) {
        quolynode *&cell = to.cell(at + i / m.rows * stride + i % m.rows);
        if (m.owned) {
            cell = m.cell(i);
            m.cell(i) = nullptr;
        } else {
            quoly_assign(m.cell(i), &cell);
        }
    }
}

/* A row stays a row; any other matrix becomes one column. */
static void read_as_vector(matrix_value &m) {
    if (m.rows > 1) m.set_shape(static_cast<int32_t>(m.size));
}

static void scalar_to_matrix(matrix_value &m) {
    if (!m.is_scalar()) return;
    matrix_value one;
    one.make_dense(1, 1);
    one.cell(0) = m.scalar.release();
    m.take(one);
}

void concatenate(matrix_value &a, matrix_value &b) {
    if (a.is_scalar() && b.is_scalar()) array_error(113, token);
    if (a.is_sparse() || b.is_sparse()) array_error(242, token);
    a.fill_holes();
    b.fill_holes();
    scalar_to_matrix(a);
    scalar_to_matrix(b);
    bool below;
    if (b.size == 1) { /* a matrix of one entry counts as a scalar */
        read_as_vector(a);
        below = a.rows > 1;
    } else if (a.size == 1) {
        read_as_vector(b);
        below = b.rows > 1;
    } else {
        below = a.cols() == b.cols();
        if (!below && a.rows != b.rows) array_error(112, token);
    }
    if (a.size + b.size > most_cells) array_error(111, token);
    matrix_value joined;
    const int64_t rows = below ? int64_t{a.rows} + b.rows : a.rows;
    joined.make_dense(rows, (a.size + b.size) / rows);
    place_entries(a, joined, 0, rows);
    place_entries(b, joined, below ? a.rows : a.size, rows);
    a.take(joined);
    b.clear();
}

} // namespace tolvek
