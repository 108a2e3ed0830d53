/* Arithmetic of array values.

   Unless its line says otherwise the first operand becomes the result, and a second one that is not const is left empty.
   What the expression owns is changed in place, borrowed values are never touched. Shapes that do not fit are error 39.
   Entries of sparse results that become 0 are not stored. Null cells count as 0, with a warning. */
#pragma once

#include "matrix/matrix_value.h"

namespace tolvek {

/* ---- sums (array_sums.cpp) ---- */

/* a + b or a - b: scalars; matrices of one shape; a scalar and each entry of a matrix. Two sparse matrices have a sparse
   sum; a sparse matrix with anything else becomes dense (error 250). */
void add_values(matrix_value &a, matrix_value &b, bool minus);
void negate_value(matrix_value &m);

/* ---- entry by entry (array_entries.cpp) ---- */

/* a op b for dense matrices of one shape and scalars, not both scalars; op is one of + - * / \ |. */
void entrywise(int op, matrix_value &a, matrix_value &b);
/* The entries that are stored, with a scalar on the right: * / \ |. Division by 0 is error 22 with no entry too. */
void entries_with_scalar(int op, matrix_value &m, const quolynode *scalar);
void greatest_integers(matrix_value &m);
void magnitudes(matrix_value &m);
/* Each entry at values for the first variables. */
void evaluate_entries(matrix_value &m, const quolynode *const *values, int count);

/* ---- the operators of a term (array_products.cpp) ---- */

/* a op b for op one of * / \ | _. `*` of two matrices is their product when the columns of a are as many as the rows of b,
   otherwise entry by entry. `/` by a square matrix that a product with a could have is the product with its inverse.
   Errors: 39, 43, 44, 89, 111, 112, 113, 191 sparse matrices entry by entry, 242. */
void multiply_values(int op, matrix_value &a, matrix_value &b);

/* a _ b: beside or below each other, or a scalar behind or in front of the entries (array_joins.cpp). */
void concatenate(matrix_value &a, matrix_value &b);

/* ---- products of matrices ---- */

/* r := a b, where the columns of a are as many as the rows of b; both stay. r is sparse if both are. Error 43: too large
   for a dense matrix. Integers, residues and floats go flat (flat_matrix.h); products of sparse matrices cost in
   proportion to the products of entries that are made. */
void matrix_product(const matrix_value &a, const matrix_value &b, matrix_value &r);

/* The same for dense matrices by S. Winograd's inner products (1968): about half as many products of entries for more sums,
   for entries whose products are much dearer than their sums. */
void fast_mat_mult(const matrix_value &a, const matrix_value &b, matrix_value &r);

/* ---- powers (array_powers.cpp) ---- */

/* m := m + q on the diagonal; what becomes 0 is not stored in a sparse matrix. */
void add_to_diag(const quolynode *q, matrix_value &m);
/* m^e for a square matrix, by the inverse for e below 0. Errors 44, 172. */
void matrix_power(matrix_value &m, const number *exponent);
/* The same for a dense matrix, squares by fast_mat_mult. Errors 172, 242. */
void alt_mat_power(matrix_value &m, const number *exponent);
/* m^e with entries reduced modulo a number of 1 or above after each step; null: no modulus. Errors 172, 287 an exponent
   below 0, 323 an entry with a denominator. */
void matpowermod(matrix_value &m, const number *exponent, const quolynode *modulus);
/* m := the polynomial at the square matrix m; its coefficients, in other variables too, scale the powers. Errors 241, 186 a
   denominator, 198 a negative exponent. */
void quoly_at_matrix(const quolynode *p, matrix_value &m);

/* ---- shape and contents (array_measures.cpp) ---- */

void transpose(matrix_value &m);        /* error 72 for a scalar */
void extract_diagonal(matrix_value &m); /* as a column; error 74 for a scalar */
/* *result := the sum of all entries; a scalar is its own sum. */
void sum_arr(matrix_value &m, quolynode **result);
/* *result := the sum of the diagonal. Error 194: not square, a scalar. */
void trace_of(matrix_value &m, quolynode **result);
/* How many entries are equal to, above or below the value: relation '=', '>' or '<'. Errors 119, 242. */
int64_t count_entries(matrix_value &m, int relation, const quolynode *value);
/* The place of the greatest or the least entry, or of the least above 0, from 0, column by column; -1: there is none. Ties
   go to the first in the order of the columns, in a sparse matrix of the rows. Error 119. */
int64_t extreme_entry(matrix_value &m, bool greatest, bool positive);
bool all_zero(const matrix_value &m);

} // namespace tolvek
