/* Determinants of matrices of integers, by residues modulo words.

   A matrix is given by its cells, column by column, each a plain number in the chain form; the flags of the ring play no
   part. Cells come back unchanged. Work passes safe points at which nothing of the caller's is borrowed but the cells.

   Long determinants are not found by triangularisation modulo a bound, whose numbers are as long as the determinant at
   every step: lifting takes about one step of that length. No switch asks for the one or the other, and no message tells
   which it is. */
#pragma once

#include "matrix/word_matrix.h"
#include "quoly/quoly.h"

namespace tolvek {

struct integer_matrix {
    quolynode *const *cells;
    int n;

    const number *entry(int row, int column) const {
        return cells[static_cast<std::ptrdiff_t>(column) * n + row]->numb;
    }
    /* m := the entries modulo p, row by row. */
    void residues(uint32_t p, word_matrix *m) const;
};

/* Bounds of the logarithm to base 2 of a determinant's magnitude, from the Euclidean norms of rows and of columns
   (J. Hadamard, 1893). Below 0: a row or column is 0, and the determinant with it. */
struct hadamard_bounds {
    double rows, columns;
    explicit hadamard_bounds(const integer_matrix &m);
    double least() const { return rows < columns ? rows : columns; }
};

/* x := the determinant. */
void integer_determinant(const integer_matrix &m, number *x);

/* Two ways to it. By Chinese remainders: residues modulo as many primes as the bound asks for, which is 2^bits. */
void determinant_by_primes(const integer_matrix &m, double bits, number *x);
/* By a divisor of the determinant, the denominator of one solution that is lifted modulo powers of a prime, and the
   cofactor by primes (J. Dixon, 1982; J. Abbott, M. Bronstein, T. Mulders, 1999), verified by one prime more. False, and
   x undefined, if no prime was found for which the matrix can be lifted. */
bool determinant_by_lifting(const integer_matrix &m, const hadamard_bounds &bounds, number *x);

/* The third, for few rows of long entries: elimination without fractions. */
void determinant_without_fractions(const integer_matrix &m, number *x);

} // namespace tolvek
