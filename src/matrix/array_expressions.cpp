/* Sums and products of array values, and the statement that is an expression. */
#include "matrix/array_expressions.h"

#include "language/char_sets.h"
#include "language/expressions.h"
#include "matrix/array_arithmetic.h"
#include "top/guards.h"
#include "top/interrupts.h"

namespace tolvek {

known_shape shape_at_hand;

/* The shape of a left operand, for the forms on its right that need one. A scalar leaves what was known. */
static known_shape shape_beside(const matrix_value &left) {
    if (left.is_scalar()) return shape_at_hand;
    return {left.rows, left.cols(), false};
}

/* Reads an operand behind another one, with its first token in `token`. */
static void read_right(void (*read)(stream *, name **, matrix_value &), stream *input, name **cursor,
                       const matrix_value &left, matrix_value &right) {
    held_value held;
    kept_value<known_shape> shape(shape_at_hand, shape_beside(left));
    read(input, cursor, right);
}

/* ---- products ---- */

/* Does the token continue a product? A letter stands for "*" in front of it; "or" and "and" end it. */
static bool continues_product() {
    const int c = first_char(token);
    if (is_letter(c)) return !token_is(token, "or") && !token_is(token, "and");
    return PSet_Test(arr_term_ops, c) && token.text[1] == 0;
}

static void rest_of_product(stream *input, name **cursor, matrix_value &product) {
    while (continues_product()) {
        safe_point();
        int op = first_char(token);
        if (is_letter(op))
            op = '*';
        else
            scanner(input, token, cursor);
        matrix_value right;
        read_right(arr_fact, input, cursor, product, right);
        multiply_values(op, product, right);
    }
}

void arr_term(stream *input, name **cursor, matrix_value &result) {
    arr_fact(input, cursor, result);
    rest_of_product(input, cursor, result);
}

/* ---- sums ---- */

static void rest_of_sum(stream *input, name **cursor, matrix_value &sum) {
    while (token_is(token, "+") || token_is(token, "-")) {
        safe_point();
        const bool minus = token_is(token, "-");
        scanner(input, token, cursor);
        matrix_value right;
        read_right(arr_term, input, cursor, sum, right);
        add_values(sum, right, minus);
    }
}

void arr_expre(stream *input, name **cursor, matrix_value &result) {
    arr_term(input, cursor, result);
    rest_of_sum(input, cursor, result);
}

void half_arr_expre(stream *input, name **cursor, matrix_value &result) {
    half_arr_fact(input, cursor, result);
    rest_of_product(input, cursor, result);
    rest_of_sum(input, cursor, result);
}

/* ---- the statement ---- */

void array_expression(stream *input, quolynode **result, name **cursor) {
    matrix_value value;
    kept_value<known_shape> shape(shape_at_hand, {});
    kept_value<int> dense(want_sparse, 0);
    arr_expre(input, cursor, value);
    if (value.is_scalar()) {
        value.scalar.release_to(result);
    } else {
        fill_syst_array(value);
        quoly_set(0, result);
    }
}

} // namespace tolvek
