/* Every number of a polynomial changed. What becomes 0 leaves the polynomial, which is canonical again. */
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/modular.h"
#include "poly/model_work.h"
#include "quoly/quoly_numbers.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <utility>

namespace tolvek {

using number_change = void (*)(number *x, const number *c);

/* The list with its numbers changed; *list is consumed. Null for 0. */
static polynode *changed(polynode **list, number_change change, const number *c) {
    growing_list result;
    while (polynode *t = *list) {
        safe_point();
        *list = std::exchange(t->next, nullptr);
        poly_handle term(t);
        if (t->is_number) {
            change(t->num, c);
            if (num_sign(t->num)) result.append(term.release());
            continue;
        }
        poly_handle rest(std::exchange(t->poly, nullptr));
        polynode *coefficient = changed(rest.slot(), change, c);
        if (!coefficient) continue;
        if (t->expo == 0 && is_constant(coefficient)) {
            result.append(coefficient);
        } else {
            t->poly = coefficient;
            result.append(term.release());
        }
    }
    return result.release();
}

static void change_numbers(polynode **p, number_change change, const number *c) {
    check_stack();
    poly_handle list(std::exchange(*p, nullptr));
    *p = list_or_zero(changed(list.slot(), change, c));
}

static void times(number *x, const number *c) { num_mult(x, c, x); }

static void exact_quotient(number *x, const number *c) {
    number_handle rest;
    divide(x, c, x, &rest);
}

static void flote_quotient(number *x, const number *c) { x->flote_val /= c->flote_val; }

/* -2^31 / -1 wraps */
static void word_quotient(number *x, const number *c) {
    x->lint_val = static_cast<int32_t>(static_cast<int64_t>(x->lint_val) / c->lint_val);
}

void num_poly_mult(polynode **p, const number *c) { change_numbers(p, times, c); }

void num_poly_quot(polynode **p, const number *c) {
    if (modularmode) {
        number inverse{};
        inverse.lint_val = mod_inverse(c->lint_val);
        change_numbers(p, times, &inverse);
    } else {
        change_numbers(p, flotemode ? flote_quotient : lintmode ? word_quotient : exact_quotient, c);
    }
}

} // namespace tolvek
