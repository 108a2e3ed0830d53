/* Parts of operands as polynomials, and values from numerators and denominators. */
#include "gcd/gcd.h"
#include "numbers/handles.h"
#include "numbers/int_gcd.h"
#include "poly/add.h"
#include "poly/mult.h"
#include "quoly/quoly_numbers.h"
#include "quoly/reduce.h"

#include <utility>

namespace tolvek {

/* ---- parts ---- */

/* A consumed operand is its caller's own, though it comes as one that is only read. */
static quolynode *hollowed(value_operand v) { return const_cast<quolynode *>(v.q); }

void part::look_at(polynode *p, bool consumed, polynode **place) {
    if (!consumed || !p) {
        seen = p;
        return;
    }
    *own.slot() = std::exchange(*place, nullptr);
    seen = own.get();
}

void part::numerator_of(value_operand v) {
    if (!v.q->is_num) {
        look_at(v.q->num, v.consumed, &hollowed(v)->num);
    } else if (v.consumed) {
        scalar_to_poly(hollowed(v)->numb, own.slot());
        seen = own.get();
    } else {
        lone = {0, 1, nullptr, {v.q->numb}};
        seen = &lone;
    }
}

void part::denominator_of(value_operand v) {
    if (!v.q->is_num) look_at(v.q->den, v.consumed, &hollowed(v)->den);
}

void part::have_own() {
    if (own) return;
    poly_assign(seen, own.slot());
    seen = own.get();
}

polynode *part::take() {
    if (!seen) return nullptr;
    have_own();
    seen = nullptr;
    return own.release();
}

void part::becomes(polynode *p) {
    poly_handle fresh(p);
    fresh.release_to(own.slot());
    seen = p;
}

void part::times(const number *c) {
    have_own();
    num_poly_mult(own.slot(), c);
    seen = own.get();
}

void part::times(const polynode *p) {
    if (!p || poly_eq_1(p)) return;
    polynode *product = nullptr;
    if (!seen || poly_eq_1(seen)) {
        poly_assign(p, &product);
    } else if (is_constant(p)) {
        times(p->num);
        return;
    } else if (is_constant(seen)) {
        poly_handle multiple;
        poly_assign(p, multiple.slot());
        num_poly_mult(multiple.slot(), seen->num);
        product = multiple.release();
    } else {
        poly_mult(seen, p, &product, polynames);
    }
    becomes(product);
}

void part::divided_by(const number *c) {
    have_own();
    num_poly_quot(own.slot(), c);
    seen = own.get();
}

polynode *sum_of_parts(part &a, part &b, bool minus) {
    polynode *sum = nullptr;
    if (a.is_own() && b.is_own()) {
        (minus ? best_poly_sub : best_poly_add)(a.take(), b.take(), &sum);
    } else if (a.is_own()) {
        (minus ? better_poly_sub : better_poly_add)(a.take(), b.get(), &sum);
    } else if (b.is_own()) { /* a - b = -(b - a) */
        (minus ? better_poly_sub : better_poly_add)(b.take(), a.get(), &sum);
        if (minus) poly_inplace(sum);
    } else {
        (minus ? poly_sub : poly_add)(a.get(), b.get(), &sum);
    }
    return sum;
}

/* ---- common factors ---- */

/* Chain: g := the greatest number that divides both, one of which is a number. */
static void common_number(const part &a, const part &b, number *g) {
    const part &lone = a.is_number() ? a : b, &other = a.is_number() ? b : a;
    find_gcdcoefs(other.get(), g);
    if (!is_longint(g, 1)) binary_gcd(g, lone.get()->num, g);
}

void common_factor(const part &a, const part &b, poly_handle &g, gcd_cofactors *found) {
    if (!a.is_number() && !b.is_number()) {
        gcd_of_parts(a.get(), b.get(), g.slot(), found);
        return;
    }
    poly_set(1, g.slot());
    if (!lintmode) common_number(a, b, g->num);
}

static void divide_by_number(part &a, part &b, const number *c) {
    if (is_longint(c, 1)) return;
    a.divided_by(c);
    b.divided_by(c);
}

void cancel_common_factor(part &a, part &b) {
    if (!a.is_there() || !b.is_there()) return;
    poly_handle g, a2, b2;
    gcd_cofactors found;
    common_factor(a, b, g, &found);
    if (poly_eq_1(g.get())) return;
    if (a.is_number() || b.is_number()) {
        divide_by_number(a, b, g->num);
        return;
    }
    reduce(a.get(), b.get(), g.slot(), a2.slot(), b2.slot(), &found);
    a.becomes(a2.release());
    b.becomes(b2.release());
}

/* The second one need not be looked at where the first has content 1. */
void sanitize(part &a, part &b) {
    number_handle common, content;
    find_gcdcoefs(a.get(), &common);
    if (is_longint(&common, 1)) return;
    find_gcdcoefs(b.get(), &content);
    binary_gcd(&common, &content, &common);
    divide_by_number(a, b, &common);
}

} // namespace tolvek
