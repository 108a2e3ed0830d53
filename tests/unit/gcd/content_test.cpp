/* Contents: those that are planted are found, and the cases in which one is a number. */
#include "gcd/content.h"
#include "gcd/gcd.h"
#include "poly/divide.h"
#include "poly/mult.h"
#include "quoly/quoly.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/driver.h"
#include "top/guards.h"

#include <gtest/gtest.h>

namespace tolvek {

struct content_test : poly_test {
    std::string content_of(const std::string &text) {
        poly_handle p(poly_of(text)), c;
        content(p.get(), c.slot(), polynames, 0, 1, 1);
        add_pad(c.slot(), 1);
        return text_of(c.get());
    }
    std::string in_variable(const std::string &text, int level) {
        quoly_handle q, r;
        poly_handle p(poly_of(text));
        poly_to_value(p, q.slot());
        content_of_quoly(q.get(), r.slot(), level);
        return text_of(r.get());
    }
};

TEST_F(content_test, with_a_number_coefficient_is_a_number_and_takes_no_gcd) {
    const long calls = polygcd_calls;
    EXPECT_EQ(content_of("x^2*y + 3*x + y"), "1");
    EXPECT_EQ(content_of("4*x^2*y + 6*x + 8*y"), "2");
    EXPECT_EQ(content_of("6*x^2 - 9"), "3");
    EXPECT_EQ(polygcd_calls, calls);
}

TEST_F(content_test, of_a_single_term_is_its_coefficient) {
    EXPECT_EQ(content_of("x^3*y + x^3*z"), "y + z");
    EXPECT_EQ(content_of("-6*x^3"), "6");
}

TEST_F(content_test, is_the_gcd_of_the_coefficients) {
    EXPECT_EQ(content_of("x^2*y^2 - x^2 + 2*x*y + 2*x + y^2 + 3*y + 2"), "y + 1");
    EXPECT_EQ(content_of("2*x^2*y*z + 4*x*y*z^2 + 6*y*z"), "2*y*z");
}

TEST_F(content_test, in_any_variable_contains_the_others) {
    EXPECT_EQ(in_variable("x*y + x", 2), "x");
    EXPECT_EQ(in_variable("x*y + x", 1), "y + 1");
    EXPECT_EQ(in_variable("x*y*z + y*z + x*y + y", 3), "x*y + y");
    EXPECT_EQ(in_variable("y*z + z", 0), "z");
    EXPECT_EQ(in_variable("-y*z - z", 1), "y*z + z");
}

TEST_F(content_test, of_numbers) {
    for (auto [value, expected] : {std::pair{0, "1"}, {-6, "6"}, {6, "6"}}) {
        quoly_handle q, r;
        quoly_set(value, q.slot());
        content_of_quoly(q.get(), r.slot(), 0);
        EXPECT_EQ(text_of(r.get()), expected);
    }
}

TEST_F(content_test, of_two_and_of_a_further_polynomial) {
    poly_handle u(poly_of("x*y^2 - x")), v(poly_of("x^2*y*z + x^2*z + y + 1")), q(poly_of("y^2*z + y*z")), g;
    dual_content(u.get(), v.get(), g.slot(), polynames, 0, 1, 1, 1);
    add_pad(g.slot(), 1);
    EXPECT_EQ(text_of(g.get()), "y + 1");
    aux_content(q.get(), v.get(), g.slot(), polynames, 0, 1, 1, 1);
    add_pad(g.slot(), 1);
    EXPECT_EQ(text_of(g.get()), "y + 1");
    poly_handle second(content_2(poly_handle(poly_of("x*y*z + z*y + x*z^2 + z^2")).get(), polynames));
    EXPECT_EQ(text_of(second.get()), "x*z + z");
}

TEST_F(content_test, that_is_planted_divides_and_leaves_a_primitive_polynomial) {
    for (const char *ring_name : {"chain", "2", "101", "65521"}) {
        test_ring ring(ring_name);
        for (int i = 0; i < times(60); i++) {
            poly_handle p(rand_nonzero_poly(rnd, {3, 3, 3, 1, false})), f(rand_nonzero_poly(rnd, {2, 3, 2, 1, false})),
                product, c, rest;
            add_pad(f.slot(), 1);
            poly_mult(p.get(), f.get(), product.slot(), nullptr);
            if (product->expo == 0 && !product->next) continue;
            content(product.get(), c.slot(), polynames, 0, 1, 1);
            expect_canonical(c.get());
            add_pad(c.slot(), 1);
            int failed;
            if (!is_constant(f.get()) || !lintmode) {
                gen_poly_divide(c.get(), f.get(), rest.slot(), polynames, &failed);
                EXPECT_EQ(failed, 0) << text_of(c.get()) << " by " << text_of(f.get());
            }
            if (poly_eq_1(c.get())) continue;
            gen_poly_divide(product.get(), c.get(), rest.slot(), polynames, &failed);
            ASSERT_EQ(failed, 0);
            content(rest.get(), c.slot(), polynames, 0, 1, 1);
            EXPECT_EQ(text_of(c.get()), "1");
        }
    }
}

TEST_F(content_test, searches_for_a_small_pair_near_the_level_of_the_first_use_alone) {
    kept_value<int> count(c_cntcount, 5), depth(c_cntdepth, -10);
    EXPECT_EQ(content_of("x^3*y^2 + x^3*y + x^2*y*z + x*y^3 + y"), "y");
    EXPECT_EQ(c_cntcount, 6); /* one for the call, none for coefficients */
    c_cntdepth = 1;
    content_of("x^3*y^2 + x^3*y + x^2*y*z + x*y^3 + y");
    EXPECT_GT(c_cntcount, 7);
    c_cntcount = content_count_limit + 1;
    EXPECT_EQ(content_of("x^3*y^2 + x^3*y + x^2*y*z + x*y^3 + y"), "y");
    EXPECT_EQ(c_cntcount, content_count_limit + 2);
}

} // namespace tolvek
