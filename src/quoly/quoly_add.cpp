/* Sums. All families share one tree, `sum`; they differ in what becomes of the operands. */
#include "gcd/gcd.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/rationals.h"
#include "quoly/normal.h"
#include "quoly/quoly_numbers.h"
#include "quoly/reduce.h"

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

    polynode *numerator() { return sum_of_parts(n1, n2, minus); }
};

/* n / 1 and m / d: if m / d is in lowest terms, so is (n d + m) / d. No GCD. */
static void no_denom(fraction_sum &s, part &without, part &d, quolynode **r) {
    without.times(d.get());
    poly_handle num(s.numerator()), den(d.take());
    reduced_to_value(num, den, r);
}

/* One GCD: of the new numerator and the common denominator. */
static void over_equal_denominators(fraction_sum &s, quolynode **r) {
    poly_handle num(s.numerator()), den(s.d1.take());
    fraction_to_value(num, den, r);
}

/* (n1 d2 + n2 d1) / (d1 d2) is in lowest terms. No GCD. */
static void over_coprime_denominators(fraction_sum &s, quolynode **r) {
    s.n1.times(s.d2.get());
    s.n2.times(s.d1.get());
    s.d1.times(s.d2.get());
    poly_handle num(s.numerator()), den(s.d1.take());
    reduced_to_value(num, den, r);
}

/* With e1 = d1 / g and e2 = d2 / g the sum is (n1 e2 + n2 e1) / (g e1 e2), and what the numerator has in common with the
   denominator divides g (P. Henrici, 1956). One GCD. */
static void over_common_multiple(fraction_sum &s, poly_handle &g, gcd_cofactors &found, quolynode **r) {
    poly_handle cofactor1, cofactor2;
    reduce(s.d1.get(), s.d2.get(), g.slot(), cofactor1.slot(), cofactor2.slot(), &found);
    part e1(cofactor1), e2(cofactor2);
    s.n1.times(e2.get());
    s.n2.times(e1.get());
    poly_handle sum(s.numerator());
    if (poly_iszero(sum.get())) {
        quoly_set(0, r);
        return;
    }
    part num(sum), common(g);
    cancel_common_factor(num, common);
    common.times(e1.get());
    common.times(e2.get());
    poly_handle above(num.take()), below(common.take());
    reduced_to_value(above, below, r);
}

static void general_quoly_add(fraction_sum &s, quolynode **r) {
    if (poly_equal(s.d1.get(), s.d2.get())) {
        over_equal_denominators(s, r);
        return;
    }
    poly_handle g;
    gcd_cofactors found;
    common_factor(s.d1, s.d2, g, &found);
    if (poly_eq_1(g.get()))
        over_coprime_denominators(s, r);
    else
        over_common_multiple(s, g, found, r);
}

static void sum_of_fractions(value_operand a, value_operand b, quolynode **r, bool minus) {
    fraction_sum s;
    s.minus = minus;
    s.n1.numerator_of(a);
    s.d1.denominator_of(a);
    s.n2.numerator_of(b);
    s.d2.denominator_of(b);
    if (!s.d1.is_there() && !s.d2.is_there()) {
        poly_handle total(s.numerator());
        poly_to_value(total, r);
    } else if (!s.d1.is_there()) {
        no_denom(s, s.n1, s.d2, r);
    } else if (!s.d2.is_there()) {
        no_denom(s, s.n2, s.d1, r);
    } else {
        general_quoly_add(s, r);
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
