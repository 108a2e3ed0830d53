#include "numbers/int_mult.h"

#include "numbers/number_decimal.h"
#include "numbers/number_work.h"
#include "support/famine.h"
#include "support/rand_numbers.h"

using namespace tolvek;

struct products : both_methods_test {
    number_handle a, b, c;
};
INSTANTIATE_TEST_SUITE_P(methods, products, both_methods, method_name);

struct cut_off_of_4 {
    int found = multcut;
    cut_off_of_4() { multcut = 4; }
    ~cut_off_of_4() { multcut = found; }
};

using product_routine = void (*)(const number *, const number *, number *);

static numnode *node_before_tail(const number *x) {
    numnode *before = nullptr;
    for (numnode *d = x->num_head; d->next; d = d->next) before = d;
    return before;
}

TEST_P(products, with_0_are_one_node_holding_0) {
    set_hex("-0x123456789abcdef123456789abcdef", &a);
    for (product_routine mult : {multiply, fast_mult, base_10_multiply, base_10_fast_mult}) {
        mult(&a, &number_0, &c);
        EXPECT_TRUE(is_longint(&c, 0));
        expect_whole(&c);
        mult(&number_0, &a, &c);
        EXPECT_TRUE(is_longint(&c, 0));
        mult(&number_0, &number_0, &c);
        EXPECT_TRUE(is_longint(&c, 0));
    }
    numnode *penultimate;
    simp_mult(&a, &c, 0, &penultimate);
    EXPECT_TRUE(is_longint(&c, 0));
    EXPECT_EQ(penultimate, nullptr);
    simp_mult(&number_0, &c, 5, &penultimate);
    EXPECT_TRUE(is_longint(&c, 0));
    simp_base_10_mult(&a, &c, 0, &penultimate);
    EXPECT_TRUE(is_longint(&c, 0));
}

TEST_P(products, by_one_digit_agree_with_python) {
    numnode *penultimate;
    for (int i = times(800); i > 0; i--) {
        rand_number(rnd, 20, &a);
        const std::string text = hex_of(&a);
        int32_t digit = rnd.one_in(3)   ? digit_mask - rnd.below(2)
                        : rnd.one_in(3) ? rnd.below(3)
                                        : rnd.below(digit_radix);
        if (rnd.one_in(2)) digit = -digit;
        simp_mult(&a, &c, digit, &penultimate);
        expect_whole(&c);
        EXPECT_EQ(penultimate, node_before_tail(&c));
        const std::string expression = "hex(" + text + "*" + std::to_string(digit) + ")";
        python.expect(expression, hex_of(&c));
        simp_mult(&a, &a, digit, &penultimate);
        expect_whole(&a);
        EXPECT_EQ(penultimate, node_before_tail(&a));
        EXPECT_EQ(hex_of(&a), hex_of(&c));
    }
}

TEST_P(products, agree_with_python) {
    for (int i = times(500); i > 0; i--) {
        rand_number(rnd, rnd.one_in(10) ? 200 : 40, &a);
        rand_number(rnd, rnd.one_in(10) ? 200 : 40, &b);
        const std::string ta = hex_of(&a), tb = hex_of(&b);
        const std::string expression = "hex(" + ta + "*" + tb + ")";
        multiply(&a, &b, &c);
        expect_whole(&c);
        python.expect(expression, hex_of(&c));
        const std::string product = hex_of(&c);
        fast_mult(&a, &b, &c);
        expect_whole(&c);
        EXPECT_EQ(hex_of(&c), product);
        {
            cut_off_of_4 low;
            fast_mult(&a, &b, &c);
            expect_whole(&c);
            EXPECT_EQ(hex_of(&c), product);
        }
        EXPECT_EQ(hex_of(&a), ta);
        EXPECT_EQ(hex_of(&b), tb);
        expect_whole(&a);
        expect_whole(&b);
    }
}

/* Enough rows for the columns' carries to run on the way: maximal digits throughout. */
TEST_P(products, of_long_runs_of_maximal_digits) {
    for (int digits : {255, 256, 257, 300, 600}) {
        const std::string text = "0x" + std::string(static_cast<std::size_t>(7 * digits), 'f');
        set_hex(text, &a);
        multiply(&a, &a, &c);
        expect_whole(&c);
        python.expect("hex(" + text + "**2)", hex_of(&c));
        fast_mult(&a, &a, &b);
        expect_whole(&b);
        EXPECT_TRUE(equal(&b, &c));
    }
    const std::string nines(8 * 1900, '9');
    growing_chain decimal;
    for (int i = 0; i < 1900; i++) decimal.append(99999999);
    decimal.give_to(&a);
    base_10_multiply(&a, &a, &c);
    EXPECT_EQ(chain_rule_broken(&c, decimal_radix), 0);
    python.expect(nines + "**2", decimal_of(&c));
    base_10_fast_mult(&a, &a, &c);
    python.expect(nines + "**2", decimal_of(&c));
}

TEST_P(products, on_both_sides_of_the_cut_off_are_the_same) {
    for (auto [la, lb] :
         {std::pair{16, 16}, {17, 17}, {16, 17}, {17, 33}, {17, 34}, {33, 17}, {34, 17}, {65, 64}, {130, 67}}) {
        rand_number_of_length(rnd, la, &a);
        rand_number_of_length(rnd, lb, &b);
        multiply(&a, &b, &c);
        number_handle d;
        fast_mult(&a, &b, &d);
        expect_whole(&d);
        EXPECT_TRUE(equal(&c, &d)) << la << " by " << lb;
    }
}

TEST_P(products, of_operands_with_many_trailing_zeros) {
    for (int kept = 1; kept < 20; kept++) {
        rand_number_of_length(rnd, kept, &a);
        rand_number_of_length(rnd, kept, &b);
        if (num_sign(&a) == 0 || num_sign(&b) == 0) continue;
        fillout(&a, 40 - kept);
        fillout(&b, 40 - kept);
        fast_mult(&a, &b, &c);
        expect_whole(&c);
        python.expect("hex(" + hex_of(&a) + "*" + hex_of(&b) + ")", hex_of(&c));
    }
}

TEST_P(products, a_destination_may_be_an_operand) {
    for (int i = times(100); i > 0; i--) {
        rand_number(rnd, 60, &a);
        rand_number(rnd, 60, &b);
        for (product_routine mult : {multiply, fast_mult}) {
            number_handle d;
            mult(&a, &b, &d);
            num_assign(&a, &c), mult(&c, &b, &c);
            expect_whole(&c);
            EXPECT_TRUE(equal(&c, &d));
            num_assign(&b, &c), mult(&a, &c, &c);
            expect_whole(&c);
            EXPECT_TRUE(equal(&c, &d));
            mult(&a, &a, &d);
            num_assign(&a, &c), mult(&c, &c, &c);
            expect_whole(&c);
            EXPECT_TRUE(equal(&c, &d));
        }
    }
}

TEST_P(products, in_decimal_form_agree_with_python) {
    numnode *penultimate;
    for (int i = times(300); i > 0; i--) {
        rand_number(rnd, 50, &a, signs::both, decimal_radix);
        rand_number(rnd, 50, &b, signs::both, decimal_radix);
        const std::string expression = decimal_of(&a) + "*" + decimal_of(&b);
        for (product_routine mult : {base_10_multiply, base_10_fast_mult}) {
            mult(&a, &b, &c);
            EXPECT_EQ(chain_rule_broken(&c, decimal_radix), 0);
            python.expect(expression, decimal_of(&c));
        }
        simp_base_10_mult(&a, &c, b.num_head->digit, &penultimate);
        EXPECT_EQ(chain_rule_broken(&c, decimal_radix), 0);
        EXPECT_EQ(penultimate, node_before_tail(&c));
        python.expect(decimal_of(&a) + "*" + std::to_string(b.num_head->digit), decimal_of(&c));
        spec_num_assign(&a, &c), base_10_fast_mult(&c, &b, &c);
        python.expect(expression, decimal_of(&c));
    }
}

TEST_P(products, of_32_bit_integers) {
    lintmode = flotemode = 1; /* these work on the chain whatever the ring */
    for (auto [x, y] : {std::pair{0, 5},
                        {3, -7},
                        {INT32_MAX, INT32_MAX},
                        {INT32_MIN, INT32_MIN},
                        {INT32_MIN, 1},
                        {1 << 14, 1 << 14}}) {
        special_set_2(x, y, &c);
        expect_whole(&c);
        python.expect("hex(" + std::to_string(x) + "*" + std::to_string(y) + ")", hex_of(&c));
        EXPECT_TRUE(is_product_of(&c, x, y));
        EXPECT_FALSE(is_product_of(&number_10, x, y));
    }
    EXPECT_FALSE(oversize(1000, 1000));
    EXPECT_TRUE(oversize(1000, 1001));
    EXPECT_TRUE(oversize(1, 1000001));
    EXPECT_TRUE(oversize(INT32_MAX, INT32_MAX));
    EXPECT_FALSE(oversize(0, INT32_MAX));
    EXPECT_FALSE(sparse_oversize(1 << 15, (1 << 16) - 1));
    EXPECT_TRUE(sparse_oversize(1 << 15, 1 << 16));
    EXPECT_FALSE(sparse_oversize(INT32_MAX, 1));
    EXPECT_TRUE(sparse_oversize(INT32_MAX, INT32_MAX));
}

TEST_P(products, a_refused_digit_leaves_everything_as_it_was) {
    cut_off_of_4 low;
    const std::string ta = "0x" + std::string(70, 'e'), tb = "-0x" + std::string(90, 'd');
    for (bool split : {false, true}) {
        bool refused = true;
        for (int digits = 0; refused; digits++) {
            set_hex(ta, &a);
            set_hex(tb, &b);
            digit_famine only(digits);
            refused = false;
            try {
                (split ? fast_mult : multiply)(&a, &b, &a);
            } catch (const unwind &) {
                refused = true;
            }
            ASSERT_LT(digits, 300);
            expect_whole(&a);
            EXPECT_EQ(hex_of(&b), tb);
            if (refused) {
                EXPECT_EQ(hex_of(&a), ta);
                EXPECT_EQ(only.left(), digits);
            }
        }
    }
}
