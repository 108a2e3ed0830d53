#include "poly/measures.h"

#include "quoly/quoly.h"
#include "support/rand_poly.h"

namespace tolvek {

namespace {
using measures_test = poly_test;

/* x^n + ... + x + 1 */
polynode *dense(int n) {
    flat_poly terms;
    for (int e = 0; e <= n; e++) terms.insert({e ? std::vector<int32_t>{e} : std::vector<int32_t>{}, coef(1)});
    return nested(terms);
}
} // namespace

TEST_F(measures_test, lengths_count_the_terms_of_the_top_list) {
    poly_handle p(poly_of("x^2*y + x^2*z + x + 1"));
    EXPECT_EQ(poly_length(p.get()), 3);
    poly_handle q(dense(99));
    EXPECT_EQ(poly_length(q.get()), 100);
    EXPECT_EQ(fast_poly_length(q.get(), 10), 11);
    EXPECT_EQ(fast_poly_length(q.get(), 100), 100);
    EXPECT_EQ(fast_poly_length(q.get(), 0), 1);
}

TEST_F(measures_test, leaf_terms_are_counted_up_to_the_stop_of_each_routine) {
    poly_handle p(poly_of("x^2*y + x^2*z + x + 1")), q(dense(5000));
    EXPECT_EQ(fast_numterms(p.get()), 4);
    EXPECT_EQ(fast_f_numterms(p.get(), 1), 4);
    EXPECT_EQ(qpoly_numterms(p.get(), 1), 4);
    EXPECT_EQ(poly_numterms(p.get(), 1), 4);
    EXPECT_EQ(fast_numterms(q.get()), 61);
    EXPECT_EQ(fast_f_numterms(q.get(), 1), 101);
    EXPECT_EQ(qpoly_numterms(q.get(), 1), 1001);
    EXPECT_EQ(poly_numterms(q.get(), 1), 5001);
}

TEST_F(measures_test, coefficients_from_the_field_level_on_count_1) {
    poly_handle p(poly_of("x^2*y^5 + x^2*y + x*z + y + 1"));
    field_depth = 2;
    EXPECT_EQ(poly_numterms(p.get(), 1), 3);
    EXPECT_EQ(fast_f_numterms(p.get(), 1), 3);
    EXPECT_EQ(fast_numterms(p.get()), 5);
    EXPECT_EQ(poly_numterms(p.get(), 2), 1);
}

TEST_F(measures_test, terms_of_a_quoly_are_those_of_both_parts) {
    poly_handle num(poly_of("x*y + x*z + 1")), den(poly_of("x + 1"));
    quoly_handle q;
    *q.slot() = new_fraction(num, den);
    EXPECT_EQ(numterms(q.get()), 5);
    field_depth = 2;
    EXPECT_EQ(f_numterms(q.get()), 4);
    EXPECT_EQ(numterms(q.get()), 5);
    quoly_set(7, q.slot());
    EXPECT_EQ(numterms(q.get()), 1);
}

/* 31 for a number, 8 for each of its digits, 13 for any other node. */
TEST_F(measures_test, masses_weigh_nodes_numbers_and_digits) {
    poly_handle p(poly_of("x*y + 1000000000000"));
    EXPECT_EQ(simple_poly_mass(p.get()), 13 + 13 + 39 + (31 + 2 * 8));
    EXPECT_EQ(very_simple_poly_mass(p.get()), 112);
    {
        test_ring ring("7");
        poly_handle q(poly_of("x*y + 3"));
        EXPECT_EQ(simple_poly_mass(q.get()), 13 + 13 + 31 + 31);
    }
    poly_handle q(dense(1000));
    EXPECT_EQ(very_simple_poly_mass(q.get()), 251);
    EXPECT_EQ(more_simple_poly_mass(q.get()), 351);
    EXPECT_EQ(simple_poly_mass(q.get()), 1000 * (13 + 39) + 39);
}

TEST_F(measures_test, weighted_masses_multiply_exponents_and_levels) {
    EXPECT_EQ(poly_mass(poly_handle(poly_of("7")).get(), 1, 1), 1);
    EXPECT_EQ(poly_mass(poly_handle(poly_of("x^3")).get(), 1, 1), 3);
    EXPECT_EQ(poly_mass(poly_handle(poly_of("x^3")).get(), 2, 1), 6);
    EXPECT_EQ(poly_mass(poly_handle(poly_of("x^3 + x")).get(), 2, 1), 7); /* the factor is that of the first term */
    EXPECT_EQ(poly_mass(poly_handle(poly_of("x^3*y^5")).get(), 1, 1), 3 * (5 * 2));
    EXPECT_EQ(poly_mass(poly_handle(poly_of("y^5")).get(), 1, 1), 5);
    poly_handle huge(poly_of("x^200000000*y^200000000*z^200000000"));
    EXPECT_EQ(poly_mass(huge.get(), 1, 1), mass_overflow);
    EXPECT_EQ(new_poly_mass(huge.get(), 1), 0x10000000);
    EXPECT_EQ(new_poly_mass(poly_handle(poly_of("x^3*y^5 + x")).get(), 1), 3 + 5 * 2 + 1);
    poly_handle long_list(dense(1000)); /* the first 7 terms */
    EXPECT_EQ(new_poly_mass(long_list.get(), 1), 1000 + 999 + 998 + 997 + 996 + 995 + 994);
}

TEST_F(measures_test, sizes_are_in_the_bytes_of_the_reports) {
    poly_handle p(poly_of("x + 1000000000000"));
    EXPECT_EQ(sizepoly(p.get()), 16 + (16 + 48 + 8) + (16 + 48 + 2 * 8));
    EXPECT_EQ(sizepoly(nullptr), 0);
}

TEST_F(measures_test, digits_are_the_bits_of_the_largest_number) {
    EXPECT_EQ(max_digits(nullptr), -1);
    poly_handle p(poly_of("3*x*y - 1025*z + 7"));
    EXPECT_EQ(max_digits(p.get()), 11);
    quoly_handle q;
    quoly_set(-256, q.slot());
    EXPECT_EQ(quoly_max_digits(q.get()), 9);
    poly_handle den(poly_of("65536"));
    *q.slot() = (free_quoly(q.slot()), new_fraction(p, den));
    EXPECT_EQ(quoly_max_digits(q.get()), 17);
    test_ring ring("1000");
    poly_handle r(poly_of("990*x + 3"));
    EXPECT_EQ(max_digits(r.get()), logg2lint(990));
    EXPECT_EQ(max_digits(r.get()), 3); /* of 10, the smaller residue: the index of its top bit */
}

} // namespace tolvek
