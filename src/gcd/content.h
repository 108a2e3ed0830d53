/* Contents: greatest common divisors of the coefficients of a polynomial.

   A content with respect to the variable of `names` is a polynomial of the next level below, over the integers with the
   integer content in it, in the form of an answer of polygcd. It is a number as soon as one coefficient is one, and in a
   modular ring or over floats that number is 1. The GCD starts with the two smallest coefficients and ends at 1.

   Operands come back unchanged unless their keep flag is 0: then they are consumed, also on an unwinding. The old value of
   the destination goes when the new one is complete. `show` permits the progress display, use_general is passed to
   polygcd. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* *c := the content of p, other than 0, with respect to the variable of names. */
void content(polynode *p, polynode **c, pt *names, int show, int use_general, int keep);
/* *g := the GCD of q, which does not contain the variable of names (it is a wrapper or a constant, of the level of p), and
   the content of p. *g is of the level below. */
void aux_content(polynode *q, polynode *p, polynode **g, pt *names, int show, int use_general, int keep_q, int keep_p);
/* *g := the GCD of all the coefficients of u and v; of the level below. */
void dual_content(polynode *u, polynode *v, polynode **g, pt *names, int show, int use_general, int keep_u, int keep_v);

/* *c := the content of p with respect to the k-th variable from the top (1: the variable of names): a polynomial of the
   level of p that contains every other variable. Where p does not contain the k-th variable, *no_main becomes 1 and *c is
   1; if *no_main was 1 before, *c is p. `big` permits general contents inside. */
void general_content(polynode *p, int k, polynode **c, pt *names, int *no_main, int big);
/* The same for the second variable of p, as a new polynomial. */
polynode *content_2(polynode *p, pt *names);

/* The built-in Content: *r := the content of q with respect to the variable of level `level`, or, for 0, its first one.
   For a number its magnitude, 1 for 0, modulo n and for floats. Where q has no variable from the level on up, the content
   is q itself, in the form of an answer. Errors: 196 a denominator, 344 a level inside the field, 345 a level out of
   range; *r stays then. */
void content_of_quoly(const quolynode *q, quolynode **r, int level);
/* The same with the level as a value: a number, or a polynomial variable; error 282 for anything else; null for none. */
void call_content(const quolynode *q, quolynode **r, const quolynode *selector);

/* How often coefficients were looked at in this statement, and the level of the first use, for each of the three; the
   counts themselves stand in top/driver.h. Above content_count_limit no small pair is searched for. */
extern int c_cntdepth, a_cntdepth, d_cntdepth;
constexpr int content_count_limit = 200000;

} // namespace tolvek
