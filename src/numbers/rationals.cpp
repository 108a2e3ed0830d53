/* The greatest common divisors are taken before the products, of parts that can share a factor (P. Henrici, A
   subroutine for computations with rational numbers, 1956; D. Knuth, The Art of Computer Programming 2, 4.5.1), so
   that no product is reduced afterwards. All steps run on flat values: a chain is poured once each way. */
#include "numbers/rationals.h"

#include "numbers/flat_value.h"
#include "numbers/handles.h"
#include "quoly/quoly.h"

namespace tolvek {

namespace {

/* A numerator or a number with its sign; a denominator's is 1. */
struct signed_value {
    flat_value magnitude;
    int32_t sign = 1;

    signed_value() = default;
    explicit signed_value(const number *x) : magnitude(x), sign(x->num_head->digit < 0 ? -1 : 1) {}
};

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

bool is_lone_number(const polynode *p) { return p && p->is_number && p->expo == 0 && !p->next; }

/* *out is a rational whose records can be written over. */
bool is_rational(const quolynode *q) {
    return q && !q->is_num && q->is_rat && is_lone_number(q->num) && is_lone_number(q->den);
}

void write_value(const flat_value &x, int32_t sign, number *dst) { chain_from_limbs(x.data(), x.n, sign, dst); }

/* q := num / den in the records of a rational. */
void rewrite_fraction(const flat_value &num, int32_t sign, const flat_value &den, quolynode *q) {
    number *const top = q->num->num, *const bottom = q->den->num;
    chain_room for_num(num.data(), num.n, sign, top), for_den(den.data(), den.n, 1, bottom);
    for_num.write(top);
    for_den.write(bottom);
}

void new_fraction(const flat_value &num, int32_t sign, const flat_value &den, quolynode **out) {
    number_handle top, bottom;
    write_value(num, sign, &top);
    write_value(den, 1, &bottom);
    quoly_handle q;
    *q.slot() = newquoly();
    *q.get() = {};
    q->is_rat = 1;
    q->num = lone_number(top);
    q->den = lone_number(bottom);
    q.release_to(out);
}

/* *out := num / den, which is in lowest terms. */
void finish_quoly(const flat_value &num, int32_t sign, const flat_value &den, quolynode **out) {
    if (den.is_one()) {
        number_handle whole;
        write_value(num, sign, &whole);
        scalar_to_quoly(&whole, out);
    } else if (is_rational(*out)) {
        rewrite_fraction(num, sign, den, *out);
    } else {
        new_fraction(num, sign, den, out);
    }
}

/* Divides both by their greatest common divisor. */
void cancel_common(flat_value &x, flat_value &y) {
    flat_value g;
    flat_value_gcd(g, x, y);
    flat_value_cancel(x, g);
    flat_value_cancel(y, g);
}

/* *out := (a1 / a2) (b1 / b2), both in lowest terms and none of the four 0. */
void fraction_product(const number *a1, const number *a2, const number *b1, const number *b2, quolynode **out) {
    signed_value p1(a1), p2(a2), q1(b1), q2(b2);
    cancel_common(p1.magnitude, q2.magnitude);
    cancel_common(q1.magnitude, p2.magnitude);
    flat_value num, den;
    flat_value_product(num, p1.magnitude, q1.magnitude);
    flat_value_product(den, p2.magnitude, q2.magnitude);
    finish_quoly(num, p1.sign * p2.sign * q1.sign * q2.sign, den, out);
}

/* sum := x_sign x + y_sign y; its sign comes back. */
int32_t signed_sum(flat_value &sum, const flat_value &x, int32_t x_sign, const flat_value &y, int32_t y_sign) {
    if (x_sign == y_sign) {
        flat_value_sum(sum, x, y);
        return x_sign;
    }
    return flat_value_difference(sum, x, y) ? y_sign : x_sign;
}

int32_t term_sign(const signed_value &x, int add) { return add ? x.sign : -x.sign; }

} // namespace

void mult_numb_rat(const quolynode *n, const quolynode *q, quolynode **out) {
    if (is_zero(n->numb)) {
        quoly_set(0, out);
        return;
    }
    signed_value factor(n->numb), num(numerator(q)), den(denominator(q));
    cancel_common(factor.magnitude, den.magnitude);
    flat_value product;
    flat_value_product(product, factor.magnitude, num.magnitude);
    finish_quoly(product, factor.sign * num.sign, den.magnitude, out);
}

void quot_rat_numb(const quolynode *q, const quolynode *n, quolynode **out) {
    signed_value divisor(n->numb), num(numerator(q)), den(denominator(q));
    cancel_common(num.magnitude, divisor.magnitude);
    flat_value product;
    flat_value_product(product, den.magnitude, divisor.magnitude);
    finish_quoly(num.magnitude, num.sign * divisor.sign, product, out);
}

void mult_rats(const quolynode *a, const quolynode *b, quolynode **out) {
    if (a != b) {
        fraction_product(numerator(a), denominator(a), numerator(b), denominator(b), out);
        return;
    }
    const flat_value x(numerator(a)), y(denominator(a)); /* squares of coprime numbers are coprime */
    flat_value num, den;
    flat_value_product(num, x, x);
    flat_value_product(den, y, y);
    finish_quoly(num, 1, den, out);
}

void quot_rats(const quolynode *a, const quolynode *b, quolynode **out) {
    if (a == b)
        quoly_set(1, out);
    else
        fraction_product(numerator(a), denominator(a), denominator(b), numerator(b), out);
}

/* n + a / b = (n b + a) / b, in lowest terms when a / b is. */
void add_numb_rat(const quolynode *n, const quolynode *q, quolynode **out, int add) {
    const signed_value whole(n->numb), num(numerator(q)), den(denominator(q));
    flat_value product, sum;
    flat_value_product(product, whole.magnitude, den.magnitude);
    const int32_t sign = signed_sum(sum, product, whole.sign, num.magnitude, term_sign(num, add));
    finish_quoly(sum, sign, den.magnitude, out);
}

/* With g = gcd(b1, b2), b1 = g b1' and b2 = g b2' the sum is t / (g b1' b2'), t = a1 b2' + a2 b1', and t can share
   factors with g alone. */
void add_rats(const quolynode *a, const quolynode *b, quolynode **out, int add) {
    const signed_value a1(numerator(a)), a2(numerator(b));
    flat_value b1(denominator(a)), b2(denominator(b)), g, t, u, v;
    flat_value_gcd(g, b1, b2);
    flat_value_cancel(b1, g);
    flat_value_cancel(b2, g);
    flat_value_product(u, a1.magnitude, b2);
    flat_value_product(v, a2.magnitude, b1);
    const int32_t sign = signed_sum(t, u, a1.sign, v, term_sign(a2, add));
    if (t.is_zero()) {
        quoly_set(0, out);
        return;
    }
    flat_value_product(u, b1, b2);
    if (g.is_one()) {
        finish_quoly(t, sign, u, out);
        return;
    }
    cancel_common(t, g);
    flat_value_product(v, u, g);
    finish_quoly(t, sign, v, out);
}

} // namespace tolvek
