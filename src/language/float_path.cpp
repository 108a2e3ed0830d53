#include "language/float_path.h"

#include "language/char_sets.h"
#include "language/compile.h"
#include "language/execution.h"
#include "language/expressions.h"
#include "language/flote_functions.h"
#include "language/functions.h"
#include "language/run.h"
#include "language/short_path.h"
#include "matrix/elements.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_power.h"
#include "top/driver.h"
#include "top/interrupts.h"
#include "top/parse.h"
#include "top/stack_limit.h"

#include <cmath>
#include <cstdlib>

namespace tolvek {

/* A factor: its value, and its place when it can be assigned to. */
struct flote_factor {
    long double value = 0;
    place at;
};

static void ifact(stream *input, flote_factor &f, name **cursor);

static long double flote_of(quolynode *const *slot) {
    if (!*slot) return 0;
    if (!(*slot)->is_num) {
        error(227, token);
        return 0;
    }
    return (*slot)->numb->flote_val;
}

/* ---- factors ---- */

static void missing_name(token_record &variable_name, flote_factor &f) {
    if (!token_is(token, ":")) {
        error(19, variable_name);
        return;
    }
    quoly_handle value;
    quoly_set(0, value.slot());
    f.at.slot = &insert_var(variable_name, value)->value;
}

static int64_t flote_coordinate(stream *input, name **cursor) {
    constexpr long double greatest = 9.0e18L;
    scanner(input, token, cursor);
    const long double c = old_iexpre(input, cursor);
    if (!(std::fabs(c) < greatest)) array_error(27, token);
    return std::llround(c);
}

/* The coordinates in brackets, with "[" as the token. */
static coordinates ievalcoords(stream *input, name **cursor) {
    coordinates c;
    c.a = flote_coordinate(input, cursor);
    if (token_is(token, ",")) {
        c.b = flote_coordinate(input, cursor);
        c.two = true;
    }
    if (!token_is(token, "]")) array_error(61, token);
    return c;
}

/* x[i] or x[i,j]. An element without a value becomes 0; one that a sparse array lacks is 0. */
static void element_flote(stream *input, flote_factor &f, name **cursor, token_record &array_name, reference *bound) {
    const coordinates c = ievalcoords(input, cursor);
    array_record *a = bound ? bound_array(bound) : nullptr;
    if (!a) a = array_seek(array_name);
    const int64_t index = element_index(a, c);
    scanner(input, token, cursor);
    f.at.slot = array_quoly_ptr(a, index);
    if (a->sparse_head) {
        f.at.array = a;
        f.at.index = index;
    } else if (!*f.at.slot) {
        quoly_set(0, f.at.slot);
    }
    f.value = f.at.slot ? flote_of(f.at.slot) : 0;
}

static void named_flote(stream *input, flote_factor &f, name **cursor) {
    reference *bound = *cursor ? (*cursor)->bound : nullptr;
    token_record variable_name = token;
    f.at.slot = bound ? bound_slot(bound) : nullptr;
    if (!f.at.slot)
        if (variable *v = find_variable(variable_name)) f.at.slot = &v->value;
    scanner(input, token, cursor);
    if (token_is(token, "["))
        element_flote(input, f, cursor, variable_name, bound);
    else if (f.at.slot)
        f.value = flote_of(f.at.slot);
    else
        missing_name(variable_name, f);
}

/* A literal: short ones are read without a buffer. */
static void literal_flote(stream *input, flote_factor &f, name **cursor) {
    constexpr int exact_figures = 18; /* stay below 2^63 */
    int64_t figures = 0;
    name *start = *cursor;
    token_record first = token;
    int count = 0;
    while (is_digit(first_char(token)) && count < exact_figures) {
        figures = 10 * figures + (token.text[0] - '0');
        count++;
        scanner(input, token, cursor);
    }
    bool whole = count > 0 && !is_digit(first_char(token)) && !token_is(token, ".") && !token_is(token, "e");
    if (whole) {
        f.value = static_cast<long double>(figures);
        return;
    }
    *cursor = start;
    token = first;
    quoly_handle value;
    read_number(input, value.slot(), cursor);
    f.value = value->numb->flote_val;
}

static void value_in_parentheses(stream *input, flote_factor &f, name **cursor) {
    scanner(input, token, cursor);
    f.value = old_iexpre(input, cursor);
    require(")", 1, input, cursor);
}

/* The factor behind a prefix operator. */
static long double operand(stream *input, name **cursor) {
    flote_factor f;
    scanner(input, token, cursor);
    ifact(input, f, cursor);
    return f.value;
}

static void magnitude(stream *input, flote_factor &f, name **cursor) {
    f.value = std::fabs(operand(input, cursor));
    require("|", 63, input, cursor);
}

static void underscore_function(stream *input, flote_factor &f, name **cursor) {
    scanner(input, token, cursor);
    token_record function_name = token;
    scanner(input, token, cursor);
    require("(", 177, input, cursor);
    f.value = old_iexpre(input, cursor);
    require(")", 1, input, cursor);
    f.value = apply_flote_function(function_name, f.value);
}

/* Functions, previous values and statements give values, of which the float is taken. */
static void flote_of_value(stream *input, flote_factor &f, name **cursor, bool function) {
    quoly_handle value;
    if (function) {
        call_function(input, value.slot(), cursor);
    } else {
        place at;
        fact(input, at, value.slot(), cursor, 0);
    }
    if (!value) quoly_set(0, value.slot());
    f.value = flote_of(value.slot());
}

static void read_flote(stream *input, flote_factor &f, name **cursor) {
    int c = first_char(token);
    if (is_lower_letter(c))
        named_flote(input, f, cursor);
    else if (is_digit(c) || c == '.')
        literal_flote(input, f, cursor);
    else if (c == '(')
        value_in_parentheses(input, f, cursor);
    else if (c == '-')
        f.value = -operand(input, cursor);
    else if (c == '$')
        f.value = std::floor(operand(input, cursor));
    else if (c == '|')
        magnitude(input, f, cursor);
    else if (c == '_')
        underscore_function(input, f, cursor);
    else if (token_is(token, "Sigma") || token_is(token, "Prod"))
        f.value = flote_sum_or_product(input, cursor, token_is(token, "Prod"));
    else if (is_upper_letter(c))
        flote_of_value(input, f, cursor, true);
    else if (c == '<' || c == '%' || c == '!' || c == '&' || c == '?' || c == '@' || c == '\'')
        flote_of_value(input, f, cursor, false);
    else
        error(68, token);
}

/* ---- postfix operators ---- */

static long double inumber_power(long double x, int64_t e) {
    long double result = 1;
    for (uint64_t n = static_cast<uint64_t>(std::llabs(e)); n; n >>= 1) {
        if (n & 1) result *= x;
        x *= x;
    }
    return e < 0 ? 1 / result : result;
}

static long double power(stream *input, long double base, name **cursor) {
    long double e = operand(input, cursor);
    bool integral = std::fabs(e) <= INT32_MAX && e == std::floor(e);
    return integral ? inumber_power(base, std::llround(e)) : std::pow(base, e);
}

static long double flote_factorial(long double x) {
    number_handle n;
    n.flote_val = x;
    factorial(&n);
    return n.flote_val;
}

static void ifact(stream *input, flote_factor &f, name **cursor) {
    check_stack();
    safe_point();
    read_flote(input, f, cursor);
    if (token_is(token, "^")) {
        f.value = power(input, f.value, cursor);
        f.at = {};
    } else if (token_is(token, "!")) {
        scanner(input, token, cursor);
        f.value = flote_factorial(f.value);
        f.at = {};
    }
}

/* ---- terms ---- */

static long double remainder(long double a, long double b) {
    auto dividend = std::llround(a), divisor = std::llround(b);
    if (divisor == 0) {
        error(22, quotsign);
        return a;
    }
    long long r = divisor == -1 ? 0 : dividend % divisor;
    if (r < 0 && pos_mod) r += std::llabs(divisor);
    return static_cast<long double>(r);
}

static long double apply(int op, long double a, long double b) {
    if (op == '*') return a * b;
    if (b == 0) {
        error(22, quotsign);
        return a;
    }
    return op == '|' ? remainder(a, b) : a / b;
}

static void iterm(stream *input, flote_factor &f, name **cursor) {
    ifact(input, f, cursor);
    while (PSet_Test(iterm_set, first_char(token))) {
        int op = first_char(token);
        scanner(input, token, cursor);
        if (token_is(token, "/")) error(340, token);
        flote_factor right;
        ifact(input, right, cursor);
        f.value = apply(op, f.value, right.value);
        f.at = {};
    }
}

/* ---- sums and assignments ---- */

static bool continues_sum() { return (token.text[0] == '+' || token.text[0] == '-') && !token.text[1]; }

static long double rest_of_sum(stream *input, long double sum, name **cursor) {
    while (continues_sum()) {
        bool minus = token.text[0] == '-';
        scanner(input, token, cursor);
        flote_factor right;
        iterm(input, right, cursor);
        sum += minus ? -right.value : right.value;
    }
    return sum;
}

long double old_iexpre(stream *input, name **cursor) {
    flote_factor f;
    if (short_flote_sum(cursor, f.value)) return f.value;
    iterm(input, f, cursor);
    return rest_of_sum(input, f.value, cursor);
}

/* In place, unless something may hold the old value. */
static void store_flote(const place &at, long double value) {
    if (!at.array && *at.slot && (*at.slot)->is_num && !values_are_held()) {
        (*at.slot)->numb->flote_val = value;
        (*at.slot)->array_mark = 0;
        return;
    }
    quoly_handle fresh;
    quoly_set_flote(value, fresh.slot());
    if (at.array)
        store_sparse_element(at, fresh.release());
    else
        store_value(at.slot, fresh.release());
}

static bool begins_step() {
    int c = first_char(token);
    return is_letter(c) || is_digit(c) || c == '(';
}

/* The value at a place is read anew: something else has been evaluated. */
static long double flote_at(const place &at) {
    quolynode **slot = at.array ? array_quoly_ptr(at.array, at.index) : at.slot;
    return slot ? flote_of(slot) : 0;
}

/* Behind ":", with the place of the target. */
static void iassignment(stream *input, const place &at, name **cursor) {
    scanner(input, token, cursor);
    int op = first_char(token);
    if (!std::strchr("=+-*", op) || !op || token.text[1]) {
        error(317, token);
        return;
    }
    if (!at.slot && !at.array) {
        error(316, token);
        return;
    }
    held_cells cell(!at.array);
    scanner(input, token, cursor);
    if (op == '=') {
        store_flote(at, old_iexpre(input, cursor));
        return;
    }
    flote_factor step;
    step.value = 1;
    if (begins_step()) ifact(input, step, cursor);
    const long double old = flote_at(at);
    store_flote(at, op == '*' ? old * step.value : op == '+' ? old + step.value : old - step.value);
}

long double iexpre(stream *input, name **cursor) {
    flote_factor f;
    iterm(input, f, cursor);
    long double value = rest_of_sum(input, f.value, cursor);
    if (!token_is(token, ":")) return value;
    iassignment(input, f.at, cursor);
    return 0;
}

} // namespace tolvek
