#include "poly/flat_divide.h"

#include "poly/divide.h"
#include "poly/divide_work.h"
#include "poly/mult.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/guards.h"

namespace tolvek {

namespace {

/* Small polynomials go this way too. */
struct flat_divide_test : poly_test {
    kept_value<flat_division_limits> limits{flat_division_limit, {0, 16384, 64}};
};

constexpr uint64_t wide = 1 << 20;
/* One slice for all, slices of some variables, slices of one term. */
const flat_division_limits cuts[] = {{0, wide, wide}, {0, 16384, 64}, {0, 64, wide}, {0, 16384, 2}, {0, 1, 1}};
const std::vector<std::string> domains = {"chain", "2", "3", "46337", "2147483629"};

/* The product by the table of terms. */
polynode *table_product(const polynode *a, const polynode *b) { return nested(flat_product(flat(a), flat(b))); }

polynode *table_sum(const polynode *a, const polynode *b) { return nested(flat_sum(flat(a), flat(b))); }

void expect_quotient(const polynode *a, const polynode *b, const polynode *expected, const std::string &ring) {
    poly_handle kept_a, kept_b;
    poly_assign(a, kept_a.slot());
    poly_assign(b, kept_b.slot());
    for (const flat_division_limits &cut : cuts) {
        flat_division_limit = cut;
        poly_handle q(poly_of("7*x"));
        const flat_verdict verdict = divide_flat(a, b, q.slot(), laurent);
        ASSERT_EQ(verdict, flat_verdict::divides) << ring << "\n" << text_of(a) << "\nby " << text_of(b);
        expect_canonical(q.get());
        ASSERT_TRUE(poly_equal(q.get(), expected))
            << ring << "\n"
            << text_of(a) << "\nby " << text_of(b) << "\nis " << text_of(expected) << "\nnot " << text_of(q.get());
        EXPECT_EQ(divide_flat(a, b, nullptr, laurent), flat_verdict::divides);
        EXPECT_TRUE(poly_equal(a, kept_a.get()) && poly_equal(b, kept_b.get()));
    }
}

bool has_variables(const polynode *p) { return !is_constant(p); }

} // namespace

TEST_F(flat_divide_test, a_product_divided_by_a_factor_is_the_other_one) {
    for (const std::string &name : domains) {
        test_ring ring(name);
        for (int i = times(80); i > 0; i--) {
            poly_shape shape = rand_shape(rnd);
            poly_handle a(rand_nonzero_poly(rnd, shape)), b(rand_nonzero_poly(rnd, shape));
            if (!has_variables(a.get())) continue; /* a constant quotient is not for this method */
            poly_handle product(table_product(a.get(), b.get())), q;
            if (divide_flat(product.get(), b.get(), q.slot(), false) == flat_verdict::unfit)
                continue; /* long numbers */
            expect_quotient(product.get(), b.get(), a.get(), name);
            if (HasFatalFailure()) return;
        }
    }
}

TEST_F(flat_divide_test, small_numbers_always_fit) {
    for (const std::string &name : domains) {
        test_ring ring(name);
        for (int i = times(60); i > 0; i--) {
            const poly_shape shape{1 + rnd.below(4), 1 + rnd.below(12), 1 + rnd.below(9), 1, false};
            poly_handle a(rand_nonzero_poly(rnd, shape)), b(rand_nonzero_poly(rnd, shape));
            if (!has_variables(a.get())) continue;
            poly_handle product(table_product(a.get(), b.get()));
            expect_quotient(product.get(), b.get(), a.get(), name);
            if (HasFatalFailure()) return;
        }
    }
}

TEST_F(flat_divide_test, what_is_not_a_multiple_fails) {
    for (const std::string &name : domains) {
        test_ring ring(name);
        int failed = 0;
        for (int i = times(80); i > 0; i--) {
            const poly_shape shape{1 + rnd.below(4), 1 + rnd.below(8), 1 + rnd.below(7), 1, false};
            poly_handle a(rand_nonzero_poly(rnd, shape)), b(rand_nonzero_poly(rnd, shape)),
                r(rand_nonzero_poly(rnd, shape));
            poly_handle product(table_product(a.get(), b.get())), sum(table_sum(product.get(), r.get()));
            if (poly_iszero(sum.get())) continue;
            /* the division of lists is the second method */
            poly_handle by_lists, q(poly_of("7*x")), untouched(poly_of("7*x"));
            if (is_constant(b.get())) continue;
            const bool divides = divide_by_steps(sum.get(), b.get(), by_lists.slot(), nullptr, polynames, {});
            for (const flat_division_limits &cut : cuts) {
                flat_division_limit = cut;
                const flat_verdict verdict = divide_flat(sum.get(), b.get(), q.slot(), false);
                if (verdict == flat_verdict::unfit) continue;
                ASSERT_EQ(verdict, divides ? flat_verdict::divides : flat_verdict::fails)
                    << name << "\n"
                    << text_of(sum.get()) << "\nby " << text_of(b.get());
                if (divides) {
                    EXPECT_TRUE(poly_equal(q.get(), by_lists.get()));
                } else {
                    failed++;
                }
            }
            if (!divides) {
                EXPECT_TRUE(poly_equal(q.get(), untouched.get()));
            }
        }
        EXPECT_GT(failed, 20) << name;
    }
}

TEST_F(flat_divide_test, a_remainder_in_the_last_place_is_seen) {
    poly_handle a(poly_of("x^2*y + 3*x*y^2 - z + 5")), b(poly_of("2*x*y - y*z + 3"));
    for (const std::string r : {"1", "z", "y*z", "x", "x^3*y^2", "x^3*y^3", "x^3*y^2*z^2"}) {
        poly_handle product(table_product(a.get(), b.get())), rest(poly_of(r)),
            sum(table_sum(product.get(), rest.get()));
        for (const flat_division_limits &cut : cuts) {
            flat_division_limit = cut;
            EXPECT_EQ(divide_flat(sum.get(), b.get(), nullptr, false), flat_verdict::fails) << r;
        }
    }
}

/* Quotients up to what the words hold and beyond: (c + 1) x - c by 62-bit coefficients and longer ones. */
TEST_F(flat_divide_test, coefficients_at_the_ends_of_one_and_of_two_words) {
    for (int bits_a : {20, 30, 31, 45, 58, 60, 61, 62, 63, 64, 70, 100})
        for (int bits_b : {1, 2, 28, 31, 32, 45, 60, 61, 62, 63})
            for (int sign : {1, -1}) {
                coef c(1), d(1);
                for (int i = 0; i < bits_a; i++) num_add(&c.x, &c.x, &c.x);
                for (int i = 0; i < bits_b; i++) num_add(&d.x, &d.x, &d.x);
                sub(&c.x, &number_1, &c.x);
                sub(&d.x, &number_1, &d.x);
                flat_poly terms_a, terms_b;
                for (int k = 0; k < 6; k++) terms_a[{k, 5 - k}] = c;
                for (int k = 0; k < 6; k++) terms_b[{k, k}] = d;
                terms_b[{7}] = coef(sign);
                poly_handle a(nested(terms_a)), b(nested(terms_b)), product(table_product(a.get(), b.get()));
                for (const flat_division_limits &cut : cuts) {
                    flat_division_limit = cut;
                    poly_handle q;
                    const flat_verdict verdict = divide_flat(product.get(), b.get(), q.slot(), false);
                    EXPECT_NE(verdict, flat_verdict::fails) << bits_a << " " << bits_b;
                    if (verdict == flat_verdict::divides) {
                        EXPECT_TRUE(poly_equal(q.get(), a.get())) << bits_a << " " << bits_b;
                    }
                    if (bits_a + bits_b < 50) {
                        EXPECT_EQ(verdict, flat_verdict::divides);
                    }
                }
                poly_handle q;
                int failed = 2;
                gen_poly_divide(product.get(), b.get(), q.slot(), polynames, &failed);
                EXPECT_EQ(failed, 0);
                EXPECT_TRUE(poly_equal(q.get(), a.get())) << bits_a << " " << bits_b;
            }
}

TEST_F(flat_divide_test, coefficients_of_many_words) {
    for (int i = times(60); i > 0; i--) {
        const poly_shape shape{1 + rnd.below(3), 2 + rnd.below(12), 1 + rnd.below(9), 1 + rnd.below(40), false};
        poly_handle a(rand_nonzero_poly(rnd, shape)), b(rand_nonzero_poly(rnd, shape));
        if (!has_variables(a.get()) || is_constant(b.get())) continue;
        poly_handle product(table_product(a.get(), b.get())), rest(poly_of("x")), r(poly_of("1")), sum;
        expect_quotient(product.get(), b.get(), a.get(), "chain");
        if (HasFatalFailure()) return;
        *sum.slot() = table_sum(product.get(), r.get());
        EXPECT_NE(divide_flat(sum.get(), b.get(), nullptr, false), flat_verdict::divides);
    }
}

/* (x^k - 1)^m by (x - 1)^m. With k = 2 the three have about equal bits; with k = 10 the quotient has three times as many. */
TEST_F(flat_divide_test, quotients_with_coefficients_longer_than_those_of_the_dividend) {
    for (uint32_t m : {20u, 62u, 100u, 200u}) {
        for (const std::string k : {"2", "10"}) {
            const bool equal = k == "2";
            poly_handle a(poly_of("x^" + k + " - 1")), b(poly_of("x - 1")), q,
                expected(poly_of(equal ? "x + 1" : "x^9 + x^8 + x^7 + x^6 + x^5 + x^4 + x^3 + x^2 + x + 1"));
            compute_power(a.slot(), m, polynames);
            compute_power(b.slot(), m, polynames);
            compute_power(expected.slot(), m, polynames);
            EXPECT_EQ(divide_flat(a.get(), b.get(), q.slot(), false),
                      equal || m == 20 ? flat_verdict::divides : flat_verdict::unfit)
                << m << " " << k;
            int failed = 2;
            gen_poly_divide(a.get(), b.get(), q.slot(), polynames, &failed);
            EXPECT_EQ(failed, 0);
            EXPECT_TRUE(poly_equal(q.get(), expected.get())) << m << " " << k;
        }
    }
}

TEST_F(flat_divide_test, exponents_that_no_word_holds_are_left_to_the_lists) {
    poly_handle a(poly_of("x^200000000*y^200000000*z^200000000 + 1")), b(poly_of("x + y + z")), q;
    poly_handle product(table_product(a.get(), b.get()));
    EXPECT_EQ(divide_flat(product.get(), b.get(), q.slot(), false), flat_verdict::unfit);
    int failed = 2;
    gen_poly_divide(product.get(), b.get(), q.slot(), polynames, &failed);
    EXPECT_EQ(failed, 0);
    EXPECT_TRUE(poly_equal(q.get(), a.get()));
}

TEST_F(flat_divide_test, other_rings_are_left_to_the_lists) {
    for (const std::string name : {"float", "word", "6"}) {
        test_ring ring(name);
        poly_handle a(poly_of("x^2*y + x*y")), b(poly_of("x*y")), q;
        EXPECT_EQ(divide_flat(a.get(), b.get(), q.slot(), false), flat_verdict::unfit) << name;
    }
}

TEST_F(flat_divide_test, quotients_may_have_negative_exponents_where_powers_are_units) {
    kept_value<int> powers(laurent, 1);
    int divided = 0;
    for (int i = times(60); i > 0; i--) {
        const poly_shape shape{1 + rnd.below(3), 1 + rnd.below(6), 6, 1, true};
        poly_handle a(rand_nonzero_poly(rnd, shape)), b(rand_nonzero_poly(rnd, shape));
        poly_handle product(table_product(a.get(), b.get()));
        if (!has_variables(a.get()) || is_constant(b.get())) continue;
        expect_quotient(product.get(), b.get(), a.get(), "chain");
        if (HasFatalFailure()) return;
        divided++;
    }
    EXPECT_GT(divided, 20);
}

TEST_F(flat_divide_test, the_destination_may_hold_an_operand) {
    poly_handle a(poly_of("x*y + 3")), b(poly_of("x - y + z")), product(table_product(a.get(), b.get())), again;
    poly_assign(product.get(), again.slot());
    EXPECT_EQ(divide_flat(product.get(), b.get(), product.slot(), false), flat_verdict::divides);
    EXPECT_TRUE(poly_equal(product.get(), a.get()));
    EXPECT_EQ(divide_flat(again.get(), b.get(), b.slot(), false), flat_verdict::divides);
    EXPECT_TRUE(poly_equal(b.get(), a.get()));
}

} // namespace tolvek
