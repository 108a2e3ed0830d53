/* Pseudo-division: the dividend is multiplied by the leading coefficient of the divisor before each step, and so no
   fraction appears (D. Knuth, The Art of Computer Programming 2, 4.6.1, algorithm R). */
#include "numbers/int_divide.h"
#include "numbers/int_gcd.h"
#include "numbers/int_mult.h"
#include "poly/add.h"
#include "poly/divide_work.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <utility>

namespace tolvek {

namespace {

/* A list of the divisor's terms, of its first or the others, which shares their coefficients. */
struct divisor_parts {
    polynode lone;
    const polynode *lead;
    const polynode *tail;
    explicit divisor_parts(const polynode *b) : lead(coefficient_of(b, &lone)), tail(b->next) {}
};

/* The first term of *list, unlinked. The list may become null. */
polynode *take_first(polynode **list) {
    polynode *t = std::exchange(*list, (*list)->next);
    t->next = nullptr;
    return t;
}

/* *p := *p * m, null for 0 and for null. */
void multiply_list(poly_handle *p, const polynode *m, pt *names) {
    if (*p) poly_mult(p->get(), m, p->slot(), names);
    if (*p && poly_iszero(p->get())) free_poly(p->slot());
}

/* rest := rest - term * tail; null stands for 0. The term is a canonical list. */
void subtract_product(poly_handle *rest, const polynode *term, const polynode *tail, pt *names) {
    if (!tail) return;
    poly_handle product;
    poly_mult(term, tail, product.slot(), names);
    if (*rest)
        best_poly_sub(rest->release(), product.release(), rest->slot());
    else
        poly_makeneg(product.get(), rest->slot());
    if (poly_iszero(rest->get())) free_poly(rest->slot());
}

/* One step: the head of the rest, with the degree of b taken off its exponent, as a polynomial. */
polynode *take_head(poly_handle *rest, int32_t degree) {
    polynode *t = take_first(rest->slot());
    if (t->is_number) return t; /* then the degree of b is 0 */
    t->expo -= degree;
    remove_dummy(t);
    return t;
}

void to_destinations(poly_handle &quotient, poly_handle &rest, polynode **q, polynode **r) {
    if (!quotient) poly_set(0, quotient.slot());
    if (!rest) poly_set(0, rest.slot());
    if (q) quotient.release_to(q);
    if (r) rest.release_to(r);
}

bool too_short(const polynode *a, const polynode *b) { return poly_iszero(a) || a->expo < b->expo; }

/* The steps of a division with deg a from deg b up. The powers of the leading coefficient that are left to multiply
   with come back. */
int64_t pseudo_steps(const polynode *a, const polynode *b, poly_handle *quotient, poly_handle *rest, pt *names) {
    const divisor_parts of_b(b);
    polynode m_top; /* the leading coefficient as a polynomial of the top level */
    m_top.expo = 0;
    m_top.next = nullptr;
    m_top.is_number = is_constant(of_b.lead);
    if (m_top.is_number)
        m_top.num = of_b.lead->num;
    else
        m_top.poly = const_cast<polynode *>(of_b.lead);
    int64_t left = int64_t{a->expo} - b->expo + 1;
    poly_assign(a, rest->slot());
    while (*rest && rest->get()->expo >= b->expo) {
        safe_point();
        poly_handle term(take_head(rest, b->expo));
        multiply_list(rest, &m_top, names);
        subtract_product(rest, term.get(), of_b.tail, names);
        if (quotient) {
            multiply_list(quotient, &m_top, names);
            if (*quotient)
                best_poly_add(quotient->release(), term.release(), quotient->slot());
            else
                *quotient->slot() = term.release();
        }
        left--;
    }
    return left;
}

/* *p := *p * m^e with m the leading coefficient of b; null stays. */
void multiply_by_power(poly_handle *p, const polynode *b, int64_t e, pt *names) {
    if (!*p || e < 1) return;
    polynode lone;
    poly_handle power;
    poly_assign(coefficient_of(b, &lone), power.slot());
    if (e > 1) compute_power(power.slot(), static_cast<uint32_t>(e), names_below(names));
    if (!is_constant(power.get())) add_pad(power.slot(), 1);
    multiply_list(p, power.get(), names);
}

void divide_by_unit(const polynode *a, const polynode *b, polynode **q, polynode **r, pt *names) {
    if (is_constant(b)) {
        poly_handle quotient;
        if (q) poly_quot(a, b, quotient.slot(), 0);
        if (r) poly_set(0, r);
        if (q) quotient.release_to(q);
        return;
    }
    poly_handle remainder;
    divide_by_steps(a, b, q, remainder.slot(), names, {});
    if (r) remainder.release_to(r);
}

} // namespace

void pseudo_div(const polynode *a, const polynode *b, polynode **q, polynode **r, int want_rem, pt *names) {
    check_stack();
    polynode **to = want_rem ? r : nullptr;
    poly_handle quotient, rest;
    if (too_short(a, b)) {
        if (to) poly_assign(a, rest.slot());
        return to_destinations(quotient, rest, q, to);
    }
    if (first_coef_invrtble(b, names ? names->pt_level : 1)) return divide_by_unit(a, b, q, to, names);
    const int64_t left = pseudo_steps(a, b, &quotient, &rest, names);
    multiply_by_power(&quotient, b, left, names);
    if (to) multiply_by_power(&rest, b, left, names);
    to_destinations(quotient, rest, q, to);
}

void pseudo_div_no_q(const polynode *a, const polynode *b, polynode **r, pt *names, int exact) {
    check_stack();
    if (too_short(a, b)) return poly_assign(a, r);
    poly_handle rest;
    const int64_t powers = int64_t{a->expo} - b->expo + 1;
    if (first_coef_invrtble(b, names ? names->pt_level : 1)) {
        divide_by_unit(a, b, nullptr, rest.slot(), names);
        if (exact && !poly_iszero(rest.get())) multiply_by_power(&rest, b, powers, names);
    } else {
        const int64_t left = pseudo_steps(a, b, nullptr, &rest, names);
        if (exact) multiply_by_power(&rest, b, left, names);
    }
    to_destinations(rest, rest, nullptr, r);
}

/* ---- over the rationals ---- */

namespace {

/* x := x * c for each list that is there. */
void scale_all(const number *c, poly_handle *x, poly_handle *y) {
    if (equal(c, &number_1)) return;
    if (*x) scale_poly(x->slot(), c);
    if (*y) scale_poly(y->slot(), c);
}

/* The coefficient of the next term of the quotient, over the multiplier *c by which all else is to be multiplied.
   head: the leading coefficient of the rest. False when it does not divide. */
bool rational_coefficient(const polynode *head, const polynode *lead, poly_handle *coefficient, number *c, pt *names) {
    if (is_constant(lead)) { /* head / lead = (head / g) / (lead / g) with g the common factor of all */
        number_handle content, g, cofactor;
        int coprime;
        find_gcdcoefs(head, &content);
        extgcd(&content, lead->num, &g, &cofactor, c, &coprime);
        poly_assign(head, coefficient->slot());
        num_poly_quot(coefficient->slot(), &g);
        if (num_sign(c) > 0) return true;
        in_place_neg(c);
        poly_inplace(coefficient->get());
        return true;
    }
    poly_handle rest;
    num_pseudo_div(head, lead, coefficient->slot(), rest.slot(), c, names);
    return poly_iszero(rest.get());
}

/* x^e times the coefficient, as a polynomial. */
polynode *monomial(int64_t e, poly_handle &coefficient) { return term_of(e, coefficient); }

} // namespace

void num_pseudo_div(const polynode *a, const polynode *b, polynode **q, polynode **r, number *c, pt *names) {
    check_stack();
    const divisor_parts of_b(b);
    poly_handle quotient, rest;
    number_handle multiplier, step;
    setvalue(1, &multiplier);
    poly_assign(a, rest.slot());
    if (poly_iszero(rest.get())) free_poly(rest.slot());
    while (rest && rest->expo >= b->expo) {
        safe_point();
        poly_handle head(take_first(rest.slot())), coefficient;
        polynode lone;
        const int64_t e = int64_t{head->expo} - b->expo;
        if (!rational_coefficient(coefficient_of(head.get(), &lone), of_b.lead, &coefficient, &step,
                                  names_below(names))) {
            tolvek_error("r not 0 in num_pseudo poly div.", 1);
            if (rest)
                best_poly_add(head.release(), rest.release(), rest.slot());
            else
                *rest.slot() = head.release();
            break;
        }
        scale_all(&step, &rest, &quotient);
        fast_mult(&multiplier, &step, &multiplier);
        poly_handle term(monomial(e, coefficient));
        subtract_product(&rest, term.get(), of_b.tail, names);
        if (quotient)
            best_poly_add(quotient.release(), term.release(), quotient.slot());
        else
            *quotient.slot() = term.release();
    }
    num_assign(&multiplier, c);
    to_destinations(quotient, rest, q, r);
}

static void primitive_quotient(polynode **a, const polynode *b, pt *names, const char *complaint) {
    poly_handle quotient, rest;
    if (flotemode || lintmode) {
        if (!divides_exactly(*a, b, quotient.slot(), names, {})) {
            tolvek_error(complaint, 1);
            return;
        }
        return quotient.release_to(a);
    }
    number_handle multiplier, content;
    num_pseudo_div(*a, b, quotient.slot(), rest.slot(), &multiplier, names);
    if (!poly_iszero(rest.get())) {
        tolvek_error(complaint, 1);
        return;
    }
    if (!poly_iszero(quotient.get())) {
        find_gcdcoefs(quotient.get(), &content);
        num_poly_quot(quotient.slot(), &content);
    }
    quotient.release_to(a);
}

void special_div(polynode **a, const polynode *b, pt *names) {
    polynode wrapper; /* b at the level of a */
    wrapper.expo = 0;
    wrapper.is_number = 0;
    wrapper.next = nullptr;
    wrapper.poly = const_cast<polynode *>(b);
    primitive_quotient(a, is_constant(b) ? b : &wrapper, names, "not 0 in special_div");
}

void special_div_2(polynode **a, const polynode *b, pt *names) {
    primitive_quotient(a, b, names, "not 0 in special_div_2");
}

} // namespace tolvek
