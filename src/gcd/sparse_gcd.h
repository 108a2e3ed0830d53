/* GCDs of sparse polynomials from few images in the main variable (sparse_images.h).

   u and v are primitive with respect to the main variable and of positive degree in it. *g becomes their GCD, and the answer
   is true; it has been divided into both. Otherwise *g stays: where primes of a word are too small for the degrees, and where
   images turn out bad time and again. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* Modulo a prime: over the residues, or over a larger field where they are too few. */
bool sparse_gcd(const polynode *u, const polynode *v, polynode **g, pt *names);
/* Modulo a small prime: *degree := the degree in the main variable of the GCD of images over a larger field, never too low;
   *coprime: images in every variable tell that the GCD is a number. False where an image loses degree. */
bool degrees_over_larger_field(const polynode *u, const polynode *v, int32_t *degree, bool *coprime);
/* The same for integers, by images modulo a large prime; *coprime: the GCD is that of the integer contents. */
bool degrees_modulo_large_prime(const polynode *u, const polynode *v, int32_t *degree, bool *coprime);
/* Over the integers; where they are not null, *u2 := u / *g and *v2 := v / *g. */
bool sparse_integer_gcd(const polynode *u, const polynode *v, polynode **g, pt *names, polynode **u2 = nullptr,
                        polynode **v2 = nullptr);

} // namespace tolvek
