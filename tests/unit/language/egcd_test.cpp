#include "support/fresh_system.h"

#include "top/ring.h"

namespace tolvek {

namespace {

struct egcd_test : fresh_exact_system {
    /* The prompt computes modulo n from now on. */
    void use_modulus(int32_t n) {
        ring_state r = current_ring();
        r.lintmode = r.modularmode = 1;
        r.modulus = n;
        user_ring = r;
        return_to_user_ring();
    }
};

} // namespace

/* -9 * 240 + 47 * 46 = -2160 + 2162 = 2 */
TEST_F(egcd_test, integers) {
    run("s := 0; t := 0");
    EXPECT_EQ(value_of("Egcd(240, 46, ^s, ^t)"), "2");
    EXPECT_EQ(value_of("s"), "-9");
    EXPECT_EQ(value_of("t"), "47");
    EXPECT_EQ(value_of("Egcd(-240, 46, s, t)"), "2");
    EXPECT_EQ(value_of("s"), "9");
    EXPECT_EQ(value_of("-240*s + 46*t"), "2");
    EXPECT_EQ(value_of("Egcd(0, -5, s, t)"), "5");
    EXPECT_EQ(value_of("t"), "-1");
    EXPECT_EQ(value_of("Egcd(7, 7)"), "7");
    EXPECT_EQ(value_of("Egcd(0, 0)"), "0");
}

TEST_F(egcd_test, long_integers) {
    run("s := 0; t := 0; a := 7*10^60 + 9; b := 13*10^59 + 4");
    EXPECT_EQ(value_of("Egcd(a*(10^30 + 57), b*(10^30 + 57), s, t) - Egcd(a, b)*(10^30 + 57)"), "0");
    EXPECT_EQ(value_of("s*a + t*b - Egcd(a, b)"), "0");
}

TEST_F(egcd_test, polynomials_modulo_a_prime) {
    run("&(J = x)");
    use_modulus(7);
    run("s := 0; t := 0");
    EXPECT_EQ(value_of("Egcd(x, x^2 + 1, s, t)"), "1"); /* -x * x + (x^2 + 1) = 1 */
    EXPECT_EQ(value_of("s + x"), "0");
    EXPECT_EQ(value_of("t"), "1");
    EXPECT_EQ(value_of("Egcd(3*x^2 - 3, 5*x + 5, s, t) - x - 1"), "0");
    EXPECT_EQ(value_of("s"), "0");
    EXPECT_EQ(value_of("t"), "3"); /* 3 * 5 = 1 */
    EXPECT_EQ(value_of("Egcd(3, x, s, t)"), "1");
    EXPECT_EQ(value_of("3*s + x*t"), "1");
}

TEST_F(egcd_test, polynomials_of_an_inner_variable) {
    run("&(J = x)\n&(J = y)");
    use_modulus(7);
    run("s := 0; t := 0");
    for (const std::string v : {"x", "y"}) {
        EXPECT_EQ(value_of("Egcd(" + v + "^2 - 1, " + v + "^2 + 2*" + v + " + 1, s, t) - " + v + " - 1"), "0");
        EXPECT_EQ(value_of("s*(" + v + "^2 - 1) + t*(" + v + "^2 + 2*" + v + " + 1) - " + v + " - 1"), "0");
    }
}

TEST_F(egcd_test, errors) {
    EXPECT_NE(run("Egcd(3)").find("*** "), std::string::npos);
    run("&(J = x)\n&(J = y)");
    EXPECT_NE(run("Egcd(x, 3)").find("This is possible in modular arithmetic only."), std::string::npos);
    use_modulus(7);
    EXPECT_NE(run("Egcd(4, 6)").find("Egcd is not possible for these values"), std::string::npos);
    EXPECT_NE(run("Egcd(x, y)").find("The two values of Egcd differ in their main variable."), std::string::npos);
    use_modulus(6);
    EXPECT_NE(run("Egcd(x, x + 1)").find("The modulus of the ground ring must be a prime."), std::string::npos);
}

} // namespace tolvek
