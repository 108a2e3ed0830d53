/* Fields by logarithms: against residues, by the laws of a field, and by systems whose solutions are known. */
#include "gcd/log_field.h"

#include "support/rand_poly.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace tolvek {

namespace {

constexpr uint32_t primes[] = {2, 3, 5, 7, 101, 127, 131, 251, 257, 997, 1009, 65537};

struct log_field_test : poly_test {
    /* An element, 0 now and then. */
    uint32_t element(const log_field &f) { return rnd.one_in(20) ? f.zero() : unit(f); }
    uint32_t unit(const log_field &f) { return static_cast<uint32_t>(rnd() % f.units()); }

    /* Different ones. */
    std::vector<uint32_t> units(const log_field &f, std::size_t n) {
        std::vector<uint32_t> list;
        while (list.size() < n)
            if (const uint32_t a = unit(f); std::find(list.begin(), list.end(), a) == list.end()) list.push_back(a);
        return list;
    }
    log_poly polynomial(const log_field &f, int degree) {
        log_poly a;
        for (int i = 0; i < degree; i++) a.push(element(f));
        a.push(unit(f));
        return a;
    }
};

log_poly product(const log_field &f, const log_poly &a, const log_poly &b) {
    log_poly c(a.size() + b.size() - 1);
    std::fill(c.begin(), c.end(), f.zero());
    for (std::size_t i = 0; i < a.size(); i++)
        for (std::size_t j = 0; j < b.size(); j++) c[i + j] = f.sum(c[i + j], f.product(a[i], b[j]));
    return c;
}

uint32_t value(const log_field &f, const log_poly &a, uint32_t x) {
    uint32_t v = f.zero();
    for (std::size_t i = a.size(); i-- > 0;) v = f.sum(f.product(v, x), a[i]);
    return v;
}

} // namespace

TEST_F(log_field_test, residues_are_in_it_with_their_sums_and_products) {
    for (const uint32_t p : primes) {
        const log_field f(p);
        ASSERT_TRUE(f.is_there());
        EXPECT_GE(f.units(), 4000u);
        EXPECT_LT(f.units(), 1u << 21);
        uint64_t size = f.units() + uint64_t{1};
        while (size % p == 0) size /= p;
        EXPECT_EQ(size, 1u) << p;
        for (int i = 0; i < times(200); i++) {
            const uint32_t a = static_cast<uint32_t>(rnd() % p), b = static_cast<uint32_t>(rnd() % p);
            uint32_t r;
            ASSERT_TRUE(f.is_residue(f.sum(f.of_residue(a), f.of_residue(b)), &r));
            EXPECT_EQ(r, (a + b) % p);
            ASSERT_TRUE(f.is_residue(f.product(f.of_residue(a), f.of_residue(b)), &r));
            EXPECT_EQ(r, uint64_t{a} * b % p);
            ASSERT_TRUE(f.is_residue(f.negative(f.of_residue(a)), &r));
            EXPECT_EQ(r, (p - a) % p);
        }
        uint32_t r;
        EXPECT_EQ(f.is_residue(1, &r), f.units() == p - 1); /* the base of the logarithms generates all */
    }
}

TEST_F(log_field_test, the_laws_of_a_field) {
    for (const uint32_t p : primes) {
        const log_field f(p);
        for (int i = 0; i < times(500); i++) {
            const uint32_t a = element(f), b = element(f), c = element(f), u = unit(f);
            EXPECT_EQ(f.sum(a, b), f.sum(b, a));
            EXPECT_EQ(f.sum(f.sum(a, b), c), f.sum(a, f.sum(b, c)));
            EXPECT_EQ(f.product(f.sum(a, b), c), f.sum(f.product(a, c), f.product(b, c)));
            EXPECT_EQ(f.difference(a, a), f.zero());
            EXPECT_EQ(f.sum(f.difference(a, b), b), a);
            EXPECT_EQ(f.product(f.quotient(a, u), u), a);
            EXPECT_EQ(f.product(a, f.zero()), f.zero());
            EXPECT_EQ(f.product(a, f.one()), a);
            EXPECT_EQ(f.power(u, 3), f.product(u, f.product(u, u)));
        }
    }
}

TEST_F(log_field_test, a_planted_common_divisor_is_found) {
    for (const uint32_t p : {2u, 3u, 101u}) {
        const log_field f(p);
        for (int i = 0; i < times(50); i++) {
            /* with different roots a and b are coprime */
            const std::vector<uint32_t> roots = units(f, 8);
            log_poly g = polynomial(f, rnd.below(6)), u, v;
            for (std::size_t k = 0; k < 8; k++) {
                log_poly linear;
                linear.push(f.negative(roots[k]));
                linear.push(f.one());
                log_poly &side = k < 4 ? u : v;
                side = k % 4 ? product(f, side, linear) : product(f, g, linear);
            }
            log_gcd(f, &u, &v);
            ASSERT_EQ(u.size(), g.size());
            for (std::size_t k = 0; k < g.size(); k++) EXPECT_EQ(u[k], f.quotient(g[k], g.back()));
        }
    }
}

TEST_F(log_field_test, a_polynomial_comes_back_from_its_values) {
    for (const uint32_t p : {2u, 7u, 997u}) {
        const log_field f(p);
        for (int degree = 0; degree < 20; degree++) {
            const log_poly a = polynomial(f, degree);
            const std::vector<uint32_t> points = units(f, a.size());
            std::vector<uint32_t> y;
            for (const uint32_t x : points) y.push_back(value(f, a, x));
            log_interpolate(f, points.data(), y.data(), y.size());
            for (std::size_t k = 0; k < a.size(); k++) EXPECT_EQ(y[k], a[k]);
        }
    }
}

TEST_F(log_field_test, the_transposed_system_of_vandermonde_is_solved) {
    for (const uint32_t p : {2u, 5u, 101u}) {
        const log_field f(p);
        for (std::size_t n = 1; n < 20; n++) {
            const std::vector<uint32_t> m = units(f, n);
            std::vector<uint32_t> x(n), w(n, f.zero()), found(n);
            for (uint32_t &c : x) c = element(f);
            for (std::size_t t = 1; t <= n; t++)
                for (std::size_t k = 0; k < n; k++)
                    w[t - 1] = f.sum(w[t - 1], f.product(x[k], f.power(m[k], static_cast<uint32_t>(t))));
            log_vandermonde(f, m.data(), n).solve(w.data(), found.data());
            EXPECT_EQ(found, x);
        }
    }
}

TEST_F(log_field_test, four_primes_have_their_tables_at_a_time) {
    for (int round = 0; round < 2; round++) {
        const log_field a(2), b(3), c(5), d(7), again(3), none(11);
        EXPECT_TRUE(a.is_there() && b.is_there() && c.is_there() && d.is_there() && again.is_there());
        EXPECT_FALSE(none.is_there());
    }
    const log_field now(11), larger(11, field_size::large);
    EXPECT_GT(larger.units(), now.units());
    EXPECT_TRUE(now.is_there());
}

} // namespace tolvek
