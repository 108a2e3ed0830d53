#include "poly/mult_arrays.h"

#include "poly/mult_work.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/guards.h"

#include <vector>

namespace tolvek {

namespace {

using residues = std::vector<int32_t>;

struct mult_arrays_test : poly_test {
    kept_value<int> shortest{poly_cutoff, 2};

    int32_t entry() { return rnd.one_in(4) ? modulus - 1 : rnd.below(modulus); }
    /* d + 1 residues with runs of zeros at the low end and within; the top one is not 0. */
    residues random_array(int d) {
        residues x(static_cast<std::size_t>(d + 1));
        for (int32_t &v : x) v = rnd.one_in(5) ? 0 : entry();
        for (int i = rnd.below(d + 1); i >= 0 && rnd.one_in(2); i--) x[static_cast<std::size_t>(i)] = 0;
        if (x.back() == 0) x.back() = 1;
        return x;
    }
    /* From the definition, with the plainest reduction. */
    residues plain_product(const residues &x, const residues &y) {
        residues z(x.size() + y.size() - 1);
        for (std::size_t i = 0; i < x.size(); i++)
            for (std::size_t k = 0; k < y.size(); k++)
                z[i + k] = static_cast<int32_t>((z[i + k] + int64_t{x[i]} * y[k]) % int64_t{int32_t{modulus}});
        return z;
    }
};

constexpr int32_t junk = -77;

} // namespace

TEST_F(mult_arrays_test, every_pair_of_lengths_by_every_product) {
    for (const std::string name : {"2", "3", "6", "65521", "65537", "2147483629"}) {
        test_ring ring(name);
        for (int dx = 0; dx < 100; dx++)
            for (int dy = rnd.below(3); dy < 100; dy += 1 + rnd.below(5)) {
                const residues x = random_array(dx), y = random_array(dy), expected = plain_product(x, y);
                residues z(expected.size(), junk);
                onevar_mult(x.data(), y.data(), z.data(), 0, dx, 0, dy);
                ASSERT_EQ(z, expected) << "plain " << dx << " " << dy;
                z.assign(z.size(), junk);
                slower_onevar_mult(x.data(), y.data(), z.data(), 0, dx, 0, dy);
                ASSERT_EQ(z, expected) << "slower " << dx << " " << dy;
                z.assign(z.size(), junk);
                simple_onevar_mult(x.data(), y.data(), z.data(), dx, dy);
                ASSERT_EQ(z, expected) << "by rows " << dx << " " << dy;
                z.assign(z.size(), junk);
                fast_array_onevar_mult(x.data(), y.data(), z.data(), 0, dx, 0, dy);
                ASSERT_EQ(z, expected) << "in halves " << dx << " " << dy;
            }
    }
}

TEST_F(mult_arrays_test, unbalanced_lengths) {
    test_ring ring("65521");
    for (int dx : {3, 7, 20})
        for (int dy : {2 * dx - 1, 2 * dx, 2 * dx + 1, 5 * dx, 15 * dx, 15 * dx + 1, 40 * dx}) {
            residues y = random_array(dy);
            const residues x = random_array(dx);
            for (int i = 0; i < dy - dx; i++)
                y[static_cast<std::size_t>(i)] = 0; /* nothing below the part at the top */
            y[static_cast<std::size_t>(rnd.below(dy))] = 1;
            residues z(x.size() + y.size() - 1, junk);
            fast_array_onevar_mult(x.data(), y.data(), z.data(), 0, dx, 0, dy);
            EXPECT_EQ(z, plain_product(x, y)) << dx << " " << dy;
        }
}

TEST_F(mult_arrays_test, only_the_ranges_are_read_and_written) {
    test_ring ring("2147483629");
    for (int i = times(50); i > 0; i--) {
        const int lo_x = rnd.below(10), lo_y = rnd.below(10), dx = rnd.below(60), dy = rnd.below(60);
        const residues x = random_array(dx), y = random_array(dy), expected = plain_product(x, y);
        residues wide_x(200, junk), wide_y(200, junk), z(300, junk);
        std::copy(x.begin(), x.end(), wide_x.begin() + lo_x);
        std::copy(y.begin(), y.end(), wide_y.begin() + lo_y);
        fast_array_onevar_mult(wide_x.data(), wide_y.data(), z.data(), lo_x, lo_x + dx, lo_y, lo_y + dy);
        residues around(300, junk);
        std::copy(expected.begin(), expected.end(), around.begin() + lo_x + lo_y);
        EXPECT_EQ(z, around);
    }
}

TEST_F(mult_arrays_test, the_guard_tells_the_degree) {
    test_ring ring("3");
    const residues x{1, 2, 0}, y{1, 1};
    residues z(4, junk);
    EXPECT_EQ(fast_0_array_onevar_mult(x.data(), y.data(), z.data(), 0, 2, 0, 1), 0);
    EXPECT_EQ(z[0], 0);
    EXPECT_EQ(fast_0_array_onevar_mult(x.data(), y.data(), z.data(), 0, 1, 0, 1), 2);
    EXPECT_EQ((residues(z.begin(), z.begin() + 3)), (residues{1, 0, 2}));
}

TEST_F(mult_arrays_test, sums_and_shifts) {
    test_ring ring("7");
    const residues x{1, 2, 3, 4}, y{6, 5, 4, 3, 1};
    residues z(8, junk);
    int top;
    onevar_add(x.data(), y.data(), z.data(), 0, 3, 1, 4, &top);
    EXPECT_EQ((residues(z.begin(), z.begin() + 6)), (residues{1, 0, 0, 0, 1, junk}));
    EXPECT_EQ(top, 4);
    onevar_sub(x.data(), x.data(), z.data(), 1, 3, 3, &top);
    EXPECT_LT(top, 1);
    onevar_sub(x.data(), y.data(), z.data(), 0, 3, 4, &top);
    EXPECT_EQ((residues(z.begin(), z.begin() + 5)), (residues{2, 4, 6, 1, 6}));
    onevar_add_shift(x.data(), y.data(), z.data(), 0, 3, 1, 2, &top);
    EXPECT_EQ((residues(z.begin(), z.begin() + 4)), (residues{1, 2, 2, 2}));
    EXPECT_EQ(top, 3);
    onevar_sub_shift(x.data(), y.data(), z.data(), 0, 3, 4, 3, &top);
    EXPECT_EQ((residues(z.begin(), z.begin() + 8)), (residues{1, 2, 3, 5, 2, 3, 4, 6}));
    EXPECT_EQ(top, 7);
}

/* Where the halves overlap in the sum, an entry counts once. */
TEST_F(mult_arrays_test, low_half_plus_high_half) {
    test_ring ring("7");
    const residues x{1, 2, 3, 4, 5};
    residues t(5, junk);
    int top;
    onevar_self_add(x.data(), t.data(), 0, 4, 2, &top);
    EXPECT_EQ((residues(t.begin(), t.begin() + 4)), (residues{4, 6, 5, junk}));
    EXPECT_EQ(top, 2);
}

TEST_F(mult_arrays_test, polynomials_to_arrays_and_back) {
    test_ring ring("46337");
    poly_handle p(poly_of("3*x^4 + 7*x")), q;
    residues x(6, junk);
    int deg;
    fill_poly1_array(p.get(), x.data(), &deg);
    EXPECT_EQ(deg, 4);
    EXPECT_EQ(x, (residues{0, 7, 0, 0, 3, junk}));
    array_to_poly(x.data(), 4, q.slot());
    expect_canonical(q.get());
    EXPECT_TRUE(poly_equal(p.get(), q.get()));
    array_to_poly(x.data(), 0, q.slot());
    EXPECT_EQ(text_of(q.get()), "0");
    const residues constant{5, 0, 0};
    array_to_poly(constant.data(), 2, q.slot());
    EXPECT_EQ(text_of(q.get()), "5");
}

/* At the greatest sum of exponents that the arrays hold, and one above it. */
TEST_F(mult_arrays_test, the_arrays_end_at_their_size) {
    test_ring ring("46337");
    kept_value<int> most(fast_gcd_size, 22008), lean(fast_mult_cut, 10), lists(poly_cutoff, 20);
    kept_value<int64_t> no_flat(flat_product_cut, INT64_MAX);
    for (int excess : {0, 1}) {
        flat_poly terms_a, terms_b;
        for (int e = 11004 + excess; e >= 0; e -= 3) terms_a[{e}] = coef(e + 1);
        for (int e = 11004; e >= 10980; e--) terms_b[{e}] = coef(e + 1);
        poly_handle a(nested(terms_a)), b(nested(terms_b)), p, expected(nested(flat_product(terms_a, terms_b)));
        poly_mult(a.get(), b.get(), p.slot(), nullptr);
        EXPECT_TRUE(poly_equal(p.get(), expected.get())) << excess;
    }
}

TEST_F(mult_arrays_test, a_constant_term_0_is_no_bad_limit) {
    test_ring ring("46337");
    poly_handle a(poly_of("x^3 + x^2")), b(poly_of("x^2 + 5*x")), p;
    k_fastest_poly_mult(a.get(), b.get(), p.slot());
    EXPECT_EQ(text_of(p.get()), "x^5 + 6*x^4 + 5*x^3");
}

using mult_arrays_reports = fresh_exact_system;

TEST_F(mult_arrays_reports, broken_conditions_are_told) {
    test_ring ring("7");
    const residues x{1, 0}, y{1, 1}, zero{0, 0};
    residues z(8);
    int top;
    auto told = [&](const std::function<void()> &routine, const std::string &text) {
        unwinds(routine);
        EXPECT_NE(last_text.find(text), std::string::npos) << last_text;
        leave_all_levels();
    };
    told([&] { onevar_mult(x.data(), y.data(), z.data(), 0, 1, 0, 1); }, "0 upper value in onevar_mult.");
    told([&] { onevar_mult(y.data(), y.data(), z.data(), 1, 0, 0, 1); }, " ** bad exps onevar 1, 0, 0, 1\n");
    told([&] { fast_array_onevar_mult(zero.data(), y.data(), z.data(), 0, 1, 0, 1); },
         "bad exps in fast_array_onevar_mult.");
    told([&] { onevar_add(y.data(), y.data(), z.data(), 3, 1, 0, 1, &top); }, " onevar_add reversed degrees. ");
    told([&] { onevar_add_shift(y.data(), y.data(), z.data(), 3, 1, 4, 1, &top); },
         " onevar_add_shift reversed degrees.");
    told([&] { onevar_sub_shift(y.data(), y.data(), z.data(), 3, 1, 4, 1, &top); },
         " onevar_sub_shift reversed degrees.");
}

} // namespace tolvek
