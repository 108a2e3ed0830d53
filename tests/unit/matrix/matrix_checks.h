/* Products of matrices as a check, and matrices with a planted determinant. */
#pragma once

#include "matrix/array_arithmetic.h"
#include "matrix/matrix_value.h"
#include "support/rand_numbers.h"

#include <functional>

namespace tolvek {

/* *sum := entry (row, column) of a b, less the value if row and column are the same. */
inline void product_less_diagonal(const matrix_value &a, const matrix_value &b, int row, int column,
                                  const quolynode *value, quoly_handle &sum) {
    quoly_set(0, sum.slot());
    if (row == column) quoly_makeneg(value, sum.slot());
    for (int k = 0; k < a.rows; k++) {
        quoly_handle product;
        quoly_mult(a.cell(row + k * a.rows), b.cell(k + column * a.rows), product.slot());
        best_quoly_add(sum.slot(), product.release());
    }
}

/* Is a b the value times 1? */
inline bool is_product(const matrix_value &a, const matrix_value &b, const quolynode *value) {
    for (int i = 0; i < a.rows; i++)
        for (int j = 0; j < a.rows; j++) {
            quoly_handle rest;
            product_less_diagonal(a, b, i, j, value, rest);
            if (!quoly_is_zero(rest.get())) return false;
        }
    return true;
}

/* An entry of a kind of matrix, into a slot that holds null. */
using make_entry = std::function<void(test_random &, quolynode **)>;

/* A square matrix whose determinant is known: the product of a unit triangle, about half full, and a triangle with a chosen
   diagonal, its rows exchanged. */
struct planted_matrix {
    matrix_value m;
    quoly_handle determinant;

    planted_matrix(test_random &rnd, int n, const make_entry &entry, const make_entry &diagonal) {
        matrix_value lower, upper;
        lower.make_dense(n, n);
        upper.make_dense(n, n);
        quoly_set(1, determinant.slot());
        for (int row = 0; row < n; row++)
            for (int column = 0; column < n; column++) {
                quolynode **below = &lower.cell(row + column * n), **above = &upper.cell(row + column * n);
                quoly_set(row == column, below);
                quoly_set(0, above);
                if (row != column && rnd.one_in(2)) fill(rnd, entry, row > column ? below : above);
                if (row == column) {
                    fill(rnd, diagonal, above);
                    fast_quoly_mult(determinant.slot(), *above);
                }
            }
        matrix_product(lower, upper, m);
        m.own();
        exchange_rows(rnd, n);
    }

  private:
    static void fill(test_random &rnd, const make_entry &make, quolynode **slot) {
        quoly_handle value;
        make(rnd, value.slot());
        value.release_to(slot);
    }
    void exchange_rows(test_random &rnd, int n) {
        for (int i = 0; i < n; i++) {
            const int j = i + rnd.below(n - i);
            if (i == j) continue;
            for (int column = 0; column < n; column++) std::swap(m.cell(i + column * n), m.cell(j + column * n));
            quoly_inplace(determinant.get());
        }
    }
};

} // namespace tolvek
