/* Where lines break. The column at each place is summed up from the rules of the form: the texts are worked out by
   hand. */
#include "by_hand.h"

#include "numbers/free_lists.h"
#include "top/interrupts.h"

using namespace tolvek;

struct folding : exact_display {
    std::string check(int at, int want_continuation) {
        column = at;
        lines = 0;
        return text_of([&] { checklength(Output, want_continuation, &column, &lines); });
    }
};

/* ---- the pieces ---- */

TEST_F(folding, a_line_breaks_at_the_margin) {
    EXPECT_EQ(check(75, 1), "");
    EXPECT_EQ(column, 75);
    EXPECT_EQ(check(76, 1), " `\n");
    EXPECT_EQ(column, 0);
    EXPECT_EQ(lines, 1);
    EXPECT_EQ(check(100, 0), "\n");
    EXPECT_EQ(lines, 1);
    continuation = '~';
    EXPECT_EQ(check(76, 1), " ~\n");
    uglyprint = 1;
    EXPECT_EQ(check(76, 1), "~\n");
    EXPECT_EQ(check(76, 0), "~\n");
}

TEST_F(folding, without_a_count_of_lines) {
    column = 76;
    EXPECT_EQ(text_of([&] { checklength320(Output, 1, &column); }), " `\n");
    EXPECT_EQ(column, 0);
    column = 75;
    EXPECT_EQ(text_of([&] { checklength320(Output, 1, &column); }), "");
}

TEST_F(folding, blanks_are_capped) {
    auto blanks = [&](int count) { return text_of([&] { doblanks(Output, count); }).size(); };
    EXPECT_EQ(blanks(5), 5u);
    EXPECT_EQ(blanks(0), 0u);
    EXPECT_EQ(blanks(-5), 0u);
    EXPECT_EQ(blanks(72), 72u);
    EXPECT_EQ(blanks(73), 64u);
    EXPECT_EQ(blanks(100), 64u);
    dispcutoff = 12;
    EXPECT_EQ(blanks(9), 0u);
    EXPECT_EQ(blanks(8), 8u);
    dispcutoff = INT32_MIN;
    EXPECT_EQ(blanks(8), 0u);
    EXPECT_EQ(blanks(INT32_MIN), 0u);
}

/* ---- the nested form ---- */

/* In 1024 to 16383 an exponent takes 1 + trunc(0.3 * 10..13) = 4 columns, so a term x^e takes 5, the blank 1, the next
   term 1, "+ " 2. Behind the m-th term of the first line stand 9m - 4 columns, behind the plus 9m; on later lines,
   which begin with "+ ", 3 more. */
static std::string folded(int top, int count, int a_line, const char *mark) {
    std::string text;
    for (int i = 0; i < count; i++) {
        text += "x^" + std::to_string(top - i);
        if (i + 1 == count) break;
        text += (i + 1) % a_line ? " + " : mark + std::string("\n+ ");
    }
    return text;
}

TEST_F(folding, a_line_ends_behind_a_term) {
    /* the ninth term ends in column 77 of the first line, in 80 of the next; behind the eighth plus stand 75 */
    EXPECT_EQ(shown(powers(5000, 30)), folded(5000, 30, 9, " `"));
    EXPECT_EQ(lines, 3);
    EXPECT_EQ(column, 3 + 9 * 3 - 4);
    EXPECT_EQ(in_file(powers(5000, 30)), folded(5000, 30, 9, ""));
    EXPECT_EQ(lines, 3);
}

TEST_F(folding, a_line_that_ends_behind_a_term_has_no_mark_in_the_compact_style) {
    uglyprint = 1;
    continuation = '~';
    /* a term 5, the next one 1, "+" 1: behind the m-th term 7m - 2, behind the plus 7m, later lines 2 more; with a
       margin of 19 the third term ends in 19 and in 21, and the second plus stands in 14 and in 16 */
    dispcutoff = 19;
    EXPECT_EQ(shown(powers(5000, 7)), "x^5000+x^4999+x^4998\n+x^4997+x^4996+x^4995\n+x^4994");
    EXPECT_EQ(lines, 2);
}

TEST_F(folding, a_line_ends_behind_a_plus) {
    dispcutoff = 9; /* 5 behind a term, 9 behind the plus */
    EXPECT_EQ(shown(powers(5000, 3)), "x^5000 +  `\nx^4999 +  `\nx^4998");
    EXPECT_EQ(lines, 2);
    uglyprint = 1;
    continuation = '~';
    dispcutoff = 7;
    EXPECT_EQ(shown(powers(5000, 3)), "x^5000+~\nx^4999+~\nx^4998");
}

TEST_F(folding, a_line_ends_in_front_of_a_parenthesis_and_behind_it) {
    name_variables({"x", "y"});
    dispcutoff = 4;
    /* (1 y2 blank3 next4 "+ "6: break; 1 1 )2; x3 ^2 4: break behind the term; next1 "+ "3; (4 y5 )6: break; x */
    EXPECT_EQ(shown(list({t(2, list({t(1, n(1)), n(1)})), t(1, t(1, n(1)))})), "(y +  `\n1)x^2 `\n+ (y) `\nx");
    EXPECT_EQ(lines, 3);
    /* x 1, ^2 2, blank 3, next 4, "+ " 6: a break behind the plus leaves the parenthesis on a new line */
    EXPECT_EQ(shown(list({t(2, n(1)), t(1, t(1, n(1)))})), "x^2 +  `\n(y)x");
}

TEST_F(folding, a_line_ends_behind_a_minus_that_stands_for_minus_1) {
    /* x 1, ^9 2, blank 3, next 4; "-" 4, its blank 5 */
    dispcutoff = 5;
    EXPECT_EQ(shown(list({t(9, n(1)), t(8, n(-1))})), "x^9 -  `\nx^8");
    EXPECT_EQ(lines, 1);
    dispcutoff = 6;
    EXPECT_EQ(shown(list({t(9, n(1)), t(8, n(-1))})), "x^9 - x^8");
}

TEST_F(folding, long_numbers_break_between_groups_of_figures) {
    polynode *p = n(0);
    number_from_figures("1234567811111111222222223333333344444444", 40, p->num);
    dispcutoff = 16;
    EXPECT_EQ(shown(t(1, p)), "1234567811111111 `\n 2222222233333333 `\n 44444444x");
    EXPECT_EQ(lines, 0); /* line ends inside a number are not counted */
    EXPECT_EQ(column, 9);
}

TEST_F(folding, a_margin_of_0_or_less_is_harmless) {
    name_variables({"x", "y"});
    for (int margin : {0, -1, -76, INT32_MIN}) {
        dispcutoff = margin;
        for (int monomials : {0, 1}) {
            monomial_list = monomials;
            std::string text = shown(list({t(2, list({t(1, n(-3)), n(12)})), t(1, n(-1)), n(5)}));
            std::erase_if(text, [](char c) { return c == ' ' || c == '`' || c == '\n'; });
            EXPECT_EQ(text, monomials ? "-3*y*x^2+12*x^2-x+5" : "(-3y+12)x^2-x+5") << margin;
        }
    }
}

/* ---- 151 lines ---- */

static const char *message = "   ... more output suppressed ... \n";

TEST_F(folding, after_151_lines_the_rest_is_left_out) {
    /* 9 terms to a line: 1359 terms stand on 151 lines, and the plus of the next one is written */
    EXPECT_EQ(shown(powers(9000, 1500)), folded(9000, 1359, 9, " `") + " `\n+ " + message);
    EXPECT_EQ(lines, 151);
    EXPECT_EQ(shown(powers(9000, 1359)), folded(9000, 1359, 9, " `"));
    EXPECT_EQ(lines, 150);
    do_line_sup = 0;
    EXPECT_EQ(shown(powers(9000, 1500)), folded(9000, 1500, 9, " `"));
    EXPECT_EQ(lines, 166);
}

TEST_F(folding, a_file_gets_every_line) {
    EXPECT_EQ(in_file(powers(9000, 1500)), folded(9000, 1500, 9, ""));
    EXPECT_EQ(lines, 166);
}

TEST_F(folding, the_message_appears_once_when_coefficients_are_cut) {
    name_variables({"x", "y"});
    /* "(" takes one column: in the first line the ninth term ends in 78. The closing parenthesis follows. */
    EXPECT_EQ(shown(list({t(2, powers(9000, 1500)), t(1, powers(9000, 1500))})), [] {
        std::string text = "(" + folded(9000, 1359, 9, " `") + " `\n+ " + message + ")";
        for (std::size_t at = 0; (at = text.find("x^", at)) != std::string::npos;) text[at] = 'y';
        return text;
    }());
}

TEST_F(folding, numerator_and_denominator_have_151_lines_each) {
    const std::string cut = " `\n+ " + std::string(message);
    std::string text = on_screen(quotient(powers(9000, 1500), powers(8000, 1500)));
    EXPECT_EQ(text.substr(0, 2), "( ");
    std::size_t first = text.find(message);
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(text.substr(first + std::strlen(message), 9), " ) / ( x^");
    std::size_t second = text.find(message, first + 1);
    ASSERT_NE(second, std::string::npos);
    EXPECT_EQ(text.substr(second + std::strlen(message)), " )");
    auto breaks = [](const std::string &part) { return std::count(part.begin(), part.end(), '\n'); };
    EXPECT_EQ(breaks(text.substr(0, first)), 151);
    EXPECT_EQ(breaks(text.substr(first + std::strlen(message), second - first - std::strlen(message))), 151);
    EXPECT_EQ(value_in_file(quotient(powers(9000, 1500), powers(8000, 1500))).find("suppressed"), std::string::npos);
}

TEST_F(folding, each_value_may_have_its_message) {
    for (int i = 0; i < 2; i++)
        EXPECT_NE(on_screen(quotient(powers(9000, 1500), nullptr)).find(message), std::string::npos);
}

/* ---- interrupts ---- */

TEST_F(folding, an_interrupted_display_goes_on_when_its_level_is_left) {
    dispcutoff = 20;
    const std::string whole = shown(powers(5000, 6));
    static int passes;
    passes = 0;
    watch_safe_points([] {
        if (++passes == 3) note_interrupt();
    });
    set_input("dispcutoff\n&_p\n");
    const std::string text = shown(powers(5000, 6));
    watch_safe_points(nullptr);
    const std::size_t level = text.find("*** New command level.");
    ASSERT_NE(level, std::string::npos) << text;
    std::size_t shared = 0;
    while (text[shared] == whole[shared]) shared++;
    EXPECT_LE(shared, level);
    EXPECT_EQ(text.substr(text.size() - (whole.size() - shared)), whole.substr(shared));
}

TEST_F(folding, a_panic_stop_leaves_the_display_and_no_record_behind) {
    poly_handle p(powers(5000, 200));
    const records_in_use before = count_records_in_use();
    watch_safe_points([] { note_interrupt(); });
    set_input("&@\n");
    EXPECT_TRUE(unwinds([&] { poly_display(Output, p.get(), polynames, &column, &lines, {.want_continuation = 1}); }));
    watch_safe_points(nullptr);
    EXPECT_EQ(count_records_in_use(), before);
}
