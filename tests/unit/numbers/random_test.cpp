#include "numbers/random.h"

#include "numbers/int_divide.h"
#include "numbers/number.h"
#include "quoly/quoly.h"
#include "support/fresh_system.h"

#include <cstdlib>
#include <vector>

using namespace tolvek;

/* The C library's generator is the same one: its sequence is the known-good one. */
TEST(random_numbers, follow_the_additive_generator) {
    for (uint32_t seed : {first_seed, 2u, 20240229u, 0x80000000u, 0xffffffffu, 0u}) {
        seed_random(seed);
        srandom(seed);
        for (int i = 0; i < 2000; i++) ASSERT_EQ(random_31(), random()) << seed << ", " << i;
    }
}

TEST(random_numbers, begin_with_the_sequence_of_the_start) {
    seed_random(first_seed);
    for (int32_t r : {1804289383, 846930886, 1681692777, 1714636915, 1957747793}) EXPECT_EQ(random_31(), r);
    std::vector<int32_t> first, again;
    seed_random(first_seed);
    for (int i = 0; i < 100; i++) first.push_back(rand_integer());
    seed_random(first_seed);
    for (int i = 0; i < 100; i++) again.push_back(rand_integer());
    EXPECT_EQ(first, again);
}

/* 1804289383 / (2^31 - 1) * 16384 is 13765.6..., 846930886 gives 6461.6... */
TEST(random_numbers, are_scaled_values_of_the_generator) {
    seed_random(first_seed);
    EXPECT_EQ(rand_integer2(), 13765);
    seed_random(first_seed);
    EXPECT_EQ(rand_integer(), 6461 + (13765 << 14)); /* the first draw gives the upper half */
}

TEST(random_numbers, stay_in_their_ranges) {
    int64_t sum = 0, sum2 = 0;
    for (int i = 0; i < 200000; i++) {
        int32_t r31 = random_31(), r = rand_integer(), r2 = rand_integer2(), r3 = rand_integer3();
        ASSERT_TRUE(r31 >= 0);
        ASSERT_TRUE(r >= 0 && r < 1 << 28);
        ASSERT_TRUE(r2 >= 0 && r2 < 1 << 14);
        ASSERT_TRUE(r3 >= 0 && r3 <= 48870);
        sum += r;
        sum2 += r2;
    }
    EXPECT_NEAR(static_cast<double>(sum) / 200000, 1 << 27, 1 << 20);
    EXPECT_NEAR(static_cast<double>(sum2) / 200000, 1 << 13, 1 << 6);
}

/* The largest value of the generator scales to one more than 14 bits hold. */
TEST(random_numbers, the_largest_scaled_value_is_clamped) {
    EXPECT_EQ(scaled_to_14_bits(INT32_MAX), 16383);
    EXPECT_EQ(scaled_to_14_bits(INT32_MAX - 1), 16383);
    EXPECT_EQ(scaled_to_14_bits(0), 0);
    EXPECT_EQ(scaled_to_14_bits(131072), 1);
    EXPECT_EQ(scaled_to_14_bits(131071), 0);
}

/* ---- the built-in ---- */

struct random_values : fresh_exact_system {
    void TearDown() override {
        setvalue(1, &rand_denom_n);
        fresh_exact_system::TearDown();
    }
    quoly_handle q;
};

TEST_F(random_values, are_28_bit_integers_in_the_form_in_force) {
    seed_random(first_seed);
    const int32_t first = rand_integer(), second = rand_integer(), third = rand_integer();
    seed_random(first_seed);
    randomize(0, q.slot());
    EXPECT_TRUE(q->is_num);
    EXPECT_EQ(quoly_to_int(q.get()), first);
    set_ring({0, 1, 1, 0, 0, 0, 0, 101});
    randomize(0, q.slot());
    EXPECT_EQ(q->numb->lint_val, second % 101);
    set_ring({1, 1, 0, 0, 0, 0, 0, -1});
    randomize(0, q.slot());
    EXPECT_EQ(q->numb->flote_val, third);
    set_ring(user_ring);
}

TEST_F(random_values, are_divided_by_the_denominator) {
    seed_random(first_seed);
    const int32_t first = rand_integer(), second = rand_integer();
    set_int64(268435456 / 4, &rand_denom_n);
    seed_random(first_seed);
    randomize(0, q.slot());
    EXPECT_TRUE(q->is_rat); /* the first value is odd */
    EXPECT_EQ(q->num->num->num_head->digit, first);
    special_set(1, &rand_denom_n);
    set_ring({1, 1, 0, 0, 0, 0, 0, -1});
    rand_denom_n.flote_val = 1024;
    randomize(0, q.slot());
    EXPECT_EQ(q->numb->flote_val, second / 1024.0L);
    rand_denom_n.flote_val = 1;
    set_ring(user_ring);
}

TEST_F(random_values, may_be_mixed_with_the_time) {
    for (int i = 0; i < 1000; i++) {
        randomize(1, q.slot());
        ASSERT_TRUE(q->is_num);
        ASSERT_TRUE(quoly_to_int(q.get()) >= 0 && quoly_to_int(q.get()) < 1 << 28);
    }
}
