/* Built-in functions of arrays at the prompt. */
#include "array_operands.h"
#include "support/reports.h"

#include <algorithm>

using namespace tolvek;

namespace {

struct array_builtins : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(J = t); &(J = u)");
        run("&(p = 7)\n&p"); /* tables of the start take another form in the first change of ring */
        run("0");            /* the previous value is a record too */
        in_use = count_records_in_use();
        run("[x] := [[3, -1, 4][1, -5, 9]]\n[q] := [[2, 1][7, 4]]\nArray s[3,4] Sparse; s[1,2] := -6; s[3,4] := 8; "
            "s[3,1] := 2");
    }
    void TearDown() override {
        run("0");
        forget_arrays();
        EXPECT_EQ(first_available, 1);
        EXPECT_EQ(borrowed_matrices, 0);
        EXPECT_EQ(count_records_in_use(), in_use);
        fresh_exact_system::TearDown();
    }
    void refused(const std::string &statement, int n) {
        const std::string text = run(statement);
        EXPECT_NE(text.find(message_text(n)), std::string::npos) << statement << "\n" << text;
    }
    /* The elements column by column, sparse arrays with their zeros. */
    std::string elements(const std::string &name, int count) {
        std::string all;
        for (int i = 1; i <= count; i++) all += (i > 1 ? " " : "") + value_of(name + "[" + std::to_string(i) + "]");
        return all;
    }
    records_in_use in_use{};
};

/* ---- what is told of an array ---- */

TEST_F(array_builtins, sums_traces_and_sizes) {
    EXPECT_EQ(value_of("Sumup[x]"), "11");
    EXPECT_EQ(value_of("Sumup[s]"), "4");
    EXPECT_EQ(value_of("Sumup([x] + 1)"), "17");
    EXPECT_EQ(value_of("Trace[q] + 1"), "7");
    EXPECT_EQ(value_of("Trace([q]^2)"), "34");
    EXPECT_EQ(value_of("Deg[x]"), "6");
    EXPECT_EQ(value_of("Deg[s]"), "12");
    EXPECT_EQ(value_of("Det[q]"), "1");
    EXPECT_EQ(value_of("Det([q]*2) + 1"), "5");
    run("Array w[100000,100000] Sparse");
    EXPECT_EQ(value_of("Deg[w]"), "10000000000");
    run("&(p = 7)");
    EXPECT_EQ(value_of("Deg[w] - 10^10"), "0"); /* counts are residues there */
    refused("2^(3#[q])", 62);
    refused("x[1#[q],1]", 62);
    run("&p");
    refused("Trace[x]", 194);
    refused("Trace 3", 194);
    refused("Det[x]", 241);
    refused("Det 3", 46);
    refused("Deg[none]", 28);
    refused("Sumup[none]", 28);
}

TEST_F(array_builtins, a_determinant_may_be_told_what_is_known) {
    run("[p] := [[t + 1, t][t^2 + t, t^2 + 3*t]]"); /* determinant (t + 1)(t^2 + 3 t) - t (t^2 + t) = 3 t (t + 1) */
    EXPECT_EQ(value_of("Det[p] - 3*t*(t + 1)"), "0");
    EXPECT_EQ(value_of("Det([p], t + 1) - 3*t"), "0");
    EXPECT_EQ(value_of("Det([p], t, 5, 6, 8) - 3*(t + 1)"), "0");
    EXPECT_EQ(value_of("Det([p], , , 6) - 3*t*(t + 1)"), "0");
    EXPECT_EQ(value_of("Det([p]*[p], 9) - t^2*(t + 1)^2"), "0");
    EXPECT_NE(run("Det([p], 1/t)").find(" Specified factor for Det is unusable. Will ignore it.\n"), std::string::npos);
    EXPECT_NE(run("Det([p], , 0)").find(" Specified degree is unreasonable. Will ignore it.\n"), std::string::npos);
    EXPECT_NE(run("Det([p], , , , 6)").find(" With even power, |power| must be 2^k"), std::string::npos);
    refused("Det([p], , t)", 227);
    refused("Det([p], , , t)", 227);
    refused("Det([p], , , , 1)", 351);
    refused("Det([p], , , , -1)", 351);
    refused("Det([p], , , , 4, 1)", 15);
    refused("Det([p]", 1);
    refused("Det()", 46);
    refused("Det([p], t + 2)", 305);
}

TEST_F(array_builtins, determinants_of_sparse_arrays_do_not_depend_on_the_number_of_primes) {
    run("Array m[3,3] Sparse; m[1,1] := t; m[1,2] := 7; m[2,3] := 3; m[3,2] := u - 1"); /* -3 t (u - 1) */
    expect_values(*this, {
                             {"SDet(2, [m]) + 3*t*(u - 1)", "0"},
                             {"SDet(1000, [m], t) + 3*(u - 1)", "0"},
                             {"SDet(2, [m]^2, , 4, 4, 8) - 9*t^2*(u - 1)^2", "0"},
                         });
    expect_errors(*this, {
                             {"SDet [m]", 177},
                             {"SDet(t, [m])", 227},
                             {"SDet(1, [m])", 364},
                             {"SDet(-2, [m])", 364},
                             {"SDet(^n, [m])", 313},
                             {"SDet(2)", 202},
                             {"SDet(2,)", 46},
                             {"SDet(2, [m]", 1},
                             {"SDet(2, [m], , , , , 1)", 15},
                             {"SDet(2, [m], , , , 0)", 351},
                             {"SDet(2, [q])", 333},
                             {"SDet(2, 3)", 333},
                             {"SDet(2, [s])", 241},
                         });
    run("&(p = 7)");
    EXPECT_TRUE(raises(run("SDet(2, [m])"), 377));
    run("&p");
}

TEST_F(array_builtins, paths_through_all_vertices_are_asked_for_but_not_sought) {
    run("Array g[101,101], e[100,100]; [g] := 1; [e] := 0");
    for (const char *asked : {"Ham [q]", "Ham([q], 5)", "7 + Ham([e])"})
        EXPECT_EQ(run(asked), "not implemented\n\n") << asked;
    expect_errors(*this, {
                             {"Ham [x]", 23},
                             {"Ham [s]", 23},
                             {"Ham [g]", 23},
                             {"Ham 7", 23},
                             {"Ham([q], 1, 2)", 15},
                             {"Ham([q]", 1},
                         });
}

TEST_F(array_builtins, zeros) {
    EXPECT_EQ(value_of("Iszero[x]"), "0");
    EXPECT_EQ(value_of("Iszero([x] - [x])"), "1");
    EXPECT_EQ(value_of("Iszero([s] - [s])"), "1");
    EXPECT_EQ(value_of("Iszero[s]"), "0");
    EXPECT_EQ(value_of("Iszero(t - t)"), "1");
    EXPECT_EQ(value_of("Iszero(t)"), "0");
    refused("Iszero t", 184);
}

TEST_F(array_builtins, places_of_extremes_count_column_by_column_and_the_first_of_equal_ones_is_told) {
    EXPECT_EQ(value_of("Det^[x]"), "6");  /* 9 */
    EXPECT_EQ(value_of("Det _[x]"), "4"); /* -5 */
    EXPECT_EQ(value_of("Det_[x]"), "4");  /* the same without a blank */
    EXPECT_EQ(value_of("Detl[x]"), "4");
    EXPECT_EQ(value_of("Det _+[x]"), "2"); /* 1 */
    EXPECT_EQ(value_of("Det_+[x]"), "2");
    EXPECT_EQ(value_of("Detl+[x]"), "2");
    run("[e] := [[7, 2][2, 7]]");
    EXPECT_EQ(value_of("Det^[e]"), "1");
    EXPECT_EQ(value_of("Det_[e]"), "2");
    EXPECT_EQ(value_of("Det_+(-[e])"), "0"); /* none is above 0 */
    EXPECT_EQ(value_of("Det^[e] + 10"), "11");
    run("&a");
    EXPECT_EQ(value_of("Det^[x]"), "5");
    EXPECT_EQ(value_of("Det_+(-[e])"), "-1");
    run("&a");
    run("[h] := [[1/2, 1/3]]");
    EXPECT_EQ(value_of("Det_[h]"), "2");
    refused("Det^[[t]]", 119);
    run("[p] := [[t, 1]]");
    refused("Det^[p]", 119);
    refused("Det^ 3", 72);
}

TEST_F(array_builtins, the_zeros_of_a_sparse_array_count_once_in_each_row) {
    EXPECT_EQ(value_of("Det^[s]"), "12"); /* 8 in row 3, column 4 */
    EXPECT_EQ(value_of("Det_[s]"), "4");  /* -6 in row 1, column 2 */
    EXPECT_EQ(value_of("Det_+[s]"), "3"); /* 2 */
    run("Array n[2,3] Sparse; n[1,1] := -1; n[1,2] := -2; n[1,3] := -3; n[2,1] := -4");
    EXPECT_EQ(value_of("Det^[n]"), "4"); /* the zero in row 2, column 2: the first one is the last gap of its row */
    EXPECT_EQ(value_of("Det_+[n]"), "0");
}

TEST_F(array_builtins, entries_are_counted_by_a_relation) {
    EXPECT_EQ(value_of("Det#([x] > 1)"), "3");
    EXPECT_EQ(value_of("Det#([x] < 1)"), "2");
    EXPECT_EQ(value_of("Det#([x] = 2 + 2)"), "1");
    run("[p] := [[t, t + 1][t, 5]]");
    EXPECT_EQ(value_of("Det#([p] = t)"), "2");
    refused("Det#[x]", 64);
    refused("Det#([x])", 65);
    refused("Det#([x] > 1", 66);
    refused("Det#([s] > 1)", 242);
    refused("Det#([p] > 1)", 119);
}

TEST_F(array_builtins, least_common_multiples_of_all_elements) {
    EXPECT_EQ(value_of("LCM[x]"), "180"); /* of 3, 1, 4, 5 and 9 */
    EXPECT_EQ(value_of("LCM[s]"), "0");
    EXPECT_EQ(value_of("LCM(4, 6) + 1"), "13");
    run("[p] := [[t^2 - 1, t + 1]]");
    EXPECT_EQ(value_of("LCM[p] - t^2 + 1"), "0");
    run("[p] := [[1/t, 1]]");
    refused("LCM[p]", 186);
    refused("LCM[none]", 28);
    refused("LCM 3", 177);
}

/* ---- what changes an array ---- */

TEST_F(array_builtins, reversing_and_sorting) {
    run("Reverse([x])");
    EXPECT_EQ(elements("x", 6), "9 4 -5 -1 1 3");
    run("Sort([x])");
    EXPECT_EQ(elements("x", 6), "-5 -1 1 3 4 9");
    run("[p] := [[u, t^2, 5, t*u, -3, t]]; Sort([p])");
    EXPECT_EQ(value_of("p[1]"), "-3");
    EXPECT_EQ(value_of("p[2]"), "5");
    EXPECT_EQ(value_of("p[6] - t^2"), "0");
    EXPECT_EQ(value_of("p[3] - u"), "0");
    run("Reverse([s])");
    EXPECT_EQ(elements("s", 12), "2 0 0 0 0 -6 0 0 0 8 0 0");
    refused("Sort([s])", 370);
    run("s[2,1] := 1");
    run("Sort([s])"); /* rows by their first entries -6, 1, 2 */
    EXPECT_EQ(elements("s", 12), "0 1 2 -6 0 0 0 0 0 0 0 8");
    refused("Sort(3)", 369);
    refused("Sort [x]", 177);
    refused("Sort([x]", 1);
    refused("Sort([x[1,]])", 182);
    refused("Reverse([none])", 28);
    refused("Reverse(3)", 178);
}

TEST_F(array_builtins, a_star_in_front_of_an_array_makes_no_sense) {
    EXPECT_NE(
        run("Reverse(*[x])").find(" *** Warning. leading * in argument list makes no sense here and was ignored.\n"),
        std::string::npos);
    EXPECT_EQ(elements("x", 6), "9 4 -5 -1 1 3");
}

TEST_F(array_builtins, rows_and_columns_are_exchanged) {
    run("Switchrow([x], 1, 2)");
    EXPECT_EQ(elements("x", 6), "1 3 -5 -1 9 4");
    run("Switchcol([x], 3, 1)");
    EXPECT_EQ(elements("x", 6), "9 4 -5 -1 1 3");
    run("Switchcol([x[1,2~3]], 1, 2)"); /* within a part */
    EXPECT_EQ(elements("x", 6), "9 4 1 -1 -5 3");
    run("Switchrow([s], 3, 1)");
    EXPECT_EQ(elements("s", 12), "2 0 0 0 0 -6 0 0 0 8 0 0");
    for (const char *both : {"1, 4", "4, 1"}) { /* both entries, then the same again */
        run("Switchcol([s], " + std::string(both) + ")");
        EXPECT_EQ(value_of("s[1,1]"), both[0] == '1' ? "8" : "2");
    }
    run("Switchcol([s], 1, 2)"); /* lone entries move either way */
    EXPECT_EQ(elements("s", 12), "0 0 -6 2 0 0 0 0 0 8 0 0");
    run("Switchcol([s], 2, 4)");
    EXPECT_EQ(elements("s", 12), "0 0 -6 8 0 0 0 0 0 2 0 0");
    run("Switchcol([s], 3, 4)");
    EXPECT_EQ(elements("s", 12), "0 0 -6 8 0 0 2 0 0 0 0 0");
    refused("Switchrow(3, 1, 2)", 179);
    refused("Switchrow([x], 1, 3)", 181);
    refused("Switchrow([x], 0, 1)", 181);
    refused("Switchcol([x], t, 1)", 180);
    refused("Switchcol([x] 1, 2)", 202);
    refused("Switchcol([x], 1)", 202);
    refused("Switchcol([x], 1, 2; ", 70);
    refused("Switchcol([x], ^c, 1)", 313);
    refused("Switchrow [x]", 177);
    refused("Switchrow([s[1,]], 1, 1)", 244);
}

TEST_F(array_builtins, a_sparse_array_is_transposed_in_place) {
    run("STrans([s])");
    EXPECT_EQ(value_of("Cols[s]"), "3");
    EXPECT_EQ(elements("s", 12), "0 -6 0 0 0 0 0 0 2 0 0 8");
    refused("STrans([x])", 333);
    run("Func F(y) =\nSTrans([s]); 2\n.");
    EXPECT_EQ(run("[z] := [s]*F(1)").find("***"), std::string::npos); /* what was borrowed before keeps its rows */
    EXPECT_EQ(value_of("Cols[z]"), "3");
    EXPECT_EQ(value_of("z[4,3]"), "16");
    EXPECT_EQ(value_of("Cols[s]"), "4");
    run("@F");
}

TEST_F(array_builtins, columns_of_a_sparse_array_are_sets_of_rows) {
    const char *sets =
        "Array w[4,3] Sparse; w[1,1] := 2; w[3,1] := t; w[2,2] := 5; w[3,2] := 7; w[4,2] := -1; w[1,3] := 9";
    run(sets);
    EXPECT_EQ(value_of("Synth([w], 0, 3, 1, 2)"), "1"); /* row 3 is in both */
    EXPECT_EQ(elements("w", 12), "2 0 t 0 0 5 7 -1 0 0 t 0");
    run(sets);
    EXPECT_EQ(value_of("Synth([w], 1, 3, 2, 1)"), "4"); /* the entries of the first column named go before */
    EXPECT_EQ(elements("w", 12), "2 0 t 0 0 5 7 -1 2 5 7 -1");
    run(sets);
    EXPECT_EQ(value_of("Synth([w], 2, 1, 1, 2)"), "4");
    EXPECT_EQ(elements("w", 12), "2 5 t -1 0 0 0 0 9 0 0 0");
    EXPECT_EQ(value_of("Synth([w], 1, 2, 3)"), "1"); /* a single column: a copy */
    EXPECT_EQ(value_of("Synth([w], 0, 3, 2, 1, 3)"), "1");
    EXPECT_EQ(elements("w", 12), "2 5 t -1 9 0 0 0 9 0 0 0");
    run("&a");
    EXPECT_EQ(value_of("Synth([w], 2, 0, 1, 2)"), "1");
    EXPECT_EQ(value_of("w[0,0]"), "9");
    run("&a");
    run("Func F(n) =\nSTrans([w]); n\n.");
    expect_errors(*this, {
                             {"Synth [w]", 177},
                             {"Synth(3)", 178},
                             {"Synth([w[1,]], 0, 1, 2)", 182},
                             {"Synth([q], 0, 1, 2)", 333},
                             {"Synth([w])", 202},
                             {"Synth([w], 0, 1)", 202},
                             {"Synth([w], 3, 1, 2)", 373},
                             {"Synth([w], -1, 1, 2)", 373},
                             {"Synth([w], t, 1, 2)", 373},
                             {"Synth([w], 0, 4, 2)", 373},
                             {"Synth([w], 0, 1, 0)", 373},
                             {"Synth([w], 0, 1, t)", 373},
                             {"Synth([w], 0, ^n, 2)", 313},
                             {"Synth([w], 0, 1, 2", 1},
                         });
    run("@[w]; Array w[2,5] Sparse; w[1,5] := 1");
    EXPECT_TRUE(raises(run("Synth([w], 0, 5, 5, F(1))"), 373)); /* column 5 is no more when the columns are known */
    EXPECT_EQ(elements("w", 10), "0 0 0 0 1 0 0 0 0 0");
    run("@F");
}

TEST_F(array_builtins, an_argument_that_turns_the_array_leaves_no_row_to_exchange) {
    run("Func F(n) =\nSTrans([s]); n\n.");
    EXPECT_TRUE(raises(run("Switchcol([s], 4, F(1))"), 181));
    EXPECT_EQ(elements("s", 12), "0 -6 0 0 0 0 0 0 2 0 0 8");
    run("@F");
}

TEST_F(array_builtins, denominators_go) {
    run("[d] := [[1/2, 3][(t + 1)/u, t]]; Killden([d])");
    EXPECT_EQ(elements("d", 1), "1");
    EXPECT_EQ(value_of("d[2] - t - 1"), "0");
    EXPECT_EQ(value_of("d[4] - t"), "0");
    run("[f] := [[1/2, 1/3][1/5, 2/7]]; Killden([f[2,]])");
    EXPECT_EQ(value_of("f[1] + f[3] - 5/6"), "0");
    EXPECT_EQ(value_of("f[2] + f[4]"), "3");
    run("Array g[2,2] Sparse; g[1,1] := 5/3; Killden([g])");
    EXPECT_EQ(value_of("g[1,1]"), "5");
    run("Array e[30]");
    const std::string text = run("Killden([e])");
    const std::string warning = "Warning. Uninitialized array element has been set to 0.\n";
    std::size_t warnings = 0;
    for (std::size_t at = text.find(warning); at != std::string::npos; at = text.find(warning, at + 1)) warnings++;
    EXPECT_EQ(warnings, 20u);
    EXPECT_NE(text.find(" ....etc...\n"), std::string::npos);
}

/* ---- arrays and polynomials ---- */

TEST_F(array_builtins, polynomials_from_cells_and_products_of_powers_into_cells) {
    run("[c] := [[5][0][2]]");
    EXPECT_EQ(value_of("Poly([c]) - (5 + 2*t^2)"), "0");
    EXPECT_EQ(value_of("Poly([s]) - (2*t^2 - 6*t^3 + 8*t^11)"), "0");
    refused("Poly [c]", 177);
    refused("Poly(3)", 72);
    EXPECT_EQ(value_of("Monlist(3*t^2*u + 5*u - 7, [m])"), "3");
    EXPECT_EQ(value_of("m[1] - t^2*u"), "0");
    EXPECT_EQ(value_of("m[2] - u"), "0");
    EXPECT_EQ(value_of("m[3]"), "1");
    EXPECT_EQ(value_of("Monlist(4, [m])"), "1");
    EXPECT_EQ(value_of("m[1]"), "1");
    refused("Monlist(1/t, [m])", 186);
    refused("Monlist(t)", 202);
    refused("Monlist(t, m)", 178);
    refused("Monlist(t, [m[1,]])", 182);
    EXPECT_EQ(value_of("Totdeg(t^2*u + u^2 + 1)"), "3");
    EXPECT_EQ(value_of("Totdeg(5)"), "0");
    run("[v] := [[1, 4]]");
    EXPECT_EQ(value_of("Totdeg(t^2*u + u^2 + 1, [v])"), "8");
    refused("Totdeg(1/t)", 186);
    refused("Totdeg(t, [none])", 28);
    refused("Totdeg(t, [v[1,]])", 182);
}

} // namespace
