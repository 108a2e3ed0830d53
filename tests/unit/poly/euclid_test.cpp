#include "poly/euclid.h"

#include "poly/mult.h"
#include "support/rand_poly.h"

namespace tolvek {

using euclid_test = poly_test;

static void expect_gcd(const std::string &u, const std::string &v, const std::string &g) {
    poly_handle a(poly_of(u)), b(poly_of(v)), d;
    fastest_poly_gcd(a.get(), b.get(), d.slot(), 1, polynames);
    EXPECT_EQ(text_of(d.get()), g);
    expect_canonical(d.get());
    emgcd_poly(a.get(), b.get(), d.slot(), polynames, 1);
    EXPECT_EQ(text_of(d.get()), g);
    faster_poly_gcd(b.get(), a.get(), a.slot(), 1, polynames); /* in place of an operand */
    EXPECT_EQ(text_of(a.get()), g);
}

TEST_F(euclid_test, gcds_over_seven_elements) {
    test_ring ring("7");
    expect_gcd("x^2 - 1", "x^2 + 2*x + 1", "x + 1");
    expect_gcd("3*x^2 - 3", "5*x + 5", "x + 1");
    expect_gcd("x^2 + 1", "x^2 + 2", "1");
    expect_gcd("3*x", "0", "x");
    expect_gcd("3", "5", "1");
    expect_gcd("x^6 - 1", "x^4 - 1", "x^2 + 6");
}

TEST_F(euclid_test, inverses_modulo_a_polynomial) {
    test_ring ring("7");
    poly_handle a(poly_of("x")), b(poly_of("x^2 + 1")), s, t;
    EXPECT_EQ(mod_rev_euclid(a.get(), b.get(), s.slot(), t.slot(), polynames), 1);
    EXPECT_EQ(text_of(s.get()), "6*x"); /* -x * x + (x^2 + 1) = 1 */
    EXPECT_EQ(text_of(t.get()), "1");
    poly_handle c(poly_of("x^2 - 1")), d(poly_of("x - 1")), zero(poly_of("0"));
    EXPECT_EQ(mod_rev_euclid(c.get(), d.get(), s.slot(), t.slot(), polynames), 0);
    EXPECT_EQ(mod_rev_euclid(c.get(), zero.get(), s.slot(), t.slot(), polynames), 0);
    EXPECT_EQ(text_of(s.get()), "6*x") << "as it was";
}

TEST_F(euclid_test, cofactors_of_random_polynomials) {
    for (const std::string name : {"2", "3", "65521", "2147483629"}) {
        test_ring ring(name);
        for (int i = times(100); i > 0; i--) {
            const poly_shape one{.variables = 1, .terms = 8, .degree = 30, .digits = 1, .laurent = false};
            poly_handle a(rand_poly(rnd, one)), b(rand_poly(rnd, one)), g, s, t, sa, tb;
            extended_poly_gcd(a.get(), b.get(), g.slot(), s.slot(), t.slot());
            for (const polynode *p : {g.get(), s.get(), t.get()}) expect_canonical(p);
            poly_mult(s.get(), a.get(), sa.slot(), nullptr);
            poly_mult(t.get(), b.get(), tb.slot(), nullptr);
            const flat_poly sum = flat_sum(flat(sa.get()), flat(tb.get()));
            poly_handle combined(nested(sum));
            EXPECT_TRUE(poly_equal(combined.get(), g.get()));
        }
    }
}

} // namespace tolvek
