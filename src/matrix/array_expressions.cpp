/* Sums and products of array values, and the statement that is an expression. */
#include "matrix/array_expressions.h"

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

/* ---- sums ---- */

void arr_term(stream *input, name **cursor, matrix_value &result) { arr_fact(input, cursor, result); }

static void rest_of_sum(stream *input, name **cursor, matrix_value &sum) {
    while (token_is(token, "+") || token_is(token, "-")) {
        safe_point();
        const bool minus = token_is(token, "-");
        matrix_value right;
        {
            held_value left;
            kept_value<known_shape> shape(shape_at_hand, shape_beside(sum));
            scanner(input, token, cursor);
            arr_term(input, cursor, right);
        }
        add_values(sum, right, minus);
    }
}

void arr_expre(stream *input, name **cursor, matrix_value &result) {
    arr_term(input, cursor, result);
    rest_of_sum(input, cursor, result);
}

void half_arr_expre(stream *input, name **cursor, matrix_value &result) { rest_of_sum(input, cursor, result); }

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
