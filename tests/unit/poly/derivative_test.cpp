#include "poly/derivative.h"

#include "poly/add.h"
#include "poly/mult.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/guards.h"

namespace tolvek {

namespace {
using derivative_test = poly_test;

const std::vector<std::string> characteristics{"chain", "2", "3", "7"};

/* p's first derivative by its flat table of terms: e times the coefficient, as a sum of e of them. */
flat_poly plain_derivative(const polynode *p, std::size_t level) {
    flat_poly sum;
    for (const auto &[exponents, c] : flat(p)) {
        if (level >= exponents.size() || exponents[level] == 0) continue;
        std::vector<int32_t> lower = exponents;
        int32_t e = lower[level]--;
        while (!lower.empty() && lower.back() == 0) lower.pop_back();
        flat_poly term;
        term[lower] = c;
        for (bool minus = e < 0; e != 0; e += minus ? 1 : -1) sum = flat_sum(sum, term, minus);
    }
    return sum;
}

std::string derivative_of(const std::string &text, int32_t k) {
    poly_handle p(poly_of(text));
    poly_diff(p.slot(), k);
    expect_canonical(p.get());
    return text_of(p.get());
}
} // namespace

TEST_F(derivative_test, of_powers) {
    EXPECT_EQ(derivative_of("x^3", 1), "3*x^2");
    EXPECT_EQ(derivative_of("x^3", 2), "6*x");
    EXPECT_EQ(derivative_of("x^3", 3), "6");
    EXPECT_EQ(derivative_of("x^3", 4), "0");
    EXPECT_EQ(derivative_of("x^3", 0), "x^3");
    EXPECT_EQ(derivative_of("x*y + y^2", 1), "y"); /* a coefficient comes to exponent 0 */
    EXPECT_EQ(derivative_of("y^5 + 3", 1), "0");
    EXPECT_EQ(derivative_of("17", 1), "0");
    test_ring ring("3");
    EXPECT_EQ(derivative_of("x^3", 1), "0");
    EXPECT_EQ(derivative_of("x^5", 2), "2*x^3"); /* 20 */
    EXPECT_EQ(derivative_of("x^5", 3), "0");     /* 60 */
}

TEST_F(derivative_test, negative_exponents_have_derivatives_too) {
    kept_value<int> on(laurent, 1);
    EXPECT_EQ(derivative_of("x^-1", 1), "-x^-2");
    EXPECT_EQ(derivative_of("x^2 + 5 + x^-2", 3), "-24*x^-5");
    test_ring ring("5");
    EXPECT_EQ(derivative_of("x^-1", 1), "4*x^-2");
    EXPECT_EQ(derivative_of("x^-5", 1), "0");
}

TEST_F(derivative_test, zero_divisors_make_terms_vanish) {
    test_ring ring("6");
    EXPECT_EQ(derivative_of("2*x^3 + x^2", 1), "2*x"); /* 6 = 0 */
    EXPECT_EQ(derivative_of("x^4", 2), "0");           /* 12 = 0, though neither factor is */
}

TEST_F(derivative_test, in_a_table_field_odd_exponents_count_1) {
    test_ring ring("256");
    kept_value<int> table(finf, 1), which(f256, 1);
    poly_handle p(poly_of("3*x^3 + 5*x^2 + 7*x"));
    poly_diff(p.slot(), 1);
    EXPECT_EQ(text_of(p.get()), "3*x^2 + 7");
    poly_handle q(poly_of("3*x^3"));
    poly_diff(q.slot(), 2);
    EXPECT_TRUE(poly_iszero(q.get()));
}

TEST_F(derivative_test, of_random_polynomials_in_every_variable_and_ring) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(30); i++) {
            poly_shape shape = rand_shape(rnd);
            poly_handle p(rand_poly(rnd, shape));
            const int level = 1 + rnd.below(shape.variables), k = 1 + rnd.below(4);
            poly_handle wanted;
            poly_assign(p.get(), wanted.slot());
            for (int j = 0; j < k; j++) {
                flat_poly next = plain_derivative(wanted.get(), static_cast<std::size_t>(level - 1));
                free_poly(wanted.slot());
                *wanted.slot() = nested(next);
            }
            general_poly_diff(p.slot(), level, k);
            expect_canonical(p.get());
            EXPECT_TRUE(poly_equal(p.get(), wanted.get())) << name << ": " << text_of(p.get());
        }
    }
}

TEST_F(derivative_test, product_rule) {
    for (const std::string &name : characteristics) {
        test_ring ring(name);
        for (int i = 0; i < times(30); i++) {
            poly_shape shape = rand_shape(rnd);
            poly_handle f(rand_poly(rnd, shape)), g(rand_poly(rnd, shape)), product, df, dg, left, right;
            poly_mult(f.get(), g.get(), product.slot(), nullptr);
            poly_diff(product.slot(), 1);
            poly_assign(f.get(), df.slot());
            poly_assign(g.get(), dg.slot());
            poly_diff(df.slot(), 1);
            poly_diff(dg.slot(), 1);
            poly_mult(f.get(), dg.get(), left.slot(), nullptr);
            poly_mult(df.get(), g.get(), right.slot(), nullptr);
            poly_add(left.get(), right.get(), left.slot());
            EXPECT_TRUE(poly_equal(product.get(), left.get())) << name;
        }
    }
}

TEST_F(derivative_test, high_derivatives_are_falling_products) {
    poly_handle p(poly_of("x^60"));
    poly_diff(p.slot(), 40);
    ASSERT_EQ(p->expo, 20);
    python.expect("hex(__import__('math').factorial(60)//__import__('math').factorial(20))", hex_of(p->poly->num));
    python.run();
}

/* ---- roots ---- */

TEST_F(derivative_test, the_root_of_a_p_th_power_is_what_was_raised) {
    for (const char *name : {"2", "3", "7"}) {
        test_ring ring(name);
        for (int i = 0; i < times(30); i++) {
            poly_shape shape = rand_shape(rnd);
            shape.terms = 4;
            poly_handle p(rand_poly(rnd, shape)), power;
            poly_set(1, power.slot());
            for (int j = 0; j < modulus; j++) poly_mult(power.get(), p.get(), power.slot(), nullptr);
            ASSERT_TRUE(whole_pth_root(power.slot()));
            EXPECT_TRUE(poly_equal(power.get(), p.get())) << name;
        }
        poly_handle none(poly_of("x^42*y + 1"));
        EXPECT_FALSE(whole_pth_root(none.slot()));
        EXPECT_EQ(text_of(none.get()), "x^42*y + 1");
    }
}

TEST_F(derivative_test, roots_in_a_table_field_take_roots_of_coefficients) {
    test_ring ring("256");
    kept_value<int> table(finf, 1), which(f256, 1);
    poly_handle p(poly_of("3*x + 200*y + 7")), square;
    poly_mult(p.get(), p.get(), square.slot(), nullptr);
    ASSERT_TRUE(whole_pth_root(square.slot()));
    EXPECT_TRUE(poly_equal(square.get(), p.get()));
}

/* ---- refusals ---- */

using derivative_faults = fresh_exact_system;

TEST_F(derivative_faults, exponents_that_would_leave_their_range_are_error_32) {
    poly_handle p(poly_of("x^-2147483647"));
    kept_value<int> on(laurent, 1);
    EXPECT_TRUE(unwinds([&] { poly_diff(p.slot(), 1); }));
    EXPECT_NE(last_text.find("This exponent is too large."), std::string::npos) << last_text;
    EXPECT_EQ(p->expo, -2147483647);
}

TEST_F(derivative_faults, an_outsized_exponent_is_told_and_counted_right) {
    test_ring ring("chain");
    poly_handle p(poly_of("x^268435456"));
    set_input("&x\n");
    unwinds([&] { poly_diff(p.slot(), 1); });
    EXPECT_NE(last_text.find(" outsized exponent in derivative"), std::string::npos) << last_text;
    leave_all_levels();
}

} // namespace tolvek
