/* Products, quotients, integer quotients and remainders. */
#include "language/tokens.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_gcd.h"
#include "numbers/int_mult.h"
#include "numbers/modular.h"
#include "numbers/rationals.h"
#include "quoly/quoly_numbers.h"

namespace tolvek {

static quolynode *rewritable(const quolynode *q) { return const_cast<quolynode *>(q); }
static number *rewritable(const number *x) { return const_cast<number *>(x); }

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

void quoly_mult(const quolynode *a, const quolynode *b, quolynode **r) {
    if (a->is_num && b->is_num)
        number_result(num_mult, a->numb, b->numb, r);
    else if (a->is_num)
        mult_numb_rat(rewritable(a), rewritable(b), r);
    else if (b->is_num)
        mult_numb_rat(rewritable(b), rewritable(a), r);
    else
        mult_rats(rewritable(a), rewritable(b), r);
}

void fast_quoly_mult(quolynode **a, const quolynode *b) { quoly_mult(*a, b, a); }

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
    extgcd(rewritable(a), rewritable(b), &g, &num, &den, &coprime);
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

/* n / q = n * (1 / q) */
static void number_by_rational(const quolynode *n, const quolynode *q, quolynode **r) {
    quoly_handle inverse;
    quoly_assign(q, inverse.slot());
    quoly_reciprocal(inverse.slot());
    quoly_mult(n, inverse.get(), r);
}

void quoly_quot(const quolynode *a, const quolynode *b, quolynode **r, int) {
    if (a->is_num && b->is_num)
        number_quotient(a->numb, b->numb, r);
    else if (b->is_num && quoly_is_zero(b))
        division_by_zero(r);
    else if (b->is_num)
        quot_rat_numb(rewritable(a), rewritable(b), r);
    else if (a->is_num)
        number_by_rational(a, b, r);
    else
        quot_rats(rewritable(a), rewritable(b), r);
}

void fast_quoly_quot(quolynode **a, const quolynode *b, int no_gcd) { quoly_quot(*a, b, a, no_gcd); }

void quoly_reciprocal(quolynode **q) {
    if ((*q)->is_num) {
        quoly_quot(quol_num_1, *q, q, 0);
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
    if (!a->is_num || !b->is_num) {
        error(227, op == '|' ? token_record{"|", hash_unknown} : token_record{"\\", hash_unknown});
        quoly_set(0, r);
    } else {
        number_result(op == '|' ? remainder : integer_quotient, a->numb, b->numb, r);
    }
}

} // namespace tolvek
