/* Wrong statements of the language: each has the error of its own, changes nothing, and leaves the prompt whole. */
#include "support/fresh_system.h"
#include "support/reports.h"

#include "language/builtin_table.h"
#include "language/builtins.h"
#include "language/execution.h"
#include "top/driver.h"
#include "top/parse.h"

using namespace tolvek;

namespace {

struct failures : fresh_exact_system {};
struct flote_failures : fresh_system {};

TEST_F(failures, of_stored_statements) {
    run("Func F = 1 ) 2;.\nFunc G = x := 1 );.\nFunc H = while 1 do 2 ] 3 od.");
    expect_errors(*this, {{"F", 31}, {"G", 31}, {"H", 31}, {"if 1 then 2 ) fi", 31}});
}

TEST_F(failures, of_deletions) {
    run("x := 1:\nFunc F = 1;.\nArray a[2]; Array a[2]; Array a[2]");
    expect_errors(*this, {
                             {"@3", 21},
                             {"@(x 3)", 95},
                             {"@<x>", 208},
                             {"@<3>", 208},
                             {"@<F", 128},
                             {"@<[a>", 24},
                             {"@<[a]", 128},
                             {"@[a", 24},
                             {"@[<]", 176},
                             {"@zz", 19},
                             {"@Zz", 20},
                             {"@<Zz>", 20},
                             {"@[zz]", 28},
                             {"@[zz*]", 28},
                             {"@<[zz]>", 28},
                         });
    EXPECT_EQ(error_of(run("@(zz, x)")), 19);
}

TEST_F(failures, of_heads) {
    expect_errors(*this, {
                             {"Sigma<i = 1 to 3 ) >[i]", 78},
                             {"Prod<i = 1, 2, 3, 4>[i]", 78},
                             {"Sigma<i = 1, 2><j = 1, 2 ) >[i]", 78},
                             {"Sigma<i = 1, 2><j 1, 2>[i]", 77},
                             {"Sigma<i = 1, 2><j = 1, 2>i", 145},
                             {"Sigma<i = 2, 1><j = 1, 2>i", 145},
                             {"for I = 1 to 2 do 1 od", 51},
                             {"for i = 1 do 1 od", 49},
                         });
    run("&(J = p)");
    EXPECT_EQ(error_of(run("for p = 1 to 2 do 1 od")), 125);
    EXPECT_EQ(error_of(run("for i = p to 2 do 1 od")), 50);
    EXPECT_EQ(error_of(run("for i = 1 to p do 1 od")), 52);
    EXPECT_EQ(error_of(run("for i = 1 to 2 by p do 1 od")), 53);
    EXPECT_EQ(error_of(run("for i = 2^30 to 2 do 1 od")), 50); /* longer than one digit */
}

TEST_F(failures, of_conditions_between_polynomials) {
    run("&(J = p)\nx := p+1:");
    EXPECT_EQ(error_of(run("if p < x then 1 fi")), 123);
    EXPECT_EQ(error_of(run("if 2 >= x then 1 fi")), 123);
    EXPECT_EQ(trimmed(run("if p+1 = x and p <> x and not p = x then 1 else 0 fi")), "1");
    EXPECT_EQ(trimmed(run("if 1/2 < 2/3 and 1/2 <> 2 then 1 else 0 fi")), "1");
}

TEST_F(failures, of_parameters_that_have_become_polynomial_variables) {
    run("Func F(p) = p;.\n&(J = p)");
    EXPECT_EQ(error_of(run("F(1)")), 125);
    EXPECT_EQ(error_of(run("Func G(p) = p;.")), 125);
    run("Func H(^y) = y;.");
    EXPECT_EQ(error_of(run("H(p)")), 207);
}

TEST_F(failures, of_built_in_functions) {
    run("&(J = p)\nArray a[2]; Array s[2,2] Sparse\nx := 3:");
    expect_errors(*this, {
                             {"Sqrt p", 115},
                             {"Sqrt(-1)", 62},
                             {"Cols[a", 97},
                             {"Cols a", 96},
                             {"Cols[zz]", 28},
                             {"Codeg[a]", 276},
                             {"Deg[zz]", 28},
                             {"Deg[a;", 24},
                             {"Var 0", 278},
                             {"Var 2", 278},
                             {"Var(1/2)", 227},
                             {"Bin(1/2, 1)", 227},
                             {"Cast(p)", 91},
                             {"Prime(p)", 227},
                             {"Isprime(p)", 227},
                             {"ZZ1 x", 177},
                             {"ZZ2(x", 1},
                             {"ZZ3(^zz)", 19},
                         });
    EXPECT_EQ(value_of("Deg(5)"), "0");
}

TEST_F(failures, of_closed_functions_are_errors_of_their_own) {
    for (int code = 0; code <= numbuiltins; code++) {
        const int refusal = builtin_refusal(code);
        token_record t{};
        set_token(t, builtin[code].name);
        if (!refusal || t.text[1] == '-' || begins_array_statement(t)) continue;
        EXPECT_TRUE(raises(run(std::string(builtin[code].name) + "(2)"), refusal)) << builtin[code].name;
    }
}

TEST_F(flote_failures, of_the_fast_path) {
    run("s := 'a':\n&(J = p)\nq := p+1:");
    const wrong_statement rows[] = {
        {"Func F = Float; (1;.", 1},       {"Func F = Float; |1;.", 63},     {"Func F = Float; 2*;.", 68},
        {"Func F = Float; q + 1;.", 227},  {"Func F = Float; q;.", 227},     {"Func F = Float; _sin 1;.", 177},
        {"Func F = Float; _sin(1;.", 1},   {"Func F = Float; 1:= 2;.", 316}, {"Func F = Float; s:/ 2;.", 317},
        {"Func F = Float; 1|0;.", 22},     {"Func F = Float; 1\\0;.", 22},   {"Func F = Float; 3 zz;.", 31},
        {"Func F = Float; s :+ zz;.", 19}, {"Func F = Float; 2 ^ ;.", 68},   {"Func F = Float; s < 3;.", 31},
    };
    for (const wrong_statement &row : rows) {
        run(row.text);
        EXPECT_EQ(error_of(run("F")), row.number) << row.text;
        EXPECT_EQ(integerflag, 0) << row.text;
        run("@F");
    }
    EXPECT_EQ(value_of("s"), "97");
}

TEST_F(flote_failures, a_division_by_0_at_a_level_warns_and_the_value_stays) {
    run("Func F(x) = Float; 5/x;.");
    const std::string text = run("&_P\nF(0)\n&_p");
    EXPECT_TRUE(contains(text, " *** Trying to divide by 0, in variable: /.  will set quotient to 0\n"));
    EXPECT_TRUE(contains(text, "\n5\n")) << text;
}

TEST_F(failures, a_step_of_0_repeats_for_ever) {
    run("n := 0:\nfor i = 5 to 6 by 0 do n :+; if n = 1000 then &> fi od");
    EXPECT_EQ(value_of("1000*n + i"), "1000005");
}

} // namespace
