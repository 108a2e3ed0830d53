/* Signs, integer parts and powers. */
#include "language/tokens.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_power.h"
#include "poly/mult.h"
#include "quoly/normal.h"
#include "quoly/quoly_numbers.h"

#include <cmath>
#include <utility>

namespace tolvek {

/* ---- signs ---- */

static bool is_negative(const quolynode *q) { return q->is_num ? num_sign(q->numb) < 0 : neg_leading_term(q->num); }

int quoly_sign(const quolynode *q) { return num_sign(q->is_num ? q->numb : leading_coef(q->num)->num); }

void quoly_inplace(quolynode *q) {
    if (q->is_num)
        in_place_neg(q->numb);
    else
        poly_inplace(q->num);
}

void quoly_makeneg(const quolynode *q, quolynode **r) {
    quoly_assign(q, r);
    quoly_inplace(*r);
}

/* Of a polynomial: its leading number is not negative. */
void quoly_abs(quolynode **q) {
    if (is_negative(*q)) quoly_inplace(*q);
}

/* ---- integer parts ---- */

static void floor_of_rational(quolynode **q) {
    number_handle whole, rest;
    divide((*q)->num->num, (*q)->den->num, &whole, &rest);
    if (num_sign(&rest) < 0) fastdiff(&whole, &number_1);
    scalar_to_quoly(&whole, q);
}

void quoly_great_int(quolynode **q) {
    if (!is_rational(*q))
        error(227, greatintsign);
    else if (!(*q)->is_num)
        floor_of_rational(q);
    else if (flotemode)
        (*q)->numb->flote_val = std::floor((*q)->numb->flote_val);
}

/* ---- powers ---- */

/* Powers of coprime parts are coprime, unless relations between the variables destroy that. A power may be constant, or
   0, where the ring has zero divisors. */
void quoly_compute_power(quolynode **q, uint32_t e) {
    if (e < 1) {
        tolvek_error("negative exponent", 1);
        quoly_set(1, q);
        return;
    }
    quolynode *base = *q;
    if (base->is_num) {
        number_power(base->numb, e);
        return;
    }
    poly_handle num(std::exchange(base->num, nullptr)), den(std::exchange(base->den, nullptr));
    compute_power(num.slot(), e, polynames);
    if (den) compute_power(den.slot(), e, polynames);
    (pseudo_polynames ? fraction_to_value : reduced_to_value)(num, den, q);
}

/* An exponent as a machine integer; false when it is too long. */
static bool read_exponent(const number *x, int64_t *e) {
    if (flotemode) {
        *e = std::fabs(x->flote_val) <= INT32_MAX ? std::llround(x->flote_val) : INT64_MAX;
        return *e != INT64_MAX;
    }
    *e = lintmode ? x->lint_val : x->num_head->digit;
    return lintmode || x->num_len == 1;
}

/* x^(n - 1) is 1 for a residue x other than 0 modulo a prime n, or in a field of n elements. */
static void reduce_exponent(const quolynode *q, int64_t *e) {
    if (!modularmode || !q->is_num || num_sign(q->numb) == 0 || !mod_is_prime()) return;
    int64_t order = modulus - 1;
    *e %= order;
    if (*e < 0) *e += order;
}

void raise_to_power(quolynode **q, const number *exponent) {
    int64_t e;
    if (!read_exponent(exponent, &e)) {
        error(32, expsign);
        return;
    }
    reduce_exponent(*q, &e);
    if (e == 0) {
        quoly_set(1, q);
        return;
    }
    if (e < 0 && quoly_is_zero(*q)) {
        division_by_zero(q);
        return;
    }
    quoly_compute_power(q, static_cast<uint32_t>(e < 0 ? -e : e));
    if (e < 0) quoly_reciprocal(q);
}

} // namespace tolvek
