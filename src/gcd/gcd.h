/* Greatest common divisors of polynomials over the ring in force: integers, residues, floats.

   Operands come back unchanged, and nothing of theirs is rewritten meanwhile, so that an interrupt or an error finds them
   whole. The destination is last but for flags, by address; it may hold an operand, and its old value goes when the new
   one is complete. *g must be null or a polynomial.

   The form of an answer: over the integers its leading number is positive and its integer content is in it; in a field,
   and in the float ring, its leading number is 1; GCD(0, v) is v in that form, GCD(0, 0) is 0. Modulo a composite number
   only divisions by units are made, so that an answer there is a common divisor and not always the greatest one. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* *g := the greatest common divisor of u and v.
     just_degree   only the degree of *g in the main variable counts: *g may be x^d with the right d
     run_tests     the tests by evaluation may run
     use_general   contents with respect to other variables than the main one may be taken out
     names         the record of the main variable of u and v; null is an internal error, and *g is 1
     keep_u, _v    0: the operand is consumed, also on an unwinding; a *g that held it is null then. Both 0 want u and v
                   to differ
     top           a new entry at its level, which may reset the counters of the level */
void polygcd(polynode *u, polynode *v, polynode **g, int just_degree, int run_tests, int use_general, pt *names,
             int keep_u, int keep_v, int top);

/* The entries of the arithmetic of quolys, with all tests; 3 takes the GCD of u with itself, which is u in the form of an
   answer. Nested entries leave the counters of the GCD around them alone. Exponents are not negative: the treatment of
   Laurent polynomials, for which clear_v is, opens with these. */
struct gcd_cofactors;
void Lpolygcd(polynode **u, polynode **v, polynode **g, int clear_v, pt *names, gcd_cofactors *found = nullptr);
void Lpolygcd2(polynode **u, polynode **v, polynode **g, pt *names);
void Lpolygcd3(polynode **u, polynode **g, pt *names);

/* u / g and v / g, where a GCD over the integers has divided on its way; null where it has not. */
struct gcd_cofactors {
    poly_handle of_u, of_v;
};

/* The built-in GCD of one argument: *r := the numerator of q, which is no plain number, in the form of an answer. A
   denominator is error 203, and *r stays. */
void gcd_0_poly(const quolynode *q, quolynode **r);

/* ---- one variable ---- */

/* Over a prime field; no operand is a constant. make_monic 0 leaves the leading number as it comes. */
void basic_poly_gcd(polynode *u, polynode *v, polynode **g, int make_monic, pt *names);
/* The same for floats. What rounding leaves where a remainder should vanish is dropped by size (flote_noise), so nearly
   common factors count as common. */
void fl_basic_poly_gcd(polynode *u, polynode *v, polynode **g, int make_monic, pt *names);
/* The GCD of a single term m, a power of the main variable times a number, and p: in numbers and in that variable. */
void monomial2(const polynode *m, const polynode *p, polynode **g);

/* ---- the cache ---- */

/* GCDs of large operands, kept while lookupgcd is above 0: elimination in an array meets the same pairs again. Entries of
   another ring go as soon as the cache is looked into. Relations on variables are not in the key: whoever changes one
   calls free_gcd_stash(everything). With a modulus entries stay from one statement to the next. */
void init_gcd_stash(); /* opens a stretch of caching; they nest */
void pop_gcd_stash();  /* closes it; entries over the integers go with the last one */
enum class stash_drop { if_stale, everything };
/* if_stale: what is good for a later statement stays, that is entries modulo the modulus in force. */
void free_gcd_stash(stash_drop what = stash_drop::if_stale);

/* A stretch of caching in a frame. */
class gcd_caching {
  public:
    gcd_caching() { init_gcd_stash(); }
    ~gcd_caching() { pop_gcd_stash(); }
    gcd_caching(const gcd_caching &) = delete;
    gcd_caching &operator=(const gcd_caching &) = delete;
};

extern int64_t gcdmass;         /* of the entries, by simple_poly_mass */
extern int polygcd_stack_depth; /* GCDs at work whose answers are to be kept */

/* ---- for tests and choosers ---- */

/* How many polynomial variables at or below `level` occur in p, a polynomial of that level. */
int polys_there(const polynode *p, int level);
extern long polygcd_calls; /* how often polygcd was entered since the start */

} // namespace tolvek
