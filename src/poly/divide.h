/* Division of polynomials.

   A routine works on the level of its operands' top variable. names: the record of that level, which is not null; the
   levels below go to its pt_next. Degrees are those in the top variable, and the degree of 0 counts as below all.
   Operands come back unchanged and nothing of theirs is rewritten meanwhile; a may be b; a destination may hold an
   operand, and its old value goes when all results are complete. q and r differ. All routines pass safe points.

   Exact means that the quotient has coefficients of the ring in force: over the integers 2x + 2 is divisible by 2x + 2
   and by 2, and 3x + 1 not by 2x + 1. In 32-bit integers that wrap the same is asked of each step. Floats are divided as
   they are, and a remainder that is other than 0 by rounding makes an exact division fail: rough_poly_divide is for
   them. Where the modulus is not prime, a leading number that is no unit divides nothing. */
#pragma once

#include "poly/model.h"

namespace tolvek {

extern int div_poly_cutoff; /* least number of terms of the divisor for the recursive division */

/* ---- exact division ---- */

/* *q := a / b and *failed := 0; or *q := 0 and *failed := 1 when b does not divide a. b is not 0. b may be a constant
   and may lie below the top variable, under wrappers. */
void gen_poly_divide(const polynode *a, const polynode *b, polynode **q, pt *names, int *failed);
/* The same for polynomials with negative exponents: with `laurent` on powers of variables are units, and q may have
   negative exponents where a and b have none. */
void Lpoly_divide(const polynode *a, const polynode *b, polynode **q, pt *names, int *failed);
/* For floats: *q := the quotient by classical division, whose steps drop the leading terms whatever rounding leaves of
   them; the remainder is forgotten. False, and *q := 0, when the degree of b is above that of a, a not 0. */
bool rough_poly_divide(const polynode *a, const polynode *b, polynode **q, pt *names);

/* *a := *a / b, which is known to be exact; a remainder is the internal error "bad exps in fast_poly divide. ", and *a
   stays. A constant b goes to poly_quot. depth: printed in the messages. */
void fast_poly_divide(polynode **a, const polynode *b, pt *names, int depth);
/* Each coefficient of the list *a divided by b, which is of the level below names; known to be exact. */
void fast_divide(polynode **a, const polynode *b, pt *names, int depth);

/* ---- division that may fail, with a test before ---- */

/* 1 and *q := a / b, or 0 and *q as it was, when b does not divide a. b is no constant. pretest: univariate images at
   random values are divided first, when a or b has a second variable. */
int trial_poly_divide(const polynode *a, const polynode *b, polynode **q, pt *names, int pretest);
/* The same without the quotient. verdict: the answer of the images may be the last word, if rat_yes is on; otherwise a
   1 is always true. */
int trial_poly_divide_noq(const polynode *a, const polynode *b, pt *names, int pretest, int verdict);
/* The same for integers, after a division modulo a prime of images that keep their leading numbers. */
int mod_trial_poly_divide(const polynode *a, const polynode *b, pt *names);

/* ---- quotient and remainder by a leading coefficient that is a unit ----

   a = q * b + r, deg r below deg b. A null q or r is not wanted, for basic_ and simplest_. */

/* The leading coefficient of b is a number: a unit of the ring in force, 1 or -1 over the integers. allow_fast: by the
   recursive method, or by arrays, over a prime field. A leading coefficient that is none is an internal error, with
   q = 0 and r = a. */
void basic_poly_divide(const polynode *a, const polynode *b, polynode **q, polynode **r, int allow_fast);
/* The same in the lean case: one variable, residues modulo a prime, no negative exponents. */
void simplest_poly_divide(const polynode *a, const polynode *b, polynode **q, polynode **r, int allow_fast);
/* The remainder alone, in one variable over a prime field or floats, or for any b as in basic_poly_divide. Sparse
   operands of high degree are reduced by powers of the variable modulo b. */
void poly_div_no_q(const polynode *a, const polynode *b, polynode **r);
void simplest_div_no_q(const polynode *a, const polynode *b, polynode **r); /* by residue arrays */
/* By residue arrays in the lean case, degrees at most fast_gcd_size; else as simplest_poly_divide. *q := a / b and 1, or
   0 and *q as it was when there is a remainder. */
int fastest_poly_div(const polynode *a, const polynode *b, polynode **q);

/* Division by a monic b in a prime field, b in more variables too: the recursive division of
   lists. lean: as for simplest_. names may be null: no relation. */
void fast_mod_and_div(const polynode *a, const polynode *b, polynode **r, polynode **q, pt *names, int lean);
void karat_mod_and_div(int lean, const polynode *a, const polynode *b, polynode **r, polynode **q, pt *names);
void three_case(int lean, const polynode *a, const polynode *b, polynode **r, polynode **q, pt *names);

/* ---- pseudo-division ---- */

/* m^(deg a - deg b + 1) * a = q * b + r with m the leading coefficient of b and deg r below deg b; or a = q * b + r when
   m is a unit (first_coef_invrtble), or when deg a is below deg b. want_rem 0: r is not touched. A null q is not
   wanted. */
void pseudo_div(const polynode *a, const polynode *b, polynode **q, polynode **r, int want_rem, pt *names);
/* The remainder alone. exact 1: with the whole power of m, whether m is a unit or not; 0: with the powers that the
   steps need, none when m is a unit. */
void pseudo_div_no_q(const polynode *a, const polynode *b, polynode **r, pt *names, int exact);
/* c * a = q * b + r with an integer c above 0, outside lintmode and flotemode: division over the rationals. Where the
   leading coefficient of b is a polynomial it must divide the leading coefficients that it meets, over the rationals;
   else "r not 0 in num_pseudo poly div." */
void num_pseudo_div(const polynode *a, const polynode *b, polynode **q, polynode **r, number *c, pt *names);
/* *a := the quotient of *a by b over the rationals, made primitive: its integer content is divided out. A remainder
   other than 0 is an internal error. special_div: b is of the level below names. */
void special_div(polynode **a, const polynode *b, pt *names);
void special_div_2(polynode **a, const polynode *b, pt *names);

/* ---- quotient and remainder in every ring ---- */

/* The operators \ and | on polynomials. A constant b: each number of a by mod_and_div. Otherwise division in the main
   variable of b, which may lie below that of a (then each coefficient is divided): c * a = q * b + r with c = 1 when the
   leading coefficient of b is a unit, and else a power of it. Null for q, r or c: not wanted. */
void poly_mod_and_div(const polynode *a, const polynode *b, polynode **q, polynode **r, polynode **c, pt *names);
/* which: '|' for the remainder, otherwise the quotient. */
void poly_mod_or_div(const polynode *a, const polynode *b, polynode **out, int which, pt *names);
/* *q := the floors of the numbers of a over the constant b, other than 0. Chain form. */
void poly_floor(const polynode *a, const polynode *b, polynode **q);
/* The core of both operators: b no constant. */
void gen_case(const polynode *a, const polynode *b, polynode **q, polynode **r, polynode **c, pt *names);

/* ---- division by a number ---- */

/* *q := a / b for a constant b other than 0 that divides every number of a; a remainder is an internal error, and *q :=
   a. depth: printed in the message. */
void poly_quot(const polynode *a, const polynode *b, polynode **q, int depth);
void trial_poly_quot(const polynode *a, const polynode *b, polynode **q, int *ok); /* *ok 0 and *q as it was */
void fastest_poly_quot(const polynode *a, const polynode *b, polynode **q);        /* residues; b a unit */
void mod_num_poly_mult(int32_t c, polynode **p);                                   /* *p := c * *p, residues */

/* p := p / its leading coefficient, which goes to *lc as a constant; 1 where p has it already. Floats and residues;
   otherwise error 284, and where that returns p stays and *lc := 1. Errors 22 (a leading number 0), 85 (no unit). */
void monic_poly(polynode **p, polynode **lc, pt *names);
/* ---- shape ---- */

void add_pad(polynode **p, int k); /* k wrappers on top of p; a constant stays as it is */
void remove_dummy(polynode *t);    /* a term of exponent 0 over a lone number becomes a number term */
/* Goes down through the wrappers that *a and *b have in common, *count of them, and *names with them. */
void findHeight(const polynode **a, const polynode **b, int *count, pt **names);
int height_is_1(const polynode *p); /* p involves its top variable alone, or nothing */
int anynegs(const polynode *p);     /* some exponent is negative, at any level */
int node_iszero(const polynode *t); /* the one term t is a number term 0 */
/* Is the leading coefficient of p a unit: a number that is one? */
int first_coef_invrtble(const polynode *p, int level);

} // namespace tolvek
