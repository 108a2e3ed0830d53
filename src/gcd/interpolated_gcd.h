/* GCDs from images: at values of the deepest variable modulo a prime, and modulo primes over the integers. Both verify
   their answers by division, so that bad luck costs time alone. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* Modulo a prime, u and v of positive degree in the main variable, in two variables at least (W. S. Brown, 1971): *g :=
   their GCD up to a unit, or false where the ring has too few values. */
bool interpolated_gcd(const polynode *u, const polynode *v, polynode **g, pt *names);

/* Over the integers, u and v primitive: *g := their GCD, or false where it does not show after many primes. Where they are
   not null, *u2 := u / *g and *v2 := v / *g. */
bool basic_mod_method(const polynode *u, const polynode *v, polynode **g, pt *names, polynode **u2 = nullptr,
                      polynode **v2 = nullptr);

/* The lexical order of the leading monomials: -1, 0, 1. */
int compare_leading(const polynode *a, const polynode *b);

} // namespace tolvek
