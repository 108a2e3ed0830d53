/* Quotient and remainder by a divisor whose leading coefficient is a unit. */
#include "poly/divide_work.h"
#include "poly/measures.h"
#include "poly/mult.h"
#include "top/stack_limit.h"

namespace tolvek {

/* q := 0 and r := a; a may be where q or r goes. */
static void all_is_remainder(const polynode *a, polynode **q, polynode **r) {
    poly_handle remainder;
    if (r) poly_assign(a, remainder.slot());
    if (q) poly_set(0, q);
    if (r) remainder.release_to(r);
}

static void no_remainder(const polynode *a, const polynode *b, polynode **q, polynode **r) {
    poly_handle quotient;
    if (q) poly_quot(a, b, quotient.slot(), 0);
    if (r) poly_set(0, r);
    if (q) quotient.release_to(q);
}

static bool too_short(const polynode *a, const polynode *b) { return poly_iszero(a) || a->expo < b->expo; }

static void divide_classically(const polynode *a, const polynode *b, polynode **q, polynode **r) {
    poly_handle remainder;
    divide_by_steps(a, b, q, remainder.slot(), nullptr, {});
    if (r) remainder.release_to(r);
}

/* The recursive division wants a monic divisor: a = q b + r with q / c and c b in the place of q and b. */
static void divide_recursively(const polynode *a, const polynode *b, polynode **q, polynode **r) {
    poly_handle monic, factor, quotient, remainder;
    poly_assign(b, monic.slot());
    monic_poly(monic.slot(), factor.slot(), nullptr);
    fast_mod_and_div(a, monic.get(), remainder.slot(), quotient.slot(), nullptr, 0);
    if (q) poly_quot(quotient.get(), factor.get(), quotient.slot(), 0);
    if (q) quotient.release_to(q);
    if (r) remainder.release_to(r);
}

static bool recursion_pays(const polynode *a, const polynode *b) {
    constexpr int32_t least_degree = 3, many_times = 20;
    return b->expo > poly_cutoff || (b->expo >= least_degree && a->expo > int64_t{many_times} * b->expo);
}

void basic_poly_divide(const polynode *a, const polynode *b, polynode **q, polynode **r, int allow_fast) {
    check_stack();
    if (is_constant(b) && is_unit(b->num)) return no_remainder(a, b, q, r);
    if (too_short(a, b)) return all_is_remainder(a, q, r);
    if (!led_by_number(b) || !is_unit(top_number(b))) {
        tolvek_error("leading coefficient is no unit in basic_poly_divide.", 1);
        return all_is_remainder(a, q, r);
    }
    const bool lean = lean_operands(a, b);
    if (lean && !q && gaps_pay(a, b)) return reduce_by_gaps(a, b, r);
    if (lean && allow_fast && arrays_pay(a, b)) return divide_in_arrays(a, b, q, r);
    const bool field = modularmode && mod_is_prime() && a->expo >= 0 && lowest_exponent(b) >= 0;
    if (!lean && allow_fast && field && recursion_pays(a, b)) return divide_recursively(a, b, q, r);
    divide_classically(a, b, q, r);
}

void simplest_poly_divide(const polynode *a, const polynode *b, polynode **q, polynode **r, int allow_fast) {
    basic_poly_divide(a, b, q, r, allow_fast);
}

/* ---- the remainder alone ---- */

void poly_div_no_q(const polynode *a, const polynode *b, polynode **r) { basic_poly_divide(a, b, nullptr, r, 1); }

void simplest_div_no_q(const polynode *a, const polynode *b, polynode **r) {
    if (is_constant(b) || too_short(a, b)) return basic_poly_divide(a, b, nullptr, r, 0);
    divide_in_arrays(a, b, nullptr, r);
}

int fastest_poly_div(const polynode *a, const polynode *b, polynode **q) {
    if (is_constant(b) || too_short(a, b) || a->expo > fast_gcd_size) {
        poly_handle quotient, remainder;
        simplest_poly_divide(a, b, quotient.slot(), remainder.slot(), 1);
        if (!poly_iszero(remainder.get())) return 0;
        quotient.release_to(q);
        return 1;
    }
    return divides_in_arrays(a, b, q);
}

} // namespace tolvek
