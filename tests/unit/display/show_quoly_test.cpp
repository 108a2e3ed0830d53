/* Whole values: parentheses, quotients, decimal forms, ends. */
#include "by_hand.h"

#include "numbers/free_lists.h"
#include "top/driver.h"

using namespace tolvek;

static polynode *x_plus(int64_t c) { return list({t(1, n(1)), n(c)}); }

static quolynode *plain(int64_t v) {
    quolynode *q = nullptr;
    quoly_set_int64(v, &q);
    return q;
}

/* ---- parentheses ---- */

TEST_F(exact_display, a_polynomial_has_parentheses_in_a_file_alone) {
    EXPECT_EQ(on_screen(quotient(x_plus(1), nullptr)), "x + 1");
    EXPECT_EQ(value_in_file(quotient(x_plus(1), nullptr)), "( x + 1 )");
    EXPECT_EQ(value_in_file(quotient(t(2, n(-1)), nullptr)), "( -x^2 )");
    monomial_list = 1;
    EXPECT_EQ(value_in_file(quotient(x_plus(1), nullptr)), "x + 1");
    uglyprint = 1;
    monomial_list = 0;
    EXPECT_EQ(value_in_file(quotient(x_plus(1), nullptr)), "(x+1)");
}

TEST_F(exact_display, quotients) {
    EXPECT_EQ(on_screen(quotient(x_plus(1), x_plus(-1))), "( x + 1 ) / ( x - 1 )");
    EXPECT_EQ(on_screen(quotient(t(1, n(1)), x_plus(-1))), "x / ( x - 1 )");
    EXPECT_EQ(on_screen(quotient(t(1, n(-1)), x_plus(-1))), "-x / ( x - 1 )");
    EXPECT_EQ(on_screen(quotient(x_plus(1), t(2, n(1)))), "( x + 1 ) / x^2");
    EXPECT_EQ(on_screen(quotient(n(-3), t(2, n(1)))), "-3 / x^2");
    EXPECT_EQ(on_screen(quotient(n(3), t(2, n(5)))), "3 / ( 5x^2 )");
    EXPECT_EQ(on_screen(quotient(t(1, n(2)), n(3))), "( 2x ) / 3");
    EXPECT_EQ(on_screen(quotient(t(1, n(1)), n(3))), "x / 3");
}

TEST_F(exact_display, quotients_in_a_file) {
    EXPECT_EQ(value_in_file(quotient(x_plus(1), x_plus(-1))), "( x + 1 ) / ( x - 1 )");
    EXPECT_EQ(value_in_file(quotient(t(1, n(1)), n(3))), "( x ) / 3");
    EXPECT_EQ(value_in_file(quotient(n(2), n(3))), "2 / 3");
    monomial_list = 1;
    EXPECT_EQ(value_in_file(quotient(t(1, n(1)), n(3))), "x / 3");
}

TEST_F(exact_display, quotients_in_the_compact_style) {
    uglyprint = 1;
    EXPECT_EQ(on_screen(quotient(x_plus(1), x_plus(-1))), "(x+1)/(x-1)");
    EXPECT_EQ(on_screen(quotient(n(2), t(1, n(1)))), "2/x");
}

TEST_F(exact_display, quotients_of_monomial_lists) {
    name_variables({"x", "y"});
    monomial_list = 1;
    EXPECT_EQ(on_screen(quotient(list({t(1, t(1, n(2))), n(1)}), wrap(list({t(1, n(1)), n(-1)})))),
              "( 2*y*x + 1  ) / ( y - 1  )");
}

TEST_F(exact_display, columns_of_a_quotient) {
    /* "( " 2, x 3, blank 4, next 5, "+ " 7, 1 8; " / " 11; x 12, ^2 13. The closing parenthesis is not counted. */
    on_screen(quotient(x_plus(1), t(2, n(1))));
    EXPECT_EQ(column, 13);
    uglyprint = 1; /* ( 1, x 2, next 3, + 4, 1 5; / 6; x 7, ^2 8 */
    on_screen(quotient(x_plus(1), t(2, n(1))));
    EXPECT_EQ(column, 8);
}

TEST_F(exact_display, a_coefficient_that_is_minus_1_modulo_7_is_small_as_it_is_shown) {
    take_modulus(7);
    EXPECT_EQ(on_screen(quotient(t(1, n(6)), x_plus(1))), "-x / ( x + 1 )");
    alt_form_display = 0;
    EXPECT_EQ(on_screen(quotient(t(1, n(6)), x_plus(1))), "( 6x ) / ( x + 1 )");
}

/* ---- ends and beginnings ---- */

TEST_F(exact_display, ends_of_values) {
    EXPECT_EQ(value_shown(plain(3), {.want_continuation = 1, .terminator = ";"}), "3");
    EXPECT_EQ(value_shown(plain(3), {.want_continuation = 1, .finish = 1, .terminator = ";"}), "        3\n\n");
    extra_line = 0;
    EXPECT_EQ(value_shown(plain(3), {.want_continuation = 1, .finish = 1, .terminator = ";"}), "        3\n");
    extra_line = 1;
    name_variables({});
    EXPECT_EQ(value_shown(plain(3), {.want_continuation = 1, .finish = 1, .terminator = ";"}), "        3\n");
    EXPECT_EQ(value_shown(plain(-3), {.finish = 1, .terminator = ";"}), "       -3;\n");
    EXPECT_EQ(value_shown(plain(3), {.terminator = ";"}), "3");
    EXPECT_EQ(value_shown(plain(3), {.after_value = 1, .terminator = ","}), "3,\n");
    EXPECT_EQ(column, 4);
    EXPECT_EQ(value_shown(plain(3), {.want_continuation = 1, .after_value = 1, .terminator = ","}), "3");
    EXPECT_EQ(column, 1);
}

TEST_F(exact_display, a_finished_polynomial_that_is_a_number_is_justified) {
    EXPECT_EQ(value_shown(quotient(x_plus(1), nullptr), {.want_continuation = 1, .finish = 1}), "x + 1\n\n");
    EXPECT_EQ(value_shown(quotient(x_plus(1), nullptr), {.finish = 1, .terminator = ";"}), "( x + 1 );\n");
}

TEST_F(exact_display, a_blank_in_front) {
    EXPECT_EQ(value_shown(quotient(x_plus(1), nullptr), {.want_continuation = 1, .lead_blank = 1}), " x + 1");
    EXPECT_EQ(value_shown(quotient(x_plus(1), nullptr), {.lead_blank = 1}), "( x + 1 )");
    EXPECT_EQ(value_shown(plain(1), {.want_continuation = 1, .lead_blank = 1}), "1");
    promptsize = 0;
    EXPECT_EQ(value_shown(quotient(x_plus(1), nullptr), {.want_continuation = 1, .lead_blank = 1}), "x + 1");
    promptsize = 1;
}

TEST_F(exact_display, a_value_as_a_subtrahend) {
    EXPECT_EQ(value_shown(quotient(t(1, n(-2)), nullptr), {.want_continuation = 1, .blank_after_minus = 1}), "- 2x");
    EXPECT_EQ(value_shown(plain(-2), {.want_continuation = 1, .blank_after_minus = 1}), "-2");
}

TEST_F(exact_display, a_number_as_a_character) {
    EXPECT_EQ(value_shown(plain('A'), {.want_continuation = 1, .as_character = 1}), "A");
    EXPECT_EQ(value_shown(plain(256 + 'b'), {.as_character = 1}), "b");
    EXPECT_EQ(value_shown(quotient(x_plus(1), nullptr), {.want_continuation = 1, .as_character = 1}), "x + 1");
}

TEST_F(exact_display, showing_changes_no_value_and_keeps_no_record) {
    const records_in_use before = count_records_in_use();
    for (int monomials : {0, 1}) {
        monomial_list = monomials;
        name_variables({"x", "y"});
        on_screen(quotient(list({t(3, t(2, n(12345678901))), wrap(t(1, n(-1)))}), list({t(1, n(1)), n(7)})));
        value_shown(quotient(n(-22), n(7)), {.want_continuation = 1, .finish = 1});
    }
    EXPECT_EQ(count_records_in_use(), before);
}

/* ---- the decimal form ---- */

struct decimal_form : exact_display {
    void SetUp() override {
        exact_display::SetUp();
        name_variables({});
    }
    std::string rational(int64_t a, int64_t b) {
        return value_shown(quotient(n(a), n(b)), {.want_continuation = 1, .finish = 1});
    }
};

TEST_F(decimal_form, forty_figures_of_a_third) {
    EXPECT_EQ(rational(1, 3), "1 / 3;  or  0." + std::string(40, '3') + "\n");
    EXPECT_EQ(rational(-1, 3), "-1 / 3;  or  -0." + std::string(40, '3') + "\n");
    EXPECT_EQ(rational(-7, 2), "-7 / 2;  or  -3.5" + std::string(39, '0') + "\n");
    EXPECT_EQ(rational(1, 100000), "1 / 100000;  or  0.00001" + std::string(35, '0') + "\n");
}

TEST_F(decimal_form, figures_are_cut_off) {
    EXPECT_EQ(rational(2, 3), "2 / 3;  or  0." + std::string(40, '6') + "\n");
    EXPECT_EQ(rational(-2, 3), "-2 / 3;  or  -0." + std::string(40, '6') + "\n");
}

TEST_F(decimal_form, columns) {
    /* 1 1, " / " 4, 3 5; 7 in advance 12; 0 13; 1 in advance 14; 1 15; 40 figures 55 */
    rational(1, 3);
    EXPECT_EQ(column, 55);
}

TEST_F(decimal_form, line_ends) {
    /* 5 columns behind 1 / 3 have reached a margin of 5: a line end. 0 is within 8 columns of it: 8 in advance, a
       line end. The figure: 1; 8 in advance, a line end; 1; then the groups of eight by themselves */
    disp_size = 1;
    make_disp_cons();
    dispcutoff = 5;
    EXPECT_EQ(rational(1, 3), "1 / 3;  or   `\n `\n0. `\n33333333\n");
    /* 20: behind 1 / 3 5, 12, 0 13 (within 8 of 20: 8 in advance: 21, a line end), 1, 8 figures 9 */
    dispcutoff = 20;
    EXPECT_EQ(rational(1, 3), "1 / 3;  or  0. `\n33333333\n");
    EXPECT_EQ(column, 9);
    /* 22: 13 is not within 8 of 22: 14, 15, 23 */
    dispcutoff = 22;
    EXPECT_EQ(rational(1, 3), "1 / 3;  or  0.33333333\n");
    EXPECT_EQ(column, 23);
}

TEST_F(decimal_form, where_there_is_none) {
    disp_size = 0;
    EXPECT_EQ(rational(1, 3), "1 / 3\n");
    disp_size = 5;
    EXPECT_EQ(on_screen(quotient(n(1), n(3))), "1 / 3");
    EXPECT_EQ(value_shown(quotient(n(1), n(3)), {.finish = 1, .terminator = ";"}), "1 / 3;\n");
    name_variables({"x"});
    EXPECT_EQ(value_shown(quotient(t(1, n(1)), n(3)), {.want_continuation = 1, .finish = 1}), "x / 3\n\n");
}

TEST_F(decimal_form, more_and_fewer_groups) {
    run("&d\n2");
    EXPECT_EQ(rational(1, 7), "1 / 7;  or  0.1428571428571428\n");
    run("&d\n12");
    std::string figures;
    for (int i = 0; i < 96; i++) figures += "142857"[i % 6];
    std::string text = rational(1, 7);
    std::erase_if(text, [](char c) { return c == ' ' || c == '`' || c == '\n'; });
    EXPECT_EQ(text, "1/7;or0." + figures);
}

TEST_F(decimal_form, a_large_whole_part) {
    EXPECT_EQ(rational(12345678901, 2), "12345678901 / 2;  or  6172839450.5" + std::string(39, '0') + "\n");
}

/* ---- at the prompt ---- */

TEST_F(exact_display, a_blank_line_follows_with_and_without_variables) {
    EXPECT_EQ(run("2"), "\n        2\n\n");
    name_variables({});
    EXPECT_EQ(run("2"), "\n        2\n\n");
}
