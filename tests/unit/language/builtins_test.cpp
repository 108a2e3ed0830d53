/* Built-in functions of numbers, settings and storage. */
#include "support/fresh_system.h"
#include "support/reports.h"

#include "top/driver.h"

using namespace tolvek;

namespace {

using builtins = fresh_system;
using exact_builtins = fresh_exact_system;

TEST_F(builtins, primes_by_number) {
    EXPECT_EQ(value_of("Prime(1)"), "2");
    EXPECT_EQ(value_of("Prime(1229)"), "9973"); /* the last prime below 10000 */
    expect_errors(*this, {
                             {"Prime(1230)", 346},
                             {"Prime(0)", 346},
                             {"Prime 3", 177},
                             {"Prime(3", 1},
                         });
}

TEST_F(exact_builtins, primality_gives_1_or_the_least_factor) {
    expect_values(*this, {
                             {"Isprime(1)", "0"},
                             {"Isprime(-7)", "0"},
                             {"Isprime(2)", "1"},
                             {"Isprime(91)", "7"},
                             {"Isprime(2^61-1)", "1"},      /* a Mersenne prime */
                             {"Isprime(2^59-1)", "179951"}, /* Landry 1869 */
                         });
    EXPECT_TRUE(raises(run("Isprime(2^63)"), 289));
    EXPECT_TRUE(raises(run("Isprime(1/2)"), 227));
}

TEST_F(exact_builtins, parts_of_rationals) {
    expect_values(*this, {
                             {"Numer(6/4)", "3"},
                             {"Denom(6/4)", "2"},
                             {"Denom(7)", "1"},
                             {"Rational(1/2)", "1"},
                             {"Rational(2)", "0"},
                             {"Number(2)", "1"},
                             {"Number(1/2)", "0"},
                             {"Equal(1/2, 2/4)", "1"},
                             {"Equalneg(1/2, -1/2)", "1"},
                             {"Equal(1, 2)", "0"},
                         });
    EXPECT_TRUE(raises(run("Equal(1)"), 202));
}

TEST_F(exact_builtins, binomials) {
    expect_values(*this, {
                             {"Bin(10, 3)", "120"},
                             {"Bin(3, 5)", "0"},
                             {"Bin(3, -1)", "0"},
                             {"Bin(100, 50)", "100891344545564193334812497256"}, /* Python: math.comb(100, 50) */
                         });
    expect_errors(*this, {
                             {"Bin(2000, 900)", 87},
                             {"Bin 3", 177},
                             {"Bin(3)", 202},
                             {"Bin(3, 2", 1},
                         });
}

TEST_F(builtins, float_binomials_end_at_152) {
    EXPECT_EQ(value_of("Bin(10, 3)"), "120");
    EXPECT_TRUE(raises(run("Bin(153, 3)"), 377));
}

TEST_F(exact_builtins, least_common_multiples) {
    expect_values(*this, {
                             {"LCM(4, 6)", "12"},
                             {"LCM(4, -6, 10, 2^40)", "16492674416640"}, /* 15 * 2^40 */
                             {"LCM(5, 0)", "0"},
                         });
    EXPECT_TRUE(raises(run("LCM(1/2)"), 186));
}

TEST_F(builtins, common_multiples_of_floats_are_products_with_a_warning) {
    EXPECT_NE(run("LCM(4, 6)").find(" Warning.  LCM called in longint/modular mode.\n"), std::string::npos);
    run("x := LCM(4, 6):");
    EXPECT_EQ(value_of("x"), "24");
}

TEST_F(exact_builtins, integer_square_roots) {
    expect_values(*this, {
                             {"Sqrt 144", "12"},
                             {"Sqrt(10^40)", "100000000000000000000"},
                             {"Sqrt(10^40-1)", "99999999999999999999"},
                             {"Sqrt(9/2)", "2"},
                         });
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
    expect_errors(*this, {
                             {"x", 19},
                             {"Rname(q, r)", 19},
                             {"Rname(Qq, Rr)", 16},
                         });
}

TEST_F(builtins, settings_as_values) {
    expect_values(*this, {
                             {"Mode", "0"},
                             {"Modulus", "-1"},
                             {"True", "1"},
                             {"Numvars", "0"},
                         });
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
