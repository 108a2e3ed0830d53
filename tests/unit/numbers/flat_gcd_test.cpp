#include "flat_random.h"

#include "numbers/flat_gcd.h"
#include "numbers/flat_mult.h"

#include <numeric>

using namespace tolvek;

using flat_gcd_test = flat_test;

namespace {

limbs product(const limbs &a, const limbs &b) {
    limbs p(a.size() + b.size());
    flat_mult(p.data(), a.data(), a.size(), b.data(), b.size());
    return normal(p);
}

limbs gcd_of(limbs a, limbs b) {
    a = normal(a);
    b = normal(b);
    limbs g(std::min(a.size(), b.size()));
    g.resize(flat_gcd(g.data(), a.data(), a.size(), b.data(), b.size()));
    return g;
}

} // namespace

TEST_F(flat_gcd_test, words_agree_with_the_library) {
    for (int i = 0; i < times(2000); i++) {
        const limb a = rnd() >> rnd.below(63) | 1, b = (rnd() >> rnd.below(63) | 1) << rnd.below(5);
        const limb g = rnd() % 1000 + 1;
        EXPECT_EQ(flat_gcd_word(a / g * g + g, b / g * g + g), std::gcd(a / g * g + g, b / g * g + g));
    }
    EXPECT_EQ(flat_gcd_word(1, ~limb{0}), 1u);
    EXPECT_EQ(flat_gcd_word(limb{1} << 63, limb{1} << 62), limb{1} << 62);
}

/* Neighbours in Fibonacci's sequence have the most steps, all with the quotient 1, and are coprime. */
TEST_F(flat_gcd_test, fibonacci_numbers_times_a_known_divisor) {
    limbs f{1}, next{1};
    for (int i = 0; i < 3000; i++) {
        limbs sum(next.size() + 1);
        sum[next.size()] = flat_add(sum.data(), next.data(), next.size(), f.data(), f.size());
        f = next;
        next = normal(sum);
        if (i % 97 && i < 2990) continue;
        const limbs g = rand_limbs_up_to(rnd, 10);
        EXPECT_EQ(gcd_of(product(next, g), product(f, g)), g) << i;
        EXPECT_EQ(gcd_of(product(f, g), product(next, g)), g) << i;
    }
}

TEST_F(flat_gcd_test, shared_factors_agree_with_python) {
    for (int i = 0; i < times(250); i++) {
        limbs g = rand_limbs_up_to(rnd, 20);
        if (rnd.one_in(3)) g = product(g, limbs{0, limb{1} << rnd.below(64)});
        const limbs a = product(rand_limbs_up_to(rnd, 150), g), b = product(rand_limbs_up_to(rnd, 40), g);
        python.expect("hex(math.gcd(" + hex_text(a) + "," + hex_text(b) + "))", hex_text(gcd_of(a, b)));
    }
}

TEST_F(flat_gcd_test, one_divides_the_other_or_they_are_equal) {
    for (int i = 0; i < times(100); i++) {
        const limbs a = rand_limbs_up_to(rnd, 60), b = product(a, rand_limbs_up_to(rnd, 60));
        EXPECT_EQ(gcd_of(a, b), a);
        EXPECT_EQ(gcd_of(b, a), a);
        EXPECT_EQ(gcd_of(a, a), a);
        EXPECT_EQ(gcd_of(a, limbs{1}), limbs{1});
    }
}

/* Operands that agree in their upper halves: the first window gives no step that is certain. */
TEST_F(flat_gcd_test, operands_with_equal_windows) {
    for (int i = 0; i < times(100); i++) {
        const size_t n = 3 + size_t(rnd.below(20));
        limbs a = rand_limbs(rnd, n), b = a;
        for (size_t k = 0; k < n / 2; k++) b[k] = rnd();
        python.expect("hex(math.gcd(" + hex_text(a) + "," + hex_text(b) + "))", hex_text(gcd_of(a, b)));
    }
}

TEST_F(flat_gcd_test, stopped_at_any_safe_point_it_gives_its_memory_back) {
    const limbs a = rand_limbs(rnd, 1200), b = rand_limbs(rnd, 1100);
    stop_at_each_safe_point([&] { gcd_of(a, b); });
}
