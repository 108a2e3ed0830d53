/* Determinants and inverses: one entry for both, which chooses among the methods.

   The methods, for a dense matrix in the order in which they are asked (determinant.cpp has the list): numbers go by
   residues, in floats by elimination in extended precision; polynomials by fraction-free elimination (E. Bareiss, 1968) if
   gauss_cutoff asks for it, otherwise by Gaussian elimination with fractions, whose last rows, minors_cut of them, are
   expanded by minors. For a sparse one (sparse_determinant.cpp): minors of up to detcutoff rows, or 3; numbers by residues,
   on lists of words; the same eliminations, row by row. Its inverse is found by the method of U. Leverrier and D. Faddeev.

   detcutoff of 0 or more, gauss_cutoff of 1 and mod_matrix_ok of 0 turn the ways over residues off for matrices of integers:
   so each method can be asked for. The values are the same.

   Everything is computed in the ring in force. Over a ring modulo a composite number, matrices of numbers are computed
   over the integers first. */
#pragma once

#include "matrix/matrix_value.h"

namespace tolvek {

/* What the caller of a determinant knows, or asks for, beside the matrix. */
struct determinant_hints {
    const polynode *factor = nullptr;              /* divides the determinant, and is taken out of it */
    int32_t degree = -1, degree2 = -1, power = -1; /* of interpolations; -1: nothing is known */
};

/* *result := *result times the determinant of the square matrix. m comes back unchanged when its cells are borrowed, and
   empty when they are its own. Error 305: the factor does not divide. */
void mat_determinant(matrix_value &m, const determinant_hints &hints, quolynode **result);

/* m := the inverse of the square matrix, of its own. Error 44: singular; 88; 85 for a pivot that is no unit. */
void mat_inverse(matrix_value &m);

/* m := the adjoint of the square dense matrix: its product with m is the determinant times 1, for singular m too. */
void adjoint(matrix_value &m);

/* *result := *result / factor. Error 305 when there are no denominators and a remainder, and for the factor 0. */
void divide_fct(quolynode **result, const polynode *factor, bool no_denoms);

} // namespace tolvek
