/* Coefficients, leading terms and degrees. Polynomials come back unchanged; results are new ones of the level of p, 0
   included, with the levels that were taken out of account left in place as exponent 0. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* A product of powers: the exponent of each level, from 1; 0 where a variable does not occur. */
struct power_product {
    int32_t expo[most_variables + 2] = {};
    int deepest = 0; /* the deepest level with an exponent other than 0; 0 for 1 */
};
/* False, and the exponents are without use, when p is no single term. Its number coefficient is not looked at. */
bool power_product_of(const polynode *p, power_product *m);

/* What stands with the e-th power of the variable of the level. */
void coefficient_of_power(const polynode *p, int level, int32_t e, polynode **c);
/* What stands with the powers of m, as to the variables that occur in m: the others stay. */
void coefficient_of_product(const polynode *p, const power_product &m, polynode **c);
/* The terms of p whose exponents are nowhere below those of m, divided by m. */
void cofactor_of_multiples(const polynode *p, const power_product &m, polynode **c);
/* The number that stands at exactly this product; null for 0. */
const number *number_at(const polynode *p, const power_product &m);

/* The first term of p in its first real variable; its coefficient alone; the product of powers that follows the first
   terms down to a number. 0 for 0, and for a number: itself, itself and 1. */
void leading_term(const polynode *p, polynode **t);
void poly_leading_coef(const polynode *p, polynode **c);
void leading_mon(const polynode *p, polynode **m);
const polynode *trailing_coef(const polynode *p); /* the number term at the bottom of the last terms */

/* -1, 0, 1: the leading product of a is below, equal to, above that of b; the first level that differs decides. */
int compare_leading_mons(const polynode *a, const polynode *b);

/* The least exponent of the level in all of p; 0 for 0. */
int32_t codegree(const polynode *p, int level);

} // namespace tolvek
