#include "poly/add.h"

#include "quoly/quoly.h"
#include "support/rand_poly.h"
#include "top/guards.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

using add_test = poly_test;

enum class family { kept, better, best, simplest };

/* a + b or a - b by one family; a and b stay. */
polynode *sum_by(family how, bool minus, const polynode *a, const polynode *b) {
    polynode *x = nullptr, *y = nullptr, *sum = nullptr;
    poly_assign(a, &x);
    poly_assign(b, &y);
    switch (how) {
    case family::kept: (minus ? poly_sub : poly_add)(x, y, &sum); break;
    case family::better: (minus ? better_poly_sub : better_poly_add)(x, y, &sum); break;
    case family::best: (minus ? best_poly_sub : best_poly_add)(x, y, &sum); break;
    case family::simplest: (minus ? simplest_poly_sub : simplest_poly_add)(x, y, &sum); break;
    }
    if (how == family::kept || how == family::better) {
        EXPECT_TRUE(poly_equal(y, b)) << "a kept operand has changed";
        free_poly(&y);
    }
    if (how == family::kept) {
        EXPECT_TRUE(poly_equal(x, a)) << "a kept operand has changed";
        free_poly(&x);
    }
    return sum;
}

std::vector<family> families() {
    std::vector<family> all = {family::kept, family::better, family::best};
    if (flotemode || modularmode) all.push_back(family::simplest);
    return all;
}

void check_all_families(const polynode *a, const polynode *b) {
    for (bool minus : {false, true}) {
        poly_handle expected(nested(flat_sum(flat(a), flat(b), minus)));
        for (family how : families()) {
            poly_handle sum(sum_by(how, minus, a, b));
            expect_canonical(sum.get());
            EXPECT_TRUE(poly_equal(sum.get(), expected.get()))
                << "(" << text_of(a) << ")" << (minus ? " - " : " + ") << "(" << text_of(b) << ")\nis "
                << text_of(expected.get()) << "\nnot " << text_of(sum.get());
        }
    }
}

std::string sum_text(const std::string &a, const std::string &b) {
    poly_handle x(poly_of(a)), y(poly_of(b)), sum;
    check_all_families(x.get(), y.get());
    poly_add(x.get(), y.get(), sum.slot());
    return text_of(sum.get());
}

} // namespace

TEST_F(add_test, x_and_minus_x_give_the_number_term_0) {
    poly_handle x(poly_of("x")), m(poly_of("-x")), sum;
    poly_add(x.get(), m.get(), sum.slot());
    ASSERT_TRUE(sum);
    EXPECT_TRUE(sum->is_number);
    EXPECT_EQ(sum->next, nullptr);
    EXPECT_EQ(num_sign(sum->num), 0);
    EXPECT_EQ(sum_text("x", "-x"), "0");
}

TEST_F(add_test, a_number_term_that_cancels_leaves_the_list) {
    poly_handle a(poly_of("x + 1")), b(poly_of("-1")), sum;
    poly_add(a.get(), b.get(), sum.slot());
    EXPECT_EQ(text_of(sum.get()), "x");
    EXPECT_EQ(sum->next, nullptr);
    EXPECT_EQ(sum_text("x + 1", "-1"), "x");
}

TEST_F(add_test, a_sum_of_x_y_and_y_has_y_in_a_wrapper) {
    poly_handle a(poly_of("x*y")), b(poly_of("y")), sum;
    poly_add(a.get(), b.get(), sum.slot());
    ASSERT_NE(sum->next, nullptr);
    EXPECT_EQ(sum->next->expo, 0);
    EXPECT_FALSE(sum->next->is_number);
    EXPECT_EQ(sum->next->poly->expo, 1);
    EXPECT_EQ(sum_text("x*y", "y"), "x*y + y");
}

TEST_F(add_test, a_sum_collapses_through_all_levels_to_one_number_term) {
    poly_handle a(poly_of("r")), b(poly_of("-r + 3")), sum;
    poly_add(a.get(), b.get(), sum.slot());
    EXPECT_TRUE(is_constant(sum.get()));
    EXPECT_EQ(text_of(sum.get()), "3");
    EXPECT_EQ(sum_text("r", "-r + 3"), "3");
    EXPECT_EQ(sum_text("x*r + r", "-x*r - r + 3*x"), "3*x");
}

TEST_F(add_test, a_number_joins_the_constant_term_under_the_wrappers) {
    EXPECT_EQ(sum_text("t", "5"), "t + 5");
    EXPECT_EQ(sum_text("5", "t"), "t + 5");
    EXPECT_EQ(sum_text("t + 7", "-7"), "t");
    EXPECT_EQ(sum_text("x*t + t + 7", "-7"), "x*t + t");
}

TEST_F(add_test, adding_0_changes_nothing) {
    for (const char *p : {"0", "1", "x", "t", "x^3*y + z + 2"}) {
        EXPECT_EQ(sum_text(p, "0"), p);
        EXPECT_EQ(sum_text("0", p), p);
    }
}

TEST_F(add_test, number_terms_stand_before_terms_of_negative_exponent) {
    laurent = 1;
    poly_handle a(poly_of("x^-1")), b(poly_of("1")), sum;
    poly_add(a.get(), b.get(), sum.slot());
    expect_canonical(sum.get());
    EXPECT_TRUE(sum->is_number);
    ASSERT_NE(sum->next, nullptr);
    EXPECT_EQ(sum->next->expo, -1);
    EXPECT_EQ(sum_text("x^-1", "0"), "x^-1");
    EXPECT_EQ(sum_text("5 + x^-1", "y"), "y + 5 + x^-1");
    EXPECT_EQ(sum_text("y + x^-1", "5 - y + x"), "x + 5 + x^-1");
    EXPECT_EQ(sum_text("5 + x^-1", "-5"), "x^-1");
    EXPECT_EQ(sum_text("5 + x^-1", "-x^-1"), "5");
}

TEST_F(add_test, floats_that_sum_to_exactly_0_remove_the_term_and_small_ones_stay) {
    test_ring ring("float");
    poly_handle a(poly_of("x + 1")), b(poly_of("x + 1")), sum;
    b->next->num->flote_val = -1.0L + 1e-18L;
    poly_add(a.get(), b.get(), sum.slot());
    ASSERT_NE(sum->next, nullptr);
    EXPECT_EQ(sum->next->num->flote_val, 1.0L + (-1.0L + 1e-18L));
    b->next->num->flote_val = -1;
    poly_add(a.get(), b.get(), sum.slot());
    EXPECT_EQ(sum->next, nullptr);
    b->next->num->flote_val = 1e-30L;
    a->next->num->flote_val = 1e-30L;
    poly_sub(a.get(), b.get(), sum.slot());
    EXPECT_TRUE(poly_iszero(sum.get()));
    a->next->num->flote_val = 2e-30L;
    poly_sub(a.get(), b.get(), sum.slot());
    EXPECT_EQ(sum->num->flote_val, 2e-30L - 1e-30L);
}

TEST_F(add_test, constants_sum_in_every_form) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (const char *a : {"0", "1", "2147483628"})
            for (const char *b : {"0", "1", "2147483628"}) sum_text(a, b);
    }
}

TEST_F(add_test, sums_of_the_table_fields_are_bitwise) {
    test_ring ring("256");
    kept_value<int> fields(finf, 1), bytes(f256, 1);
    poly_handle a(poly_of("200*x + 7*y + 3")), b(poly_of("200*x + 5*y + 1")), sum;
    poly_add(a.get(), b.get(), sum.slot());
    EXPECT_EQ(text_of(sum.get()), "2*y + 2");
    poly_sub(a.get(), b.get(), sum.slot());
    EXPECT_EQ(text_of(sum.get()), "2*y + 2");
}

TEST_F(add_test, all_families_agree_with_sums_of_flat_tables) {
    for (const std::string &name : test_rings) {
        for (int i = 0; i < times(60); i++) {
            poly_shape shape = rand_shape(rnd, true);
            kept_value<int> exponents(laurent, shape.laurent);
            test_ring ring(name);
            poly_handle a(rand_poly(rnd, shape)), b(rand_poly(rnd, shape));
            if (rnd.one_in(3)) { /* most terms in common, some cancel */
                poly_handle c(rand_poly(rnd, shape));
                poly_sub(c.get(), a.get(), b.slot());
            }
            expect_canonical(a.get());
            check_all_families(a.get(), b.get());
        }
    }
}

TEST_F(add_test, sums_obey_the_axioms_of_a_group) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(60); i++) {
            poly_shape shape = rand_shape(rnd);
            poly_handle a(rand_poly(rnd, shape)), b(rand_poly(rnd, shape)), c(rand_poly(rnd, shape)), p, q, zero;
            poly_add(a.get(), b.get(), p.slot());
            poly_add(b.get(), a.get(), q.slot());
            EXPECT_TRUE(poly_equal(p.get(), q.get()));
            poly_add(p.get(), c.get(), p.slot());
            poly_add(b.get(), c.get(), q.slot());
            poly_add(a.get(), q.get(), q.slot());
            EXPECT_TRUE(poly_equal(p.get(), q.get()));
            poly_makeneg(a.get(), p.slot());
            EXPECT_TRUE(poly_neg(p.get(), a.get()));
            poly_add(a.get(), p.get(), zero.slot());
            EXPECT_TRUE(poly_iszero(zero.get()));
            poly_sub(a.get(), b.get(), p.slot());
            poly_sub(b.get(), a.get(), q.slot());
            poly_inplace(q.get());
            EXPECT_TRUE(poly_equal(p.get(), q.get()));
        }
    }
}

/* ---- one pointer in two places ---- */

TEST_F(add_test, operands_that_are_kept_may_be_one_and_the_destination_either) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(20); i++) {
            poly_shape shape = rand_shape(rnd);
            poly_handle a(rand_poly(rnd, shape)), b(rand_poly(rnd, shape)), p, twice, expected;
            poly_sub(a.get(), a.get(), p.slot());
            EXPECT_TRUE(poly_iszero(p.get()));
            poly_add(a.get(), a.get(), twice.slot());
            EXPECT_EQ(text_of(twice.get()), text_of(poly_handle(nested(flat_sum(flat(a.get()), flat(a.get())))).get()));

            poly_sub(a.get(), b.get(), expected.slot());
            poly_assign(a.get(), p.slot());
            poly_sub(p.get(), b.get(), p.slot());
            EXPECT_TRUE(poly_equal(p.get(), expected.get())) << "the first operand's place";
            poly_assign(b.get(), p.slot());
            poly_sub(a.get(), p.get(), p.slot());
            EXPECT_TRUE(poly_equal(p.get(), expected.get())) << "the second operand's place";
            poly_assign(a.get(), p.slot());
            poly_add(p.get(), p.get(), p.slot());
            EXPECT_TRUE(poly_equal(p.get(), twice.get())) << "all three";
        }
    }
}

TEST_F(add_test, a_consuming_sum_may_go_to_the_place_of_either_operand) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(20); i++) {
            poly_shape shape = rand_shape(rnd);
            poly_handle a(rand_poly(rnd, shape)), b(rand_poly(rnd, shape)), expected;
            poly_sub(a.get(), b.get(), expected.slot());
            auto copy = [](const poly_handle &from) {
                polynode *p = nullptr;
                poly_assign(from.get(), &p);
                return p;
            };
            polynode *p = copy(a), *q = copy(b);
            best_poly_sub(p, q, &p);
            EXPECT_TRUE(poly_equal(p, expected.get()));
            free_poly(&p);
            p = copy(a), q = copy(b);
            best_poly_sub(p, q, &q);
            EXPECT_TRUE(poly_equal(q, expected.get()));
            free_poly(&q);
            p = copy(a), q = copy(b);
            better_poly_sub(p, q, &p);
            EXPECT_TRUE(poly_equal(p, expected.get()));
            EXPECT_TRUE(poly_equal(q, b.get()));
            free_poly(&p);
            p = copy(a);
            better_poly_sub(p, q, &q);
            EXPECT_TRUE(poly_equal(q, expected.get()));
            free_poly(&q);
        }
    }
}

/* ---- interrupted sums ---- */

static int points_left;

TEST_F(add_test, a_sum_that_is_left_at_a_safe_point_loses_no_record) {
    poly_shape shape;
    shape.terms = 12;
    poly_handle a(rand_nonzero_poly(rnd, shape)), b(rand_nonzero_poly(rnd, shape));
    records_in_use found = count_records_in_use();
    for (int n = 0, finished = 0; !finished; n++) {
        for (int how = 0; how < 3; how++) {
            polynode *x = nullptr, *y = nullptr, *sum = nullptr;
            poly_assign(a.get(), &x);
            poly_assign(b.get(), &y);
            points_left = n;
            watch_safe_points([] {
                if (points_left-- == 0) throw 1;
            });
            bool thrown = false;
            try {
                if (how == 0)
                    poly_sub(x, y, &sum);
                else if (how == 1)
                    better_poly_sub(x, y, &x);
                else
                    best_poly_sub(x, y, &x);
            } catch (int) {
                thrown = true;
            }
            watch_safe_points(nullptr);
            if (!thrown) finished = 1;
            if (how == 0) {
                EXPECT_TRUE(poly_equal(x, a.get()));
                EXPECT_TRUE(poly_equal(y, b.get()));
            } else if (thrown) {
                EXPECT_EQ(x, nullptr);
            }
            free_poly(&sum);
            free_poly(&x);
            if (how < 2) free_poly(&y);
            EXPECT_EQ(count_records_in_use(), found);
        }
        ASSERT_LT(n, 100000);
    }
}

} // namespace tolvek
