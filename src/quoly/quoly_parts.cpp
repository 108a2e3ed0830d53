/* Parts of operands as polynomials, and values from numerators and denominators. */
#include "numbers/handles.h"
#include "numbers/int_gcd.h"
#include "poly/add.h"
#include "quoly/quoly_numbers.h"

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

/* ---- normal form ---- */


void cancel_content(part &num, part &den) {
    number_handle common;
    find_gcdcoefs(num.get(), &common);
    if (is_longint(&common, 1)) return;
    binary_gcd(&common, den.get()->num, &common);
    if (is_longint(&common, 1)) return;
    num.divided_by(&common);
    den.divided_by(&common);
}

void reduced_to_value(poly_handle &num, poly_handle &den, quolynode **q) {
    if (poly_iszero(num.get())) {
        quoly_set(0, q);
    } else if (!den) {
        poly_to_value(num, q);
    } else {
        int rational = is_constant(num.get());
        quolynode *fraction = new_fraction(num, den);
        fraction->is_rat = rational;
        replace_quoly(fraction, q);
    }
}

void fraction_to_value(poly_handle &num, poly_handle &den, quolynode **q) {
    if (den && !poly_iszero(num.get())) {
        part above, below;
        above.becomes(num.release());
        below.becomes(den.release());
        if (lintmode) {
            above.divided_by(below.get()->num);
        } else {
            cancel_content(above, below);
            *den.slot() = below.take();
        }
        *num.slot() = above.take();
    }
    if (den && num_sign(den->num) < 0) {
        poly_inplace(num.get());
        poly_inplace(den.get());
    }
    if (den && poly_eq_1(den.get())) free_poly(den.slot());
    reduced_to_value(num, den, q);
}

} // namespace tolvek
