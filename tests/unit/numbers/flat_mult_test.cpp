#include "flat_random.h"

#include "numbers/flat_mult.h"
#include "numbers/flat_ntt.h"
#include "numbers/flat_transform.h"

using namespace tolvek;

using flat_mult_test = flat_test;
using flat_ntt = flat_test;

namespace {

limbs plain(const limbs &a, const limbs &b) {
    limbs p(a.size() + b.size());
    flat_mult_school(p.data(), a.data(), a.size(), b.data(), b.size());
    return p;
}

limbs chosen(const limbs &a, const limbs &b) {
    limbs p(a.size() + b.size(), 0x5555);
    flat_mult(p.data(), a.data(), a.size(), b.data(), b.size());
    return p;
}

limbs transformed(const limbs &a, const limbs &b) {
    limbs p(a.size() + b.size(), 0x5555);
    flat_mult_transform(p.data(), a.data(), a.size(), b.data(), b.size());
    return p;
}

/* All cut-offs at small values for the life of a test. */
struct low_cuts {
    lowered<size_t> a, b, c, d;
    low_cuts(size_t split, size_t transform)
        : a(flat_karatsuba_cut, split), b(flat_transform_cut, transform), c(flat_square_karatsuba_cut, split),
          d(flat_square_transform_cut, transform) {}
};

} // namespace

TEST_F(flat_mult_test, plain_products_agree_with_python) {
    for (int i = 0; i < times(100); i++) {
        const limbs a = rand_limbs_up_to(rnd, 40), b = rand_limbs_up_to(rnd, 40);
        python.expect("hex(" + hex_text(a) + "*" + hex_text(b) + ")", hex_text(plain(a, b)));
        limbs s(2 * a.size());
        flat_square_school(s.data(), a.data(), a.size());
        EXPECT_EQ(s, plain(a, a));
    }
}

TEST_F(flat_mult_test, largest_operands_of_every_short_length) {
    for (size_t n = 1; n <= 70; n++) {
        const limbs a(n, ~limb{0});
        limbs square(2 * n, 0); /* (B^n - 1)^2 = B^2n - 2 B^n + 1 */
        square[0] = 1;
        for (size_t i = n; i < 2 * n; i++) square[i] = ~limb{0};
        square[n]--;
        EXPECT_EQ(plain(a, a), square);
        EXPECT_EQ(transformed(a, a), square);
        limbs s(2 * n);
        flat_square(s.data(), a.data(), n);
        EXPECT_EQ(s, square);
        if (n < 4) continue;
        limbs scratch(flat_karatsuba_room(n));
        flat_mult_karatsuba(s.data(), a.data(), a.data(), n, scratch.data());
        EXPECT_EQ(s, square);
        flat_square_karatsuba(s.data(), a.data(), n, scratch.data());
        EXPECT_EQ(s, square);
    }
}

TEST_F(flat_mult_test, halves_agree_with_the_plain_product_at_the_least_cut) {
    low_cuts cuts(4, 100000);
    for (int i = 0; i < times(150); i++) {
        const size_t n = 4 + size_t(rnd.below(120));
        const limbs a = rand_limbs(rnd, n), b = rand_limbs(rnd, n);
        limbs p(2 * n), scratch(flat_karatsuba_room(n));
        flat_mult_karatsuba(p.data(), a.data(), b.data(), n, scratch.data());
        EXPECT_EQ(p, plain(a, b)) << n << " limbs";
        flat_square_karatsuba(p.data(), a.data(), n, scratch.data());
        EXPECT_EQ(p, plain(a, a)) << n << " limbs";
    }
}

TEST_F(flat_mult_test, transform_agrees_with_the_plain_product) {
    for (int i = 0; i < times(120); i++) {
        const limbs a = rand_limbs_up_to(rnd, 500), b = rand_limbs_up_to(rnd, 500);
        EXPECT_EQ(transformed(a, b), plain(a, b)) << a.size() << " and " << b.size() << " limbs";
        EXPECT_EQ(transformed(a, a), plain(a, a)) << a.size() << " limbs";
    }
}

TEST_F(flat_mult_test, every_length_around_each_size_of_transform) {
    const limbs ones(170, ~limb{0});
    for (size_t n = 1; n <= 170; n++) {
        const limbs a(ones.begin(), ones.begin() + long(n)), b = rand_limbs(rnd, 1 + n / 3);
        EXPECT_EQ(transformed(a, b), plain(a, b)) << n;
        EXPECT_EQ(transformed(b, a), plain(a, b)) << n;
    }
}

TEST_F(flat_mult_test, chooser_on_both_sides_of_its_cuts) {
    for (size_t cut : {flat_karatsuba_cut, flat_transform_cut}) {
        for (size_t na : {cut - 1, cut, cut + 1, 2 * cut - 1, 2 * cut, 3 * cut + 1}) {
            for (size_t nb : {cut - 1, cut, cut + 1}) {
                const limbs a = rand_limbs(rnd, na), b = rand_limbs(rnd, nb);
                EXPECT_EQ(chosen(a, b), plain(a, b)) << na << " and " << nb;
                EXPECT_EQ(chosen(b, a), plain(a, b)) << nb << " and " << na;
            }
        }
    }
    for (size_t cut : {flat_square_karatsuba_cut, flat_square_transform_cut}) {
        for (size_t n : {cut - 1, cut, cut + 1}) {
            const limbs a = rand_limbs(rnd, n);
            limbs s(2 * n);
            flat_square(s.data(), a.data(), n);
            EXPECT_EQ(s, plain(a, a)) << n;
        }
    }
}

TEST_F(flat_mult_test, uneven_operands_go_in_slices) {
    low_cuts cuts(5, 40);
    for (int i = 0; i < times(60); i++) {
        const limbs a = rand_limbs(rnd, 1 + size_t(rnd.below(600))), b = rand_limbs(rnd, 1 + size_t(rnd.below(60)));
        EXPECT_EQ(chosen(a, b), plain(a, b)) << a.size() << " and " << b.size();
    }
}

TEST_F(flat_mult_test, very_long_by_very_short_goes_in_slices_too) {
    const limbs a = rand_limbs(rnd, 150000), b = rand_limbs(rnd, 5);
    EXPECT_EQ(chosen(a, b), plain(a, b));
    stop_at_each_safe_point([&] { chosen(a, b); });
}

TEST_F(flat_mult_test, products_too_long_for_one_transform_are_split_above_it) {
    low_cuts cuts(6, 30);
    lowered<size_t> longest(flat_transform_longest, 150);
    for (int i = 0; i < times(30); i++) {
        const limbs a = rand_limbs(rnd, 100 + size_t(rnd.below(300))), b = rand_limbs(rnd, 76 + size_t(rnd.below(300)));
        EXPECT_EQ(chosen(a, b), plain(a, b)) << a.size() << " and " << b.size();
        limbs s(2 * a.size());
        flat_square(s.data(), a.data(), a.size());
        EXPECT_EQ(s, plain(a, a)) << a.size();
    }
}

TEST_F(flat_mult_test, long_products_agree_with_python) {
    for (size_t n : {520, 2000, 9000}) {
        const limbs a = rand_limbs(rnd, n), b = rand_limbs(rnd, n - n / 7);
        python.expect("hex(" + hex_text(a) + "*" + hex_text(b) + ")", hex_text(chosen(a, b)));
    }
}

TEST_F(flat_mult_test, stopped_at_any_safe_point_it_gives_its_memory_back) {
    const limbs a = rand_limbs(rnd, 6000), b = rand_limbs(rnd, 2500);
    stop_at_each_safe_point([&] { chosen(a, b); });
}

TEST_F(flat_ntt, sizes_hold_their_points_with_little_waste) {
    for (size_t points = 1; points < 5000; points++) {
        const ntt_size s = ntt_size_for(points);
        ASSERT_GE(s.points(), points);
        ASSERT_TRUE(points < 9 || 3 * s.points() <= 4 * points + 8) << points;
        ASSERT_TRUE(s.tail == 0 || s.tail == s.whole >> s.split);
    }
}

TEST_F(flat_ntt, primes_and_roots_are_what_the_bounds_rest_on) {
    for (const ntt_prime &f : ntt_fields) {
        python.expect("pow(3," + std::to_string(f.p) + "-1," + std::to_string(f.p) + ")", "1");
        python.expect("all(pow(a," + std::to_string(f.p) + "-1," + std::to_string(f.p) +
                          ")==1 for a in (2,5,7,11,13,17,19,23,29,31,37))",
                      "True");
        python.expect("pow(" + std::to_string(f.root) + ",2**31," + std::to_string(f.p) + ")-" + std::to_string(f.p),
                      "-1");
        python.expect(std::to_string(f.p) + "*" + std::to_string(f.inverse) + "%2**64", "1");
        EXPECT_EQ(f.p + f.delta, limb{1} << 62);
        EXPECT_LT(f.delta, limb{1} << 39);
    }
}

TEST_F(flat_ntt, a_prepared_factor_holds_the_truncated_quotient) {
    for (const ntt_prime &f : ntt_fields)
        for (int i = 0; i < times(20000); i++) {
            const limb near[] = {0, 1, f.p - 1, f.p / 2, f.delta, f.p - f.delta};
            const limb w = i < 6 ? near[i] : rnd() % f.p >> (i % 3 ? 0 : rnd() % 62);
            const ntt_root r = ntt_prepare(w, f.p);
            EXPECT_EQ(r.value, w);
            ASSERT_EQ(r.quotient, static_cast<limb>((static_cast<limb2>(w) << 64) / f.p)) << w;
        }
}

TEST_F(flat_ntt, back_and_forth_gives_the_coefficients_times_the_word_radix) {
    for (size_t points : {8, 9, 10, 12, 16, 100, 1000, 5000, 20000}) {
        const ntt_size size = ntt_size_for(points);
        ntt_prepare_roots(size);
        for (int field = 0; field < ntt_primes; field++) {
            const limb p = ntt_fields[field].p;
            limbs a(size.points(), 0), one(size.points(), 1);
            for (size_t i = 0; i < points; i++) a[i] = rnd() % p;
            limbs b = a;
            ntt_forward(b.data(), points, size, field);
            ntt_multiply_values(b.data(), one.data(), b.size(), field);
            ntt_backward(b.data(), size, field);
            EXPECT_EQ(a, b) << points;
        }
    }
}
