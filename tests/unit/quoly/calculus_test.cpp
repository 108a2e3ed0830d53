#include "quoly/calculus.h"

#include "poly/coefficients.h"
#include "poly/derivative.h"
#include "poly/mult.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/guards.h"

namespace tolvek {

namespace {
using calculus_test = poly_test;

struct q_of : quoly_handle {
    explicit q_of(const std::string &text) {
        poly_handle p(poly_of(text));
        poly_to_value(p, slot());
    }
};

std::string at(const std::string &p, const std::vector<std::string> &values) {
    q_of q(p);
    std::vector<quoly_handle> held(values.size());
    std::vector<const quolynode *> list;
    for (std::size_t i = 0; i < values.size(); i++) {
        poly_handle v(poly_of(values[i]));
        poly_to_value(v, held[i].slot());
        list.push_back(held[i].get());
    }
    get_evalquoly(q.slot(), list.data(), static_cast<int>(list.size()));
    EXPECT_EQ(quoly_rule_broken(q.get()), 0);
    return text_of(q.get());
}
} // namespace

TEST_F(calculus_test, values_go_in_all_at_once) {
    EXPECT_EQ(at("x^2*y + z", {"y", "x"}), "x*y^2 + z");
    EXPECT_EQ(at("x^2*y + z", {"x", "y", "7"}), "x^2*y + 7");
    EXPECT_EQ(at("x - y", {"z", "z"}), "0");
    EXPECT_EQ(at("x^3 - 1", {"1"}), "0");
    EXPECT_EQ(at("x^2", {"x + y"}), "x^2 + 2*x*y + y^2");
    EXPECT_EQ(at("5", {"x"}), "5");
}

TEST_F(calculus_test, modulo_6_and_3) {
    {
        test_ring ring("6");
        EXPECT_EQ(at("3*x^2 + y", {"2*y"}), "y"); /* 12 y^2 */
    }
    test_ring ring("3");
    EXPECT_EQ(at("x^4 + 2*x + y", {"2"}), "y + 2"); /* 16 + 4 = 20 */
}

TEST_F(calculus_test, negative_powers_of_units_have_values) {
    kept_value<int> on(laurent, 1);
    EXPECT_EQ(at("x^-3 + x^-1 + 2", {"-1"}), "0");
    test_ring ring("7");
    EXPECT_EQ(at("x^-1 + y", {"3"}), "y + 5"); /* 3 * 5 = 15 = 1 */
}

TEST_F(calculus_test, a_random_polynomial_at_polynomials_is_the_sum_of_products) {
    for (const char *name : {"chain", "65521", "2"}) {
        test_ring ring(name);
        for (int i = 0; i < times(20); i++) {
            poly_shape shape;
            shape.variables = 2;
            shape.degree = 5;
            poly_handle p(rand_nonzero_poly(rnd, shape));
            poly_shape small;
            small.terms = 2;
            small.degree = 2;
            poly_handle v[2];
            for (poly_handle &one : v) *one.slot() = rand_poly(rnd, small);
            flat_poly wanted;
            for (const auto &[exponents, c] : flat(p.get())) {
                flat_poly term;
                term[{}] = c;
                for (std::size_t j = 0; j < exponents.size(); j++)
                    for (int32_t e = exponents[j]; e > 0; e--) term = flat_product(term, flat(v[j].get()));
                wanted = flat_sum(wanted, term);
            }
            quoly_handle q, first, second;
            poly_to_value(p, q.slot());
            poly_to_value(v[0], first.slot());
            poly_to_value(v[1], second.slot());
            const quolynode *values[] = {first.get(), second.get()};
            get_evalquoly(q.slot(), values, 2);
            poly_handle expected(nested(wanted));
            EXPECT_EQ(text_of(q.get()), text_of(expected.get())) << name;
        }
    }
}

TEST_F(calculus_test, roots_of_values) {
    test_ring ring("3");
    q_of q("x^3 + 2*y^6 + 1");
    quoly_pth_root(q.slot());
    EXPECT_EQ(text_of(q.get()), "x + 2*y^2 + 1");
    q_of two("2");
    quoly_pth_root(two.slot());
    EXPECT_EQ(text_of(two.get()), "2");
}

TEST_F(calculus_test, coefficients_rebuild_the_polynomial) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(20); i++) {
            poly_shape shape = rand_shape(rnd);
            poly_handle p(rand_nonzero_poly(rnd, shape)), c;
            const int level = 1 + rnd.below(shape.variables);
            int32_t top = 0;
            max_degree(p.get(), level, &top);
            flat_poly sum;
            for (int32_t e = 0; e <= top; e++) {
                coefficient_of_power(p.get(), level, e, c.slot());
                expect_canonical(c.get());
                for (const auto &[exponents, x] : flat(c.get())) {
                    std::vector<int32_t> raised = exponents;
                    if (e > 0) {
                        if (raised.size() < static_cast<std::size_t>(level)) raised.resize(level);
                        EXPECT_EQ(raised[level - 1], 0);
                        raised[level - 1] = e;
                    }
                    sum[raised] = x;
                }
            }
            poly_handle again(nested(sum));
            EXPECT_TRUE(poly_equal(p.get(), again.get())) << name;
        }
    }
}

/* ---- refusals ---- */

using calculus_faults = fresh_exact_system;

TEST_F(calculus_faults, roots_and_their_errors) {
    auto refused = [&](const std::string &p, const char *text) {
        test_ring ring("3");
        q_of q(p);
        EXPECT_TRUE(unwinds([&] { quoly_pth_root(q.slot()); }));
        EXPECT_NE(last_text.find(text), std::string::npos) << last_text;
        test_ring again("3"); /* the error has left for the ring of the prompt */
        EXPECT_EQ(tolvek::text_of(q.get()), p);
        free_quoly(q.slot());
    };
    refused("x^3 + x", "The polynomial has no such root.");
    kept_value<int> on(laurent, 1);
    refused("x^3 + x^-3", "Negative exponents or coefficients are not allowed here.");
}

TEST_F(calculus_faults, a_negative_power_at_0_is_error_22) {
    test_ring ring("chain");
    kept_value<int> on(laurent, 1);
    q_of q("x^-1 + 1");
    const quolynode *values[] = {quol_num_0};
    run("&(J = x)");
    EXPECT_TRUE(unwinds([&] { get_evalquoly(q.slot(), values, 1); }));
    EXPECT_NE(last_text.find("Division by 0."), std::string::npos) << last_text;
    free_quoly(q.slot());
}

} // namespace tolvek
