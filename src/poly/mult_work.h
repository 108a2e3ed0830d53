/* What the routes of products share among themselves. Every route can be called by name, and gives the same value.

   Operands come back unchanged, and nothing of theirs is rewritten meanwhile: a route that wants them in another form
   works on a copy of their top-level nodes. a may be b; *p may hold either. The operands are not constants unless a
   line says so, and exponents of the product are in range. names: as for poly_mult. */
#pragma once

#include "numbers/int_mult.h"
#include "numbers/modular.h"
#include "poly/mult.h"

namespace tolvek {

/* Least number of products of terms for which poly_mult pours its operands into flat arrays. Measured by
   bench/kernels/poly.cpp (route/lists beside the others). */
extern int64_t flat_product_cut;

/* poly_mult without a look at exponents and without flat routes: the choice among the routes on lists. */
void mult_lists(const polynode *a, const polynode *b, polynode **p, pt *names);

/* n_a, n_b: the lengths from exp_poly_length; what they are for is only which operand goes outside. */
void simple_standard(const polynode *a, const polynode *b, int n_a, int n_b, polynode **p);
void mod_standard(const polynode *a, const polynode *b, int n_a, int n_b, polynode **p, pt *names);
/* A term or a constant a times b. */
void fast_mod_standard(const polynode *a, const polynode *b, polynode **p, pt *names);
void karatsuba_lists(const polynode *a, const polynode *b, int32_t last_a, int32_t last_b, polynode **p, pt *names);

/* The lean case: polynomials in one variable over plain residues, with no negative exponent. A length of 0: not measured
   yet. */
void simplest_poly_mult(const polynode *a, const polynode *b, polynode **p, int n_a, int n_b, int32_t last_a,
                        int32_t last_b);
void simplest_standard(const polynode *a, const polynode *b, int n_a, int n_b, polynode **p);
void fastest_standard(const polynode *a, const polynode *b, int n_a, int n_b, polynode **p);

/* The term t times p, coefficients folded by the relations below names; t stands alone whatever its successor is. */
void node_by_poly_1(const polynode *t, const polynode *p, polynode **q, pt *names);

/* The product of two numbers in the form in force; dst is neither operand. */
inline void number_product(const number *x, const number *y, number *dst) {
    if (flotemode)
        dst->flote_val = x->flote_val * y->flote_val;
    else if (modularmode)
        dst->lint_val = modmult(x->lint_val, y->lint_val);
    else if (lintmode)
        dst->lint_val = static_cast<int32_t>(static_cast<uint32_t>(x->lint_val) * static_cast<uint32_t>(y->lint_val));
    else
        fast_mult(x, y, dst);
}

/* The products of one term with a list, in descending order: the next one. Rows of several terms make a heap. */
struct product_row {
    int64_t expo;
    uint32_t place; /* of the term among those outside */
    const polynode *outer, *inner;
};
inline bool comes_later(const product_row &x, const product_row &y) {
    return x.expo != y.expo ? x.expo < y.expo : x.place > y.place;
}

/* The names of the level below. */
inline pt *names_below(pt *names) { return names ? names->pt_next : nullptr; }
/* Is there a relation on one of the names, or below? */
bool any_relation(const pt *names);
/* *p := its remainder by the relations on names. Set by the module of relations when it comes; null until then, and
   no name has a relation. */
extern void (*fold_product)(polynode **p, pt *names);
inline void fold_if_related(polynode **p, pt *names) {
    if (any_relation(names)) fold_product(p, names);
}

} // namespace tolvek
