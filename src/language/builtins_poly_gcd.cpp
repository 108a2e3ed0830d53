/* Built-in functions of common divisors. */
#include "gcd/content.h"
#include "gcd/gcd.h"
#include "language/builtin_routines.h"
#include "matrix/array_expressions.h"
#include "numbers/int_gcd.h"
#include "poly/divide.h"
#include "poly/variables.h"
#include "top/interrupts.h"

namespace tolvek {

/* ---- GCD ---- */

/* The numerator of a value, a copy. */
static void copy_numerator(const quolynode *q, poly_handle &p) {
    if (q->is_num)
        quoly_to_poly(q, p.slot());
    else
        poly_assign(q->num, p.slot());
}

static void warn_of_denominators(const quolynode *q) {
    if (!q->is_num && q->den) say("Warning. An argument to GCD is a rational function. Denominators ignored. \n");
}

/* *g := the GCD of the numerators; of two numbers 1 in the float and modular rings, but of 0 and 0 it is 0. */
static void gcd_of_values(const quolynode *a, const quolynode *b, quolynode **g) {
    if (quoly_is_zero(a) && quoly_is_zero(b)) return quoly_set(0, g);
    if (a->is_num && b->is_num) {
        quoly_handle x, y;
        quoly_assign(a, x.slot());
        quoly_assign(b, y.slot());
        gcdnum(x.slot(), y.slot());
        quoly_abs(x.slot());
        x.release_to(g);
        return;
    }
    poly_handle u, v, common;
    copy_numerator(a, u);
    copy_numerator(b, v);
    if (is_constant(u.get()) && is_constant(v.get())) { /* of rationals */
        quoly_handle x, y;
        poly_to_value(u, x.slot());
        poly_to_value(v, y.slot());
        return gcd_of_values(x.get(), y.get(), g);
    }
    Lpolygcd2(u.slot(), v.slot(), common.slot(), polynames);
    poly_to_value(common, g);
}

void builtin_gcd(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    argument a, b;
    a.read(call);
    const bool single = !token_is(token, ",");
    if (!single) {
        call.read_on();
        b.read(call);
    }
    close_paren(call);
    if (single && a.is_number()) {
        gcd_of_values(a.get(), quol_num_0, call.result);
    } else if (single) {
        gcd_0_poly(a.get(), call.result);
    } else {
        warn_of_denominators(a.get());
        warn_of_denominators(b.get());
        gcd_of_values(a.get(), b.get(), call.result);
    }
}

/* ---- LCM ---- */

/* *q := the exact quotient of a by a divisor of it. */
static void exact_quotient(const quolynode *a, const quolynode *divisor, quolynode **q) {
    poly_handle u, v, quotient;
    int failed = 0;
    copy_numerator(a, u);
    copy_numerator(divisor, v);
    gen_poly_divide(u.get(), v.get(), quotient.slot(), polynames, &failed);
    if (failed)
        quoly_quot(a, divisor, q, 0); /* floats: a remainder by rounding */
    else
        poly_to_value(quotient, q);
}

/* l := the least common multiple of l and x; of two numbers in the float and modular rings the product. */
static void take_multiple(quolynode **l, const quolynode *x) {
    quoly_handle common;
    if (quoly_is_zero(*l) || quoly_is_zero(x)) return quoly_set(0, l);
    gcd_of_values(*l, x, common.slot());
    if ((*l)->is_num && common->is_num)
        quoly_mod_or_div(*l, common.get(), l, '\\');
    else
        exact_quotient(*l, common.get(), l);
    fast_quoly_mult(l, x);
    quoly_abs(l);
}

/* *l := its least common multiple with a value that has no denominator: error 186. */
static void take_multiple_of_value(quolynode **l, const quolynode *x) {
    if (x->is_num || !x->den)
        take_multiple(l, x);
    else
        error(186, token);
}

/* LCM[x]: of all elements. */
static void multiple_of_elements(builtin_call &call) {
    matrix_value m;
    arr_fact(call.input, call.cursor, m);
    if (m.is_sparse() && sparse_count(m.sparse, m.rows) < m.size) return call.give(0); /* 0 is among them */
    m.to_dense();
    m.fill_holes();
    for (int64_t i = 0; i < m.size; i++) {
        safe_point();
        take_multiple_of_value(call.result, m.cell(i));
    }
}

void builtin_lcm(builtin_call &call) {
    if (lintmode) say(" Warning.  LCM called in longint/modular mode.\n");
    call.give(1);
    call.read_on();
    if (token_is(token, "[")) return multiple_of_elements(call);
    if (!token_is(token, "(")) error(177, token);
    do {
        argument value;
        call.read_on();
        value.read(call);
        take_multiple_of_value(call.result, value.get());
    } while (token_is(token, ","));
    close_paren(call);
}

/* ---- Content ---- */

void builtin_content(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    argument p, variable;
    p.read(call);
    const bool selected = token_is(token, ",");
    if (selected) {
        modular_pause pause; /* the place of a variable is an integer */
        call.read_on();
        variable.read(call);
    }
    close_paren(call);
    call_content(p.get(), call.result, selected ? variable.get() : nullptr);
}

} // namespace tolvek
