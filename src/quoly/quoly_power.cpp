/* Signs, integer parts and powers. */
#include "language/tokens.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_power.h"
#include "quoly/quoly_numbers.h"

#include <cmath>

namespace tolvek {

/* ---- signs ---- */

static number *leading_number(quolynode *q) { return q->is_num ? q->numb : q->num->num; }

int quoly_sign(const quolynode *q) { return num_sign(q->is_num ? q->numb : q->num->num); }

void quoly_inplace(quolynode *q) { in_place_neg(leading_number(q)); }

void quoly_makeneg(const quolynode *q, quolynode **r) {
    quoly_assign(q, r);
    quoly_inplace(*r);
}

void quoly_abs(quolynode **q) {
    if (quoly_sign(*q) < 0) quoly_inplace(*q);
}

/* ---- integer parts ---- */

static void floor_of_rational(quolynode **q) {
    number_handle whole, rest;
    divide((*q)->num->num, (*q)->den->num, &whole, &rest);
    if (num_sign(&rest) < 0) fastdiff(&whole, &number_1);
    scalar_to_quoly(&whole, q);
}

void quoly_great_int(quolynode **q) {
    if (!(*q)->is_num)
        floor_of_rational(q);
    else if (flotemode)
        (*q)->numb->flote_val = std::floor((*q)->numb->flote_val);
}

/* ---- powers ---- */

void quoly_compute_power(quolynode **q, uint32_t e) {
    if ((*q)->is_num) {
        number_power((*q)->numb, e);
        return;
    }
    number_power((*q)->num->num, e); /* powers of coprime numbers are coprime */
    number_power((*q)->den->num, e);
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

void raise_to_power(quolynode **q, const number *exponent) {
    int64_t e;
    if (!read_exponent(exponent, &e)) {
        error(32, expsign);
        return;
    }
    if (e == 0) {
        quoly_set(1, q);
        return;
    }
    if (e < 0 && quoly_is_zero(*q)) {
        error(22, quotsign);
        quoly_set(1, q);
        return;
    }
    quoly_compute_power(q, static_cast<uint32_t>(e < 0 ? -e : e));
    if (e < 0) quoly_reciprocal(q);
}

void quoly_differen_once(quolynode **q, int) { quoly_set(0, q); } /* no value has a variable */

} // namespace tolvek
