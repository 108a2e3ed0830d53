/* Private to the quoly arithmetic: what two plain numbers do and where a number result goes; operands that are kept or
   consumed, and their parts as polynomials. */
#pragma once

#include "numbers/number.h"
#include "quoly/quoly.h"

namespace tolvek {

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

/* One part of an operand, as a polynomial: its own, taken or made, or a look at the operand's. */
class part {
  public:
    part() = default;
    part(const part &) = delete;
    part &operator=(const part &) = delete;

    void numerator_of(value_operand v);
    void denominator_of(value_operand v); /* null: there is none */

    const polynode *get() const { return seen; }
    bool is_own() const { return own.get() != nullptr; }
    /* The polynomial, copied unless it is the part's own. */
    polynode *take();
    void times(const number *c);
    void divided_by(const number *c);
    void becomes(polynode *p); /* p is consumed */

  private:
    void look_at(polynode *p, bool consumed, polynode **place);
    void have_own();

    const polynode *seen = nullptr;
    poly_handle own;
    polynode lone{};
};

/* a + b or a - b by the family of adders that suits who owns them; what is consumed of them goes. */
polynode *sum_of_parts(part &a, part &b, bool minus);

/* *q := num / den, which are in lowest terms; both are consumed. den is a lone number above 0 and other than 1, or
   null. */
void reduced_to_value(poly_handle &num, poly_handle &den, quolynode **q);

/* Chain: divides a numerator and a lone denominator by their greatest common divisor. */
void cancel_content(part &num, part &den);

} // namespace tolvek
