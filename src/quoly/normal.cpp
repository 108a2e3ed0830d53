/* From parts to values in normal form. */
#include "quoly/normal.h"

#include "numbers/handles.h"
#include "numbers/modular.h"
#include "quoly/quoly_numbers.h"

#include <utility>

namespace tolvek {

/* ---- scale and sign ---- */

/* Error 85 when it has none. */
static bool has_inverse(const number *x) {
    int32_t inverse;
    if (find_inverse(x->lint_val, &inverse)) return true;
    error(85, blank);
    return false;
}

/* In lintmode: num / den with den a number. */
static void divide_through(poly_handle &num, poly_handle &den) {
    if (!modularmode || has_inverse(den->num)) num_poly_quot(num.slot(), den->num);
    free_poly(den.slot());
}

/* In lintmode: divides both by the leading number of den. */
static void make_monic(poly_handle &num, poly_handle &den) {
    number_handle leading;
    num_assign(leading_coef(den.get())->num, &leading);
    int minus;
    if (equal_to_pm1(&leading, &minus) && !minus) return;
    if (modularmode && !has_inverse(&leading)) return;
    num_poly_quot(num.slot(), &leading);
    num_poly_quot(den.slot(), &leading);
}

static void scale(poly_handle &num, poly_handle &den) {
    if (lintmode && is_constant(den.get())) {
        divide_through(num, den);
    } else if (lintmode) {
        make_monic(num, den);
    } else if (neg_leading_term(den.get())) {
        poly_inplace(num.get());
        poly_inplace(den.get());
    }
    if (den && poly_eq_1(den.get())) free_poly(den.slot());
}

void reduced_to_value(poly_handle &num, poly_handle &den, quolynode **q) {
    if (den && poly_iszero(den.get())) {
        error(210, blank);
        quoly_set(1, q);
        return;
    }
    if (!poly_iszero(num.get()) && den) scale(num, den);
    if (poly_iszero(num.get())) {
        quoly_set(0, q);
    } else if (!den) {
        poly_to_value(num, q);
    } else {
        int rational = is_constant(num.get()) && is_constant(den.get());
        quolynode *fraction = new_fraction(num, den);
        fraction->is_rat = rational;
        replace_quoly(fraction, q);
    }
}

void fraction_to_value(poly_handle &num, poly_handle &den, quolynode **q) {
    if (den && !poly_iszero(num.get()) && !poly_iszero(den.get())) {
        part above(num), below(den);
        cancel_common_factor(above, below);
        *num.slot() = above.take();
        *den.slot() = below.take();
    }
    reduced_to_value(num, den, q);
}

/* ---- of a value ---- */

static void with_parts(quolynode **q, void (*to_value)(poly_handle &, poly_handle &, quolynode **)) {
    if ((*q)->is_num) return;
    poly_handle num(std::exchange((*q)->num, nullptr)), den(std::exchange((*q)->den, nullptr));
    to_value(num, den, q);
}

void normal_form(quolynode **q) { with_parts(q, reduced_to_value); }
void check_quoly(quolynode **q) { with_parts(q, fraction_to_value); }

void sanitize(quolynode *q) {
    if (q->is_num || !q->den || lintmode) return;
    poly_handle num(std::exchange(q->num, nullptr)), den(std::exchange(q->den, nullptr));
    part above(num), below(den);
    sanitize(above, below);
    q->num = above.take();
    q->den = below.take();
}

} // namespace tolvek
