/* Quotients and reciprocals. */
#include "language/tokens.h"
#include "numbers/handles.h"
#include "numbers/int_gcd.h"
#include "numbers/modular.h"
#include "numbers/rationals.h"
#include "quoly/normal.h"
#include "quoly/quoly_numbers.h"

#include <utility>

namespace tolvek {

void division_by_zero(quolynode **r) {
    error(22, quotsign);
    quoly_set(1, r);
}

/* ---- numbers ---- */

static void word_quotient(const number *a, const number *b, number *dst) {
    if (flotemode)
        dst->flote_val = a->flote_val / b->flote_val;
    else if (modularmode)
        dst->lint_val = modmult(a->lint_val, mod_inverse(b->lint_val));
    else /* -2^31 / -1 wraps */
        dst->lint_val = static_cast<int32_t>(static_cast<int64_t>(a->lint_val) / b->lint_val);
}

/* In lowest terms, with a positive denominator. */
static void chain_quotient(const number *a, const number *b, quolynode **r) {
    number_handle g, num, den;
    int coprime;
    extgcd(a, b, &g, &num, &den, &coprime);
    poly_handle above, below;
    scalar_to_poly(&num, above.slot());
    scalar_to_poly(&den, below.slot());
    reduced_to_value(above, below, r);
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

/* ---- fractions ---- */

/* n1 / d1 times d2 / n2. The operands stay as they are: the parts are exchanged in the record of the product. */
static void quotient_of_fractions(value_operand a, const quolynode *b, quolynode **r, bool coprime_numerators) {
    fraction_product p;
    value_operand divisor{b, false};
    p.n1.numerator_of(a);
    p.d1.denominator_of(a);
    p.n2.denominator_of(divisor);
    p.d2.numerator_of(divisor);
    p.n1_and_d2_are_coprime = coprime_numerators && !p.n1.is_number() && !p.d2.is_number();
    gen_quoly_mult(p, r);
}

static void quotient(value_operand a, const quolynode *b, quolynode **r, bool coprime_numerators) {
    if (a.q->is_num && b->is_num)
        number_quotient(a.q->numb, b->numb, r);
    else if (quoly_is_zero(b))
        division_by_zero(r);
    else if (quoly_is_zero(a.q))
        quoly_set(0, r);
    else if (a.q == b)
        quoly_set(1, r);
    else if (is_rational(a.q) && !a.q->is_num && b->is_num)
        quot_rat_numb(a.q, b, r);
    else if (is_rational(a.q) && !a.q->is_num && is_rational(b))
        quot_rats(a.q, b, r);
    else
        quotient_of_fractions(a, b, r, coprime_numerators);
}

void quoly_quot(const quolynode *a, const quolynode *b, quolynode **r, int no_gcd) {
    quotient({a, false}, b, r, no_gcd);
}
void fast_quoly_quot(quolynode **a, const quolynode *b, int no_gcd) { quotient({*a, *a != b}, b, a, no_gcd); }

/* The parts of a value are coprime, so are those of its reciprocal. */
void quoly_reciprocal(quolynode **q) {
    if ((*q)->is_num) {
        quoly_quot(quol_num_1, *q, q, 0);
        return;
    }
    poly_handle den(std::exchange((*q)->num, nullptr)), num(std::exchange((*q)->den, nullptr));
    if (!num) poly_set(1, num.slot());
    reduced_to_value(num, den, q);
}

} // namespace tolvek
