/* Quotient and remainder in every ring: what the operators \ and | do with polynomials. */
#include "numbers/int_divide.h"
#include "poly/add.h"
#include "poly/divide_work.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

namespace {

/* ---- by a number ---- */

/* What becomes of a number: *result := what its division by b gives. */
using number_operation = void (*)(const number *x, const number *b, number *result);

void quotient_of_numbers(const number *x, const number *b, number *result) { mod_or_div(x, b, result, 1); }
void remainder_of_numbers(const number *x, const number *b, number *result) { mod_or_div(x, b, result, 0); }
/* b is above 0. */
void floor_of_numbers(const number *x, const number *b, number *result) {
    number_handle rest;
    divide(x, b, result, &rest);
    if (num_sign(&rest) < 0) fastdiff(result, &number_1);
}

/* Each number of p by the operation. Null for 0. */
polynode *each_number(const polynode *p, const number *b, number_operation operation) {
    growing_list out;
    for (; p; p = p->next) {
        safe_point();
        if (p->is_number) {
            poly_handle t(new_number_term());
            operation(p->num, b, t->num);
            if (num_sign(t->num)) out.append(t.release());
            continue;
        }
        poly_handle c(each_number(p->poly, b, operation));
        if (c) out.append(term_of(p->expo, c));
    }
    return out.release();
}

void divide_by_constant(const polynode *a, const number *b, polynode **q, polynode **r, polynode **c) {
    if (num_sign(b) == 0) {
        error(22, blank);
        if (q) poly_set(1, q);
        if (r) poly_set(1, r);
        if (c) poly_set(1, c);
        return;
    }
    poly_handle quotient, remainder;
    if (q) *quotient.slot() = list_or_zero(each_number(a, b, quotient_of_numbers));
    if (r) *remainder.slot() = list_or_zero(each_number(a, b, remainder_of_numbers));
    if (c) poly_set(1, c);
    if (q) quotient.release_to(q);
    if (r) remainder.release_to(r);
}

/* ---- by a polynomial ---- */

/* The level of b's main variable, counted from the operands' one on, and b from there. */
int main_level(const polynode **b) {
    int depth = 0;
    for (; !(*b)->is_number && (*b)->expo == 0 && !(*b)->next; *b = (*b)->poly) depth++;
    return depth;
}

/* The greatest degree of the coefficients of p at the level, at least 0. */
int32_t degree_at(const polynode *p, int depth) {
    if (is_constant(p)) return 0;
    if (depth == 0) return std::max(p->expo, 0);
    int32_t d = 0;
    for (; p; p = p->next)
        if (!p->is_number) d = std::max(d, degree_at(p->poly, depth - 1));
    return d;
}

struct main_division {
    const polynode *b;
    bool unit;
    int64_t powers; /* of the leading coefficient of b, in the common multiplier */

    /* power := lead^e at the level of b. */
    void power_of_lead(int64_t e, poly_handle *power, pt *names) const {
        polynode lone;
        poly_assign(coefficient_of(b, &lone), power->slot());
        if (e > 1) compute_power(power->slot(), static_cast<uint32_t>(e), names_below(names));
        if (e < 1) poly_set(1, power->slot());
        add_pad(power->slot(), 1);
    }
    /* lead^powers * a = q * b + r for a of the level of b. */
    void at_level(const polynode *a, poly_handle *q, poly_handle *r, pt *names) const {
        if (unit) return basic_poly_divide(a, b, q->slot(), r->slot(), 1);
        pseudo_div(a, b, q->slot(), r->slot(), 1, names);
        const int64_t done = a->expo < b->expo || poly_iszero(a) ? 0 : int64_t{a->expo} - b->expo + 1;
        if (done >= powers) return;
        poly_handle power;
        power_of_lead(powers - done, &power, names);
        poly_mult(q->get(), power.get(), q->slot(), names);
        poly_mult(r->get(), power.get(), r->slot(), names);
    }
    /* The same for a that lies `depth` levels above b. */
    void above(const polynode *a, int depth, poly_handle *q, poly_handle *r, pt *names) const {
        check_stack();
        if (depth == 0) return at_level(a, q, r, names);
        growing_list quotient, remainder;
        for (const polynode *t = a; t; t = t->next) {
            polynode lone;
            poly_handle q_part, r_part;
            above(coefficient_of(t, &lone), depth - 1, &q_part, &r_part, names_below(names));
            if (!poly_iszero(q_part.get())) quotient.append(term_of(t->expo, q_part));
            if (!poly_iszero(r_part.get())) remainder.append(term_of(t->expo, r_part));
        }
        *q->slot() = list_or_zero(quotient.release());
        *r->slot() = list_or_zero(remainder.release());
    }
};

} // namespace

void gen_case(const polynode *a, const polynode *b, polynode **q, polynode **r, polynode **c, pt *names) {
    check_stack();
    main_division d{b, false, 0};
    const int depth = main_level(&d.b);
    d.unit = first_coef_invrtble(d.b, 1);
    poly_handle quotient, remainder, multiplier;
    if (d.unit && depth == 0 && !q && r) {
        poly_div_no_q(a, b, remainder.slot());
        if (c) poly_set(1, c);
        return remainder.release_to(r);
    }
    if (!d.unit) d.powers = std::max<int64_t>(int64_t{degree_at(a, depth)} - d.b->expo + 1, 0);
    pt *level = names;
    for (int i = 0; i < depth; i++) level = names_below(level);
    d.above(a, depth, &quotient, &remainder, names);
    if (c && d.unit) poly_set(1, multiplier.slot());
    if (c && !d.unit) {
        d.power_of_lead(d.powers, &multiplier, level);
        add_pad(multiplier.slot(), depth);
    }
    if (q) quotient.release_to(q);
    if (r) remainder.release_to(r);
    if (c) multiplier.release_to(c);
}

void poly_mod_and_div(const polynode *a, const polynode *b, polynode **q, polynode **r, polynode **c, pt *names) {
    if (is_constant(b))
        divide_by_constant(a, b->num, q, r, c);
    else
        gen_case(a, b, q, r, c, names);
}

void poly_floor(const polynode *a, const polynode *b, polynode **q) {
    poly_handle floors, above;
    number_handle divisor;
    num_assign(b->num, &divisor);
    if (num_sign(b->num) < 0) {
        in_place_neg(&divisor);
        poly_makeneg(a, above.slot());
        a = above.get();
    }
    *floors.slot() = list_or_zero(each_number(a, &divisor, floor_of_numbers));
    floors.release_to(q);
}

void poly_mod_or_div(const polynode *a, const polynode *b, polynode **out, int which, pt *names) {
    if (which == '|')
        poly_mod_and_div(a, b, nullptr, out, nullptr, names);
    else
        poly_mod_and_div(a, b, out, nullptr, nullptr, names);
}

} // namespace tolvek
