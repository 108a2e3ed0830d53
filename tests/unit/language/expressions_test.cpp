#include "support/fresh_system.h"
#include "support/reports.h"

#include "language/execution.h"
#include "language/names.h"
#include "quoly/quoly.h"
#include "top/driver.h"

using namespace tolvek;

namespace {

using expressions = fresh_system;
struct exact_expressions : fresh_exact_system {};
using assignments = fresh_system;
struct exact_assignments : fresh_exact_system {};

/* ---- products and precedence ---- */

TEST_F(expressions, factors_side_by_side_multiply) {
    run("x := 4\ny := 5");
    EXPECT_EQ(value_of("2x"), "8");
    EXPECT_EQ(value_of("2(x+1)"), "10");
    EXPECT_EQ(value_of("x y"), "20");
    EXPECT_EQ(value_of("(2)(3)"), "6");
}

TEST_F(expressions, or_and_and_end_a_term) {
    run("x := 4\ny := 5");
    EXPECT_EQ(error_of(run("x or y")), 129);
    EXPECT_EQ(error_of(run("x and y")), 129);
}

TEST_F(expressions, a_sign_binds_to_the_factor_with_its_power) { EXPECT_EQ(value_of("-2^2"), "-4"); }

TEST_F(expressions, powers_associate_to_the_right) { EXPECT_EQ(value_of("2^3^2"), "512"); }

TEST_F(expressions, sums_go_from_left_to_right) { EXPECT_EQ(value_of("10-3-2+1"), "6"); }

TEST_F(expressions, a_quote_behind_the_exponent_differentiates_the_exponent) {
    EXPECT_EQ(value_of("5^3\""), "1"); /* 5^0 */
    EXPECT_EQ(value_of("(5^3)\""), "0");
    EXPECT_EQ(value_of("(5^3)\"\""), "0");
}

TEST_F(expressions, there_is_no_unary_plus) { EXPECT_EQ(error_of(run("+1")), 2); }

TEST_F(expressions, a_factor_takes_one_power_or_factorial) { EXPECT_EQ(error_of(run("x := 3:\nx!^2")), 129); }

TEST_F(expressions, a_sign_lets_the_inner_and_the_outer_factor_take_an_operator_each) {
    run("x := 3:");
    EXPECT_EQ(value_of("-x!^2"), "36");
}

TEST_F(expressions, two_slashes_are_a_quotient) { EXPECT_EQ(value_of("7//2"), "3.5"); }

TEST_F(expressions, a_slash_behind_another_operator_is_refused) {
    EXPECT_EQ(error_of(run("2*/3")), 339);
    EXPECT_EQ(error_of(run("2\\/3")), 339);
}

TEST_F(exact_expressions, quotients_and_remainders_of_integers) {
    EXPECT_EQ(value_of("7\\2"), "3");
    EXPECT_EQ(value_of("7|2"), "1");
    EXPECT_EQ(value_of("-7|2"), "1");
    EXPECT_EQ(value_of("-7\\2"), "-3");
}

TEST_F(exact_expressions, the_greatest_integer_is_the_floor) {
    EXPECT_EQ(value_of("$(7/2)"), "3");
    EXPECT_EQ(value_of("$(-7/2)"), "-4");
    EXPECT_EQ(value_of("$5"), "5");
}

TEST_F(expressions, the_greatest_integer_of_a_float_is_its_floor) {
    EXPECT_EQ(value_of("$(-3.5)"), "-4");
    EXPECT_EQ(value_of("$2.9"), "2");
}

TEST_F(exact_expressions, bars_give_the_magnitude) {
    EXPECT_EQ(value_of("|-5|"), "5");
    EXPECT_EQ(value_of("|(2-9)|"), "7");
    EXPECT_EQ(error_of(run("|5")), 63);
}

/* ---- literals ---- */

TEST_F(expressions, blanks_inside_a_number_do_not_count) { EXPECT_EQ(value_of("12 34"), "1234"); }

TEST_F(expressions, a_float_literal_has_a_signed_exponent) {
    EXPECT_EQ(value_of("1e+5"), "100000");
    EXPECT_EQ(value_of("25e-1"), "2.5");
    EXPECT_EQ(value_of("1.5e+3"), "1500");
    EXPECT_EQ(value_of("1e+4000"), "1e+4000");
}

TEST_F(expressions, e_with_figures_behind_it_is_a_name) {
    run("e5 := 7:");
    EXPECT_EQ(value_of("2e5"), "14");
    EXPECT_EQ(error_of(run("2e 5")), 376);
    EXPECT_EQ(error_of(run("1e")), 376);
}

TEST_F(expressions, literals_are_the_nearest_floats) {
    EXPECT_EQ(value_of(".5"), "0.5");
    EXPECT_EQ(value_of("3."), "3");
    EXPECT_EQ(value_of("1.1"), "1.1");                    /* 1.1L in 20 figures is 1.1000000000000000000 */
    EXPECT_EQ(value_of("0.7"), "0.69999999999999999999"); /* 0.7L in 20 figures, by the C library */
}

TEST_F(expressions, a_point_without_figures_is_no_number) { EXPECT_EQ(error_of(run(".")), 2); }

TEST_F(exact_expressions, decimals_are_exact) {
    EXPECT_EQ(value_of("0.5+0.5"), "1");
    EXPECT_EQ(value_of(".125*8"), "1");
}

TEST_F(exact_expressions, integers_have_any_size) {
    EXPECT_EQ(value_of("99999999999999999999+1"), "100000000000000000000");
    EXPECT_EQ(value_of("2^100"), "1267650600228229401496703205376"); /* Python: 2**100 */
    EXPECT_EQ(value_of("30!"), "265252859812191058636308480000000"); /* Python: math.factorial(30) */
}

TEST_F(expressions, a_character_stands_for_its_code) {
    EXPECT_EQ(value_of("'A'"), "65");
    EXPECT_EQ(value_of("' '"), "32");
    EXPECT_EQ(value_of("'A'+1"), "66");
    EXPECT_EQ(error_of(run("'AB'")), 109);
    EXPECT_EQ(error_of(run("'A")), 109);
}

/* ---- float functions ---- */

TEST_F(expressions, functions_of_the_float_ring) {
    EXPECT_EQ(value_of("_sqrt(9)"), "3");
    EXPECT_EQ(value_of("_sin(0)"), "0");
    EXPECT_EQ(value_of("_cos(0)"), "1");
    EXPECT_EQ(value_of("_ln(1)"), "0");
    EXPECT_EQ(value_of("_e(0)"), "1");
    EXPECT_EQ(value_of("_atan(0)"), "0");
    EXPECT_EQ(value_of("_tan(0)"), "0");
    EXPECT_EQ(value_of("_asin(0)"), "0");
    EXPECT_EQ(value_of("4*_atan(1)"), value_of("2*_asin(1)"));
}

TEST_F(expressions, an_unknown_function_warns_and_leaves_the_value) {
    std::string text = run("_cosh(3)");
    EXPECT_NE(text.find("Warning. function cosh is not defined.\n"), std::string::npos);
    EXPECT_NE(text.find("\n3\n"), std::string::npos);
}

TEST_F(expressions, errors_of_the_float_functions) {
    EXPECT_EQ(error_of(run("_sqrt 4")), 177);
    EXPECT_EQ(error_of(run("_sqrt(4")), 1);
}

TEST_F(exact_expressions, outside_the_float_ring_the_underscore_is_left_standing) {
    EXPECT_EQ(error_of(run("_sin(0)")), 129);
}

/* ---- failures of factors ---- */

TEST_F(expressions, each_failure_has_its_number) {
    struct {
        const char *statement;
        int number;
    } const cases[] = {
        {"(1", 1},     {"1)", 129}, {")", 2},         {"y", 19},      {"2+", 2},    {"a[1]", 28}, {"F(2)", 16},
        {"<[1]", 175}, {"<F", 222}, {"%[1][1]", 220}, {"%1[1]", 217}, {"*3", 337},  {"1/0", 22},  {"0^-1", 22},
        {"{", 2},      {"\x7f", 2}, {"\xC3", 2},      {"1=1", 129},   {"1,2", 129},
    };
    for (const auto &c : cases) EXPECT_EQ(error_of(run(c.statement)), c.number) << c.statement;
}

TEST_F(expressions, zero_to_the_power_of_zero_is_one) { EXPECT_EQ(value_of("0^0"), "1"); }

TEST_F(exact_expressions, an_exponent_of_two_digits_is_refused) {
    EXPECT_EQ(error_of(run("2^268435456")), 32);
    EXPECT_EQ(error_of(run("2^(1/2)")), 116);
}

TEST_F(exact_expressions, a_rational_has_no_factorial) { EXPECT_EQ(error_of(run("(1/2)!")), 130); }

TEST_F(exact_expressions, negative_powers_are_reciprocals) {
    EXPECT_EQ(value_of("8*2^-3"), "1");
    EXPECT_EQ(value_of("(2/3)^-2*4"), "9");
}

TEST_F(expressions, a_word_of_the_language_of_shells_is_explained) {
    EXPECT_NE(run("quit").find(" The quit command is &q.\n"), std::string::npos);
}

TEST_F(expressions, nothing_leaks_from_a_failing_statement) {
    run("x := 3:");
    const char *const failing[] = {"x*(2+y)",    "(1+2*(3+(4", "x^(2",     "2*x/0",
                                   "_sqrt(2+y)", "x*y!",       "-(-(-y))", "1+2+3)"};
    for (const char *statement : failing) run(statement);
    records_in_use before = count_records_in_use();
    for (int i = 0; i < 1000; i++)
        for (const char *statement : failing) run(statement);
    EXPECT_TRUE(count_records_in_use() == before);
}

/* ---- assignment ---- */

TEST_F(assignments, a_variable_takes_the_value) {
    EXPECT_EQ(run("x := 3"), "\n3\n\n");
    EXPECT_EQ(value_of("x"), "3");
}

TEST_F(assignments, a_step_is_one_factor) {
    run("x := 10:\ny := 3:");
    EXPECT_EQ(trimmed(run("x :+")), "11");
    EXPECT_EQ(trimmed(run("x :-")), "10");
    EXPECT_EQ(trimmed(run("x :+ 5")), "15");
    EXPECT_EQ(trimmed(run("x :- y")), "12");
    EXPECT_EQ(error_of(run("x :+ 2y")), 129);
    EXPECT_EQ(value_of("x"), "14");
}

TEST_F(assignments, stepping_creates_the_variable_at_zero) {
    EXPECT_EQ(trimmed(run("z :+")), "1");
    EXPECT_EQ(trimmed(run("w :- 4")), "-4");
}

TEST_F(assignments, a_computed_value_is_no_target) {
    run("x := 1:");
    for (const char *statement : {"x+1 := 2", "2 := 3", "(x) := 3", "x^2 := 3", "2x := 4", "x+1 :+", "< := 3"})
        EXPECT_EQ(error_of(run(statement)), 316) << statement;
    EXPECT_EQ(value_of("x"), "1");
}

TEST_F(assignments, a_bad_token_behind_the_colon) { EXPECT_EQ(error_of(run("x := 1:\nx :* 2")), 317); }

TEST_F(assignments, a_colon_makes_the_statement_silent) {
    EXPECT_EQ(run("x := 5:"), "\n");
    EXPECT_EQ(value_of("<"), "5");
    EXPECT_EQ(run("x:"), "\n");
    EXPECT_EQ(value_of("<"), "5");
}

TEST_F(assignments, the_right_side_is_complete_before_the_target_changes) {
    run("x := 7:");
    EXPECT_EQ(error_of(run("x := 1/0")), 22);
    EXPECT_EQ(value_of("x"), "7");
}

TEST_F(exact_assignments, the_step_of_an_exact_number_has_one_digit) {
    run("x := 1:");
    EXPECT_EQ(error_of(run("x :+ (2^28)")), 224);
    EXPECT_EQ(error_of(run("x :+ (1/2)")), 223);
    EXPECT_EQ(trimmed(run("x :+ 268435455")), "268435456");
}

TEST_F(exact_assignments, a_quotient_takes_no_step) { EXPECT_EQ(error_of(run("x := 1/2:\nx :+ 1")), 196); }

TEST_F(assignments, moving_a_value_out_leaves_1) {
    run("x := 9:");
    EXPECT_EQ(trimmed(run("y := *x")), "9");
    EXPECT_EQ(value_of("x"), "1");
    run("x := 9:");
    EXPECT_EQ(trimmed(run("*x")), "9");
    EXPECT_EQ(value_of("x"), "1");
    run("x := 9:");
    EXPECT_EQ(value_of("*x+1"), "10");
    EXPECT_EQ(value_of("x"), "1");
}

TEST_F(assignments, names_longer_than_ten_characters_are_two_names) {
    run("abcdefghij := 3:\nklmno := 5:");
    EXPECT_EQ(value_of("abcdefghijklmno"), "15");
}

/* ---- sums in stored statements, whose operands are read where they stand ---- */

TEST_F(exact_expressions, stored_sums_have_the_values_of_the_prompt_and_leave_their_operands_whole) {
    run("&(J = t)\nn := 10^40 + 7\nm := -3^70\nr := n/m\np := (t + 2)^5\nq := (t - 1)/(t + 3)\nz := 0");
    const char *const sums[] = {"n",         "n*m",       "n + m",     "n - n",     "-n + m",     "n - m*n + n",
                                "n + r - m", "p*p - n",   "p - p",     "p + q",     "q - p*q",    "n - (m - n)",
                                "p^3 - p",   "2n - m p",  "n/m - r",   "p/q + q/p", "(n)(m) - 1", "n - (m - (n - p))*q",
                                "z + z - p", "n^2 + m^3", "t*p - p*t", "q/q - n/n", "t + 1",      "0 - q"};
    for (const char *text : sums) {
        const std::string sum(text);
        const std::string at_the_prompt = value_of(sum);
        run("for i = 1 to 1 do z := 0 od\nw := 0");
        run("for i = 1 to 3 do w := " + sum + " od");
        EXPECT_EQ(value_of("w"), at_the_prompt) << sum;
    }
    EXPECT_EQ(value_of("n - 10^40"), "7");
    EXPECT_EQ(value_of("m + 3^70"), "0");
    EXPECT_EQ(value_of("r*m - n"), "0");
    EXPECT_EQ(value_of("p - (t + 2)^5"), "0");
    EXPECT_EQ(value_of("q*(t + 3) - t"), "-1");
}

TEST_F(exact_expressions, stored_sums_that_change_what_they_read_take_the_values_in_order) {
    run("n := 10^40\nFunc Set(v) = n := 5; v.\nz := 0");
    run("for i = 1 to 1 do z := n + Set(1) - n od");
    EXPECT_EQ(value_of("z - 10^40"), "-4");
    run("n := 10^40\nfor i = 1 to 1 do z := n*Set(1) od");
    EXPECT_EQ(value_of("z - 10^40"), "0");
    run("n := 10^40\nfor i = 1 to 1 do z := n + *n + n od");
    EXPECT_EQ(value_of("z - 2*10^40"), "1");
}

TEST_F(exact_expressions, stored_sums_leave_no_records_behind) {
    run("&(J = t)\nn := 10^40\np := (t + 2)^5\nq := 1/(t + 3)\nw := 0");
    const std::string loop = "for i = 1 to 5 do w := n*n - p*q + p - (q - n)*t - w + w od\nw := 0\n0";
    run(loop);
    run(loop);
    const records_in_use before = count_records_in_use();
    for (int i = 0; i < 10; i++) run(loop);
    EXPECT_TRUE(count_records_in_use() == before);
}

/* ---- the previous value ---- */

TEST_F(expressions, the_previous_value_is_that_of_the_last_statement) {
    run("6*7");
    EXPECT_EQ(value_of("<+1"), "43");
    EXPECT_EQ(value_of("<"), "43");
    run(";");
    EXPECT_EQ(value_of("<"), "0"); /* behind an empty statement */
}

} // namespace
