/* Gaussian elimination with fractions. The rows are divided by their pivots. For an inverse the pivots stay on the diagonal
   and the multipliers below it, in the place of what was cleared: with L, of these two, and the unit triangle U above,
   the matrix with its rows and columns exchanged is L U, and its inverse U^-1 L^-1. */
#include "language/scanner.h"
#include "matrix/elimination_work.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

/* The rows or columns that changed places at each step. */
struct exchanges {
    buffer<int> partner;
    explicit exchanges(int n) : partner(static_cast<std::size_t>(n)) {}
    int &operator[](int k) { return partner[static_cast<std::size_t>(k)]; }
};

/* How many columns are searched for the pivot of step k: in a modular ring any number serves, over the integers a larger
   one is better, among polynomials the cheapest is worth a search of all. */
int columns_searched(const elimination &e, int k) {
    const int remaining = e.n - k;
    if (!e.all_numbers) return remaining;
    return modularmode ? 1 : (remaining + 1) / 2;
}

/* x := x - a b */
void subtract_product(quolynode **x, const quolynode *a, const quolynode *b) {
    if (quoly_is_zero(a) || quoly_is_zero(b)) return;
    quoly_handle product;
    quoly_mult(a, b, product.slot());
    best_quoly_sub(x, product.release());
}

/* The entries of row k behind the pivot are divided by it. */
void divide_thru(elimination &e, int k) {
    quolynode *pivot = e.cell(k, k);
    check_pivot(pivot);
    if (!e.invert()) e.multiply_result(pivot);
    if (pivot->is_num) {
        quoly_handle inverse;
        quoly_assign(pivot, inverse.slot());
        quoly_reciprocal(inverse.slot());
        for (int j = k + 1; j < e.n; j++) fast_quoly_mult(&e.cell(k, j), inverse.get());
        return;
    }
    for (int j = k + 1; j < e.n; j++) {
        safe_point();
        fast_quoly_quot(&e.cell(k, j), pivot, 0);
    }
}

/* Subtracts multiples of row k from the lower rows, behind column k. */
void zero_out(elimination &e, int k) {
    for (int i = k + 1; i < e.n; i++) {
        safe_point();
        if (quoly_is_zero(e.cell(i, k))) continue;
        for (int j = k + 1; j < e.n; j++) subtract_product(&e.cell(i, j), e.cell(i, k), e.cell(k, j));
    }
}

/* ---- the inverse ---- */

/* The unit triangle above the diagonal becomes its inverse. */
void invert_upper_triangle(elimination &e) {
    for (int column = e.n - 1; column > 0; column--)
        for (int row = column - 1; row >= 0; row--) {
            safe_point();
            quoly_handle sum;
            quoly_assign(e.cell(row, column), sum.slot());
            for (int k = row + 1; k < column; k++) {
                if (quoly_is_zero(e.cell(row, k)) || quoly_is_zero(e.cell(k, column))) continue;
                quoly_handle product;
                quoly_mult(e.cell(row, k), e.cell(k, column), product.slot());
                best_quoly_add(sum.slot(), product.release());
            }
            quoly_inplace(sum.get());
            sum.release_to(&e.cell(row, column));
        }
}

/* Column k of what stands for U^-1, times the part of L^-1 that step k made: less its multiples of the later columns, and
   divided by the pivot. The cells on and below the diagonal hold the pivot and the multipliers until then. */
void restore_column(elimination &e, int k) {
    matrix_value multipliers;
    multipliers.make_dense(e.n, 1);
    quoly_handle inverse;
    inverse.slot()[0] = e.cell(k, k);
    e.cell(k, k) = nullptr;
    quoly_reciprocal(inverse.slot());
    quoly_set(1, &e.cell(k, k));
    for (int i = k + 1; i < e.n; i++) {
        multipliers.cell(i) = e.cell(i, k);
        e.cell(i, k) = nullptr;
        quoly_set(0, &e.cell(i, k));
    }
    for (int row = 0; row < e.n; row++) {
        safe_point();
        quolynode *&x = e.cell(row, k);
        for (int i = k + 1; i < e.n; i++) subtract_product(&x, e.cell(row, i), multipliers.cell(i));
        fast_quoly_mult(&x, inverse.get());
    }
}

void restore_operations(elimination &e, exchanges &rows, exchanges &columns) {
    for (int k = e.n - 1; k >= 0; k--) restore_column(e, k);
    for (int k = e.n - 1; k >= 0; k--)
        if (rows[k] != k) e.swap_columns(rows[k], k);
    for (int k = e.n - 1; k >= 0; k--)
        if (columns[k] != k) e.swap_rows(columns[k], k);
}

void finish_inverse(elimination &e, exchanges &rows, exchanges &columns) {
    if (verbose) dumpitt(" Now inverting upper triangular matrix, rank ", e.n, 1, 0, 0);
    invert_upper_triangle(e);
    if (verbose) dumpitt("Restoring row and column ops. \n", -1, 1, 0, 0);
    restore_operations(e, rows, columns);
}

/* The steps; false: some column is 0. */
bool run_steps(elimination &e, exchanges &rows, exchanges &columns) {
    for (int k = 0; k < e.n; k++) {
        if (verbose) dumpitt(" ", k + 1, 0, 0, 0);
        const pivot_place at = place_pivot(e, k, columns_searched(e, k));
        if (!at.found()) return false;
        rows[k] = at.row;
        columns[k] = at.column;
        if (!e.invert() && e.n - k <= e.minors_cut) {
            if (verbose) dumpitt(" Finish by minors, rank ", e.n - k, 1, 0, 0);
            small_determ(e, k, e.result);
            return true;
        }
        if (!e.invert() && k == e.n - 1) {
            e.multiply_result(e.cell(k, k));
            return true;
        }
        divide_thru(e, k);
        zero_out(e, k);
    }
    return true;
}

} // namespace

bool by_gaussian_elimination(elimination &e) {
    progress_level level;
    if (verbose) dumpitt("Standard G.E. method, rank ", e.n, 1, 1, 1);
    exchanges rows(e.n), columns(e.n);
    const bool regular = run_steps(e, rows, columns);
    if (!regular && e.invert()) array_error(44, token);
    if (!regular)
        e.finish_with_zero();
    else if (e.invert())
        finish_inverse(e, rows, columns);
    level.leave(e.n, 0, 1);
    return true;
}

} // namespace tolvek
