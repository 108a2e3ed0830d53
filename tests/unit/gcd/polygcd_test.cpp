/* GCDs of polynomials: planted factors, cofactors that are coprime by a second method, and the cases that go wrong. */
#include "gcd/content.h"
#include "gcd/gcd.h"
#include "gcd/gcd_levels.h"
#include "gcd/gcd_work.h"
#include "numbers/modular.h"
#include "poly/divide.h"
#include "poly/mult.h"
#include "support/rand_poly.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/interrupts.h"
#include "top/tolvek.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace tolvek {

struct polygcd_test : poly_test {
    std::string gcd_of(const std::string &a, const std::string &b) {
        poly_handle u(poly_of(a)), v(poly_of(b)), g;
        Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames);
        expect_canonical(g.get());
        EXPECT_EQ(text_of(u.get()), normal(a));
        EXPECT_EQ(text_of(v.get()), normal(b));
        return text_of(g.get());
    }
    std::string normal(const std::string &a) {
        poly_handle p(poly_of(a));
        return text_of(p.get());
    }
};

#define EXPECT_GCD(a, b, g) EXPECT_EQ(gcd_of(a, b), normal(g)) << a << " and " << b

struct known_gcd {
    const char *ring, *a, *b, *g;
};
static const known_gcd known_gcds[] = {
    /* constants */
    {"chain", "6", "4", "2"},
    {"chain", "6", "2*x + 4", "2"},
    {"chain", "-6", "-4", "2"},
    {"chain", "1", "x^2*y + 3", "1"},
    /* 0: the other operand with a positive sign, monic in a field */
    {"chain", "0", "4*x + 6", "4*x + 6"},
    {"chain", "-4*x - 6", "0", "4*x + 6"},
    {"chain", "0", "0", "0"},
    {"chain", "0", "-3", "3"},
    {"7", "0", "4*x + 6", "x + 5"},
    {"7", "0", "0", "0"},
    {"7", "0", "3", "1"},
    /* powers of variables */
    {"chain", "x^2", "x^3 + x^2", "x^2"},
    {"chain", "6*x^2", "4*x^3 + 2*x", "2*x"},
    {"chain", "x^2*y^3", "x^3*y^2 + x*y", "x*y"},
    /* numbers among the coefficients */
    {"chain", "2*x^2*y + 6*x + 4*y", "4*x*y + 2", "2"},
    {"chain", "6*x^2 - 6", "4*x^2 - 8*x + 4", "2*x - 2"},
    /* operands without the main variable */
    {"chain", "y^2 - 1", "y^2 + 2*y + 1", "y + 1"},
    {"chain", "z^2 - 1", "z^2*x + 2*z*x + x", "z + 1"},
    {"chain", "y*z + z", "x*z*y + x*z + y*z + z", "y*z + z"},
    {"chain", "y", "x + y", "1"},
    /* strides and single terms */
    {"7", "y*x^6", "x^4*y + x^4 + x^2", "x^2"},
    {"7", "y*x^3", "y*x^4 - y", "y"},
    {"7", "y*x^4 - y", "y*x^2 - y", "x^2*y - y"},
    {"7", "x^8 + x^6 + y*x^4 + y*x^2", "x^8 + y*x^6 + y*x^4 + y^2*x^2", "x^6 + y*x^2"},
};

TEST_F(polygcd_test, known_answers) {
    for (const known_gcd &k : known_gcds) {
        test_ring ring(k.ring);
        EXPECT_GCD(k.a, k.b, k.g);
    }
    test_ring ring("float");
    EXPECT_EQ(gcd_of("0", "4*x + 6"), "x + 1.5");
}

TEST_F(polygcd_test, the_degree_alone_is_right_with_powers_of_the_variable) {
    poly_handle u(poly_of("x^3*y + 2*x^2*y + x*y")), v(poly_of("x^3 + 3*x^2 + 2*x")), g;
    polygcd(u.get(), v.get(), g.slot(), 1, 1, 1, polynames, 1, 1, 1);
    EXPECT_EQ(g->expo, 2);
}

TEST_F(polygcd_test, of_one_operand_twice_has_the_form_of_an_answer) {
    poly_handle u(poly_of("-2*x - 4")), g;
    Lpolygcd3(u.slot(), g.slot(), polynames);
    EXPECT_EQ(text_of(g.get()), "2*x + 4");
    EXPECT_EQ(text_of(u.get()), "-2*x - 4");
}

TEST_F(polygcd_test, of_floats_in_several_variables) {
    test_ring ring("float");
    EXPECT_GCD("x^2 - y^2", "x - y", "x - y");
}

TEST_F(polygcd_test, modulo_a_composite_number_divides_by_units_alone) {
    test_ring ring("6");
    poly_handle u(poly_of("2*x + 1")), v(poly_of("3*x + 1")), g;
    Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames);
    EXPECT_EQ(text_of(g.get()), "1");
    EXPECT_GCD("x^2 + 4*x + 3", "x + 3", "x + 3");
    EXPECT_GCD("2*x^2", "3*x", "x");
}

/* ---- properties ---- */

/* Images of u and v at random points modulo p, and their GCD by Euclid on vectors: its degree, -1 for a point at which an
   operand loses degree. */
using residues = std::vector<uint64_t>;
constexpr uint64_t prime_61 = (uint64_t{1} << 61) - 1;
static uint64_t times_mod(uint64_t a, uint64_t b) {
    return static_cast<uint64_t>(static_cast<unsigned __int128>(a) * b % prime_61);
}
static uint64_t power_mod(uint64_t a, uint64_t e) {
    uint64_t r = 1;
    for (; e; e >>= 1, a = times_mod(a, a))
        if (e & 1) r = times_mod(r, a);
    return r;
}
static uint64_t residue_of(const coef &c) {
    const bool minus = c.x.num_head->digit < 0;
    uint64_t r = 0;
    for (const numnode *d = c.x.num_head; d; d = d->next)
        r = (times_mod(r, uint64_t{1} << 28) + static_cast<uint64_t>(std::abs(d->digit))) % prime_61;
    return minus && r ? prime_61 - r : r;
}
static residues image_of(const flat_poly &p, std::size_t main, const residues &points) {
    residues image;
    for (const auto &[exponents, c] : p) {
        uint64_t value = residue_of(c);
        std::size_t degree = 0;
        for (std::size_t i = 0; i < exponents.size(); i++) {
            if (i == main)
                degree = static_cast<std::size_t>(exponents[i]);
            else
                value = times_mod(value, power_mod(points[i], static_cast<uint64_t>(exponents[i])));
        }
        if (image.size() <= degree) image.resize(degree + 1);
        image[degree] = (image[degree] + value) % prime_61;
    }
    return image;
}
static int gcd_degree(residues a, residues b) {
    auto settle = [](residues &r) {
        while (!r.empty() && r.back() == 0) r.pop_back();
    };
    settle(a);
    settle(b);
    while (!b.empty()) {
        const uint64_t inverse = power_mod(b.back(), prime_61 - 2);
        while (a.size() >= b.size()) {
            const uint64_t f = prime_61 - times_mod(a.back(), inverse);
            const std::size_t shift = a.size() - b.size();
            for (std::size_t i = 0; i < b.size(); i++) a[i + shift] = (a[i + shift] + times_mod(f, b[i])) % prime_61;
            settle(a);
        }
        std::swap(a, b);
    }
    return static_cast<int>(a.size()) - 1;
}

/* Coprime over the integers up to numbers, by images in every variable. */
static bool coprime_by_images(test_random &rnd, const polynode *a, const polynode *b) {
    const flat_poly u = flat(a), v = flat(b);
    residues points(8);
    for (uint64_t &x : points) x = rnd() % prime_61;
    for (std::size_t main = 0; main < 8; main++)
        if (gcd_degree(image_of(u, main, points), image_of(v, main, points)) > 0) return false;
    return true;
}

static int integer_content_gcd_is_1(const polynode *a, const polynode *b);

struct planted {
    poly_handle u, v, g, planted_factor;
};

static void plant(test_random &rnd, int variables, int kind, planted &p) {
    poly_shape shape;
    shape.variables = variables;
    shape.terms = variables > 3 ? 2 : 3;
    shape.degree = 4;
    shape.digits = kind == 3 ? 4 : 1;
    poly_shape factor_shape = shape;
    if (kind == 1) factor_shape.variables = 1;
    poly_handle a(rand_nonzero_poly(rnd, shape)), b(rand_nonzero_poly(rnd, shape)),
        f(rand_nonzero_poly(rnd, factor_shape));
    if (kind == 2) poly_set(1, b.slot());
    if (kind == 4) poly_set(1, f.slot());
    if (kind == 5) { /* shared factors in the last variables only */
        for (int i = 1; i < variables; i++) add_pad(f.slot(), 1);
        poly_handle last(rand_nonzero_poly(rnd, poly_shape{1, 3, 3, 1, false}));
        add_pad(last.slot(), variables - 1);
        last.release_to(f.slot());
    }
    poly_mult(a.get(), f.get(), p.u.slot(), nullptr);
    poly_mult(b.get(), f.get(), p.v.slot(), nullptr);
    f.release_to(p.planted_factor.slot());
}

static void check_planted(test_random &rnd, planted &p, const std::string &what) {
    SCOPED_TRACE(what + "\n" + text_of(p.u.get()) + "\n" + text_of(p.v.get()));
    poly_handle kept_u, kept_v;
    poly_assign(p.u.get(), kept_u.slot());
    poly_assign(p.v.get(), kept_v.slot());
    Lpolygcd(p.u.slot(), p.v.slot(), p.g.slot(), 1, polynames);
    expect_canonical(p.g.get());
    EXPECT_TRUE(poly_equal(kept_u.get(), p.u.get()));
    EXPECT_TRUE(poly_equal(kept_v.get(), p.v.get()));
    if (poly_iszero(p.u.get()) || poly_iszero(p.v.get())) return;
    poly_handle q_u, q_v, q;
    int failed;
    auto divide = [&](const polynode *a, const polynode *b, poly_handle &to) {
        gen_poly_divide(a, b, to.slot(), polynames, &failed);
        EXPECT_EQ(failed, 0) << text_of(b) << " does not divide " << text_of(a);
        return failed == 0;
    };
    if (!is_constant(p.g.get()) || !lintmode) {
        ASSERT_TRUE(divide(p.u.get(), p.g.get(), q_u));
        ASSERT_TRUE(divide(p.v.get(), p.g.get(), q_v));
    } else {
        poly_assign(p.u.get(), q_u.slot());
        poly_assign(p.v.get(), q_v.slot());
    }
    if (!is_constant(p.planted_factor.get()) || !lintmode) divide(p.g.get(), p.planted_factor.get(), q);
    if (!lintmode) {
        EXPECT_TRUE(coprime_by_images(rnd, q_u.get(), q_v.get())) << text_of(p.g.get());
        EXPECT_EQ(integer_content_gcd_is_1(q_u.get(), q_v.get()), 1);
        EXPECT_FALSE(neg_leading_term(p.g.get()));
    }
}

static int integer_content_gcd_is_1(const polynode *a, const polynode *b) {
    uint64_t g = 0;
    /* an odd or even answer would leave a common factor in every coefficient: gcd of residues is no test, so the numbers
       themselves are asked by division by small primes */
    for (uint64_t p : {2, 3, 5, 7, 11, 13}) {
        bool all = true;
        for (const polynode *side : {a, b})
            for (const auto &[exponents, c] : flat(side))
                all = all && chain_modulo(&c.x, static_cast<uint32_t>(p)) == 0;
        if (all) g = p;
    }
    return g == 0;
}

TEST_F(polygcd_test, of_planted_factors_over_the_integers) {
    for (int i = 0; i < times(300); i++) {
        const int variables = 1 + i % 6, kind = rnd.below(6);
        const kept_value<int> images(chinhensel, rnd.below(2));
        planted p;
        plant(rnd, variables, kind, p);
        check_planted(rnd, p, "variables " + std::to_string(variables) + ", kind " + std::to_string(kind));
        if (HasFatalFailure() || HasNonfatalFailure()) return;
    }
}

TEST_F(polygcd_test, of_planted_factors_modulo_primes) {
    for (const char *modulus_name : {"2", "3", "7", "101", "65521", "65537", "2147483629"}) {
        test_ring ring(modulus_name);
        for (int i = 0; i < times(120); i++) {
            const int variables = 1 + i % 6, kind = rnd.below(6);
            const kept_value<int> images(chinhensel, rnd.below(2));
            planted p;
            plant(rnd, variables, kind, p);
            check_planted(rnd, p, std::string("modulo ") + modulus_name + ", variables " + std::to_string(variables));
            if (HasFatalFailure() || HasNonfatalFailure()) return;
        }
    }
}

TEST_F(polygcd_test, modulo_primes_the_cofactors_have_gcd_1) {
    for (const char *modulus_name : {"2", "7", "65521"}) {
        test_ring ring(modulus_name);
        for (int i = 0; i < times(60); i++) {
            planted p;
            plant(rnd, 1 + i % 4, 0, p);
            poly_handle again, q_u, q_v;
            int failed;
            Lpolygcd(p.u.slot(), p.v.slot(), p.g.slot(), 1, polynames);
            gen_poly_divide(p.u.get(), p.g.get(), q_u.slot(), polynames, &failed);
            ASSERT_EQ(failed, 0);
            gen_poly_divide(p.v.get(), p.g.get(), q_v.slot(), polynames, &failed);
            ASSERT_EQ(failed, 0);
            Lpolygcd(q_u.slot(), q_v.slot(), again.slot(), 1, polynames);
            EXPECT_EQ(text_of(again.get()), "1") << text_of(p.u.get()) << "\n" << text_of(p.v.get());
        }
    }
}

TEST_F(polygcd_test, of_a_large_multiple_of_a_deeper_variable) {
    poly_handle f(poly_of("x + 100000*y"));
    for (int i = 0; i < times(200); i++) {
        poly_handle a(rand_nonzero_poly(rnd, {2, 4, 3, 1, false})), b(rand_nonzero_poly(rnd, {2, 4, 3, 1, false})), u,
            v, g, rest;
        poly_mult(a.get(), f.get(), u.slot(), nullptr);
        poly_mult(b.get(), f.get(), v.slot(), nullptr);
        Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames);
        int failed;
        gen_poly_divide(g.get(), f.get(), rest.slot(), polynames, &failed);
        EXPECT_EQ(failed, 0);
        gen_poly_divide(u.get(), g.get(), rest.slot(), polynames, &failed);
        EXPECT_EQ(failed, 0);
        gen_poly_divide(v.get(), g.get(), rest.slot(), polynames, &failed);
        EXPECT_EQ(failed, 0);
    }
}

/* A sparse polynomial of `terms` terms in the first variables, of degree up to `degree` in each. */
static polynode *sparse_poly(test_random &rnd, int variables, int terms, int degree, int size) {
    flat_poly p;
    while (static_cast<int>(p.size()) < terms) {
        std::vector<int32_t> e(static_cast<std::size_t>(variables));
        for (int32_t &x : e) x = rnd.below(degree + 1);
        while (!e.empty() && e.back() == 0) e.pop_back();
        p[e] = coef(1 + rnd.below(size));
    }
    return nested(p);
}

TEST_F(polygcd_test, of_products_of_sparse_polynomials) {
    for (int i = 0; i < times(40); i++) {
        const int variables = 2 + i % 2;
        planted p;
        poly_handle a(sparse_poly(rnd, variables, 5, 2, 20)), b(sparse_poly(rnd, variables, 5, 2, 20)),
            f(sparse_poly(rnd, variables, 4, 2, 20));
        poly_mult(a.get(), f.get(), p.u.slot(), nullptr);
        poly_mult(b.get(), f.get(), p.v.slot(), nullptr);
        f.release_to(p.planted_factor.slot());
        check_planted(rnd, p, "sparse");
        if (HasFatalFailure() || HasNonfatalFailure()) return;
    }
}

TEST_F(polygcd_test, of_large_products_by_images) {
    const kept_value<int> allowed(chinhensel, 1);
    for (const char *ring_name : {"chain", "65521", "101"}) {
        test_ring ring(ring_name);
        for (int i = 0; i < times(12); i++) {
            const int variables = 1 + i % 4;
            planted p;
            const int terms = variables == 1 ? 5 : 8;
            poly_handle a(sparse_poly(rnd, variables, terms, 9 / variables + 1, 99)),
                b(sparse_poly(rnd, variables, terms, 9 / variables + 1, 99)),
                f(sparse_poly(rnd, variables, terms, 9 / variables + 1, 99));
            poly_mult(a.get(), f.get(), p.u.slot(), nullptr);
            poly_mult(b.get(), f.get(), p.v.slot(), nullptr);
            f.release_to(p.planted_factor.slot());
            check_planted(rnd, p, std::string("images, ") + ring_name);
            if (HasFatalFailure() || HasNonfatalFailure()) return;
        }
    }
    EXPECT_GT(gcd_answers(44), 0);
    EXPECT_GT(gcd_answers(47), 0);
}

/* Too many terms for the sequence of subresultants, and too few residues for points. */
TEST_F(polygcd_test, of_large_products_modulo_small_primes) {
    const kept_value<int> allowed(chinhensel, 1);
    for (const char *ring_name : {"2", "3", "7", "101"}) {
        test_ring ring(ring_name);
        for (int variables = 3; variables <= 5; variables++) {
            poly_handle a(sparse_poly(rnd, variables, 20, 6, modulus - 1)),
                b(sparse_poly(rnd, variables, 20, 6, modulus - 1));
            planted p;
            *p.planted_factor.slot() = sparse_poly(rnd, variables, 20, 6, modulus - 1);
            poly_mult(a.get(), p.planted_factor.get(), p.u.slot(), nullptr);
            poly_mult(b.get(), p.planted_factor.get(), p.v.slot(), nullptr);
            check_planted(rnd, p, std::string("large, modulo ") + ring_name);
            if (HasFatalFailure() || HasNonfatalFailure()) return;
        }
    }
}

/* ---- ownership ---- */

TEST_F(polygcd_test, operands_that_are_given_away_are_consumed) {
    poly_handle u(poly_of("x^2 - y^2")), v(poly_of("x*z - y*z")), g;
    polygcd(u.release(), v.release(), g.slot(), 0, 1, 1, polynames, 0, 0, 1);
    EXPECT_EQ(text_of(g.get()), "x - y");
    poly_handle w(poly_of("x*y - y^2"));
    polygcd(g.get(), w.get(), g.slot(), 0, 1, 1, polynames, 0, 1, 1);
    EXPECT_EQ(text_of(g.get()), "x - y");
    polygcd(g.get(), w.get(), g.slot(), 0, 1, 1, polynames, 1, 1, 1);
    EXPECT_EQ(text_of(g.get()), "x - y");
}

static long safe_points_left;
static void unwind_later() {
    if (--safe_points_left == 0) throw unwind{unwind::to_top};
}

TEST_F(polygcd_test, an_unwinding_leaves_operands_as_they_were) {
    poly_handle u, v, g, kept_u, kept_v;
    planted p;
    poly_handle a(poly_of("x^3*y + 2*x*z^2 + y^2 - 5")), b(poly_of("x^2 - 3*x*y*z + z^3 + 7")),
        f(poly_of("x^2*z + x*y^2 - z + 11"));
    poly_mult(a.get(), f.get(), u.slot(), nullptr);
    poly_mult(b.get(), f.get(), v.slot(), nullptr);
    poly_assign(u.get(), kept_u.slot());
    poly_assign(v.get(), kept_v.slot());
    const ring_state ring = current_ring();
    int thrown = 0;
    for (int i = 0; i < 200; i++) {
        safe_points_left = 1 + rnd.below(400);
        watch_safe_points(unwind_later);
        try {
            Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames);
        } catch (const unwind &) {
            thrown++;
        }
        watch_safe_points(nullptr);
        EXPECT_EQ(current_ring().lintmode, ring.lintmode);
        EXPECT_EQ(current_ring().modulus, ring.modulus);
        ASSERT_TRUE(poly_equal(u.get(), kept_u.get()));
        ASSERT_TRUE(poly_equal(v.get(), kept_v.get()));
    }
    EXPECT_GT(thrown, 100);
    Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames);
    EXPECT_TRUE(poly_equal(g.get(), f.get())) << text_of(g.get());
}

TEST_F(polygcd_test, of_sparse_polynomials_of_high_degree_in_one_variable) {
    test_ring ring("7");
    EXPECT_GCD("x^2000000000 - 1", "x^2 - 1", "x^2 - 1");
    EXPECT_GCD("x^2000000000 + x", "x^2 + 5*x", "x");
    EXPECT_GCD("x^22008 - 1", "x^22000 - 1", "x^8 - 1");
}

/* ---- floats in one variable ---- */

static flat_poly float_poly(std::initializer_list<long double> coefficients) {
    flat_poly p;
    int32_t e = 0;
    for (long double x : coefficients) {
        coef c;
        c.x.flote_val = x;
        if (x != 0) p[e ? std::vector<int32_t>{e} : std::vector<int32_t>{}] = c;
        e++;
    }
    return p;
}

TEST_F(polygcd_test, of_floats_forgives_rounding) {
    test_ring ring("float");
    poly_handle u(nested(float_poly({0.03L, -0.4L, 1}))), v(nested(float_poly({0.07L, -0.8L, 1}))), g;
    fl_basic_poly_gcd(u.get(), v.get(), g.slot(), 1, polynames);
    ASSERT_EQ(g->expo, 1);
    EXPECT_EQ(g->poly->num->flote_val, 1);
    EXPECT_NEAR(static_cast<double>(g->next->num->flote_val), -0.1, 1e-12);
}

TEST_F(polygcd_test, of_floats_without_bounds_ends) {
    test_ring ring("float");
    poly_handle u(nested(float_poly({1, 0, 1e4900L}))), v(nested(float_poly({1, 1}))), g;
    fl_basic_poly_gcd(u.get(), v.get(), g.slot(), 1, polynames);
    EXPECT_LE(g->expo, 1);
    const long double inf = std::numeric_limits<long double>::infinity();
    for (long double x : {inf, -inf, std::numeric_limits<long double>::quiet_NaN()}) {
        poly_handle a(nested(float_poly({1, x, 2, 3}))), b(nested(float_poly({5, 1, x})));
        fl_basic_poly_gcd(a.get(), b.get(), g.slot(), 1, polynames);
        EXPECT_LE(g->expo, 2);
    }
}

/* ---- the tree ---- */

TEST_F(polygcd_test, the_steps_are_reached) {
    for (int i = 0; i < 100; i++) {
        poly_handle a(sparse_poly(rnd, 2, 5, 2, 20)), b(sparse_poly(rnd, 2, 5, 2, 20)), f(sparse_poly(rnd, 2, 3, 2, 9)),
            u, v, g;
        if (i % 5 == 0) poly_set(1, f.slot());
        if (i % 7 == 0) poly_set(1, b.slot());
        poly_mult(a.get(), f.get(), u.slot(), nullptr);
        poly_mult(b.get(), f.get(), v.slot(), nullptr);
        Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames);
    }
    gcd_of("6", "4");
    gcd_of("y^2 - 1", "y + 2");
    gcd_of("x^2 - y^2", "x^5 - x^4*y + 3*x^3 - 3*x^2*y + 7*x^2*y^2 - 7*x*y^3");
    {
        test_ring ring("7");
        gcd_of("x^2 - 1", "x + 1");
    }
    for (int step : {1, 9, 11, 48}) EXPECT_GT(gcd_answers(step), 0) << step;
}

/* ---- levels ---- */

TEST_F(polygcd_test, a_variable_comes_to_the_front_and_back) {
    for (int i = 0; i < times(200); i++) {
        poly_handle p(rand_poly(rnd, rand_shape(rnd)));
        const int k = 1 + rnd.below(6);
        poly_handle front(level_to_front(p.get(), k)), back(level_from_front(front.get(), k));
        expect_canonical(front.get());
        expect_canonical(back.get());
        EXPECT_TRUE(poly_equal(p.get(), back.get())) << text_of(p.get()) << "\n" << text_of(back.get());
        flat_poly moved;
        for (const auto &[exponents, c] : flat(p.get())) {
            std::vector<int32_t> e = exponents;
            if (e.size() < static_cast<std::size_t>(k)) e.resize(static_cast<std::size_t>(k));
            std::rotate(e.begin(), e.begin() + k - 1, e.begin() + k);
            while (!e.empty() && e.back() == 0) e.pop_back();
            moved[e] = c;
        }
        poly_handle expected(nested(moved));
        EXPECT_TRUE(poly_equal(expected.get(), front.get()));
    }
}

} // namespace tolvek
