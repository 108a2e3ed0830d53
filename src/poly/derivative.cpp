/* Derivatives: c * x^e becomes c * e (e - 1) ... (e - k + 1) * x^(e - k), the factor taken in the ring in force. */
#include "poly/derivative.h"

#include "numbers/handles.h"
#include "numbers/int_power.h"
#include "poly/model_work.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <cassert>
#include <utility>

namespace tolvek {

/* ---- the factor ---- */

/* Does the factor hold 0, or a multiple of the modulus? */
static bool factor_is_0(int32_t e, int32_t k) {
    if (e >= 0 && e < k) return true;
    if (!modularmode) return false;
    if (finf) return k >= 2 || (k == 1 && e % 2 == 0);
    int32_t r = e % modulus;
    if (r < 0) r += modulus;
    return r < k;
}

/* x := e (e - 1) ... (e - k + 1), where none of these is 0. */
static void falling_product(int32_t e, int32_t k, number *x) {
    constexpr int32_t outsized = 1 << digit_bits;
    if (!flotemode && !lintmode && (e >= outsized || e <= -outsized))
        tolvek_error(" outsized exponent in derivative", 1);
    if (e > 0) {
        multout(e - k + 1, e, x, nullptr);
    } else { /* the magnitudes are -e .. -e + k - 1 */
        multout(-e, -e + k - 1, x, nullptr);
        if (k % 2) makeneg(x, x);
    }
}

/* ---- one term ---- */

/* The k-th derivative of one term, which is consumed; null for 0. */
static polynode *derived_term(polynode *t, int32_t k) {
    poly_handle term(t);
    if (factor_is_0(t->expo, k)) return nullptr;
    assert(!t->is_number);
    const int32_t expo = t->expo - k;
    poly_handle c(std::exchange(t->poly, nullptr));
    if (!(modularmode && finf)) {
        number_handle factor;
        falling_product(t->expo, k, &factor);
        num_poly_mult(c.slot(), &factor);
    }
    if (poly_iszero(c.get())) return nullptr;
    if (expo == 0 && is_constant(c.get())) return c.release();
    t->expo = expo;
    t->poly = c.release();
    return term.release();
}

static polynode *derived_list(polynode **list, int32_t k) {
    growing_list result;
    while (polynode *t = *list) {
        safe_point();
        *list = std::exchange(t->next, nullptr);
        if (polynode *d = derived_term(t, k)) result.append(d);
    }
    return list_or_zero(result.release());
}

/* ---- a polynomial ---- */

static polynode *derived(polynode **p, int level, int32_t k) {
    if (level == 1) return derived_list(p, k);
    growing_list result;
    while (polynode *t = *p) {
        safe_point();
        *p = std::exchange(t->next, nullptr);
        poly_handle term(t);
        if (t->is_number) continue;
        poly_handle old(std::exchange(t->poly, nullptr)), c(derived(old.slot(), level - 1, k));
        if (poly_iszero(c.get())) continue;
        if (t->expo == 0 && is_constant(c.get())) {
            result.append(c.release());
        } else {
            t->poly = c.release();
            result.append(term.release());
        }
    }
    return list_or_zero(result.release());
}

/* Do all exponents of the level stay in 32 bits? Those from 0 on end at 0. */
static bool exponents_stay(const polynode *p, int level, int32_t k) {
    for (; p; p = p->next) {
        if (p->is_number) continue;
        if (level > 1 ? !exponents_stay(p->poly, level - 1, k) : p->expo < 0 && int64_t{p->expo} - k < -INT32_MAX)
            return false;
    }
    return true;
}

void general_poly_diff(polynode **p, int level, int32_t k) {
    if (k == 0) return;
    check_stack();
    if (laurent && !exponents_stay(*p, level, k)) {
        error(32, blank);
        return;
    }
    poly_handle list(std::exchange(*p, nullptr));
    *p = derived(list.slot(), level, k);
}

void poly_diff(polynode **p, int32_t k) { general_poly_diff(p, 1, k); }

} // namespace tolvek
