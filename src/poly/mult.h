/* Products of polynomials. poly_mult is the one entry that the rest of the system calls; it measures its operands and
   chooses among the routes, each of which can be called by name. */
#pragma once

#include "poly/model.h"

namespace tolvek {

extern int fast_mult_cut;        /* terms from which simplest_poly_mult splits */
extern int fast_gcd_size;        /* the greatest sum of exponents that the arrays of residues hold */
extern int simplest_poly_cutoff; /* kept and set by a command; no routine reads it */

/* *p := a * b in the ring in force. names: the record of the top level when the product is to be folded by that
   variable's relation; null otherwise. Operands come back unchanged; a may be b, and *p may hold either. Error 32:
   an exponent of the product would leave 32 bits; nothing is changed then. */
void poly_mult(const polynode *a, const polynode *b, polynode **p, pt *names);

/* Number of top-level terms, negative when the span of exponents exceeds 6 times the number. *last := the lowest
   exponent. *flag, 1 on entry, stays 1 for a univariate modular polynomial of plain residues. */
int exp_poly_length(const polynode *p, int32_t *last, int *flag);

void scalar_by_poly(const number *c, const polynode *p, polynode **q);
void node_by_poly(const polynode *t, const polynode *p, polynode **q); /* one term times p */

/* p := p^e for e at least 1. */
void compute_power(polynode **p, uint32_t e, pt *names);

} // namespace tolvek
