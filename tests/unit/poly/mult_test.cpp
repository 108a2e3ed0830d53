#include "poly/mult.h"

#include "numbers/modular.h"
#include "poly/flat_dense.h"
#include "poly/flat_product.h"
#include "poly/flat_residues.h"
#include "poly/flat_uni.h"
#include "poly/mult_work.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/guards.h"

#include <cmath>
#include <functional>

namespace tolvek {

namespace {

struct mult_test : poly_test {
    void SetUp() override {
        poly_test::SetUp();
        laurent = 1;
    }
};

/* A setting of all cut-offs that leads products by one road. */
struct road {
    const char *name;
    int lists_cut, lean_cut, array_limit; /* poly_cutoff, fast_mult_cut, fast_gcd_size */
    int64_t flat_cut;
    flat_limits limits;
};
constexpr int64_t never = INT64_MAX;
constexpr int far = INT32_MAX;
constexpr uint64_t wide = uint64_t{1} << 20;
const road roads[] = {
    {"schoolbook", far, far, 0, never, {}},
    {"lists in halves", 2, 2, 0, never, {}},
    {"arrays of residues", far, far, 22008, never, {}},
    {"arrays in halves", 2, 2, 22008, never, {}},
    {"flat, as measured", far, far, 0, 0, flat_limit},
    {"flat, in cells", far, far, 0, 0, {wide, wide, wide, 0, 0, wide}},
    {"flat, in few cells", far, far, 0, 0, {20, 20, wide, 0, 0, wide}},
    {"flat, sorted", far, far, 0, 0, {0, 0, 0, wide, wide, wide}},
    {"flat, by exponent", far, far, 0, 0, {0, 0, 0, 0, 0, wide}},
    {"flat, by windows", far, far, 0, 0, {0, 0, 0, 0, 0, 0}},
    {"flat, by narrow windows and sorted", far, far, 0, 0, {0, 0, 0, 6, 6, 3}},
};

struct on_road {
    explicit on_road(const road &r)
        : lists(poly_cutoff, r.lists_cut), lean(fast_mult_cut, r.lean_cut), arrays(fast_gcd_size, r.array_limit),
          cut(flat_product_cut, r.flat_cut), limits(flat_limit, r.limits), most_cells(flat_dense_longest, 1 << 18) {}
    kept_value<int> lists, lean, arrays;
    kept_value<int64_t> cut;
    kept_value<flat_limits> limits;
    kept_value<uint64_t> most_cells; /* of transforms, which are for dense products */
};

/* a * b by every road, against the product of the terms in a table. */
void check_product(const polynode *a, const polynode *b, const std::string &ring) {
    poly_handle expected(nested(flat_product(flat(a), flat(b)))), kept_a, kept_b;
    poly_assign(a, kept_a.slot());
    poly_assign(b, kept_b.slot());
    for (const road &r : roads) {
        on_road way(r);
        poly_handle product;
        poly_mult(a, b, product.slot(), nullptr);
        expect_canonical(product.get());
        ASSERT_TRUE(poly_equal(product.get(), expected.get()))
            << r.name << ", ring " << ring << "\n(" << text_of(a) << ") * (" << text_of(b) << ")\nis "
            << text_of(expected.get()) << "\nnot " << text_of(product.get());
        ASSERT_TRUE(poly_equal(a, kept_a.get()) && poly_equal(b, kept_b.get())) << r.name << " changed an operand";
    }
    kept_value<uint64_t> most_cells(flat_dense_longest, 1 << 18);
    poly_extent xa, xb;
    measure_poly(a, &xa);
    measure_poly(b, &xb);
    if (is_constant(a) || is_constant(b) || !fits_flat_product(xa, xb)) return;
    const struct {
        const char *name;
        double cost;
        void (*mult)(const polynode *a, const poly_extent &xa, const polynode *b, const poly_extent &xb, polynode **p);
        uint32_t least_transform;
    } dense[] = {{"by transforms", transform_cost(xa, xb), mult_dense, 2},
                 {"by rows of residues", residues_cost(xa, xb), mult_residues, UINT32_MAX},
                 {"by transforms of residues", residues_cost(xa, xb), mult_residues, 2}};
    for (const auto &way : dense) {
        if (!std::isfinite(way.cost)) continue;
        kept_value<uni_limits> limits(uni_limit);
        uni_limit.mult = way.least_transform;
        poly_handle product;
        way.mult(a, xa, b, xb, product.slot());
        expect_canonical(product.get());
        ASSERT_TRUE(poly_equal(product.get(), expected.get()))
            << way.name << ", ring " << ring << "\n(" << text_of(a) << ") * (" << text_of(b) << ")\nis "
            << text_of(expected.get()) << "\nnot " << text_of(product.get());
    }
}

std::string product_text(const std::string &a, const std::string &b) {
    poly_handle x(poly_of(a)), y(poly_of(b)), product;
    check_product(x.get(), y.get(), "");
    poly_mult(x.get(), y.get(), product.slot(), nullptr);
    return text_of(product.get());
}

} // namespace

TEST_F(mult_test, every_road_gives_the_product_of_the_terms) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = times(60); i > 0; i--) {
            const poly_shape shape = rand_shape(rnd, true);
            poly_handle a(rand_poly(rnd, shape)), b(rand_poly(rnd, shape));
            check_product(a.get(), b.get(), name);
            if (HasFatalFailure()) return;
        }
    }
}

TEST_F(mult_test, dense_polynomials_in_one_and_two_variables) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = times(12); i > 0; i--) {
            const int variables = 1 + rnd.below(2);
            const int terms = variables == 1 ? 60 : 12;
            const poly_shape shape{variables, terms, terms, 4, rnd.one_in(3)};
            poly_handle a(rand_poly(rnd, shape)), b(rand_poly(rnd, shape));
            check_product(a.get(), b.get(), name);
            if (HasFatalFailure()) return;
        }
    }
}

TEST_F(mult_test, even_moduli_and_others_that_are_no_primes) {
    for (const std::string name : {"4", "6", "9", "1000000", "2147483641", "2147483644"}) {
        test_ring ring(name);
        for (int i = times(12); i > 0; i--) {
            const poly_shape shape{1 + rnd.below(2), 40, 40, 4, false};
            poly_handle a(rand_poly(rnd, shape)), b(rand_poly(rnd, shape));
            check_product(a.get(), b.get(), name);
            if (HasFatalFailure()) return;
        }
    }
}

TEST_F(mult_test, an_operand_may_be_the_other_one_and_the_destination) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = times(10); i > 0; i--) {
            poly_handle a(rand_poly(rnd, rand_shape(rnd))), b(rand_poly(rnd, rand_shape(rnd)));
            poly_handle square(nested(flat_product(flat(a.get()), flat(a.get()))));
            poly_handle product(nested(flat_product(flat(a.get()), flat(b.get()))));
            for (const road &r : roads) {
                on_road way(r);
                poly_handle x, y, z;
                poly_assign(a.get(), x.slot());
                poly_assign(a.get(), y.slot());
                poly_assign(a.get(), z.slot());
                poly_mult(x.get(), x.get(), x.slot(), nullptr);
                EXPECT_TRUE(poly_equal(x.get(), square.get())) << r.name;
                poly_mult(y.get(), b.get(), y.slot(), nullptr);
                EXPECT_TRUE(poly_equal(y.get(), product.get())) << r.name;
                poly_mult(b.get(), z.get(), z.slot(), nullptr);
                EXPECT_TRUE(poly_equal(z.get(), product.get())) << r.name;
            }
        }
    }
}

TEST_F(mult_test, long_coefficients_of_unlike_lengths) {
    for (int i = times(40); i > 0; i--) {
        poly_shape small{2, 6, 8, 1, false}, large{2, 6, 8, 40, false};
        poly_handle a(rand_poly(rnd, large)), b(rand_poly(rnd, rnd.one_in(2) ? small : large));
        check_product(a.get(), b.get(), "chain");
        if (HasFatalFailure()) return;
    }
}

TEST_F(mult_test, sums_at_the_ends_of_one_two_and_three_words) {
    /* k terms of coefficient c squared: the middle coefficient is k c^2. c = 2^bits - 1 brings it to 64, 128 and 192
       bits and just below, for both signs. */
    for (int bits : {30, 31, 32, 56, 60, 61, 62, 63, 64, 94, 95, 96})
        for (int sign : {1, -1}) {
            poly_handle a, b;
            poly_set(0, a.slot());
            flat_poly terms;
            coef c(1);
            for (int i = 0; i < bits; i++) num_add(&c.x, &c.x, &c.x);
            sub(&c.x, &number_1, &c.x);
            for (int k = 0; k < 16; k++) terms[{k}] = c;
            free_poly(a.slot());
            *a.slot() = nested(terms);
            *b.slot() = nested(terms);
            if (sign < 0) poly_inplace(b.get());
            check_product(a.get(), b.get(), "chain");
            if (HasFatalFailure()) return;
        }
}

/* The field with 256 elements, held in tables: its products are those of polynomials over two elements. */
TEST_F(mult_test, a_field_in_tables) {
    test_ring ring("256");
    kept_value<int> field(finf, 1), kind(f256, 1);
    EXPECT_EQ(product_text("x + 1", "x + 1"), "x^2 + 1");
    EXPECT_EQ(product_text("2*x*y + 1", "128*x + 3*z"), "29*x^2*y + 6*x*y*z + 128*x + 3*z");
    for (int i = times(40); i > 0; i--) {
        poly_handle a(rand_poly(rnd, rand_shape(rnd))), b(rand_poly(rnd, rand_shape(rnd)));
        check_product(a.get(), b.get(), "256 elements");
        if (HasFatalFailure()) return;
    }
}

/* The route is chosen by size; the values of product and factors agree at points modulo a prime. */
TEST_F(mult_test, large_products_have_the_values_of_their_factors) {
    const on_road chosen({"", 20, 10, 22008, 150, flat_limit});
    flat_dense_longest = uint64_t{1} << 25;
    const int32_t prime = 2147483629;
    auto value = [&](const polynode *p, uint64_t seed) {
        std::function<uint64_t(const polynode *, int)> at = [&](const polynode *q, int level) {
            uint64_t sum = 0;
            for (; q; q = q->next) {
                const uint64_t x = (seed * 48271 + static_cast<uint64_t>(level) * 69621) % 2147483629;
                uint64_t c = 0, power = 1;
                if (q->is_number) {
                    const uint32_t r = lintmode ? static_cast<uint32_t>(q->num->lint_val)
                                                : chain_modulo(q->num, static_cast<uint32_t>(prime));
                    c = r;
                } else {
                    c = at(q->poly, level + 1);
                }
                for (int32_t e = q->expo; e > 0; e--) power = power * x % 2147483629;
                sum = (sum + c * power) % 2147483629;
            }
            return sum;
        };
        return at(p, 1);
    };
    const poly_shape shapes[] = {{1, 400, 500, 1, false}, {1, 300, 5000, 9, false}, {2, 40, 45, 2, false},
                                 {3, 14, 15, 1, false},   {3, 9, 400, 1, false},    {4, 7, 8, 3, false},
                                 {6, 4, 5, 1, false},     {5, 5, 100, 2, false},    {1, 60, 64, 60, false}};
    for (const std::string name : {"chain", "2147483629"}) {
        test_ring ring(name);
        for (const poly_shape &shape : shapes) {
            poly_handle a(rand_nonzero_poly(rnd, shape)), b(rand_nonzero_poly(rnd, shape)), p, square;
            poly_mult(a.get(), b.get(), p.slot(), nullptr);
            poly_mult(a.get(), a.get(), square.slot(), nullptr);
            expect_canonical(p.get());
            expect_canonical(square.get());
            for (uint64_t seed : {uint64_t{1}, rnd() % 1000000}) {
                const uint64_t va = value(a.get(), seed), vb = value(b.get(), seed);
                EXPECT_EQ(value(p.get(), seed), va * vb % 2147483629) << name << " " << shape.variables;
                EXPECT_EQ(value(square.get(), seed), va * va % 2147483629) << name << " " << shape.variables;
            }
        }
    }
}

TEST_F(mult_test, a_zero_operand_gives_the_canonical_zero) {
    EXPECT_EQ(product_text("0", "x^2*y + 1"), "0");
    EXPECT_EQ(product_text("x - z", "0"), "0");
    EXPECT_EQ(product_text("0", "0"), "0");
}

TEST_F(mult_test, constants_stay_lone_number_terms) {
    poly_handle a(poly_of("6")), b(poly_of("7")), p;
    poly_mult(a.get(), b.get(), p.slot(), nullptr);
    EXPECT_TRUE(is_constant(p.get()));
    EXPECT_EQ(text_of(p.get()), "42");
}

TEST_F(mult_test, zero_divisors_leave_no_zero_terms) {
    test_ring ring("6");
    EXPECT_EQ(product_text("2", "3*x + 1"), "2");
    EXPECT_EQ(product_text("2*x + 1", "3*x + 1"), "5*x + 1");
    EXPECT_EQ(product_text("3", "2*x + 4"), "0");
    EXPECT_EQ(product_text("3*y", "2*x + 4*z"), "0");
    EXPECT_EQ(product_text("3*x + 3", "2*x*y + 2*z + 4"), "0");
    EXPECT_EQ(product_text("2*x*y + 1", "3*x*z + 5"), "4*x*y + 3*x*z + 5");
}

TEST_F(mult_test, floats_that_vanish_leave_no_zero_terms) {
    test_ring ring("float");
    poly_handle a(poly_of("x + 1")), p;
    number tiny{};
    tiny.flote_val = 1e-3000L;
    scalar_by_poly(&tiny, a.get(), a.slot());
    poly_mult(a.get(), a.get(), p.slot(), nullptr);
    expect_canonical(p.get());
    EXPECT_EQ(text_of(p.get()), "0");
}

/* The sum of row products comes in the order of the outer rows: 1e30 + 1 - 1e30 is 0, and 1e30 - 1e30 + 1 is 1. */
TEST_F(mult_test, floats_are_summed_in_the_order_of_the_rows) {
    test_ring ring("float");
    on_road schoolbook(roads[0]);
    const long double big = 1e30L;
    auto poly3 = [](long double c2, long double c1, long double c0) {
        flat_poly terms;
        int32_t e = 2;
        for (long double c : {c2, c1, c0}) {
            coef v;
            v.x.flote_val = c;
            terms[{e--}] = v;
        }
        return nested(terms);
    };
    poly_handle all_ones(poly3(1, 1, 1)), first(poly3(big, 1, -big)), second(poly3(big, -big, 1)), p;
    auto middle = [](const polynode *q) { /* the coefficient of x^2 */
                                          while (q && q->expo > 2) q = q->next;
                                          return q && q->expo == 2 ? q->poly->num->flote_val : 0;
    };
    /* The outer operand is the first one; its term x^2 meets the last term of the other. */
    poly_mult(all_ones.get(), first.get(), p.slot(), nullptr);
    EXPECT_EQ(middle(p.get()), (-big + 1) + big);
    poly_mult(all_ones.get(), second.get(), p.slot(), nullptr);
    EXPECT_EQ(middle(p.get()), (1 - big) + big);
    poly_mult(second.get(), all_ones.get(), p.slot(), nullptr);
    EXPECT_EQ(middle(p.get()), (big - big) + 1);
}

TEST_F(mult_test, wrapping_integers_may_vanish) {
    test_ring ring("word");
    EXPECT_EQ(product_text("65536*x + 1", "65536*x + 1"), "131072*x + 1");
    EXPECT_EQ(product_text("65536*x*y", "65536*y"), "0");
}

TEST_F(mult_test, span_decides_what_is_sparse) {
    poly_handle p(poly_of("x^12 + x^3")), q(poly_of("x^16 + x^3")), r(poly_of("x^15 + x^3"));
    int32_t last;
    int flag = 1;
    EXPECT_EQ(exp_poly_length(p.get(), &last, &flag), 2);
    EXPECT_EQ(last, 3);
    EXPECT_EQ(flag, 0); /* not a modular ring */
    EXPECT_EQ(exp_poly_length(q.get(), &last, &flag), -2);
    EXPECT_EQ(exp_poly_length(r.get(), &last, &flag), 2);
}

TEST_F(mult_test, the_lean_case_is_one_variable_over_plain_residues) {
    test_ring ring("46337");
    auto lean = [](const std::string &text) {
        poly_handle p(poly_of(text));
        int32_t last;
        int flag = 1;
        exp_poly_length(p.get(), &last, &flag);
        return flag;
    };
    EXPECT_EQ(lean("x^5 + 3*x + 1"), 1);
    EXPECT_EQ(lean("x^5 + 3*x"), 1);
    EXPECT_EQ(lean("x^5 + 3*x*y + 1"), 0);
    EXPECT_EQ(lean("y + 1"), 0);
    EXPECT_EQ(lean("x + x^-1"), 0);
}

/* Cutting at the exponent s alone would leave the low part of x^100..x^120 empty. */
TEST_F(mult_test, halves_are_cut_above_the_lowest_exponent) {
    std::string high, negative;
    for (int e = 120; e >= 100; e--) high += std::to_string(e % 7 + 1) + "*x^" + std::to_string(e) + "*y + ";
    for (int e = 10; e >= -10; e--) negative += std::to_string(e * e + 1) + "*x^" + std::to_string(e) + " + ";
    poly_handle a(poly_of(high + "z*x^100")), b(poly_of(negative + "y*x^-10"));
    check_product(a.get(), a.get(), "chain");
    check_product(a.get(), b.get(), "chain");
    check_product(b.get(), b.get(), "chain");
}

TEST_F(mult_test, many_levels_and_skipped_ones) {
    EXPECT_EQ(product_text("v + 1", "v - 1"), "v^2 - 1");
    EXPECT_EQ(product_text("x*v", "y*r"), "x*y*v*r");
    EXPECT_EQ(product_text("t + z", "t - z"), "-z^2 + t^2");
    EXPECT_EQ(product_text("x^-1", "x"), "1");
    EXPECT_EQ(product_text("x^-1*y + x", "x*y^-1"), "x^2*y^-1 + 1");
}

TEST_F(mult_test, one_term_times_a_polynomial) {
    for (const std::string &name : test_rings) {
        test_ring ring(name);
        for (int i = times(20); i > 0; i--) {
            poly_handle a(rand_nonzero_poly(rnd, rand_shape(rnd, true))), b(rand_poly(rnd, rand_shape(rnd, true))), p;
            node_by_poly(a.get(), b.get(), p.slot());
            poly_handle first(copy_term(a.get()));
            expect_canonical(p.get());
            poly_handle expected(nested(flat_product(flat(first.get()), flat(b.get()))));
            EXPECT_TRUE(poly_equal(p.get(), expected.get()));
        }
    }
}

/* ---- exponents out of range ---- */

using mult_range_test = fresh_exact_system;

TEST_F(mult_range_test, an_exponent_beyond_31_bits_is_error_32_and_the_operand_survives) {
    poly_handle x(poly_of("x^268435455*y + 1")), p;
    poly_assign(x.get(), p.slot());
    for (int i = 2; i <= 8; i++) {
        poly_mult(p.get(), x.get(), p.slot(), nullptr);
        EXPECT_EQ(p->expo, i * 268435455);
    }
    EXPECT_TRUE(unwinds([&] { poly_mult(p.get(), x.get(), p.slot(), nullptr); }));
    EXPECT_NE(last_text.find(message_text(32)), std::string::npos) << last_text;
    EXPECT_EQ(p->expo, 2147483640);
    EXPECT_EQ(tolvek::text_of(x.get()), "x^268435455*y + 1");
    poly_handle u(poly_of("x^-268435455"));
    poly_mult(u.get(), x.get(), p.slot(), nullptr);
    EXPECT_EQ(tolvek::text_of(p.get()), "y + x^-268435455");
}

TEST_F(mult_range_test, the_range_holds_at_every_level) {
    poly_handle x(poly_of("x + y^2147483647")), y(poly_of("y + 1")), z(poly_of("z*x^-2147483647")), p;
    EXPECT_TRUE(unwinds([&] { poly_mult(x.get(), y.get(), p.slot(), nullptr); }));
    EXPECT_FALSE(p);
    EXPECT_TRUE(unwinds([&] { poly_mult(z.get(), z.get(), p.slot(), nullptr); }));
    poly_mult(z.get(), x.get(), p.slot(), nullptr);
    EXPECT_EQ(tolvek::text_of(p.get()), "x^-2147483646*z + x^-2147483647*y^2147483647*z");
}

} // namespace tolvek
