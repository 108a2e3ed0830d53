/* Products of dense polynomials in one variable on plain arrays of residues, indexed by exponent, in a modular ring.

   A range lo .. hi of an array is what a routine reads; entries outside it count as 0. *top := the index of the highest
   entry of the result other than 0, or an index below the range when there is none. Sums and differences may be stored
   over their first operand. A broken condition is reported and is no user's error. */
#pragma once

#include "poly/model.h"
#include "top/heap.h"

namespace tolvek {

/* ---- products ----

   z[lo_x + lo_y .. hi_x + hi_y] := x[lo_x .. hi_x] * y[lo_y .. hi_y]. z overlaps no operand. The entries at hi_x and
   hi_y are not 0, but for slower_ and simple_. */

void onevar_mult(const int32_t *x, const int32_t *y, int32_t *z, int lo_x, int hi_x, int lo_y, int hi_y);
/* The same with one reduction for each product; for the table fields too. */
void slower_onevar_mult(const int32_t *x, const int32_t *y, int32_t *z, int lo_x, int hi_x, int lo_y, int hi_y);
void simple_onevar_mult(const int32_t *x, const int32_t *y, int32_t *z, int deg_x, int deg_y);
/* By Karatsuba's method from poly_cutoff entries on. Passes safe points. */
void fast_array_onevar_mult(const int32_t *x, const int32_t *y, int32_t *z, int lo_x, int hi_x, int lo_y, int hi_y);
/* The degree of the product; when x or y ends in 0, z[0] := 0 and 0. */
int fast_0_array_onevar_mult(const int32_t *x, const int32_t *y, int32_t *z, int lo_x, int hi_x, int lo_y, int hi_y);

/* ---- sums ---- */

/* z := x + y from the lower of both lo to the higher of both hi. */
void onevar_add(const int32_t *x, const int32_t *y, int32_t *z, int lo_x, int hi_x, int lo_y, int hi_y, int *top);
/* z := x - y from lo on. */
void onevar_sub(const int32_t *x, const int32_t *y, int32_t *z, int lo, int hi_x, int hi_y, int *top);
/* z := x + y * t^shift and x - y * t^shift, x and y from lo on; shift at least 0. */
void onevar_add_shift(const int32_t *x, const int32_t *y, int32_t *z, int lo, int hi_x, int hi_y, int shift, int *top);
void onevar_sub_shift(const int32_t *x, const int32_t *y, int32_t *z, int lo, int hi_x, int hi_y, int shift, int *top);
/* t[i] := x[i] + x[i + m] from lo on: the m entries of the low half plus the high half, which goes to hi. */
void onevar_self_add(const int32_t *x, int32_t *t, int lo, int hi, int m, int *top);

/* ---- polynomials to arrays and back ---- */

/* arr[e] := the residue of the term of degree e, 0 elsewhere up to the degree. */
void fill_poly_array(const polynode *p, int32_t *arr);
void fill_poly1_array(const polynode *p, int32_t *arr, int *deg);
/* *p := the polynomial of arr[0 .. deg]. */
void array_to_poly(const int32_t *arr, int deg, polynode **p);

/* The product by way of arrays, for operands that are well filled. */
void k_fastest_poly_mult(const polynode *a, const polynode *b, polynode **p);

} // namespace tolvek
