/* Matrices over a field of words (poly/flat_uni.h): the integers modulo a prime below 2^31, or a table field. Row by row
   on flat arrays, where elimination keeps products of four pivots together before it reduces.

   The field is an operand, not the ring in force. Long work passes safe points; an unwinding leaves a matrix undefined,
   but whole as a record. */
#pragma once

#include "poly/flat_uni.h"
#include "top/heap.h"

namespace tolvek {

class word_matrix {
  public:
    word_matrix(int its_rows, int its_cols);
    int rows() const { return static_cast<int>(row_of.size()); }
    int cols() const { return columns; }
    uint32_t *operator[](int i) { return row_of[static_cast<std::size_t>(i)]; }
    const uint32_t *operator[](int i) const { return row_of[static_cast<std::size_t>(i)]; }
    void swap_rows(int i, int j) {
        uint32_t *row = (*this)[i];
        row_of[static_cast<std::size_t>(i)] = (*this)[j];
        row_of[static_cast<std::size_t>(j)] = row;
    }

  private:
    int columns;
    buffer<uint32_t> cells;
    buffer<uint32_t *> row_of;
};

/* x[i] += c[0] * y[0][i] + ... over `count` rows y, 0 <= i < n. x overlaps none of them. */
void word_add_rows(const uni_field &f, uint32_t *x, const uint32_t *const *y, const uint32_t *c, int count, int n);

/* The determinant of a square matrix, which is destroyed: Gaussian elimination. */
uint32_t word_determinant(const uni_field &f, word_matrix *m);

/* m := its inverse in place, by the elimination of C. Gauss and W. Jordan, and *det, if not null, := the determinant.
   False for a singular matrix, whose entries are undefined then. */
bool word_invert(const uni_field &f, word_matrix *m, uint32_t *det);

} // namespace tolvek
