#include "support/fresh_system.h"
#include "support/reports.h"

#include "language/names.h"
#include "support/rand_poly.h"
#include "top/errors.h"
#include "top/guards.h"

namespace tolvek {

namespace {

struct division_test : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(J = x)\n&(J = y)\nq := 7");
    }
};

} // namespace

TEST_F(division_test, does_one_polynomial_divide_another) {
    expect_values(*this, {
                             {"Divides(x^2 - y^2, x + y)", "1"},
                             {"Divides(x^2 + y^2, x + y)", "0"},
                             {"Divides(x + 1, 2*x + 2)", "0"}, /* 1/2 is no integer */
                             {"Divides(2*x + 2, 2)", "1"},
                             {"Divides(6, 3)", "1"},
                             {"Divides(7, 3)", "0"},
                             {"Divides(0, x)", "1"},
                             {"Divides(5, x)", "0"},
                         });
}

TEST_F(division_test, the_quotient_where_there_is_one) {
    expect_values(*this, {
                             {"Pdivide(x^2 - y^2, x + y) - (x - y)", "0"},
                             {"Pdivide(x^2 + y^2, x + y)", "0"},
                             {"SDivide(x^3 - 1, x - 1, ^q)", "1"},
                             {"q - (x^2 + x + 1)", "0"},
                             {"SDivide(x^3, x - 1, ^q)", "0"},
                             {"q - (x^2 + x + 1)", "0"}, /* as it was */
                         });
}

TEST_F(division_test, quotient_and_remainder_of_integers) {
    expect_values(*this, {
                             {"Remquot(-7, 2, ^q)", "1"}, /* not negative */
                             {"q", "-3"},
                             {"Remquot(10^40 + 3, 10^20, ^q) + q", "100000000000000000003"},
                         });
}

TEST_F(division_test, a_destination_may_be_an_operand) {
    run("p := x^2 - 1");
    EXPECT_EQ(value_of("SDivide(^p, x - 1, ^p)"), "1");
    EXPECT_EQ(value_of("p - x - 1"), "0");
}

TEST_F(division_test, wrong_operands) {
    expect_errors(*this, {
                             {"Divides(x, 0)", 22},
                             {"Pdivide(1/2, x)", 280},
                             {"SDivide(x, 1/3, ^q)", 280},
                             {"Divides(x)", 202},
                             {"Divides x", 177},
                             {"Divides(x, x", 1},
                         });
    EXPECT_EQ(value_of("q"), "7");
}

/* Negative exponents stand in a stored value; statements cannot write them yet. */
TEST_F(division_test, negative_exponents_have_no_gcd_with_cofactors_and_no_modular_powers) {
    run("q := x");
    token_record name{"q", hash_unknown};
    poly_handle p(poly_of("x^-1 + 1"));
    const kept_value<int> with_negative_exponents(laurent, 1);
    p.release_to(&find_variable(name)->value->num);
    EXPECT_TRUE(raises(run("Egcd(q, x + 1)"), 198));
    EXPECT_TRUE(raises(run("Egcd(x + 1, q)"), 198));
    EXPECT_TRUE(raises(run("Egcd(3, q)"), 198));
    EXPECT_TRUE(raises(run("Powermod(q, 2, x + 1)"), 198));
    EXPECT_TRUE(raises(run("Powermod(x, 2, q)"), 198));
    EXPECT_EQ(value_of("Divides(q, x)"), "1"); /* powers of x are units */
    EXPECT_TRUE(raises(run("Powermod(x, 2, 3, 4)"), 1));
}

TEST_F(division_test, a_denominator_has_no_gcd_with_cofactors) {
    for (const char *statement : {"Egcd(1/2, 3)", "Egcd(3, 1/2)", "Egcd(1/x, x)", "Egcd(x, y/2)"})
        EXPECT_TRUE(raises(run(statement), 186)) << statement;
}

/* a^p = a modulo p for every integer (P. de Fermat), and (a + b)^p = a^p + b^p. */
TEST_F(division_test, powers_modulo_a_prime) {
    EXPECT_EQ(value_of("Powermod(123456789, 10^9 + 7, 10^9 + 7)"), "123456789");
    EXPECT_EQ(value_of("Powermod(10^40, 10^9 + 7, 10^9 + 7) - (10^40 | (10^9 + 7))"), "0");
    EXPECT_EQ(value_of("Powermod(x + y, 13, 13) - x^13 - y^13"), "0");
    EXPECT_EQ(value_of("Powermod(x + y, 4, x^2 - y) - (y^4 + (4x + 6)*y^3 + (4x + 1)*y^2)"), "0");
    EXPECT_EQ(value_of("Powermod(x, 0, x^2 + 1)"), "1");
}

} // namespace tolvek
