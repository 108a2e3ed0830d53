#include "numbers/int_divide.h"

#include "numbers/int_mult.h"
#include "support/rand_numbers.h"

using namespace tolvek;

struct quotients : both_methods_test {
    number_handle a, b, q, r;
    void SetUp() override {
        both_methods_test::SetUp();
        pos_mod = 1;
    }
    void check_identity(const std::string &what) {
        number_handle t;
        expect_whole(&q);
        expect_whole(&r);
        fast_mult(&q, &b, &t);
        num_add(&t, &r, &t);
        EXPECT_TRUE(equal(&t, &a)) << what;
        EXPECT_TRUE(num_sign(&r) >= 0 && bigger(&b, &r)) << what;
    }
};
INSTANTIATE_TEST_SUITE_P(methods, quotients, both_methods, method_name);

TEST_P(quotients, q_times_b_plus_r_is_a) {
    for (int i = times(1500); i > 0; i--) {
        rand_number(rnd, 40, &a, signs::not_negative);
        rand_number(rnd, rnd.one_in(2) ? 4 : 40, &b, signs::positive);
        pos_divide(&a, &b, &q, &r);
        check_identity(hex_of(&a) + " / " + hex_of(&b));
        python.expect("hex(" + hex_of(&a) + "//" + hex_of(&b) + ")", hex_of(&q));
        number_handle rest;
        pos_divide_noq(a.num_head, b.num_head, a.num_len, b.num_len, &rest);
        expect_whole(&rest);
        EXPECT_TRUE(equal(&rest, &r));
    }
}

/* Operands made backwards, a = q * b + r with r close to 0 or to b: the estimates of quotient digits are off. */
TEST_P(quotients, of_operands_made_from_their_answer) {
    number_handle want_q, want_r;
    for (int i = times(1500); i > 0; i--) {
        rand_number(rnd, 12, &b, signs::positive);
        rand_number(rnd, 12, &want_q, signs::not_negative);
        set_int64(rnd.below(3), &want_r);
        if (rnd.one_in(2)) sub(&b, &number_1, &want_r);
        if (!bigger(&b, &want_r)) continue;
        fast_mult(&want_q, &b, &a);
        num_add(&a, &want_r, &a);
        pos_divide(&a, &b, &q, &r);
        check_identity(hex_of(&a) + " / " + hex_of(&b));
        EXPECT_TRUE(equal(&q, &want_q));
        EXPECT_TRUE(equal(&r, &want_r));
    }
}

TEST_P(quotients, zero_digits_in_the_middle) {
    for (int zeros = 1; zeros < 12; zeros++) {
        rand_number(rnd, 5, &b, signs::positive);
        num_assign(&b, &a);
        fillout(&a, zeros + 5);
        num_add(&a, &b, &a);
        pos_divide(&a, &b, &q, &r);
        check_identity("zeros");
        EXPECT_TRUE(is_longint(&r, 0));
    }
}

TEST_P(quotients, every_destination_may_be_an_operand) {
    number_handle x, y;
    for (int i = times(200); i > 0; i--) {
        rand_number(rnd, 12, &a, signs::not_negative);
        rand_number(rnd, rnd.one_in(3) ? 1 : 12, &b, signs::positive);
        pos_divide(&a, &b, &q, &r);
        auto check = [&](const number *quotient, const number *rest) {
            expect_whole(quotient);
            expect_whole(rest);
            EXPECT_TRUE(equal(quotient, &q));
            EXPECT_TRUE(equal(rest, &r));
        };
        num_assign(&a, &x), pos_divide(&x, &b, &x, &y), check(&x, &y);
        num_assign(&a, &x), pos_divide(&x, &b, &y, &x), check(&y, &x);
        num_assign(&b, &x), pos_divide(&a, &x, &x, &y), check(&x, &y);
        num_assign(&b, &x), pos_divide(&a, &x, &y, &x), check(&y, &x);
        num_assign(&a, &x), num_assign(&b, &y), pos_divide(&x, &y, &x, &y), check(&x, &y);
        num_assign(&a, &x), num_assign(&b, &y), pos_divide(&x, &y, &y, &x), check(&y, &x);
        num_assign(&b, &x), pos_divide(&x, &x, &x, &y);
        EXPECT_TRUE(is_longint(&x, 1));
        EXPECT_TRUE(is_longint(&y, 0));
    }
}

TEST_P(quotients, one_step_gives_one_digit) {
    for (int i = times(500); i > 0; i--) {
        rand_number(rnd, 10, &b, signs::positive);
        number_handle digit;
        rand_number_of_length(rnd, 1, &digit, signs::not_negative);
        fast_mult(&b, &digit, &a);
        pos_divide(&a, &b, &q, &r);
        simp_divide(a.num_head, a.num_len, &b, &q, &r);
        check_identity("one step");
        EXPECT_TRUE(equal(&q, &digit));
        simp_divide_noq(a.num_head, b.num_head, a.num_len, b.num_len, &r);
        EXPECT_TRUE(is_longint(&r, 0));
    }
    simp_divide(number_2.num_head, 1, &tens_base, &q, &r);
    EXPECT_TRUE(is_longint(&q, 0));
    EXPECT_TRUE(is_longint(&r, 2));
}

TEST_P(quotients, both_results_have_the_sign_of_a_times_b) {
    struct row {
        int a, b, q, r;
    };
    for (row t : {row{7, 2, 3, 1}, row{-7, 2, -3, -1}, row{7, -2, -3, -1}, row{-7, -2, 3, 1}, row{0, -2, 0, 0}}) {
        set_int64(t.a, &a);
        set_int64(t.b, &b);
        divide(&a, &b, &q, &r);
        EXPECT_TRUE(is_longint(&q, t.q)) << t.a << " / " << t.b;
        EXPECT_TRUE(is_longint(&r, t.r)) << t.a << " / " << t.b;
        divide(&a, &b, &b, &a); /* each other's places */
        EXPECT_TRUE(is_longint(&b, t.q));
        EXPECT_TRUE(is_longint(&a, t.r));
    }
    for (int i = times(300); i > 0; i--) {
        rand_number(rnd, 12, &a);
        rand_number(rnd, 8, &b);
        if (num_sign(&b) == 0) continue;
        const std::string ta = hex_of(&a), tb = hex_of(&b), sign = "(-1 if (" + ta + "<0)!=(" + tb + "<0) else 1)";
        divide(&a, &b, &q, &r);
        expect_whole(&q);
        expect_whole(&r);
        python.expect("hex(" + sign + "*(abs(" + ta + ")//abs(" + tb + ")))", hex_of(&q));
        python.expect("hex(" + sign + "*(abs(" + ta + ")%abs(" + tb + ")))", hex_of(&r));
        EXPECT_EQ(hex_of(&a), ta);
        EXPECT_EQ(hex_of(&b), tb);
    }
}

TEST_P(quotients, a_zero_divisor_leaves_both_as_they_were) {
    set_int64(3, &q);
    set_int64(4, &r);
    divide(&number_10, &number_0, &q, &r);
    EXPECT_TRUE(is_longint(&q, 3));
    EXPECT_TRUE(is_longint(&r, 4));
}

TEST_P(quotients, the_operators_give_a_remainder_that_is_not_negative) {
    struct row {
        int a, b, q, r, signed_r;
    };
    for (row t : {row{7, 2, 3, 1, 1}, row{-7, 2, -3, 1, -1}, row{7, -2, -3, 1, 1}, row{-7, -2, 3, 1, -1},
                  row{-6, 2, -3, 0, 0}, row{1, 5, 0, 1, 1}, row{-1, 5, 0, 4, -1}}) {
        for (int small : {0, 1}) {
            lintmode = 0;
            set_int64(t.a, &a);
            set_int64(t.b, &b);
            lintmode = small;
            a.lint_val = t.a;
            b.lint_val = t.b;
            auto value = [&](const number &x) { return small ? x.lint_val : x.num_head->digit; };
            pos_mod = 1;
            mod_and_div(&a, &b, &r, &q);
            EXPECT_EQ(value(q), t.q) << t.a << " by " << t.b;
            EXPECT_EQ(value(r), t.r) << t.a << " by " << t.b;
            mod_or_div(&a, &b, &q, 0);
            EXPECT_EQ(value(q), t.r);
            mod_or_div(&a, &b, &q, 1);
            EXPECT_EQ(value(q), t.q);
            pos_mod = 0;
            mod_and_div(&a, &b, &r, &q);
            EXPECT_EQ(value(q), t.q) << t.a << " by " << t.b;
            EXPECT_EQ(value(r), t.signed_r) << t.a << " by " << t.b;
        }
    }
    pos_mod = 1;
}

TEST_P(quotients, the_operators_agree_with_python) {
    for (int positive : {0, 1}) {
        pos_mod = positive;
        for (int i = times(200); i > 0; i--) {
            rand_number(rnd, 10, &a);
            rand_number(rnd, 6, &b);
            if (num_sign(&b) == 0) continue;
            const std::string ta = hex_of(&a), tb = hex_of(&b);
            mod_and_div(&a, &b, &r, &q);
            expect_whole(&q);
            expect_whole(&r);
            if (positive) {
                python.expect("hex(" + ta + "%abs(" + tb + "))", hex_of(&r));
            } else {
                number_handle t;
                fast_mult(&q, &b, &t);
                num_add(&t, &r, &t);
                EXPECT_TRUE(equal(&t, &a));
            }
        }
    }
    pos_mod = 1;
}

TEST_P(quotients, of_floats_have_remainder_0) {
    flotemode = lintmode = 1;
    a.flote_val = 7;
    b.flote_val = 2;
    mod_and_div(&a, &b, &r, &q);
    EXPECT_EQ(q.flote_val, 3.5L);
    EXPECT_EQ(r.flote_val, 0.0L);
}

TEST_P(quotients, the_least_integer_by_minus_one_does_not_trap) {
    lintmode = 1;
    a.lint_val = INT32_MIN;
    b.lint_val = -1;
    mod_and_div(&a, &b, &r, &q);
    EXPECT_EQ(r.lint_val, 0);
    EXPECT_EQ(q.lint_val, INT32_MIN);
}

TEST_P(quotients, reading_a_small_number) {
    lintmode = flotemode = 1;
    EXPECT_EQ(quotient_of(&number_10, 1), 10);
    EXPECT_EQ(quotient_of(&number_10, 3), 3);
    EXPECT_EQ(quotient_of(&number_m1, 1), -1);
    EXPECT_EQ(quotient_of(&number_0, 7), 0);
    EXPECT_EQ(quotient_of(&two_tensbase, 100000000), 100000000);
    lintmode = flotemode = 0;
    for (int i = times(100); i > 0; i--) {
        rand_number(rnd, 5, &a);
        rand_number_of_length(rnd, 1, &b, signs::positive);
        divide(&a, &b, &q, &r);
        EXPECT_EQ(quotient_of(&a, b.num_head->digit), q.num_head->digit);
    }
}

TEST_P(quotients, cutting_down_to_the_last_digits) {
    for (int i = times(300); i > 0; i--) {
        rand_number(rnd, 10, &a, signs::not_negative);
        const int len = 1 + rnd.below(6);
        rand_number_of_length(rnd, len, &b, signs::positive);
        const std::string text = hex_of(&a);
        fast_modout(&a, &b);
        expect_whole(&a);
        python.expect("hex(" + text + "%2**" + std::to_string(28 * (len - 1)) + ")", hex_of(&a));
    }
}
