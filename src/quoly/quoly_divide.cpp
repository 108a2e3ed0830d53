/* The operators \ and | on values. */
#include "language/tokens.h"
#include "numbers/int_divide.h"
#include "poly/divide.h"
#include "poly/mult.h"
#include "quoly/normal.h"
#include "quoly/quoly_numbers.h"

namespace tolvek {

/* ---- by a number ---- */

static void integer_quotient(const number *a, const number *b, number *dst) { mod_or_div(a, b, dst, 1); }
static void remainder(const number *a, const number *b, number *dst) { mod_or_div(a, b, dst, 0); }

/* The floor of each coefficient of n / d by b; without a denominator the rule of signs of the numbers holds. */
static void quotient_by_number(const part &n, const part &d, const polynode *b, quolynode **r) {
    poly_handle q, divisor;
    if (d.is_there()) {
        poly_mult(d.get(), b, divisor.slot(), nullptr);
        poly_floor(n.get(), divisor.get(), q.slot());
    } else {
        poly_mod_or_div(n.get(), b, q.slot(), '\\', polynames);
    }
    poly_to_value(q, r);
}

/* ---- by a polynomial, in its main variable ---- */

/* c * a = q * b + r, the degree of r in b's main variable below that of b. False where c is no unit of a ring of words. */
struct division {
    poly_handle q, r, c;
    bool divide(const polynode *a, const polynode *b) {
        poly_mod_and_div(a, b, q.slot(), r.slot(), c.slot(), polynames);
        return !lintmode || first_coef_invrtble(leading_coef(c.get()), 1);
    }
};

/* Error 85: the leading number of b is no unit of the ring. */
static void no_division(quolynode **r) {
    error(85, blank);
    quoly_set(0, r);
}

static void remainder_part(const part &n, const polynode *b, poly_handle &num, poly_handle &den, bool *failed) {
    if (is_constant(b)) {
        poly_mod_or_div(n.get(), b, num.slot(), '|', polynames);
        return;
    }
    division w;
    *failed = !w.divide(n.get(), b);
    w.r.release_to(num.slot());
    w.c.release_to(den.slot());
}

/* Numerator and denominator each modulo b. */
static void remainder_of_fraction(const part &n, const part &d, const polynode *b, quolynode **r) {
    poly_handle num, num_den, den, den_den;
    bool failed = false;
    remainder_part(n, b, num, num_den, &failed);
    if (d.is_there() && !failed) remainder_part(d, b, den, den_den, &failed);
    if (failed) {
        no_division(r);
        return;
    }
    part above(num), below(num_den);
    below.times(den.get());
    above.times(den_den.get());
    poly_handle numerator(above.take()), denominator(below.take());
    fraction_to_value(numerator, denominator, r);
}

/* The polynomial part of n / (d b) in b's main variable. */
static void quotient_by_polynomial(const part &n, const part &d, const polynode *b, quolynode **r) {
    int level = poly_level(b);
    bool divides_apart = d.is_there() && real_degree(d.get(), level) == 0;
    poly_handle divisor;
    if (d.is_there() && !divides_apart) {
        if (poly_level(d.get()) < level) { /* the main variable of the product is not b's */
            error(62, token_record{"\\", hash_unknown});
            quoly_set(0, r);
            return;
        }
        poly_mult(d.get(), b, divisor.slot(), polynames);
        b = divisor.get();
    }
    division w;
    if (!w.divide(n.get(), b)) {
        no_division(r);
        return;
    }
    part den(w.c);
    if (divides_apart) den.times(d.get());
    *w.c.slot() = den.take();
    fraction_to_value(w.q, w.c, r);
}

/* ---- the operators ---- */

static void quotient_of_fraction(const part &n, const part &d, const polynode *b, quolynode **r) {
    if (!is_constant(b)) {
        quotient_by_polynomial(n, d, b, r);
    } else if (!d.is_there() || d.is_number()) {
        quotient_by_number(n, d, b, r);
    } else { /* a has no integer part */
        error(227, token_record{"\\", hash_unknown});
        quoly_set(0, r);
    }
}

/* A denominator of b is left out of account. */
void quoly_mod_or_div(const quolynode *a, const quolynode *b, quolynode **r, int op) {
    if (a->is_num && b->is_num) {
        number_result(op == '|' ? remainder : integer_quotient, a->numb, b->numb, r);
        return;
    }
    if (quoly_is_zero(b)) {
        division_by_zero(r);
        return;
    }
    part n, d, divisor;
    n.numerator_of({a, false});
    d.denominator_of({a, false});
    divisor.numerator_of({b, false});
    if (op == '|')
        remainder_of_fraction(n, d, divisor.get(), r);
    else
        quotient_of_fraction(n, d, divisor.get(), r);
}

} // namespace tolvek
