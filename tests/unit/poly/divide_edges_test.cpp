/* Divisions at their edges: one operand twice, 0, longer divisors, images that say nothing, sparse dividends of high
   degree, and what must not happen. */
#include "numbers/random.h"
#include "poly/add.h"
#include "poly/divide.h"
#include "poly/mult.h"
#include "support/fresh_system.h"
#include "support/safe_points.h"
#include "top/guards.h"

namespace tolvek {

namespace {
using divide_edges = poly_test;
} // namespace

/* ---- aliases and empty work ---- */

namespace {

/* q and r of a by b; a null r is for routines that give none. */
struct division_routine {
    const char *name;
    bool exact, field; /* divides exactly; wants a prime field and one variable */
    void (*run)(const polynode *a, const polynode *b, polynode **q, polynode **r);
};

const division_routine division_routines[] = {
    {"fast_poly_divide", true, false,
     [](const polynode *a, const polynode *b, polynode **q, polynode **) {
         poly_assign(a, q);
         fast_poly_divide(q, b, polynames, 1);
     }},
    {"gen_poly_divide", true, false,
     [](const polynode *a, const polynode *b, polynode **q, polynode **) {
         int failed;
         gen_poly_divide(a, b, q, polynames, &failed);
     }},
    {"trial_poly_divide", true, false,
     [](const polynode *a, const polynode *b, polynode **q, polynode **) {
         EXPECT_EQ(trial_poly_divide_noq(a, b, polynames, 1, 1), 1);
         EXPECT_EQ(mod_trial_poly_divide(a, b, polynames), 1);
         EXPECT_EQ(trial_poly_divide(a, b, q, polynames, 1), 1);
     }},
    {"special_div_2", true, false,
     [](const polynode *a, const polynode *b, polynode **q, polynode **) {
         poly_assign(a, q);
         special_div_2(q, b, polynames);
     }},
    {"fastest_poly_div", true, true,
     [](const polynode *a, const polynode *b, polynode **q, polynode **) { EXPECT_EQ(fastest_poly_div(a, b, q), 1); }},
    {"basic_poly_divide", false, false,
     [](const polynode *a, const polynode *b, polynode **q, polynode **r) { basic_poly_divide(a, b, q, r, 1); }},
    {"simplest_poly_divide", false, true,
     [](const polynode *a, const polynode *b, polynode **q, polynode **r) { simplest_poly_divide(a, b, q, r, 1); }},
    {"poly_div_no_q", false, false,
     [](const polynode *a, const polynode *b, polynode **, polynode **r) { poly_div_no_q(a, b, r); }},
    {"simplest_div_no_q", false, true,
     [](const polynode *a, const polynode *b, polynode **, polynode **r) { simplest_div_no_q(a, b, r); }},
    {"pseudo_div", false, false,
     [](const polynode *a, const polynode *b, polynode **q, polynode **r) { pseudo_div(a, b, q, r, 1, polynames); }},
    {"pseudo_div_no_q", false, false,
     [](const polynode *a, const polynode *b, polynode **, polynode **r) { pseudo_div_no_q(a, b, r, polynames, 1); }},
    {"num_pseudo_div", false, false,
     [](const polynode *a, const polynode *b, polynode **q, polynode **r) {
         if (lintmode) return basic_poly_divide(a, b, q, r, 0);
         number_handle c;
         num_pseudo_div(a, b, q, r, &c, polynames);
         EXPECT_TRUE(is_longint(&c, 1));
     }},
    {"poly_mod_and_div", false, false,
     [](const polynode *a, const polynode *b, polynode **q, polynode **r) {
         poly_mod_and_div(a, b, q, r, nullptr, polynames);
     }},
    {"fast_mod_and_div", false, false,
     [](const polynode *a, const polynode *b, polynode **q, polynode **r) {
         fast_mod_and_div(a, b, r, q, polynames, 0);
     }},
    {"karat_mod_and_div", false, false,
     [](const polynode *a, const polynode *b, polynode **q, polynode **r) {
         karat_mod_and_div(0, a, b, r, q, polynames);
     }},
    {"three_case", false, false,
     [](const polynode *a, const polynode *b, polynode **q, polynode **r) { three_case(0, a, b, r, q, polynames); }},
};

void expect_results(const division_routine &of, const poly_handle &q, const poly_handle &r, const std::string &quotient,
                    const std::string &rest) {
    if (q) {
        EXPECT_EQ(text_of(q.get()), quotient) << of.name;
    }
    if (r) {
        EXPECT_EQ(text_of(r.get()), rest) << of.name;
    }
    EXPECT_TRUE(q || r) << of.name;
}

} // namespace

TEST_F(divide_edges, every_routine_with_one_pointer_twice_with_0_and_with_a_longer_divisor) {
    for (const std::string name : {"chain", "7"}) {
        test_ring ring(name);
        for (const division_routine &of : division_routines) {
            if (of.field && name == "chain") continue;
            poly_handle p(poly_of(of.field ? "x^3 + 2*x + 1" : "x^3 + 2*x*y + 1")), zero(poly_of("0")),
                less(poly_of("x^2 + 5"));
            const uint64_t as_it_was = fingerprint(p.get());
            {
                poly_handle q, r;
                of.run(p.get(), p.get(), q.slot(), r.slot());
                expect_results(of, q, r, "1", "0");
            }
            {
                poly_handle q, r;
                of.run(zero.get(), p.get(), q.slot(), r.slot());
                expect_results(of, q, r, "0", "0");
            }
            EXPECT_EQ(fingerprint(p.get()), as_it_was) << of.name;
            if (of.exact) continue;
            poly_handle q, r;
            of.run(less.get(), p.get(), q.slot(), r.slot());
            expect_results(of, q, r, "0", "x^2 + 5");
        }
    }
}

TEST_F(divide_edges, a_longer_divisor_divides_nothing) {
    for (const std::string name : {"chain", "7"}) {
        test_ring ring(name);
        poly_handle a(poly_of("x^2 + y")), b(poly_of("x^3 + y + 1")), q(poly_of("3*x"));
        int failed = 2;
        EXPECT_EQ(trial_poly_divide(a.get(), b.get(), q.slot(), polynames, 1), 0);
        EXPECT_EQ(trial_poly_divide_noq(a.get(), b.get(), polynames, 1, 1), 0);
        EXPECT_EQ(mod_trial_poly_divide(a.get(), b.get(), polynames), 0);
        EXPECT_EQ(text_of(q.get()), "3*x");
        gen_poly_divide(a.get(), b.get(), q.slot(), polynames, &failed);
        EXPECT_TRUE(failed && poly_iszero(q.get()));
    }
    test_ring ring("7");
    poly_handle a(poly_of("x^2 + 1")), b(poly_of("x^3")), q(poly_of("3*x"));
    EXPECT_EQ(fastest_poly_div(a.get(), b.get(), q.slot()), 0);
    EXPECT_EQ(text_of(q.get()), "3*x");
}

/* ---- the test by images ---- */

TEST_F(divide_edges, where_all_images_lose_their_degree_the_division_decides) {
    test_ring ring("2"); /* y^2 + y is 0 at both values */
    poly_handle b(poly_of("x*y^2 + x*y + 1")), c(poly_of("x + y")), product, q;
    poly_mult(b.get(), c.get(), product.slot(), nullptr);
    for (int i = times(20); i > 0; i--) {
        EXPECT_EQ(trial_poly_divide(product.get(), b.get(), q.slot(), polynames, 1), 1);
        EXPECT_TRUE(poly_equal(q.get(), c.get()));
    }
    poly_add(product.get(), poly_1, product.slot());
    EXPECT_EQ(trial_poly_divide(product.get(), b.get(), q.slot(), polynames, 1), 0);
    EXPECT_EQ(trial_poly_divide_noq(product.get(), b.get(), polynames, 1, 1), 0);
}

/* At every value the image of b is that of a, which b does not divide. */
TEST_F(divide_edges, images_have_the_last_word_only_where_that_is_allowed) {
    test_ring ring("2");
    poly_handle a(poly_of("x")), b(poly_of("x + y^2 + y")), q;
    kept_value<int> allowed(rat_yes, 0);
    EXPECT_EQ(trial_poly_divide(a.get(), b.get(), q.slot(), polynames, 1), 0);
    EXPECT_EQ(trial_poly_divide_noq(a.get(), b.get(), polynames, 1, 1), 0);
    EXPECT_EQ(mod_trial_poly_divide(a.get(), b.get(), polynames), 0);
    rat_yes = 1;
    EXPECT_EQ(trial_poly_divide_noq(a.get(), b.get(), polynames, 1, 1), 1) << "the images are asked alone";
    EXPECT_EQ(trial_poly_divide_noq(a.get(), b.get(), polynames, 1, 0), 0);
    EXPECT_EQ(trial_poly_divide(a.get(), b.get(), q.slot(), polynames, 1), 0);
    EXPECT_FALSE(q);
}

TEST_F(divide_edges, with_one_variable_no_images_are_drawn) {
    poly_handle a(poly_of("x^5 + 3*x + 1")), b(poly_of("x^2 + 1")), c(poly_of("x^5 + 3*x*y")), q;
    const auto next_after = [&](const polynode *p) {
        seed_random(first_seed);
        trial_poly_divide(p, b.get(), q.slot(), polynames, 1);
        return random_31();
    };
    seed_random(first_seed);
    const int32_t first = random_31();
    EXPECT_EQ(next_after(a.get()), first);
    EXPECT_NE(next_after(c.get()), first);
    seed_random(first_seed);
}

/* ---- long and sparse dividends ---- */

/* Blocks of the recursive division against the powers of x modulo the divisor; neither goes as deep as the degree. */
TEST_F(divide_edges, a_degree_of_a_million_by_a_cubic) {
    test_ring ring("46337");
    poly_handle a(poly_of("x^1000000 + 5*x^765432 + x^3 + 1")), b(poly_of("x^3 - 2*x + 5")), q, r, rest;
    fast_mod_and_div(a.get(), b.get(), r.slot(), q.slot(), nullptr, 1);
    EXPECT_EQ(q->expo, 999997);
    poly_div_no_q(a.get(), b.get(), rest.slot());
    EXPECT_TRUE(poly_equal(r.get(), rest.get()));
    poly_handle zero_gap(poly_of("x^100000000")), power(poly_of("x^3 - 1"));
    fast_mod_and_div(zero_gap.get(), poly_1, r.slot(), q.slot(), nullptr, 1);
    EXPECT_TRUE(poly_equal(q.get(), zero_gap.get()) && poly_iszero(r.get()));
    poly_div_no_q(zero_gap.get(), power.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "x"); /* 100000000 = 3 * 33333333 + 1 */
}

TEST_F(divide_edges, negative_exponents_in_the_division_of_lists) {
    laurent = 1;
    test_ring ring("7");
    poly_handle a(poly_of("x^2 + x^-1")), b(poly_of("x + 1")), q, r;
    fast_mod_and_div(a.get(), b.get(), r.slot(), q.slot(), polynames, 0);
    poly_handle back(nested(flat_sum(flat_product(flat(q.get()), flat(b.get())), flat(r.get()))));
    EXPECT_TRUE(poly_equal(back.get(), a.get())) << text_of(q.get()) << "; " << text_of(r.get());
    laurent = 0;
}

/* ---- what must not happen ---- */

namespace {
struct divide_faults : fresh_exact_system {
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

TEST_F(divide_faults, are_told_and_leave_the_operands) {
    test_ring ring("chain");
    poly_handle a(poly_of("x^2 + y")), b(poly_of("2*x + 1")), c(poly_of("x*y + 1")), three(poly_of("3")),
        zero(poly_of("0")), q, r;
    poly_handle in_place;
    poly_assign(a.get(), in_place.slot());
    int failed;
    number_handle n;
    const auto told = [&](const std::function<void()> &routine, const std::string &text) {
        EXPECT_TRUE(unwinds(routine)) << text;
        EXPECT_NE(last_text.find(text), std::string::npos) << text << "\n" << last_text;
        EXPECT_TRUE(poly_equal(in_place.get(), a.get())) << text;
        EXPECT_FALSE(q || r) << text;
        leave_all_levels();
        flotemode = lintmode = modularmode = 0;
    };
    told([&] { gen_poly_divide(a.get(), b.get(), q.slot(), nullptr, &failed); }, "pt nil in poly_divide.");
    told([&] { trial_poly_divide(a.get(), b.get(), q.slot(), nullptr, 1); }, "pt nil in trial_poly_divide.");
    told([&] { trial_poly_divide(a.get(), three.get(), q.slot(), polynames, 1); }, "m is number in trial_poly_divide.");
    told([&] { fast_poly_divide(in_place.slot(), b.get(), nullptr, 1); }, "pt nil in fast_poly_divide.");
    told([&] { fast_poly_divide(in_place.slot(), b.get(), polynames, 1); }, "bad exps in fast_poly divide. ");
    told([&] { fast_divide(three.slot(), b.get(), polynames, 1); }, " tp numb in fast_divide.");
    told([&] { poly_quot(a.get(), three.get(), q.slot(), 0); }, "inexact quotient in poly_quot.");
    told([&] { poly_quot(a.get(), b.get(), q.slot(), 0); }, "m not number in poly_quot.");
    told([&] { num_pseudo_div(a.get(), c.get(), q.slot(), r.slot(), &n, polynames); },
         "r not 0 in num_pseudo poly div.");
    told([&] { special_div_2(in_place.slot(), b.get(), polynames); }, "not 0 in special_div_2");
    told([&] { basic_poly_divide(a.get(), b.get(), q.slot(), r.slot(), 1); },
         "leading coefficient is no unit in basic_poly_divide.");
    told([&] { monic_poly(in_place.slot(), q.slot(), polynames); }, message_text(284));
    told([&] { poly_mod_and_div(a.get(), zero.get(), q.slot(), r.slot(), nullptr, polynames); }, message_text(22));
}

TEST_F(divide_faults, in_rings_of_words) {
    test_ring ring("6");
    poly_handle p(poly_of("2*x + 1")), lc;
    EXPECT_TRUE(unwinds([&] { monic_poly(p.slot(), lc.slot(), polynames); }));
    EXPECT_NE(last_text.find(message_text(85)), std::string::npos) << last_text;
    leave_all_levels();
    test_ring field("7");
    poly_handle a(poly_of("x*y + 1")), b(poly_of("x"));
    EXPECT_TRUE(unwinds([&] { special_div(a.slot(), b.get(), polynames); })); /* by y */
    EXPECT_NE(last_text.find("not 0 in special_div"), std::string::npos) << last_text;
    leave_all_levels();
    test_ring floats("float");
    poly_handle zero(poly_of("0"));
    EXPECT_TRUE(unwinds([&] { monic_poly(zero.slot(), lc.slot(), polynames); }));
    EXPECT_NE(last_text.find(message_text(22)), std::string::npos) << last_text;
    leave_all_levels();
}

} // namespace tolvek
