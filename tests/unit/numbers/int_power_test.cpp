#include "numbers/int_power.h"

#include "numbers/int_mult.h"
#include "support/rand_numbers.h"

#include <cmath>

using namespace tolvek;

struct powers : both_methods_test {
    number_handle x, y;
};
INSTANTIATE_TEST_SUITE_P(methods, powers, both_methods, method_name);

TEST_P(powers, agree_with_python) {
    for (uint32_t n : {0u, 1u, 2u, 3u, 7u, 31u, 100u}) {
        for (int i = times(10); i > 0; i--) {
            rand_number(rnd, 6, &x);
            const std::string text = hex_of(&x);
            number_power(&x, n);
            expect_whole(&x);
            python.expect("hex((" + text + ")**" + std::to_string(n) + ")", hex_of(&x));
        }
    }
}

TEST_P(powers, with_exponent_0_are_1_in_every_form) {
    set_int64(0, &x);
    number_power(&x, 0);
    EXPECT_TRUE(is_longint(&x, 1));
    lintmode = 1;
    x.lint_val = 0;
    number_power(&x, 0);
    EXPECT_EQ(x.lint_val, 1);
    modularmode = 1;
    modulus = 7;
    x.lint_val = 5;
    number_power(&x, 0);
    EXPECT_EQ(x.lint_val, 1);
    modularmode = 0;
    flotemode = 1;
    x.flote_val = 0;
    number_power(&x, 0);
    EXPECT_EQ(x.flote_val, 1.0L);
}

TEST_P(powers, in_the_small_rings) {
    lintmode = 1;
    x.lint_val = 3;
    number_power(&x, 21); /* 3^21 - 2 * 2^32 = 1870418611 */
    EXPECT_EQ(x.lint_val, 1870418611);
    modularmode = 1;
    modulus = 2147483629;
    x.lint_val = modulus - 1;
    number_power(&x, 4000000001u);
    EXPECT_EQ(x.lint_val, modulus - 1);
    x.lint_val = 12345;
    number_power(&x, static_cast<uint32_t>(modulus - 1)); /* Fermat */
    EXPECT_EQ(x.lint_val, 1);
    modularmode = 0;
    flotemode = 1;
    x.flote_val = 1.5L;
    number_power(&x, 5);
    EXPECT_EQ(x.flote_val, 7.59375L);
}

TEST_P(powers, a_long_one_has_all_its_digits) {
    set_int64(2, &x);
    number_power(&x, 1000000);
    EXPECT_EQ(x.num_len, 1000000 / 28 + 1);
    EXPECT_EQ(logg2(&x), 1000001);
    expect_whole(&x);
}

TEST_P(powers, squares_of_a_prime_ring) {
    lintmode = modularmode = 1;
    for (int32_t p : {3, 5, 7, 11, 101, 499}) {
        modulus = p;
        std::vector<bool> square(static_cast<std::size_t>(p));
        for (int32_t v = 1; v < p; v++) square[static_cast<std::size_t>(v * v % p)] = true;
        for (int32_t v = 1; v < p; v++)
            EXPECT_EQ(its_a_square(v), square[static_cast<std::size_t>(v)]) << v << " mod " << p;
    }
}

TEST_P(powers, residues_of_chains) {
    modularmode = lintmode = 1;
    for (int32_t m : {2, 7, 65521, digit_radix - 57, digit_radix + 3, 2147483629}) {
        for (int i = times(20); i > 0; i--) {
            rand_number(rnd, 8, &x, signs::not_negative);
            modulus = m;
            const int32_t rest = modout(&x);
            EXPECT_EQ(lintmode, 1);
            python.expect(hex_of(&x) + "%" + std::to_string(m), std::to_string(rest));
        }
    }
}

TEST_P(powers, products_of_ranges) {
    for (auto [from, to] : {std::pair{1, 1}, {1, 5}, {1, 6}, {10, 14}, {10, 15}, {7, 300}, {250000000, 250000040}}) {
        multout(from, to, &x, nullptr);
        expect_whole(&x);
        python.expect("hex(math.prod(range(" + std::to_string(from) + "," + std::to_string(to + 1) + ")))", hex_of(&x));
    }
    lintmode = modularmode = 1;
    modulus = 101;
    multout(90, 100, &x, nullptr);
    python.expect("math.prod(range(90,101))%101", std::to_string(x.lint_val));
    multout(90, 120, &x, nullptr);
    EXPECT_EQ(x.lint_val, 0);
    modularmode = 0;
    flotemode = 1;
    multout(2, 12, &x, nullptr);
    EXPECT_EQ(x.flote_val, 479001600.0L);
}

TEST_P(powers, factorials_agree_with_python) {
    for (int n = 0; n <= times(260); n++) {
        set_int64(n, &x);
        factorial(&x);
        expect_whole(&x);
        python.expect("hex(math.factorial(" + std::to_string(n) + "))", hex_of(&x));
    }
    set_int64(3000, &x);
    factorial(&x);
    expect_whole(&x);
    python.expect("hex(math.factorial(3000))", hex_of(&x));
}

TEST_P(powers, the_table_of_factorials) {
    int32_t argument = -1;
    EXPECT_TRUE(is_longint(fact_entry(0, &argument), 1));
    EXPECT_EQ(argument, 0);
    EXPECT_TRUE(is_longint(fact_entry(1, &argument), 3628800));
    EXPECT_EQ(argument, 10);
    EXPECT_EQ(fact_entry(1, &argument)->lint_val, 3628800);
    EXPECT_EQ(fact_entry(1, &argument)->flote_val, 3628800.0L);
    for (int i = 0; i < 22; i++) {
        const number *entry = fact_entry(i, &argument);
        EXPECT_EQ(argument, 10 * i);
        expect_whole(entry);
        python.expect("hex(math.factorial(" + std::to_string(argument) + "))", hex_of(entry));
    }
}

TEST_P(powers, factorials_of_small_integers_wrap_at_13) {
    lintmode = 1;
    int64_t exact = 1;
    for (int n = 0; n < 14; n++) {
        if (n) exact *= n;
        x.lint_val = n;
        factorial(&x);
        EXPECT_EQ(x.lint_val, static_cast<int32_t>(exact));
    }
}

TEST_P(powers, factorials_of_residues) {
    lintmode = modularmode = 1;
    for (int32_t p : {2, 7, 11, 101, 65521, 268435459, 2147483629})
        for (int n : {0, 1, 5, 9, 10, 11, 25, 100, 1000}) {
            modulus = p;
            x.lint_val = n;
            factorial(&x);
            python.expect("math.factorial(" + std::to_string(n) + ")%" + std::to_string(p), std::to_string(x.lint_val));
        }
}

TEST_P(powers, factorials_of_floats) {
    flotemode = lintmode = 1;
    for (auto [n, value] : {std::pair{0.0L, 1.0L},
                            {1.0L, 1.0L},
                            {4.6L, 120.0L},
                            {13.0L, 6227020800.0L},
                            {20.0L, 2432902008176640000.0L}}) {
        x.flote_val = n;
        factorial(&x);
        EXPECT_EQ(x.flote_val, value);
    }
    x.flote_val = 1754; /* 1.97926189010501e+4930, from Python's math.factorial */
    factorial(&x);
    EXPECT_NEAR(static_cast<double>(log10l(x.flote_val)), 4930.29650, 1e-4);
    for (long double n : {1755.0L, 1e6L, 1e300L, HUGE_VALL}) {
        x.flote_val = n;
        factorial(&x);
        EXPECT_TRUE(std::isinf(x.flote_val));
    }
}

/* ---- roots ---- */

TEST_P(powers, roots_of_one_digit_round_to_nearest) {
    for (int v : {1, 2, 3, 4, 6, 7, 8, 9, 12, 13, 16, digit_mask, 16383 * 16383, 16384 * 16383}) {
        set_int64(v, &x);
        int_sqrt(&x, &y, 1);
        expect_whole(&y);
        EXPECT_TRUE(is_longint(&y, static_cast<int32_t>(std::lround(std::sqrt(v))))) << v;
    }
}

TEST_P(powers, the_root_of_2_to_the_56_less_1) {
    set_int64((int64_t{1} << 56) - 1, &x);
    int_sqrt(&x, &y, 1);
    EXPECT_TRUE(is_longint(&y, digit_mask));
}

TEST_P(powers, roots_are_floors_from_two_digits_on) {
    for (int cut : {6, 16}) {
        sqcut = cut;
        for (int i = times(300); i > 0; i--) {
            const int len = 2 + rnd.below(rnd.one_in(5) ? 80 : 12);
            rand_number_of_length(rnd, len, &x, signs::positive);
            const std::string text = hex_of(&x);
            int_sqrt(&x, &y, i % 2);
            expect_whole(&y);
            EXPECT_EQ(hex_of(&x), text);
            python.expect("hex(math.isqrt(" + text + "))", hex_of(&y));
        }
    }
    sqcut = 16;
}

TEST_P(powers, roots_beside_perfect_squares) {
    number_handle root, square;
    for (int i = times(300); i > 0; i--) {
        rand_number(rnd, 30, &root, signs::positive);
        fast_mult(&root, &root, &square);
        if (square.num_len < 2) continue;
        int_sqrt(&square, &y, 1);
        EXPECT_TRUE(equal(&y, &root));
        fastdiff(&square, &number_1);
        if (square.num_len < 2) continue;
        int_sqrt(&square, &y, 1);
        fastsum(&y, &number_1);
        EXPECT_TRUE(equal(&y, &root));
        int_sqrt(&square, &square, 0);
        fastsum(&square, &number_1);
        EXPECT_TRUE(equal(&square, &root));
    }
}
