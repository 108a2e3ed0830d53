/* Factors of array expressions: one row of the table for each way in which one begins, then the postfix operators. */
#include "language/expressions.h"
#include "matrix/array_arithmetic.h"
#include "matrix/array_expressions.h"
#include "matrix/array_literals.h"
#include "matrix/determinant.h"
#include "numbers/handles.h"
#include "quoly/calculus.h"
#include "quoly/compare.h"
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
    void read_argument(matrix_value &argument) { arr_expre(input, cursor, argument); }
    void need(const char *text, int n) { require(text, n, input, cursor); }
};

/* ---- brackets and prefix operators ---- */

static void bracket(array_factor &f) { read_array_literal(f.input, f.cursor, f.result); }

static void parenthesis(array_factor &f) {
    f.read_on();
    f.read_argument(f.result);
    f.need(")", 1);
}

static void negation(array_factor &f) {
    f.read_operand();
    negate_value(f.result);
}

static void transposition(array_factor &f) {
    f.read_operand();
    transpose(f.result);
}

static void diagonal(array_factor &f) {
    f.read_operand();
    extract_diagonal(f.result);
}

/* Adjoint factor */
static void adjoint_matrix(array_factor &f) {
    f.read_operand();
    if (f.result.is_scalar()) array_error(72, token);
    if (!f.result.is_square()) array_error(241, token);
    if (f.result.is_sparse()) array_error(242, token);
    adjoint(f.result);
}

static void greatest_integer(array_factor &f) {
    f.read_operand();
    greatest_integers(f.result);
}

static void absolute_value(array_factor &f) {
    f.read_operand();
    f.need("|", 63);
    magnitudes(f.result);
}

/* ---- words with arguments ---- */

/* Altmult(a, b) */
static void alternative_product(array_factor &f) {
    matrix_value right, product;
    f.read_on();
    f.need("(", 177);
    f.read_argument(f.result);
    f.need(",", 202);
    {
        held_value left;
        f.read_argument(right);
    }
    f.need(")", 1);
    if (f.result.is_scalar() || right.is_scalar()) array_error(72, token);
    if (f.result.is_sparse() || right.is_sparse()) array_error(242, token);
    if (f.result.cols() != right.rows) array_error(39, token);
    f.result.fill_holes();
    right.fill_holes();
    fast_mat_mult(f.result, right, product);
    f.result.take(product);
}

/* An exponent as an argument, computed exactly. Error 116. */
static void read_exponent_argument(array_factor &f, number *exponent) {
    held_value matrix;
    modular_pause pause;
    quoly_handle value;
    old_expre(f.input, value.slot(), f.cursor);
    if (!value->is_num) array_error(116, token);
    num_assign(value->numb, exponent);
}

/* "(" matrix "," exponent */
static void read_power_arguments(array_factor &f, number *exponent) {
    f.read_on();
    f.need("(", 177);
    f.read_argument(f.result);
    f.need(",", 202);
    read_exponent_argument(f, exponent);
}

/* Altpower(a, n) */
static void alternative_power(array_factor &f) {
    number_handle exponent;
    read_power_arguments(f, &exponent);
    f.need(")", 1);
    alt_mat_power(f.result, &exponent);
}

/* MPowermod(a, n), MPowermod(a, n, m) */
static void modular_power(array_factor &f) {
    number_handle exponent;
    quoly_handle modulus_value;
    read_power_arguments(f, &exponent);
    if (token_is(token, ",")) {
        held_value matrix;
        f.read_on();
        old_expre(f.input, modulus_value.slot(), f.cursor);
    }
    f.need(")", 1);
    if (modulus_value) {
        if (!modulus_value->is_num) array_error(288, token);
        if (lintmode || compare_quolys(modulus_value.get(), quol_num_1) < 0) array_error(188, token);
    }
    matpowermod(f.result, &exponent, modulus_value.get());
}

/* ---- scalars ---- */

/* Its postfix operator is read by the caller. */
static void scalar_factor(array_factor &f) {
    if (token_is(token, "*"))
        old_fact(f.input, f.result.scalar.slot(), f.cursor);
    else
        bare_fact(f.input, f.result.scalar.slot(), f.cursor);
}

/* ---- the table ---- */

struct array_form {
    const char *beginning;
    void (*read)(array_factor &);
};

static constexpr array_form array_forms[] = {
    {"[", bracket},
    {"'", bracket},
    {"(", parenthesis},
    {"-", negation},
    {"Trans", transposition},
    {"Diag", diagonal},
    {"$", greatest_integer},
    {"|", absolute_value},
    {"Adjoint", adjoint_matrix},
    {"Altmult", alternative_product},
    {"Altpower", alternative_power},
    {"MPowermod", modular_power},
};

static void (*form_of(const token_record &t))(array_factor &) {
    for (const array_form &form : array_forms)
        if (token_equals(t, form.beginning)) return form.read;
    return scalar_factor;
}

/* ---- postfix operators ---- */

static void power(stream *input, name **cursor, matrix_value &m) {
    number_handle exponent;
    {
        held_value base;
        get_exponent(input, cursor, &exponent, 1);
    }
    if (m.is_scalar())
        raise_to_power(m.scalar.slot(), &exponent);
    else
        matrix_power(m, &exponent);
}

void evaluate_at_array(stream *input, name **cursor, matrix_value &p) {
    matrix_value at;
    {
        held_value polynomial;
        read_array_literal(input, cursor, at);
    }
    quoly_at_matrix(p.scalar.get(), at);
    p.take(at);
}

/* In an index or an exponent of the modular ring values are machine integers, which no array can take. */
void evaluate_into_syst_array(stream *input, name **cursor, quolynode **q) {
    if (mod_is_changed) array_error(62, token);
    matrix_value value;
    *value.scalar.slot() = *q;
    *q = nullptr;
    evaluate_at_array(input, cursor, value);
    fill_syst_array(value);
    quoly_set(0, q);
}

static void evaluation(stream *input, name **cursor, matrix_value &m) {
    scanner(input, token, cursor);
    if (m.is_scalar() && token_is(token, "[")) return evaluate_at_array(input, cursor, m);
    evaluation_point point;
    const quolynode *values[most_variables];
    const int count = point.read(input, cursor, values);
    evaluate_entries(m, values, count);
}

void half_arr_fact(stream *input, name **cursor, matrix_value &result) {
    if (token_is(token, "^"))
        power(input, cursor, result);
    else if (token_is(token, "#"))
        evaluation(input, cursor, result);
    else if (result.is_scalar() && token_is(token, "!"))
        half_fact(input, result.scalar.slot(), cursor);
    if (result.is_scalar() && token_is(token, "\"")) half_fact(input, result.scalar.slot(), cursor);
}

/* ---- the factor ---- */

void arr_fact(stream *input, name **cursor, matrix_value &result) {
    check_stack();
    safe_point();
    result.clear();
    array_factor f{input, cursor, result};
    form_of(token)(f);
    half_arr_fact(input, cursor, result);
}

} // namespace tolvek
