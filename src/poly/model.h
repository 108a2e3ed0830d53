/* Polynomials: recursive sparse term lists in the order of polynames.

   The polynomial 3x^2*y + 2x + 5 in the variables x (level 1), y (level 2), with [e|.] a term whose coefficient is a
   polynomial of the next variable, and (n) a number term:

       [2|.] -> [1|.] -> (5)
         |        |
       [1|.]     (2)
         |
        (3)

   Canonical form, which every polynomial obeys that is stored or returned (poly_rule_broken, canonical.h):
     1  descending exponents, strictly
     2  a number term has exponent 0; it comes last unless terms of negative exponent follow (laurent)
     3  a term of exponent other than 0 has a polynomial coefficient, if only the lone number term 1
     4  a term of exponent 0 whose coefficient would be a lone number is that number term
     5  a term of exponent 0 with any other coefficient is a wrapper: one for each level that is skipped
     6  no term has coefficient 0; zero is the lone number term 0, and a constant c the lone number term c
     7  numbers have the form of the ring in force; residues are 0 .. modulus - 1
   A polynomial owns its nodes and numbers.

   Unless its line says otherwise: operands come back unchanged; the destination is last and by address, may hold an
   operand, and its old value goes when the new one is complete. Copies and comparisons pass safe points. */
#pragma once

#include "numbers/number.h"
#include "poly/variables.h"

namespace tolvek {

/* ---- making, copying, freeing ---- */

void init_poly_node(polynode *n);                         /* a fresh number of num_len 0 as coefficient */
polynode *new_number_term();                              /* expo 0, no next, a fresh number */
void poly_set(int32_t v, polynode **p);                   /* *p := the constant v */
void scalar_to_poly(number *x, polynode **p);             /* *p := the constant x, whose chain moves to it */
void node_assign(const polynode *n, polynode **p);        /* *p := a copy of the number of the number term n */
void base_poly(polynode **p, int k);                      /* *p := the variable of level k; 1 for k = 0 */
void poly_assign(const polynode *a, polynode **p);        /* deep copy; null gives null */
polynode *copy_term(const polynode *t);                   /* a deep copy of one term, without its successors */
void poly_makeneg(const polynode *a, polynode **p);       /* deep copy, negated */
void poly_inplace(polynode *p);                           /* negates; passes no safe point */
void make_monomial(polynode **p, int32_t e, polynode *q); /* *p := x^e * q; q is consumed */
void free_poly(polynode **p);                             /* null is fine; *p := null */
void poly_consume(polynode **p, quolynode **q);           /* p a lone number term: *q := it; p is consumed */
void poly_to_quoly(const polynode *p, quolynode **q);     /* p a lone number term: *q := a copy */
extern polynode *poly_1;                                  /* the constant 1 in all forms; never to be freed */
void make_poly_constants();

/* A polynomial that is given back at the end of its frame unless it was released. */
class poly_handle {
  public:
    poly_handle() = default;
    explicit poly_handle(polynode *p) : value(p) {}
    ~poly_handle() { free_poly(&value); }
    poly_handle(const poly_handle &) = delete;
    poly_handle &operator=(const poly_handle &) = delete;
    polynode **slot() { return &value; }
    polynode *get() const { return value; }
    polynode *operator->() const { return value; }
    explicit operator bool() const { return value != nullptr; }
    polynode *release() {
        polynode *p = value;
        value = nullptr;
        return p;
    }
    void release_to(polynode **p) {
        polynode *old = *p;
        *p = release();
        free_poly(&old);
    }

  private:
    polynode *value = nullptr;
};

/* *p := *p times, or divided by, the number, in the ring in force; terms that become 0 go. In the chain form division is
   exact. On an unwinding *p is null. The number stands apart from p. */
void num_poly_mult(polynode **p, const number *c);
void num_poly_quot(polynode **p, const number *c);

/* ---- tests, in any ring ---- */

inline bool is_constant(const polynode *p) { return p->is_number && !p->next; } /* a lone number term */
int poly_iszero(const polynode *p);
int poly_eq_1(const polynode *p);
int poly_eq_m1(const polynode *p);
int poly_equal(const polynode *a, const polynode *b);
int poly_neg(const polynode *a, const polynode *b); /* a = -b */
int is_poly_var(const quolynode *q, int *level);    /* q is just one variable */
int pos_leading_coef(const polynode *p);            /* the leading number is above 0; symmetric residues with
                                                        alt_form_display */
int neg_leading_term(const polynode *p);
void standard_form(polynode *p); /* adds modulus to residues that went negative */

/* ---- shape ---- */

int poly_level(const polynode *p); /* level of the top variable that p involves; 0 for a constant */
int poly_depth(const polynode *p); /* the same with 16384 for a constant and 1 for a number-headed list */
void height_next_var(polynode **p, int *level, int err); /* skips wrappers; error err at a list with more terms */
int32_t real_degree(const polynode *p, int k);
int32_t real_q_degree(const quolynode *q, int k);
const polynode *leading_coef(const polynode *p);          /* the number term at the bottom of the first terms */
void max_degree(const polynode *p, int k, int32_t *d);    /* raises *d to the greatest exponent of level k */
int poly_vars(const polynode *p, int level, char *flags); /* marks flags[] of the levels that occur; the deepest; p's
                                                             own level is `level` */
int driver_poly_vars(const polynode *p);                  /* how many variables p involves */

} // namespace tolvek
