/* Private to determinants and inverses of dense matrices: the record that their steps work on. */
#pragma once

#include "display/progress.h"
#include "matrix/determinant.h"
#include "matrix/minor_table.h"

namespace tolvek {

struct elimination {
    matrix_value &m;    /* of its own; its cells change */
    quolynode **result; /* the determinant is multiplied into it; null: the inverse is wanted, in m */
    int n;
    bool all_numbers = true, no_denoms = true;
    int minors_cut = 0; /* remaining rows that are expanded by minors */

    elimination(matrix_value &matrix, quolynode **product);
    bool invert() const { return result == nullptr; }
    quolynode *&cell(int row, int column) { return m.cell(static_cast<int64_t>(column) * n + row); }
    void swap_rows(int i, int k);
    void swap_columns(int i, int k);
    void multiply_result(const quolynode *factor) { fast_quoly_mult(result, factor); }
    void finish_with_zero() { quoly_set(0, result); }
};

/* A step of the choice: false, and nothing has changed, if the method is none for this matrix. */
using elimination_step = bool (*)(elimination &e);

bool by_residues(elimination &e);             /* numbers modulo n */
bool by_extended_precision(elimination &e);   /* numbers in the float ring */
bool by_integers(elimination &e);             /* the determinant of integers */
bool by_adjoint_of_integers(elimination &e);  /* the inverse of integers */
bool by_fraction_free_steps(elimination &e);  /* if the switches ask for it */
bool by_cofactors(elimination &e);            /* the inverse modulo a composite number */
bool by_gaussian_elimination(elimination &e); /* any matrix */

/* m := the adjoint of a matrix of integers, or of residues by way of integers; false, and nothing has changed, if the
   determinant of the integers is 0. */
bool adjoint_of_integers(matrix_value &m);

/* ---- sparse matrices, of their own ---- */

void sparse_determinant(matrix_value &m, const determinant_hints &hints, quolynode **result);
void invert_sparse(matrix_value &m); /* sparse again; error 44 */

/* Steps of the choice, as above. */
struct sparse_elimination {
    matrix_value &m;
    quolynode **result;
    int n;
    bool all_numbers, no_denoms;
    int cut; /* remaining rows that are expanded by minors */
};
using sparse_step = bool (*)(sparse_elimination &e);

bool by_sparse_words(sparse_elimination &e);     /* residues, and integers by way of them */
bool by_sparse_bareiss(sparse_elimination &e);   /* without fractions, if the switches ask for it */
bool by_sparse_fractions(sparse_elimination &e); /* any matrix */

/* ---- shared by the eliminations ---- */

/* *q := *q / divisor, without a remainder; in floats what rounding leaves does not count. Values without denominators. */
void trial_divide(quolynode **q, const quolynode *divisor);
/* Is the ring that of a composite modulus? There quotients of polynomials have no common divisors that are sure: elimination
   goes without them where it can. */
bool has_zero_divisors();
/* Can values be divided by this one, which is not 0? Modulo a composite number its leading coefficient must be a unit:
   otherwise quotients by it would not be unique. */
bool is_pivot(const quolynode *q);
void check_pivot(const quolynode *pivot); /* error 85 if not */
/* Is the permutation that takes i to `of[i]` odd? It becomes the identity. */
bool make_identity(buffer<int> &of);

int64_t entry_mass(const quolynode *q); /* what an entry costs: of a number its digits, in a word ring 1 */

/* With `verbose`: what Gaussian elimination says, for routes that do not go step by step. */
void tell_elimination(const elimination &e);

struct pivot_place {
    int row = -1, column = -1; /* -1: there is none */
    bool found() const { return row >= 0; }
};
/* A pivot for step k, in the next `columns` columns from row k on: the number of largest magnitude (modulo n the first one);
   without a number the value of least mass; what cannot be divided by comes last. None if the first of the columns is 0. */
pivot_place find_good_spot(elimination &e, int k, int columns);
/* The same, brought to row and column k; a determinant changes its sign for it. What is given is where it stood. */
pivot_place place_pivot(elimination &e, int k, int columns);

/* The square block of the last rows and columns from k on, by cofactors along the line with the most zeros: *result, which
   the caller has set, times the determinant. At most most_minor_rows rows. */
void small_determ(elimination &e, int k, quolynode **result);

} // namespace tolvek
