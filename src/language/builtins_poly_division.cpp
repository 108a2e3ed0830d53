/* Built-in functions that divide polynomials and tell whether that leaves nothing. */
#include "language/builtin_routines.h"
#include "language/names.h"
#include "numbers/handles.h"
#include "poly/divide.h"
#include "quoly/powermod.h"
#include "top/ring.h"

namespace tolvek {

namespace {

/* The value as a polynomial: its own numerator, or a number in `own`. Null for a fraction. */
const polynode *polynomial_of(const quolynode *q, poly_handle &own) {
    if (!q->is_num) return q->den ? nullptr : q->num;
    quoly_to_poly(q, own.slot());
    return own.get();
}

/* *q := a / b where b divides a. */
bool divides(const polynode *a, const polynode *b, poly_handle &q) {
    int failed = 1;
    if (is_constant(b)) {
        int ok = 0;
        trial_poly_quot(a, b, q.slot(), &ok);
        return ok;
    }
    if (!laurent) return trial_poly_divide(a, b, q.slot(), polynames, 1);
    Lpoly_divide(a, b, q.slot(), polynames, &failed);
    return !failed;
}

/* The operands of a division. */
struct operands {
    argument a, b;

    explicit operands(builtin_call &call) {
        read_two(call, a, b);
        close_paren(call);
    }
    /* The third argument names a place. */
    operands(builtin_call &call, named_place &where) {
        read_two(call, a, b);
        require_comma(call);
        where.read(call);
        close_paren(call);
    }
    /* Errors 22, 280. */
    bool trial_divide(quoly_handle &quotient) const {
        poly_handle own_a, own_b, q;
        const polynode *x = polynomial_of(a.get(), own_a), *y = polynomial_of(b.get(), own_b);
        if (!x || !y) {
            error(280, token);
            return false;
        }
        if (poly_iszero(y)) {
            error(22, token);
            return false;
        }
        if (!divides(x, y, q)) return false;
        poly_to_value(q, quotient.slot());
        return true;
    }
};

} // namespace

void builtin_divides(builtin_call &call) {
    const operands of(call);
    quoly_handle quotient;
    call.give(of.trial_divide(quotient));
}

void builtin_pdivide(builtin_call &call) {
    const operands of(call);
    quoly_handle quotient;
    if (of.trial_divide(quotient))
        quotient.release_to(call.result);
    else
        call.give(0);
}

void builtin_sdivide(builtin_call &call) {
    named_place where;
    const operands of(call, where);
    quoly_handle quotient;
    const bool exact = of.trial_divide(quotient);
    if (exact) where.store(quotient);
    call.give(exact);
}

void builtin_remquot(builtin_call &call) {
    named_place where;
    const operands of(call, where);
    quoly_handle quotient;
    quoly_mod_or_div(of.a.get(), of.b.get(), quotient.slot(), '\\');
    quoly_mod_or_div(of.a.get(), of.b.get(), call.result, '|');
    where.store(quotient);
}

/* A plain number as a chain; in the modular ring it has been read as an integer of 32 bits. */
static bool exponent_of(const quolynode *q, number *e) {
    if (!q->is_num) return false;
    if (!lintmode) {
        num_assign(q->numb, e);
        return true;
    }
    const int32_t value = q->numb->lint_val;
    const chain_form integers;
    set_int64(value, e);
    return true;
}

void builtin_powermod(builtin_call &call) {
    if (lintmode && !modularmode) error(62, token);
    check_for_paren(call);
    argument base, exponent, m;
    base.read_expression(call);
    if (!token_is(token, ",")) error(202, token);
    number_handle e;
    bool integral;
    {
        const modular_pause pause;
        exponent.read_expression(call);
        integral = exponent_of(exponent.get(), &e);
    }
    if (!token_is(token, ",")) error(202, token);
    m.read_expression(call);
    close_paren(call);
    if (!base.is_number() && base.get()->den)
        error(286, token);
    else if (!integral)
        error(292, token);
    else
        powermod(base.get(), m.get(), &e, call.result);
}

} // namespace tolvek
