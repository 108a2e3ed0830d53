/* Sums. All families share one tree, `sum`; they differ in what becomes of the operands. */
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_gcd.h"
#include "numbers/rationals.h"
#include "quoly/quoly_numbers.h"

#include <cassert>

namespace tolvek {

void number_result(void (*compute)(const number *, const number *, number *), const number *a, const number *b,
                   quolynode **r) {
    if (*r && (*r)->is_num) {
        compute(a, b, (*r)->numb);
        (*r)->array_mark = 0;
        return;
    }
    quoly_handle result;
    quoly_set(0, result.slot());
    compute(a, b, result->numb);
    result.release_to(r);
}

/* ---- rationals ---- */

static void sum_of_rationals(const quolynode *a, const quolynode *b, quolynode **r, bool minus) {
    if (a->is_num) {
        add_numb_rat(a, b, r, !minus);
    } else if (b->is_num) { /* a - b = -(b - a) */
        add_numb_rat(b, a, r, !minus);
        if (minus) quoly_inplace(*r);
    } else {
        add_rats(a, b, r, !minus);
    }
}

/* ---- polynomials and fractions: the sum of n1 / d1 and n2 / d2 ---- */

struct fraction_sum {
    part n1, d1, n2, d2;
    bool minus;
};

/* n / 1 and m / d: if m / d is in lowest terms, so is (n d + m) / d. */
static void over_one_denominator(fraction_sum &s, part &without, part &d, quolynode **r) {
    without.times(d.get()->num);
    poly_handle num(sum_of_parts(s.n1, s.n2, s.minus)), den(d.take());
    reduced_to_value(num, den, r);
}

static void over_equal_denominators(fraction_sum &s, quolynode **r) {
    poly_handle num(sum_of_parts(s.n1, s.n2, s.minus)), den(s.d1.take());
    fraction_to_value(num, den, r);
}

/* Over the least common multiple: g := gcd(d1, d2); (n1 (d2 / g) + n2 (d1 / g)) / (d1 (d2 / g)). */
static void over_common_multiple(fraction_sum &s, quolynode **r) {
    assert(is_constant(s.d1.get()) && is_constant(s.d2.get()));
    number_handle g, e1, e2;
    int coprime;
    extgcd(s.d1.get()->num, s.d2.get()->num, &g, &e1, &e2, &coprime);
    s.n1.times(&e2);
    s.n2.times(&e1);
    s.d1.times(&e2);
    poly_handle num(sum_of_parts(s.n1, s.n2, s.minus)), den(s.d1.take());
    fraction_to_value(num, den, r);
}

static void sum_of_fractions(value_operand a, value_operand b, quolynode **r, bool minus) {
    fraction_sum s;
    s.minus = minus;
    s.n1.numerator_of(a);
    s.d1.denominator_of(a);
    s.n2.numerator_of(b);
    s.d2.denominator_of(b);
    if (!s.d1.get() && !s.d2.get()) {
        poly_handle sum(sum_of_parts(s.n1, s.n2, minus));
        poly_to_value(sum, r);
    } else if (!s.d1.get()) {
        over_one_denominator(s, s.n1, s.d2, r);
    } else if (!s.d2.get()) {
        over_one_denominator(s, s.n2, s.d1, r);
    } else if (poly_equal(s.d1.get(), s.d2.get())) {
        over_equal_denominators(s, r);
    } else {
        over_common_multiple(s, r);
    }
}

/* ---- the families ---- */

static void sum(value_operand a, value_operand b, quolynode **r, bool minus) {
    if (a.q->is_num && b.q->is_num)
        number_result(minus ? sub : num_add, a.q->numb, b.q->numb, r);
    else if (is_rational(a.q) && is_rational(b.q))
        sum_of_rationals(a.q, b.q, r, minus);
    else if (a.q == b.q && minus)
        quoly_set(0, r);
    else
        sum_of_fractions(a, b, r, minus);
}

void quoly_add(const quolynode *a, const quolynode *b, quolynode **r) { sum({a, false}, {b, false}, r, false); }
void quoly_sub(const quolynode *a, const quolynode *b, quolynode **r) { sum({a, false}, {b, false}, r, true); }

/* The first operand is consumed: the sum is built in its place. */
static void consuming_sum(quolynode *a, const quolynode *b, quolynode **r, bool minus) {
    assert(a != b || a->is_num);
    quoly_handle own;
    if (*r == a) *r = nullptr;
    *own.slot() = a;
    sum({a, true}, {b, false}, own.slot(), minus);
    own.release_to(r);
}

void better_quoly_add(quolynode *a, const quolynode *b, quolynode **r) { consuming_sum(a, b, r, false); }
void better_quoly_sub(quolynode *a, const quolynode *b, quolynode **r) { consuming_sum(a, b, r, true); }

static void consuming_both(quolynode **a, quolynode *b, bool minus) {
    quoly_handle second;
    *second.slot() = b;
    sum({*a, true}, {b, true}, a, minus);
}

void best_quoly_add(quolynode **a, quolynode *b) { consuming_both(a, b, false); }
void best_quoly_sub(quolynode **a, quolynode *b) { consuming_both(a, b, true); }

} // namespace tolvek
