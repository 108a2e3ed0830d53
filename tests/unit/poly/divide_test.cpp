#include "poly/divide.h"

#include "numbers/int_gcd.h"
#include "poly/add.h"
#include "poly/divide_work.h"
#include "poly/mult.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/guards.h"

#include <climits>

namespace tolvek {

namespace {

struct divide_test : poly_test {
    pt *names() const { return polynames; }
};

/* x * y + z by the table of terms. */
polynode *product_and_sum(const polynode *x, const polynode *y, const polynode *z) {
    return nested(flat_sum(flat_product(flat(x), flat(y)), flat(z)));
}

bool kept(const polynode *p, const poly_handle &copy) { return poly_equal(p, copy.get()); }

struct copy_of : poly_handle {
    explicit copy_of(const polynode *p) { poly_assign(p, slot()); }
};

std::string quotient_text(const std::string &a, const std::string &b) {
    poly_handle x(poly_of(a)), y(poly_of(b)), q;
    int failed = 2;
    gen_poly_divide(x.get(), y.get(), q.slot(), polynames, &failed);
    expect_canonical(q.get());
    EXPECT_TRUE(!failed || poly_iszero(q.get()));
    return failed ? "fails" : text_of(q.get());
}

const std::vector<std::string> domains = {"chain", "2", "3", "46337", "2147483629"};
const std::vector<std::string> fields = {"2", "3", "7", "46337", "2147483629"};

/* A dense or a gappy polynomial in x of the degree. */
polynode *rand_of_degree(test_random &rnd, int degree, bool monic, int gaps, int variables = 1) {
    flat_poly terms;
    poly_shape below{variables, 3, 3, 1, false};
    for (int e = degree; e >= 0; e--) {
        if (e != degree && rnd.below(gaps) != 0) continue;
        poly_handle c(variables > 1 && e != degree ? rand_poly(rnd, below) : poly_of("1"));
        if (variables == 1 && !(monic && e == degree)) {
            number_handle x;
            do rand_ring_number(rnd, 1, &x);
            while (e == degree && num_sign(&x) == 0);
            num_assign(&x, c->num);
        }
        flat_poly power;
        power.insert({e ? std::vector<int32_t>{e} : std::vector<int32_t>{}, coef(1)});
        flat_poly c_terms;
        for (const auto &[key, v] : flat(c.get())) { /* its x becomes y */
            std::vector<int32_t> k = key;
            if (!k.empty()) k.insert(k.begin(), 0);
            c_terms.insert({k, v});
        }
        terms = flat_sum(terms, flat_product(power, c_terms));
    }
    return nested(terms);
}

} // namespace

TEST_F(divide_test, a_product_divided_by_a_factor_is_the_other_one) {
    for (const std::string &name : domains) {
        test_ring ring(name);
        for (int i = times(80); i > 0; i--) {
            const poly_shape shape = rand_shape(rnd);
            poly_handle a(rand_poly(rnd, shape)), b(rand_nonzero_poly(rnd, shape));
            poly_handle product(nested(flat_product(flat(a.get()), flat(b.get())))), q;
            const copy_of product_before(product.get()), b_before(b.get());
            int failed = 2;
            gen_poly_divide(product.get(), b.get(), q.slot(), names(), &failed);
            expect_canonical(q.get());
            ASSERT_EQ(failed, 0) << name << "\n" << text_of(product.get()) << "\nby " << text_of(b.get());
            ASSERT_TRUE(poly_equal(q.get(), a.get())) << name << "\n" << text_of(b.get());
            EXPECT_TRUE(kept(product.get(), product_before) && kept(b.get(), b_before));
            if (is_constant(b.get())) continue;
            EXPECT_EQ(trial_poly_divide(product.get(), b.get(), q.slot(), names(), 1), 1);
            EXPECT_TRUE(poly_equal(q.get(), a.get()));
            EXPECT_EQ(trial_poly_divide_noq(product.get(), b.get(), names(), 1, 0), 1);
            EXPECT_EQ(mod_trial_poly_divide(product.get(), b.get(), names()), 1);
            fast_poly_divide(product.slot(), b.get(), names(), 1);
            EXPECT_TRUE(poly_equal(product.get(), a.get()));
        }
    }
}

TEST_F(divide_test, what_is_not_a_multiple_fails) {
    for (const std::string &name : domains) {
        test_ring ring(name);
        for (int i = times(80); i > 0; i--) {
            const poly_shape shape = rand_shape(rnd);
            poly_handle a(rand_poly(rnd, shape)), b(rand_nonzero_poly(rnd, shape));
            if (is_constant(b.get()) || poly_level(b.get()) > 1) continue;
            /* a remainder of lower degree in x that is not 0 */
            poly_handle r(poly_of("y^2*z + 1")), c(product_and_sum(a.get(), b.get(), r.get())), q(poly_of("7*x"));
            const copy_of q_before(q.get());
            int failed = 2;
            EXPECT_EQ(trial_poly_divide(c.get(), b.get(), q.slot(), names(), 1), 0);
            EXPECT_EQ(trial_poly_divide(c.get(), b.get(), q.slot(), names(), 0), 0);
            EXPECT_TRUE(kept(q.get(), q_before));
            EXPECT_EQ(mod_trial_poly_divide(c.get(), b.get(), names()), 0);
            gen_poly_divide(c.get(), b.get(), q.slot(), names(), &failed);
            EXPECT_EQ(failed, 1) << name << "\n" << text_of(c.get()) << "\nby " << text_of(b.get());
            EXPECT_TRUE(poly_iszero(q.get()));
        }
    }
}

TEST_F(divide_test, truncated_quotients_of_numbers_are_no_quotients) {
    EXPECT_EQ(quotient_text("3*x + 1", "2*x + 1"), "fails");
    EXPECT_EQ(quotient_text("x + 1", "2*x + 1"), "fails");
    EXPECT_EQ(quotient_text("6*x^2 + 5*x + 1", "2*x + 1"), "3*x + 1");
    EXPECT_EQ(quotient_text("x^2 - 1", "2*x - 2"), "fails");
    EXPECT_EQ(quotient_text("x^2*y - y", "x*y - y"), "x + 1");
    EXPECT_EQ(quotient_text("x*y + 1", "y"), "fails");
    EXPECT_EQ(quotient_text("x*y^2 + y", "y"), "x*y + 1");
    EXPECT_EQ(quotient_text("0", "x"), "0");
    EXPECT_EQ(quotient_text("1", "x"), "fails");
    EXPECT_EQ(quotient_text("x", "x^2"), "fails");
    EXPECT_EQ(quotient_text("y", "x"), "fails");
    EXPECT_EQ(quotient_text("4*x*y + 2", "2"), "2*x*y + 1");
    EXPECT_EQ(quotient_text("4*x*y + 1", "2"), "fails");
}

TEST_F(divide_test, a_polynomial_by_itself_is_1) {
    for (const std::string &name : domains) {
        test_ring ring(name);
        for (int i = times(10); i > 0; i--) {
            poly_handle p(rand_of_degree(rnd, 1 + rnd.below(30), true, 2)), q, r, z;
            int failed = 2;
            gen_poly_divide(p.get(), p.get(), q.slot(), names(), &failed);
            EXPECT_TRUE(!failed && poly_eq_1(q.get()));
            EXPECT_EQ(trial_poly_divide(p.get(), p.get(), z.slot(), names(), 1), 1);
            basic_poly_divide(p.get(), p.get(), q.slot(), r.slot(), 1);
            EXPECT_TRUE(poly_eq_1(q.get()) && poly_iszero(r.get()));
            pseudo_div(p.get(), p.get(), q.slot(), r.slot(), 1, names());
            EXPECT_TRUE(poly_eq_1(q.get()) && poly_iszero(r.get()));
            fast_mod_and_div(p.get(), p.get(), r.slot(), q.slot(), names(), 0);
            EXPECT_TRUE(poly_eq_1(q.get()) && poly_iszero(r.get()));
            poly_handle same;
            poly_assign(p.get(), same.slot());
            basic_poly_divide(same.get(), same.get(), same.slot(), r.slot(), 1);
            EXPECT_TRUE(poly_eq_1(same.get()) && poly_iszero(r.get()));
        }
    }
}

TEST_F(divide_test, quotient_and_remainder_by_a_unit) {
    std::vector<std::string> rings = fields;
    rings.push_back("chain");
    for (const std::string &name : rings) {
        test_ring ring(name);
        for (int i = times(120); i > 0; i--) {
            const int variables = 1 + rnd.below(2), gaps = 1 + rnd.below(3);
            poly_handle a(rand_of_degree(rnd, rnd.below(variables > 1 ? 14 : 60), false, gaps, variables));
            poly_handle b(rand_of_degree(rnd, rnd.below(variables > 1 ? 7 : 30), name == "chain", gaps, variables));
            for (const int fast : {0, 1}) {
                poly_handle q, r;
                basic_poly_divide(a.get(), b.get(), q.slot(), r.slot(), fast);
                expect_canonical(q.get());
                expect_canonical(r.get());
                poly_handle back;
                poly_mult(q.get(), b.get(), back.slot(), nullptr);
                poly_add(back.get(), r.get(), back.slot());
                ASSERT_TRUE(poly_equal(back.get(), a.get())) << name << "\n"
                                                             << text_of(a.get()) << "\nby " << text_of(b.get());
                EXPECT_TRUE(poly_iszero(r.get()) || r->expo < b->expo);
                poly_handle rest;
                poly_div_no_q(a.get(), b.get(), rest.slot());
                EXPECT_TRUE(poly_equal(rest.get(), r.get()));
            }
        }
    }
}

TEST_F(divide_test, recursive_division_at_all_ratios_of_degrees) {
    kept_value<int> cutoff(div_poly_cutoff, 6);
    test_ring ring("46337");
    for (int degree = 6; degree <= 41; degree++) {
        poly_handle b(rand_of_degree(rnd, degree, true, 1, degree == 6 ? 2 : 1));
        for (int top = degree; top <= (degree == 6 ? 2 : 5) * degree; top += 1 + rnd.below(5)) {
            poly_handle a(rand_of_degree(rnd, top, true, 1, degree == 6 && top < 11 ? 2 : 1)), q, r;
            using division = void (*)(const polynode *, const polynode *, polynode **, polynode **);
            const division roads[] = {[](const polynode *x, const polynode *y, polynode **quotient, polynode **rest) {
                                          fast_mod_and_div(x, y, rest, quotient, nullptr, 0);
                                      },
                                      [](const polynode *x, const polynode *y, polynode **quotient, polynode **rest) {
                                          karat_mod_and_div(0, x, y, rest, quotient, nullptr);
                                      },
                                      [](const polynode *x, const polynode *y, polynode **quotient, polynode **rest) {
                                          three_case(0, x, y, rest, quotient, nullptr);
                                      }};
            for (const division road : roads) {
                road(a.get(), b.get(), q.slot(), r.slot());
                expect_canonical(q.get());
                expect_canonical(r.get());
                poly_handle back;
                poly_mult(q.get(), b.get(), back.slot(), nullptr);
                poly_add(back.get(), r.get(), back.slot());
                ASSERT_TRUE(poly_equal(back.get(), a.get())) << top << " by " << degree;
                ASSERT_TRUE(poly_iszero(r.get()) || r->expo < degree) << top << " by " << degree;
            }
        }
    }
}

TEST_F(divide_test, powers_of_x_by_a_binomial_at_the_boundaries_of_the_ratios) {
    kept_value<int> cutoff(div_poly_cutoff, 2);
    test_ring ring("7");
    for (const int n : {4, 8, 12, 20, 36}) {
        for (const int top : {2 * n, 9 * n / 4, 9 * n / 4 + 1, 10 * n / 3, 10 * n / 3 + 1, 7 * n}) {
            poly_handle a(poly_of("x^" + std::to_string(top))), b(poly_of("x^" + std::to_string(n) + " + 1")), q, r;
            fast_mod_and_div(a.get(), b.get(), r.slot(), q.slot(), nullptr, 1);
            /* x^n = -1 */
            const std::string sign = top / n % 2 ? "6*" : "";
            const std::string power = top % n ? "x^" + std::to_string(top % n) : "1";
            poly_handle expected(poly_of(sign + power));
            EXPECT_TRUE(poly_equal(r.get(), expected.get())) << text_of(r.get());
            poly_handle back(product_and_sum(q.get(), b.get(), r.get()));
            EXPECT_TRUE(poly_equal(back.get(), a.get()));
        }
    }
}

TEST_F(divide_test, the_multiplier_of_a_pseudo_division_is_exact) {
    poly_handle q, r;
    poly_handle a(poly_of("x^3")), b(poly_of("2*x + 1"));
    pseudo_div(a.get(), b.get(), q.slot(), r.slot(), 1, names());
    EXPECT_EQ(text_of(q.get()), "4*x^2 - 2*x + 1");
    EXPECT_EQ(text_of(r.get()), "-1");
    poly_handle c(poly_of("x^4 + 1")), d(poly_of("2*x^2 + 1")); /* the degree falls by two */
    pseudo_div(c.get(), d.get(), q.slot(), r.slot(), 1, names());
    EXPECT_EQ(text_of(q.get()), "4*x^2 - 2");
    EXPECT_EQ(text_of(r.get()), "10");
    for (int i = times(60); i > 0; i--) {
        const poly_shape shape{3, 4, 5, 2, false};
        poly_handle u(rand_poly(rnd, shape)), v(rand_nonzero_poly(rnd, shape)), rest;
        if (is_constant(v.get()) || v->expo == 0 || led_by_number(v.get())) continue;
        pseudo_div(u.get(), v.get(), q.slot(), r.slot(), 1, names());
        pseudo_div_no_q(u.get(), v.get(), rest.slot(), names(), 1);
        EXPECT_TRUE(poly_equal(rest.get(), r.get()));
        EXPECT_TRUE(poly_iszero(r.get()) || r->expo < v->expo);
        poly_handle lead(copy_term(v.get()));
        lead->expo = 0;
        flat_poly scaled = flat(u.get());
        for (int k = u->expo - v->expo + 1; k > 0; k--) scaled = flat_product(scaled, flat(lead.get()));
        poly_handle left(nested(scaled)), right(product_and_sum(q.get(), v.get(), r.get()));
        EXPECT_TRUE(poly_equal(left.get(), right.get())) << text_of(u.get()) << "\nby " << text_of(v.get());
    }
}

/* The example of G. Collins and D. Knuth: the third and fourth members of the subresultant sequence. */
TEST_F(divide_test, pseudo_remainders_with_the_whole_power_make_the_subresultant_sequence) {
    poly_handle u(poly_of("x^8 + x^6 - 3*x^4 - 3*x^3 + 8*x^2 + 2*x - 5"));
    poly_handle v(poly_of("3*x^6 + 5*x^4 - 4*x^2 - 9*x + 21")), third, fourth;
    pseudo_div_no_q(u.get(), v.get(), third.slot(), names(), 1);
    EXPECT_EQ(text_of(third.get()), "-15*x^4 + 3*x^2 - 9");
    pseudo_div_no_q(v.get(), third.get(), fourth.slot(), names(), 1);
    poly_handle divisor(poly_of("9")); /* g * h^2 = 3 * 3^... of the second step, up to sign */
    int ok = 0;
    trial_poly_quot(fourth.get(), divisor.get(), fourth.slot(), &ok);
    EXPECT_EQ(ok, 1);
    number_handle content;
    find_gcdcoefs(fourth.get(), &content);
    poly_handle primitive(poly_of("13*x^2 + 25*x - 49")), quotient;
    EXPECT_EQ(trial_poly_divide(fourth.get(), primitive.get(), quotient.slot(), names(), 0), 1);
    EXPECT_TRUE(is_constant(quotient.get()));
}

TEST_F(divide_test, division_over_the_rationals_keeps_the_multiplier_small) {
    poly_handle a(poly_of("x^2 + x")), b(poly_of("2*x + 2")), q, r;
    number_handle c;
    num_pseudo_div(a.get(), b.get(), q.slot(), r.slot(), &c, names());
    EXPECT_EQ(text_of(q.get()), "x");
    EXPECT_TRUE(poly_iszero(r.get()));
    EXPECT_TRUE(is_longint(&c, 2));
    for (int i = times(60); i > 0; i--) {
        const poly_shape shape{3, 4, 4, 1, false};
        poly_handle u(rand_poly(rnd, shape)), v(rand_nonzero_poly(rnd, shape)), w;
        poly_mult(u.get(), v.get(), w.slot(), nullptr);
        num_pseudo_div(w.get(), v.get(), q.slot(), r.slot(), &c, names());
        EXPECT_TRUE(poly_iszero(r.get()));
        poly_handle scaled;
        scalar_by_poly(&c, u.get(), scaled.slot());
        EXPECT_TRUE(poly_equal(q.get(), scaled.get()));
        EXPECT_GT(num_sign(&c), 0);
    }
    poly_handle big(poly_of("6*x*y + 6*y")), below(poly_of("4*x"));
    special_div(big.slot(), below.get(), names()); /* 4*x of the level below is 4*y */
    EXPECT_EQ(text_of(big.get()), "x + 1");
}

TEST_F(divide_test, numbers_divide_each_number) {
    poly_handle a(poly_of("6*x*y - 4*y + 2")), two(poly_of("2")), four(poly_of("4")), q;
    poly_quot(a.get(), two.get(), q.slot(), 0);
    EXPECT_EQ(text_of(q.get()), "3*x*y - 2*y + 1");
    int ok = 2;
    trial_poly_quot(a.get(), four.get(), q.slot(), &ok);
    EXPECT_EQ(ok, 0);
    EXPECT_EQ(text_of(q.get()), "3*x*y - 2*y + 1");
    test_ring ring("7");
    poly_handle b(poly_of("3*x + 1")), lc;
    monic_poly(b.slot(), lc.slot(), names());
    EXPECT_EQ(text_of(b.get()), "x + 5"); /* 3 * 5 = 1 */
    EXPECT_EQ(text_of(lc.get()), "3");
    mod_num_poly_mult(3, b.slot());
    EXPECT_EQ(text_of(b.get()), "3*x + 1");
}

TEST_F(divide_test, a_list_of_coefficients_is_divided_by_their_common_factor) {
    poly_handle a(poly_of("x^2*y^2 + x*y + y^3")), y_below(poly_of("x")); /* one level up, it is y */
    fast_divide(a.slot(), y_below.get(), names(), 1);
    EXPECT_EQ(text_of(a.get()), "x^2*y + x + y^2");
    poly_handle b(poly_of("x*y + y")), c(poly_of("6*x*y + 4*x + 2")), two(poly_of("2"));
    fast_divide(b.slot(), y_below.get(), names(), 1);
    expect_canonical(b.get());
    EXPECT_EQ(text_of(b.get()), "x + 1");
    fast_divide(c.slot(), two.get(), names(), 1);
    expect_canonical(c.get());
    EXPECT_EQ(text_of(c.get()), "3*x*y + 2*x + 1");
}

TEST_F(divide_test, floats_are_divided_though_rounding_leaves_something) {
    test_ring ring("float");
    poly_handle a(poly_of("x^2")), b(poly_of("x")), q;
    a->next = new_number_term();
    a->next->num->flote_val = -0.01L;
    b->next = new_number_term();
    b->next->num->flote_val = -0.1L;
    EXPECT_TRUE(rough_poly_divide(a.get(), b.get(), q.slot(), names()));
    poly_handle x(poly_of("x")), rest;
    poly_sub(q.get(), x.get(), rest.slot());
    ASSERT_TRUE(is_constant(rest.get()));
    EXPECT_NEAR(static_cast<double>(rest->num->flote_val), 0.1, 1e-15);
    EXPECT_FALSE(rough_poly_divide(b.get(), a.get(), q.slot(), names()));
    EXPECT_TRUE(poly_iszero(q.get()));
}

TEST_F(divide_test, quotient_and_remainder_in_the_main_variable_of_the_divisor) {
    poly_handle a(poly_of("x^2")), b(poly_of("2*x + 1")), q, r, c;
    poly_mod_and_div(a.get(), b.get(), q.slot(), r.slot(), c.slot(), names());
    EXPECT_EQ(text_of(q.get()), "2*x - 1");
    EXPECT_EQ(text_of(r.get()), "1");
    EXPECT_EQ(text_of(c.get()), "4");
    poly_handle d(poly_of("5*x^2 + 3*x")), three(poly_of("3"));
    poly_mod_or_div(d.get(), three.get(), r.slot(), '|', names());
    EXPECT_EQ(text_of(r.get()), "2*x^2");
    poly_mod_or_div(d.get(), three.get(), q.slot(), '\\', names());
    EXPECT_EQ(text_of(q.get()), "x^2 + x");
    poly_handle e(poly_of("x*y^2 + x^2*y + 1")), f(poly_of("y - 2"));
    poly_mod_and_div(e.get(), f.get(), q.slot(), r.slot(), c.slot(), names());
    EXPECT_EQ(text_of(q.get()), "x^2 + x*y + 2*x");
    EXPECT_EQ(text_of(r.get()), "2*x^2 + 4*x + 1");
    for (int i = times(60); i > 0; i--) {
        const poly_shape shape{3, 4, 4, 1, false};
        poly_handle u(rand_poly(rnd, shape)), v(rand_nonzero_poly(rnd, shape));
        if (is_constant(v.get())) continue;
        poly_mod_and_div(u.get(), v.get(), q.slot(), r.slot(), c.slot(), names());
        expect_canonical(q.get());
        expect_canonical(r.get());
        expect_canonical(c.get());
        poly_handle left(nested(flat_product(flat(u.get()), flat(c.get()))));
        poly_handle right(product_and_sum(q.get(), v.get(), r.get()));
        EXPECT_TRUE(poly_equal(left.get(), right.get())) << text_of(u.get()) << "\nby " << text_of(v.get());
        int32_t of_r = INT_MIN, of_v = INT_MIN;
        const int level = poly_level(v.get());
        max_degree(r.get(), level, &of_r);
        max_degree(v.get(), level, &of_v);
        EXPECT_LT(of_r, of_v) << text_of(u.get()) << "\nby " << text_of(v.get());
    }
}

TEST_F(divide_test, high_powers_of_x_are_reduced_at_once) {
    test_ring ring("46337");
    poly_handle a(poly_of("x^100000000 + x")), b(poly_of("x^3 - 2")), r;
    poly_div_no_q(a.get(), b.get(), r.slot());
    /* 100000000 = 3 * 33333333 + 1, and 2^33333333 mod 46337 = 18807 (Python's pow) */
    poly_handle expected(poly_of("18808*x"));
    EXPECT_TRUE(poly_equal(r.get(), expected.get())) << text_of(r.get());
    poly_handle long_one(poly_of("x^30000")), q, s;
    basic_poly_divide(long_one.get(), b.get(), q.slot(), r.slot(), 1);
    poly_div_no_q(long_one.get(), b.get(), s.slot());
    EXPECT_TRUE(poly_equal(r.get(), s.get()));
}

TEST_F(divide_test, array_divisions_at_their_greatest_degrees) {
    test_ring ring("2147483629");
    for (const int degree : {15000, 15001, 22008, 22009}) {
        poly_handle a(rand_of_degree(rnd, 40, true, 1)),
            b(poly_of("2*x^" + std::to_string(degree - 40) + " + 3*x + 1"));
        poly_handle product, q;
        poly_mult(a.get(), b.get(), product.slot(), nullptr);
        ASSERT_EQ(product->expo, degree);
        EXPECT_EQ(fastest_poly_div(product.get(), b.get(), q.slot()), 1);
        EXPECT_TRUE(poly_equal(q.get(), a.get()));
        poly_add(product.get(), poly_1, product.slot());
        EXPECT_EQ(fastest_poly_div(product.get(), b.get(), q.slot()), 0);
        EXPECT_TRUE(poly_equal(q.get(), a.get()));
    }
}

TEST_F(divide_test, powers_of_a_variable_are_units_with_negative_exponents) {
    laurent = 1;
    poly_handle a(poly_of("x + x^-1")), b(poly_of("x^2")), q;
    int failed = 2;
    Lpoly_divide(a.get(), b.get(), q.slot(), names(), &failed);
    EXPECT_EQ(failed, 0);
    EXPECT_EQ(text_of(q.get()), "x^-1 + x^-3");
    for (int i = times(60); i > 0; i--) {
        const poly_shape shape = rand_shape(rnd, true);
        poly_handle u(rand_poly(rnd, shape)), v(rand_nonzero_poly(rnd, shape));
        poly_handle product(nested(flat_product(flat(u.get()), flat(v.get()))));
        Lpoly_divide(product.get(), v.get(), q.slot(), names(), &failed);
        EXPECT_EQ(failed, 0) << text_of(product.get()) << "\nby " << text_of(v.get());
        expect_canonical(q.get());
        EXPECT_TRUE(poly_equal(q.get(), u.get()));
    }
}

} // namespace tolvek
