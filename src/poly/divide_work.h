/* What the roads of division share among themselves. Ownership as in divide.h. */
#pragma once

#include "numbers/handles.h"
#include "numbers/modular.h"
#include "poly/divide.h"
#include "poly/model_work.h"
#include "poly/mult_work.h"

namespace tolvek {

/* ---- numbers ---- */

/* A divisor of many numbers, other than 0. Residues are multiplied by its inverse; one that has none divides only 0. */
class number_divisor {
  public:
    explicit number_divisor(const number *divisor);
    /* *q := x / divisor; false, and q as it was, when that is not exact. */
    bool divide(const number *x, number *q);
    bool is_one() const { return plus_one; }

  private:
    const number *d;
    bool plus_one = false, minus_one = false, has_inverse = true;
    int32_t inverse = 0;
    number_handle rest, quotient;
};

bool is_unit(
    const number *x); /* other than 0 where the ring is a field, else 1 and -1, or a residue that has an inverse */

/* The quotient of the list by the number. Null when it is 0 (*ok true), or when some number leaves a remainder (*ok
   false). */
polynode *number_quotient(const polynode *p, number_divisor &d, bool *ok);

/* ---- terms ---- */

/* The coefficient of t as a polynomial: `lone` stands for a number term. */
inline const polynode *coefficient_of(const polynode *t, polynode *lone) {
    if (!t->is_number) return t->poly;
    *lone = *t;
    lone->next = nullptr;
    return lone;
}
/* x^e * c as a term; c is other than 0 and consumed. */
inline polynode *term_of(int64_t e, poly_handle &c) {
    if (e == 0 && is_constant(c.get())) return c.release();
    polynode *t = new_term();
    t->expo = static_cast<int32_t>(e);
    t->poly = c.release();
    return t;
}
inline int32_t lowest_exponent(const polynode *p) {
    while (p->next) p = p->next;
    return p->expo;
}
inline number *leading_number(const polynode *p) { return leading_coef(p)->num; }
/* Is the leading coefficient in the top variable a number? */
inline bool led_by_number(const polynode *p) { return p->is_number || is_constant(p->poly); }
inline const number *top_number(const polynode *p) { return p->is_number ? p->num : p->poly->num; }

inline int32_t lone_residue(const polynode *t) { return top_number(t)->lint_val; }

/* Is the ring in force without zero divisors? Floats count as one. */
inline bool ring_is_domain() { return flotemode || !lintmode || (modularmode && mod_is_prime()); }

/* p := c * p for a number, in place of what p was. */
inline void scale_poly(polynode **p, const number *c) { scalar_by_poly(c, *p, p); }

/* ---- the classical division of lists ---- */

struct division_rule {
    bool rough = false;       /* coefficients are divided as far as that goes, a remainder is dropped */
    bool power_units = false; /* exponents of the quotient may be negative */
};

/* a = q * b + r by steps from the top. Without r the remainder must be 0 (or is dropped, if rough); without q no quotient
   is kept. False when a leading coefficient does not divide, or the remainder is not 0; then nothing is changed. a and b
   are not 0. */
bool divide_by_steps(const polynode *a, const polynode *b, polynode **q, polynode **r, pt *names,
                     const division_rule &rule);

/* *q := a / b, any operands with b other than 0, by the road that fits. False when b does not divide a; then *q is as it
   was. q may be null. */
bool divides_exactly(const polynode *a, const polynode *b, polynode **q, pt *names, const division_rule &rule);

/* ---- one variable over residues, on arrays (divide_arrays.cpp) ---- */

/* Are both in one variable, of plain residues modulo a prime or in a table field, without negative exponents? */
bool lean_operands(const polynode *a, const polynode *b);
/* Is it better to divide them in arrays than term by term? */
bool arrays_pay(const polynode *a, const polynode *b);
/* a = q b + r in lean operands; null for what is not wanted. */
void divide_in_arrays(const polynode *a, const polynode *b, polynode **q, polynode **r);
/* *q := a / b and true, or false and *q as it was. A null q is not wanted. */
bool divides_in_arrays(const polynode *a, const polynode *b, polynode **q);

/* The value at e of the term list: r := p mod b for lean p whose gaps are long beside the degree of b. */
bool gaps_pay(const polynode *a, const polynode *b);
void reduce_by_gaps(const polynode *a, const polynode *b, polynode **r);

} // namespace tolvek
