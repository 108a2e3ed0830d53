#include "poly/model.h"

#include "numbers/number_decimal.h"
#include "poly/add.h"
#include "poly/evaluate.h"
#include "quoly/quoly.h"
#include "support/rand_poly.h"
#include "top/guards.h"

namespace tolvek {

namespace {
using model_test = poly_test;
using canonical_test = poly_test;
using shape_test = poly_test;
using numbers_of_polynomials_test = poly_test;

struct q_handle : quoly_handle {
    explicit q_handle(const std::string &text) {
        poly_handle p(poly_of(text));
        poly_to_value(p, slot());
    }
};
} // namespace

/* ---- making ---- */

TEST_F(model_test, x_squared_plus_2_in_the_last_variable_is_two_nodes_with_a_lone_1_below) {
    poly_handle p(poly_of("x^2 + 2"));
    EXPECT_EQ(p->expo, 2);
    EXPECT_FALSE(p->is_number);
    EXPECT_TRUE(poly_eq_1(p->poly));
    ASSERT_NE(p->next, nullptr);
    EXPECT_EQ(p->next->expo, 0);
    EXPECT_TRUE(p->next->is_number);
    EXPECT_EQ(p->next->next, nullptr);
}

TEST_F(model_test, the_variable_of_level_3_has_two_wrappers) {
    poly_handle p;
    base_poly(p.slot(), 3);
    expect_canonical(p.get());
    EXPECT_EQ(text_of(p.get()), "z");
    const polynode *t = p.get();
    for (int i = 0; i < 2; i++, t = t->poly) {
        EXPECT_EQ(t->expo, 0);
        EXPECT_FALSE(t->is_number);
        EXPECT_EQ(t->next, nullptr);
    }
    EXPECT_EQ(t->expo, 1);
    EXPECT_TRUE(poly_eq_1(t->poly));
    base_poly(p.slot(), 0);
    EXPECT_TRUE(poly_eq_1(p.get()));
    EXPECT_TRUE(p->is_number);
}

TEST_F(model_test, a_constant_takes_over_the_chain_of_its_number) {
    number x{};
    set_hex("0x123456789abcdef", &x);
    poly_handle p;
    scalar_to_poly(&x, p.slot());
    EXPECT_EQ(x.num_len, 0);
    EXPECT_EQ(hex_of(p->num), "0x123456789abcdef");
    scalar_to_poly(p->num, p.slot()); /* out of the place that it goes to */
    EXPECT_EQ(hex_of(p->num), "0x123456789abcdef");
}

TEST_F(model_test, a_monomial_of_exponent_0_with_a_constant_is_the_constant) {
    poly_handle p;
    polynode *c = poly_of("5");
    make_monomial(p.slot(), 0, c);
    EXPECT_EQ(p.get(), c);
    make_monomial(p.slot(), 3, p.get());
    EXPECT_EQ(text_of(p.get()), "5*x^3");
    expect_canonical(p.get());
    make_monomial(p.slot(), 0, p.release());
    EXPECT_EQ(text_of(p.get()), "5*y^3");
    EXPECT_EQ(p->expo, 0);
    make_monomial(p.slot(), 7, poly_of("0"));
    EXPECT_TRUE(poly_iszero(p.get()));
    expect_canonical(p.get());
}

TEST_F(model_test, null_is_copied_and_freed) {
    poly_handle p(poly_of("x"));
    poly_assign(nullptr, p.slot());
    EXPECT_EQ(p.get(), nullptr);
    free_poly(p.slot());
}

TEST_F(model_test, a_copy_shares_nothing_and_may_go_to_its_own_place) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        poly_handle a(rand_nonzero_poly(rnd, {})), b;
        poly_assign(a.get(), b.slot());
        EXPECT_TRUE(poly_equal(a.get(), b.get()));
        poly_assign(a.get(), a.slot());
        EXPECT_TRUE(poly_equal(a.get(), b.get()));
        poly_inplace(a.get());
        poly_makeneg(b.get(), b.slot());
        EXPECT_TRUE(poly_equal(a.get(), b.get()));
        expect_canonical(b.get());
    }
}

TEST_F(model_test, numbers_pass_between_polynomials_and_quolys) {
    poly_handle p(poly_of("-17")), copy;
    quoly_handle q, r;
    poly_to_quoly(p.get(), q.slot());
    EXPECT_EQ(text_of(q.get()), "-17");
    quoly_to_poly(q.get(), copy.slot());
    EXPECT_TRUE(poly_equal(p.get(), copy.get()));
    poly_consume(p.slot(), r.slot());
    EXPECT_EQ(p.get(), nullptr);
    EXPECT_EQ(text_of(r.get()), "-17");
    quoly_consume(r.slot(), p.slot());
    EXPECT_EQ(r.get(), nullptr);
    EXPECT_EQ(text_of(p.get()), "-17");
}

TEST_F(model_test, the_ready_1_is_1_in_every_ring) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        EXPECT_TRUE(poly_eq_1(poly_1));
        EXPECT_FALSE(poly_iszero(poly_1));
    }
}

/* ---- values ---- */

TEST_F(model_test, minus_1_is_modulus_less_1_and_1_in_the_table_fields) {
    poly_handle m(poly_of("-1")), p(poly_of("1"));
    EXPECT_TRUE(poly_eq_m1(m.get()));
    EXPECT_FALSE(poly_eq_m1(p.get()));
    test_ring ring("7");
    poly_handle six(poly_of("6")), one(poly_of("1"));
    EXPECT_TRUE(poly_eq_m1(six.get()));
    EXPECT_FALSE(poly_eq_m1(one.get()));
    kept_value<int> fields(finf, 1);
    EXPECT_TRUE(poly_eq_m1(one.get()));
    poly_handle copy;
    poly_makeneg(six.get(), copy.slot());
    EXPECT_TRUE(poly_equal(copy.get(), six.get()));
}

TEST_F(model_test, 0_and_1_are_lone_number_terms_only) {
    laurent = 1;
    poly_handle p(poly_of("1 + x^-1")), zero(poly_of("0"));
    EXPECT_FALSE(poly_eq_1(p.get()));
    EXPECT_FALSE(poly_iszero(p.get()));
    EXPECT_TRUE(poly_iszero(zero.get()));
}

TEST_F(model_test, equality_is_structural_in_every_ring) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(40); i++) {
            poly_shape shape = rand_shape(rnd);
            poly_handle a(rand_poly(rnd, shape)), b(rand_poly(rnd, shape)), again(nested(flat(a.get()))), m;
            EXPECT_TRUE(poly_equal(a.get(), again.get()));
            EXPECT_EQ(poly_equal(a.get(), b.get()) != 0, text_of(a.get()) == text_of(b.get()));
            poly_makeneg(a.get(), m.slot());
            EXPECT_TRUE(poly_neg(a.get(), m.get()));
            poly_makeneg(m.get(), m.slot());
            EXPECT_TRUE(poly_equal(a.get(), m.get()));
        }
    }
}

TEST_F(model_test, a_sign_is_that_of_the_first_number_and_of_symmetric_residues) {
    poly_handle p(poly_of("-3*x*y + 5"));
    EXPECT_TRUE(neg_leading_term(p.get()));
    EXPECT_FALSE(pos_leading_coef(p.get()));
    EXPECT_EQ(text_of(leading_coef(p.get())), "-3");
    test_ring ring("7");
    poly_handle three(poly_of("3*x")), four(poly_of("4*x")), zero(poly_of("0"));
    {
        kept_value<int> shown(alt_form_display, 1);
        EXPECT_TRUE(pos_leading_coef(three.get()));
        EXPECT_FALSE(neg_leading_term(three.get()));
        EXPECT_FALSE(pos_leading_coef(four.get()));
        EXPECT_TRUE(neg_leading_term(four.get()));
        EXPECT_FALSE(pos_leading_coef(zero.get()));
        EXPECT_FALSE(neg_leading_term(zero.get()));
    }
    kept_value<int> shown(alt_form_display, 0);
    EXPECT_TRUE(pos_leading_coef(four.get()));
    EXPECT_FALSE(neg_leading_term(four.get()));
}

TEST_F(model_test, residues_that_went_negative_are_put_right) {
    test_ring ring("11");
    poly_handle p(poly_of("3*x*y + 5"));
    p->next->num->lint_val = -2;
    standard_form(p.get());
    EXPECT_EQ(text_of(p.get()), "3*x*y + 9");
}

TEST_F(model_test, a_lone_variable_is_recognised_at_its_level) {
    struct row {
        const char *text;
        int level;
    } rows[] = {{"x", 1}, {"z", 3}, {"2*x", 0}, {"x + 1", 0}, {"x^2", 0}, {"x*y", 0}, {"5", 0}, {"y + z", 0}};
    for (const row &r : rows) {
        int level = 0;
        EXPECT_EQ(is_poly_var(q_handle(r.text).get(), &level), r.level > 0) << r.text;
        EXPECT_EQ(level, r.level) << r.text;
    }
}

/* ---- the canonical form ---- */

TEST_F(canonical_test, random_polynomials_obey_it) {
    for (const std::string &name : test_rings) {
        for (int i = 0; i < times(50); i++) {
            poly_shape shape = rand_shape(rnd, true);
            kept_value<int> exponents(laurent, shape.laurent);
            test_ring ring(name);
            poly_handle p(rand_poly(rnd, shape));
            expect_canonical(p.get());
        }
    }
}

TEST_F(canonical_test, each_rule_is_told_when_it_is_broken) {
    auto broken = [](const char *text, auto breaking) {
        poly_handle p(poly_of(text));
        EXPECT_EQ(poly_rule_broken(p.get(), polynames), 0);
        breaking(p.get());
        return poly_rule_broken(p.get(), polynames);
    };
    EXPECT_EQ(poly_rule_broken(nullptr, polynames), 6);
    EXPECT_EQ(broken("x^2 + x", [](polynode *p) { p->expo = 1; }), 1);
    EXPECT_EQ(broken("x^2 + x", [](polynode *p) { p->expo = 0; }), 1);
    EXPECT_EQ(broken("x*y^2 + x*y", [](polynode *p) { p->poly->expo = 1; }), 1);
    EXPECT_EQ(broken("5", [](polynode *p) { p->expo = 1; }), 2);
    EXPECT_EQ(broken("x*y", [](polynode *p) { p->expo = 0, p->poly->expo = 0; }), 4);
    EXPECT_EQ(broken("x", [](polynode *p) { p->expo = 0; }), 4);
    EXPECT_EQ(broken("x", [](polynode *p) { setvalue(0, p->poly->num); }), 6);
    EXPECT_EQ(broken("x + 1", [](polynode *p) { setvalue(0, p->next->num); }), 6);
    EXPECT_EQ(broken("x*y + 1", [](polynode *p) { setvalue(0, p->poly->poly->num); }), 6);
    EXPECT_EQ(broken("x + 1", [](polynode *p) { p->next->num->num_head->digit = digit_radix; }), 7);
    poly_handle deep(poly_of("z"));
    EXPECT_EQ(poly_rule_broken(deep.get(), variable_at(7)), 8);
    EXPECT_EQ(poly_rule_broken(deep.get(), variable_at(6)), 0);

    poly_handle p(poly_of("1 + x^-1"));
    EXPECT_EQ(poly_rule_broken(p.get(), polynames), 2);
    laurent = 1;
    EXPECT_EQ(poly_rule_broken(p.get(), polynames), 0);
    laurent = 0;

    test_ring ring("7");
    poly_handle residue(poly_of("x + 6"));
    expect_canonical(residue.get());
    residue->next->num->lint_val = 7;
    EXPECT_EQ(poly_rule_broken(residue.get(), polynames), 7);
    residue->next->num->lint_val = -1;
    EXPECT_EQ(poly_rule_broken(residue.get(), polynames), 7);
}

TEST_F(canonical_test, each_rule_of_finished_quolys_is_told_when_it_is_broken) {
    auto rule_of = [](const char *num, const char *den, int is_rat) {
        poly_handle n(poly_of(num)), d(den ? poly_of(den) : nullptr);
        quoly_handle q;
        *q.slot() = new_fraction(n, d);
        q->is_rat = is_rat;
        return quoly_rule_broken(q.get());
    };
    EXPECT_EQ(rule_of("x", nullptr, 0), 0);
    EXPECT_EQ(rule_of("1", "2", 1), 0);
    EXPECT_EQ(rule_of("x", "2", 0), 0);
    EXPECT_EQ(rule_of("x", "y", 0), 0);
    EXPECT_EQ(rule_of("0", "2", 1), 11);
    EXPECT_EQ(rule_of("0", nullptr, 0), 11);
    EXPECT_EQ(rule_of("x", "1", 0), 12);
    EXPECT_EQ(rule_of("x", "-1", 0), 12);
    EXPECT_EQ(rule_of("x", "-2", 0), 13);
    EXPECT_EQ(rule_of("x", "1 - y", 0), 13);
    EXPECT_EQ(rule_of("3", nullptr, 0), 14);
    EXPECT_EQ(rule_of("1", "2", 0), 15);
    EXPECT_EQ(rule_of("x", "2", 1), 15);
    test_ring ring("7");
    EXPECT_EQ(rule_of("x", "2", 0), 16);
    EXPECT_EQ(rule_of("x", "y", 0), 0);
}

/* ---- shape ---- */

TEST_F(shape_test, levels_and_depths_of_ordinary_polynomials) {
    struct row {
        const char *text;
        int level, depth, variables;
    } rows[] = {{"5", 0, 16384, 0},   {"0", 0, 16384, 0}, {"x", 1, 1, 1},          {"x + 1", 1, 1, 1},
                {"y", 2, 2, 1},       {"y + 1", 2, 2, 1}, {"z*t + z", 3, 3, 2},    {"x + t", 1, 1, 2},
                {"x*y + r", 1, 1, 3}, {"r", 8, 8, 1},     {"y^2*z + y*t", 2, 2, 3}};
    for (const row &r : rows) {
        poly_handle p(poly_of(r.text));
        EXPECT_EQ(poly_level(p.get()), r.level) << r.text;
        EXPECT_EQ(poly_depth(p.get()), r.depth) << r.text;
        EXPECT_EQ(driver_poly_vars(p.get()), r.variables) << r.text;
    }
}

/* A wrapper, or a number, that has a successor involves the variable of its level. */
TEST_F(shape_test, heads_of_exponent_0_before_negative_exponents) {
    laurent = 1;
    poly_handle wrapped(poly_of("y + x^-1")), number_headed(poly_of("5 + x^-1")), deep(poly_of("5 + y^-1"));
    EXPECT_EQ(poly_level(wrapped.get()), 1);
    EXPECT_EQ(poly_depth(wrapped.get()), 1);
    EXPECT_EQ(poly_level(number_headed.get()), 1);
    EXPECT_EQ(poly_depth(number_headed.get()), 1);
    EXPECT_EQ(poly_level(deep.get()), 2);
    EXPECT_EQ(poly_depth(deep.get()), 2);
    EXPECT_EQ(driver_poly_vars(wrapped.get()), 2);
    EXPECT_EQ(driver_poly_vars(number_headed.get()), 1);
    EXPECT_EQ(real_degree(wrapped.get(), 1), 0);
    EXPECT_EQ(real_degree(number_headed.get(), 1), 0);
    for (const poly_handle *p : {&wrapped, &number_headed}) {
        int32_t d = INT32_MIN;
        max_degree(p->get(), 1, &d);
        EXPECT_EQ(d, 0);
    }
    EXPECT_TRUE(is_longint(leading_coef(wrapped.get())->num, 1));
    EXPECT_TRUE(is_longint(leading_coef(number_headed.get())->num, 5));

    int level = 0;
    EXPECT_FALSE(is_poly_var(q_handle("y + x^-1").get(), &level));
    EXPECT_FALSE(is_poly_var(q_handle("5 + x^-1").get(), &level));
    EXPECT_FALSE(is_constant(number_headed.get()));

    polynode *at = number_headed.get();
    level = 1;
    height_next_var(&at, &level, 62);
    EXPECT_EQ(at, number_headed.get());
    EXPECT_EQ(level, 1);

    eval_at_one(wrapped.slot(), 1);
    EXPECT_EQ(text_of(wrapped.get()), "y + 1");
    expect_canonical(wrapped.get());
    eval_at_one(number_headed.slot(), 1);
    EXPECT_EQ(text_of(number_headed.get()), "6");
    EXPECT_TRUE(is_constant(number_headed.get()));
    remove_one(wrapped.slot(), 1);
    EXPECT_EQ(text_of(wrapped.get()), "x + 1");
}

TEST_F(shape_test, wrappers_are_skipped_down_to_the_next_variable) {
    poly_handle p(poly_of("z^2 + z"));
    polynode *at = p.get();
    int level = 1;
    height_next_var(&at, &level, 62);
    EXPECT_EQ(level, 3);
    EXPECT_EQ(at->expo, 2);
}

TEST_F(shape_test, degrees_of_first_terms_and_of_the_whole) {
    poly_handle p(poly_of("x^2*y + x*y^7 + z^4"));
    EXPECT_EQ(real_degree(p.get(), 1), 2);
    EXPECT_EQ(real_degree(p.get(), 2), 1);
    EXPECT_EQ(real_degree(p.get(), 3), 0);
    EXPECT_EQ(real_q_degree(q_handle("x^2*y + 1").get(), 2), 1);
    EXPECT_EQ(real_q_degree(q_handle("7").get(), 1), 0);
    const int32_t highest[] = {2, 7, 4, 0};
    for (int k = 1; k <= 4; k++) {
        int32_t d = -1;
        max_degree(p.get(), k, &d);
        EXPECT_EQ(d, highest[k - 1]) << k;
    }
    laurent = 1;
    poly_handle q(poly_of("x^3*y^-2 + x*y^-5"));
    int32_t d = INT32_MIN;
    max_degree(q.get(), 2, &d);
    EXPECT_EQ(d, -2);
}

TEST_F(shape_test, variables_are_marked_at_their_levels) {
    poly_handle p(poly_of("x*z^2 + u + 1"));
    char flags[10] = {};
    EXPECT_EQ(poly_vars(p.get(), 1, flags), 5);
    EXPECT_EQ(std::string(flags + 1, 6), std::string("\1\0\1\0\1\0", 6));
}

/* The oracle: exponents of the level struck out of the table of terms. */
static polynode *struck_out(const polynode *p, int level) {
    flat_poly sum;
    std::size_t at = static_cast<std::size_t>(level) - 1;
    for (const auto &[exponents, c] : flat(p)) {
        std::vector<int32_t> key = exponents;
        if (key.size() > at) key[at] = 0;
        while (!key.empty() && key.back() == 0) key.pop_back();
        flat_poly one;
        one.insert({key, c});
        sum = flat_sum(sum, one);
    }
    return nested(sum);
}

TEST_F(shape_test, evaluation_at_1_sums_the_coefficients_of_the_level) {
    for (const std::string &name : test_rings) {
        for (int i = 0; i < times(40); i++) {
            poly_shape shape = rand_shape(rnd, true);
            kept_value<int> exponents(laurent, shape.laurent);
            test_ring ring(name);
            poly_handle p(rand_poly(rnd, shape)), copy;
            int level = 1 + rnd.below(shape.variables + 1);
            poly_handle expected(struck_out(p.get(), level));
            poly_assign(p.get(), copy.slot());
            eval_at_one(copy.slot(), level);
            expect_canonical(copy.get());
            EXPECT_TRUE(poly_equal(copy.get(), expected.get()))
                << text_of(p.get()) << " at level " << level << " is " << text_of(copy.get());
            remove_one(copy.slot(), level);
            expect_canonical(copy.get());
            flat_poly moved; /* the levels below have moved up */
            for (const auto &[from, c] : flat(expected.get())) {
                std::vector<int32_t> key = from;
                if (key.size() >= static_cast<std::size_t>(level)) key.erase(key.begin() + level - 1);
                moved.insert({key, c});
            }
            EXPECT_TRUE(poly_equal(copy.get(), poly_handle(nested(moved)).get()));
        }
    }
}

TEST_F(shape_test, a_level_goes_from_both_parts_of_a_quoly) {
    poly_handle num(poly_of("x*z + 1")), den(poly_of("z + x"));
    quoly_handle q;
    *q.slot() = new_fraction(num, den);
    remove_poly_var(q.get(), 2);
    EXPECT_EQ(text_of(q.get()), "(x*y + 1)/(x + y)");
    quoly_set(3, q.slot());
    remove_poly_var(q.get(), 1);
    EXPECT_EQ(text_of(q.get()), "3");
}

/* ---- numbers ---- */

TEST_F(numbers_of_polynomials_test, products_and_exact_quotients_by_numbers) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(40); i++) {
            poly_handle p(rand_poly(rnd, rand_shape(rnd))), q;
            number_handle c;
            setvalue(0, &c);
            rand_ring_number(rnd, 2, &c);
            flat_poly factor;
            factor.insert({{}, coef(&c)});
            poly_handle expected(nested(flat_product(flat(p.get()), factor)));
            poly_assign(p.get(), q.slot());
            num_poly_mult(q.slot(), &c);
            expect_canonical(q.get());
            EXPECT_TRUE(poly_equal(q.get(), expected.get()));
            if (num_sign(&c) == 0 || name == "word" || name == "6" || name == "float") continue;
            num_poly_quot(q.slot(), &c);
            EXPECT_TRUE(poly_equal(q.get(), p.get()));
        }
    }
}

TEST_F(numbers_of_polynomials_test, terms_that_become_0_leave_a_canonical_rest) {
    number_handle c;
    {
        test_ring ring("6");
        poly_handle p(poly_of("2*x + 4*y*x + 3*z + 3"));
        setvalue(3, &c);
        num_poly_mult(p.slot(), &c);
        EXPECT_EQ(text_of(p.get()), "3*z + 3");
        expect_canonical(p.get());
        poly_handle q(poly_of("2*x + 4*y + 3"));
        num_poly_mult(q.slot(), &c);
        EXPECT_TRUE(is_constant(q.get()));
        EXPECT_EQ(text_of(q.get()), "3");
        setvalue(2, &c);
        num_poly_mult(q.slot(), &c);
        EXPECT_TRUE(poly_iszero(q.get()));
    }
    test_ring ring("float");
    poly_handle p(poly_of("x + 1"));
    p->poly->num->flote_val = 1e-3000L;
    c.flote_val = 1e-3000L;
    num_poly_mult(p.slot(), &c);
    EXPECT_TRUE(is_constant(p.get()));
    expect_canonical(p.get());
}

TEST_F(numbers_of_polynomials_test, float_quotients_are_those_of_the_numbers) {
    test_ring ring("float");
    poly_handle p(poly_of("5*x + 7"));
    number_handle c;
    c.flote_val = 3;
    num_poly_quot(p.slot(), &c);
    EXPECT_EQ(p->poly->num->flote_val, 5.0L / 3);
    EXPECT_EQ(p->next->num->flote_val, 7.0L / 3);
}

} // namespace tolvek
