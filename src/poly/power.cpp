/* Powers of polynomials. */
#include "numbers/int_power.h"
#include "poly/flat_power.h"
#include "poly/flat_product.h"
#include "poly/model_work.h"
#include "poly/mult_work.h"
#include "poly/power_work.h"

#include <algorithm>

namespace tolvek {

/* Does p involve two variables in an essential way? A chain of single terms does not count. */
static bool truly_multivariate(const polynode *p) {
    for (; !p->is_number; p = p->poly) {
        if (!p->next) continue;
        for (const polynode *t = p; t; t = t->next)
            if (!t->is_number && !is_constant(t->poly)) return true;
    }
    return false;
}

/* ---- routes ---- */

void power_by_steps(polynode **p, uint32_t e, pt *names) {
    poly_handle t;
    poly_assign(*p, t.slot());
    for (; e > 1; e--) poly_mult(t.get(), *p, t.slot(), names);
    t.release_to(p);
}

void power_by_squares(polynode **p, uint32_t e, pt *names) {
    poly_handle t;
    poly_assign(*p, t.slot());
    for (int bit = 30 - __builtin_clz(e); bit >= 0; bit--) {
        poly_mult(t.get(), t.get(), t.slot(), names);
        if (e >> bit & 1) poly_mult(t.get(), *p, t.slot(), names);
    }
    t.release_to(p);
}

/* p := p with all exponents times n: its n-th power, where n is the size of the coefficient field. */
static void multiply_exponents(polynode *p, int32_t n) {
    for (; p; p = p->next) {
        p->expo *= n;
        if (!p->is_number) multiply_exponents(p->poly, n);
    }
}

void poly_mod_prime(polynode **p, uint32_t e, pt *names) {
    const uint32_t field = static_cast<uint32_t>(modulus);
    poly_handle raised, result;
    poly_assign(*p, raised.slot());
    for (;; e /= field) {
        if (e % field) {
            poly_handle part;
            poly_assign(raised.get(), part.slot());
            power_by_squares(part.slot(), e % field, names);
            if (result)
                poly_mult(result.get(), part.get(), result.slot(), names);
            else
                part.release_to(result.slot());
        }
        if (e < field) break;
        multiply_exponents(raised.get(), modulus);
        fold_if_related(raised.slot(), names);
    }
    result.release_to(p);
}

/* ---- the chooser ---- */

static void constant_power(polynode *p, uint32_t e) {
    if (modularmode && mod_is_prime()) { /* by Fermat's little theorem */
        e %= static_cast<uint32_t>(modulus - 1);
        if (e == 0) {
            if (p->num->lint_val != 0) p->num->lint_val = 1;
            return;
        }
    }
    number_power(p->num, e);
}

static bool power_leaves_range(const poly_extent &x, uint32_t e) {
    for (int l = x.levels; l > 0; l--)
        if (int64_t{x.range[l].high} * e > INT32_MAX || int64_t{x.range[l].low} * e < -INT32_MAX) return true;
    return false;
}

/* Where products go by lists, a short factor costs less than squares of a long power in several variables. */
static void power_as_lists(polynode **p, uint32_t e, pt *names) {
    if (number_polys > 1 && !pseudo_polynames && truly_multivariate(*p))
        power_by_steps(p, e, names);
    else
        power_by_squares(p, e, names);
}

void compute_power(polynode **p, uint32_t e, pt *names) {
    if (is_constant(*p)) return constant_power(*p, e);
    poly_extent x;
    measure_poly(*p, &x);
    if (power_leaves_range(x, e)) {
        error(32, blank);
        return;
    }
    if (e < 2) return;
    if (modularmode && mod_is_prime() && static_cast<uint32_t>(modulus) <= e && (!pseudo_polynames || modulus <= 9))
        return poly_mod_prime(p, e, names);
    if (any_relation(names) || !fits_flat_product(x, x)) return power_as_lists(p, e, names);
    const power_costs cost = estimate_power(x, e);
    if (cost.flat < std::min(cost.steps, cost.squares) && power_flat(p, e, x)) return;
    if (cost.steps < cost.squares)
        power_by_steps(p, e, names);
    else
        power_by_squares(p, e, names);
}

} // namespace tolvek
