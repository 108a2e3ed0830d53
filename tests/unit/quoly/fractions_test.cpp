/* Polynomials, and polynomials over integers, as values: sums, products, quotients by numbers, powers. */
#include "quoly/quoly.h"

#include "left_operations.h"

#include "language/names.h"
#include "numbers/int_gcd.h"
#include "poly/canonical.h"
#include "poly/mult.h"
#include "quoly/quoly_numbers.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/driver.h"
#include "top/interrupts.h"

#include <utility>

namespace tolvek {

namespace {

using fractions_test = poly_test;

/* num / den as a value in normal form. */
void set_fraction(quoly_handle &q, const std::string &num, const std::string &den = "1") {
    poly_handle n(poly_of(num)), d(poly_of(den));
    fraction_to_value(n, d, q.slot());
}

std::string fraction_text(const std::string &num, const std::string &den) {
    quoly_handle q;
    set_fraction(q, num, den);
    EXPECT_EQ(quoly_rule_broken(q.get()), 0);
    return text_of(q.get());
}

/* The parts of a value as flat tables. */
struct flat_value {
    flat_poly num, den;
    explicit flat_value(const quolynode *q) {
        part n, d;
        n.numerator_of({q, false});
        d.denominator_of({q, false});
        num = flat(n.get());
        if (d.get())
            den = flat(d.get());
        else
            den.insert({{}, coef(1)});
    }
};

bool same_terms(const flat_poly &a, const flat_poly &b) { return flat_sum(a, b, true).empty(); }

/* Is q = num / den, and in normal form? */
void expect_value(const char *what, const quolynode *q, const flat_poly &num, const flat_poly &den) {
    EXPECT_EQ(quoly_rule_broken(q), 0) << what;
    flat_value v(q);
    EXPECT_TRUE(same_terms(flat_product(v.num, den), flat_product(num, v.den))) << what << " is " << text_of(q);
    if (q->is_num || !q->den || lintmode) return;
    number_handle content;
    find_gcdcoefs(q->num, &content);
    binary_gcd(&content, q->den->num, &content);
    EXPECT_TRUE(is_longint(&content, 1)) << what << " is not reduced: " << text_of(q);
}

/* A number, a rational, a polynomial, a polynomial over an integer. */
void rand_value(test_random &rnd, quoly_handle &q) {
    poly_shape shape = rand_shape(rnd);
    shape.variables = 1 + rnd.below(3);
    shape.terms = 1 + rnd.below(4);
    shape.digits = 2;
    poly_handle num, den;
    if (rnd.one_in(3)) {
        poly_set(0, num.slot());
        rand_ring_number(rnd, 2, num->num);
    } else {
        *num.slot() = rand_poly(rnd, shape);
    }
    if (!lintmode && rnd.one_in(2)) poly_set(1 + rnd.below(12), den.slot());
    fraction_to_value(num, den, q.slot());
}

} // namespace

/* ---- normal form ---- */

TEST_F(fractions_test, fractions_are_reduced_and_signs_stand_above) {
    EXPECT_EQ(fraction_text("2*x + 4", "6"), "(x + 2)/(3)");
    EXPECT_EQ(fraction_text("2*x + 4", "-2"), "-x - 2");
    EXPECT_EQ(fraction_text("x", "-2"), "(-x)/(2)");
    EXPECT_EQ(fraction_text("1", "-2"), "(-1)/(2)");
    EXPECT_EQ(fraction_text("6", "3"), "2");
    EXPECT_EQ(fraction_text("0", "5"), "0");
    EXPECT_EQ(fraction_text("x + 1", "7"), "(x + 1)/(7)");
    test_ring ring("7");
    EXPECT_EQ(fraction_text("x + 1", "2"), "4*x + 4");
    EXPECT_EQ(fraction_text("0", "2"), "0");
}

/* ---- known values ---- */

TEST_F(fractions_test, a_half_of_x_times_2_is_x) {
    quoly_handle half, two, r;
    set_fraction(half, "x", "2");
    quoly_set(2, two.slot());
    quoly_mult(half.get(), two.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "x");
    EXPECT_EQ(r->den, nullptr);
    fast_quoly_mult(half.slot(), two.get());
    EXPECT_EQ(text_of(half.get()), "x");
}

TEST_F(fractions_test, sums_over_different_denominators_take_their_least_common_multiple) {
    quoly_handle a, b, r;
    set_fraction(a, "x", "6");
    set_fraction(b, "y", "4");
    quoly_add(a.get(), b.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "(2*x + 3*y)/(12)");
    set_fraction(b, "x", "3");
    quoly_add(a.get(), b.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "(x)/(2)");
    quoly_sub(a.get(), a.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "0");
}

TEST_F(fractions_test, a_product_collapses_to_a_plain_number_where_the_ring_has_zero_divisors) {
    test_ring ring("6");
    quoly_handle a, b, r;
    auto product = [&](const char *first, const char *second) {
        set_fraction(a, first);
        set_fraction(b, second);
        quoly_mult(a.get(), b.get(), r.slot());
        EXPECT_EQ(quoly_rule_broken(r.get()), 0);
        return text_of(r.get());
    };
    EXPECT_EQ(product("2", "3*x + 1"), "2");
    EXPECT_TRUE(r->is_num);
    EXPECT_EQ(product("2*x + 1", "3*x + 1"), "5*x + 1");
    EXPECT_EQ(product("3", "2*x + 4"), "0");
    EXPECT_TRUE(r->is_num);
}

TEST_F(fractions_test, powers_of_fractions) {
    quoly_handle q;
    set_fraction(q, "x + 1", "2");
    quoly_compute_power(q.slot(), 3);
    EXPECT_EQ(text_of(q.get()), "(x^3 + 3*x^2 + 3*x + 1)/(8)");
    test_ring ring("4");
    quoly_handle r;
    set_fraction(r, "2*x");
    quoly_compute_power(r.slot(), 2);
    EXPECT_EQ(text_of(r.get()), "0");
    EXPECT_TRUE(r->is_num);
}

/* ---- random values ---- */

TEST_F(fractions_test, sums_and_differences_in_every_form_and_family) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(60); i++) {
            quoly_handle a, b, r, s, t;
            rand_value(rnd, a);
            rand_value(rnd, b);
            flat_value x(a.get()), y(b.get());
            flat_poly den = flat_product(x.den, y.den);
            for (bool minus : {false, true}) {
                flat_poly num = flat_sum(flat_product(x.num, y.den), flat_product(y.num, x.den), minus);
                (minus ? quoly_sub : quoly_add)(a.get(), b.get(), r.slot());
                expect_value("kept", r.get(), num, den);
                quolynode *c = copy_of(a);
                (minus ? better_quoly_sub : better_quoly_add)(c, b.get(), &c);
                *s.slot() = c;
                expect_value("better", s.get(), num, den);
                free_quoly(s.slot());
                *s.slot() = copy_of(a);
                (minus ? best_quoly_sub : best_quoly_add)(s.slot(), copy_of(b));
                expect_value("best", s.get(), num, den);
                EXPECT_EQ(text_of(r.get()), text_of(s.get()));
                /* the destination holds an operand */
                quoly_assign(a.get(), t.slot());
                (minus ? quoly_sub : quoly_add)(t.get(), b.get(), t.slot());
                EXPECT_EQ(text_of(r.get()), text_of(t.get()));
                quoly_assign(b.get(), t.slot());
                (minus ? quoly_sub : quoly_add)(a.get(), t.get(), t.slot());
                EXPECT_EQ(text_of(r.get()), text_of(t.get()));
                free_quoly(s.slot());
            }
            quoly_sub(a.get(), a.get(), r.slot());
            EXPECT_TRUE(quoly_is_zero(r.get()));
            quoly_add(a.get(), a.get(), r.slot());
            quoly_add(a.get(), a.get(), a.slot());
            EXPECT_EQ(text_of(r.get()), text_of(a.get()));
        }
    }
}

TEST_F(fractions_test, products_in_every_form_and_family) {
    for (const std::string &name : test_rings) {
        if (name == "6") continue; /* zero divisors have no quotients to compare with */
        test_ring ring(name);
        for (int i = 0; i < times(60); i++) {
            quoly_handle a, b, r, s;
            rand_value(rnd, a);
            rand_value(rnd, b);
            flat_value x(a.get()), y(b.get());
            flat_poly num = flat_product(x.num, y.num), den = flat_product(x.den, y.den);
            quoly_mult(a.get(), b.get(), r.slot());
            expect_value("kept", r.get(), num, den);
            quoly_assign(a.get(), s.slot());
            fast_quoly_mult(s.slot(), b.get());
            EXPECT_EQ(text_of(r.get()), text_of(s.get()));
            quoly_assign(b.get(), s.slot());
            quoly_mult(a.get(), s.get(), s.slot());
            EXPECT_EQ(text_of(r.get()), text_of(s.get()));
            quoly_mult(a.get(), a.get(), r.slot());
            fast_quoly_mult(a.slot(), a.get());
            EXPECT_EQ(text_of(r.get()), text_of(a.get()));
        }
    }
}

TEST_F(fractions_test, quotients_by_numbers_and_rationals_undo_products) {
    for (const char *name : {"chain", "46337", "2147483629"}) {
        test_ring ring(name);
        for (int i = 0; i < times(60); i++) {
            quoly_handle a, b, r;
            rand_value(rnd, a);
            do {
                free_quoly(b.slot());
                poly_handle num, den;
                poly_set(0, num.slot());
                rand_ring_number(rnd, 2, num->num);
                if (!lintmode) poly_set(1 + rnd.below(9), den.slot());
                fraction_to_value(num, den, b.slot());
            } while (quoly_is_zero(b.get()));
            quoly_mult(a.get(), b.get(), r.slot());
            quoly_quot(r.get(), b.get(), r.slot(), 0);
            EXPECT_EQ(quoly_rule_broken(r.get()), 0);
            EXPECT_EQ(text_of(r.get()), text_of(a.get()));
            quoly_assign(a.get(), r.slot());
            fast_quoly_quot(r.slot(), b.get(), 0);
            fast_quoly_mult(r.slot(), b.get());
            EXPECT_EQ(text_of(r.get()), text_of(a.get()));
        }
    }
}

TEST_F(fractions_test, equal_operands_have_the_quotient_1) {
    quoly_handle a, b, r;
    set_fraction(a, "x*y + 1", "2");
    quoly_quot(a.get(), a.get(), r.slot(), 0);
    EXPECT_EQ(text_of(r.get()), "1");
    quoly_assign(a.get(), b.slot());
    quoly_quot(a.get(), b.get(), r.slot(), 0);
    EXPECT_EQ(text_of(r.get()), "1");
    quoly_set(0, b.slot());
    quoly_quot(b.get(), a.get(), r.slot(), 0);
    EXPECT_EQ(text_of(r.get()), "0");
}

TEST_F(fractions_test, negations_signs_and_magnitudes) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(20); i++) {
            quoly_handle a, m, sum;
            rand_value(rnd, a);
            quoly_makeneg(a.get(), m.slot());
            EXPECT_EQ(quoly_rule_broken(m.get()), 0);
            quoly_add(a.get(), m.get(), sum.slot());
            EXPECT_TRUE(quoly_is_zero(sum.get()));
        }
    }
    quoly_handle q;
    set_fraction(q, "-x + 3", "2");
    quoly_abs(q.slot());
    EXPECT_EQ(text_of(q.get()), "(x - 3)/(2)");
    quoly_abs(q.slot());
    EXPECT_EQ(text_of(q.get()), "(x - 3)/(2)");
}

TEST_F(fractions_test, a_variable_is_a_value_by_its_level) {
    quoly_handle q;
    quoly_set(5, q.slot());
    base_quoly(3, q.slot());
    EXPECT_EQ(text_of(q.get()), "z");
    EXPECT_EQ(quoly_rule_broken(q.get()), 0);
}

/* ---- left at a safe point ---- */

TEST_F(fractions_test, operations_that_are_left_lose_no_record_and_leave_kept_operands_whole) {
    quoly_handle a, b;
    set_fraction(a, "x^3*y + 2*x*y^2 + 5*z + 1", "6");
    set_fraction(b, "4*x^3*y + 2*x*y - 9*z + 3", "4");
    leave_operations(a, b, sums_and_products);
}

/* ---- at the prompt ---- */

namespace {
struct values_at_the_prompt : fresh_exact_system {
    void SetUp() override {
        forget_poly_variables();
        fresh_exact_system::SetUp();
        noisy = extra_line = 0;
        run("&(J = x)\n&(J = y)");
    }
    void TearDown() override {
        fresh_exact_system::TearDown();
        forget_poly_variables();
    }
    bool gives_message(const std::string &lines, int number) {
        return run(lines).find(message_text(number)) != std::string::npos;
    }
    std::string value(const std::string &expression) {
        run("v := " + expression);
        token_record t{};
        set_token(t, "v");
        t.hash_slot = hash_unknown;
        return tolvek::text_of(find_variable(t)->value);
    }
};
} // namespace

TEST_F(values_at_the_prompt, expressions_with_polynomials) {
    EXPECT_EQ(value("x + x"), "2*x");
    EXPECT_EQ(value("(x + y)^2"), "x^2 + 2*x*y + y^2");
    EXPECT_EQ(value("3x y - x y/2"), "(5*x*y)/(2)");
    EXPECT_EQ(value("(x + 1)(x - 1) - x^2"), "-1");
    EXPECT_EQ(value("-x/(-2)"), "(x)/(2)");
    EXPECT_EQ(value("x^0"), "1");
    EXPECT_EQ(value("x - y/3 + 1/6"), "(6*x - 2*y + 1)/(6)");
    EXPECT_EQ(value("(x y + 1)/(x y + 1)"), "1");
    EXPECT_EQ(value("|(3 - x)|"), "x - 3");
    run("w := x; w :+ 2; w :- 5");
    EXPECT_EQ(value("w"), "x - 3");
    EXPECT_EQ(value("*w + w"), "x - 2");
}

TEST_F(values_at_the_prompt, a_variable_of_polynomials_is_no_target_and_cannot_be_moved) {
    EXPECT_TRUE(gives_message("x := 3", 316));
    EXPECT_TRUE(gives_message("x :+ 3", 316));
    EXPECT_TRUE(gives_message("*x", 363));
    EXPECT_EQ(value("x"), "x");
}

TEST_F(values_at_the_prompt, what_numbers_alone_have) {
    run("p := x^2 + 1");
    EXPECT_TRUE(gives_message("x/0", 22));
    EXPECT_TRUE(gives_message("$p", 227));
    EXPECT_TRUE(gives_message("p!", 130));
    EXPECT_TRUE(gives_message("2^x", 116));
    EXPECT_EQ(value("p"), "x^2 + 1");
    EXPECT_EQ(value("5\""), "0");
    EXPECT_EQ(value("5#2"), "5");
}

TEST_F(values_at_the_prompt, an_exponent_that_leaves_32_bits_is_error_32_and_the_base_survives) {
    run("p := x^268435455");
    EXPECT_TRUE(gives_message("p^9", 32));
    EXPECT_EQ(value("p"), "x^268435455");
    EXPECT_EQ(value("p^8"), "x^2147483640");
    EXPECT_TRUE(gives_message("p^8*x^8", 32));
}

} // namespace tolvek
