/* Switches and cut-offs of layers that have no header of their own yet. Each moves to the module that owns it when
   that module comes; its row in top/defaults.cpp stays. */
#pragma once

namespace tolvek {

/* ---- polynomials ---- */

extern int poly_cutoff;          /* terms from which products and half-GCDs split */
extern int fast_mult_cut;        /* terms from which a product of one variable splits */
extern int simplest_poly_cutoff; /* kept and shown; nothing is chosen by it */
extern int div_poly_cutoff;      /* terms of a divisor from which a division recurs */
extern int fast_gcd_size;        /* the highest exponent that the work arrays of residues hold */

/* ---- greatest common divisors ---- */

extern int trial_cutoff;        /* nodes of the operands above which trial division is worth while */
extern int mod_method_diff;     /* difference of degrees that makes the modular method attractive */
extern int lookupgcd;           /* nesting count of GCD stashing; the stash is in use while it is above 0 */
extern int gcd_stash_cutoff;    /* nodes of the operands above which a GCD is stashed */
extern int small_gcd_stash_cut; /* sum of degrees above which a GCD of one variable is stashed */
extern int chinhensel;          /* Hensel lifting and Chinese remainders for several variables */
extern int hen_check;           /* a lifted GCD is checked twice */
extern int aux_num_1factor;     /* how many primes are tried for the first auxiliary list of a field */
extern int aux_num_2factor;     /* the search factor of the second list */
extern int no_aux_primes2;      /* no second list is in use */

/* ---- determinants and matrices ---- */

extern int detcutoff;          /* rows at which elimination gives way to expansion by minors; below 0: by defaults */
extern int gauss_cutoff;       /* 1: the fraction-free elimination is tried */
extern int rat_det_method_cut; /* mass of the entries up to which elimination is preferred to interpolation */
extern int mod_det_method_cut; /* the same in modular rings: a thirty-third of it, rounded toward 0 */
extern int lagrangecut;        /* nesting of interpolations at most */
extern int lagrange_stash;     /* determinants of an interpolation are written to the output file */
extern int pseudet_heur;       /* the rule by which a sparse elimination chooses its pivot */
extern int mod_matrix_ok;      /* integer matrices are inverted modulo primes */
extern int chpoly_block;       /* off: changes of ring make images of the tables of Chpoly */
extern int init_max_stash;     /* the largest minors that are stashed have so many rows less than the matrix */
extern int init_min_stash;     /* rows of the smallest minors that are stashed */

/* ---- reading ---- */

extern int nomodpolyreadin; /* integers read behind &_n are not reduced modulo the modulus */

/* ---- memory and interrupts ---- */

extern int diskstore; /* disk space serves as memory */
extern int danger_ok; /* kept and shown */

} // namespace tolvek
