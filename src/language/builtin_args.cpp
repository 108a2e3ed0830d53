#include "language/builtin_args.h"

#include "language/names.h"
#include "matrix/elements.h"
#include "numbers/number.h"
#include "poly/variables.h"

#include <cmath>

namespace tolvek {

const quolynode *argument::get() const {
    if (place) return *place ? *place : quol_num_0;
    return own ? own.get() : quol_num_0;
}

void argument::read_own(builtin_call &call) {
    old_expre(call.input, own.slot(), call.cursor);
    values_held++;
}

void argument::read(builtin_call &call) {
    if (token_is(token, "^"))
        place = get_quoly_ptr(call);
    else
        read_own(call);
}

void argument::read_expression(builtin_call &call) {
    call.read_on();
    if (token_is(token, "^")) {
        error(313, token);
        call.read_on();
    }
    read_own(call);
}

changed_argument::changed_argument(builtin_call &call) : by_name(token_is(token, "^")) { value.read(call); }

void changed_argument::give(quoly_handle &fresh, builtin_call &call) {
    if (!by_name)
        fresh.release_to(call.result);
    else if (value.slot() != &quol_num_0)
        store_value(value.slot(), fresh.release());
}

void check_for_paren(builtin_call &call) {
    call.read_on();
    if (!token_is(token, "(")) error(177, token);
}

void require_comma(builtin_call &call) {
    if (!token_is(token, ","))
        error(202, token);
    else
        call.read_on();
}

void close_paren(builtin_call &call) { require(")", 1, call.input, call.cursor); }

void standard_read(builtin_call &call, argument &a) {
    check_for_paren(call);
    call.read_on();
    a.read(call);
    close_paren(call);
}

quolynode **get_quoly_ptr(builtin_call &call) {
    if (token_is(token, "^")) call.read_on();
    token_record wanted = token;
    int level;
    if (is_poly_name(wanted.text, &level)) error(125, wanted);
    variable *v = find_variable(wanted);
    call.read_on();
    if (token_is(token, "[")) {
        place at;
        quoly_handle missing; /* an element of a sparse array: 0, or a copy, which cannot be changed */
        new_arretrieve(call.input, call.cursor, wanted, at, missing.slot());
        if (!at.slot || missing) array_error(244, wanted);
        return at.slot;
    }
    if (v) return &v->value;
    error(19, wanted);
    return &quol_num_0;
}

int64_t integer_argument(const quolynode *q, int n) {
    constexpr long double greatest = 9.0e18L;
    constexpr int most_digits = 2; /* 56 bits */
    if (q->is_num) {
        const number *x = q->numb;
        if (flotemode && std::fabs(x->flote_val) < greatest) return std::llround(x->flote_val);
        if (lintmode && !flotemode) return x->lint_val;
        if (!flotemode && !lintmode && x->num_len <= most_digits)
            return x->num_len == 1 ? x->num_head->digit
                                   : (static_cast<int64_t>(x->num_head->digit) * digit_radix) + x->num_tail->digit;
    }
    error(n, token);
    return 0;
}

} // namespace tolvek
