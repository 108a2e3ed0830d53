#include "poly/flat_uni.h"

#include "support/rand_poly.h"
#include "top/guards.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvek {

namespace {

/* Every long way from small sizes on. */
constexpr uni_limits lowest = {.mult = 4, .divide = 2, .half_gcd = 4, .gcd = 4};
constexpr uni_limits highest = {.mult = 1u << 30, .divide = 1u << 30, .half_gcd = 1u << 30, .gcd = 1u << 30};

struct flat_uni_test : ::testing::Test {
    test_random rnd;
    kept_value<uni_limits> limits{uni_limit};

    uint32_t entry(const uni_field &f) {
        if (rnd.one_in(4)) return f.p - 1;
        return static_cast<uint32_t>(rnd() % f.p);
    }
    /* Of degree d exactly, -1 for zero, with gaps. */
    void random_poly(const uni_field &f, int d, uni_poly *a) {
        a->clear();
        const bool gaps = rnd.one_in(3);
        for (int i = 0; i <= d; i++) a->push(gaps && rnd.below(4) ? 0 : entry(f));
        if (d >= 0 && a->back() == 0) a->back() = 1;
    }
    int some_degree() { return rnd.one_in(3) ? rnd.below(8) - 1 : rnd.below(260) - 1; }
};

/* From the definition, with the plainest reduction. */
std::vector<uint32_t> product_by_definition(const uni_field &f, const uni_poly &a, const uni_poly &b) {
    std::vector<uint32_t> c(a.empty() || b.empty() ? 0 : a.size() + b.size() - 1);
    for (std::size_t i = 0; i < a.size(); i++)
        for (std::size_t k = 0; k < b.size(); k++)
            c[i + k] = static_cast<uint32_t>((c[i + k] + uint64_t{a[i]} * b[k]) % f.p);
    return c;
}

std::vector<uint32_t> entries(const uni_poly &a) { return {a.begin(), a.end()}; }

const uint32_t primes[] = {2, 3, 7, 251, 46337, 65521, 65537, 998244353, 2147483629};

} // namespace

TEST_F(flat_uni_test, products_by_rows_and_by_transforms_agree_with_the_definition) {
    for (uint32_t p : primes) {
        const uni_field f(p);
        for (int i = times(60); i > 0; i--) {
            uni_poly a, b, c;
            random_poly(f, some_degree(), &a);
            random_poly(f, some_degree(), &b);
            const auto expected = product_by_definition(f, a, b);
            for (const uni_limits &l : {lowest, highest}) {
                uni_limit = l;
                uni_mult(f, a, b, &c);
                ASSERT_EQ(entries(c), expected) << p << " " << a.size() << " " << b.size();
            }
            uni_mult(f, a, a, &a);
            uni_copy(b, &c);
            uni_mult(f, c, b, &c);
            ASSERT_EQ(entries(c), product_by_definition(f, b, b));
        }
    }
}

/* Coefficients of the greatest size: the sums of the transforms are as large as they can be. */
TEST_F(flat_uni_test, products_of_the_greatest_entries) {
    for (uint32_t p : primes)
        for (int n : {120, 1000, 2500}) {
            const uni_field f(p);
            uni_poly a, c;
            for (int i = 0; i < n; i++) a.push(p - 1);
            uni_mult(f, a, a, &c);
            for (std::size_t k = 0; k < c.size(); k++) {
                const uint64_t terms = std::min(k + 1, c.size() - k);
                ASSERT_EQ(c[k], terms % p) << p << " " << n; /* (-1)(-1), so often */
            }
        }
}

TEST_F(flat_uni_test, quotient_times_divisor_plus_remainder_is_the_dividend) {
    for (uint32_t p : primes) {
        const uni_field f(p);
        for (int i = times(60); i > 0; i--) {
            uni_poly a, b, product;
            random_poly(f, rnd.one_in(3) ? rnd.below(900) : some_degree(), &a);
            random_poly(f, std::max(0, some_degree()), &b);
            uni_poly q[2], r[2];
            for (int k = 0; k < 2; k++) {
                uni_limit = k ? lowest : highest;
                uni_divide(f, a, b, &q[k], &r[k]);
                ASSERT_LT(r[k].size(), b.size());
                uni_mult(f, q[k], b, &product);
                uni_sum(f, product, r[k], &product);
                ASSERT_TRUE(uni_equal(product, a)) << p << " " << a.size() << " " << b.size() << " " << k;
            }
            ASSERT_TRUE(uni_equal(q[0], q[1]));
            uni_mult(f, a, b, &product);
            ASSERT_TRUE(uni_divides(f, product, b, &q[0]));
            ASSERT_TRUE(uni_equal(q[0], a));
            if (b.size() > 1 && !product.empty()) {
                product[0] = f.sum(product[0], 1);
                ASSERT_FALSE(uni_divides(f, product, b, &q[0]));
            }
        }
    }
}

TEST_F(flat_uni_test, gcd_with_a_planted_factor_and_its_cofactors) {
    for (uint32_t p : primes) {
        const uni_field f(p);
        for (int i = times(50); i > 0; i--) {
            uni_poly a, b, g, first, second;
            random_poly(f, some_degree(), &a);
            random_poly(f, some_degree(), &b);
            random_poly(f, rnd.below(3) ? rnd.below(100) : 0, &g);
            uni_mult(f, a, g, &a);
            uni_mult(f, b, g, &b);
            uni_limit = highest;
            uni_gcd(f, a, b, &first);
            uni_limit = lowest;
            uni_gcd(f, a, b, &second);
            ASSERT_TRUE(uni_equal(first, second)) << p << " " << a.size() << " " << b.size();
            if (first.empty()) {
                ASSERT_TRUE(a.empty() && b.empty());
                continue;
            }
            ASSERT_EQ(uni_lead(first), 1u);
            ASSERT_TRUE(uni_divides(f, first, g, nullptr));
            ASSERT_TRUE(uni_divides(f, a, first, nullptr));
            ASSERT_TRUE(uni_divides(f, b, first, nullptr));
            for (const uni_limits &l : {lowest, highest}) {
                uni_limit = l;
                uni_poly s, t, sa, tb;
                uni_extended_gcd(f, a, b, &second, &s, &t);
                ASSERT_TRUE(uni_equal(first, second));
                uni_mult(f, s, a, &sa);
                uni_mult(f, t, b, &tb);
                uni_sum(f, sa, tb, &sa);
                ASSERT_TRUE(uni_equal(sa, first));
                if (uni_degree(a) > uni_degree(first) && uni_degree(b) > uni_degree(first)) {
                    ASSERT_LT(uni_degree(s), uni_degree(b) - uni_degree(first));
                    ASSERT_LT(uni_degree(t), uni_degree(a) - uni_degree(first));
                }
            }
        }
    }
}

/* [x'; y'] = M [x; y] with determinant 1 or -1, and the degrees on the two sides of the middle. */
TEST_F(flat_uni_test, half_gcd_keeps_its_invariant) {
    for (uint32_t p : primes) {
        const uni_field f(p);
        for (int n = 1; n < 130; n += n < 20 ? 1 : 1 + rnd.below(5)) {
            for (const uni_limits &l : {lowest, highest, uni_limits{8, 4, 100, 100}}) {
                uni_limit = l;
                uni_poly x, y, g, one, two, det;
                random_poly(f, n, &x);
                random_poly(f, rnd.one_in(3) ? n - 1 : rnd.below(n + 1) - 1, &y);
                if (rnd.one_in(3)) { /* a common factor of half the degree */
                    random_poly(f, n, &g);
                    uni_mult(f, x, g, &x);
                    uni_mult(f, y, g, &y);
                }
                uni_poly u, v;
                uni_copy(x, &u);
                uni_copy(y, &v);
                hg_matrix m;
                uni_half_gcd(f, &u, &v, &m);
                const int64_t h = (uni_degree(x) + 1) / 2;
                ASSERT_GE(uni_degree(u), h);
                ASSERT_LT(uni_degree(v), h);
                uni_mult(f, m.a, x, &one);
                uni_mult(f, m.b, y, &two);
                uni_sum(f, one, two, &one);
                ASSERT_TRUE(uni_equal(one, u)) << p << " " << n;
                uni_mult(f, m.c, x, &one);
                uni_mult(f, m.d, y, &two);
                uni_sum(f, one, two, &one);
                ASSERT_TRUE(uni_equal(one, v)) << p << " " << n;
                uni_mult(f, m.a, m.d, &one);
                uni_mult(f, m.b, m.c, &two);
                uni_difference(f, one, two, &det);
                ASSERT_EQ(uni_degree(det), 0);
                ASSERT_EQ(det[0], m.odd ? p - 1 : 1);
            }
        }
    }
}

TEST_F(flat_uni_test, zero_and_constants) {
    const uni_field f(7);
    uni_poly zero, three, g, s, t, x;
    uni_constant(3, &three);
    random_poly(f, 5, &x);
    uni_gcd(f, zero, zero, &g);
    EXPECT_TRUE(g.empty());
    uni_gcd(f, zero, x, &g);
    EXPECT_EQ(uni_degree(g), 5);
    EXPECT_EQ(uni_lead(g), 1u);
    uni_gcd(f, three, x, &g);
    EXPECT_EQ(entries(g), std::vector<uint32_t>{1});
    uni_extended_gcd(f, x, x, &g, &s, &t);
    EXPECT_TRUE(s.empty());
    EXPECT_EQ(uni_degree(t), 0);
    uni_divide(f, zero, three, &s, &t);
    EXPECT_TRUE(s.empty() && t.empty());
}

TEST_F(flat_uni_test, degrees_around_the_sizes_at_which_the_way_changes) {
    for (uint32_t p : {65521u, 2147483629u})
        for (int d : {98, 99, 100, 101, 299, 300, 799, 800, 801, 2000, 2001}) {
            const uni_field f(p);
            uni_poly a, b, g, found, plain;
            random_poly(f, d / 2, &a);
            random_poly(f, d / 2, &b);
            random_poly(f, d - d / 2, &g);
            uni_mult(f, a, g, &a);
            uni_mult(f, b, g, &b);
            uni_gcd(f, a, b, &found);
            kept_value<uni_limits> way{uni_limit, highest};
            uni_gcd(f, a, b, &plain);
            ASSERT_TRUE(uni_equal(found, plain)) << p << " " << d;
        }
}

TEST_F(flat_uni_test, inverse_of_x_squared_plus_one) {
    const uni_field f(7); /* -1 is no square: (x^2 + 1) is a field, and 1/x = -x */
    uni_poly x, m, s;
    for (uint32_t c : {0u, 1u}) x.push(c);
    for (uint32_t c : {1u, 0u, 1u}) m.push(c);
    ASSERT_TRUE(uni_inverse_modulo(f, x, m, &s));
    EXPECT_EQ(entries(s), (std::vector<uint32_t>{0, 6}));
    EXPECT_FALSE(uni_inverse_modulo(f, m, m, &s));
}

/* x^(p^d) - x is the product of all monic irreducibles whose degree divides d: for x^2 + 1 modulo 7 x^49 = x. */
TEST_F(flat_uni_test, powers_modulo_a_polynomial) {
    const uni_field f(7);
    for (const uni_limits &l : {lowest, highest}) {
        uni_limit = l;
        uni_poly x, m, power;
        for (uint32_t c : {0u, 1u}) x.push(c);
        for (uint32_t c : {1u, 0u, 1u}) m.push(c);
        numnode digit{49, nullptr};
        number e{};
        e.num_head = e.num_tail = &digit;
        e.num_len = 1;
        uni_power_modulo(f, x, &e, m, &power);
        EXPECT_EQ(entries(power), entries(x));
        digit.digit = 0;
        uni_power_modulo(f, x, &e, m, &power);
        EXPECT_EQ(entries(power), std::vector<uint32_t>{1});
    }
}

} // namespace tolvek
