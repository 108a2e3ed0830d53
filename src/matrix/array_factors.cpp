/* Factors of array expressions. */
#include "language/expressions.h"
#include "matrix/array_arithmetic.h"
#include "matrix/array_expressions.h"
#include "matrix/array_literals.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

namespace tolvek {

/* One factor on its way. Entered with its first token in `token`. */
struct array_factor {
    stream *input;
    name **cursor;
    matrix_value &result;

    void read_on() { scanner(input, token, cursor); }
    void read_operand() {
        read_on();
        arr_fact(input, cursor, result);
    }
};

static void negation(array_factor &f) {
    f.read_operand();
    negate_value(f.result);
}

static void parenthesis(array_factor &f) {
    f.read_on();
    arr_expre(f.input, f.cursor, f.result);
    require(")", 1, f.input, f.cursor);
}

static void scalar_factor(array_factor &f) { old_fact(f.input, f.result.scalar.slot(), f.cursor); }

void arr_fact(stream *input, name **cursor, matrix_value &result) {
    check_stack();
    safe_point();
    result.clear();
    array_factor f{input, cursor, result};
    if (token_is(token, "[") || token_is(token, "'"))
        read_array_literal(input, cursor, result);
    else if (token_is(token, "-"))
        negation(f);
    else if (token_is(token, "("))
        parenthesis(f);
    else
        scalar_factor(f);
}

} // namespace tolvek
