/* Sparse GCDs from images: recurrences, logarithms, terms from values, and planted factors with leading coefficients and
   contents that are in the way. */
#include "gcd/content.h"
#include "gcd/gcd.h"
#include "gcd/log_field.h"
#include "gcd/sparse_gcd.h"
#include "gcd/sparse_interpolation.h"
#include "poly/add.h"
#include "poly/divide.h"
#include "poly/mult.h"
#include "support/rand_poly.h"
#include "top/guards.h"
#include "top/interrupts.h"
#include "top/settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace tolvek {

constexpr uint32_t large_prime = 2147483629;

/* ---- recurrences ---- */

TEST(recurrence, of_the_numbers_of_fibonacci_has_length_2) {
    const uni_field f(large_prime);
    recurrence r;
    uint32_t a = 1, b = 1;
    for (int i = 0; i < 4; i++) {
        EXPECT_FALSE(r.is_settled() && i > 0 && r.length() == 2);
        r.add(f, a);
        const uint32_t sum = f.sum(a, b);
        a = b;
        b = sum;
    }
    EXPECT_EQ(r.length(), 2u);
    EXPECT_FALSE(r.is_settled());
    EXPECT_TRUE(r.add(f, 5));
    EXPECT_TRUE(r.add(f, 8));
    EXPECT_TRUE(r.is_settled());
    uni_poly p; /* z^2 - z - 1 */
    r.roots_polynomial(&p);
    EXPECT_EQ(p.size(), 3u);
    EXPECT_EQ(p[0], large_prime - 1);
    EXPECT_EQ(p[1], large_prime - 1);
    EXPECT_EQ(p[2], 1u);
    EXPECT_FALSE(r.add(f, 14)); /* 13 was foretold */
    EXPECT_FALSE(r.is_settled());
}

TEST(recurrence, of_zeros_has_length_0_and_begins_anywhere) {
    const uni_field f(101);
    recurrence zeros, late;
    for (int i = 0; i < 5; i++) EXPECT_TRUE(zeros.add(f, 0));
    EXPECT_EQ(zeros.length(), 0u);
    for (uint32_t value : {0u, 0u, 1u}) late.add(f, value);
    EXPECT_EQ(late.length(), 3u);
}

/* ---- logarithms ---- */

TEST(logarithms, are_found_below_the_bound_alone) {
    const uni_field f(large_prime);
    for (const uint64_t bound : {1, 2, 100, 5000, 3000000}) {
        for (const uint64_t wanted : {1, 50}) {
            const logarithms logs(f, 7, bound, wanted);
            for (const uint64_t e : {uint64_t{0}, bound / 3, bound / 2, bound - 1}) {
                uint64_t found = bound;
                EXPECT_TRUE(logs.find(field_power(f, 7, e), &found));
                EXPECT_EQ(found, e);
            }
            uint64_t found;
            EXPECT_FALSE(logs.find(field_power(f, 7, bound), &found));
            EXPECT_FALSE(logs.find(field_power(f, 7, bound + 17), &found));
        }
    }
}

/* ---- terms from values ---- */

struct sparse_gcd_test : poly_test {};

TEST_F(sparse_gcd_test, a_sparse_polynomial_comes_back_from_its_values) {
    const uni_field f(large_prime);
    for (int i = 0; i < times(60); i++) {
        const uint64_t bound =
            rnd.one_in(2) ? 40 + rnd() % 200 : uint64_t{1000000} + rnd() % 1000000; /* both ways to roots */
        const uint32_t w = static_cast<uint32_t>(rnd() % (large_prime - 2)) + 2;
        const uint64_t s = rnd() % large_prime;
        std::map<uint64_t, uint32_t, std::greater<>> terms;
        for (int k = rnd.below(12); k > 0; k--)
            terms[rnd() % bound] = static_cast<uint32_t>(rnd() % (large_prime - 1)) + 1;
        recurrence r;
        for (uint64_t n = 0; n < 2 * terms.size() + 2; n++) {
            uint32_t value = 0;
            for (const auto &[e, c] : terms) value = f.sum(value, f.product(c, field_power(f, w, e * (s + n))));
            r.add(f, value);
        }
        ASSERT_TRUE(r.is_settled());
        ASSERT_EQ(r.length(), terms.size());
        buffer<sparse_term> found;
        ASSERT_TRUE(sparse_terms(f, r, w, s, logarithms(f, w, bound, terms.size()), bound, &found));
        ASSERT_EQ(found.size(), terms.size());
        std::size_t k = 0;
        for (const auto &[e, c] : terms) {
            EXPECT_EQ(found[k].exponent, e);
            EXPECT_EQ(found[k++].coefficient, c);
        }
    }
}

TEST_F(sparse_gcd_test, values_whose_recurrence_has_no_such_roots_are_refused) {
    const uni_field f(large_prime);
    recurrence r;
    uint32_t a = 1, b = 1; /* z^2 - z - 1 has roots, if any, that are no powers of 2 below 1000 */
    for (int i = 0; i < 8; i++) {
        r.add(f, a);
        const uint32_t sum = f.sum(a, b);
        a = b;
        b = sum;
    }
    buffer<sparse_term> found;
    EXPECT_FALSE(sparse_terms(f, r, 2, 1, logarithms(f, 2, 1000, 2), 1000, &found));
    EXPECT_FALSE(sparse_terms(f, r, 2, 1, logarithms(f, 2, 1000000, 2), 1000000, &found));
}

/* ---- planted factors ---- */

struct planted_product {
    poly_handle u, v, g;

    planted_product(const polynode *a, const polynode *b, polynode *f) {
        poly_mult(a, f, u.slot(), nullptr);
        poly_mult(b, f, v.slot(), nullptr);
        *g.slot() = f;
    }
};

/* The method over the integers; its cofactors are checked. */
static bool integer_gcd(const polynode *u, const polynode *v, polynode **g, pt *names) {
    poly_handle u2, v2, product;
    if (!sparse_integer_gcd(u, v, g, names, u2.slot(), v2.slot())) return false;
    if (!u2 || !v2) return true; /* coprime by their images */
    poly_mult(*g, u2.get(), product.slot(), nullptr);
    EXPECT_TRUE(poly_equal(product.get(), u));
    poly_mult(*g, v2.get(), product.slot(), nullptr);
    EXPECT_TRUE(poly_equal(product.get(), v));
    return true;
}

using gcd_method = bool (*)(const polynode *, const polynode *, polynode **, pt *);

/* The GCD of u and v, primitive, has the factor f and divides both. */
static void expect_planted(planted_product &p, gcd_method find) {
    SCOPED_TRACE(text_of(p.u.get()) + "\n" + text_of(p.v.get()));
    poly_handle g, q;
    ASSERT_TRUE(find(p.u.get(), p.v.get(), g.slot(), polynames));
    expect_canonical(g.get());
    int failed;
    gen_poly_divide(g.get(), p.g.get(), q.slot(), polynames, &failed);
    EXPECT_EQ(failed, 0) << text_of(g.get());
    for (polynode *operand : {p.u.get(), p.v.get()}) {
        gen_poly_divide(operand, g.get(), q.slot(), polynames, &failed);
        EXPECT_EQ(failed, 0) << text_of(g.get());
    }
}

/* Primitive and of positive degree in the first variable. */
static polynode *primitive_poly(test_random &rnd, int variables, int terms, int degree, int size) {
    flat_poly p;
    while (static_cast<int>(p.size()) < terms) {
        std::vector<int32_t> e(static_cast<std::size_t>(variables));
        for (int32_t &x : e) x = rnd.below(degree + 1);
        while (!e.empty() && e.back() == 0) e.pop_back();
        p[e] = coef(1 + rnd.below(size));
    }
    p[{degree + 1}] = coef(1); /* makes it primitive */
    return nested(p);
}

TEST_F(sparse_gcd_test, planted_factors_modulo_primes) {
    for (const char *name : {"1000003", "2147483629"}) {
        test_ring ring(name);
        for (int i = 0; i < times(40); i++) {
            const int variables = 2 + i % 4, degree = variables > 3 ? 2 : 6;
            poly_handle a(primitive_poly(rnd, variables, 6, degree, 1000)),
                b(primitive_poly(rnd, variables, 6, degree, 1000));
            planted_product p(a.get(), b.get(), primitive_poly(rnd, variables, 5, degree, 1000));
            expect_planted(p, sparse_gcd);
            if (HasFailure()) return;
        }
    }
}

TEST_F(sparse_gcd_test, planted_factors_modulo_small_primes) {
    for (const char *name : {"2", "3", "7", "101", "251", "997", "1009"}) {
        test_ring ring(name);
        const int largest = std::min(modulus - 1, 1000);
        for (int i = 0; i < times(40); i++) {
            const int variables = 2 + i % 5, degree = 2 + rnd.below(7), terms = 4 + rnd.below(variables > 2 ? 8 : 1);
            poly_handle a(primitive_poly(rnd, variables, terms, degree, largest)),
                b(primitive_poly(rnd, variables, terms, degree, largest));
            planted_product p(a.get(), b.get(), primitive_poly(rnd, variables, terms, degree, largest));
            expect_planted(p, sparse_gcd);
            if (HasFailure()) return;
        }
    }
}

TEST_F(sparse_gcd_test, dense_factors_modulo_small_primes) {
    for (const char *name : {"2", "3", "101"}) {
        test_ring ring(name);
        const int largest = modulus - 1;
        for (int i = 0; i < times(3); i++) {
            poly_handle a(primitive_poly(rnd, 3, 60, 4, largest)), b(primitive_poly(rnd, 3, 60, 4, largest));
            planted_product p(a.get(), b.get(), primitive_poly(rnd, 3, 60, 4, largest));
            expect_planted(p, sparse_gcd);
        }
    }
}

TEST_F(sparse_gcd_test, degrees_over_a_larger_field_are_those_of_the_gcd) {
    const kept_value<int> by_images(chinhensel, 1);
    for (const char *name : {"2", "7"}) {
        test_ring ring(name);
        for (int i = 0; i < times(20); i++) {
            poly_handle a(primitive_poly(rnd, 4, 8, 4, modulus - 1)), b(primitive_poly(rnd, 4, 8, 4, modulus - 1)),
                f(primitive_poly(rnd, 4, 8, 4, modulus - 1)), g;
            planted_product p(a.get(), b.get(), f.release());
            int32_t degree = 0;
            bool coprime = true;
            while (!degrees_over_larger_field(p.u.get(), p.v.get(), &degree, &coprime)) {
            }
            EXPECT_FALSE(coprime);
            EXPECT_GE(degree, p.g->expo);
            /* images at one point may have more in common, those of the answer have not */
            Lpolygcd(p.u.slot(), p.v.slot(), g.slot(), 1, polynames);
            EXPECT_GE(degree, g->expo);
            EXPECT_LE(degree, g->expo + 1);
        }
        poly_handle a(poly_of("x^2*y + x*z + 1")), b(poly_of("x^3 + x*y + z^2")), c(poly_of("x*y + x*z^3")),
            d(poly_of("y^2 + z^3*y"));
        int32_t degree;
        bool coprime;
        while (!degrees_over_larger_field(a.get(), b.get(), &degree, &coprime)) {
        }
        EXPECT_EQ(degree, 0);
        EXPECT_TRUE(coprime);
        while (!degrees_over_larger_field(c.get(), d.get(), &degree, &coprime)) {
        } /* y + z^3 */
        EXPECT_EQ(degree, 0);
        EXPECT_FALSE(coprime);
    }
}

/* A command level that an interrupt has opened may do so. */
TEST_F(sparse_gcd_test, one_modulo_another_prime_may_come_in_between) {
    static test_random *random;
    static int points;
    random = &rnd;
    test_ring ring("7");
    poly_handle a(primitive_poly(rnd, 4, 8, 4, 6)), b(primitive_poly(rnd, 4, 8, 4, 6));
    planted_product p(a.get(), b.get(), primitive_poly(rnd, 4, 8, 4, 6));
    for (int n = 1; n < 200; n += 20) {
        points = n;
        watch_safe_points([] {
            if (--points) return;
            test_ring inner("3");
            poly_handle c(primitive_poly(*random, 3, 6, 4, 2)), d(primitive_poly(*random, 3, 6, 4, 2));
            planted_product q(c.get(), d.get(), primitive_poly(*random, 3, 6, 4, 2));
            expect_planted(q, sparse_gcd);
        });
        expect_planted(p, sparse_gcd);
        watch_safe_points(nullptr);
        EXPECT_LE(points, 0);
    }
}

TEST_F(sparse_gcd_test, planted_factors_over_the_integers_with_coefficients_of_many_words) {
    for (int i = 0; i < times(40); i++) {
        const int variables = 2 + i % 4;
        poly_handle a(primitive_poly(rnd, variables, 5, 3, 1000)), b(primitive_poly(rnd, variables, 5, 3, 1000)),
            f(primitive_poly(rnd, variables, 4, 3, 1000)),
            large(rand_nonzero_poly(rnd, {variables, 3, 3, 1 + i % 12, false})), sum;
        poly_add(f.get(), large.get(), sum.slot());
        if (sum->expo == 0) continue;
        poly_handle c;
        content(sum.get(), c.slot(), polynames, 0, 1, 1);
        if (!is_constant(c.get())) continue;
        planted_product p(a.get(), b.get(), sum.release());
        expect_planted(p, integer_gcd);
        if (HasFailure()) return;
    }
}

TEST_F(sparse_gcd_test, leading_coefficients_of_many_terms_with_a_common_factor_of_their_own) {
    for (const char *name : {"chain", "101", "2147483629"}) {
        test_ring ring(name);
        /* the leading coefficients have y + z in common, which is in no leading coefficient of the GCD */
        poly_handle a(poly_of("x^2*y + x^2*z + x*y^2 + 5")), b(poly_of("x*y + x*z + 7*z^2 + 3*y"));
        planted_product p(a.get(), b.get(), poly_of("x^3*y^2 + 4*x^3*z + 2*x*y*z + y^5 + 11"));
        poly_handle g;
        ASSERT_TRUE((lintmode ? sparse_gcd : integer_gcd)(p.u.get(), p.v.get(), g.slot(), polynames));
        EXPECT_EQ(text_of(g.get()), text_of(p.g.get()));
    }
}

TEST_F(sparse_gcd_test, numbers_that_the_primes_in_use_divide) {
    /* 2147483629 and 2147483587 are the first two primes */
    const char *const factors[] = {
        "2147483629*x^2*y + 3*x*z + 5", /* its leading number vanishes modulo the first */
        "x^2*y + 2147483629*x*z + 5",   /* a term does */
        "x^2*y + 2147483629*x*z + 2147483587*x + 5",
        "x^2 + 4611685846628697223*y*z + 1", /* their product: two primes see nothing of it */
        "x^2 + 4611685846628697223*x + 4611685846628697223*y*z + 1",
    };
    for (const char *factor : factors) {
        poly_handle a(poly_of("x^2*z + 3*x*y + 8")), b(poly_of("x^3 + 5*x*y*z + 2*y + 1"));
        planted_product p(a.get(), b.get(), poly_of(factor));
        poly_handle g;
        Lpolygcd(p.u.slot(), p.v.slot(), g.slot(), 1, polynames);
        EXPECT_EQ(text_of(g.get()), factor);
        expect_planted(p, integer_gcd);
    }
}

TEST_F(sparse_gcd_test, coprime_operands_have_the_answer_1) {
    for (const char *name : {"chain", "7", "2147483629"}) {
        test_ring ring(name);
        poly_handle a(poly_of("x^2*y + 3*x*z + 5")), b(poly_of("x^3 + x*y + z^2")), g;
        ASSERT_TRUE((lintmode ? sparse_gcd : integer_gcd)(a.get(), b.get(), g.slot(), polynames));
        EXPECT_EQ(text_of(g.get()), "1");
    }
}

TEST_F(sparse_gcd_test, high_degrees_and_single_variables_are_for_other_methods) {
    auto refused = [](const char *name, const char *a, const char *b) {
        test_ring ring(name);
        poly_handle u(poly_of(a)), v(poly_of(b)), g;
        const bool found = (lintmode ? sparse_gcd : integer_gcd)(u.get(), v.get(), g.slot(), polynames);
        EXPECT_FALSE(g);
        return !found;
    };
    EXPECT_TRUE(refused("7", "x^2 - 1", "x^2 + 2*x + 1"));
    EXPECT_TRUE(refused("7", "x^6000 - y^2", "x*y - y^2"));
    EXPECT_TRUE(refused("chain", "x^2 - 1", "x^2 + 2*x + 1"));
    EXPECT_TRUE(refused("chain", "x^6000 - y^2", "x*y - y^2"));
    EXPECT_TRUE(refused("chain", "x^2 - y^2000000000", "x*y - y^2"));
}

/* ---- left at a safe point ---- */

static int points_left;

/* Leaves the method at one safe point after the other. */
static void expect_balance(planted_product &p, gcd_method find) {
    const records_in_use found = count_records_in_use();
    for (int n = 0, finished = 0; !finished; n += 1 + n / 10) {
        finished = 1;
        points_left = n;
        watch_safe_points([] {
            if (points_left-- == 0) throw 1;
        });
        poly_handle g;
        try {
            find(p.u.get(), p.v.get(), g.slot(), polynames);
        } catch (int) {
            finished = 0;
        }
        watch_safe_points(nullptr);
        free_poly(g.slot());
        ASSERT_EQ(count_records_in_use(), found) << n;
    }
}

static planted_product operands_to_leave(test_random &rnd, int size) {
    poly_handle a(primitive_poly(rnd, 3, 8, 4, size)), b(primitive_poly(rnd, 3, 8, 4, size));
    return {a.get(), b.get(), primitive_poly(rnd, 3, 8, 4, size)};
}

TEST_F(sparse_gcd_test, that_are_left_lose_no_record) {
    planted_product p = operands_to_leave(rnd, 1000);
    expect_balance(p, integer_gcd);
}

TEST_F(sparse_gcd_test, that_are_left_modulo_a_small_prime_lose_no_record_and_no_tables) {
    test_ring ring("7");
    planted_product p = operands_to_leave(rnd, 6);
    expect_balance(p, sparse_gcd);
    const log_field a(2), b(3), c(5), d(7);
    EXPECT_TRUE(a.is_there() && b.is_there() && c.is_there() && d.is_there());
}

} // namespace tolvek
