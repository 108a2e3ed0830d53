/* Divisions, cofactors, values and derivatives that are left at a safe point, and how far apart safe points lie. */
#include "numbers/handles.h"
#include "poly/derivative.h"
#include "poly/divide.h"
#include "poly/euclid.h"
#include "poly/evaluate.h"
#include "poly/half_gcd.h"
#include "poly/mult.h"
#include "poly/power_modulo.h"
#include "support/safe_point_gaps.h"
#include "support/safe_points.h"
#include "top/guards.h"

namespace tolvek {

namespace {

using divide_interrupt_test = poly_test;

/* The operands of one routine, and what it gives. */
struct division_at_work {
    poly_handle a, b; /* kept */
    poly_handle q, r, c;
};

struct road {
    const char *name;
    bool monic, one_variable; /* the divisor and the operands that it wants */
    void (*run)(division_at_work &w);
};

const road roads[] = {
    {"gen_poly_divide", false, false,
     [](division_at_work &w) {
         int failed;
         gen_poly_divide(w.a.get(), w.b.get(), w.q.slot(), polynames, &failed);
     }},
    {"fast_poly_divide", false, false,
     [](division_at_work &w) {
         poly_handle in_place;
         poly_assign(w.a.get(), in_place.slot());
         fast_poly_divide(in_place.slot(), w.b.get(), polynames, 1);
         in_place.release_to(w.q.slot());
     }},
    {"trial_poly_divide", false, false,
     [](division_at_work &w) { trial_poly_divide(w.a.get(), w.b.get(), w.q.slot(), polynames, 1); }},
    {"pseudo_div", false, false,
     [](division_at_work &w) { pseudo_div(w.a.get(), w.b.get(), w.q.slot(), w.r.slot(), 1, polynames); }},
    {"pseudo_div_no_q", false, false,
     [](division_at_work &w) { pseudo_div_no_q(w.a.get(), w.b.get(), w.r.slot(), polynames, 1); }},
    {"poly_mod_and_div", false, false,
     [](division_at_work &w) {
         poly_mod_and_div(w.a.get(), w.b.get(), w.q.slot(), w.r.slot(), w.c.slot(), polynames);
     }},
    {"basic_poly_divide by lists", true, false,
     [](division_at_work &w) { basic_poly_divide(w.a.get(), w.b.get(), w.q.slot(), w.r.slot(), 0); }},
    {"basic_poly_divide", true, false,
     [](division_at_work &w) { basic_poly_divide(w.a.get(), w.b.get(), w.q.slot(), w.r.slot(), 1); }},
    {"fast_mod_and_div", true, false,
     [](division_at_work &w) { fast_mod_and_div(w.a.get(), w.b.get(), w.r.slot(), w.q.slot(), polynames, 0); }},
    {"karat_mod_and_div", true, false,
     [](division_at_work &w) { karat_mod_and_div(0, w.a.get(), w.b.get(), w.r.slot(), w.q.slot(), polynames); }},
    {"three_case", true, false,
     [](division_at_work &w) { three_case(0, w.a.get(), w.b.get(), w.r.slot(), w.q.slot(), polynames); }},
    {"poly_power_modulo", true, false,
     [](division_at_work &w) {
         numnode digit{5, nullptr};
         number e{};
         e.num_head = e.num_tail = &digit;
         e.num_len = 1;
         poly_power_modulo(w.a.get(), &e, w.b.get(), w.r.slot());
     }},
    {"reverse_euclid", false, false,
     [](division_at_work &w) {
         poly_handle small(poly_of("x^2 + 3*x*y + 1"));
         reverse_euclid(w.b.get(), small.get(), w.q.slot(), w.r.slot(), w.c.slot(), polynames);
     }},
    {"extended_poly_gcd", true, true,
     [](division_at_work &w) { extended_poly_gcd(w.a.get(), w.b.get(), w.q.slot(), w.r.slot(), w.c.slot()); }},
    {"rev_euclid", true, true,
     [](division_at_work &w) { rev_euclid(w.a.get(), w.b.get(), w.r.slot(), w.c.slot(), polynames); }},
    {"poly_diff", false, false,
     [](division_at_work &w) {
         poly_handle in_place;
         poly_assign(w.a.get(), in_place.slot());
         general_poly_diff(in_place.slot(), 2, 2);
         in_place.release_to(w.q.slot());
     }},
    {"all_poly_eval", false, false,
     [](division_at_work &w) {
         evaluation_list list;
         list.keep();
         list.put(3);
         all_poly_eval(w.a.get(), list.get(), w.q.slot(), 0);
     }},
};

/* A product with the divisor, so that every division has work to do. */
void prepare(const road &of, test_random &rnd, division_at_work &w) {
    const int variables = of.one_variable ? 1 : 2;
    const poly_shape small{variables, 5, of.one_variable ? 30 : 5, 1, false};
    for (poly_handle *p : {&w.a, &w.b}) {
        poly_handle head(poly_of("x^9"));
        do free_poly(p->slot()), *p->slot() = rand_nonzero_poly(rnd, small);
        while (is_constant(p->get()));
        if (of.monic || p == &w.a) {
            flat_poly sum = flat(p->get());
            sum[{of.one_variable ? 40 : 9}] = coef(1);
            free_poly(p->slot());
            *p->slot() = nested(sum);
        }
    }
    poly_mult(w.a.get(), w.b.get(), w.a.slot(), nullptr);
}

} // namespace

TEST_F(divide_interrupt_test, what_is_left_loses_no_record) {
    kept_value<int> halves(div_poly_cutoff, 4);
    for (const std::string name : {"chain", "46337"})
        for (const road &of : roads) {
            if (of.one_variable && name == "chain") continue;
            test_ring ring(name);
            division_at_work w;
            prepare(of, rnd, w);
            if (!of.one_variable && w.b->expo < 1) continue; /* b without the top variable */
            leave_everywhere(std::string(of.name) + ", " + name, w.q.slot(), [&] {
                free_poly(w.r.slot());
                free_poly(w.c.slot());
                of.run(w);
                free_poly(w.r.slot());
                free_poly(w.c.slot());
            });
        }
}

/* A nested level shows the operands at the safe point itself. */
TEST_F(divide_interrupt_test, stored_operands_are_whole_to_the_bit_at_200_random_safe_points) {
    kept_value<int> halves(div_poly_cutoff, 4);
    int left = 0;
    for (int i = 0; left < 200 && i < 20000; i++) {
        const road &of = roads[static_cast<std::size_t>(i) % std::size(roads)];
        test_ring ring(std::string(of.one_variable || i % 2 ? "46337" : "chain"));
        division_at_work w;
        prepare(of, rnd, w);
        if (!of.one_variable && w.b->expo < 1) continue;
        if (leave_at_random(rnd, {w.a.get(), w.b.get()}, [&] { of.run(w); })) left++;
        ASSERT_FALSE(HasFailure()) << of.name;
    }
    EXPECT_EQ(left, 200);
}

/* ---- the distance of safe points ---- */

TEST_F(divide_interrupt_test, safe_points_lie_close_together) {
    const auto check = [](const std::string &what, const std::function<void()> &routine) {
        EXPECT_LT(longest_gap_of(routine), most_gap) << what;
    };
    for (const std::string name : {"chain", "46337", "2147483629"}) {
        test_ring ring(name);
        poly_handle q, r;
        int failed;
        const bool field = name != "chain";
        poly_handle f(poly_of("x + y + z + 1")), g(poly_of("x - 2*y + 3*z - 1"));
        compute_power(f.slot(), 16, nullptr);
        compute_power(g.slot(), 8, nullptr);
        poly_handle product;
        poly_mult(f.get(), g.get(), product.slot(), nullptr);
        check("exact " + name, [&] { gen_poly_divide(product.get(), g.get(), q.slot(), polynames, &failed); });
        check("trial " + name, [&] { trial_poly_divide(product.get(), f.get(), q.slot(), polynames, 1); });
        check("pseudo " + name, [&] { pseudo_div(product.get(), g.get(), q.slot(), r.slot(), 1, polynames); });
        evaluation_list list;
        list.put(12345);
        list.put(678);
        list.keep();
        check("value " + name, [&] { all_poly_eval(product.get(), list.get(), q.slot(), 0); });
        check("derivative " + name, [&] { general_poly_diff(product.slot(), 3, 2); });
        if (!field) continue;
        flat_poly dense;
        for (int32_t e = 1; e <= 20000; e++) dense[{e}] = coef(1 + rnd.below(46000));
        poly_handle a(nested(dense));
        dense.erase(dense.begin(), std::next(dense.begin(), 10000));
        dense[{}] = coef(1);
        poly_handle b(nested(dense));
        check("one variable " + name, [&] { basic_poly_divide(a.get(), b.get(), q.slot(), r.slot(), 1); });
        check("lists " + name, [&] { fast_mod_and_div(product.get(), f.get(), r.slot(), q.slot(), nullptr, 0); });
        check("gcd " + name, [&] { fastest_poly_gcd(a.get(), b.get(), q.slot(), 1, polynames); });
        poly_handle s, t;
        check("cofactors " + name, [&] { extended_poly_gcd(a.get(), b.get(), q.slot(), s.slot(), t.slot()); });
        poly_handle sparse(poly_of("x^100000000 + x^77777777 + 1")), cubic(poly_of("x^3 - 2*x + 5"));
        check("gaps " + name, [&] { poly_div_no_q(sparse.get(), cubic.get(), r.slot()); });
    }
}

} // namespace tolvek
