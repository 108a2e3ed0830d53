/* Functions that are called where integers are read in a modular ring: in an exponent, an index, a bound. They count with
   integers; what they store is of the ring. */
#include "support/fresh_system.h"
#include "support/reports.h"

#include "quoly/quoly.h"

using namespace tolvek;

namespace {

struct paused_ring : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(J = x)\n&(p = 5)\nArray a[9]\ny := 1\nArray s[2,2] Sparse\nArray b[2,2]\na[1] := 1\na[8] := 2");
    }
    /* A call in an index; what y is then. */
    std::string after(const std::string &body) {
        run("y := 1\nFunc F(n, k) = " + body + "; n.");
        EXPECT_EQ(value_of("a[F(1)]"), "1") << body;
        return value_of("y");
    }
};

TEST_F(paused_ring, what_a_function_stores_is_a_residue) {
    EXPECT_EQ(after("y := 13"), "-2");
    EXPECT_EQ(after("y := -1"), "-1");
    EXPECT_EQ(after("y :+ 6"), "2");
    EXPECT_EQ(after("y :- (8)"), "-2");
    EXPECT_EQ(after("y := 10"), "0");
    EXPECT_EQ(after("k := 13; y := k"), "-2");
    EXPECT_EQ(after("k := 13; Swap(^y, ^k)"), "-2");
    EXPECT_EQ(after("k := 13; Move(^k, ^y)"), "-2");
    EXPECT_EQ(after("for y = 1 to 12 do k :+ od"), "-2");
}

TEST_F(paused_ring, polynomials_lose_the_terms_that_vanish) {
    EXPECT_EQ(after("y := 10*x^2 + 7*x + 5"), "2x");
    EXPECT_EQ(after("y := 5*x"), "0");
    run("y := 1\nFunc F(n) = y := 5*x + 11; n.\nx^F(1)");
    EXPECT_EQ(value_of("y"), "1");
    EXPECT_EQ(value_of("y - 1"), "0");
}

TEST_F(paused_ring, denominators_are_of_the_ring) {
    EXPECT_EQ(after("y := (11*x + 10)/(x + 6)"), "x / ( x + 1 )");
    EXPECT_EQ(after("y := (x^2 + 4)/(x + 6)"), "x - 1"); /* x^2 - 1 over x + 1 */
}

TEST_F(paused_ring, elements_of_a_table_field_are_residues_of_their_words) {
    run("&(p = 256)\na[1] := 1\ny := 1\nFunc F(n) = y := 300; n.\na[F(1)]");
    EXPECT_EQ(value_of("y"), "44");
}

TEST_F(paused_ring, elements_and_whole_arrays_are_of_the_ring) {
    EXPECT_EQ(after("b[1,1] := 13; s[1,2] := 10; s[2,1] := 14"), "1");
    EXPECT_EQ(value_of("b[1,1]"), "-2");
    EXPECT_EQ(value_of("s[2,1]"), "-1");
    EXPECT_EQ(value_of("s[1,2]"), "0");
    EXPECT_EQ(after("[b] := [[11, 12][13, 15]]; [s] := [[1, [1, 10] [2, 7]]]"), "1");
    EXPECT_EQ(value_of("b[1,1] + 10*b[1,2] + b[2,1]"), "-1");
    EXPECT_EQ(value_of("b[2,2]"), "0");
    EXPECT_EQ(value_of("s[1,1]"), "0");
    EXPECT_EQ(value_of("s[1,2]"), "2");
}

TEST_F(paused_ring, references_take_residues_home) {
    run("Func G(^v) = v := 13; (1).\na[G(^y)]");
    EXPECT_EQ(value_of("y"), "-2");
    run("b[1,2] := 1\na[G(^b[1,2])]");
    EXPECT_EQ(value_of("b[1,2]"), "-2");
}

TEST_F(paused_ring, parameters_count_beyond_the_modulus) {
    run("Func Eight(k) = k := 6; 2 + k.\nFunc Count(k, i) = k := 0; for i = 1 to 7 do k :+ od; 0*i + k.");
    EXPECT_EQ(value_of("a[Eight(0)]"), "2");
    EXPECT_EQ(value_of("x^Eight(0)"), "x^8");
    EXPECT_EQ(value_of("x^Count(0, 0)"), "x^7");
    EXPECT_EQ(value_of("Eight(0)"), "-2");
}

} // namespace
