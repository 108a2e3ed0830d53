#include "numbers/flat_chinese.h"

#include "numbers/int_mult.h"
#include "support/fresh_system.h"
#include "support/rand_numbers.h"

#include <gtest/gtest.h>

namespace tolvek {

namespace {

struct chinese_values_test : fresh_exact_system {};

constexpr uint32_t some_primes[] = {2147483629, 3, 65521, 2147483587, 2, 1073741827, 46337};

bool is_above_half(const number &x, const number &product) {
    number_handle twice;
    spec_num_assign(&x, &twice);
    fastsum(&twice, &x);
    return int_abs_bigger(&twice, &product, 1);
}

TEST_F(chinese_values_test, values_between_plus_and_minus_half_of_the_product_come_back) {
    test_random rnd;
    for (std::size_t count = 1; count <= std::size(some_primes); count++) {
        chinese_values values(some_primes, count);
        number_handle product;
        set_int64(1, &product);
        for (std::size_t i = 0; i < count; i++) {
            number_handle p;
            set_int64(some_primes[i], &p);
            multiply(&product, &p, &product);
        }
        for (int i = 0; i < times(50); i++) {
            number_handle x, found;
            do rand_number(rnd, product.num_len, &x);
            while (is_above_half(x, product));
            std::vector<uint32_t> residues;
            for (std::size_t k = 0; k < count; k++) residues.push_back(chain_modulo(&x, some_primes[k]));
            values.value(residues.data(), 1, &found);
            ASSERT_EQ(hex_of(&found), hex_of(&x)) << count;
        }
    }
}

TEST_F(chinese_values_test, residues_may_stand_apart) {
    chinese_values values(some_primes, 3);
    const uint32_t spread[] = {7, 0, 1, 0, 7};
    number_handle found;
    values.value(spread, 2, &found);
    EXPECT_EQ(hex_of(&found), "0x7");
}

} // namespace

} // namespace tolvek
