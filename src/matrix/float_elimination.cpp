/* Elimination of matrices of floats, in extended precision on a flat array. */
#include "display/progress.h"
#include "language/scanner.h"
#include "matrix/elimination_work.h"
#include "top/interrupts.h"
#include "top/settings.h"

#include <cmath>

namespace tolvek {

static std::size_t index_of(int i) { return static_cast<std::size_t>(i); }

namespace {

/* A square of floats, row by row, on which elimination goes with the pivot of largest magnitude in half of the columns. */
class float_elimination {
  public:
    explicit float_elimination(elimination &e)
        : n(e.n), cells(index_of(n) * index_of(n)), rows(index_of(n)), columns(index_of(n)) {
        for (int i = 0; i < n; i++)
            for (int j = 0; j < n; j++) at(i, j) = e.cell(i, j)->numb->flote_val;
    }
    long double &at(int row, int column) { return cells[index_of(row) * index_of(n) + index_of(column)]; }

    /* Eliminates until at most so many rows are left: their number; -1: a pivot is missing. *product is multiplied by the
       pivots, with their sign. The rows that are left have their first pivot in its place. */
    int eliminate_until(int rows_left, long double *product) {
        for (int k = 0; k < n; k++) {
            if (verbose) dumpitt(" ", k + 1, 0, 0, 0);
            if (!place_pivot(k)) return -1;
            if ((rows[index_of(k)] != k) != (columns[index_of(k)] != k)) *product = -*product;
            if (n - k <= rows_left) return n - k;
            *product *= at(k, k);
            eliminate(k);
        }
        return 0;
    }
    bool invert() {
        long double product = 1;
        if (eliminate_until(0, &product) < 0) return false;
        if (verbose) dumpitt(" Now inverting upper triangular matrix, rank ", n, 1, 0, 0);
        invert_upper_triangle();
        if (verbose) dumpitt("Restoring row and column ops. \n", -1, 1, 0, 0);
        for (int k = n - 1; k >= 0; k--) restore_column(k);
        for (int k = n - 1; k >= 0; k--) exchange_columns(rows[index_of(k)], k);
        for (int k = n - 1; k >= 0; k--) exchange_rows(columns[index_of(k)], k);
        return true;
    }

  private:
    void exchange(long double &a, long double &b) {
        const long double kept = a;
        a = b;
        b = kept;
    }
    void exchange_rows(int i, int k) {
        for (int j = 0; j < n && i != k; j++) exchange(at(i, j), at(k, j));
    }
    void exchange_columns(int i, int k) {
        for (int j = 0; j < n && i != k; j++) exchange(at(j, i), at(j, k));
    }
    bool place_pivot(int k) {
        int row = -1, column = -1;
        for (int j = k; j < k + (n - k + 1) / 2; j++) {
            for (int i = k; i < n; i++)
                if (at(i, j) != 0 && (row < 0 || std::fabs(at(i, j)) > std::fabs(at(row, column)))) {
                    row = i;
                    column = j;
                }
            if (row < 0) return false;
        }
        rows[index_of(k)] = row;
        columns[index_of(k)] = column;
        exchange_rows(row, k);
        exchange_columns(column, k);
        return true;
    }
    /* Row k is divided by its pivot and subtracted from the lower rows; the pivot and the multipliers stay. */
    void eliminate(int k) {
        const long double inverse = 1 / at(k, k);
        for (int j = k + 1; j < n; j++) at(k, j) *= inverse;
        for (int i = k + 1; i < n; i++) {
            const long double factor = at(i, k);
            if (factor == 0) continue;
            for (int j = k + 1; j < n; j++) at(i, j) -= factor * at(k, j);
            safe_point();
        }
    }
    void invert_upper_triangle() {
        for (int column = n - 1; column > 0; column--)
            for (int row = column - 1; row >= 0; row--) {
                long double sum = at(row, column);
                for (int k = row + 1; k < column; k++) sum += at(row, k) * at(k, column);
                at(row, column) = -sum;
                safe_point();
            }
    }
    void restore_column(int k) {
        buffer<long double> factors(index_of(n));
        const long double inverse = 1 / at(k, k);
        at(k, k) = 1;
        for (int i = k + 1; i < n; i++) {
            factors[index_of(i)] = at(i, k);
            at(i, k) = 0;
        }
        for (int row = 0; row < n; row++) {
            long double x = at(row, k);
            for (int i = k + 1; i < n; i++) x -= at(row, i) * factors[index_of(i)];
            at(row, k) = x * inverse;
            safe_point();
        }
    }

    int n;
    buffer<long double> cells;
    buffer<int> rows, columns;
};

} // namespace

static void multiply_by_float(elimination &e, long double x) {
    quoly_handle factor;
    quoly_set_flote(x, factor.slot());
    e.multiply_result(factor.get());
}

/* The last rows are expanded by minors. */
static void float_determinant(elimination &e, float_elimination &floats) {
    long double product = 1;
    const int rows_left = floats.eliminate_until(e.minors_cut, &product);
    if (rows_left < 0) return e.finish_with_zero();
    multiply_by_float(e, product);
    if (rows_left == 0) return;
    if (verbose) dumpitt(" Finish by minors, rank ", rows_left, 1, 0, 0);
    const int first = e.n - rows_left;
    for (int i = first; i < e.n; i++)
        for (int j = first; j < e.n; j++) quoly_set_flote(floats.at(i, j), &e.cell(i, j));
    small_determ(e, first, e.result);
    if (quoly_is_zero(*e.result)) e.finish_with_zero(); /* without a sign */
}

static void float_inverse(elimination &e, float_elimination &floats) {
    if (!floats.invert()) array_error(44, token);
    for (int i = 0; i < e.n; i++)
        for (int j = 0; j < e.n; j++) quoly_set_flote(floats.at(i, j), &e.cell(i, j));
}

bool by_extended_precision(elimination &e) {
    if (!e.all_numbers || !flotemode || (gauss_cutoff == 1 && !e.invert())) return false;
    progress_level level;
    if (verbose) dumpitt("Standard G.E. method, rank ", e.n, 1, 1, 1);
    float_elimination floats(e);
    if (e.invert())
        float_inverse(e, floats);
    else
        float_determinant(e, floats);
    level.leave(e.n, 0, 1);
    return true;
}

} // namespace tolvek
