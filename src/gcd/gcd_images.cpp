#include "gcd/gcd_images.h"

#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "numbers/modular.h"
#include "numbers/random.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

namespace tolvek {

/* ---- modulo a prime ---- */

/* Null for 0. */
static polynode *image_of(const polynode *p, uint32_t m) {
    growing_list list;
    for (; p; p = p->next) {
        safe_point();
        if (p->is_number) {
            const uint32_t residue = chain_modulo(p->num, m);
            if (residue == 0) continue;
            polynode *t = new_number_term();
            t->num->lint_val = static_cast<int32_t>(residue);
            list.append(t);
            continue;
        }
        polynode *coefficient = image_of(p->poly, m);
        if (!coefficient) continue;
        if (p->expo == 0 && is_constant(coefficient)) {
            list.append(coefficient);
            continue;
        }
        poly_handle held(coefficient);
        polynode *t = new_term();
        t->expo = p->expo;
        t->poly = held.release();
        list.append(t);
    }
    return list.release();
}

polynode *modular_image(const polynode *p) {
    check_stack();
    return list_or_zero(image_of(p, static_cast<uint32_t>(int32_t{modulus})));
}

static int *const gcd_counters[8] = {&alg_c_count, &original_depth, &c_cntcount, &a_cntcount,
                                     &d_cntcount,  &g_cntcount,     &g_cutoff,   &lookupgcd};
constexpr int cache_out_of_reach = -1000;

modular_stretch::modular_stretch(int32_t p) {
    for (int i = 0; i < 8; i++) counters[i] = *gcd_counters[i];
    alg_c_count = c_cntcount = a_cntcount = d_cntcount = g_cntcount = 0;
    lookupgcd = cache_out_of_reach;
    flotemode = finf = integerflag = 0;
    modulus = p;
    modularmode = lintmode = 1;
}

modular_stretch::~modular_stretch() {
    for (int i = 0; i < 8; i++) *gcd_counters[i] = counters[i];
}

/* The largest primes that a modulus can be, 2^31 - 1 left out. */
static constexpr int32_t image_primes[pretest_primes] = {2147483629, 2147483587, 2147483579, 2147483563, 2147483549,
                                                         2147483543, 2147483497, 2147483489, 2147483477, 2147483423};

static int32_t usable_prime(const polynode *u, const polynode *v) {
    for (const int32_t p : image_primes) {
        const uint32_t m = static_cast<uint32_t>(p);
        if (chain_modulo(leading_coef(u)->num, m) && chain_modulo(leading_coef(v)->num, m)) return p;
    }
    return 0;
}

bool use_modular(const polynode *u, const polynode *v, pt *names, int32_t *degree) {
    const int32_t p = usable_prime(u, v);
    if (!p) return false;
    modular_stretch stretch(p);
    poly_handle image_u(modular_image(u)), image_v(modular_image(v)), g;
    polygcd(image_u.get(), image_v.get(), g.slot(), 1, 1, 0, names, 1, 1, 0);
    *degree = g->expo;
    return true;
}

/* ---- at points ---- */

/* p at the points of its levels, from its own one on. */
static int32_t value_at(const polynode *p, const int32_t *points) {
    const int32_t m = modulus;
    int32_t sum = 0;
    for (; p; p = p->next) {
        int32_t value = p->is_number ? p->num->lint_val : value_at(p->poly, points + 1);
        if (p->expo != 0 && value != 0) {
            int32_t power;
            mod_number_power(points[0], static_cast<uint32_t>(p->expo), &power);
            value = modmult(value, power);
        }
        sum = mod_add(sum, value, m);
    }
    return sum;
}

/* *image := p with values for all its variables but the main one. False where the degree falls. */
static bool image_at(const polynode *p, const int32_t *points, poly_handle &image) {
    growing_list list;
    const int32_t degree = p->expo;
    for (; p; p = p->next) {
        safe_point();
        const int32_t value = p->is_number ? p->num->lint_val : value_at(p->poly, points);
        if (value == 0) {
            if (p->expo == degree) return false;
            continue;
        }
        poly_handle number_term(new_number_term()), term;
        number_term->num->lint_val = value;
        make_monomial(term.slot(), p->expo, number_term.release());
        list.append(term.release());
    }
    *image.slot() = list.release();
    return true;
}

bool evaluation_test(const polynode *u, const polynode *v, pt *names, int32_t *degree) {
    int32_t points[most_variables];
    for (int32_t &point : points) point = random_31() % (modulus - 1) + 1;
    poly_handle image_u, image_v, g;
    if (!image_at(u, points, image_u) || !image_at(v, points, image_v)) return false;
    basic_poly_gcd(image_u.get(), image_v.get(), g.slot(), 0, names);
    *degree = g->expo;
    return true;
}

} // namespace tolvek
