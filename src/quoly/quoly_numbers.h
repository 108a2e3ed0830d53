/* Private to the quoly arithmetic: what two plain numbers do and where a number result goes; operands that are kept or
   consumed, and their parts as polynomials. */
#pragma once

#include "numbers/number.h"
#include "quoly/quoly.h"

namespace tolvek {

struct gcd_cofactors; /* gcd/gcd.h */

/* Makes *r a plain number by `compute(a, b, its number)`; the record of a plain number in *r is overwritten, which may
   be an operand's. */
void number_result(void (*compute)(const number *, const number *, number *), const number *a, const number *b,
                   quolynode **r);

/* The product of two numbers in the ring in force. */
void num_mult(const number *a, const number *b, number *dst);

/* The sign of a plain number or rational. */
int quoly_sign(const quolynode *q);

/* A plain number, or outside lintmode a rational: what the rational arithmetic works on. */
inline bool is_rational(const quolynode *q) { return q->is_num || (q->is_rat && !lintmode); }

/* An operand of the arithmetic. The parts of one that is consumed may be taken: it is hollow then, and its node stays
   the caller's. */
struct value_operand {
    const quolynode *q;
    bool consumed;
};

/* One part of an operand, as a polynomial: its own, taken or made, or a look at the operand's. There may be none, which
   stands for 1. */
class part {
  public:
    part() = default;
    explicit part(poly_handle &p) { becomes(p.release()); }
    part(const part &) = delete;
    part &operator=(const part &) = delete;

    void numerator_of(value_operand v);
    void denominator_of(value_operand v); /* none for a plain number */

    const polynode *get() const { return seen; }
    bool is_there() const { return seen != nullptr; }
    bool is_number() const { return seen && is_constant(seen); }
    bool is_own() const { return own.get() != nullptr; }
    /* The polynomial, copied unless it is the part's own; null for none. */
    polynode *take();
    void times(const number *c);
    void times(const polynode *p); /* null: 1 */
    void divided_by(const number *c);
    void becomes(polynode *p); /* p, which may be null, is consumed */

  private:
    void look_at(polynode *p, bool consumed, polynode **place);
    void have_own();

    const polynode *seen = nullptr;
    poly_handle own;
    polynode lone{};
};

/* Are both there and equal? */
inline bool same_polynomial(const part &a, const part &b) {
    return a.is_there() && b.is_there() && poly_equal(a.get(), b.get());
}

/* a + b or a - b by the family of adders that suits who owns them; what is consumed of them goes. */
polynode *sum_of_parts(part &a, part &b, bool minus);

/* g := the greatest common divisor of two parts that are there. Where one of them is a number no GCD of polynomials is
   taken: g is the greatest number that divides both, 1 in lintmode. */
void common_factor(const part &a, const part &b, poly_handle &g, gcd_cofactors *found = nullptr);
/* Divides both by it; nothing happens where one is not there. */
void cancel_common_factor(part &a, part &b);
/* Chain form: divides both by the greatest number that divides them. */
void sanitize(part &a, part &b);

/* n1 / d1 times n2 / d2, each in lowest terms; the parts of both may be exchanged, to divide. */
struct fraction_product {
    part n1, d1, n2, d2;
    bool n1_and_d2_are_coprime = false; /* the caller vouches for it */
};
/* *r := the product. The parts are consumed. */
void gen_quoly_mult(fraction_product &p, quolynode **r);

/* Error 22 with the result 1. */
void division_by_zero(quolynode **r);

} // namespace tolvek
