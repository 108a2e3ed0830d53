#include "flat_random.h"

using namespace tolvek;

using flat_basic = flat_test;

TEST_F(flat_basic, carry_runs_through_all_limbs_and_comes_back) {
    const limbs ones(9, ~limb{0}), unit{1, 0, 0, 0, 0, 0, 0, 0, 0};
    limbs s(9);
    EXPECT_EQ(flat_add(s.data(), ones.data(), unit.data(), 9), 1u);
    EXPECT_EQ(s, limbs(9, 0));
    EXPECT_EQ(flat_sub(s.data(), s.data(), unit.data(), 9), 1u);
    EXPECT_EQ(s, ones);
    EXPECT_EQ(flat_add(s.data(), nullptr, nullptr, 0), 0u);
}

TEST_F(flat_basic, sums_and_differences_agree_with_python) {
    for (int i = 0; i < times(150); i++) {
        limbs a = rand_limbs_up_to(rnd, 40), b = rand_limbs_up_to(rnd, 40);
        if (a.size() < b.size()) std::swap(a, b);
        limbs s(a.size() + 1), d(a.size());
        s[a.size()] = flat_add(s.data(), a.data(), a.size(), b.data(), b.size());
        python.expect("hex(" + hex_text(a) + "+" + hex_text(b) + ")", hex_text(s));
        const limb borrow = flat_sub(d.data(), a.data(), a.size(), b.data(), b.size());
        python.expect("hex(" + hex_text(a) + "-" + hex_text(b) + "+" + std::to_string(borrow) + "*2**" +
                          std::to_string(64 * a.size()) + ")",
                      hex_text(d));
        /* in place: back to a */
        EXPECT_EQ(flat_add(d.data(), d.data(), d.size(), b.data(), b.size()), borrow);
        EXPECT_EQ(d, a);
    }
}

TEST_F(flat_basic, difference_is_a_magnitude_with_the_sign_told) {
    for (int i = 0; i < times(200); i++) {
        const size_t n = 1 + size_t(rnd.below(20));
        const limbs a = rand_limbs(rnd, n), b = rnd.one_in(5) ? a : rand_limbs(rnd, n);
        limbs d(n), e(n), back(n);
        const int less = flat_difference(d.data(), a.data(), b.data(), n);
        EXPECT_EQ(less, flat_compare(a.data(), b.data(), n) < 0);
        EXPECT_EQ(flat_difference(e.data(), b.data(), a.data(), n), a != b && !less);
        EXPECT_EQ(d, e);
        flat_add(back.data(), less ? a.data() : b.data(), d.data(), n);
        EXPECT_EQ(back, less ? b : a);
    }
}

TEST_F(flat_basic, products_by_a_limb_and_shifts_agree_with_python) {
    for (int i = 0; i < times(150); i++) {
        const limbs a = rand_limbs_up_to(rnd, 40), c = rand_limbs(rnd, a.size());
        const limb w = rnd.one_in(4) ? ~limb{0} : rnd();
        const size_t n = a.size();
        limbs p(n + 1), q(c), r(c);
        p[n] = flat_mult_limb(p.data(), a.data(), n, w);
        python.expect("hex(" + hex_text(a) + "*" + std::to_string(w) + ")", hex_text(p));
        q.push_back(flat_add_product(q.data(), a.data(), n, w));
        python.expect("hex(" + hex_text(c) + "+" + hex_text(a) + "*" + std::to_string(w) + ")", hex_text(q));
        const limb out = flat_sub_product(r.data(), a.data(), n, w);
        python.expect("hex(" + hex_text(c) + "-" + hex_text(a) + "*" + std::to_string(w) + "+" + std::to_string(out) +
                          "*2**" + std::to_string(64 * n) + ")",
                      hex_text(r));
        const int bits = 1 + rnd.below(63);
        p[n] = flat_shift_left(p.data(), a.data(), n, bits);
        python.expect("hex(" + hex_text(a) + "<<" + std::to_string(bits) + ")", hex_text(p));
        limbs back(p);
        EXPECT_EQ(flat_shift_right(back.data(), p.data(), n + 1, bits), 0u);
        back.resize(n);
        EXPECT_EQ(back, a);
        EXPECT_EQ(flat_shift_right(back.data(), a.data(), n, bits), a[0] << (64 - bits));
        python.expect("hex(" + hex_text(a) + ">>" + std::to_string(bits) + ")", hex_text(back));
    }
}

TEST_F(flat_basic, length_bits_and_order_of_normal_numbers) {
    const limbs a{5, 0, 0};
    EXPECT_EQ(flat_length(a.data(), 3), 1u);
    EXPECT_EQ(flat_length(a.data() + 1, 2), 0u);
    EXPECT_EQ(flat_bits(a.data(), 1), 3u);
    EXPECT_EQ(flat_bits(a.data(), 0), 0u);
    const limbs b{0, 1};
    EXPECT_EQ(flat_bits(b.data(), 2), 65u);
    EXPECT_EQ(flat_compare(a.data(), 1, b.data(), 2), -1);
    EXPECT_EQ(flat_compare(b.data(), 2, a.data(), 1), 1);
    EXPECT_EQ(flat_compare(b.data(), 2, b.data(), 2), 0);
}
