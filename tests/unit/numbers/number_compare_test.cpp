#include "numbers/number.h"

#include "support/rand_numbers.h"

#include <limits>

using namespace tolvek;

struct comparisons : numbers_test {
    number_handle a, b;
};

static std::string magnitude_of(const std::string &x) { return "abs(" + x + ")"; }

TEST_F(comparisons, of_chains_agree_with_python) {
    for (int i = times(600); i > 0; i--) {
        rand_number(rnd, 6, &a);
        if (rnd.one_in(4))
            num_assign(&a, &b);
        else if (rnd.one_in(4))
            makeneg(&a, &b);
        else
            rand_number(rnd, 6, &b);
        const std::string ta = hex_of(&a), tb = hex_of(&b);
        auto check = [&](const std::string &question, int answer) {
            python.expect("int(" + question + ")", std::to_string(answer));
        };
        check(ta + ">" + tb, bigger(&a, &b));
        check(ta + "==" + tb, equal(&a, &b));
        check(ta + "==" + tb, spec_equal(&a, &b));
        check(ta + "==-(" + tb + ")", negtive(&a, &b));
        check(magnitude_of(ta) + ">" + magnitude_of(tb), int_abs_bigger(&a, &b, 0));
        check(magnitude_of(ta) + ">=" + magnitude_of(tb), int_abs_bigger(&a, &b, 1));
        check(magnitude_of(ta) + ">" + magnitude_of(tb), abs_larger(&a, &b));
        check("(" + ta + ">0)-(" + ta + "<0)", num_sign(&a));
        number_handle x, y;
        abs_val_num(&a, &x);
        abs_val_num(&b, &y);
        int first = -1;
        check(magnitude_of(ta) + "==" + magnitude_of(tb), equal_which(&x, &y, &first));
        check(magnitude_of(ta) + ">" + magnitude_of(tb), first);
        check(magnitude_of(ta) + ">" + magnitude_of(tb), pos_bigger(&x, &y));
        if (x.num_len >= y.num_len)
            check(magnitude_of(ta) + ">" + magnitude_of(tb), fast_bigger(x.num_head, y.num_head, x.num_len, y.num_len));
        if (num_sign(&x)) {
            check("(" + ta + ").bit_length()", logg2(&x));
            makeneg(&x, &x);
            check("(" + ta + ").bit_length()", logg2_neg(&x));
        }
    }
}

TEST_F(comparisons, one_and_minus_one_in_every_form) {
    int minus = 5;
    EXPECT_TRUE(equal_to_pm1(&number_1, &minus));
    EXPECT_FALSE(minus);
    EXPECT_TRUE(equal_to_pm1(&number_m1, &minus));
    EXPECT_TRUE(minus);
    EXPECT_FALSE(equal_to_pm1(&number_2, &minus));
    EXPECT_FALSE(minus);
    set_int64((int64_t{1} << 28) + 1, &a);
    EXPECT_FALSE(equal_to_pm1(&a, &minus));
    lintmode = 1;
    EXPECT_TRUE(equal_to_pm1(&number_m1, &minus));
    EXPECT_TRUE(minus);
    modularmode = 1;
    modulus = 7;
    a.lint_val = 6;
    EXPECT_TRUE(equal_to_pm1(&a, &minus));
    EXPECT_TRUE(minus);
    modulus = 2;
    a.lint_val = 1;
    EXPECT_TRUE(equal_to_pm1(&a, &minus));
    EXPECT_FALSE(minus);
    modularmode = 0;
    flotemode = 1;
    EXPECT_TRUE(equal_to_pm1(&number_m1, &minus));
    EXPECT_TRUE(minus);
    a.flote_val = 0.5L;
    EXPECT_FALSE(equal_to_pm1(&a, &minus));
}

TEST_F(comparisons, of_small_forms) {
    lintmode = 1;
    a.lint_val = -3;
    b.lint_val = 2;
    EXPECT_FALSE(bigger(&a, &b));
    EXPECT_TRUE(bigger(&b, &a));
    EXPECT_TRUE(abs_larger(&a, &b));
    EXPECT_EQ(num_sign(&a), -1);
    b.lint_val = 3;
    EXPECT_TRUE(negtive(&a, &b));
    a.lint_val = b.lint_val = INT32_MIN;
    EXPECT_FALSE(abs_larger(&a, &b));
    modularmode = 1;
    modulus = 2147483629;
    a.lint_val = 5;
    b.lint_val = modulus - 5;
    EXPECT_TRUE(negtive(&a, &b));
    EXPECT_FALSE(negtive(&a, &a));
    a.lint_val = b.lint_val = 0;
    EXPECT_TRUE(negtive(&a, &b));
    finf = 1;
    a.lint_val = b.lint_val = 9;
    EXPECT_TRUE(negtive(&a, &b));
    b.lint_val = 8;
    EXPECT_FALSE(negtive(&a, &b));
    finf = modularmode = 0;
    flotemode = 1;
    a.flote_val = -2.5L;
    b.flote_val = 2.5L;
    EXPECT_TRUE(negtive(&a, &b));
    EXPECT_TRUE(bigger(&b, &a));
    EXPECT_FALSE(abs_larger(&a, &b));
    EXPECT_FALSE(equal(&a, &b));
}

TEST_F(comparisons, sizes_of_small_forms) {
    EXPECT_EQ(logg2lint(0), -1);
    EXPECT_EQ(logg2lint(1), 0);
    EXPECT_EQ(logg2lint(-8), 3);
    EXPECT_EQ(logg2lint(INT32_MAX), 30);
    EXPECT_EQ(logg2lint(INT32_MIN), 31);
    lintmode = modularmode = 1;
    modulus = 101;
    EXPECT_EQ(logg2lint(99), 1);
    EXPECT_EQ(logg2lint(50), 5);
    a.lint_val = 99;
    EXPECT_EQ(number_mass(&a), 1);
    a.lint_val = 50;
    EXPECT_EQ(number_mass(&a), 50 * 5 / 101 + 1);
    modularmode = 0;
    flotemode = 1;
    a.flote_val = -3.5L * digit_radix;
    EXPECT_EQ(number_mass(&a), 4);
    a.flote_val = std::numeric_limits<long double>::infinity();
    EXPECT_GT(number_mass(&a), 0);
}

TEST_F(comparisons, sizes_of_chains) {
    EXPECT_EQ(logg2(&number_0), 0);
    EXPECT_EQ(logg2(&number_1), 1);
    EXPECT_EQ(number_mass(&number_1), 1);
    set_int64(65536, &a);
    EXPECT_EQ(number_mass(&a), 2);
    set_int64(-65535, &a);
    EXPECT_EQ(number_mass(&a), 1);
    set_int64(-(int64_t{1} << 50), &a);
    EXPECT_EQ(number_mass(&a), 4);
    set_int64(int64_t{1} << 28, &a);
    EXPECT_EQ(number_mass(&a), 3);
    EXPECT_FALSE(power_of_two(0));
    EXPECT_TRUE(power_of_two(1));
    EXPECT_TRUE(power_of_two(0x80000000u));
    EXPECT_FALSE(power_of_two(6));
    EXPECT_EQ(minn(-3, 40000), -3);
    EXPECT_EQ(maxx(-3, 40000), 40000);
}
