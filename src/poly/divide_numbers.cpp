/* Division of all numbers of a polynomial by one number. */
#include "numbers/int_divide.h"
#include "numbers/int_gcd.h"
#include "poly/divide_work.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

namespace tolvek {

/* ---- one number ---- */

static bool find_residue_inverse(int32_t x, int32_t *inverse) {
    if (!finf) return find_inverse(x, inverse);
    if (x == 0) return false;
    *inverse = field_inverse(x);
    return true;
}

number_divisor::number_divisor(const number *divisor) : d(divisor) {
    int minus = 0;
    if (equal_to_pm1(d, &minus)) (minus ? minus_one : plus_one) = true;
    if (modularmode) has_inverse = find_residue_inverse(d->lint_val, &inverse);
}

bool number_divisor::divide(const number *x, number *q) {
    if (flotemode) {
        q->flote_val = x->flote_val / d->flote_val;
        return true;
    }
    if (modularmode) {
        if (!has_inverse && x->lint_val) return false;
        q->lint_val = has_inverse ? modmult(x->lint_val, inverse) : 0;
        return true;
    }
    if (lintmode) {
        const int64_t v = x->lint_val, w = d->lint_val;
        if (v % w) return false;
        q->lint_val = static_cast<int32_t>(static_cast<uint32_t>(v / w));
        return true;
    }
    if (plus_one) {
        num_assign(x, q);
    } else if (minus_one) {
        makeneg(x, q);
    } else {
        tolvek::divide(x, d, &quotient, &rest);
        if (num_sign(&rest)) return false;
        num_assign(&quotient, q);
    }
    return true;
}

bool is_unit(const number *x) {
    if (num_sign(x) == 0) return false;
    if (flotemode) return true;
    int minus = 0;
    int32_t inverse;
    return modularmode ? find_residue_inverse(x->lint_val, &inverse) : equal_to_pm1(x, &minus);
}

/* ---- lists ---- */

polynode *number_quotient(const polynode *p, number_divisor &d, bool *ok) {
    growing_list quotient;
    *ok = true;
    for (; p; p = p->next) {
        safe_point();
        if (p->is_number) {
            poly_handle t(new_number_term());
            if (!d.divide(p->num, t->num)) {
                *ok = false;
                return nullptr;
            }
            if (!poly_iszero(t.get())) quotient.append(t.release());
            continue;
        }
        poly_handle coefficient(number_quotient(p->poly, d, ok));
        if (!*ok) return nullptr;
        if (coefficient) quotient.append(term_of(p->expo, coefficient));
    }
    return quotient.release();
}

void trial_poly_quot(const polynode *a, const polynode *b, polynode **q, int *ok) {
    check_stack();
    number_divisor d(b->num);
    bool exact;
    polynode *quotient = number_quotient(a, d, &exact);
    *ok = exact;
    if (exact) replace_poly(list_or_zero(quotient), q);
}

static void divide_by_number(const polynode *a, const number *c, polynode **q, int depth) {
    check_stack();
    if (num_sign(c) == 0) {
        error(22, blank);
        return poly_assign(a, q);
    }
    number_divisor d(c);
    if (d.is_one()) return poly_assign(a, q);
    bool exact;
    polynode *quotient = number_quotient(a, d, &exact);
    if (exact) return replace_poly(list_or_zero(quotient), q);
    sayf("*** inexact quotient in poly_quot, %i\n", depth);
    tolvek_error("inexact quotient in poly_quot.", 1);
    poly_assign(a, q);
}

void poly_quot(const polynode *a, const polynode *b, polynode **q, int depth) {
    if (!is_constant(b)) {
        tolvek_error("m not number in poly_quot.", 1);
        return poly_assign(a, q);
    }
    divide_by_number(a, b->num, q, depth);
}

void fastest_poly_quot(const polynode *a, const polynode *b, polynode **q) { divide_by_number(a, b->num, q, 0); }

void mod_num_poly_mult(int32_t c, polynode **p) {
    number factor{};
    factor.lint_val = c;
    scalar_by_poly(&factor, *p, p);
}

/* ---- monic polynomials ---- */

/* p := p / x, x a unit, and *lc := x. */
static void divide_by_leading(polynode **p, const number *x, polynode **lc) {
    poly_handle constant(new_number_term()), quotient;
    num_assign(x, constant->num);
    divide_by_number(*p, constant->num, quotient.slot(), 0);
    quotient.release_to(p);
    constant.release_to(lc);
}

void monic_poly(polynode **p, polynode **lc, pt *) {
    const number *x = leading_number(*p);
    if (!flotemode && !modularmode) {
        error(284, blank);
        return poly_set(1, lc);
    }
    if (num_sign(x) == 0) {
        error(22, blank);
        return poly_set(1, lc);
    }
    if (modularmode && !is_unit(x)) {
        mod_inverse(x->lint_val); /* error 85 */
        return poly_set(1, lc);
    }
    divide_by_leading(p, x, lc);
}

} // namespace tolvek
