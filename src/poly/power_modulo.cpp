/* Powers by squares, reduced at each step; in one variable over a field they are taken on flat arrays. */
#include "poly/power_modulo.h"

#include "numbers/number.h"
#include "poly/divide.h"
#include "poly/divide_work.h"
#include "poly/flat_uni.h"
#include "poly/mult.h"
#include "top/interrupts.h"

namespace tolvek {

static void flat_power(const polynode *a, const number *e, const polynode *m, polynode **p) {
    const uni_field f = uni_field::in_force();
    uni_poly base, divisor, power;
    uni_from_poly(a, &base);
    uni_from_poly(m, &divisor);
    uni_power_modulo(f, base, e, divisor, &power);
    uni_to_poly(power, p);
}

/* p := p * q | m */
static void multiply(poly_handle &p, const polynode *q, const polynode *m) {
    poly_mult(p.get(), q, p.slot(), polynames);
    poly_mod_or_div(p.get(), m, p.slot(), '|', polynames);
}

/* The bits of e from the highest one on. */
static void power_by_squares(const polynode *base, const number *e, const polynode *m, poly_handle &power) {
    poly_set(1, power.slot());
    poly_mod_or_div(power.get(), m, power.slot(), '|', polynames);
    bool begun = false;
    for (const numnode *d = e->num_head; d; d = d->next)
        for (int bit = digit_bits - 1; bit >= 0; bit--) {
            if (begun) {
                safe_point();
                multiply(power, power.get(), m);
            }
            if (!(d->digit >> bit & 1)) continue;
            begun = true;
            multiply(power, base, m);
        }
}

void poly_power_modulo(const polynode *a, const number *e, const polynode *m, polynode **p) {
    poly_handle base, power;
    poly_mod_or_div(a, m, base.slot(), '|', polynames);
    if (modularmode && mod_is_prime() && is_uni(base.get()) && is_uni(m) && m->expo > 0)
        return flat_power(base.get(), e, m, p);
    power_by_squares(base.get(), e, m, power);
    power.release_to(p);
}

} // namespace tolvek
