/* Products. */
#include "numbers/int_mult.h"
#include "numbers/modular.h"
#include "numbers/rationals.h"
#include "quoly/normal.h"
#include "quoly/quoly_numbers.h"
#include "quoly/reduce.h"
#include "top/driver.h"
#include "top/guards.h"

namespace tolvek {

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

/* n over d, of two fractions that cross. */
static void cancel_across(part &n, part &d) {
    if (!same_polynomial(n, d)) {
        cancel_common_factor(n, d);
        return;
    }
    n.becomes(nullptr);
    d.becomes(nullptr);
}

/* n1 / d1 times n2 / d2, both in lowest terms: only the diagonals can have common factors, and equal denominators are
   coprime to both numerators. At most two GCDs. */
void gen_quoly_mult(fraction_product &p, quolynode **r) {
    if (!same_polynomial(p.d1, p.d2)) {
        if (!p.n1_and_d2_are_coprime) cancel_across(p.n1, p.d2);
        cancel_across(p.n2, p.d1);
    }
    p.n1.times(p.n2.get());
    p.d1.times(p.d2.get());
    poly_handle num(p.n1.take()), den(p.d1.take());
    if (!num) poly_set(1, num.slot());
    reduced_to_value(num, den, r);
}

static void product_of_fractions(value_operand a, value_operand b, quolynode **r) {
    fraction_product p;
    p.n1.numerator_of(a);
    p.d1.denominator_of(a);
    p.n2.numerator_of(b);
    p.d2.denominator_of(b);
    gen_quoly_mult(p, r);
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

/* The relations of names alone count; negative exponents do not. */
void spec_quoly_mult(const quolynode *a, const quolynode *b, quolynode **r, pt *names) {
    kept_value no_laurent(laurent, 0), no_interrupt(command_int, 0);
    kept_value list(polynames, names), relations(pseudo_polynames, names);
    quoly_mult(a, b, r);
}

} // namespace tolvek
