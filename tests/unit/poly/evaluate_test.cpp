#include "poly/evaluate.h"

#include "numbers/modular.h"
#include "poly/add.h"
#include "poly/mult.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/guards.h"

#include <vector>

namespace tolvek {

namespace {
using evaluate_test = poly_test;

/* The value of p at numbers by its flat table of terms: each term by itself, each power factor by factor. */
coef plain_value(const polynode *p, const std::vector<coef> &at) {
    flat_poly sum;
    sum[{}] = coef(0);
    for (const auto &[exponents, c] : flat(p)) {
        flat_poly term;
        term[{}] = c;
        for (std::size_t level = 0; level < exponents.size(); level++) {
            flat_poly x;
            x[{}] = at[level];
            for (int32_t e = exponents[level]; e > 0; e--) term = flat_product(term, x);
        }
        sum = flat_sum(sum, term);
    }
    return sum.empty() ? coef(0) : sum.begin()->second;
}

/* A number to evaluate at. Of floats one at which sums stay exact. */
void rand_point(test_random &rnd, coef &c) {
    rand_ring_number(rnd, 2, &c.x);
    if (flotemode) setvalue(rnd.below(3) - 1, &c.x);
}

/* Replaces one variable in the flat table by a flat polynomial. */
flat_poly plain_image(const polynode *p, std::size_t level, const flat_poly &value) {
    flat_poly sum;
    for (const auto &[exponents, c] : flat(p)) {
        std::vector<int32_t> rest = exponents;
        int32_t e = level < rest.size() ? rest[level] : 0;
        if (level < rest.size()) rest[level] = 0;
        while (!rest.empty() && rest.back() == 0) rest.pop_back();
        flat_poly term;
        term[rest] = c;
        for (; e > 0; e--) term = flat_product(term, value);
        sum = flat_sum(sum, term);
    }
    return sum;
}

/* A polynomial of the next level as one of its own: 2*x^2 + y means 2*y^2 + z one level down. */
poly_handle &lowered(poly_handle &p) {
    poly_handle wrapped;
    make_monomial(wrapped.slot(), 0, p.release());
    wrapped.release_to(p.slot());
    return p;
}
} // namespace

/* ---- numbers for all variables ---- */

TEST_F(evaluate_test, a_value_at_numbers_is_the_sum_of_the_terms) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(40); i++) {
            poly_handle p(rand_poly(rnd, rand_shape(rnd)));
            evaluation_list list;
            std::vector<coef> at;
            for (int level = 0; level < number_polys; level++) {
                coef c;
                rand_point(rnd, c);
                at.push_back(c);
                list.put(&c.x);
            }
            coef value, wanted = plain_value(p.get(), at);
            actual_eval_poly(p.get(), list.get(), &value.x);
            EXPECT_TRUE(equal(&value.x, &wanted.x)) << name << ": " << text_of(p.get());
            poly_handle image;
            all_poly_eval(p.get(), list.get(), image.slot(), 0);
            EXPECT_EQ(image.get() == nullptr, value.is_zero());
            if (!image) continue;
            ASSERT_TRUE(is_constant(image.get()));
            EXPECT_TRUE(equal(image->num, &value.x));
        }
    }
}

TEST_F(evaluate_test, residues_at_0_and_at_units_of_every_modulus) {
    struct {
        int32_t modulus;
        const char *p;
        int32_t at, value;
    } const cases[] = {
        {17, "x^16", 0, 0},                                   /* 16 = 17 - 1: not 0^0 */
        {17, "x^32 + 3", 0, 3},   {15, "x^16", 2, 1},         /* 65536 = 4369 * 15 + 1 */
        {2, "x^5 + x + 1", 1, 1}, {3, "x^7 + x^3 + 2", 2, 0}, /* 128 + 8 + 2 = 138 = 46 * 3 */
        {17, "x^100 + x", 3, 16},                             /* 3^16 = 1, so 3^100 = 3^4 = 81 = 13; 13 + 3 */
    };
    for (const auto &c : cases) {
        test_ring ring(std::to_string(c.modulus));
        poly_handle p(poly_of(c.p));
        evaluation_list list;
        list.put(c.at);
        int32_t value = -1;
        mod_all_poly_eval(p.get(), list.get(), &value);
        EXPECT_EQ(value, c.value) << c.p << " at " << c.at << " modulo " << c.modulus;
    }
}

TEST_F(evaluate_test, residues_agree_with_a_plain_loop_for_small_primes) {
    for (int32_t n : {2, 3, 17}) {
        test_ring ring(std::to_string(n));
        for (int i = 0; i < times(100); i++) {
            poly_shape shape;
            shape.variables = 1;
            shape.degree = 50;
            poly_handle p(rand_poly(rnd, shape));
            for (int32_t x = 0; x < n; x++) {
                int64_t sum = 0;
                for (const polynode *t = p.get(); t; t = t->next) {
                    int64_t term = t->is_number ? t->num->lint_val : t->poly->num->lint_val;
                    for (int32_t e = 0; e < t->expo; e++) term = term * x % n;
                    sum = (sum + term) % n;
                }
                evaluation_list list;
                list.put(x);
                int32_t value;
                mod_all_poly_eval(p.get(), list.get(), &value);
                EXPECT_EQ(value, sum) << text_of(p.get()) << " at " << x << " modulo " << n;
            }
        }
    }
}

TEST_F(evaluate_test, long_chains_by_halves_are_the_value_of_a_geometric_sum) {
    /* (3^200 - 1) / 2 for 1 + x + ... + x^199 at 3 */
    poly_handle p;
    poly_set(1, p.slot());
    for (int e = 1; e < 200; e++) {
        poly_handle t(poly_of("x^" + std::to_string(e)));
        best_poly_add(p.release(), t.release(), p.slot());
    }
    evaluation_list list;
    list.put(3);
    number_handle value;
    rat_all_poly_eval(p.get(), list.get(), &value);
    python.expect("hex((3**200 - 1)//2)", hex_of(&value));
    python.run();
}

using evaluate_faults = fresh_exact_system;

TEST_F(evaluate_faults, a_list_that_is_too_short_or_keeps_a_variable_is_told) {
    auto told = [&](const std::function<void()> &routine, const std::string &text) {
        unwinds(routine);
        EXPECT_NE(last_text.find(text), std::string::npos) << last_text;
        leave_all_levels();
    };
    {
        test_ring ring("17");
        poly_handle p(poly_of("x*y + 1"));
        evaluation_list one, kept;
        one.put(3);
        kept.put(3);
        kept.keep();
        int32_t value;
        told([&] { mod_all_poly_eval(p.get(), one.get(), &value); },
             "arg is NULL but q not number in mod_all_poly_eval. ");
        told([&] { mod_all_poly_eval(p.get(), kept.get(), &value); }, "arg->exp = 1 in mod_all_poly_eval. ");
    }
    test_ring ring("chain");
    poly_handle p(poly_of("x*y + 1"));
    evaluation_list one;
    one.put(3);
    number_handle value;
    told([&] { rat_all_poly_eval(p.get(), one.get(), &value); }, "arg is NULL but q not number in rat_all_poly_eval. ");
}

/* ---- lists that keep some ---- */

TEST_F(evaluate_test, what_a_list_keeps_stays_in_its_level) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(40); i++) {
            poly_shape shape = rand_shape(rnd);
            poly_handle p(rand_poly(rnd, shape)), image;
            evaluation_list list;
            flat_poly expected = flat(p.get());
            const int top = rnd.below(2); /* levels that stay whatever the list says */
            for (int level = 0; level < shape.variables; level++) {
                coef c;
                rand_point(rnd, c);
                bool keeps = rnd.one_in(2);
                if (keeps)
                    list.keep();
                else
                    list.put(&c.x);
                if (keeps || level < top) continue;
                poly_handle so_far(nested(expected));
                flat_poly value;
                if (!c.is_zero()) value[{}] = c;
                expected = plain_image(so_far.get(), static_cast<std::size_t>(level), value);
            }
            all_poly_eval(p.get(), list.get(), image.slot(), top);
            poly_handle wanted(nested(expected));
            if (!image) {
                EXPECT_TRUE(poly_iszero(wanted.get())) << name;
                continue;
            }
            expect_canonical(image.get());
            EXPECT_TRUE(poly_equal(image.get(), wanted.get()))
                << name << ": " << text_of(image.get()) << " and " << text_of(wanted.get());
        }
    }
}

TEST_F(evaluate_test, a_polynomial_that_evaluates_to_0_is_null) {
    poly_handle p(poly_of("x^2 - 4")), image(poly_of("17"));
    evaluation_list list;
    list.put(2);
    all_poly_eval(p.get(), list.get(), image.slot(), 0);
    EXPECT_EQ(image.get(), nullptr);
    old_all_poly_eval(p.get(), nullptr, image.slot(), 0);
    EXPECT_EQ(text_of(image.get()), "x^2 - 4"); /* an empty list: a copy */
}

/* ---- one variable ---- */

TEST_F(evaluate_test, a_polynomial_in_place_of_a_variable) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = 0; i < times(30); i++) {
            poly_shape shape;
            shape.variables = 3;
            shape.terms = rnd.one_in(3) && !flotemode ? 30 : 4;
            shape.degree = flotemode ? 2 : shape.terms; /* of floats exact */
            shape.digits = 2;
            poly_shape of_value;
            of_value.variables = 1 + rnd.below(2);
            of_value.terms = 1 + rnd.below(3);
            of_value.degree = 2;
            of_value.digits = 1;
            poly_handle p(rand_poly(rnd, shape)), value(rand_poly(rnd, of_value)), seen;
            poly_assign(value.get(), seen.slot());
            lowered(seen); /* one level down, as a polynomial of level 1 */
            flat_poly expected = plain_image(p.get(), 0, flat(seen.get()));
            replace_variable(p.slot(), 1, value.get());
            expect_canonical(p.get());
            poly_handle wanted(nested(expected));
            EXPECT_TRUE(poly_equal(p.get(), wanted.get())) << name;
        }
    }
}

TEST_F(evaluate_test, the_main_variable_at_a_number_keeps_its_level_or_not) {
    poly_handle p(poly_of("x^3*y + 2*x + y^2 + 5")), two(poly_of("2")), r;
    poly_at_numb(r.slot(), p.get(), two.get(), nullptr, 1);
    EXPECT_EQ(text_of(r.get()), "y^2 + 8*y + 9");
    expect_canonical(r.get());
    poly_at_numb(r.slot(), p.get(), two.get(), nullptr, 0);
    EXPECT_EQ(text_of(r.get()), "x^2 + 8*x + 9"); /* y has come to the top */
    case_one(p.slot(), two->num);
    EXPECT_TRUE(poly_equal(p.get(), r.get()));
    poly_handle constant(poly_of("x - 2"));
    poly_at_numb(constant.slot(), constant.get(), two.get(), nullptr, 1); /* in its own place */
    EXPECT_TRUE(poly_iszero(constant.get()));
    test_ring ring("5");
    poly_handle q(poly_of("4*x^2 + 3*y")), three(poly_of("3"));
    mod_poly_at_numb(q.slot(), q.get(), three.get(), nullptr, 1);
    EXPECT_EQ(text_of(q.get()), "3*y + 1"); /* 36 = 1 modulo 5 */
}

TEST_F(evaluate_test, operands_come_back_unchanged) {
    poly_handle p(poly_of("x^3*y + 2*x + y^2 + 5")), copy, out;
    poly_assign(p.get(), copy.slot());
    evaluation_list list;
    list.keep();
    list.put(poly_of("x + 7"));
    all_poly_eval(p.get(), list.get(), out.slot(), 0);
    EXPECT_TRUE(poly_equal(p.get(), copy.get()));
    EXPECT_EQ(text_of(list.get()->next->poly), "x + 7");
    EXPECT_EQ(text_of(out.get()), "x^3*z + 7*x^3 + 2*x + z^2 + 14*z + 54");
}

} // namespace tolvek
