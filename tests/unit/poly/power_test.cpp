#include "poly/mult.h"

#include "poly/flat_power.h"
#include "poly/mult_work.h"
#include "poly/power_work.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/guards.h"

namespace tolvek {

namespace {

struct power_test : poly_test {
    void SetUp() override {
        poly_test::SetUp();
        laurent = 1;
    }
};

polynode *power_by_table(const polynode *p, int e) {
    flat_poly terms = flat(p), power = terms;
    for (; e > 1; e--) power = flat_product(power, terms);
    return nested(power);
}

/* The recurrence gives the power, or leaves p alone. */
bool check_recurrence(const polynode *a, int e, const polynode *expected) {
    poly_handle p;
    poly_extent x;
    poly_assign(a, p.slot());
    measure_poly(a, &x);
    const bool applies = power_flat(p.slot(), static_cast<uint32_t>(e), x);
    expect_canonical(p.get());
    EXPECT_TRUE(poly_equal(p.get(), applies ? expected : a))
        << "(" << text_of(a) << ")^" << e << "\nis " << text_of(expected) << "\nnot " << text_of(p.get());
    return applies;
}

std::string power_text(const std::string &text, uint32_t e) {
    poly_handle p(poly_of(text));
    compute_power(p.slot(), e, nullptr);
    expect_canonical(p.get());
    return text_of(p.get());
}

} // namespace

TEST_F(power_test, every_route_gives_the_product_of_equal_factors) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = times(10); i > 0; i--) {
            const int e = 2 + rnd.below(4);
            poly_shape shape = rand_shape(rnd, true);
            shape.terms = 3;
            shape.variables = 1 + shape.variables % 4;
            poly_handle a(rand_poly(rnd, shape));
            if (is_constant(a.get())) continue;
            poly_handle expected(power_by_table(a.get(), e));
            for (auto route : {compute_power, power_by_steps, power_by_squares}) {
                poly_handle p;
                poly_assign(a.get(), p.slot());
                route(p.slot(), static_cast<uint32_t>(e), nullptr);
                expect_canonical(p.get());
                EXPECT_TRUE(poly_equal(p.get(), expected.get()))
                    << "(" << text_of(a.get()) << ")^" << e << " ring " << name << "\nis " << text_of(expected.get())
                    << "\nnot " << text_of(p.get());
            }
            check_recurrence(a.get(), e, expected.get());
        }
    }
}

TEST_F(power_test, the_recurrence) {
    struct {
        const char *base;
        int e;
    } cases[] = {{"x + 1", 12},
                 {"x + y + z + 1", 9},
                 {"-3*x + 2*y - z + 5", 7},
                 {"x^2*y - x^2 + x*y^3 - 7", 6},   /* the leading term is found by two levels */
                 {"5*x*y^2*z - 2*x*y^2 + 3*x", 5}, /* by three */
                 {"x^3 - x^-2*y + 4", 6},
                 {"z^5 + 1", 10},
                 {"1000000007*x - 998244353*y + 1000003", 8},
                 {"x^2 + 2*x + 1", 8}}; /* terms on their way that vanish */
    for (const std::string name : {"chain", "46337", "2147483629"}) {
        test_ring ring(name);
        for (const auto &c : cases) {
            poly_handle a(poly_of(c.base)), expected(power_by_table(a.get(), c.e));
            EXPECT_TRUE(check_recurrence(a.get(), c.e, expected.get())) << c.base;
        }
    }
}

/* Denominators that the modulus divides, and a modulus that is no prime. */
TEST_F(power_test, where_the_recurrence_does_not_apply) {
    for (const std::string name : {"7", "46336", "float", "word"}) {
        test_ring ring(name);
        poly_handle a(poly_of("x^2 + y + 1")), expected(power_by_table(a.get(), 6));
        EXPECT_FALSE(check_recurrence(a.get(), 6, expected.get())) << name;
    }
}

TEST_F(power_test, digits_of_the_exponent_to_the_modulus) {
    for (const std::string name : {"2", "3", "13"}) {
        test_ring ring(name);
        for (int e : {2, 3, 4, 13, 14, 26, 29}) {
            poly_handle a(rand_nonzero_poly(rnd, {2, 3, 4, 1, false})), p;
            if (is_constant(a.get())) continue;
            poly_handle expected(power_by_table(a.get(), e));
            poly_assign(a.get(), p.slot());
            poly_mod_prime(p.slot(), static_cast<uint32_t>(e), nullptr);
            expect_canonical(p.get());
            EXPECT_TRUE(poly_equal(p.get(), expected.get())) << e;
        }
    }
}

TEST_F(power_test, the_first_power_is_the_value) {
    EXPECT_EQ(power_text("x*y + 2", 1), "x*y + 2");
    EXPECT_EQ(power_text("0", 1), "0");
}

TEST_F(power_test, a_constant_in_a_prime_field_goes_by_the_rest_of_the_exponent) {
    test_ring ring("13");
    EXPECT_EQ(power_text("5", 12), "1");
    EXPECT_EQ(power_text("5", 24), "1");
    EXPECT_EQ(power_text("5", 25), "5");
    EXPECT_EQ(power_text("0", 12), "0");
    EXPECT_EQ(power_text("0", 24), "0");
    EXPECT_EQ(power_text("0", 5), "0");
}

TEST_F(power_test, a_constant_modulo_a_composite_number) {
    test_ring ring("6");
    EXPECT_EQ(power_text("2", 5), "2");
    EXPECT_EQ(power_text("3", 4), "3");
}

TEST_F(power_test, a_high_power_of_a_binomial_modulo_its_size_has_two_terms) {
    test_ring ring("13");
    EXPECT_EQ(power_text("x + 1", 13), "x^13 + 1");
    EXPECT_EQ(power_text("x + y", 169), "x^169 + y^169");
}

TEST_F(power_test, binomials) {
    EXPECT_EQ(power_text("x - 1", 5), "x^5 - 5*x^4 + 10*x^3 - 10*x^2 + 5*x - 1");
    EXPECT_EQ(power_text("x^-1 + x", 3), "x^3 + 3*x + 3*x^-1 + x^-3");
}

using power_range_test = fresh_exact_system;

TEST_F(power_range_test, an_exponent_beyond_31_bits_is_error_32_and_the_value_survives) {
    poly_handle p(poly_of("x^268435455")), q(poly_of("x^268435455"));
    compute_power(p.slot(), 8, nullptr);
    EXPECT_EQ(p->expo, 2147483640);
    EXPECT_TRUE(unwinds([&] { compute_power(q.slot(), 9, nullptr); }));
    EXPECT_NE(last_text.find(message_text(32)), std::string::npos) << last_text;
    EXPECT_EQ(tolvek::text_of(q.get()), "x^268435455");
}

} // namespace tolvek
