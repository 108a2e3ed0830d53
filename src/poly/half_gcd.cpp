/* The entries by name to Euclid's steps. */
#include "poly/half_gcd.h"

#include "poly/flat_uni_work.h"
#include "top/errors.h"
#include "top/guards.h"
#include "top/text_io.h"

#include <utility>

namespace tolvek {

/* ---- divisions ---- */

bool onevar_array_div_mod(uni_poly *x, const uni_poly &y, uni_poly *q) {
    if (y.empty()) {
        tolvek_error(" y is 0 in onevar_array_mod.", 1);
        return x->empty();
    }
    uni_divide_in_place(uni_field::in_force(), x, y, q);
    return x->empty();
}

bool onevar_array_mod(uni_poly *x, const uni_poly &y) { return onevar_array_div_mod(x, y, nullptr); }

/* Rows are taken off two at a time by every division (uni_divide_rows), and so here. */
bool onevar_one(uni_poly *x, const uni_poly &y) { return onevar_array_mod(x, y); }
bool onevar_one_div(uni_poly *x, const uni_poly &y, uni_poly *q) { return onevar_array_div_mod(x, y, q); }

/* ---- half of the steps ---- */

/* Step by step, whatever the degrees are. */
struct no_halves : kept_value<uni_limits> {
    no_halves() : kept_value<uni_limits>(uni_limit, limits()) {}
    static uni_limits limits() {
        uni_limits l = uni_limit;
        l.half_gcd = l.gcd = UINT32_MAX;
        return l;
    }
};

void euclid_onevar(uni_poly *x, uni_poly *y, hg_matrix *m) {
    const no_halves steps;
    uni_half_gcd(uni_field::in_force(), x, y, m);
}

void parthg(uni_poly *x, uni_poly *y, hg_matrix *m) {
    if (uni_degree(*y) > uni_degree(*x)) {
        sayf(" in parthg deg yy > deg xx, %li, %li\n", static_cast<long>(uni_degree(*y)),
             static_cast<long>(uni_degree(*x)));
        m->make_identity();
        return;
    }
    uni_half_gcd(uni_field::in_force(), x, y, m);
}

void fullhg(uni_poly *x, uni_poly *y) {
    if (uni_degree(*y) > uni_degree(*x)) std::swap(*x, *y);
    uni_half_gcd(uni_field::in_force(), x, y, nullptr);
}

/* ---- complete ---- */

void euclid_total(uni_poly *x, uni_poly *y) {
    const no_halves steps;
    uni_euclid(uni_field::in_force(), x, y);
}

void simple_onevar_gcd(hgcd_state *state) {
    euclid_total(&state->xx, &state->yy);
    state->found = uni_degree(state->xx) > 0;
}

void hgcd(hgcd_state *state) {
    uni_euclid(uni_field::in_force(), &state->xx, &state->yy);
    state->found = uni_degree(state->xx) > 0;
}

/* ---- on lists of terms ---- */

static bool suits_arrays(const polynode *x, const polynode *y) {
    if (is_uni(x) && is_uni(y)) return true;
    tolvek_error("operands in emgcd_full.", 1);
    return false;
}

void emgcd_full(polynode **x, polynode **y, polynode **a, polynode **b, polynode **c, polynode **d, int with_matrix) {
    if (!suits_arrays(*x, *y)) return;
    uni_poly flat_x, flat_y;
    hg_matrix m;
    uni_from_poly(*x, &flat_x);
    uni_from_poly(*y, &flat_y);
    uni_half_gcd(uni_field::in_force(), &flat_x, &flat_y, with_matrix ? &m : nullptr);
    uni_to_poly(flat_x, x);
    uni_to_poly(flat_y, y);
    if (!with_matrix) return;
    uni_to_poly(m.a, a);
    uni_to_poly(m.b, b);
    uni_to_poly(m.c, c);
    uni_to_poly(m.d, d);
}

void emgcd_basic(polynode **x, polynode **y, polynode **a, polynode **b, polynode **c, polynode **d, int with_matrix) {
    const no_halves steps;
    emgcd_full(x, y, a, b, c, d, with_matrix);
}

void emgcd_fastest(polynode **x, polynode **y, polynode **a, polynode **b, polynode **c, polynode **d) {
    emgcd_basic(x, y, a, b, c, d, 1);
}

} // namespace tolvek
