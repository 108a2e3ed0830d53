/* The determinant, and what is asked about the entries of a matrix by the same word. */
#include "display/progress.h"
#include "language/builtin_array_args.h"
#include "language/builtin_routines.h"
#include "matrix/array_arithmetic.h"
#include "matrix/determinant.h"
#include "poly/coefficients.h"
#include "top/driver.h"

namespace tolvek {

/* ---- counts and extremes ---- */

/* Det#([x] = e) and with > or <: how many entries are so. */
static void count_by_relation(builtin_call &call) {
    matrix_value m;
    call.read_on();
    if (!token_is(token, "(")) array_error(64, token);
    read_array_factor(call, m);
    if (m.is_scalar()) array_error(72, token);
    const int relation = first_char(token);
    if (!token_is(token, "=") && !token_is(token, ">") && !token_is(token, "<")) array_error(65, token);
    quoly_handle value;
    {
        held_value matrix;
        call.read_on();
        old_expre(call.input, value.slot(), call.cursor);
    }
    if (!token_is(token, ")")) array_error(66, token);
    call.read_on();
    quoly_set_int64(count_entries(m, relation, value.get()), call.result);
}

/* The place of an extreme entry as an index of the array, column by column. */
static void place_of_extreme(builtin_call &call, bool greatest, bool may_be_positive) {
    matrix_value m;
    call.read_on();
    const bool positive = may_be_positive && token_is(token, "+");
    if (positive) call.read_on();
    arr_fact(call.input, call.cursor, m);
    if (m.is_scalar()) array_error(72, token);
    quoly_set_int64(extreme_entry(m, greatest, positive) + addresser, call.result);
}

/* ---- the arguments of a determinant ---- */

/* What stands behind the matrix: a factor, two degrees, a power; each may be left out between its commas. */
struct determinant_arguments {
    poly_handle factor;
    determinant_hints hints;

    void read(builtin_call &call);

  private:
    void read_factor(builtin_call &call);
    void read_power(builtin_call &call);
};

static bool has_negative_exponents(const polynode *p) {
    for (int level = 1; level <= number_polys; level++)
        if (codegree(p, level) < 0) return true;
    return false;
}

void determinant_arguments::read_factor(builtin_call &call) {
    quoly_handle value;
    old_expre(call.input, value.slot(), call.cursor);
    if (!value->is_num && value->den) return warning(1, "");
    if (value->is_num)
        quoly_to_poly(value.get(), factor.slot());
    else
        poly_assign(value->num, factor.slot());
    if (lintmode && has_negative_exponents(factor.get())) array_error(198, token);
    hints.factor = factor.get();
}

static int32_t read_integer(builtin_call &call) {
    modular_pause pause;
    quoly_handle value;
    old_expre(call.input, value.slot(), call.cursor);
    const int64_t n = integer_argument(value.get(), 227);
    if (n < INT32_MIN || n > INT32_MAX) array_error(227, token);
    return static_cast<int32_t>(n);
}

static int32_t read_degree(builtin_call &call) {
    const int32_t degree = read_integer(call);
    if (degree <= 0 && degree != -1) {
        warning(2, "");
        return -1;
    }
    return degree;
}

/* A power of two is halved; 2 and 3 bring nothing. */
void determinant_arguments::read_power(builtin_call &call) {
    const int32_t power = read_integer(call);
    if (power >= -1 && power <= 1) array_error(351, token);
    hints.power = power;
    if (power == 2 || power == 3) {
        hints.power = -1;
        if (verbose) say(" Warning. Setting power = 2 has no effect.\n");
    } else if (power % 2 == 0 && power > 0 && (power & (power - 1)) == 0) {
        hints.power = power / 2;
    } else if (power % 2 == 0) {
        warning(4, "");
    }
}

void determinant_arguments::read(builtin_call &call) {
    constexpr int most_arguments = 4;
    held_value matrix;
    for (int place = 1; token_is(token, ","); place++) {
        if (place > most_arguments) array_error(15, token);
        call.read_on();
        if (token_is(token, ",") || token_is(token, ")")) continue;
        switch (place) {
        case 1: read_factor(call); break;
        case 2: hints.degree = read_degree(call); break;
        case 3: hints.degree2 = read_integer(call); break;
        default: read_power(call);
        }
    }
}

/* ---- the determinant ---- */

/* *result := the determinant of a matrix. */
static void give_determinant(builtin_call &call, matrix_value &m, const determinant_hints &hints) {
    if (m.is_scalar()) array_error(46, token);
    if (!m.is_square()) array_error(241, token);
    m.fill_holes();
    call.give(1);
    if (m.is_dense() && first_available > work_arrays)
        warning(90, "");
    else
        mat_determinant(m, hints, call.result);
}

/* [x], factor, degree, degree, power and ")", with the token in front of them. */
static void read_determinant_list(builtin_call &call, matrix_value &m, determinant_arguments &arguments) {
    call.read_on();
    if (token_is(token, ")") || token_is(token, ",")) array_error(46, token);
    arr_expre(call.input, call.cursor, m);
    arguments.read(call);
    close_paren(call);
}

/* Det [x], Det([x], factor, degree, degree, power) */
static void determinant_of(builtin_call &call) {
    matrix_value m;
    determinant_arguments arguments;
    if (token_is(token, "("))
        read_determinant_list(call, m, arguments);
    else
        arr_fact(call.input, call.cursor, m);
    give_determinant(call, m, arguments.hints);
}

void builtin_determinant(builtin_call &call) {
    call.read_on();
    if (token_is(token, "#"))
        count_by_relation(call);
    else if (token_is(token, "^"))
        place_of_extreme(call, true, false);
    else if (token_is(token, "_"))
        place_of_extreme(call, false, true);
    else
        determinant_of(call);
}

/* SDet(k, [s], ...): the value does not depend on k, the number of primes that an interpolation may take as points. */
void builtin_sparse_determinant(builtin_call &call) {
    constexpr int fewest_primes = 2;
    if (lintmode) array_error(377, token);
    check_for_paren(call);
    argument primes;
    primes.read_expression(call);
    if (integer_argument(primes.get(), 227) < fewest_primes) array_error(364, token);
    if (!token_is(token, ",")) array_error(202, token);
    matrix_value m;
    determinant_arguments arguments;
    read_determinant_list(call, m, arguments);
    if (!m.is_sparse()) array_error(333, token);
    give_determinant(call, m, arguments.hints);
}

void builtin_least_entry(builtin_call &call) { place_of_extreme(call, false, true); }

} // namespace tolvek
