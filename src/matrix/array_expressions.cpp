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

/* ---- operators ---- */

/* Operators of one precedence, and what stands between them. */
struct operator_chain {
    int (*here)(); /* the operator that `token` is, or stands behind; 0: the chain ends */
    void (*read_operand)(stream *, name **, matrix_value &);
    void (*combine)(int op, matrix_value &, matrix_value &);
};

/* A letter stands for "*" in front of it; the words "or" and "and" end a product. */
static int product_operator() {
    const int c = first_char(token);
    if (is_letter(c)) return token_is(token, "or") || token_is(token, "and") ? 0 : '*';
    return PSet_Test(arr_term_ops, c) && token.text[1] == 0 ? c : 0;
}

static int sum_operator() { return token_is(token, "+") ? '+' : token_is(token, "-") ? '-' : 0; }

static void add_or_subtract(int op, matrix_value &a, matrix_value &b) { add_values(a, b, op == '-'); }

static constexpr operator_chain products{product_operator, arr_fact, multiply_values};
static constexpr operator_chain sums{sum_operator, arr_term, add_or_subtract};

static void read_rest(const operator_chain &chain, stream *input, name **cursor, matrix_value &left) {
    while (const int op = chain.here()) {
        safe_point();
        if (!is_letter(first_char(token))) scanner(input, token, cursor);
        matrix_value right;
        {
            held_value held;
            kept_value<known_shape> shape(shape_at_hand, shape_beside(left));
            chain.read_operand(input, cursor, right);
        }
        chain.combine(op, left, right);
    }
}

void arr_term(stream *input, name **cursor, matrix_value &result) {
    arr_fact(input, cursor, result);
    read_rest(products, input, cursor, result);
}

void arr_expre(stream *input, name **cursor, matrix_value &result) {
    arr_term(input, cursor, result);
    read_rest(sums, input, cursor, result);
}

void half_arr_expre(stream *input, name **cursor, matrix_value &result) {
    half_arr_fact(input, cursor, result);
    read_rest(products, input, cursor, result);
    read_rest(sums, input, cursor, result);
}

/* ---- the statement ---- */

void give_statement_value(matrix_value &value, quolynode **result) {
    if (value.is_scalar()) {
        value.scalar.release_to(result);
    } else {
        fill_syst_array(value);
        quoly_set(0, result);
    }
}

void array_expression(stream *input, quolynode **result, name **cursor) {
    matrix_value value;
    kept_value<known_shape> shape(shape_at_hand, {});
    kept_value<int> dense(want_sparse, 0);
    arr_expre(input, cursor, value);
    give_statement_value(value, result);
}

} // namespace tolvek
