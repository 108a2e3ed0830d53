/* Quolys: the system's one general scalar value, and its arithmetic.

   Families by ownership. Plain (quoly_add, quoly_mult): operands kept, *r replaced; r may hold an operand.
   better_: the first operand is consumed, its node reused; *r replaced unless it is that operand. best_ and fast_:
   *a becomes the result; best_ consumes and frees b, fast_ keeps it. Where two operands are consumed they differ.
   All compute in the ring in force.

   Operands are in normal form (quoly/normal.h), and so is the result; the least number of GCDs sees to that. A sum takes
   none while one operand has no denominator; one for two denominators, and one more where that is not 1; a product or a
   quotient takes at most two, of the parts that cross, and none of parts that are equal.

   Division by 0 is error 22 with the result 1. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* ---- making and freeing ---- */

void init_quoly_node(quolynode *q);           /* a plain number record with no chain yet */
void quoly_set(int32_t value, quolynode **q); /* *q := the integer as a plain number; in the modular ring its residue */
void quoly_set_int64(int64_t value, quolynode **q);
void quoly_set_flote(long double value, quolynode **q); /* float ring: *q := the plain number */
void scalar_to_quoly(number *x, quolynode **q);         /* *q := the number x, whose chain it takes over */
void quoly_assign(const quolynode *q, quolynode **r);   /* deep copy; *r may be q */
void free_quoly(quolynode **q);                         /* null is fine; *q := null */
void free_in_any_form(quolynode **q);                   /* the same for a value of another ring than that in force */
void drop_original(quolynode *q);                       /* the value of another ring that q stands for is forgotten */

void base_quoly(int level, quolynode **q);            /* *q := the variable of the level */
void poly_to_value(poly_handle &p, quolynode **q);    /* *q := p, which is consumed: a constant is a plain number */
void polynum_to_quoly(quolynode **q);                 /* the numerator is a lone number: *q becomes it, plain */
void quoly_consume(quolynode **q, polynode **p);      /* *q a plain number: *p := it as a polynomial; *q goes */
void quoly_to_poly(const quolynode *q, polynode **p); /* q a plain number: *p := a copy as a polynomial */
/* A node with the numerator and the denominator (which may be null); is_rat is off. */
quolynode *new_fraction(poly_handle &num, poly_handle &den);
void replace_quoly(quolynode *q, quolynode **r); /* q takes the place of what *r held, which goes */

/* *q := num / den in normal form (quoly/normal.h); both are consumed. den may be null. */
void fraction_to_value(poly_handle &num, poly_handle &den, quolynode **q);

extern quolynode *quol_num_0, *quol_num_1; /* ready constants, valid in every number form; never to be freed */
void make_quoly_constants();

int quoly_is_zero(const quolynode *q);
/* The value of a plain number as a 32-bit integer: a float is rounded, a chain cut to its last 32 bits. */
int32_t quoly_to_int(const quolynode *q);

/* A quoly that gives its value back at the end of the frame unless it was released. */
class quoly_handle {
  public:
    quoly_handle() = default;
    ~quoly_handle() { free_quoly(&value); }
    quoly_handle(const quoly_handle &) = delete;
    quoly_handle &operator=(const quoly_handle &) = delete;
    quolynode **slot() { return &value; }
    quolynode *get() const { return value; }
    quolynode *operator->() const { return value; }
    explicit operator bool() const { return value != nullptr; }
    quolynode *release() {
        quolynode *q = value;
        value = nullptr;
        return q;
    }
    /* The value replaces what *r held. */
    void release_to(quolynode **r) {
        quolynode *old = *r;
        *r = release();
        free_quoly(&old);
    }

  private:
    quolynode *value = nullptr;
};

/* ---- arithmetic ---- */

void quoly_add(const quolynode *a, const quolynode *b, quolynode **r);
void quoly_sub(const quolynode *a, const quolynode *b, quolynode **r);
void better_quoly_add(quolynode *a, const quolynode *b, quolynode **r);
void better_quoly_sub(quolynode *a, const quolynode *b, quolynode **r);
void best_quoly_add(quolynode **a, quolynode *b);
void best_quoly_sub(quolynode **a, quolynode *b);

void quoly_mult(const quolynode *a, const quolynode *b, quolynode **r);
void fast_quoly_mult(quolynode **a, const quolynode *b);
/* The same in the list of variables that begins at names, with its relations, and without negative exponents. */
void spec_quoly_mult(const quolynode *a, const quolynode *b, quolynode **r, pt *names);
/* no_gcd: the caller promises that the numerators have no common factor. */
void quoly_quot(const quolynode *a, const quolynode *b, quolynode **r, int no_gcd);
void fast_quoly_quot(quolynode **a, const quolynode *b, int no_gcd);
/* op '\\' gives the integer quotient, '|' the remainder. */
void quoly_mod_or_div(const quolynode *a, const quolynode *b, quolynode **r, int op);

void quoly_makeneg(const quolynode *q, quolynode **r);
void quoly_inplace(quolynode *q);    /* negates */
void quoly_great_int(quolynode **q); /* the floor */
void quoly_abs(quolynode **q);       /* the magnitude */
void quoly_reciprocal(quolynode **q);
void raise_to_power(quolynode **q, const number *exponent); /* errors 22, 32, 85 */
void quoly_compute_power(quolynode **q, uint32_t e);        /* e at least 1 */

} // namespace tolvek
