#include "flat_random.h"

#include "numbers/flat_divide.h"
#include "numbers/flat_mult.h"

using namespace tolvek;

using flat_divide_test = flat_test;

namespace {

/* a = q b + r with r < b, in q's and b's limbs together (and one more for the sum). */
limbs dividend(const limbs &q, const limbs &b, const limbs &r) {
    limbs a(q.size() + b.size() + 1, 0);
    flat_mult(a.data(), q.data(), q.size(), b.data(), b.size());
    flat_add(a.data(), a.data(), a.size(), r.data(), r.size());
    return normal(a);
}

void expect_division(const limbs &a, const limbs &b, const limbs &q, const limbs &r) {
    limbs quotient(a.size() - b.size() + 1), rest(b.size());
    flat_divide(quotient.data(), rest.data(), a.data(), a.size(), b.data(), b.size());
    EXPECT_EQ(normal(quotient), normal(q)) << a.size() << " by " << b.size();
    EXPECT_EQ(normal(rest), normal(r)) << a.size() << " by " << b.size();
    limbs over(a);
    flat_divide(nullptr, over.data(), over.data(), a.size(), b.data(), b.size());
    EXPECT_TRUE(std::equal(rest.begin(), rest.end(), over.begin())) << "remainder over the dividend";
    flat_divide(quotient.data(), nullptr, a.data(), a.size(), b.data(), b.size());
    EXPECT_EQ(normal(quotient), normal(q)) << "without the remainder";
}

/* A remainder below b: random, 0, or b - 1. */
limbs rand_below(test_random &rnd, const limbs &b) {
    limbs r = rnd.one_in(4) ? limbs(b.size(), 0) : rand_limbs(rnd, b.size());
    if (rnd.one_in(4)) flat_sub_limb(r.data(), b.data(), b.size(), 1);
    while (flat_compare(r.data(), b.data(), b.size()) >= 0) r.back() = b.back() ? rnd() % b.back() : 0;
    return r;
}

void divide_known_products(test_random &rnd, int rounds, int longest) {
    for (int i = 0; i < rounds; i++) {
        const limbs q = rand_limbs_up_to(rnd, longest), b = rand_limbs_up_to(rnd, longest), r = rand_below(rnd, b);
        expect_division(dividend(q, b, r), b, q, r);
    }
}

} // namespace

TEST_F(flat_divide_test, known_quotients_and_remainders_limb_by_limb) {
    lowered<size_t> cut(flat_divide_cut, 100000);
    divide_known_products(rnd, times(400), 100);
}

TEST_F(flat_divide_test, known_quotients_and_remainders_by_blocks) {
    lowered<size_t> cut(flat_divide_cut, 4);
    divide_known_products(rnd, times(400), 200);
}

TEST_F(flat_divide_test, both_sides_of_the_cut) {
    for (size_t n : {flat_divide_cut - 1, flat_divide_cut, flat_divide_cut + 1, 3 * flat_divide_cut}) {
        for (size_t m : {flat_divide_cut - 1, flat_divide_cut, flat_divide_cut + 1, 5 * flat_divide_cut}) {
            const limbs q = rand_limbs(rnd, m), b = rand_limbs(rnd, n), r = rand_below(rnd, b);
            expect_division(dividend(q, b, r), b, q, r);
        }
    }
}

TEST_F(flat_divide_test, largest_quotient_limbs_and_equal_top_limbs) {
    for (size_t cut : {size_t{4}, size_t{100}}) {
        lowered<size_t> low(flat_divide_cut, cut);
        for (size_t n = 1; n < 40; n++) {
            for (const limb top : {limb{1}, limb{1} << 63, ~limb{0}}) {
                limbs b(n, n % 2 ? 0 : ~limb{0});
                b.back() = top;
                const limbs q(n + 3, ~limb{0});
                limbs r(n);
                if (flat_sub_limb(r.data(), b.data(), n, 1)) continue;
                expect_division(dividend(q, b, r), b, q, r);
                expect_division(dividend(q, b, limbs(n, 0)), b, q, limbs(n, 0));
            }
        }
    }
}

TEST_F(flat_divide_test, divisors_of_one_limb) {
    for (int i = 0; i < times(200); i++) {
        const limbs a = rand_limbs_up_to(rnd, 30);
        const limb d = rnd.one_in(3)   ? limb(1 + rnd.below(9))
                       : rnd.one_in(2) ? ~limb{0} - limb(rnd.below(3))
                                       : rnd() | 1;
        limbs q(a.size());
        const limb r = flat_divide_limb(q.data(), a.data(), a.size(), d);
        EXPECT_EQ(flat_mod_limb(a.data(), a.size(), d), r);
        python.expect("hex(" + hex_text(a) + "//" + std::to_string(d) + ")", hex_text(q));
        python.expect(hex_text(a) + "%" + std::to_string(d), std::to_string(r));
        limbs in_place(a);
        EXPECT_EQ(flat_divide_limb(in_place.data(), in_place.data(), a.size(), d), r);
        EXPECT_EQ(in_place, q);
        EXPECT_EQ(flat_divide_limb(nullptr, nullptr, 0, d), 0u);
    }
}

TEST_F(flat_divide_test, very_long_by_very_short_goes_in_stretches) {
    const limbs q = rand_limbs(rnd, 40000), b = rand_limbs(rnd, 5), r = rand_below(rnd, b);
    expect_division(dividend(q, b, r), b, q, r);
}

TEST_F(flat_divide_test, long_ones_agree_with_python) {
    for (size_t n : {300, 1500, 4000}) {
        const limbs a = rand_limbs(rnd, 2 * n + 17), b = rand_limbs(rnd, n);
        limbs q(n + 18), r(n);
        flat_divide(q.data(), r.data(), a.data(), a.size(), b.data(), n);
        python.expect("list(map(hex,divmod(" + hex_text(a) + "," + hex_text(b) + ")))",
                      "['" + hex_text(q) + "', '" + hex_text(r) + "']");
    }
}

TEST_F(flat_divide_test, stopped_at_any_safe_point_it_gives_its_memory_back) {
    const limbs a = rand_limbs(rnd, 900), b = rand_limbs(rnd, 400);
    limbs q(501), r(400);
    stop_at_each_safe_point([&] { flat_divide(q.data(), r.data(), a.data(), 900, b.data(), 400); });
}
