/* Built-in functions of numbers, settings and storage. */
#include "support/fresh_system.h"

#include "top/driver.h"

using namespace tolvek;

namespace {

using builtins = fresh_system;
using exact_builtins = fresh_exact_system;

bool raises(const std::string &text, int n) { return text.find(message_text(n)) != std::string::npos; }

TEST_F(builtins, primes_by_number) {
    EXPECT_EQ(value_of("Prime(1)"), "2");
    EXPECT_EQ(value_of("Prime(1229)"), "9973"); /* the last prime below 10000 */
    EXPECT_TRUE(raises(run("Prime(1230)"), 346));
    EXPECT_TRUE(raises(run("Prime(0)"), 346));
    EXPECT_TRUE(raises(run("Prime 3"), 177));
    EXPECT_TRUE(raises(run("Prime(3"), 1));
}

TEST_F(exact_builtins, primality_gives_1_or_the_least_factor) {
    EXPECT_EQ(value_of("Isprime(1)"), "0");
    EXPECT_EQ(value_of("Isprime(-7)"), "0");
    EXPECT_EQ(value_of("Isprime(2)"), "1");
    EXPECT_EQ(value_of("Isprime(91)"), "7");
    EXPECT_EQ(value_of("Isprime(2^61-1)"), "1");      /* a Mersenne prime */
    EXPECT_EQ(value_of("Isprime(2^59-1)"), "179951"); /* Landry 1869 */
    EXPECT_TRUE(raises(run("Isprime(2^63)"), 289));
    EXPECT_TRUE(raises(run("Isprime(1/2)"), 227));
}

TEST_F(exact_builtins, parts_of_rationals) {
    EXPECT_EQ(value_of("Numer(6/4)"), "3");
    EXPECT_EQ(value_of("Denom(6/4)"), "2");
    EXPECT_EQ(value_of("Denom(7)"), "1");
    EXPECT_EQ(value_of("Rational(1/2)"), "1");
    EXPECT_EQ(value_of("Rational(2)"), "0");
    EXPECT_EQ(value_of("Number(2)"), "1");
    EXPECT_EQ(value_of("Number(1/2)"), "0");
    EXPECT_EQ(value_of("Equal(1/2, 2/4)"), "1");
    EXPECT_EQ(value_of("Equalneg(1/2, -1/2)"), "1");
    EXPECT_EQ(value_of("Equal(1, 2)"), "0");
    EXPECT_TRUE(raises(run("Equal(1)"), 202));
}

TEST_F(exact_builtins, binomials) {
    EXPECT_EQ(value_of("Bin(10, 3)"), "120");
    EXPECT_EQ(value_of("Bin(3, 5)"), "0");
    EXPECT_EQ(value_of("Bin(3, -1)"), "0");
    EXPECT_EQ(value_of("Bin(100, 50)"), "100891344545564193334812497256"); /* Python: math.comb(100, 50) */
    EXPECT_TRUE(raises(run("Bin(2000, 900)"), 87));
    EXPECT_TRUE(raises(run("Bin 3"), 177));
    EXPECT_TRUE(raises(run("Bin(3)"), 202));
    EXPECT_TRUE(raises(run("Bin(3, 2"), 1));
}

TEST_F(builtins, float_binomials_end_at_152) {
    EXPECT_EQ(value_of("Bin(10, 3)"), "120");
    EXPECT_TRUE(raises(run("Bin(153, 3)"), 377));
}

TEST_F(exact_builtins, least_common_multiples) {
    EXPECT_EQ(value_of("LCM(4, 6)"), "12");
    EXPECT_EQ(value_of("LCM(4, -6, 10, 2^40)"), "16492674416640"); /* 15 * 2^40 */
    EXPECT_EQ(value_of("LCM(5, 0)"), "0");
    EXPECT_TRUE(raises(run("LCM(1/2)"), 186));
}

TEST_F(builtins, common_multiples_of_floats_are_products_with_a_warning) {
    EXPECT_NE(run("LCM(4, 6)").find(" Warning.  LCM called in longint/modular mode.\n"), std::string::npos);
    run("x := LCM(4, 6):");
    EXPECT_EQ(value_of("x"), "24");
}

TEST_F(exact_builtins, integer_square_roots) {
    EXPECT_EQ(value_of("Sqrt 144"), "12");
    EXPECT_EQ(value_of("Sqrt(10^40)"), "100000000000000000000");
    EXPECT_EQ(value_of("Sqrt(10^40-1)"), "99999999999999999999");
    EXPECT_EQ(value_of("Sqrt(9/2)"), "2");
    EXPECT_TRUE(raises(run("Sqrt(-4)"), 62));
}

TEST_F(builtins, casts_round) {
    EXPECT_EQ(value_of("Cast(3.7)"), "4");
    EXPECT_EQ(value_of("Pint(-2.2)"), "-2");
}

TEST_F(builtins, storage_is_moved_exchanged_and_renamed) {
    run("x := 3:\ny := 4:\nMove(^x, ^y)");
    EXPECT_EQ(value_of("x"), "0");
    EXPECT_EQ(value_of("y"), "3");
    run("x := 8:\nSwap(x, y)");
    EXPECT_EQ(value_of("x"), "3");
    EXPECT_EQ(value_of("y"), "8");
    run("Rname(x, z)");
    EXPECT_EQ(value_of("z"), "3");
    EXPECT_TRUE(raises(run("x"), 19));
    EXPECT_TRUE(raises(run("Rname(q, r)"), 19));
    EXPECT_TRUE(raises(run("Rname(Qq, Rr)"), 16));
}

TEST_F(builtins, settings_as_values) {
    EXPECT_EQ(value_of("Mode"), "0");
    EXPECT_EQ(value_of("Modulus"), "-1");
    EXPECT_EQ(value_of("True"), "1");
    EXPECT_EQ(value_of("Numvars"), "0");
    EXPECT_EQ(run("Tone").substr(0, 1), "\a");
}

TEST_F(exact_builtins, random_numbers_have_28_bits) {
    for (const char *statement : {"x := Rand:", "x := RRand:"})
        for (int i = 0; i < 50; i++) {
            run(statement);
            EXPECT_EQ(trimmed(run("if x >= 0 and x < 268435456 then 1 else 0 fi")), "1") << statement;
        }
}

TEST_F(builtins, a_function_of_a_name_of_the_table_is_never_reached) {
    run("Func True = 7;.");
    EXPECT_EQ(value_of("True"), "1");
}

} // namespace
