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

    long double determinant(int minors_cut) {
        long double product = 1;
        for (int k = 0; k < n; k++) {
            if (!place_pivot(k)) return 0;
            if ((rows[index_of(k)] != k) != (columns[index_of(k)] != k)) product = -product;
            if (n - k == 2 && minors_cut >= 2)
                return product * (at(k, k) * at(k + 1, k + 1) - at(k, k + 1) * at(k + 1, k));
            product *= at(k, k);
            eliminate(k);
        }
        return product;
    }
    bool invert() {
        for (int k = 0; k < n; k++) {
            if (!place_pivot(k)) return false;
            eliminate(k);
        }
        invert_upper_triangle();
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

bool by_extended_precision(elimination &e) {
    if (!e.all_numbers || !flotemode || (gauss_cutoff == 1 && !e.invert())) return false;
    float_elimination floats(e);
    tell_elimination(e);
    if (!e.invert()) {
        quoly_handle det;
        quoly_set_flote(floats.determinant(e.minors_cut), det.slot());
        e.multiply_result(det.get());
        return true;
    }
    if (!floats.invert()) array_error(44, token);
    for (int i = 0; i < e.n; i++)
        for (int j = 0; j < e.n; j++) quoly_set_flote(floats.at(i, j), &e.cell(i, j));
    return true;
}

} // namespace tolvek
