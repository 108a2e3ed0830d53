/* Polynomials with values in the place of variables.

   The terms of one level, c_i * x^(e_i) with c_i in the next variables, are summed up at x = v in one of three ways:
     scaled   each c_i is multiplied by v^(e_i), and the products are added in pairs. For values whose powers are no
              longer than they are: numbers in one word, and single terms.
     halved   high half and low half: low + v^gap * high. For chains and for values in one variable, whose powers grow:
              each product has factors of like size.
     stepped  Horner's rule. For long values in several variables, where a short factor costs less than a square. */
#include "poly/evaluate.h"

#include "numbers/handles.h"
#include "numbers/int_power.h"
#include "poly/add.h"
#include "poly/evaluate_work.h"
#include "poly/measures.h"
#include "poly/model_work.h"
#include "poly/mult.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <cassert>
#include <utility>

namespace tolvek {

/* ---- lists of values ---- */

void evaluation_list::append(int32_t expo, polynode *value) {
    poly_handle held(value);
    polynode *t = new_term();
    t->expo = expo;
    t->poly = held.release();
    *end = t;
    end = &t->next;
}

void evaluation_list::keep() {
    polynode *one = nullptr;
    poly_set(1, &one);
    append(1, one);
}

void evaluation_list::put(polynode *value) { append(0, value); }

void evaluation_list::put(const number *value) {
    poly_handle constant;
    poly_set(0, constant.slot());
    num_assign(value, constant->num);
    put(constant.release());
}

void evaluation_list::put(int32_t value) {
    polynode *constant = nullptr;
    poly_set(value, &constant);
    put(constant);
}

/* ---- one level: the sum of its terms at a value ---- */

constexpr int few_terms = 16; /* a list up to which halves are taken whatever the value is */

static bool is_power_product(const polynode *p) {
    for (; !p->is_number; p = p->poly)
        if (p->next) return false;
    return !p->next && poly_eq_1(p);
}

level_sum::level_sum(const polynode *its_value, const polynode *its_den, int32_t its_low, int32_t its_high)
    : value(its_value), den(its_den), low(its_low), high(its_high), is_one(poly_eq_1(its_value)),
      grows(its_den || (!(lintmode && is_constant(its_value)) && !is_power_product(its_value))),
      halves(its_den || is_constant(its_value) || driver_poly_vars(its_value) <= 1) {}

polynode *take_coefficient(polynode **list) {
    polynode *t = *list;
    *list = t->next;
    t->next = nullptr;
    if (t->is_number) return t;
    polynode *c = t->poly;
    push_poly(t);
    return c;
}

/* p := p * by^e */
static void times_power(poly_handle &p, const polynode *by, int32_t e) {
    if (!by || e == 0 || poly_eq_1(by)) return;
    if (is_constant(by)) {
        number_handle power;
        num_assign(by->num, &power);
        if (e > 1) number_power(&power, static_cast<uint32_t>(e));
        num_poly_mult(p.slot(), &power);
    } else if (e == 1) {
        poly_mult(p.get(), by, p.slot(), nullptr);
    } else {
        poly_handle power;
        poly_assign(by, power.slot());
        compute_power(power.slot(), static_cast<uint32_t>(e), nullptr);
        poly_mult(p.get(), power.get(), p.slot(), nullptr);
    }
}

polynode *level_sum::of(polynode **list) const {
    if (!*list) return list_or_zero(nullptr);
    block all;
    const int length = poly_length(*list);
    if (!grows || halves || length <= few_terms)
        sum_of_terms(list, length, all);
    else
        step_by_step(list, all);
    assert(all.least >= low || is_one);
    if (grows) times_power(all.sum, value, all.least - low);
    times_power(all.sum, den, high - all.greatest);
    return all.sum.release();
}

void level_sum::first_term(polynode **list, block &b) const {
    safe_point();
    b.least = b.greatest = (*list)->expo;
    *b.sum.slot() = take_coefficient(list);
    if (!grows) times_power(b.sum, value, b.least - low);
}

void level_sum::join(block &b, block &below) const {
    if (grows) times_power(b.sum, value, b.least - below.least);
    times_power(below.sum, den, b.greatest - below.greatest);
    b.least = below.least;
    best_poly_add(b.sum.release(), below.sum.release(), b.sum.slot());
}

void level_sum::sum_of_terms(polynode **list, int n, block &b) const {
    if (n == 1) return first_term(list, b);
    sum_of_terms(list, n - n / 2, b);
    block below;
    sum_of_terms(list, n / 2, below);
    join(b, below);
}

void level_sum::step_by_step(polynode **list, block &b) const {
    first_term(list, b);
    while (*list) {
        block next;
        first_term(list, next);
        join(b, next);
    }
}

/* One wrapper around p, unless it is constant. */
static polynode *with_its_level(polynode *p) {
    polynode *wrapped = nullptr;
    make_monomial(&wrapped, 0, p);
    return wrapped;
}

/* ---- several levels ---- */

/* Does the list hold nothing but numbers? */
static bool numbers_alone(const polynode *list) {
    for (; list; list = list->next)
        if (list->expo == 1 || !is_constant(list->poly)) return false;
    return true;
}

static polynode *constant_or_null(const polynode *p, const polynode *list, bool *done) {
    poly_handle constant;
    poly_set(0, constant.slot());
    *done = try_number_value(p, list, constant->num) == list_fault::none;
    return *done && num_sign(constant->num) ? constant.release() : nullptr;
}

/* Null for 0. only_numbers: of the whole list. */
static polynode *evaluated(const polynode *p, const polynode *list, int level, bool only_numbers) {
    if (is_constant(p)) return num_sign(p->num) ? copy_list(p) : nullptr;
    if (!list) return copy_list(p);
    if (level < 1 && only_numbers && field_depth == 0) {
        bool done;
        polynode *value = constant_or_null(p, list, &done);
        if (done) return value;
    }
    const bool stays = level > 0 || list->expo == 1;
    growing_list terms;
    for (; p; p = p->next) {
        safe_point();
        poly_handle c(p->is_number ? copy_term(p) : evaluated(p->poly, list->next, level - 1, only_numbers));
        if (!c) continue;
        if (stays) {
            make_monomial(c.slot(), p->expo, c.get());
            terms.append(c.release());
        } else {
            polynode *t = new_term();
            terms.append(t);
            t->expo = p->expo;
            t->poly = c.release();
        }
    }
    if (stays || terms.empty()) return terms.release();
    poly_handle rest(terms.release());
    poly_handle sum(level_sum(list->poly).of(rest.slot()));
    return poly_iszero(sum.get()) ? nullptr : with_its_level(sum.release());
}

void all_poly_eval(const polynode *p, const polynode *list, polynode **out, int level) {
    check_stack();
    replace_poly(evaluated(p, list, level, numbers_alone(list)), out);
}

void old_all_poly_eval(const polynode *p, const polynode *list, polynode **out, int level) {
    all_poly_eval(p, list, out, level);
}

/* ---- one level ---- */

/* The list is consumed. At a deeper level every coefficient is evaluated, and the canonical form restored. */
static polynode *replaced(polynode **list, int level, const level_sum &sum) {
    if (is_constant(*list)) return std::exchange(*list, nullptr);
    if (level == 1) return with_its_level(sum.of(list));
    growing_list result;
    while (*list) {
        safe_point();
        int32_t expo = (*list)->expo;
        poly_handle old(take_coefficient(list));
        poly_handle c(replaced(old.slot(), level - 1, sum));
        if (poly_iszero(c.get())) continue;
        make_monomial(c.slot(), expo, c.get());
        result.append(c.release());
    }
    return list_or_zero(result.release());
}

void replace_variable(polynode **p, int level, const polynode *value) {
    check_stack();
    poly_handle list(std::exchange(*p, nullptr));
    *p = replaced(list.slot(), level, level_sum(value));
}

void eval_at_one(polynode **p, int level) { replace_variable(p, level, poly_1); }

void poly_at_numb(polynode **r, const polynode *p, const polynode *value, pt *, int flag) {
    check_stack();
    poly_handle list(copy_list(p));
    if (!is_constant(p)) *list.slot() = level_sum(value).of(list.slot());
    if (flag) *list.slot() = with_its_level(list.release());
    list.release_to(r);
}

void mod_poly_at_numb(polynode **r, const polynode *p, const polynode *value, pt *names, int flag) {
    assert(modularmode);
    poly_at_numb(r, p, value, names, flag);
}

void case_one(polynode **p, const number *a) {
    if (is_constant(*p)) return;
    check_stack();
    poly_handle list(std::exchange(*p, nullptr)), value;
    poly_set(0, value.slot());
    num_assign(a, value->num);
    *p = level_sum(value.get()).of(list.slot());
}

/* ---- a level taken out ---- */

void remove_one(polynode **p, int level) {
    if (is_constant(*p)) return;
    if (level > 1) {
        for (polynode *t = *p; t; t = t->next)
            if (!t->is_number) remove_one(&t->poly, level - 1);
        return;
    }
    assert((*p)->expo == 0 && !(*p)->next);
    *p = take_coefficient(p);
}

void remove_poly_var(quolynode *q, int level) {
    if (q->is_num) return;
    remove_one(&q->num, level);
    if (q->den) remove_one(&q->den, level);
}

} // namespace tolvek
