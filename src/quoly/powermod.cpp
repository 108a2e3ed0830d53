/* Powers of values modulo a value: which moduli there are, and the powers of integers modulo an integer. */
#include "quoly/powermod.h"

#include "language/tokens.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_mult.h"
#include "numbers/number_decimal.h"
#include "poly/divide.h"
#include "poly/power_modulo.h"
#include "top/interrupts.h"
#include "top/text_io.h"

namespace tolvek {

/* Integers by squares, whose remainders are those of the operator |. */
static void simple_case(const number *base, const number *m, const number *e, quolynode **r) {
    number_handle x, power;
    mod_or_div(base, m, &x, 0);
    mod_or_div(&number_1, m, &power, 0);
    bool begun = false;
    const auto multiply = [&](const number *y) {
        safe_point();
        fast_mult(&power, y, &power);
        mod_or_div(&power, m, &power, 0);
    };
    for (const numnode *d = e->num_head; d; d = d->next)
        for (int bit = digit_bits - 1; bit >= 0; bit--) {
            if (begun) multiply(&power);
            if (!(d->digit >> bit & 1)) continue;
            begun = true;
            multiply(&x);
        }
    scalar_to_quoly(&power, r);
}

/* A polynomial that is no number. */
static void general_poly_case(const quolynode *base, const quolynode *m, const number *e, quolynode **r) {
    poly_handle own_base, own_m, power;
    if (base->is_num) quoly_to_poly(base, own_base.slot());
    if (m->is_num) quoly_to_poly(m, own_m.slot());
    poly_power_modulo(base->is_num ? own_base.get() : base->num, e, m->is_num ? own_m.get() : m->num, power.slot());
    poly_to_value(power, r);
}

/* Is the leading coefficient of p in its main variable 1? */
static bool is_monic(const polynode *p) {
    while (!p->is_number && p->expo == 0 && !p->next) p = p->poly;
    return p->is_number ? poly_eq_1(p) : poly_eq_1(p->poly);
}

/* The error that the modulus raises; 0 for none. */
static int complaint_about(const quolynode *base, const quolynode *m) {
    if (quoly_is_zero(m)) return 22;
    if (m->is_num) return modularmode ? 288 : 0;
    if (m->den) return 288;
    if (anynegs(m->num) || (!base->is_num && anynegs(base->num))) return 198;
    if (field_depth > 0 && poly_level(m->num) >= field_depth) return 291;
    return is_monic(m->num) ? 0 : 197;
}

static bool is_negative_exponent(const number *e) {
    if (e->num_head->digit >= 0) return false;
    int column = 0;
    put_text(&standard_output, "*** bad exponent (negative): \n");
    showint(&standard_output, e, 1, 0, 0, 0, 0, 1, &column);
    put_text(&standard_output, "\n");
    error(287, blank);
    return true;
}

void powermod(const quolynode *base, const quolynode *m, const number *exponent, quolynode **r) {
    quoly_handle power;
    quoly_set(0, power.slot());
    if (is_negative_exponent(exponent)) return power.release_to(r);
    if (const int complaint = complaint_about(base, m)) {
        error(complaint, blank);
        return power.release_to(r);
    }
    if (base->is_num && m->is_num)
        simple_case(base->numb, m->numb, exponent, power.slot());
    else
        general_poly_case(base, m, exponent, power.slot());
    power.release_to(r);
}

} // namespace tolvek
