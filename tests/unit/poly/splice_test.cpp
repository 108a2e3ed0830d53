#include "poly/add.h"
#include "poly/canonical.h"

#include "quoly/quoly.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/guards.h"

namespace tolvek {

namespace {
using splice_test = poly_test;

std::string spliced(const std::string &a, const std::string &b, int32_t shift) {
    poly_handle p(poly_of(a)), q(poly_of(b));
    quoly_handle x, y;
    poly_to_value(p, x.slot());
    poly_to_value(q, y.slot());
    splice_poly(x.slot(), y.slot(), shift);
    EXPECT_EQ(text_of(y.get()), "1");
    EXPECT_EQ(quoly_rule_broken(x.get()), 0);
    return text_of(x.get());
}
struct spliced_list {
    const char *a, *b;
    int32_t shift;
    const char *sum;
};

void expect_spliced(std::initializer_list<spliced_list> rows) {
    for (const spliced_list &row : rows) EXPECT_EQ(spliced(row.a, row.b, row.shift), row.sum) << row.a << ", " << row.b;
}
} // namespace

TEST_F(splice_test, lists_that_do_not_overlap_are_linked) {
    expect_spliced({
        {"x^2 + x + 1", "x + 5", 3, "x^4 + 5*x^3 + x^2 + x + 1"},
        {"x + y", "x*y + z", 2, "x^3*y + x^2*z + x + y"},
        {"7", "x + 5", 1, "x^2 + 5*x + 7"},
        {"x", "5", 3, "5*x^3 + x"},
        {"3", "5", 2, "5*x^2 + 3"},
    });
}

TEST_F(splice_test, what_overlaps_is_added) {
    expect_spliced({
        {"x^4 + x^2 + 1", "x^3 + x", 1, "2*x^4 + 2*x^2 + 1"},
        {"x^3 - x^2 + 4", "x + 1", 2, "2*x^3 + 4"},
        {"3", "5", 0, "8"},
        {"x", "-x", 0, "0"},
        {"-5*x^2 + 3", "5", 2, "3"},
    });
}

TEST_F(splice_test, nothing_comes_from_0) {
    expect_spliced({
        {"x + 1", "0", 4, "x + 1"},
        {"0", "x + 1", 4, "x^5 + x^4"},
        {"0", "0", 4, "0"},
    });
}

TEST_F(splice_test, negative_shifts_restore_number_terms) {
    laurent = 1;
    expect_spliced({
        {"x", "x^2 + 3*x", -1, "2*x + 3"},
        {"x", "x*y + y + 2", -1, "x + y + x^-1*y + 2*x^-1"},
        {"1", "2", -3, "1 + 2*x^-3"},
    });
}

TEST_F(splice_test, sums_with_a_shift_agree_with_flat_tables) {
    for (const std::string &name : test_rings) {
        for (int i = 0; i < times(30); i++) {
            poly_shape shape = rand_shape(rnd, true);
            kept_value<int> exponents(laurent, shape.laurent);
            test_ring ring(name);
            poly_handle p(rand_poly(rnd, shape)), q(rand_poly(rnd, shape));
            int32_t shift = shape.laurent ? rnd.below(9) - 4 : rnd.below(shape.degree + 2);
            flat_poly power;
            power.insert({shift ? std::vector<int32_t>{shift} : std::vector<int32_t>{}, coef(1)});
            poly_handle expected(nested(flat_sum(flat(p.get()), flat_product(flat(q.get()), power))));
            std::string text = text_of(expected.get());
            quoly_handle x, y;
            poly_to_value(p, x.slot());
            poly_to_value(q, y.slot());
            splice_poly(x.slot(), y.slot(), shift);
            EXPECT_EQ(quoly_rule_broken(x.get()), 0);
            EXPECT_EQ(text_of(x.get()), text);
        }
    }
}

using splice_error_test = fresh_exact_system;

TEST_F(splice_error_test, exponents_beyond_32_bits_are_error_32_and_leave_both_whole) {
    run("&(J = x)");
    quoly_handle a, b;
    base_quoly(1, a.slot());
    base_quoly(1, b.slot());
    EXPECT_TRUE(unwinds([&] { splice_poly(a.slot(), b.slot(), INT32_MAX); }));
    EXPECT_NE(last_text.find("This exponent is too large."), std::string::npos);
    EXPECT_EQ(tolvek::text_of(a.get()), "x");
    EXPECT_EQ(tolvek::text_of(b.get()), "x");
    splice_poly(a.slot(), b.slot(), INT32_MAX - 1);
    EXPECT_EQ(tolvek::text_of(a.get()), "x^2147483647 + x");
}

} // namespace tolvek
