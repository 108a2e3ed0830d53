/* Sizes of polynomials: heuristics of the method choosers, each with a stop of its own so that it stays cheap. */
#pragma once

#include "poly/model.h"

namespace tolvek {

int poly_length(const polynode *p);                  /* top-level terms */
int fast_poly_length(const polynode *p, int limit);  /* the same, stops at limit + 1 */
int fast_numterms(const polynode *p);                /* leaf terms, stops at 61 */
int fast_f_numterms(const polynode *p, int level);   /* field coefficients count 1; stops at 101 */
int qpoly_numterms(const polynode *p, int level);    /* the same; stops above 1000 */
int64_t poly_numterms(const polynode *p, int level); /* the same, no stop */
int64_t numterms(const quolynode *q);                /* numerator and denominator */
int64_t f_numterms(const quolynode *q);
int64_t simple_poly_mass(const polynode *p);
int very_simple_poly_mass(const polynode *p); /* stops at 251 */
int more_simple_poly_mass(const polynode *p); /* stops at 351 */
constexpr int32_t mass_overflow = 0x1fffffe;
int32_t poly_mass(const polynode *p, int32_t factor, int32_t weight);
int32_t new_poly_mass(const polynode *p, int32_t weight);
int64_t sizepoly(const polynode *p); /* bytes, by the sizes of the memory reports */
int max_digits(const polynode *p);   /* bits of the largest coefficient; -1 for null */
int quoly_max_digits(const quolynode *q);

} // namespace tolvek
