/* Products, quotients, integer quotients and remainders. */
#include "language/tokens.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_gcd.h"
#include "numbers/int_mult.h"
#include "numbers/modular.h"
#include "numbers/rationals.h"
#include "poly/mult.h"
#include "quoly/quoly_numbers.h"

namespace tolvek {

/* ---- products ---- */

void num_mult(const number *a, const number *b, number *dst) {
    if (flotemode)
        dst->flote_val = a->flote_val * b->flote_val;
    else if (modularmode)
        dst->lint_val = modmult(a->lint_val, b->lint_val);
    else if (lintmode)
        dst->lint_val = static_cast<int32_t>(static_cast<uint32_t>(a->lint_val) * static_cast<uint32_t>(b->lint_val));
    else
        fast_mult(a, b, dst);
}

static void product_of_rationals(const quolynode *a, const quolynode *b, quolynode **r) {
    if (a->is_num)
        mult_numb_rat(a, b, r);
    else if (b->is_num)
        mult_numb_rat(b, a, r);
    else
        mult_rats(a, b, r);
}

/* *p := the product of two numerators. */
static void multiply_numerators(part &n1, part &n2, poly_handle &p) {
    part &constant = is_constant(n1.get()) ? n1 : n2, &other = is_constant(n1.get()) ? n2 : n1;
    if (is_constant(constant.get())) {
        other.times(constant.get()->num);
        *p.slot() = other.take();
    } else {
        poly_mult(n1.get(), n2.get(), p.slot(), polynames);
    }
}

/* The product of two denominators, either of which may be missing. */
static void multiply_denominators(part &d1, part &d2, poly_handle &d) {
    if (!d1.get() && !d2.get()) return;
    part &first = d1.get() ? d1 : d2;
    if (d1.get() && d2.get()) d1.times(d2.get()->num);
    *d.slot() = first.take();
    if (poly_eq_1(d.get())) free_poly(d.slot());
}

/* n1 / d1 times n2 / d2, both in lowest terms: only the diagonals can have common factors. */
static void product_of_fractions(value_operand a, value_operand b, quolynode **r) {
    part n1, d1, n2, d2;
    n1.numerator_of(a);
    d1.denominator_of(a);
    n2.numerator_of(b);
    d2.denominator_of(b);
    if (d2.get()) cancel_content(n1, d2);
    if (d1.get()) cancel_content(n2, d1);
    poly_handle num, den;
    multiply_numerators(n1, n2, num);
    multiply_denominators(d1, d2, den);
    reduced_to_value(num, den, r);
}

static void product(value_operand a, value_operand b, quolynode **r) {
    if (a.q->is_num && b.q->is_num)
        number_result(num_mult, a.q->numb, b.q->numb, r);
    else if (is_rational(a.q) && is_rational(b.q))
        product_of_rationals(a.q, b.q, r);
    else if (quoly_is_zero(a.q) || quoly_is_zero(b.q))
        quoly_set(0, r);
    else
        product_of_fractions(a, b, r);
}

void quoly_mult(const quolynode *a, const quolynode *b, quolynode **r) { product({a, false}, {b, false}, r); }
void fast_quoly_mult(quolynode **a, const quolynode *b) { product({*a, *a != b}, {b, false}, a); }

/* ---- quotients ---- */

static void division_by_zero(quolynode **r) {
    error(22, quotsign);
    quoly_set(1, r);
}

static void word_quotient(const number *a, const number *b, number *dst) {
    if (flotemode)
        dst->flote_val = a->flote_val / b->flote_val;
    else if (modularmode)
        dst->lint_val = modmult(a->lint_val, mod_inverse(b->lint_val));
    else /* -2^31 / -1 wraps */
        dst->lint_val = static_cast<int32_t>(static_cast<int64_t>(a->lint_val) / b->lint_val);
}

static polynode *constant_poly() {
    polynode *p = newpoly();
    p->expo = 0;
    p->is_number = 1;
    p->next = nullptr;
    p->num = newimag();
    return p;
}

/* num / den with den other than 0, in lowest terms already: a plain number or a rational with a positive
   denominator. The chains of both are taken over. */
static void make_fraction(number_handle &num, number_handle &den, quolynode **r) {
    if (num_sign(&den) < 0) {
        in_place_neg(&num);
        in_place_neg(&den);
    }
    if (is_longint(&den, 1)) {
        scalar_to_quoly(&num, r);
        return;
    }
    quolynode *q = newquoly();
    q->is_num = q->array_mark = 0;
    q->is_rat = 1;
    q->num = constant_poly();
    q->den = constant_poly();
    num.release_to(q->num->num);
    den.release_to(q->den->num);
    free_quoly(r);
    *r = q;
}

static void chain_quotient(const number *a, const number *b, quolynode **r) {
    number_handle g, num, den;
    int coprime;
    extgcd(a, b, &g, &num, &den, &coprime);
    make_fraction(num, den, r);
}

static void number_quotient(const number *a, const number *b, quolynode **r) {
    if (num_sign(b) == 0)
        division_by_zero(r);
    else if (flotemode || lintmode)
        number_result(word_quotient, a, b, r);
    else if (num_sign(a) == 0)
        quoly_set(0, r);
    else
        chain_quotient(a, b, r);
}

/* v / q = v * (1 / q) for a rational q */
static void quotient_by_rational(value_operand a, const quolynode *q, quolynode **r) {
    quoly_handle inverse;
    quoly_assign(q, inverse.slot());
    quoly_reciprocal(inverse.slot());
    product(a, {inverse.get(), false}, r);
}

/* A polynomial, or one over an integer, divided by a number other than 0. */
static void quotient_by_number(value_operand a, const number *b, quolynode **r) {
    part n, d;
    n.numerator_of(a);
    d.denominator_of(a);
    poly_handle num, den;
    if (d.get()) {
        d.times(b);
        *den.slot() = d.take();
    } else {
        polynode lone{0, 1, nullptr, {const_cast<number *>(b)}};
        node_assign(&lone, den.slot());
    }
    *num.slot() = n.take();
    fraction_to_value(num, den, r);
}

static bool same_part(const polynode *a, const polynode *b) { return a && b ? poly_equal(a, b) : a == b; }

/* Quotients by polynomials other than the dividend itself, and remainders, wait for the division of polynomials. */
static void quotient_of_polys(const quolynode *a, const quolynode *b, const token_record &sign, quolynode **r) {
    bool quotient_is_1 = token_is(sign, "/") && !a->is_num && same_part(a->den, b->den) && same_part(a->num, b->num);
    if (!quotient_is_1) error(62, sign);
    quoly_set(1, r);
}

static void quotient(value_operand a, const quolynode *b, quolynode **r) {
    if (a.q->is_num && b->is_num)
        number_quotient(a.q->numb, b->numb, r);
    else if (quoly_is_zero(b))
        division_by_zero(r);
    else if (b->is_num && is_rational(a.q))
        quot_rat_numb(a.q, b, r);
    else if (b->is_num)
        quotient_by_number(a, b->numb, r);
    else if (is_rational(a.q) && !a.q->is_num && is_rational(b))
        quot_rats(a.q, b, r);
    else if (is_rational(b))
        quotient_by_rational(a, b, r);
    else if (quoly_is_zero(a.q))
        quoly_set(0, r);
    else
        quotient_of_polys(a.q, b, quotsign, r);
}

void quoly_quot(const quolynode *a, const quolynode *b, quolynode **r, int) { quotient({a, false}, b, r); }
void fast_quoly_quot(quolynode **a, const quolynode *b, int) { quotient({*a, *a != b}, b, a); }

void quoly_reciprocal(quolynode **q) {
    if ((*q)->is_num) {
        quoly_quot(quol_num_1, *q, q, 0);
        return;
    }
    if (!is_rational(*q)) {
        quotient_of_polys(quol_num_1, *q, quotsign, q);
        return;
    }
    number_handle num, den;
    num_assign((*q)->den->num, &num);
    num_assign((*q)->num->num, &den);
    make_fraction(num, den, q);
}

/* ---- integer quotient and remainder ---- */

static void integer_quotient(const number *a, const number *b, number *dst) { mod_or_div(a, b, dst, 1); }
static void remainder(const number *a, const number *b, number *dst) { mod_or_div(a, b, dst, 0); }

void quoly_mod_or_div(const quolynode *a, const quolynode *b, quolynode **r, int op) {
    token_record sign{"", hash_unknown};
    sign.text[0] = static_cast<char>(op);
    if (a->is_num && b->is_num) {
        number_result(op == '|' ? remainder : integer_quotient, a->numb, b->numb, r);
    } else if (is_rational(a) && is_rational(b)) {
        error(227, sign);
        quoly_set(0, r);
    } else {
        quotient_of_polys(a, b, sign, r);
    }
}

} // namespace tolvek
