#include "numbers/number_work.h"

#include "numbers/number_decimal.h"
#include "support/famine.h"
#include "support/rand_numbers.h"

using namespace tolvek;

struct sums : numbers_test {};

static std::string plus(const std::string &a, const std::string &b) { return "hex(" + a + "+" + b + ")"; }
static std::string minus(const std::string &a, const std::string &b) { return "hex(" + a + "-(" + b + "))"; }

TEST_F(sums, zero_plus_zero_is_one_node_holding_0) {
    number_handle x, y;
    set_int64(0, &x);
    fastsum(&x, &x);
    EXPECT_TRUE(is_longint(&x, 0));
    medsum(1, 1, x.num_head, x.num_head, &y);
    EXPECT_TRUE(is_longint(&y, 0));
    meddiff(1, 1, x.num_head, x.num_head, &y);
    EXPECT_TRUE(is_longint(&y, 0));
}

TEST_F(sums, a_number_and_its_negative_cancel_to_one_node) {
    number_handle x, y, z;
    for (int len = 1; len < 9; len++) {
        rand_number_of_length(rnd, len, &x);
        makeneg(&x, &y);
        num_assign(&x, &z);
        fastsum(&z, &y);
        EXPECT_TRUE(is_longint(&z, 0));
        expect_whole(&z);
        num_add(&x, &y, &z);
        EXPECT_TRUE(is_longint(&z, 0));
        sub(&x, &x, &z);
        EXPECT_TRUE(is_longint(&z, 0));
        expect_whole(&z);
        fastdiff(&x, &x);
        EXPECT_TRUE(is_longint(&x, 0));
        expect_whole(&x);
    }
}

TEST_F(sums, a_carry_out_of_the_head_makes_a_new_head) {
    number_handle x;
    set_int64(digit_mask, &x);
    fastsum(&x, &number_1);
    EXPECT_EQ(hex_of(&x), "0x10000000");
    for (int len = 2; len < 40; len++) {
        number_handle all_ones;
        set_hex("0x" + std::string(static_cast<std::size_t>(7 * len), 'f'), &all_ones);
        fastsum(&all_ones, &number_1);
        expect_whole(&all_ones);
        EXPECT_EQ(hex_of(&all_ones), "0x1" + std::string(static_cast<std::size_t>(7 * len), '0'));
        fastdiff(&all_ones, &number_1);
        expect_whole(&all_ones);
        EXPECT_EQ(hex_of(&all_ones), "0x" + std::string(static_cast<std::size_t>(7 * len), 'f'));
    }
}

TEST_F(sums, every_form_agrees_with_python) {
    number_handle a, b, c;
    for (int i = times(1500); i > 0; i--) {
        rand_number(rnd, 30, &a);
        rand_number(rnd, 30, &b);
        const std::string ta = hex_of(&a), tb = hex_of(&b);
        const std::string sum = plus(ta, tb), difference = minus(ta, tb);
        auto check = [&](const std::string &expression) {
            expect_whole(&c);
            python.expect(expression, hex_of(&c));
        };
        medsum(a.num_len, b.num_len, a.num_head, b.num_head, &c), check(sum);
        meddiff(a.num_len, b.num_len, a.num_head, b.num_head, &c), check(difference);
        summ(&a, &b, &c, digit_radix), check(sum);
        diff(a.num_head, a.num_len, &b, &c, digit_radix), check(difference);
        num_assign(&a, &c), fastsum(&c, &b), check(sum);
        num_assign(&a, &c), fastdiff(&c, &b), check(difference);
        num_add(&a, &b, &c), check(sum);
        sub(&a, &b, &c), check(difference);
        EXPECT_EQ(hex_of(&a), ta);
        EXPECT_EQ(hex_of(&b), tb);
        expect_whole(&a);
        expect_whole(&b);
    }
}

TEST_F(sums, every_destination_may_be_an_operand) {
    number_handle a, b, sum, difference, c;
    for (int i = times(500); i > 0; i--) {
        rand_number(rnd, 15, &a);
        rand_number(rnd, 15, &b);
        if (rnd.one_in(4)) makeneg(&a, &b);
        medsum(a.num_len, b.num_len, a.num_head, b.num_head, &sum);
        meddiff(a.num_len, b.num_len, a.num_head, b.num_head, &difference);
        auto check = [&](const number *expected) {
            expect_whole(&c);
            EXPECT_EQ(hex_of(&c), hex_of(expected));
        };
        num_assign(&a, &c), medsum(c.num_len, b.num_len, c.num_head, b.num_head, &c), check(&sum);
        num_assign(&b, &c), medsum(a.num_len, c.num_len, a.num_head, c.num_head, &c), check(&sum);
        num_assign(&a, &c), meddiff(c.num_len, b.num_len, c.num_head, b.num_head, &c), check(&difference);
        num_assign(&b, &c), meddiff(a.num_len, c.num_len, a.num_head, c.num_head, &c), check(&difference);
        num_assign(&a, &c), num_add(&c, &b, &c), check(&sum);
        num_assign(&b, &c), num_add(&a, &c, &c), check(&sum);
        num_assign(&a, &c), sub(&c, &b, &c), check(&difference);
        num_assign(&b, &c), sub(&a, &c, &c), check(&difference);
        num_assign(&a, &c), summ(&c, &b, &c, digit_radix), check(&sum);
        num_assign(&b, &c), diff(a.num_head, a.num_len, &c, &c, digit_radix), check(&difference);
        num_add(&a, &a, &sum);
        num_assign(&a, &c), num_add(&c, &c, &c), check(&sum);
        num_assign(&a, &c), fastsum(&c, &c), check(&sum);
        num_assign(&a, &c), sub(&c, &c, &c), check(&number_0);
    }
}

TEST_F(sums, adding_and_taking_away_again_changes_nothing) {
    number_handle a, b, c;
    for (int i = times(500); i > 0; i--) {
        rand_number(rnd, 60, &a);
        rand_number(rnd, 60, &b);
        num_assign(&a, &c);
        fastsum(&c, &b);
        expect_whole(&c);
        fastdiff(&c, &b);
        expect_whole(&c);
        EXPECT_TRUE(equal(&c, &a));
    }
}

TEST_F(sums, bare_chains_end_where_their_length_says) {
    number_handle a, b, c, head_a, head_b;
    for (int i = times(300); i > 0; i--) {
        rand_number_of_length(rnd, 12, &a);
        rand_number_of_length(rnd, 12, &b);
        int len_a = 1 + rnd.below(12), len_b = 1 + rnd.below(12);
        fast_assign(a.num_head, len_a, &head_a);
        fast_assign(b.num_head, len_b, &head_b);
        medsum(len_a, len_b, a.num_head, b.num_head, &c);
        expect_whole(&c);
        python.expect(plus(hex_of(&head_a), hex_of(&head_b)), hex_of(&c));
        meddiff(len_a, len_b, a.num_head, b.num_head, &c);
        expect_whole(&c);
        python.expect(minus(hex_of(&head_a), hex_of(&head_b)), hex_of(&c));
    }
}

TEST_F(sums, the_decimal_forms_agree_with_python) {
    number_handle a, b, c;
    for (int i = times(1000); i > 0; i--) {
        rand_number(rnd, 20, &a, signs::both, decimal_radix);
        rand_number(rnd, 20, &b, signs::both, decimal_radix);
        const std::string ta = decimal_of(&a), tb = decimal_of(&b);
        auto check = [&](const std::string &expression) {
            EXPECT_EQ(chain_rule_broken(&c, decimal_radix), 0);
            python.expect(expression, decimal_of(&c));
        };
        summ(&a, &b, &c, decimal_radix), check(ta + "+" + tb);
        diff(a.num_head, a.num_len, &b, &c, decimal_radix), check(ta + "-(" + tb + ")");
        spec_num_assign(&a, &c), add_in_place(&c, &b, 1, decimal_form{}), check(ta + "+" + tb);
        spec_num_assign(&a, &c), add_in_place(&c, &b, -1, decimal_form{}), check(ta + "-(" + tb + ")");
    }
}

TEST_F(sums, the_head_of_a_decimal_difference_stays_below_the_radix) {
    number_handle a, b, c;
    special_set(99999999, &a);
    special_set(-99999999, &b);
    diff(a.num_head, 1, &b, &c, decimal_radix);
    EXPECT_EQ(decimal_of(&c), "199999998");
    EXPECT_EQ(chain_rule_broken(&c, decimal_radix), 0);
}

TEST_F(sums, one_digit_results_are_made_in_the_node_that_is_there) {
    number_handle a;
    set_int64(5, &a);
    numnode *node = a.num_head;
    fastsum(&a, &number_10);
    EXPECT_EQ(a.num_head, node);
    EXPECT_TRUE(is_longint(&a, 15));
    num_add(&a, &number_2, &a);
    EXPECT_EQ(a.num_head, node);
    EXPECT_TRUE(is_longint(&a, 17));
}

TEST_F(sums, small_rings) {
    number_handle a, b, c;
    lintmode = 1;
    a.lint_val = INT32_MAX;
    b.lint_val = 1;
    num_add(&a, &b, &c);
    EXPECT_EQ(c.lint_val, INT32_MIN);
    sub(&c, &b, &c);
    EXPECT_EQ(c.lint_val, INT32_MAX);
    modularmode = 1;
    for (int32_t m : {2, 7, 65521, 2147483629}) {
        modulus = m;
        for (int32_t x : {0, 1, m / 2, m - 1})
            for (int32_t y : {0, 1, m / 2, m - 1}) {
                a.lint_val = x;
                b.lint_val = y;
                num_add(&a, &b, &c);
                EXPECT_EQ(c.lint_val, (int64_t{x} + y) % m);
                sub(&a, &b, &c);
                EXPECT_EQ(c.lint_val, (int64_t{x} - y + m) % m);
            }
    }
    finf = 1;
    a.lint_val = 12;
    b.lint_val = 10;
    num_add(&a, &b, &c);
    EXPECT_EQ(c.lint_val, 6);
    sub(&a, &b, &c);
    EXPECT_EQ(c.lint_val, 6);
    finf = modularmode = 0;
    flotemode = 1;
    a.flote_val = 0.75L;
    b.flote_val = 0.5L;
    num_add(&a, &b, &c);
    EXPECT_EQ(c.flote_val, 1.25L);
    sub(&a, &b, &c);
    EXPECT_EQ(c.flote_val, 0.25L);
}

/* The n-th digit is refused: what was asked for is not made, and everything is as it was. */
TEST_F(sums, a_refused_digit_leaves_operands_and_books_as_they_were) {
    number_handle a, b, c;
    const std::string ta = "0x" + std::string(70, 'f'), tb = "0x" + std::string(140, 'f');
    for (int operation = 0; operation < 6; operation++) {
        bool refused = true;
        for (int digits = 0; refused; digits++) {
            set_hex(ta, &a);
            set_hex(tb, &b);
            set_int64(77, &c);
            digit_famine only(digits);
            refused = false;
            try {
                if (operation == 0) medsum(a.num_len, b.num_len, a.num_head, b.num_head, &c);
                if (operation == 1) meddiff(b.num_len, a.num_len, b.num_head, a.num_head, &c);
                if (operation == 2) fastsum(&a, &b);
                if (operation == 3) fastdiff(&a, &b);
                if (operation == 4) fastsum(&a, &a);
                if (operation == 5) fastsum(&b, &number_1); /* one digit more, for the carry */
            } catch (const unwind &) {
                refused = true;
            }
            ASSERT_LT(digits, 40);
            expect_whole(&a);
            expect_whole(&b);
            expect_whole(&c);
            if (refused) {
                EXPECT_EQ(hex_of(&b), tb);
                EXPECT_EQ(hex_of(&a), ta);
                EXPECT_EQ(hex_of(&c), "0x4d");
                EXPECT_EQ(only.left(), digits);
            }
        }
    }
}
