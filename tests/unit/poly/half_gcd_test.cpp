#include "poly/half_gcd.h"

#include "poly/mult.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/guards.h"

namespace tolvek {

namespace {

struct half_gcd_test : poly_test {
    kept_value<uni_limits> as_found{uni_limit};

    /* A random array of the degree; zero for -1. */
    void random_array(int degree, uni_poly *a) {
        a->clear();
        for (int i = 0; i <= degree; i++) a->push(static_cast<uint32_t>(rnd.below(modulus)));
        if (degree >= 0 && uni_lead(*a) == 0) (*a)[static_cast<std::size_t>(degree)] = 1;
    }
};

uni_poly array_of(std::initializer_list<uint32_t> entries) {
    uni_poly a;
    for (uint32_t c : entries) a.push(c);
    return a;
}

std::vector<uint32_t> entries(const uni_poly &a) { return {a.begin(), a.end()}; }

/* Schoolbook: a * b + c modulo the modulus. */
uni_poly plain_sum(const uni_poly &a, const uni_poly &b, const uni_poly &c) {
    const auto p = static_cast<uint64_t>(int32_t{modulus});
    const std::size_t length = a.empty() || b.empty() ? 0 : a.size() + b.size() - 1;
    uni_poly z(std::max(length, c.size()));
    std::fill(z.begin(), z.end(), 0);
    std::copy(c.begin(), c.end(), z.begin());
    for (std::size_t i = 0; i < a.size(); i++)
        for (std::size_t k = 0; k < b.size(); k++)
            z[i + k] = static_cast<uint32_t>((z[i + k] + uint64_t{a[i]} * b[k]) % p);
    uni_trim(&z);
    return z;
}

/* [a b; c d] [x; y] = [u; v] */
void expect_invariant(const hg_matrix &m, const uni_poly &x, const uni_poly &y, const uni_poly &u, const uni_poly &v) {
    const uni_poly zero, first = plain_sum(m.b, y, zero), second = plain_sum(m.d, y, zero);
    EXPECT_EQ(entries(plain_sum(m.a, x, first)), entries(u));
    EXPECT_EQ(entries(plain_sum(m.c, x, second)), entries(v));
    const uni_poly ad = plain_sum(m.a, m.d, zero), bc = plain_sum(m.b, m.c, zero);
    const uni_poly det = plain_sum(bc, array_of({static_cast<uint32_t>(modulus - 1)}), ad);
    EXPECT_EQ(entries(det), std::vector<uint32_t>{m.odd ? static_cast<uint32_t>(modulus - 1) : 1});
}

const std::vector<std::string> fields = {"3", "46337", "46349", "65521", "2147483629"};

} // namespace

TEST_F(half_gcd_test, a_division_leaves_what_times_the_divisor_with_the_quotient_gives_the_dividend) {
    for (const std::string &name : fields) {
        test_ring ring(name);
        for (int i = times(60); i > 0; i--) {
            uni_poly x, y, q, rest;
            random_array(rnd.below(40) - 1, &y);
            if (y.empty()) continue;
            const bool one_more = rnd.one_in(2);
            random_array(one_more ? static_cast<int>(y.size()) : rnd.below(60) - 1, &x);
            uni_copy(x, &rest);
            const bool zero = one_more ? onevar_one_div(&rest, y, &q) : onevar_array_div_mod(&rest, y, &q);
            EXPECT_EQ(zero, rest.empty());
            EXPECT_LT(uni_degree(rest), uni_degree(y));
            EXPECT_EQ(entries(plain_sum(q, y, rest)), entries(x));
            uni_poly again;
            uni_copy(x, &again);
            EXPECT_EQ(one_more ? onevar_one(&again, y) : onevar_array_mod(&again, y), zero);
            EXPECT_EQ(entries(again), entries(rest));
        }
    }
}

TEST_F(half_gcd_test, divisions_of_the_least_degrees) {
    test_ring ring("7");
    uni_poly x = array_of({3, 2}), q;
    EXPECT_TRUE(onevar_one_div(&x, array_of({4}), &q)); /* 2x + 3 = 4 (4x + 6) */
    EXPECT_EQ(entries(q), (std::vector<uint32_t>{6, 4}));
    x = array_of({3, 2});
    EXPECT_FALSE(onevar_array_div_mod(&x, array_of({1, 1}), &q)); /* 2 (x + 1) + 1 */
    EXPECT_EQ(entries(q), (std::vector<uint32_t>{2}));
    EXPECT_EQ(entries(x), (std::vector<uint32_t>{1}));
    x = array_of({1, 0, 1});
    EXPECT_FALSE(onevar_one_div(&x, array_of({1, 1}), &q)); /* (x - 1)(x + 1) + 2 */
    EXPECT_EQ(entries(q), (std::vector<uint32_t>{6, 1}));
    EXPECT_EQ(entries(x), (std::vector<uint32_t>{2}));
    x = array_of({5, 0, 0, 0, 0, 1}); /* the remainder falls by more than one degree: x^5 + 5 by x^4 */
    EXPECT_FALSE(onevar_array_mod(&x, array_of({0, 0, 0, 0, 1})));
    EXPECT_EQ(entries(x), (std::vector<uint32_t>{5}));
}

TEST_F(half_gcd_test, half_of_the_steps_keep_their_invariant_on_all_roads) {
    for (const std::string &name : fields) {
        test_ring ring(name);
        for (int n : {0, 1, 2, 3, 90, 98, 99, 100, 101, 110}) {
            uni_poly x, y, common;
            random_array(n, &x);
            random_array(rnd.one_in(3) ? n : rnd.below(n + 2) - 1, &y);
            if (n > 50 && rnd.one_in(2)) { /* a common factor of half the degree */
                random_array(n / 2, &common);
                random_array(n - n / 2, &x);
                random_array(n - n / 2 - rnd.below(3), &y);
                x = plain_sum(x, common, {});
                y = plain_sum(y, common, {});
            }
            for (const uint32_t least : {4u, 100u, 800u}) {
                uni_limit.half_gcd = least;
                using road = void (*)(uni_poly *, uni_poly *, hg_matrix *);
                for (const road half : {&euclid_onevar, &parthg}) {
                    uni_poly u, v;
                    uni_copy(x, &u);
                    uni_copy(y, &v);
                    hg_matrix m;
                    half(&u, &v, &m);
                    expect_invariant(m, x, y, u, v);
                    const int64_t h = (uni_degree(x) + 1) / 2;
                    EXPECT_TRUE(uni_degree(u) >= h && uni_degree(v) < h) << name << " " << n;
                    if (HasFailure()) return;
                    uni_poly s, t;
                    uni_copy(y, &s); /* the operands in the other order */
                    uni_copy(x, &t);
                    if (x.size() != y.size()) {
                        fullhg(&s, &t);
                        EXPECT_TRUE(uni_equal(s, u) && uni_equal(t, v));
                    }
                }
            }
        }
    }
}

TEST_F(half_gcd_test, complete_gcds_by_all_roads_have_the_planted_factor) {
    for (const std::string &name : fields) {
        test_ring ring(name);
        const uni_field f = uni_field::in_force();
        /* sums of the degrees on both sides of 4000, and of the sizes from which halves are taken */
        for (int sum : {0, 1, 2, 5, 198, 199, 200, 3999, 4000, 4001}) {
            const int factor = sum / 6;
            uni_poly a, b, g, x, y;
            random_array(sum - sum / 2 - factor, &a);
            random_array(sum / 2 - factor, &b);
            random_array(factor, &g);
            uni_mult(f, a, g, &x);
            uni_mult(f, b, g, &y);
            uni_limit.gcd = sum < 1000 ? 4 : 1500;
            uni_limit.half_gcd = sum < 1000 ? 4 : 300;
            hgcd_state halves, plain;
            for (hgcd_state *state : {&halves, &plain}) {
                uni_copy(x, &state->xx);
                uni_copy(y, &state->yy);
            }
            hgcd(&halves);
            simple_onevar_gcd(&plain);
            for (hgcd_state *state : {&halves, &plain}) {
                EXPECT_TRUE(state->yy.empty());
                EXPECT_EQ(state->found, uni_degree(state->xx) > 0);
                EXPECT_TRUE(uni_divides(f, state->xx, g, nullptr)) << name << " " << sum;
                EXPECT_TRUE(uni_divides(f, x, state->xx, nullptr) && uni_divides(f, y, state->xx, nullptr));
                uni_make_monic(f, &state->xx);
            }
            EXPECT_TRUE(uni_equal(halves.xx, plain.xx));
        }
    }
}

TEST_F(half_gcd_test, gcds_with_0_and_of_coprime_operands) {
    test_ring ring("7");
    hgcd_state state;
    state.xx = array_of({1, 1});
    hgcd(&state);
    EXPECT_EQ(entries(state.xx), (std::vector<uint32_t>{1, 1}));
    EXPECT_TRUE(state.found && state.yy.empty());
    std::swap(state.xx, state.yy);
    simple_onevar_gcd(&state);
    EXPECT_EQ(entries(state.xx), (std::vector<uint32_t>{1, 1}));
    EXPECT_TRUE(state.found && state.yy.empty());
    for (auto *road : {&hgcd, &simple_onevar_gcd}) {
        state.xx = array_of({1, 0, 1}); /* x^2 + 1 has no root modulo 7 */
        state.yy = array_of({5, 1});
        road(&state);
        EXPECT_EQ(uni_degree(state.xx), 0);
        EXPECT_FALSE(state.found);
    }
    uni_poly x = array_of({0, 1}), y = array_of({3});
    euclid_total(&x, &y);
    EXPECT_TRUE(uni_degree(x) == 0 && y.empty());
}

TEST_F(half_gcd_test, lists_of_terms_and_their_matrix) {
    for (const std::string &name : fields) {
        test_ring ring(name);
        for (int i = times(30); i > 0; i--) {
            const poly_shape one{1, 12, 30, 1, false};
            poly_handle x(rand_nonzero_poly(rnd, one)), y(rand_poly(rnd, one));
            if (x->expo < y->expo) std::swap(*x.slot(), *y.slot());
            const flat_poly of_x = flat(x.get()), of_y = flat(y.get());
            const int32_t h = (x->expo + 1) / 2;
            const bool odd_ones = rnd.one_in(2);
            poly_handle a, b, c, d;
            uni_limit.half_gcd = 4;
            (odd_ones ? emgcd_basic : emgcd_full)(x.slot(), y.slot(), a.slot(), b.slot(), c.slot(), d.slot(), 1);
            for (const polynode *p : {x.get(), y.get(), a.get(), b.get(), c.get(), d.get()}) expect_canonical(p);
            poly_handle first(nested(flat_sum(flat_product(flat(a.get()), of_x), flat_product(flat(b.get()), of_y))));
            poly_handle second(nested(flat_sum(flat_product(flat(c.get()), of_x), flat_product(flat(d.get()), of_y))));
            EXPECT_TRUE(poly_equal(first.get(), x.get()) && poly_equal(second.get(), y.get())) << name;
            EXPECT_TRUE(x->expo >= h && (poly_iszero(y.get()) || y->expo < h));
        }
    }
    test_ring ring("7");
    poly_handle x(poly_of("x^2 + 1")), y(poly_of("x + 1")), a, b, c, d;
    emgcd_fastest(x.slot(), y.slot(), a.slot(), b.slot(), c.slot(),
                  d.slot()); /* one step: x^2 + 1 = (x - 1)(x + 1) + 2 */
    EXPECT_EQ(text_of(x.get()) + "; " + text_of(y.get()), "x + 1; 2");
    EXPECT_EQ(text_of(a.get()) + "; " + text_of(b.get()) + "; " + text_of(c.get()) + "; " + text_of(d.get()),
              "0; 1; 1; 6*x + 1");
    emgcd_full(x.slot(), y.slot(), a.slot(), b.slot(), c.slot(), d.slot(), 0);
    EXPECT_EQ(text_of(d.get()), "6*x + 1") << "not touched";
}

using half_gcd_faults = fresh_exact_system;

TEST_F(half_gcd_faults, a_divisor_0_and_operands_in_the_wrong_order_are_told) {
    test_ring ring("7");
    uni_poly x = array_of({1, 1}), y;
    unwinds([&] { onevar_array_mod(&x, y); });
    EXPECT_NE(last_text.find(" y is 0 in onevar_array_mod."), std::string::npos) << last_text;
    leave_all_levels();
    test_ring again("7");
    EXPECT_EQ(entries(x), (std::vector<uint32_t>{1, 1}));
    hg_matrix m;
    y = array_of({1, 2, 3});
    EXPECT_EQ(text_of([&] { parthg(&x, &y, &m); }), " in parthg deg yy > deg xx, 2, 1\n");
    EXPECT_EQ(entries(m.a), std::vector<uint32_t>{1});
    EXPECT_TRUE(m.b.empty() && m.c.empty());
    EXPECT_EQ(entries(x), (std::vector<uint32_t>{1, 1}));
}

} // namespace tolvek
