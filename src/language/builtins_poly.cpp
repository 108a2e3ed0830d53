/* Built-in functions of polynomials: coefficients, leading terms, shifted and changed polynomials.
   docs/manual/polynomial_functions.md tells each form. Coefficients are those of a value without denominator: with one it
   is error 186. */
#include "language/builtin_routines.h"
#include "language/names.h"
#include "numbers/handles.h"
#include "numbers/int_gcd.h"
#include "poly/add.h"
#include "poly/coefficients.h"
#include "quoly/calculus.h"

#include <algorithm>

namespace tolvek {

/* ---- arguments ---- */

/* An exponent: a number (227) of 32 bits (32). */
static int32_t exponent_argument(const quolynode *q) {
    int64_t e = integer_argument(q, 227);
    if (e > INT32_MAX || e < -INT32_MAX) {
        error(32, token);
        return 0;
    }
    return static_cast<int32_t>(e);
}

/* A number of times, an exponent or a place is an integer, in the modular ring too. */
static void read_integer(builtin_call &call, argument &n) {
    modular_pause pause;
    n.read(call);
}

/* "(" p, m ")" with m a single term; false, and error 282, when it is none. */
struct polynomial_and_product {
    argument p, m;
    power_product product;

    bool read(builtin_call &call) {
        read_two(call, p, m);
        close_paren(call);
        bool single = power_product_of(polynomial_view(m.get()).get(), &product);
        if (!single) error(282, token);
        return single;
    }
};

static void give_number(const number *x, quolynode **result) {
    quoly_set(0, result);
    if (x) num_assign(x, (*result)->numb);
}

/* ---- coefficients ---- */

/* Coef(p, n) of the first variable, Coef(p, v, n) of v. */
void builtin_coefficient(builtin_call &call) {
    call.read_on();
    if (!token_is(token, "(")) error(154, token);
    call.read_on();
    argument p, second, third;
    p.read(call);
    require_comma(call);
    read_integer(call, second);
    int level = 1;
    const argument *exponent = &second;
    if (token_is(token, ",")) {
        call.read_on();
        read_integer(call, third);
        exponent = &third;
        level = variable_argument(second.get());
    }
    close_paren(call);
    int32_t e = exponent_argument(exponent->get());
    if (level == 0) return;
    poly_handle c;
    coefficient_of_power(polynomial_view(p.get()).get(), level, e, c.slot());
    poly_to_value(c, call.result);
}

static void give_by_product(builtin_call &call,
                            void (*coefficient)(const polynode *, const power_product &, polynode **)) {
    polynomial_and_product a;
    if (!a.read(call)) return;
    poly_handle c;
    coefficient(polynomial_view(a.p.get()).get(), a.product, c.slot());
    poly_to_value(c, call.result);
}

void builtin_product_coefficient(builtin_call &call) { give_by_product(call, coefficient_of_product); }
void builtin_multiples(builtin_call &call) { give_by_product(call, cofactor_of_multiples); }

void builtin_number_at(builtin_call &call) {
    polynomial_and_product a;
    if (a.read(call)) give_number(number_at(polynomial_view(a.p.get()).get(), a.product), call.result);
}

/* Functions of one value that gives a polynomial, or a number. */
static void give_part_of(builtin_call &call, void (*part)(const polynode *, polynode **)) {
    argument value;
    standard_read(call, value);
    poly_handle c;
    part(polynomial_view(value.get()).get(), c.slot());
    poly_to_value(c, call.result);
}

static void give_number_of(builtin_call &call, const number *(*part)(const polynode *)) {
    argument value;
    standard_read(call, value);
    give_number(part(polynomial_view(value.get()).get()), call.result);
}

void builtin_leading_coefficient(builtin_call &call) { give_part_of(call, poly_leading_coef); }
void builtin_leading_term(builtin_call &call) { give_part_of(call, leading_term); }
void builtin_leading_monomial(builtin_call &call) { give_part_of(call, leading_mon); }

void builtin_leading_number(builtin_call &call) {
    give_number_of(call, [](const polynode *p) -> const number * { return leading_coef(p)->num; });
}
void builtin_trailing_number(builtin_call &call) {
    give_number_of(call, [](const polynode *p) -> const number * { return trailing_coef(p)->num; });
}
void builtin_constant_term(builtin_call &call) {
    give_number_of(call, [](const polynode *p) { return number_at(p, power_product{}); });
}

/* The integer content; 1 for 0, and in the float and modular rings. */
void builtin_number_content(builtin_call &call) {
    argument value;
    standard_read(call, value);
    polynomial_view p(value.get());
    if (lintmode || poly_iszero(p.get())) return call.give(1);
    poly_handle content;
    gcd_coefs(p.get(), content.slot());
    poly_to_value(content, call.result);
}

/* Rcoef(p, v, n, c): p with the coefficient c of v^n. With ^p the variable itself changes, and the value is 0. */
void builtin_replace_coefficient(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    changed_argument p(call);
    argument v, n, c;
    require_comma(call);
    v.read(call);
    require_comma(call);
    read_integer(call, n);
    require_comma(call);
    c.read(call);
    close_paren(call);
    const int level = variable_argument(v.get());
    const int32_t e = exponent_argument(n.get());
    if (level == 0) return;
    if (e < 0 && !laurent) {
        error(198, token);
        return;
    }
    polynomial_view before(p.get()), wanted(c.get());
    poly_handle old, fresh;
    coefficient_of_power(before.get(), level, e, old.slot());
    poly_assign(wanted.get(), fresh.slot());
    quoly_handle difference, power, result;
    number_handle exponent; /* an integer in every ring */
    poly_to_value(fresh, difference.slot());
    poly_to_value(old, power.slot());
    best_quoly_sub(difference.slot(), power.release());
    base_quoly(level, power.slot());
    setvalue(e, &exponent);
    raise_to_power(power.slot(), &exponent);
    fast_quoly_mult(difference.slot(), power.get());
    quoly_add(p.get(), difference.get(), result.slot());
    p.give(result, call);
}

/* ---- powers of the first variable ---- */

/* p, without a denominator (196), times x^n. */
static void shifted_value(const quolynode *p, int64_t n, quoly_handle &result) {
    if (!p->is_num && p->den) {
        error(196, token);
        return;
    }
    if (number_polys == 0) {
        error(278, token);
        return;
    }
    const int32_t least = p->is_num ? 0 : codegree(p->num, 1), greatest = p->is_num ? 0 : real_degree(p->num, 1);
    if (int64_t{greatest} + n > INT32_MAX || int64_t{least} + n < -INT32_MAX) {
        error(32, token);
    } else if (int64_t{least} + n < 0 && !laurent && !quoly_is_zero(p)) {
        error(198, token);
    } else {
        quoly_handle copy;
        quoly_assign(p, copy.slot());
        quoly_set(0, result.slot());
        splice_poly(result.slot(), copy.slot(), static_cast<int32_t>(n));
    }
}

static void shift_value(builtin_call &call, int sign) {
    check_for_paren(call);
    call.read_on();
    argument p, n;
    p.read(call);
    require_comma(call);
    read_integer(call, n);
    close_paren(call);
    quoly_handle result;
    shifted_value(p.get(), sign * int64_t{exponent_argument(n.get())}, result);
    if (result) result.release_to(call.result);
}

void builtin_raise(builtin_call &call) { shift_value(call, 1); }
void builtin_lower(builtin_call &call) { shift_value(call, -1); }

/* Splice(a, b, n) = a + b x^n. With ^a the variable itself takes the sum, and the value is 0. */
void builtin_splice(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    changed_argument a(call);
    argument b, n;
    require_comma(call);
    b.read(call);
    require_comma(call);
    read_integer(call, n);
    close_paren(call);
    if (!a.get()->is_num && a.get()->den) {
        error(196, token);
        return;
    }
    const int32_t shift = exponent_argument(n.get());
    const quolynode *q = b.get();
    if (shift < 0 && !laurent && !quoly_is_zero(q) && (q->is_num || codegree(q->num, 1) + int64_t{shift} < 0)) {
        error(367, token);
        return;
    }
    quoly_handle shifted, sum;
    shifted_value(q, shift, shifted);
    if (!shifted) return;
    quoly_assign(a.get(), sum.slot());
    best_quoly_add(sum.slot(), shifted.release());
    a.give(sum, call);
}

/* The terms of p from the exponent n of the first variable on, and those below. */
static void split_at(const polynode *p, int32_t n, poly_handle &high, poly_handle &low) {
    poly_assign(p, low.slot());
    polynode **cut = low.slot();
    while (*cut && (*cut)->expo >= n) cut = &(*cut)->next;
    polynode *below = *cut;
    *cut = nullptr;
    *high.slot() = low.release();
    *low.slot() = below;
    if (!high) poly_set(0, high.slot());
    if (!low) poly_set(0, low.slot());
}

/* Split(p, n, ^h): p = low + h x^n; the value is low, h goes to the variable. With ^p that takes low, and the value
   is 0. Errors: 365 p is no polynomial, 366 n or h. */
void builtin_split(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    changed_argument p(call);
    argument n;
    require_comma(call);
    read_integer(call, n);
    require_comma(call);
    if (!token_is(token, "^")) {
        error(366, token);
        return;
    }
    named_place target;
    target.read(call);
    close_paren(call);
    if (p.get()->is_num || p.get()->den) {
        error(365, token);
        return;
    }
    const int64_t at = integer_argument(n.get(), 366);
    if (at > INT32_MAX || at < -INT32_MAX || !target.found()) {
        error(366, token);
        return;
    }
    poly_handle high, low;
    split_at(p.get()->num, static_cast<int32_t>(at), high, low);
    quoly_handle upper, shifted, lower;
    poly_to_value(high, upper.slot());
    poly_to_value(low, lower.slot());
    shifted_value(upper.get(), -at, shifted);
    if (!shifted) return;
    p.give(lower, call);
    target.store(shifted);
}

/* ---- order and variables ---- */

/* Monless(a, b): is the leading product of powers of a below that of b? */
void builtin_monomial_less(builtin_call &call) {
    argument a, b;
    read_two(call, a, b);
    close_paren(call);
    polynomial_view first(a.get()), second(b.get());
    call.give(compare_leading_mons(first.get(), second.get()) < 0);
}

/* Var n: the n-th polynomial variable. */
void builtin_variable(builtin_call &call) {
    {
        modular_pause pause;
        call.read_on();
        old_fact(call.input, call.result, call.cursor);
    }
    const int64_t n = integer_argument(*call.result, 227);
    if (n < 1 || n > number_polys)
        error(278, token);
    else
        base_quoly(static_cast<int>(n), call.result);
}

/* ---- derivatives and roots ---- */

/* Deriv(p, v) and Deriv(p, v, n). */
void builtin_derivative(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    argument p, v, n;
    p.read(call);
    require_comma(call);
    v.read(call);
    const int level = variable_argument(v.get());
    int64_t times = 1;
    if (token_is(token, ",")) {
        call.read_on();
        read_integer(call, n);
        times = integer_argument(n.get(), 227);
        if (times < 0) error(283, token);
    }
    close_paren(call);
    if (level == 0 || times < 0) return;
    p.give_copy(call.result);
    differentiate(call.result, level, static_cast<int32_t>(std::min<int64_t>(times, INT32_MAX)));
}

void builtin_pth_root(builtin_call &call) {
    if (!modularmode || !mod_is_prime()) {
        error(modularmode ? 293 : 284, token);
        call.read_on();
        return;
    }
    argument value;
    standard_read(call, value);
    value.give_copy(call.result);
    quoly_pth_root(call.result);
}

} // namespace tolvek
