/* Lists of monomials. The variables of a monomial stand from the innermost to the outermost; a blank follows each
   monomial, also the last. */
#include "by_hand.h"

using namespace tolvek;

struct monomials : exact_display {
    void SetUp() override {
        exact_display::SetUp();
        name_variables({"x", "y"});
        monomial_list = 1;
    }
    polynode *example() { return list({t(2, t(1, n(3))), t(1, n(-1)), n(5)}); }
};

TEST_F(monomials, variables_stand_innermost_first) {
    /* 3 1, * 2, y 3, * 4, x 5, ^2 6, blank 7; "- " 9, 1 for the star that is not there 10, x 11, blank 12;
       "+ " 14, 5 15, blank 16 */
    EXPECT_EQ(shown(example()), "3*y*x^2 - x + 5 ");
    EXPECT_EQ(column, 16);
}

TEST_F(monomials, products_are_multiplied_out_term_by_term) {
    EXPECT_EQ(shown(t(2, list({t(1, n(1)), n(1)}))), "y*x^2 + x^2 ");
    EXPECT_EQ(shown(list({t(1, list({t(3, n(-7)), n(2)})), wrap(list({t(1, n(-1)), n(-1)}))})),
              "-7*y^3*x + 2*x - y - 1 ");
    name_variables({"x", "y", "z"});
    EXPECT_EQ(shown(list({t(1, n(1)), wrap(wrap(t(4, n(-1))))})), "x - z^4 ");
    EXPECT_EQ(shown(t(1, t(1, t(1, n(2))))), "2*z*y*x ");
}

TEST_F(monomials, minus_1_at_the_beginning_has_a_blank) {
    EXPECT_EQ(shown(list({t(1, n(-1)), n(-1)})), "- x - 1 ");
    EXPECT_EQ(shown(list({t(1, n(-2)), n(1)})), "-2*x + 1 ");
    EXPECT_EQ(shown(n(-1)), "-1"); /* a bare number is no list */
}

TEST_F(monomials, compact_style) {
    uglyprint = 1;
    continuation = ' ';
    EXPECT_EQ(shown(example()), "3*y*x^2-x+5");
    EXPECT_EQ(column, 11); /* 3, *, y, *, x, ^2 6; - 7, 8, x 9; + 10, 5 11 */
    EXPECT_EQ(shown(list({t(1, n(-1)), n(-1)})), "-x-1");
}

TEST_F(monomials, one_variable_is_shown_nested) {
    name_variables({"x"});
    EXPECT_EQ(shown(list({t(2, n(1)), t(1, n(-3)), n(1)})), "x^2 - 3x + 1");
}

TEST_F(monomials, negative_exponents) {
    laurent = 1;
    EXPECT_EQ(shown(list({t(1, list({n(1), t(-1, n(1))})), wrap(list({n(-2), t(-3, n(1))}))})),
              "x + y^-1*x - 2 + y^-3 ");
    uglyprint = 1;
    EXPECT_EQ(shown(t(-1, t(-1, n(1)))), "y^(-1)*x^(-1)");
}

TEST_F(monomials, residues) {
    take_modulus(7);
    EXPECT_EQ(shown(list({t(2, t(1, n(6))), t(1, n(4)), n(6)})), "- y*x^2 - 3*x - 1 ");
    alt_form_display = 0;
    EXPECT_EQ(shown(list({t(2, t(1, n(6))), t(1, n(4)), n(6)})), "6*y*x^2 + 4*x + 6 ");
}

/* ---- lines ---- */

TEST_F(monomials, a_line_ends_10_columns_before_the_margin_in_front_of_a_term) {
    dispcutoff = 20; /* 7 columns behind the first monomial, 12 behind the second: 10 is reached */
    EXPECT_EQ(shown(example()), "3*y*x^2 - x  `\n+ 5 ");
    EXPECT_EQ(column, 4);
    EXPECT_EQ(lines, 1);
    EXPECT_EQ(in_file(example()), "3*y*x^2 - x \n+ 5 ");
    dispcutoff = 22;
    EXPECT_EQ(shown(example()), "3*y*x^2 - x  `\n+ 5 ");
    dispcutoff = 23;
    EXPECT_EQ(shown(example()), "3*y*x^2 - x + 5 ");
    uglyprint = 1; /* behind the two monomials 9 columns */
    continuation = '~';
    dispcutoff = 19;
    EXPECT_EQ(shown(example()), "3*y*x^2-x~\n+5");
    dispcutoff = 20;
    EXPECT_EQ(shown(example()), "3*y*x^2-x+5");
}

TEST_F(monomials, a_line_ends_before_a_variable) {
    dispcutoff = 11; /* 9 figures and the star: 10 columns */
    EXPECT_EQ(shown(wrap(t(1, n(123456789)))), "123456789* `\ny ");
    EXPECT_EQ(column, 2);
    dispcutoff = 12;
    EXPECT_EQ(shown(wrap(t(1, n(123456789)))), "123456789*y ");
    dispcutoff = 13; /* 9 figures, star, y, star: 12 */
    EXPECT_EQ(shown(t(1, t(1, n(123456789)))), "123456789*y* `\nx ");
    EXPECT_EQ(lines, 1);
}

TEST_F(monomials, after_151_lines_the_rest_is_left_out) {
    dispcutoff = 14; /* 4 columns are left for a line: each term of 5 columns and more takes one */
    auto terms = [](int count) {
        polynode *p = n(1);
        for (int e = 1; e <= count; e++) {
            polynode *term = t(1000 + e, n(1));
            term->next = p;
            p = term;
        }
        return p;
    };
    std::string expected;
    for (int i = 0; i < 151; i++) expected += (i ? "+ x^" : "x^") + std::to_string(1200 - i) + "  `\n";
    EXPECT_EQ(shown(terms(200)), expected + "   ... more output suppressed ... \n");
    EXPECT_EQ(lines, 151);
    EXPECT_EQ(shown(terms(150)).find("suppressed"), std::string::npos); /* the 151st term stands on the 151st line */
    do_line_sup = 0;
    EXPECT_EQ(shown(terms(200)).find("suppressed"), std::string::npos);
    EXPECT_EQ(lines, 200);
    do_line_sup = 1;
    EXPECT_EQ(in_file(terms(200)).find("suppressed"), std::string::npos);
    EXPECT_EQ(lines, 200);
}

TEST_F(monomials, broken_lists_are_reported) {
    set_input("&_p\n&_p\n");
    std::string text = shown(list({t(1, n(1)), wrap(n(3))}));
    EXPECT_NE(text.find("x *** Tolvek error.  Warning! extra 0-exponent node in this polynomial. Trash it.\n"),
              std::string::npos)
        << text;
    set_input("&_p\n&_p\n");
    text = shown(t(1, t(1, t(1, n(1)))));
    EXPECT_NE(text.find("*** Tolvek error.  q = NULL at start of poly_display.\n"), std::string::npos) << text;
}
