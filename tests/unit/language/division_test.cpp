#include "support/fresh_system.h"

#include "top/errors.h"

namespace tolvek {

namespace {

struct division_test : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(J = x)\n&(J = y)\nq := 7");
    }
    bool raises(const std::string &text, int n) { return text.find(message_text(n)) != std::string::npos; }
};

} // namespace

TEST_F(division_test, does_one_polynomial_divide_another) {
    EXPECT_EQ(value_of("Divides(x^2 - y^2, x + y)"), "1");
    EXPECT_EQ(value_of("Divides(x^2 + y^2, x + y)"), "0");
    EXPECT_EQ(value_of("Divides(x + 1, 2*x + 2)"), "0"); /* 1/2 is no integer */
    EXPECT_EQ(value_of("Divides(2*x + 2, 2)"), "1");
    EXPECT_EQ(value_of("Divides(6, 3)"), "1");
    EXPECT_EQ(value_of("Divides(7, 3)"), "0");
    EXPECT_EQ(value_of("Divides(0, x)"), "1");
    EXPECT_EQ(value_of("Divides(5, x)"), "0");
}

TEST_F(division_test, the_quotient_where_there_is_one) {
    EXPECT_EQ(value_of("Pdivide(x^2 - y^2, x + y) - (x - y)"), "0");
    EXPECT_EQ(value_of("Pdivide(x^2 + y^2, x + y)"), "0");
    EXPECT_EQ(value_of("SDivide(x^3 - 1, x - 1, ^q)"), "1");
    EXPECT_EQ(value_of("q - (x^2 + x + 1)"), "0");
    EXPECT_EQ(value_of("SDivide(x^3, x - 1, ^q)"), "0");
    EXPECT_EQ(value_of("q - (x^2 + x + 1)"), "0"); /* as it was */
}

TEST_F(division_test, quotient_and_remainder_of_integers) {
    EXPECT_EQ(value_of("Remquot(-7, 2, ^q)"), "1"); /* not negative */
    EXPECT_EQ(value_of("q"), "-3");
    EXPECT_EQ(value_of("Remquot(10^40 + 3, 10^20, ^q) + q"), "100000000000000000003");
}

TEST_F(division_test, a_destination_may_be_an_operand) {
    run("p := x^2 - 1");
    EXPECT_EQ(value_of("SDivide(^p, x - 1, ^p)"), "1");
    EXPECT_EQ(value_of("p - x - 1"), "0");
}

TEST_F(division_test, wrong_operands) {
    EXPECT_TRUE(raises(run("Divides(x, 0)"), 22));
    EXPECT_TRUE(raises(run("Pdivide(1/2, x)"), 280));
    EXPECT_TRUE(raises(run("SDivide(x, 1/3, ^q)"), 280));
    EXPECT_TRUE(raises(run("Divides(x)"), 202));
    EXPECT_TRUE(raises(run("Divides x"), 177));
    EXPECT_TRUE(raises(run("Divides(x, x"), 1));
    EXPECT_EQ(value_of("q"), "7");
}

} // namespace tolvek
