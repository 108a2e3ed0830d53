/* The nested form. The expected texts and columns are worked out from the rules of the form; where a column decides
   something, the sum stands beside it. */
#include "by_hand.h"

using namespace tolvek;

/* ---- terms, signs, exponents ---- */

TEST_F(exact_display, terms_stand_in_falling_order_with_their_signs) {
    EXPECT_EQ(shown(list({t(2, n(1)), t(1, n(-3)), n(1)})), "x^2 - 3x + 1");
    EXPECT_EQ(shown(list({t(2, n(-2)), t(1, n(1)), n(-1)})), "-2x^2 + x - 1");
    EXPECT_EQ(shown(list({t(7, n(12345678901)), n(-5)})), "12345678901x^7 - 5");
}

TEST_F(exact_display, columns_of_a_polynomial) {
    /* x 1, ^2 one column: 2, blank 3, next term 4, minus 5, figure 6, x 7, blank 8, next 9, "+ " 11, figure 12 */
    shown(list({t(2, n(1)), t(1, n(-3)), n(1)}));
    EXPECT_EQ(column, 12);
    /* x 1, exponent 1 + trunc(0.3 * 6) = 2: 3, blank 4, next 5; the minus of -1 is not counted, its blank is: 6, x 7 */
    EXPECT_EQ(shown(list({t(100, n(1)), t(1, n(-1))})), "x^100 - x");
    EXPECT_EQ(column, 7);
    EXPECT_EQ(lines, 0);
}

TEST_F(exact_display, columns_of_exponents) {
    struct row {
        int32_t e;
        const char *text;
        int columns;
    };
    /* 1 for the x, 1 for the exponent, and the truncation of 0.3 times the index of its top bit */
    for (row r : {row{1, "x", 1}, row{2, "x^2", 2}, row{15, "x^15", 2}, row{16, "x^16", 3}, row{127, "x^127", 3},
                  row{128, "x^128", 4}, row{1024, "x^1024", 5}, row{16383, "x^16383", 5}, row{16384, "x^16384", 6},
                  row{1 << 30, "x^1073741824", 11}}) {
        EXPECT_EQ(shown(t(r.e, n(1))), r.text);
        EXPECT_EQ(column, r.columns) << r.e;
    }
}

TEST_F(exact_display, coefficients_of_1_and_minus_1_are_left_out) {
    EXPECT_EQ(shown(t(1, n(1))), "x");
    EXPECT_EQ(shown(t(1, n(-1))), "-x");
    EXPECT_EQ(shown(list({t(3, n(-1)), t(2, n(-1)), t(1, n(1)), n(-1)})), "-x^3 - x^2 + x - 1");
    EXPECT_EQ(shown(t(1, n(-1)), {.want_continuation = 1, .blank_after_minus = 1}), "- x");
    EXPECT_EQ(column, 2); /* blank 1, x 2 */
    EXPECT_EQ(shown(t(1, n(-4)), {.want_continuation = 1, .blank_after_minus = 1}), "- 4x");
}

TEST_F(exact_display, bare_numbers) {
    EXPECT_EQ(shown(n(42)), "42");
    EXPECT_EQ(shown(n(-42)), "-42");
    EXPECT_EQ(shown(n(0)), "0");
    EXPECT_EQ(shown(n(42), {.right_justify = 1}), "       42"); /* 6 blanks, the place of the sign, 2 figures */
    EXPECT_EQ(shown(n(-42), {.blank_after_minus = 1}), "-42");
    EXPECT_EQ(shown(n(-42), {.blank_after_minus = 1, .allow_bare_number = 0}), "- 42");
    name_variables({});
    EXPECT_EQ(shown(n(7)), "7");
}

/* ---- several variables ---- */

TEST_F(exact_display, coefficients_that_are_no_numbers_stand_in_parentheses) {
    name_variables({"x", "y"});
    EXPECT_EQ(shown(t(2, list({t(1, n(1)), n(1)}))), "(y + 1)x^2");
    EXPECT_EQ(shown(t(1, t(1, n(1)))), "(y)x");
    EXPECT_EQ(shown(t(1, t(1, n(-1)))), "(-y)x");
    EXPECT_EQ(shown(t(1, t(1, n(-2)))), "(-2y)x");
    EXPECT_EQ(shown(list({t(1, t(1, n(1))), wrap(t(1, n(1)))})), "(y)x + y");
    /* ( 1, y 2, blank 3, next 4, + 6, 1 7, ) 8, x 9, ^2 10 */
    shown(t(2, list({t(1, n(1)), n(1)})));
    EXPECT_EQ(column, 10);
}

TEST_F(exact_display, a_sum_in_parentheses_begins_with_its_own_sign) {
    name_variables({"x", "y"});
    EXPECT_EQ(shown(list({t(2, n(1)), t(1, list({t(1, n(-1)), n(3)}))})), "x^2 + (-y + 3)x");
    EXPECT_EQ(shown(list({t(2, n(-1)), t(1, list({t(1, n(-1)), n(-3)})), n(-1)})), "-x^2 + (-y - 3)x - 1");
}

TEST_F(exact_display, what_does_not_involve_the_outer_variable_follows_without_parentheses) {
    name_variables({"x", "y", "z", "w"});
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(t(1, n(1)))})), "x + y");
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(list({t(1, n(-3)), n(2)}))})), "x - 3y + 2");
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(wrap(t(1, n(-1))))})), "x - z");
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(wrap(wrap(t(1, n(-1)))))})), "x - w");
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(list({t(1, n(-1)), wrap(t(1, n(-1)))}))})), "x - y - z");
    EXPECT_EQ(shown(wrap(wrap(t(1, n(1))))), "z");
    EXPECT_EQ(shown(wrap(wrap(list({t(2, n(-1)), n(7)})))), "-z^2 + 7");
}

TEST_F(exact_display, a_negative_part_in_parentheses_is_added) {
    name_variables({"x", "y", "z", "w"});
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(t(1, t(1, n(-1))))})), "x + (-z)y");
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(wrap(t(1, t(1, n(-5)))))})), "x + (-5w)z");
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(t(1, wrap(t(1, n(-1)))))})), "x + (-w)y");
}

TEST_F(exact_display, nested_three_levels_deep) {
    name_variables({"x", "y", "z"});
    /* ((z + 1)y^2 - z)x^3 + (z)y - 1 */
    EXPECT_EQ(shown(list({t(3, list({t(2, list({t(1, n(1)), n(1)})), wrap(t(1, n(-1)))})),
                          wrap(list({t(1, t(1, n(1))), n(-1)}))})),
              "((z + 1)y^2 - z)x^3 + (z)y - 1");
}

TEST_F(exact_display, a_value_begins_at_the_names_given) {
    name_variables({"x", "y"});
    poly_handle p(t(2, n(3)));
    EXPECT_EQ(text_of([&] { poly_display(Output, p.get(), polynames->pt_next, &column, &lines, {}); }), "3y^2");
}

/* ---- the compact style ---- */

TEST_F(exact_display, compact_style) {
    uglyprint = 1;
    continuation = ' ';
    /* x 1, ^2 2, next 3, -3 5, the star is not counted, x 6, next 7, + 8, 1 9 */
    EXPECT_EQ(shown(list({t(2, n(1)), t(1, n(-3)), n(1)})), "x^2-3*x+1");
    EXPECT_EQ(column, 9);
    EXPECT_EQ(shown(list({t(2, n(1)), t(1, n(-1))})), "x^2-x");
    name_variables({"x", "y"});
    EXPECT_EQ(shown(list({t(2, list({t(1, n(1)), n(1)})), t(1, t(1, n(-1))), n(-4)})), "(y+1)*x^2+(-y)*x-4");
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(t(1, n(-1)))})), "x-y");
}

/* ---- negative exponents ---- */

TEST_F(exact_display, negative_exponents) {
    laurent = 1;
    EXPECT_EQ(shown(t(-1, n(1))), "x^-1");
    EXPECT_EQ(column, 3); /* x, 1 for the sign, 1 for the exponent */
    EXPECT_EQ(shown(t(-20, n(5))), "5x^-20");
    EXPECT_EQ(column, 5); /* 5, x, 1, 1 and trunc(0.3 * 4) = 1 */
    EXPECT_EQ(shown(list({t(1, n(1)), n(-1), t(-1, n(-1))})), "x - 1 - x^-1");
    uglyprint = 1;
    EXPECT_EQ(shown(t(-1, n(1))), "x^(-1)");
    EXPECT_EQ(column, 5); /* x, 3 for the sign, 1 */
    EXPECT_EQ(shown(list({n(1), t(-2, n(3))})), "1+3*x^(-2)");
}

TEST_F(exact_display, a_number_in_front_of_negative_exponents) {
    laurent = 1;
    name_variables({"x", "y"});
    EXPECT_EQ(shown(list({n(1), t(-1, n(1))})), "1 + x^-1");
    EXPECT_EQ(shown(t(1, list({n(1), t(-1, n(1))}))), "(1 + y^-1)x");
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(list({n(-1), t(-1, n(1))}))})), "x - 1 + y^-1");
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(list({n(1), t(-1, n(-1))}))})), "x + 1 - y^-1");
    EXPECT_EQ(shown(list({wrap(t(1, n(1))), t(-1, n(1))})), "y + x^-1");
    EXPECT_EQ(shown(list({wrap(list({n(-2), t(-3, n(1))})), t(-1, t(-1, n(1)))})), "-2 + y^-3 + (y^-1)x^-1");
}

/* ---- modular rings ---- */

TEST_F(exact_display, residues_with_and_without_signs) {
    take_modulus(7);
    EXPECT_EQ(shown(t(1, n(6))), "-x");
    EXPECT_EQ(shown(list({t(2, n(5)), t(1, n(6)), n(4)})), "-2x^2 - x - 3");
    EXPECT_EQ(shown(list({t(2, n(3)), t(1, n(1)), n(3)})), "3x^2 + x + 3");
    alt_form_display = 0;
    EXPECT_EQ(shown(t(1, n(6))), "6x");
    EXPECT_EQ(shown(list({t(2, n(5)), t(1, n(6)), n(4)})), "5x^2 + 6x + 4");
}

TEST_F(exact_display, residues_in_the_compact_style) {
    take_modulus(7);
    uglyprint = 1;
    EXPECT_EQ(shown(list({t(2, n(1)), t(1, n(4)), n(6)})), "x^2-3*x-1");
}

TEST_F(exact_display, residues_modulo_2_have_no_sign) {
    take_modulus(2);
    EXPECT_EQ(shown(list({t(2, n(1)), n(1)})), "x^2 + 1");
}

TEST_F(exact_display, parts_with_negative_residues_in_front) {
    take_modulus(7);
    name_variables({"x", "y"});
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(list({t(1, n(4)), n(2)}))})), "x - 3y + 2");
    EXPECT_EQ(shown(t(1, t(1, n(6)))), "(-y)x");
}

TEST_F(exact_display, elements_of_a_table_field_have_no_sign) {
    take_modulus(256);
    finf = f256 = 1;
    alt_form_display = 0;
    EXPECT_EQ(shown(list({t(2, n(255)), t(1, n(1)), n(200)})), "255x^2 + x + 200");
}

TEST_F(exact_display, exponents_are_measured_as_residues) {
    /* x 1, exponent 1 + trunc(0.3 * 6) */
    shown(t(100, n(1)));
    EXPECT_EQ(column, 3);
    take_modulus(101); /* 100 is -1, with the top bit 0 */
    shown(t(100, n(1)));
    EXPECT_EQ(column, 2);
}

/* ---- floats ---- */

TEST_F(float_display, coefficients_with_20_figures) {
    auto f = [](long double v) {
        polynode *p = n(0);
        p->num->flote_val = v;
        return p;
    };
    EXPECT_EQ(shown(list({t(2, f(0.5L)), t(1, f(-0.25L)), f(-1)})), "0.5x^2 - 0.25x - 1");
    EXPECT_EQ(shown(list({t(2, f(-0.5L)), t(1, f(-1)), f(1.0L / 4)})), "-0.5x^2 - x + 0.25");
    EXPECT_EQ(shown(list({t(2, f(1)), t(1, f(0x1p70L))})),
              "x^2 + 1.1805916207174113034e+21x"); /* 1180591620717411303424 */
    uglyprint = 1;
    EXPECT_EQ(shown(list({t(2, f(1)), t(1, f(-3)), f(1)})), "x^2-3*x+1");
}

TEST_F(float_display, figures_of_floats_are_not_counted) {
    auto f = [](long double v) {
        polynode *p = n(0);
        p->num->flote_val = v;
        return p;
    };
    /* x 1, ^2 2, blank 3, next 4, "+ " 6, the figures nothing */
    EXPECT_EQ(shown(list({t(2, f(2.5L)), f(12345)})), "2.5x^2 + 12345");
    EXPECT_EQ(column, 6);
}

TEST_F(float_display, what_is_no_number_has_the_sign_that_it_shows) {
    auto f = [](long double v) {
        polynode *p = n(0);
        p->num->flote_val = v;
        return p;
    };
    EXPECT_EQ(shown(list({t(1, f(1)), f(__builtin_nanl(""))})), "x + nan");
    EXPECT_EQ(shown(list({t(1, f(1)), f(-__builtin_infl())})), "x - inf");
}

/* ---- small values ---- */

TEST_F(exact_display, values_that_need_no_parentheses) {
    name_variables({"x", "y", "z"});
    struct row {
        polynode *p;
        int small;
    };
    laurent = 1;
    for (row r :
         {row{n(-12), 1}, row{t(3, n(1)), 1}, row{t(3, n(-1)), 1}, row{t(3, n(2)), 0}, row{t(3, t(1, n(1))), 0},
          row{wrap(t(1, n(1))), 1}, row{wrap(wrap(t(2, n(-1)))), 1}, row{wrap(t(1, n(2))), 0},
          row{list({t(1, n(1)), n(1)}), 0}, row{wrap(list({t(1, n(1)), n(1)})), 0}, row{list({n(1), t(-1, n(1))}), 0},
          row{wrap(list({n(1), t(-1, n(1))})), 0}, row{list({wrap(t(1, n(1))), t(-1, n(1))}), 0}}) {
        poly_handle p(r.p);
        EXPECT_EQ(poly_small(p.get()), r.small) << text_of([&] { crude_poly_disp(Output, 1, p.get(), 1, nullptr); });
    }
}

/* ---- lists that are broken ---- */

TEST_F(exact_display, broken_lists_are_reported_and_left_out) {
    set_input("&_p\n&_p\n");
    std::string text = shown(list({t(1, n(1)), wrap(n(3))}));
    EXPECT_NE(text.find("x + *** Tolvek error.  Warning! extra 0-exponent node in this polynomial. Trash it.\n"),
              std::string::npos)
        << text;
    set_input("&_p\n&_p\n");
    text = shown(list({n(1), t(-1, n(1))}));
    EXPECT_NE(text.find("1*** Tolvek error.  Warning! numb next not nil in this polynomial.\n"), std::string::npos)
        << text;
    set_input("&_p\n&_p\n");
    name_variables({});
    text = shown(t(1, n(1)));
    EXPECT_NE(text.find("*** Tolvek error.  q = NULL at start of poly_display.\n"), std::string::npos) << text;
}

/* ---- the raw tree ---- */

TEST_F(exact_display, raw_tree) {
    name_variables({"x", "y"});
    poly_handle p(list({t(2, list({t(1, n(3)), n(-12)})), n(5)}));
    /* Each list two levels deeper, two blanks a level; the number term of the first list below it by 1 + 1 levels. */
    EXPECT_EQ(text_of([&] { crude_poly_disp(Output, 1, p.get(), 1, polynames); }),
              "x: 2 *5 \n"
              "    y: 1 *-12 \n"
              "         : *3 \n" /* 5 - 1 levels, a name of one blank */
              "         **\n"    /* 3 + 1 levels, a blank and the stars */
              "     **\n");
    EXPECT_EQ(uglyprint, 0);
    poly_handle constant(n(7));
    EXPECT_EQ(text_of([&] { crude_poly_disp(Output, 1, constant.get(), 1, nullptr); }), " : *7 \n");
    EXPECT_EQ(text_of([&] { crude_poly_disp(Output, 1, nullptr, 1, polynames); }), "");
}
