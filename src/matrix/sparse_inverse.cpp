/* Inverses of sparse matrices. Numbers go the way of dense matrices; what else there is by the method of U. Leverrier (1840)
   and D. Faddeev: with B(1) = A, c(k) = -trace B(k) / k and B(k+1) = A (B(k) + c(k)), the determinant is (-1)^n c(n) and the
   inverse -(B(n-1) + c(n-1)) / c(n). It takes products alone, and divides by the integers up to n, which must be units. */
#include "language/scanner.h"
#include "matrix/array_arithmetic.h"
#include "matrix/elimination_work.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

/* Are the integers from 2 to n units of the ring in force? */
bool divides_up_to(int32_t n) {
    if (!modularmode) return true;
    if (finf) return n < 2;
    for (int32_t q = 2; q <= n && q <= modulus; q++)
        if (modulus % q == 0) return false;
    return true;
}

void by_dense_matrix(matrix_value &m) {
    m.to_dense();
    mat_inverse(m);
    m.to_sparse();
}

/* *c := -trace b / k */
void next_coefficient(const matrix_value &b, int32_t k, quoly_handle &c) {
    quoly_handle divisor;
    quoly_set(k, divisor.slot()); /* below the modulus */
    quoly_set(0, c.slot());
    for (int32_t i = 1; i <= b.rows; i++) {
        const quolynode *entry =
            b.is_sparse() ? spar_retrieve(b.sparse, i, i) : b.cells()[(i - 1) * int64_t{b.rows} + i - 1];
        better_quoly_add(c.get(), entry, c.slot());
    }
    fast_quoly_quot(c.slot(), divisor.get(), 0);
    quoly_inplace(c.get());
}

bool is_dense_enough(matrix_value &b) {
    return b.is_sparse() && b.size <= most_cells && 2 * sparse_count(b.sparse, b.rows) > b.size;
}

void by_leverrier(matrix_value &a) {
    const int32_t n = a.rows;
    progress_level level;
    if (verbose) dumpitt("Invert sparse. Leverrier-Fadeev. Counting to ", n, 1, 1, 1);
    matrix_value b, next;
    quoly_handle c;
    b.copy_from(a);
    next_coefficient(b, 1, c);
    for (int32_t k = 2; k <= n; k++) {
        if (verbose && k % (n / 100 + 1) == 0) dumpitt(" ", k, 0, 0, 0);
        add_to_diag(c.get(), b);
        if (is_dense_enough(b)) b.to_dense();
        matrix_product(a, b, next);
        next_coefficient(next, k, c);
        if (k < n) b.take(next);
        safe_point();
    }
    if (quoly_is_zero(c.get())) array_error(44, token);
    check_pivot(c.get());
    quoly_reciprocal(c.slot());
    quoly_inplace(c.get());
    entries_with_scalar('*', b, c.get());
    if (b.is_dense()) b.to_sparse();
    a.take(b);
    level.leave(n, 0, 1);
}

void invert_single_entry(matrix_value &m) {
    colm *c = *row_walk(m.sparse);
    if (!c) array_error(44, token);
    check_pivot(c->value);
    quoly_reciprocal(&c->value);
}

} // namespace

void invert_sparse(matrix_value &m) {
    if (m.rows == 1) return invert_single_entry(m);
    const bool numbers = sparse_allpolys(m.sparse, m.rows);
    if ((numbers && m.size <= most_cells) || !divides_up_to(m.rows)) return by_dense_matrix(m);
    by_leverrier(m);
}

} // namespace tolvek
