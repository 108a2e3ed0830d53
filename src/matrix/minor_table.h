/* Private to determinants: expansion by minors. */
#pragma once

#include "quoly/quoly.h"
#include "top/heap.h"

namespace tolvek {

/* The greatest number of rows that are expanded. */
constexpr int most_minor_rows = 40;

/* A square of borrowed values, row by row. */
struct minor_table {
    int n;
    buffer<const quolynode *> cells;

    explicit minor_table(int rows) : n(rows), cells(static_cast<std::size_t>(rows) * static_cast<std::size_t>(rows)) {}
    const quolynode *&at(int row, int column) { return cells[static_cast<std::size_t>(row * n + column)]; }
};

/* *result, which the caller has set, := itself times the determinant, by cofactors. At most most_minor_rows rows. */
void multiply_by_determinant(minor_table &m, quolynode **result);

/* The greatest number of minors that are kept; tests lower it. Eighteen rows without zeros have as many as this, and twenty
   would already take minutes if their entries are polynomials. */
extern std::size_t most_kept_minors;

/* *result := the determinant, each minor being computed once. False, and nothing has changed, if there would be too many
   of them. */
bool determinant_by_kept_minors(minor_table &m, quolynode **result);

} // namespace tolvek
