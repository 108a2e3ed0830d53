#include "numbers/flat_chains.h"

#include "flat_random.h"

#include "numbers/flat_pour.h"
#include "numbers/int_divide.h"
#include "numbers/int_mult.h"
#include "numbers/number_work.h"

using namespace tolvek;

using flat_pour = numbers_test;
using flat_chains = numbers_test;

TEST_F(flat_pour, chains_keep_their_value_both_ways) {
    for (int i = 0; i < times(400); i++) {
        number_handle x, back;
        rand_number(rnd, 200, &x);
        const poured_limbs a(&x);
        EXPECT_EQ(a.n, flat_length(a.data, a.size));
        const std::string hex = hex_of(&x), magnitude = hex[0] == '-' ? hex.substr(1) : hex;
        EXPECT_EQ(hex_text(limbs(a.data, a.data + a.n)), magnitude);
        chain_from_limbs(a.data, a.size, x.num_head->digit < 0 ? -1 : 1, &back);
        expect_whole(&back);
        EXPECT_TRUE(spec_equal(&x, &back));
    }
}

TEST_F(flat_pour, every_length_to_three_turns_of_the_pattern) { /* 16 digits are 7 limbs */
    for (int len = 1; len <= 50; len++) {
        for (const int32_t digit : {1, digit_radix - 1}) {
            number_handle x, back;
            growing_chain chain;
            chain.append(digit);
            for (int i = 1; i < len; i++) chain.append(digit == 1 ? 0 : digit);
            chain.give_to(&x);
            const poured_limbs a(&x);
            EXPECT_EQ(flat_bits(a.data, a.n), static_cast<size_t>(logg2(&x)));
            chain_from_limbs(a.data, a.n, 1, &back);
            EXPECT_TRUE(spec_equal(&x, &back)) << len;
        }
    }
}

TEST_F(flat_pour, zero_is_no_limb_and_one_node) {
    number_handle x;
    special_set(0, &x);
    EXPECT_EQ(poured_limbs(&x).n, 0u);
    const limb zeros[3] = {0, 0, 0};
    for (const size_t n : {0, 1, 3}) {
        chain_from_limbs(zeros, n, -1, &x);
        expect_whole(&x);
        EXPECT_TRUE(is_longint(&x, 0));
    }
}

TEST_F(flat_chains, products_agree_with_the_chains_own) {
    for (int i = 0; i < times(300); i++) {
        number_handle a, b, p, q;
        rand_number(rnd, 120, &a);
        rand_number(rnd, 120, &b);
        const std::string text_a = hex_of(&a), text_b = hex_of(&b);
        flat_chain_mult(a.num_head, a.num_len, b.num_head, b.num_len, &p);
        multiply(&a, &b, &q);
        expect_whole(&p);
        EXPECT_EQ(hex_of(&p), hex_of(&q));
        EXPECT_EQ(hex_of(&a), text_a);
        EXPECT_EQ(hex_of(&b), text_b);
        flat_chain_mult(a.num_head, a.num_len, a.num_head, a.num_len, &p);
        multiply(&a, &a, &q);
        EXPECT_EQ(hex_of(&p), hex_of(&q));
        flat_chain_mult(a.num_head, a.num_len, b.num_head, b.num_len, &a); /* over an operand */
        multiply(&b, &b, &q);
        flat_chain_mult(b.num_head, b.num_len, b.num_head, b.num_len, &b);
        EXPECT_EQ(hex_of(&b), hex_of(&q));
    }
}

TEST_F(flat_chains, quotients_and_remainders_of_magnitudes) {
    for (int i = 0; i < times(200); i++) {
        number_handle a, b, q, r, product;
        rand_number(rnd, 120, &a, signs::not_negative);
        rand_number(rnd, 60, &b, signs::positive);
        flat_chain_divide(a.num_head, a.num_len, b.num_head, b.num_len, &q, &r);
        expect_whole(&q);
        expect_whole(&r);
        EXPECT_TRUE(pos_bigger(&b, &r));
        multiply(&q, &b, &product);
        fastsum(&product, &r);
        EXPECT_EQ(hex_of(&product), hex_of(&a));
        number_handle only;
        flat_chain_divide(a.num_head, a.num_len, b.num_head, b.num_len, nullptr, &only);
        EXPECT_EQ(hex_of(&only), hex_of(&r));
        flat_chain_divide(a.num_head, a.num_len, b.num_head, b.num_len, &b, &a); /* over the operands */
        EXPECT_EQ(hex_of(&b), hex_of(&q));
        EXPECT_EQ(hex_of(&a), hex_of(&r));
    }
}

TEST_F(flat_chains, roots_agree_with_python) {
    for (int i = 0; i < times(100); i++) {
        number_handle x, root;
        rand_number(rnd, 150, &x, signs::positive);
        flat_chain_root(x.num_head, x.num_len, &root);
        expect_whole(&root);
        python.expect("hex(math.isqrt(" + hex_of(&x) + "))", hex_of(&root));
    }
}

TEST_F(flat_chains, decimal_forms_agree_with_python) {
    for (int i = 0; i < times(100); i++) {
        number_handle x, decimal, back;
        rand_number(rnd, 300, &x);
        flat_chain_base_10(x.num_head, x.num_len, &decimal);
        EXPECT_EQ(chain_rule_broken(&decimal, decimal_radix), 0);
        const std::string text = decimal_of(&decimal);
        python.expect(hex_of(&x), text);
        const size_t skip = text[0] == '-';
        flat_chain_figures(text.data() + skip, text.size() - skip, &back);
        expect_whole(&back);
        abs_val_num(&x, &x);
        EXPECT_EQ(hex_of(&back), hex_of(&x));
    }
    number_handle x;
    flat_chain_figures("0000", 4, &x);
    EXPECT_TRUE(is_longint(&x, 0));
}

TEST_F(flat_chains, up_to_twenty_thousand_digits) {
    for (const int len : {2000, 8000, 20000}) {
        number_handle a, b, p, q, r;
        rand_number_of_length(rnd, len, &a);
        rand_number_of_length(rnd, len / 2 + rnd.below(len / 2), &b);
        flat_chain_mult(a.num_head, a.num_len, b.num_head, b.num_len, &p);
        python.expect("hex(" + hex_of(&a) + "*" + hex_of(&b) + ")", hex_of(&p));
        flat_chain_divide(p.num_head, p.num_len, b.num_head, b.num_len, &q, &r);
        abs_val_num(&a, &a);
        EXPECT_TRUE(spec_equal(&q, &a));
        EXPECT_TRUE(is_longint(&r, 0));
    }
}

TEST_F(flat_chains, stopped_at_any_safe_point_they_keep_their_operands) {
    number_handle a, b, q, r;
    rand_number_of_length(rnd, 4000, &a, signs::positive);
    rand_number_of_length(rnd, 1900, &b, signs::positive);
    const std::string text_a = hex_of(&a), text_b = hex_of(&b);
    stop_at_each_safe_point([&] { flat_chain_divide(a.num_head, a.num_len, b.num_head, b.num_len, &q, &r); }, 20);
    stop_at_each_safe_point([&] { flat_chain_mult(a.num_head, a.num_len, b.num_head, b.num_len, &q); }, 20);
    stop_at_each_safe_point([&] { flat_chain_base_10(a.num_head, a.num_len, &r); }, 20);
    stop_at_each_safe_point([&] { flat_chain_extgcd(&a, &b, &q, &r, &q); }, 20);
    EXPECT_EQ(hex_of(&a), text_a);
    EXPECT_EQ(hex_of(&b), text_b);
}
