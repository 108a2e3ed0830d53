/* What a change of ring leaves in the settings, and what it tells. */
#include "top/change_ring.h"

#include "language/names.h"
#include "numbers/number_decimal.h"
#include "poly/variables.h"
#include "support/fresh_system.h"
#include "top/driver.h"
#include "top/settings.h"

#include <algorithm>

namespace tolvek {

namespace {

struct change_ring_test : fresh_exact_system {
    static long count_of(const std::string &part, const std::string &text) {
        long n = 0;
        for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) n++;
        return n;
    }
};

} // namespace

TEST_F(change_ring_test, the_cutoffs_of_the_modular_ring_and_of_the_rationals) {
    run("&(J = x)");
    disp_size = 7;
    run("&(p = 7)");
    EXPECT_EQ(disp_size, 16);
    EXPECT_EQ(poly_cutoff, 40);
    EXPECT_EQ(variable_at(1)->pt_cutoff, 40);
    EXPECT_EQ(div_poly_cutoff, 25);
    EXPECT_EQ(was_in_rat, 0);
    EXPECT_TRUE(lintmode && modularmode && !flotemode && !finf);
    run("&p");
    EXPECT_EQ(poly_cutoff, 40);
    EXPECT_EQ(div_poly_cutoff, 6);
    EXPECT_EQ(disp_size, 4);
    EXPECT_EQ(was_in_rat, 1);
    EXPECT_EQ(int32_t{modulus}, -1);
    EXPECT_FALSE(lintmode || modularmode || flotemode || finf);
}

TEST_F(change_ring_test, a_table_field_tells_modulus_2_and_has_256_elements) {
    EXPECT_NE(run("&(p = 256)").find("Modulus is 2, a prime; working over the prime field of 2^8"), std::string::npos);
    EXPECT_EQ(int32_t{modulus}, 256);
    EXPECT_TRUE(mod_is_prime() && smallmodulus && finf && f256 && !f2t16);
    EXPECT_FALSE(alt_form_display);
    run("&p");
    EXPECT_TRUE(alt_form_display);
    run("&(p = 65536)");
    EXPECT_EQ(int32_t{modulus}, 65536);
    EXPECT_TRUE(mod_is_prime() && finf && f2t16 && !f256);
}

TEST_F(change_ring_test, the_ring_comes_back_behind_an_error) {
    run("&(p = 7)");
    run("1/0");
    EXPECT_EQ(value_of("8"), "1");
    run("&p");
    run("1/0");
    EXPECT_EQ(value_of("8"), "8");
}

TEST_F(change_ring_test, numbers_that_do_not_fit_a_table_field_are_told_with_verbose_alone) {
    const std::string one_digit = "*** Warning. in going to finite field, outsized value encountered: ";
    run("a := 300\nb := -3\nc := 2^40 + 7\nd := 255");
    EXPECT_EQ(run("&(p = 256)").find("Warning"), std::string::npos);
    EXPECT_EQ(value_of("a"), "44");
    EXPECT_EQ(value_of("b"), "3");
    EXPECT_EQ(value_of("c"), "7");
    run("&p\na := 300\nb := -3\nc := 2^40 + 7\n&(V = 1)");
    const std::string told = run("&(p = 256)");
    EXPECT_EQ(count_of(one_digit + "300\n", told), 1);
    EXPECT_EQ(count_of(one_digit + "-3\n", told), 1);
    EXPECT_EQ(count_of(" *** Warning. outsized values encountered. Expect garbage.\n", told), 1);
    EXPECT_EQ(count_of("Warning", told), 3);
}

TEST_F(change_ring_test, twenty_warnings_are_enough) {
    for (int i = 0; i < 30; i++) run("a" + std::to_string(i) + " := 1000");
    run("&(V = 1)");
    EXPECT_EQ(count_of("Warning", run("&(p = 256)")), 20);
}

TEST_F(change_ring_test, an_increment_in_a_table_field_is_told_with_verbose_alone) {
    const std::string warning = "*** Warning. increment makes no sense over finite field GF(2^n).\n";
    run("&(p = 256)\na := 3");
    EXPECT_EQ(run("a :+ 1"), "\n2\n\n");
    run("&(V = 1)");
    EXPECT_EQ(run("a :+ 1"), warning + "\n3\n\n");
    EXPECT_EQ(count_of(warning, run("for i = 1 to 12 do a :+ 1 od")), 10);
}

/* ---- values of another ring ---- */

TEST_F(change_ring_test, records_of_originals_go_back) {
    run("&(J = x)\nArray s[3,3] Sparse, t[2]\ny := 7*x + 10^30\nw := 1/7\ns[1,1] := 7\ns[2,2] := 10^20*x\nt[1] := x/(x "
        "+ 7)");
    const std::string lines = "&(p = 7:)\n&(p = 11: *y)\ny\n&(p = 256:)\n&(p = _i:)\n";
    run(lines);
    run(lines);
    const records_in_use before = count_records_in_use();
    for (int i = 0; i < 20; i++) run(lines);
    const records_in_use behind = count_records_in_use();
    EXPECT_EQ(behind.numbers, before.numbers);
    EXPECT_EQ(behind.polynodes, before.polynodes);
    EXPECT_EQ(behind.quolynodes, before.quolynodes);
    EXPECT_EQ(behind.colms, before.colms);
    EXPECT_EQ(behind.digits, before.digits);
    EXPECT_EQ(value_of("y"), "7x + 1000000000000000000000000000000");
}

TEST_F(change_ring_test, deleted_and_replaced_values_take_their_originals_along) {
    const records_in_use before = count_records_in_use();
    for (int i = 0; i < 3; i++) {
        run("y := 10^40\nz := 10^40\nArray s[3,3] Sparse\ns[1,1] := 10^40\n&(p = 7:)\nz := 2\nz :+ 1\ns[2,2] := "
            "1\n@(y, z, [s])\n&(p = _i:)");
        run("1");
    }
    run("1");
    const records_in_use behind = count_records_in_use();
    EXPECT_LE(behind.digits - before.digits, 4);
    EXPECT_LE(behind.numbers - before.numbers, 4);
    EXPECT_LE(behind.quolynodes - before.quolynodes, 4);
    EXPECT_EQ(behind.colms, before.colms);
}

TEST_F(change_ring_test, what_changes_in_place_forgets_its_original) {
    run("y := 8\nz := 8\nu := 8\n&(p = 7:)");
    run("y :+ 7"); /* as before modulo 7, and yet assigned */
    run("z := 1");
    run("&(p = _i:)");
    EXPECT_EQ(value_of("y"), "1");
    EXPECT_EQ(value_of("z"), "1");
    EXPECT_EQ(value_of("u"), "8");
}

TEST_F(change_ring_test, a_loop_that_counts_in_place_forgets_the_original) {
    run("&(p = 7)\ny := 1\n&(p = _i:)\nFunc F(n) = y := 1; for i = 1 to n do y :+ 7 od; y.");
    run("F(1)");
    run("&(p = 7:)");
    EXPECT_EQ(value_of("y"), "1");
    run("&(p = _i:)");
    EXPECT_EQ(value_of("y"), "8");
}

TEST_F(change_ring_test, a_loop_variable_forgets_its_original) {
    run("i := 8\n&(p = 7:)\nfor i = 1 to 1 do &> od");
    EXPECT_EQ(value_of("i"), "1"); /* as 8 modulo 7, and yet assigned */
    run("&(p = _i:)");
    EXPECT_EQ(value_of("i"), "1");
}

TEST_F(change_ring_test, integers_that_functions_count_are_residues) {
    run("&(J = x)\n&(p = 3)");
    EXPECT_EQ(value_of("Terms(x^4 + x^3 + x^2 + x + 1)"), "-1");
    EXPECT_EQ(value_of("Terms(x^2 + x + 1) + x"), "x");
    EXPECT_EQ(value_of("Modulus"), "0");
    EXPECT_EQ(value_of("x^Terms(x^4 + x^3 + x^2 + x + 1)"), "x^5"); /* an exponent is none */
    EXPECT_EQ(value_of("2^Modulus"), "-1");
}

TEST_F(change_ring_test, a_sparse_array_that_changes_belongs_to_the_new_ring) {
    run("Array s[3,3] Sparse, t[3,3] Sparse\ns[1,1] := 7\ns[2,2] := 8\nt[1,1] := 7\nt[2,2] := 8\n&(p = 7:)");
    EXPECT_EQ(value_of("s[1,1]"), "0");
    EXPECT_EQ(value_of("s[2,2]"), "1");
    run("s[3,3] := 2");
    run("&(p = _i:)");
    EXPECT_EQ(value_of("s[1,1]"), "0");
    EXPECT_EQ(value_of("s[2,2]"), "1");
    EXPECT_EQ(value_of("s[3,3]"), "2");
    EXPECT_EQ(value_of("t[1,1]"), "7");
    EXPECT_EQ(value_of("t[2,2]"), "8");
}

TEST_F(change_ring_test, originals_are_forgotten_when_variables_change) {
    run("&(J = x)\nw := 3\n&(p = 7)\nv := 5*x\n&(p = _i: w)\n&(J > z)");
    EXPECT_EQ(value_of("v + z"), "z - 2x");
    run("&(p = 7: w)");
    EXPECT_EQ(value_of("v + z"), "z - 2x");
}

TEST_F(change_ring_test, a_function_changes_the_ring_of_its_parameters_too) {
    run("Func F(n) = &(p = 7:); 1 + n.");
    run("z := F(20)");
    EXPECT_EQ(value_of("z"), "0");
    run("&(p = _i:)");
    EXPECT_EQ(value_of("20"), "20");
}

} // namespace tolvek
