#include "numbers/flat_ratio.h"

#include "numbers/flat_divide.h"
#include "support/rand_numbers.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <numeric>

namespace tolvek {

namespace {

struct flat_ratio_test : ::testing::Test {
    test_random rnd;

    limb some_limb() { return rnd.one_in(3) ? 0 : rnd.one_in(3) ? ~limb{0} : rnd(); }
    void random_value(size_t n, flat_value *x) {
        limb *at = x->make_room(n);
        for (size_t i = 0; i < n; i++) at[i] = some_limb();
        x->n = flat_length(at, n);
    }
    void random_below(const flat_value &m, flat_value *x) {
        flat_value any;
        random_value(m.n + 1, &any);
        limb *at = x->make_room(m.n + 1);
        flat_copy(at, any.data(), any.n);
        if (any.n >= m.n) flat_divide(nullptr, at, any.data(), any.n, m.data(), m.n);
        x->n = flat_length(at, any.n < m.n ? any.n : m.n);
    }
};

bool at_most(const flat_value &a, const flat_value &b) { return flat_compare(a.data(), a.n, b.data(), b.n) <= 0; }

/* den v - num or den v + num is a multiple of m. */
bool is_a_fraction_of(const flat_value &v, const flat_value &m, const flat_value &num, const flat_value &den,
                      bool negative) {
    flat_value product, sum;
    flat_value_product(product, den, v);
    if (negative)
        flat_value_sum(sum, product, num);
    else if (flat_value_difference(sum, product, num) && sum.n)
        return false;
    if (sum.n < m.n) return sum.n == 0;
    flat_value rest;
    limb *at = rest.make_room(m.n);
    flat_divide(nullptr, at, sum.data(), sum.n, m.data(), m.n);
    return flat_length(at, m.n) == 0;
}

void set_word(limb w, flat_value *x) {
    x->make_room(1)[0] = w;
    x->n = w != 0;
}

/* The numerator's and the denominator's bounds and the congruence determine the fraction: their product is at most m. */
TEST_F(flat_ratio_test, fractions_obey_both_bounds_and_the_congruence) {
    for (int i = 0; i < times(3000); i++) {
        flat_value m, v, bound, num, den, product;
        random_value(static_cast<size_t>(1 + rnd.below(rnd.one_in(10) ? 90 : 9)), &m);
        if (m.n == 0) continue;
        random_below(m, &v);
        random_below(m, &bound);
        if (rnd.one_in(2)) bound.n = flat_length(bound.data(), bound.n < (m.n + 1) / 2 ? bound.n : (m.n + 1) / 2);
        const bool negative = flat_ratio(num, den, v, m, bound);
        ASSERT_TRUE(at_most(num, bound));
        ASSERT_FALSE(den.is_zero());
        flat_value_product(product, den, bound);
        ASSERT_TRUE(at_most(product, m));
        ASSERT_TRUE(is_a_fraction_of(v, m, num, den, negative));
    }
}

TEST_F(flat_ratio_test, all_small_fractions_come_back) {
    const int m = 1009, bound = 22; /* a prime above 2 * 22 * 22 */
    flat_value modulus, v, limit, num, den;
    set_word(m, &modulus);
    set_word(bound, &limit);
    for (int a = -bound; a <= bound; a++)
        for (int b = 1; b <= bound; b++) {
            if (std::gcd(a, b) != 1) continue;
            int residue = 0;
            while ((residue * b - a) % m != 0) residue++;
            set_word(static_cast<limb>(residue), &v);
            const bool negative = flat_ratio(num, den, v, modulus, limit);
            ASSERT_EQ(num.n ? static_cast<int>(num.data()[0]) : 0, std::abs(a));
            ASSERT_EQ(static_cast<int>(den.data()[0]), b);
            if (a) {
                ASSERT_EQ(negative, a < 0);
            }
        }
}

} // namespace

} // namespace tolvek
