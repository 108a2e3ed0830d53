#include "poly/euclid.h"

#include "poly/add.h"
#include "poly/mult.h"
#include "support/fresh_system.h"
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

/* ---- in other rings ---- */

TEST_F(euclid_test, cofactors_of_1_over_residues_and_floats) {
    for (const std::string name : {"7", "65521"}) {
        test_ring ring(name);
        for (int i = times(60); i > 0; i--) {
            const poly_shape one{1, 6, 12, 1, false};
            poly_handle a(rand_nonzero_poly(rnd, one)), b(rand_nonzero_poly(rnd, one)), g, s, t;
            fastest_poly_gcd(a.get(), b.get(), g.slot(), 1, polynames);
            const int coprime = rev_euclid(a.get(), b.get(), s.slot(), t.slot(), polynames);
            EXPECT_EQ(coprime, is_constant(g.get())) << text_of(a.get()) << "\n" << text_of(b.get());
            if (!coprime) continue;
            poly_handle sum(nested(
                flat_sum(flat_product(flat(s.get()), flat(a.get())), flat_product(flat(t.get()), flat(b.get())))));
            EXPECT_EQ(text_of(sum.get()), "1");
        }
    }
    test_ring ring("float"); /* x^2 + 1 = (x + 1)(x - 1) + 2: 1/2 and (1 - x)/2 */
    poly_handle a(poly_of("x^2 + 1")), b(poly_of("x + 1")), zero(poly_of("0")), two(poly_of("2")), s, t;
    EXPECT_EQ(rev_euclid(a.get(), b.get(), s.slot(), t.slot(), polynames), 1);
    EXPECT_EQ(text_of(s.get()) + "; " + text_of(t.get()), "0.5; -0.5*x + 0.5");
    EXPECT_EQ(rev_euclid(a.get(), zero.get(), s.slot(), t.slot(), polynames), 0);
    EXPECT_EQ(rev_euclid(a.get(), two.get(), s.slot(), t.slot(), polynames), 1);
    EXPECT_EQ(text_of(s.get()) + "; " + text_of(t.get()), "0; 0.5");
}

TEST_F(euclid_test, a_leading_coefficient_that_is_no_unit_gives_no_cofactors) {
    poly_handle a(poly_of("x^2 + 1")), b(poly_of("2*x + 1")), c(poly_of("x + y")), s, t;
    EXPECT_EQ(rev_euclid(a.get(), b.get(), s.slot(), t.slot(), polynames), 0);
    EXPECT_EQ(rev_euclid(a.get(), c.get(), s.slot(), t.slot(), polynames), 0) << "the remainder y^2 + 1 is none";
    EXPECT_FALSE(s || t);
    poly_handle x(poly_of("x")); /* x^2 + 1 = x x + 1 */
    EXPECT_EQ(rev_euclid(a.get(), x.get(), s.slot(), t.slot(), polynames), 1);
    EXPECT_EQ(text_of(s.get()) + "; " + text_of(t.get()), "1; -x");
}

/* s a + t b = d without the top variable. */
static void expect_denominator(const polynode *a, const polynode *b, const polynode *s, const polynode *t,
                               const polynode *d) {
    for (const polynode *p : {s, t, d}) expect_canonical(p);
    poly_handle sum(nested(flat_sum(flat_product(flat(s), flat(a)), flat_product(flat(t), flat(b)))));
    EXPECT_TRUE(poly_equal(sum.get(), d)) << text_of(a) << "\n" << text_of(b);
    EXPECT_TRUE(!poly_iszero(d) && poly_level(d) != 1) << text_of(d);
}

TEST_F(euclid_test, inverses_with_a_denominator) {
    poly_handle m(poly_of("x^2 + 1")), p(poly_of("x + 1")), s, t, d;
    EXPECT_EQ(reverse_euclid(m.get(), p.get(), s.slot(), t.slot(), d.slot(), polynames), 1);
    EXPECT_EQ(text_of(t.get()) + " over " + text_of(d.get()), "-x + 1 over 2");
    /* x is the root of y, y that of 2: 1/(x + y) = (x - y)/(y - 2), since y^2 = 2 comes in later */
    poly_handle tower(poly_of("x^2 - y")), sum(poly_of("x + y"));
    EXPECT_EQ(reverse_euclid(tower.get(), sum.get(), s.slot(), t.slot(), d.slot(), polynames), 1);
    EXPECT_EQ(text_of(t.get()) + " over " + text_of(d.get()), "-x + y over y^2 - y");
}

TEST_F(euclid_test, inverses_of_high_degree_stay_as_short_as_their_determinants) {
    poly_handle m(poly_of("x^24 - 3*x^7 + 5")), p(poly_of("7*x^23 + 2*x^11 - 9*x + 4")), s, t, d;
    EXPECT_EQ(reverse_euclid(m.get(), p.get(), s.slot(), t.slot(), d.slot(), polynames), 1);
    expect_denominator(m.get(), p.get(), s.get(), t.get(), d.get());
    /* d divides the resultant, which is below 35^(23/2) 150^(24/2), 2^146 (Hadamard): six digits of 28 bits */
    EXPECT_LE(d->num->num_len, 6);
}

namespace {
struct euclid_faults : fresh_exact_system {
    void SetUp() override {
        forget_poly_variables();
        fresh_exact_system::SetUp();
        run("&(J = x)\n&(J = y)");
    }
    void TearDown() override {
        fresh_exact_system::TearDown();
        forget_poly_variables();
    }
};
} // namespace

TEST_F(euclid_faults, inverses_with_a_denominator_of_random_operands) {
    test_random rnd;
    for (const std::string name : {"chain", "7", "65521"}) {
        int found = 0;
        for (int i = times(60); i > 0; i--) {
            test_ring ring(name);
            const poly_shape shape{1 + rnd.below(2), 4, 4, 1, false};
            poly_handle a(rand_nonzero_poly(rnd, shape)), b(rand_nonzero_poly(rnd, shape)), s, t, d;
            if (unwinds([&] { reverse_euclid(a.get(), b.get(), s.slot(), t.slot(), d.slot(), polynames); })) {
                EXPECT_NE(last_text.find(message_text(85)), std::string::npos) << last_text;
                leave_all_levels();
                continue;
            }
            expect_denominator(a.get(), b.get(), s.get(), t.get(), d.get());
            found++;
        }
        EXPECT_GT(found, 10);
    }
}

TEST_F(euclid_faults, a_common_factor_has_no_inverse) {
    test_ring ring("chain");
    poly_handle m(poly_of("x^2 - 4")), p(poly_of("x - 2")), zero(poly_of("0")), s, t, d;
    for (const polynode *b : {p.get(), zero.get()}) {
        unwinds([&] { reverse_euclid(m.get(), b, s.slot(), t.slot(), d.slot(), polynames); });
        EXPECT_NE(last_text.find(message_text(85)), std::string::npos) << last_text;
        EXPECT_FALSE(s || t || d);
        leave_all_levels();
    }
}

} // namespace tolvek
