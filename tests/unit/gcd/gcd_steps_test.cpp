/* Single steps of the GCD tree under the conditions that they are made for, ownership, counters, and safe points. */
#include "gcd/content.h"
#include "gcd/gcd.h"
#include "gcd/gcd_work.h"
#include "poly/add.h"
#include "poly/divide.h"
#include "poly/mult.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "support/safe_point_gaps.h"
#include "top/guards.h"

namespace tolvek {

namespace {

struct gcd_steps_test : poly_test {
    const kept_value<int> chinese{chinhensel, 1};
    /* u, v := a f, b f. */
    poly_handle u, v;
    void forget() {
        free_poly(u.slot());
        free_poly(v.slot());
    }
    void TearDown() override {
        forget();
        poly_test::TearDown();
    }
    void plant(const polynode *a, const polynode *b, const polynode *f) {
        poly_mult(a, f, u.slot(), nullptr);
        poly_mult(b, f, v.slot(), nullptr);
    }
    void plant(const char *a, const char *b, const char *f) {
        poly_handle first(poly_of(a)), second(poly_of(b)), factor(poly_of(f));
        plant(first.get(), second.get(), factor.get());
    }
    std::string gcd_text() {
        poly_handle g;
        Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames);
        expect_canonical(g.get());
        return text_of(g.get());
    }
};

/* Terms of random exponents up to `degree` in the variables first to last; coefficients from 1 to size. */
polynode *sparse_in(test_random &rnd, int first, int last, int terms, int degree, int size) {
    flat_poly p;
    while (static_cast<int>(p.size()) < terms) {
        std::vector<int32_t> e(static_cast<std::size_t>(last));
        for (int k = first; k <= last; k++) e[static_cast<std::size_t>(k - 1)] = rnd.below(degree + 1);
        while (!e.empty() && e.back() == 0) e.pop_back();
        p[e] = coef(1 + rnd.below(size));
    }
    return nested(p);
}

bool divides(const polynode *b, const polynode *a, polynode **q) {
    if (is_constant(b)) return poly_assign(a, q), true;
    int failed = 0;
    gen_poly_divide(a, b, q, polynames, &failed);
    return !failed;
}

} // namespace

/* ---- zeros and other small operands ---- */

TEST_F(gcd_steps_test, an_operand_0_leaves_the_other_one_in_every_ring) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        *u.slot() = poly_of("0");
        *v.slot() = poly_of("x*y + 3");
        const std::string found = text_of(v.get());
        EXPECT_EQ(gcd_text(), found) << name;
        std::swap(*u.slot(), *v.slot());
        EXPECT_EQ(gcd_text(), found) << name;
        free_poly(u.slot());
        *u.slot() = poly_of("0");
        EXPECT_EQ(gcd_text(), "0") << name;
        free_poly(u.slot());
        free_poly(v.slot());
    }
}

/* ---- powers of the main variable, and strides ---- */

TEST_F(gcd_steps_test, powers_and_strides_are_put_back_once) {
    for (const int images : {0, 1}) {
        const kept_value<int> choice(chinhensel, images);
        test_ring ring("7");
        plant("x^2 + 1", "x^2 + y", "x^6 + x^2*y"); /* the factor is x^2 (x^4 + y) */
        EXPECT_EQ(gcd_text(), "x^6 + x^2*y");
        /* five more variables in one operand */
        plant("x^4*z + x^2*t*u + 3*v*w*x^2 + z*t + u*v + x^8*w^2 + x^6*z*t*u*v + x^4*w + 5*z^2 + t^2*v + u^3 + 2*w + "
              "x^2*z^2*w + x^10*u*w + x^12*v^2 + t^3*w + 1",
              "x^2 + y + x^4*y + x^6*y^2 + x^8*y^3 + 3*x^10 + y^4 + 2*x^2*y^4 + x^4*y^5 + x^6*y^4 + 5*y^6 + x^12*y + "
              "x^14 + x^2*y^7",
              "x^6 + x^2*y");
        EXPECT_EQ(gcd_text(), "x^6 + x^2*y");
    }
}

/* ---- images that are unlucky ---- */

TEST_F(gcd_steps_test, images_that_always_lose_degree_do_not_decide) {
    test_ring ring("3"); /* y^3 - y vanishes at every value */
    plant("x^2*y^3 - x^2*y + 1", "x^3*y^3 - x^3*y + x + y", "x^4 + x*y + y^2 + 1");
    EXPECT_EQ(gcd_text(), "x^4 + x*y + y^2 + 1");
    plant("x^2*y^3 - x^2*y + 1", "x^3*y^3 - x^3*y + x + y", "x^4*y^3 - x^4*y + x*y + y^2 + 1");
    EXPECT_EQ(gcd_text(), "x^4*y^3 + 2*x^4*y + x*y + y^2 + 1");
}

TEST_F(gcd_steps_test, variables_in_one_operand_alone_are_replaced_and_the_answer_is_proved) {
    test_ring ring("101");
    const long answers = gcd_answers(24);
    for (int i = 0; i < times(500); i++) {
        poly_handle a(sparse_in(rnd, 1, 6, 10, 2, 100)), b(sparse_in(rnd, 1, 2, 6, 3, 100)), f;
        const bool trap = i % 5 == 0; /* x + z and x + 5 agree at z = 5 */
        *f.slot() = sparse_in(rnd, 1, 2, 3, 2, 100);
        if (trap) {
            poly_handle first(poly_of("x + z")), second(poly_of("x + 5"));
            poly_mult(a.get(), first.get(), a.slot(), nullptr);
            poly_mult(b.get(), second.get(), b.slot(), nullptr);
        }
        plant(a.get(), b.get(), f.get());
        poly_handle g, q_u, q_v, rest;
        Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames);
        ASSERT_TRUE(divides(g.get(), u.get(), q_u.slot())) << text_of(u.get()) << "\n" << text_of(v.get());
        ASSERT_TRUE(divides(g.get(), v.get(), q_v.slot())) << text_of(u.get()) << "\n" << text_of(v.get());
        ASSERT_TRUE(divides(f.get(), g.get(), rest.slot())) << text_of(g.get()) << "\n" << text_of(f.get());
        Lpolygcd(q_u.slot(), q_v.slot(), rest.slot(), 1, polynames);
        ASSERT_EQ(text_of(rest.get()), "1") << text_of(u.get()) << "\n" << text_of(v.get());
    }
    EXPECT_GT(gcd_answers(24), answers);
}

/* ---- general contents ---- */

TEST_F(gcd_steps_test, factors_in_deeper_variables_alone_are_contents_there) {
    for (int i = 0; i < times(10); i++) {
        poly_handle a(sparse_in(rnd, 1, 2, 50, 9, 100)), b(sparse_in(rnd, 1, 2, 50, 9, 100)), f(poly_of("z + 1"));
        plant(a.get(), b.get(), f.get());
        EXPECT_EQ(gcd_text(), "z + 1");
        poly_handle h(poly_of("x^2*y*z + x^2*y + z*x + x + 3*z + 3")); /* (z + 1)(x^2 y + x + 3) */
        plant(a.get(), b.get(), h.get());
        EXPECT_EQ(gcd_text(), text_of(h.get()));
    }
}

TEST_F(gcd_steps_test, too_many_visits_forbid_them) {
    poly_handle a(sparse_in(rnd, 1, 3, 60, 6, 100)), b(sparse_in(rnd, 1, 3, 60, 6, 100)),
        f(poly_of("x^2*y*z + x^2*y + z*x + x + 3*z + 3"));
    plant(a.get(), b.get(), f.get());
    const kept_value<int> visits(c_cntcount, content_count_limit + 1), depth(c_cntdepth, 1), general(g_cntcount, 0);
    const kept_value<int> outer(original_depth, 0); /* an outer level: the counters are not cleared */
    poly_handle g;
    polygcd(u.get(), v.get(), g.slot(), 0, 1, 1, polynames, 1, 1, 1);
    EXPECT_TRUE(poly_equal(g.get(), f.get())) << text_of(g.get());
    EXPECT_EQ(g_cntcount, 0);
}

/* ---- counters ---- */

TEST_F(gcd_steps_test, entries_from_inside_leave_the_counters_of_the_gcd_around_them) {
    const kept_value<int> abandoned(alg_c_count, 3), depth(original_depth, 5);
    plant("x^2*y + 3*x + 1", "x^3 + x*y + 7", "x^2*y^2 + y + 1");
    EXPECT_EQ(gcd_text(), "x^2*y^2 + y + 1");
    EXPECT_EQ(alg_c_count, 3);
    EXPECT_EQ(original_depth, 5);
}

/* ---- cofactors ---- */

TEST_F(gcd_steps_test, cofactors_that_came_on_the_way_are_handed_over) {
    int found = 0;
    for (int i = 0; i < times(200); i++) {
        const int variables = 1 + i % 3;
        poly_handle a(sparse_in(rnd, 1, variables, 6, 9, 100)), b(sparse_in(rnd, 1, variables, 6, 9, 100)),
            f(sparse_in(rnd, 1, variables, 4, 9, 100)), g, product;
        if (i % 4 == 0) poly_set(rnd.one_in(2) ? 1 : -1, b.slot()); /* v divides u */
        if (i % 8 == 4) std::swap(*a.slot(), *b.slot());
        plant(a.get(), b.get(), f.get());
        gcd_cofactors c;
        Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames, &c);
        EXPECT_EQ(static_cast<bool>(c.of_u), static_cast<bool>(c.of_v));
        if (!c.of_u) continue;
        found++;
        poly_mult(g.get(), c.of_u.get(), product.slot(), nullptr);
        EXPECT_TRUE(poly_equal(product.get(), u.get())) << text_of(u.get()) << "\n" << text_of(v.get());
        poly_mult(g.get(), c.of_v.get(), product.slot(), nullptr);
        EXPECT_TRUE(poly_equal(product.get(), v.get())) << text_of(u.get()) << "\n" << text_of(v.get());
    }
    EXPECT_GT(found, 10);
}

/* ---- which method ---- */

static bool prefers_c(const char *a, const char *b) {
    poly_handle first(poly_of(a)), second(poly_of(b));
    gcd_work w;
    w.u->p = first.get();
    w.v->p = second.get();
    w.names = polynames;
    w.level = 1;
    weigh_methods(&w);
    return w.prefer_c;
}

TEST_F(gcd_steps_test, algorithm_c_is_for_very_sparse_operands_modulo_a_prime) {
    const char *const wide = "x^7*y^90*z^90 + x^3*y^80*t^90 + x^2*z^70*u^50 + t^60*v^40 + y";
    EXPECT_FALSE(prefers_c(wide, wide)); /* over the integers images are quicker */
    test_ring ring("101");
    EXPECT_TRUE(prefers_c(wide, wide));
    EXPECT_FALSE(prefers_c("x^2*y + x*y^2 + 1", "x^3 + y^3 + x*y"));
    EXPECT_FALSE(prefers_c("x^9*y^90 + x^3*y^80*z^90 + x + 1",
                           "x^9*y^90 + x^3*y^80*z^90 + x + 2")); /* few terms in a smaller box */
    const kept_value<int> abandoned(alg_c_count, abandoned_enough);
    EXPECT_FALSE(prefers_c(wide, wide));
}

/* ---- ownership ---- */

TEST_F(gcd_steps_test, every_form_of_ownership_with_the_destination_at_an_operand) {
    struct pair {
        const char *a, *b, *g;
    };
    const pair pairs[] = {{"x^2*y - y^3", "x*y*z - y^2*z", "x*y - y^2"},
                          {"6", "4", "2"},
                          {"6", "2*x + 4", "2"},
                          {"y^2 - 1", "y*z + z", "y + 1"},
                          {"0", "x + 1", "x + 1"},
                          {"x^3", "x^2*y + x^2", "x^2"},
                          {"x*z + z", "z^2 + z", "z"}};
    for (const pair &p : pairs)
        for (int keep = 0; keep < 4; keep++)
            for (int place = 0; place < 3; place++) { /* of the answer: its own, at the first, at the second */
                poly_handle first(poly_of(p.a)), second(poly_of(p.b)), own;
                poly_handle &g = place == 0 ? own : place == 1 ? first : second;
                polynode *a = first.get(), *b = second.get();
                const int keep_a = keep & 1, keep_b = keep >> 1;
                if (!keep_a && place != 1) first.release();
                if (!keep_b && place != 2) second.release();
                polygcd(a, b, g.slot(), 0, 1, 1, polynames, keep_a, keep_b, 1);
                EXPECT_EQ(text_of(g.get()), p.g) << keep << place;
                if (keep_a && place != 1) {
                    EXPECT_EQ(text_of(a), p.a);
                }
                if (keep_b && place != 2) {
                    EXPECT_EQ(text_of(b), p.b);
                }
            }
    poly_handle same(poly_of("-2*x + 4")), g;
    polygcd(same.get(), same.get(), same.slot(), 0, 1, 1, polynames, 1, 1, 1);
    EXPECT_EQ(text_of(same.get()), "2*x - 4");
}

TEST_F(gcd_steps_test, contents_with_every_form_of_ownership) {
    for (int keep = 0; keep < 4; keep++) {
        const int keep_a = keep & 1, keep_b = keep >> 1;
        poly_handle p(poly_of("x^2*y*z + x*y*t + y")), q(poly_of("y*z")), r(poly_of("x*y^2 + y*z")), c;
        content(p.get(), c.slot(), polynames, 0, 1, keep_a);
        if (!keep_a) {
            p.release();
            *p.slot() = poly_of("x^2*y*z + x*y*t + y");
        }
        EXPECT_EQ(text_of(c.get()), "x"); /* of the level below */
        aux_content(q.get(), p.get(), c.slot(), polynames, 0, 1, keep_b, keep_a);
        if (!keep_b) q.release();
        if (!keep_a) {
            p.release();
            *p.slot() = poly_of("x^2*y*z + x*y*t + y");
        }
        EXPECT_EQ(text_of(c.get()), "x");
        dual_content(p.get(), r.get(), c.slot(), polynames, 0, 1, keep_a, keep_b);
        if (!keep_a) p.release();
        if (!keep_b) r.release();
        EXPECT_EQ(text_of(c.get()), "x");
    }
}

/* ---- safe points ---- */

TEST_F(gcd_steps_test, safe_points_lie_close_together) {
    auto check = [&](const char *what) {
        poly_handle g;
        EXPECT_LT(longest_gap_of([&] { Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames); }), most_gap) << what;
    };
    for (const char *name : {"chain", "2147483629", "101"}) {
        test_ring ring(name);
        const int size = lintmode ? 100 : 1000000;
        auto planted = [&](int variables, int terms, int degree) {
            poly_handle a(sparse_in(rnd, 1, variables, terms, degree, size)),
                b(sparse_in(rnd, 1, variables, terms, degree, size)),
                f(sparse_in(rnd, 1, variables, terms, degree, size));
            plant(a.get(), b.get(), f.get());
        };
        planted(1, 100, 200);
        check("one variable");
        planted(2, 60, 15);
        check("two variables");
        planted(3, 30, 5);
        check("three variables");
        planted(6, int{modulus} == 101 ? 6 : 30, 2);
        check("six variables");
        forget();
    }
    test_ring ring("65521");
    poly_handle a(sparse_in(rnd, 1, 1, 9000, 20000, 60000)), b(sparse_in(rnd, 1, 1, 9000, 20000, 60000)),
        f(poly_of("x^7 + 1"));
    plant(a.get(), b.get(), f.get());
    check("a high degree");
    forget();
}

/* ---- left by an interrupt at the prompt ---- */

namespace {
int points_left;

struct gcd_at_the_prompt : fresh_exact_system {
    void SetUp() override {
        forget_poly_variables();
        fresh_exact_system::SetUp();
        extra_line = 0;
        run("&(J = x)\n&(J = y)\n&(J = z)");
    }
    void TearDown() override {
        fresh_exact_system::TearDown();
        forget_poly_variables();
    }
};
} // namespace

TEST_F(gcd_at_the_prompt, what_callers_must_not_ask_for_is_an_internal_error_and_1) {
    poly_handle u(poly_of("x + 1")), one(poly_of("1")), deep(poly_of("y + 1")), g;
    int no_main = 1;
    const std::string text = text_of([&] {
        polygcd(u.get(), u.get(), g.slot(), 0, 1, 1, nullptr, 1, 1, 1);
        EXPECT_TRUE(poly_eq_1(g.get()));
        general_content(deep.get(), 1, g.slot(), polynames, &no_main, 1);
        EXPECT_TRUE(poly_eq_1(g.get()));
        test_ring ring("7");
        poly_handle residues(poly_of("x + 1")), constant(poly_of("1")), h;
        basic_poly_gcd(residues.get(), constant.get(), h.slot(), 1, polynames);
        EXPECT_TRUE(poly_eq_1(h.get()));
    });
    EXPECT_EQ(text, "*** Tolvek error. pt nil in polygcd.\n"
                    "*** Tolvek error.  0 exp head node in general_content\n"
                    "*** Tolvek error.  number in basic_poly_gcd \n");
    const std::string of_floats = text_of([&] {
        test_ring ring("float");
        poly_handle floats(poly_of("x + 1")), constant(poly_of("1")), h;
        fl_basic_poly_gcd(constant.get(), floats.get(), h.slot(), 1, polynames);
        EXPECT_TRUE(poly_eq_1(h.get()));
    });
    EXPECT_EQ(of_floats, "*** Tolvek error.  number in float basic_poly_gcd \n");
}

TEST_F(gcd_at_the_prompt, an_interrupt_and_a_panic_stop_leave_variables_ring_and_values) {
    run("f := x^2*z + x*y^2 - z + 11; a := (x^3*y + 2x*z^2 + y^2 - 5)*f; b := (x^2 - 3x*y*z + z^3 + 7)*f");
    for (const char *change : {"", "&(p = 101)"}) {
        run(change);
        const std::string found = value_of("a") + value_of("b") + run("&g");
        int stopped = 0;
        for (int n = 0; n < 200; n++) {
            points_left = n * 3;
            watch_safe_points([] {
                if (points_left-- == 0) note_interrupt();
            });
            const std::string text = run("g := GCD(a, b)\n&@");
            watch_safe_points(nullptr);
            stopped += text.find("New command level") != std::string::npos;
        }
        EXPECT_GT(stopped, 50);
        EXPECT_EQ(value_of("a") + value_of("b") + run("&g"), found);
        EXPECT_EQ(value_of("Equal(GCD(a, b)*Lcoef(Lcoef(f)), f)"), "1");
    }
}

} // namespace tolvek
