#include "numbers/number_decimal.h"

#include "numbers/int_power.h"
#include "support/rand_numbers.h"

using namespace tolvek;

struct decimals : both_methods_test {
    number_handle x, y;
};
INSTANTIATE_TEST_SUITE_P(methods, decimals, both_methods, method_name);

TEST_P(decimals, the_table_of_powers) {
    for (int i = 0; i < 130; i++) {
        const number *entry = two_28_entry(i);
        EXPECT_EQ(chain_rule_broken(entry, decimal_radix), 0);
        python.expect("2**(28*" + std::to_string(i + 1) + ")", decimal_of(entry));
    }
}

TEST_P(decimals, conversion_agrees_with_python) {
    for (int i = times(400); i > 0; i--) {
        rand_number(rnd, 40, &x);
        make_base_10(&x, &y);
        EXPECT_EQ(chain_rule_broken(&y, decimal_radix), 0);
        python.expect("int('" + hex_of(&x) + "',16)", decimal_of(&y));
    }
}

TEST_P(decimals, both_conversions_agree_on_both_sides_of_every_split) {
    for (int len : {1,  2,  8,  9,   10,  11,  15,  16,  17,  18,  19,  20,  21,
                    38, 39, 75, 130, 131, 259, 260, 261, 262, 270, 400, 521, 530}) {
        for (int i = times(3); i > 0; i--) {
            rand_number_of_length(rnd, len, &x);
            number_handle plain, split;
            make_base_10(&x, &plain);
            verybig_base_10(x.num_head, x.num_tail, x.num_len, &split);
            EXPECT_EQ(chain_rule_broken(&split, decimal_radix), 0);
            EXPECT_TRUE(spec_equal(&plain, &split)) << len;
            expect_whole(&x);
        }
    }
}

TEST_P(decimals, lower_parts_of_zeros) {
    for (int zeros : {1, 8, 9, 20, 130, 131, 300, 600}) {
        set_int64(-12345, &x);
        fillout(&x, zeros);
        verybig_base_10(x.num_head, x.num_tail, x.num_len, &y);
        EXPECT_EQ(chain_rule_broken(&y, decimal_radix), 0);
        python.expect("-12345*2**(28*" + std::to_string(zeros) + ")", decimal_of(&y));
    }
}

/* From 1 to 5,000 figures: 10^n and what lies beside it, and random figures. */
TEST_P(decimals, printing_agrees_with_python) {
    for (int n = 1; n <= 5000; n += n < 40 ? 1 : n < 1000 ? 37 : 331) {
        std::string figures;
        for (int i = 0; i < n; i++) figures += static_cast<char>('0' + rnd.below(10));
        if (figures[0] == '0') figures[0] = '7';
        number_from_figures(figures.data(), figures.size(), &x);
        expect_whole(&x);
        EXPECT_EQ(figures_of_display(&x), figures);
        python.expect("hex(" + figures + ")", hex_of(&x));
        set_int64(10, &x);
        number_power(&x, static_cast<uint32_t>(n));
        EXPECT_EQ(figures_of_display(&x), std::string(static_cast<std::size_t>(n) + 1, '0').replace(0, 1, 1, '1'));
        sub(&number_1, &x, &x);
        EXPECT_EQ(figures_of_display(&x), std::string(static_cast<std::size_t>(n) + 1, '9').replace(0, 1, 1, '-'));
    }
}

TEST_P(decimals, figures_with_leading_zeros_and_none) {
    for (auto [text, value] : {std::pair{"0", 0}, {"000", 0}, {"00000000000000000012", 12}, {"", 0}, {"00000001", 1}}) {
        number_from_figures(text, std::char_traits<char>::length(text), &x);
        EXPECT_TRUE(is_longint(&x, value)) << text;
        expect_whole(&x);
    }
}

TEST_P(decimals, figures_are_read_into_a_chain_whatever_the_ring) {
    flotemode = lintmode = 1;
    number_from_figures("123456789012345678901234567890", 30, &x);
    EXPECT_EQ(hex_of(&x), "0x18ee90ff6c373e0ee4e3f0ad2"); /* hex() of it in Python */
    EXPECT_EQ(flotemode, 1);
}

TEST_P(decimals, long_texts_on_both_sides_of_the_split) {
    for (std::size_t n : {1990u, 1999u, 2000u, 2001u, 2007u, 2008u, 2009u, 4000u, 4001u, 8001u, 20000u}) {
        std::string figures(n, '0');
        for (char &c : figures) c = rnd.one_in(3) ? '0' : static_cast<char>('0' + rnd.below(10));
        figures[0] = '9';
        number_from_figures(figures.data(), n, &x);
        expect_whole(&x);
        python.expect("hex(" + figures + ")", hex_of(&x));
        EXPECT_EQ(figures_of_display(&x), figures);
    }
}
