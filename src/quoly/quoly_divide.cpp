/* The operators \ and | on values. */
#include "language/tokens.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_mult.h"
#include "numbers/modular.h"
#include "poly/divide.h"
#include "poly/model_work.h"
#include "poly/mult.h"
#include "quoly/normal.h"
#include "quoly/quoly_numbers.h"

namespace tolvek {

/* ---- by a number: each coefficient ---- */

using number_operation = void (*)(const number *, const number *, number *);

static void integer_quotient(const number *a, const number *b, number *dst) { mod_or_div(a, b, dst, 1); }
static void remainder(const number *a, const number *b, number *dst) { mod_or_div(a, b, dst, 0); }

/* Chain. */
static void floor_quotient(const number *a, const number *b, number *dst) {
    number_handle rest;
    divide(a, b, dst, &rest);
    if (num_sign(&rest) < 0) fastdiff(dst, &number_1);
}

/* p with each number taken through the operation with b; terms that become 0 go. */
static polynode *each_number(const polynode *p, number_operation operation, const number *b) {
    growing_list result;
    for (; p; p = p->next) {
        polynode *c = nullptr, *term = nullptr;
        if (p->is_number) {
            poly_set(0, &c);
            operation(p->num, b, c->num);
        } else {
            c = each_number(p->poly, operation, b);
        }
        make_monomial(&term, p->expo, c);
        if (poly_iszero(term))
            free_poly(&term);
        else
            result.append(term);
    }
    return list_or_zero(result.release());
}

/* The floor of each coefficient of n / d by b; without a denominator the rule of signs of the numbers holds. */
static void quotient_by_number(const part &n, const part &d, const number *b, quolynode **r) {
    poly_handle q;
    if (d.is_there()) {
        number_handle divisor;
        fast_mult(d.get()->num, b, &divisor);
        *q.slot() = each_number(n.get(), floor_quotient, &divisor);
    } else {
        *q.slot() = each_number(n.get(), integer_quotient, b);
    }
    poly_to_value(q, r);
}

/* ---- by a polynomial, in its main variable ---- */

/* c * a = q * b + r, the degree of r in b's main variable below that of b. */
struct division {
    poly_handle q, r, c;
    bool divide(const polynode *a, const polynode *b) {
        int32_t inverse;
        if (modularmode && !find_inverse(leading_coef(b)->num->lint_val, &inverse)) return false;
        poly_mod_and_div(a, b, q.slot(), r.slot(), c.slot(), polynames);
        return true;
    }
};

/* Error 85: the leading number of b is no unit of the ring. */
static void no_division(quolynode **r) {
    error(85, blank);
    quoly_set(0, r);
}

static void remainder_part(const part &n, const polynode *b, poly_handle &num, poly_handle &den, bool *failed) {
    if (is_constant(b)) {
        *num.slot() = each_number(n.get(), remainder, b->num);
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
        quotient_by_number(n, d, b->num, r);
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
