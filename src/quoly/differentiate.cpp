/* Derivatives and p-th roots of values. */
#include "poly/derivative.h"
#include "quoly/calculus.h"
#include "top/interrupts.h"

namespace tolvek {

/* ---- derivatives ---- */

static void copy_as_value(const polynode *p, quoly_handle &to) {
    poly_handle copy;
    poly_assign(p, copy.slot());
    poly_to_value(copy, to.slot());
}

/* The derivative of n / d: with r / s := d' / d in lowest terms it is (n' s - n r) / (d s). */
static void differentiate_quotient(quolynode **q, int level) {
    quoly_handle n, d, ratio, r, s;
    copy_as_value((*q)->num, n);
    copy_as_value((*q)->den, d);
    copy_as_value((*q)->den, ratio);
    differentiate(ratio.slot(), level, 1);
    quoly_quot(ratio.get(), d.get(), ratio.slot(), 0);
    if (!ratio->is_num && ratio->den) {
        copy_as_value(ratio->num, r);
        copy_as_value(ratio->den, s);
    } else {
        ratio.release_to(r.slot());
        quoly_set(1, s.slot());
    }
    fast_quoly_mult(r.slot(), n.get());
    differentiate(n.slot(), level, 1);
    fast_quoly_mult(n.slot(), s.get());
    best_quoly_sub(n.slot(), r.release());
    fast_quoly_mult(d.slot(), s.get());
    quoly_quot(n.get(), d.get(), q, 0);
}

static bool involves(const polynode *p, int level) {
    for (; p; p = p->next) {
        if (p->is_number) continue;
        if (level > 1 ? involves(p->poly, level - 1) : p->expo != 0) return true;
    }
    return false;
}

/* n / d where d is free of the variable. */
static void differentiate_numerator(quolynode **q, int level, int32_t k) {
    poly_handle num, den;
    poly_assign((*q)->num, num.slot());
    general_poly_diff(num.slot(), level, k);
    if (!(*q)->den) return poly_to_value(num, q);
    poly_assign((*q)->den, den.slot());
    if (is_constant(den.get())) return fraction_to_value(num, den, q);
    quoly_handle above, below;
    poly_to_value(num, above.slot());
    poly_to_value(den, below.slot());
    quoly_quot(above.get(), below.get(), q, 0); /* the derivative may have factors of the denominator */
}

void differentiate(quolynode **q, int level, int32_t k) {
    if (k == 0) return;
    if ((*q)->is_num || ((*q)->is_rat && !lintmode)) return quoly_set(0, q);
    if (!(*q)->den || !involves((*q)->den, level)) return differentiate_numerator(q, level, k);
    for (; k > 0 && !quoly_is_zero(*q); k--) {
        safe_point();
        if ((*q)->is_num || !(*q)->den || !involves((*q)->den, level)) return differentiate(q, level, k);
        differentiate_quotient(q, level);
    }
}

void quoly_differen_once(quolynode **q, int times) { differentiate(q, 1, times); }

/* ---- roots ---- */

static bool has_negative_exponents(const polynode *p) {
    for (; p; p = p->next)
        if (p->expo < 0 || (!p->is_number && has_negative_exponents(p->poly))) return true;
    return false;
}

void quoly_pth_root(quolynode **q) {
    if ((*q)->is_num)
        pth_root_of_number((*q)->numb);
    else if ((*q)->den)
        error(186, blank);
    else if (has_negative_exponents((*q)->num))
        error(198, blank);
    else if (!whole_pth_root(&(*q)->num))
        error(301, blank);
}

} // namespace tolvek
