/* The greatest common divisors are taken before the products, of parts that can share a factor (P. Henrici, A
   subroutine for computations with rational numbers, 1956; D. Knuth, The Art of Computer Programming 2, 4.5.1), so
   that no product is reduced afterwards. */
#include "numbers/rationals.h"

#include "numbers/handles.h"
#include "numbers/int_gcd.h"
#include "numbers/int_mult.h"
#include "numbers/number_work.h"
#include "quoly/quoly.h"

namespace tolvek {

namespace {

const number *numerator(const quolynode *q) { return q->num->num; }
const number *denominator(const quolynode *q) { return q->den->num; }

bool is_zero(const number *x) { return x->num_head->digit == 0; }

/* A lone number that takes over the chain of x. */
polynode *lone_number(number_handle &x) {
    polynode *p = newpoly();
    *p = {0, 1, nullptr, {nullptr}};
    p->num = newimag();
    x.release_to(p->num);
    return p;
}

/* *out := num / den, which is in lowest terms with den other than 0; the chains are taken over. */
void finish_quoly(number_handle &num, number_handle &den, quolynode **out) {
    if (den.num_head->digit < 0) {
        in_place_neg(&num);
        in_place_neg(&den);
    }
    if (is_longint(&den, 1)) {
        scalar_to_quoly(&num, out);
        return;
    }
    quoly_handle q;
    *q.slot() = newquoly();
    *q.get() = {};
    q->is_rat = 1;
    q->num = lone_number(num);
    q->den = lone_number(den);
    q.release_to(out);
}

/* *out := (a1 / a2) (b1 / b2), both in lowest terms. */
void fraction_product(const number *a1, const number *a2, const number *b1, const number *b2, quolynode **out) {
    number_handle g, p1, p2, q1, q2;
    int coprime;
    extgcd(a1, b2, &g, &p1, &q2, &coprime);
    extgcd(b1, a2, &g, &q1, &p2, &coprime);
    fast_mult(&p1, &q1, &p1);
    fast_mult(&p2, &q2, &p2);
    finish_quoly(p1, p2, out);
}

/* t := a b2 + c b1, or the difference. */
void cross_sum(const number *a, const number *b2, const number *c, const number *b1, bool add, number *t) {
    number_handle u;
    fast_mult(a, b2, t);
    fast_mult(c, b1, &u);
    if (add)
        fastsum(t, &u);
    else
        fastdiff(t, &u);
}

} // namespace

void mult_numb_rat(const quolynode *n, const quolynode *q, quolynode **out) {
    if (is_zero(n->numb)) {
        quoly_set(0, out);
        return;
    }
    number_handle g, num, den;
    int coprime;
    extgcd(n->numb, denominator(q), &g, &num, &den, &coprime);
    fast_mult(&num, numerator(q), &num);
    finish_quoly(num, den, out);
}

void quot_rat_numb(const quolynode *q, const quolynode *n, quolynode **out) {
    number_handle g, num, den;
    int coprime;
    extgcd(numerator(q), n->numb, &g, &num, &den, &coprime);
    fast_mult(denominator(q), &den, &den);
    finish_quoly(num, den, out);
}

void mult_rats(const quolynode *a, const quolynode *b, quolynode **out) {
    if (a != b) {
        fraction_product(numerator(a), denominator(a), numerator(b), denominator(b), out);
        return;
    }
    number_handle num, den; /* squares of coprime numbers are coprime */
    fast_mult(numerator(a), numerator(a), &num);
    fast_mult(denominator(a), denominator(a), &den);
    finish_quoly(num, den, out);
}

void quot_rats(const quolynode *a, const quolynode *b, quolynode **out) {
    if (a == b)
        quoly_set(1, out);
    else
        fraction_product(numerator(a), denominator(a), denominator(b), numerator(b), out);
}

/* n + a / b = (n b + a) / b, in lowest terms when a / b is. */
void add_numb_rat(const quolynode *n, const quolynode *q, quolynode **out, int add) {
    number_handle num, den;
    fast_mult(n->numb, denominator(q), &num);
    if (add)
        fastsum(&num, numerator(q));
    else
        fastdiff(&num, numerator(q));
    spec_num_assign(denominator(q), &den);
    finish_quoly(num, den, out);
}

/* With g = gcd(b1, b2), b1 = g b1' and b2 = g b2' the sum is t / (g b1' b2'), t = a1 b2' + a2 b1', and t can share
   factors with g alone. */
void add_rats(const quolynode *a, const quolynode *b, quolynode **out, int add) {
    number_handle g, den_a, den_b, t, shared, rest;
    int coprime;
    extgcd(denominator(a), denominator(b), &g, &den_a, &den_b, &coprime);
    cross_sum(numerator(a), &den_b, numerator(b), &den_a, add, &t);
    if (is_zero(&t)) {
        scalar_to_quoly(&t, out);
        return;
    }
    fast_mult(&den_a, &den_b, &den_a);
    if (!coprime) {
        extgcd(&t, &g, &shared, &t, &rest, &coprime);
        fast_mult(&den_a, &rest, &den_a);
    }
    finish_quoly(t, den_a, out);
}

} // namespace tolvek
