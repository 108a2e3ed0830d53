#include "numbers/number_decimal.h"

#include "numbers/int_power.h"
#include "numbers/number_work.h"
#include "support/rand_numbers.h"

using namespace tolvek;

struct number_display : numbers_test {
    number_handle x;
    int column = 0;
    std::string text;

    void SetUp() override {
        numbers_test::SetUp();
        dispcutoff = 76;
        uglyprint = 0;
        continuation = '`';
        disp_size = 5;
        alt_form_display = 1;
    }
    void TearDown() override {
        dispcutoff = 76;
        uglyprint = 0;
        continuation = '`';
        numbers_test::TearDown();
    }
    template <class code> std::string written(code write) {
        static std::string *to;
        to = &text;
        text.clear();
        const io_hooks found = io;
        io.write_some = [](int, const char *from, std::size_t count) {
            to->append(from, count);
            return static_cast<ssize_t>(count);
        };
        text_out out(-1);
        write(&out);
        flush(&out);
        io = found;
        return text;
    }
    struct how {
        int first_bare = 1, pad = 0, is_decimal = 0, right_justify = 0, blank_after_minus = 0, want_continuation = 1;
    };
    std::string shown(how h) {
        return written([&](text_out *out) {
            showint(out, &x, h.first_bare, h.pad, h.is_decimal, h.right_justify, h.blank_after_minus,
                    h.want_continuation, &column);
        });
    }
    std::string displayed(int blank_after_minus = 0) {
        return written([&](text_out *out) { display(out, 1, 0, &x, &column, blank_after_minus); });
    }
};

TEST_F(number_display, the_second_group_is_padded_with_zeros) {
    set_int64(100000000, &x);
    EXPECT_EQ(shown({}), "100000000");
    EXPECT_EQ(column, 9);
    set_int64(700000005, &x);
    EXPECT_EQ(shown({}), "700000005");
}

TEST_F(number_display, signs) {
    set_int64(-5, &x);
    EXPECT_EQ(shown({}), "-5");
    EXPECT_EQ(column, 2);
    EXPECT_EQ(shown({.blank_after_minus = 1}), "- 5");
    uglyprint = 1;
    EXPECT_EQ(shown({.blank_after_minus = 1}), "-5");
    uglyprint = 0;
    column = 0;
    EXPECT_EQ(shown({.right_justify = 1}), "       -5");
    EXPECT_EQ(column, 8);
    set_int64(123, &x);
    EXPECT_EQ(shown({.right_justify = 1}), "      123");
    set_int64(-12345678, &x);
    EXPECT_EQ(shown({.right_justify = 1}), "-12345678");
}

TEST_F(number_display, zero_and_nothing) {
    set_int64(0, &x);
    EXPECT_EQ(shown({}), "0");
    EXPECT_EQ(column, 1);
    x.num_len = 0;
    push_digit(x.num_head);
    x.num_head = x.num_tail = nullptr;
    column = 0;
    EXPECT_EQ(shown({}), "");
    EXPECT_EQ(column, 0);
}

TEST_F(number_display, the_first_group_may_keep_its_zeros) {
    set_int64(42, &x);
    EXPECT_EQ(shown({.first_bare = 0}), "00000042");
    EXPECT_EQ(column, 8);
}

TEST_F(number_display, padding_fills_up_to_disp_size_groups) {
    set_int64(33333333, &x);
    EXPECT_EQ(shown({.first_bare = 0, .pad = 1}), std::string(32, '0') + "33333333");
    EXPECT_EQ(column, 40);
    disp_size = 1;
    EXPECT_EQ(shown({.first_bare = 0, .pad = 1}), "33333333");
    disp_size = 3;
    dispcutoff = 16;
    column = 0;
    EXPECT_EQ(shown({.first_bare = 0, .pad = 1}), "0000000000000000 `\n 33333333");
    column = 0;
    EXPECT_EQ(shown({.first_bare = 0, .pad = 1, .want_continuation = 0}), "0000000000000000 33333333");
    uglyprint = 1;
    column = 0;
    EXPECT_EQ(shown({.first_bare = 0, .pad = 1, .want_continuation = 0}), "0000000000000000`\n 33333333");
}

TEST_F(number_display, lines_break_at_the_limit) {
    dispcutoff = 16;
    number_from_figures("1234567811111111222222223333333344444444", 40, &x);
    EXPECT_EQ(shown({}), "1234567811111111 `\n 2222222233333333 `\n 44444444");
    EXPECT_EQ(column, 8);
    column = 0;
    EXPECT_EQ(shown({.want_continuation = 0}), "1234567811111111 22222222 33333333 44444444");
    EXPECT_EQ(column, 40);
    continuation = '~';
    column = 9;
    EXPECT_EQ(shown({}), "12345678 ~\n 1111111122222222 ~\n 3333333344444444");
    uglyprint = 1;
    column = 0;
    EXPECT_EQ(shown({}), "1234567811111111222222223333333344444444");
}

TEST_F(number_display, a_decimal_form_is_shown_as_it_is) {
    growing_chain digits;
    digits.append(-1);
    digits.append(-2);
    digits.give_to(&x);
    EXPECT_EQ(shown({.is_decimal = 1}), "-100000002");
}

TEST_F(number_display, sixteen_digits_and_more_are_converted_by_parts) {
    for (int len : {14, 15, 16, 17, 18}) {
        rand_number_of_length(rnd, len, &x);
        python.expect("int('" + hex_of(&x) + "',16)", figures_of_display(&x));
    }
}

TEST_F(number_display, floats_have_20_significant_figures) {
    flotemode = lintmode = 1;
    x.flote_val = 1.0L / 3;
    EXPECT_EQ(displayed(), "0.33333333333333333334");
    EXPECT_EQ(column, 0);
    x.flote_val = -2.5L;
    EXPECT_EQ(displayed(), "-2.5");
    EXPECT_EQ(displayed(1), "- 2.5");
}

TEST_F(number_display, small_integers_and_residues) {
    lintmode = 1;
    x.lint_val = -1234;
    EXPECT_EQ(displayed(), "-1234");
    EXPECT_EQ(column, 4); /* an estimate: 0.3 * 10 rounded, and 1 */
    EXPECT_EQ(displayed(1), "- 1234");
    x.lint_val = INT32_MIN;
    EXPECT_EQ(displayed(1), "- 2147483648");
    x.lint_val = 0;
    column = 0;
    EXPECT_EQ(displayed(), "0");
    EXPECT_EQ(column, 1);
    modularmode = 1;
    modulus = 7;
    half_modulus = 3;
    x.lint_val = 5;
    EXPECT_EQ(displayed(), "-2");
    EXPECT_EQ(displayed(1), "- 2");
    x.lint_val = 3;
    EXPECT_EQ(displayed(), "3");
    alt_form_display = 0;
    x.lint_val = 5;
    EXPECT_EQ(displayed(), "5");
}

TEST_F(number_display, chains) {
    number_from_figures("123456789123456789", 18, &x);
    EXPECT_EQ(displayed(), "123456789123456789");
    in_place_neg(&x);
    EXPECT_EQ(displayed(1), "- 123456789123456789");
}
