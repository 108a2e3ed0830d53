/* User functions and control statements. */
#include "support/fresh_system.h"
#include "support/reports.h"

#include "language/builtin_table.h"
#include "language/builtins.h"
#include "language/execution.h"
#include "language/functions.h"
#include "top/driver.h"

using namespace tolvek;

namespace {

struct functions : fresh_exact_system {};
struct loops : functions {};
struct conditions : functions {};
struct sums : functions {};
struct fast_path : fresh_system {};

/* ---- definitions and calls ---- */

TEST_F(functions, a_call_gives_the_value_of_the_last_statement) {
    run("Func F(x) = x^2+1;.");
    EXPECT_EQ(value_of("F(3)"), "10");
    EXPECT_EQ(value_of("F(F(2))+F(1)*2"), "30");
}

TEST_F(functions, a_definition_runs_over_lines) {
    run("Func F(x, y) =\n  z := x + y;\n\n  z*2\n.");
    EXPECT_EQ(value_of("F(3, 4)"), "14");
}

TEST_F(functions, missing_arguments_are_0_and_more_are_refused) {
    run("Func F(x, y) = 10*x+y;.");
    EXPECT_EQ(value_of("F(3)"), "30");
    EXPECT_EQ(value_of("F+1"), "1");
    EXPECT_EQ(error_of(run("F(1, 2, 3)")), 15);
    EXPECT_EQ(error_of(run("F(1 ; 2)")), 14);
}

TEST_F(functions, without_parameters_a_bracket_behind_the_name_multiplies) {
    run("Func G = 7;.");
    EXPECT_EQ(value_of("G"), "7");
    EXPECT_EQ(value_of("G(3)"), "21");
}

TEST_F(functions, a_parameter_shadows_a_global_for_the_call) {
    run("x := 5:\nFunc F(x) = x := x+1; x;.");
    EXPECT_EQ(value_of("F(10)"), "11");
    EXPECT_EQ(value_of("x"), "5");
}

TEST_F(functions, an_argument_sees_no_parameter_of_its_call) {
    run("x := 5:\nFunc F(x, y) = y;.");
    EXPECT_EQ(value_of("F(100, x)"), "5");
}

TEST_F(functions, a_reference_gives_its_value_back_at_the_end_alone) {
    run("z := 5:\nFunc F(^y) = y := y+1; z;.");
    EXPECT_EQ(value_of("F(z)"), "5"); /* inside the call z is as it was */
    EXPECT_EQ(value_of("z"), "6");
    EXPECT_EQ(value_of("F(^z)"), "6");
    EXPECT_EQ(error_of(run("F(3)")), 207);
    EXPECT_EQ(error_of(run("F()")), 206);
    EXPECT_EQ(error_of(run("F")), 206);
}

TEST_F(functions, references_of_exchanged_names_are_exchanged) {
    run("a := 1:\nb := 2:\nFunc Exchange(^b, ^a) = t := a; a := b; b := t;.\nExchange(a, b)");
    EXPECT_EQ(value_of("a"), "2");
    EXPECT_EQ(value_of("b"), "1");
}

TEST_F(functions, a_reference_to_a_variable_that_is_gone_is_dropped) {
    run("z := 5:\nFunc F(^y) = y := 9; @z;.\nF(z)");
    EXPECT_EQ(error_of(run("z")), 19);
}

TEST_F(functions, an_undefined_function_has_its_error) { EXPECT_EQ(error_of(run("Nothing(3)")), 16); }

TEST_F(functions, a_new_definition_shadows_the_old_and_its_deletion_uncovers_it) {
    run("Func F = 1;.\nFunc F = 2;.");
    EXPECT_EQ(value_of("F"), "2");
    run("@F");
    EXPECT_EQ(value_of("F"), "1");
    run("Func F = 3;.\n@<F>");
    EXPECT_EQ(value_of("F"), "3");
    run("@F");
    EXPECT_EQ(error_of(run("F")), 16);
    EXPECT_EQ(error_of(run("@F")), 20);
    EXPECT_EQ(error_of(run("@<F>")), 20);
}

TEST_F(functions, a_function_that_deletes_itself_runs_to_its_end) {
    run("Func F = @F; 5;.");
    EXPECT_EQ(value_of("F"), "5");
    EXPECT_EQ(error_of(run("F")), 16);
}

TEST_F(functions, a_definition_inside_a_function_is_made_when_it_runs) {
    run("Func F = Func G(x) = x+1;. ; G(4);.");
    EXPECT_EQ(error_of(run("G(1)")), 16);
    EXPECT_EQ(value_of("F"), "5");
    EXPECT_EQ(value_of("G(1)"), "2");
}

TEST_F(functions, return_ends_the_call) {
    run("Func F(x) = if x > 3 then Return(x) fi; 0;.");
    EXPECT_EQ(value_of("F(5)"), "5");
    EXPECT_EQ(value_of("F(2)"), "0");
    std::string text = run("Return(8)");
    EXPECT_TRUE(contains(text, " *** Warning. 'Return' ignored.\n"));
    EXPECT_TRUE(contains(text, "8"));
    EXPECT_EQ(error_of(run("Return(^x)")), 313);
}

TEST_F(functions, malformed_definitions_are_refused_and_define_nothing) {
    struct {
        const char *text;
        int number;
    } const cases[] = {
        {"Func f(x) = 1;.", 11},
        {"Func F(X) = 1;.", 5},
        {"Func F(x-y) = 1;.", 6},
        {"Func F(x) 1;.", 7},
        {"Func F x = 1;.", 12},
        {"Func F(x, x) = 1;.", 237},
        {"Func F = .", 8},
        {"Func F = else 3;.", 319},
        {"Func F = for i = 1 to 2 do i else 3 od;.", 214},
        {"Func F = if 1 then 2 fi 3;.", 38},
        {"Func F = if 1 then 2 fi {x};.", 35},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(error_of(run(c.text)), c.number) << c.text;
        EXPECT_EQ(error_of(run("F")), 16) << c.text;
    }
}

TEST_F(functions, fifteen_empty_lines_cancel_a_definition) {
    std::string empty(15, '\n');
    std::string text = run("Func F(x) = x;\n" + empty);
    EXPECT_EQ(error_of(text), 132);
    EXPECT_TRUE(contains(text, "Here is the last line read:\nx\n*** Definition of F cancelled.\n"));
    std::string fourteen(14, '\n');
    run("Func F(x) = x+1;\n" + fourteen + ".");
    EXPECT_EQ(value_of("F(2)"), "3");
}

TEST_F(functions, many_statements_are_no_empty_lines) {
    std::string body;
    for (int i = 0; i < 40; i++) body += "x := x+1;\n";
    run("Func F(x) =\n" + body + "x;.");
    EXPECT_EQ(value_of("F(2)"), "42");
}

TEST_F(functions, a_definition_cut_off_by_the_end_of_the_input_is_cancelled) {
    std::string text = run("Func F(x) = x+1;\ny := 2;");
    EXPECT_TRUE(contains(text, message_text(103)));
    EXPECT_TRUE(contains(text, "*** Definition of F cancelled.\n"));
}

TEST_F(functions, a_point_behind_a_figure_belongs_to_the_number) {
    run("Func F = 2.5*2;.");
    EXPECT_EQ(value_of("F"), "5");
    run("Func G = x := .5; 2x;.");
    EXPECT_EQ(value_of("G"), "1");
}

TEST_F(functions, recursion_computes) {
    run("Func Fib(n) = if n < 2 then n else Fib(n-1) + Fib(n-2) fi.");
    EXPECT_EQ(value_of("Fib(15)"), "610");
}

TEST_F(functions, endless_recursion_ends_at_the_prompt) {
    run("x := 3:\nFunc F(n) = F(n+1);.");
    std::string text = run("F(1)");
    EXPECT_TRUE(contains(text, "*** Panic stop.\n"));
    EXPECT_TRUE(contains(text, "more with this name. \n"));
    EXPECT_EQ(value_of("x"), "3");
    EXPECT_EQ(error_of(run("n")), 19); /* every parameter is off the tables */
}

TEST_F(functions, an_error_at_depth_600_reports_500_frames_and_ends_all_calls) {
    run("n := 77:\nFunc F(n) = if n < 600 then F(n+1) else n/0 fi.");
    std::string text = run("F(1)");
    EXPECT_EQ(error_of(text), 22);
    EXPECT_TRUE(contains(text, " ... 490 more with this name. \n")); /* 500 frames, ten names written */
    EXPECT_TRUE(contains(text, "*** Function was interrupted at:\n"));
    EXPECT_EQ(value_of("n"), "77");
    EXPECT_EQ(statcount, 0);
}

TEST_F(functions, nothing_leaks_from_calls_and_definitions) {
    run("z := 1:\nFunc F(x, ^y) = if x > 0 then y :+; F(x-1, y) else 1/2 fi.\nFunc G(x) = x/0;.");
    auto once = [&] {
        run("F(5, z):\nG(2)\nfor i = 1 to 3 do i*i od\nFunc H(a) = {c} a;.\n@H\nFunc K(a = 3;.\nSigma<i = 1 to "
            "3>[i/2]");
    };
    for (int i = 0; i < 3; i++) once();
    records_in_use before = count_records_in_use();
    for (int i = 0; i < 300; i++) once();
    EXPECT_TRUE(count_records_in_use() == before);
}

/* ---- values that change under an expression ---- */

TEST_F(functions, a_function_may_change_or_delete_the_variables_of_the_expression_that_calls_it) {
    run("x := 5:\nFunc Set = x := 7; 1;.\nFunc Drop = @x; 2;.");
    EXPECT_EQ(value_of("x*Set"), "7");
    EXPECT_EQ(value_of("x+Drop"), "9"); /* the left operand of a sum is a copy */
    EXPECT_EQ(error_of(run("x")), 19);
}

/* ---- loops ---- */

TEST_F(loops, all_spellings_of_a_head) {
    const char *const heads[] = {"i = 1 to 5",      "i := 1 to 5", "i from 1 to 5",   "i = 1, 5",
                                 "i = 1 to 5 by 1", "i = 1, 5, 1", "i from 1, 5 by 1"};
    for (const char *head : heads) {
        run(std::string("s := 0:\nfor ") + head + " do s := 10*s+i od");
        EXPECT_EQ(value_of("s"), "12345") << head;
        EXPECT_EQ(value_of("i"), "6") << head;
    }
}

TEST_F(loops, run_no_times_or_downward) {
    run("s := 0:\nfor i = 3, 1 do s :+ od");
    EXPECT_EQ(value_of("s"), "0");
    EXPECT_EQ(value_of("i"), "3");
    run("for i = 3, 1, -1 do s := 10*s+i od");
    EXPECT_EQ(value_of("s"), "321");
    EXPECT_EQ(value_of("i"), "0");
}

TEST_F(loops, the_body_cannot_change_the_count) {
    run("n := 3:\ns := 0:\nfor i = 1 to n do n := 10; i := 100; s :+ od");
    EXPECT_EQ(value_of("s"), "3");
}

TEST_F(loops, the_variable_keeps_the_value_of_the_pass_that_was_left) {
    run("for i = 1 to 10 do if i = 4 then &> fi od");
    EXPECT_EQ(value_of("i"), "4");
}

TEST_F(loops, a_pass_can_be_cut_short) {
    run("s := 0:\nfor i = 1 to 5 do if i = 3 then &] fi; s := 10*s+i od");
    EXPECT_EQ(value_of("s"), "1245");
}

TEST_F(loops, a_function_can_be_left_from_inside) {
    run("Func F = for i = 1 to 5 do for j = 1 to 5 do if i*j = 6 then &} fi od od; 99;.\ns := F:");
    EXPECT_EQ(value_of("i"), "2");
    EXPECT_EQ(value_of("j"), "3");
}

TEST_F(loops, a_deleted_variable_is_made_anew) {
    run("s := 0:\nfor i = 1 to 3 do @i; s :+ od");
    EXPECT_EQ(value_of("s"), "3");
    EXPECT_EQ(value_of("i"), "4");
}

TEST_F(loops, while_runs_as_long_as_its_condition_holds) {
    run("x := 1:\nwhile x < 100 do x := 2x od");
    EXPECT_EQ(value_of("x"), "128");
    run("while 1 do x :+; if x = 200 then &> fi od");
    EXPECT_EQ(value_of("x"), "200");
}

TEST_F(loops, the_last_control_statement_runs_again) {
    EXPECT_EQ(error_of(run("<F")), 222);
    run("x := 0:\nfor i = 1 to 3 do x :+ od");
    run("<F");
    EXPECT_EQ(value_of("x"), "6");
}

TEST_F(loops, a_control_statement_runs_over_lines_and_ends_behind_twelve_empty_ones) {
    run("x := 0:\nfor i = 1 to 3 do\n  x := x + i\n\nod");
    EXPECT_EQ(value_of("x"), "6");
    EXPECT_EQ(error_of(run("for i = 1 to 3 do\n  x :+;\n" + std::string(12, '\n'))), 0);
    EXPECT_EQ(value_of("x"), "9");
}

TEST_F(loops, malformed_heads_have_their_errors) {
    struct {
        const char *text;
        int number;
    } const cases[] = {
        {"for 3 = 1 to 2 do 1 od", 51},
        {"for i 1 to 2 do 1 od", 77},
        {"for i : 1 to 2 do 1 od", 77},
        {"for i = 1/2 to 2 do 1 od", 50},
        {"for i = 1 do 1 od", 49},
        {"for i = 1 to 1/2 do 1 od", 52},
        {"for i = 1 to 2 by 1/2 do 1 od", 53},
        {"for i = 1 to 2 ) do 1 od", 190},
        {"for i = 268435454 to 268435455 do 1 od", 47},
    };
    for (const auto &c : cases) EXPECT_EQ(error_of(run(c.text)), c.number) << c.text;
}

TEST_F(loops, over_the_rows_of_sparse_columns) {
    run("Array s[9,3] Sparse; s[2,1] := 5; s[7,1] := 6; s[4,3] := 1; s[7,3] := 2; t := 0:");
    run("for i = [s] 1, 3 do t := 10*t + i od");
    EXPECT_EQ(value_of("t"), "247");
    EXPECT_EQ(value_of("i"), "8"); /* behind the last row */
    run("t := 0; for i from [s] 1+2 do t := 10*t + i od");
    EXPECT_EQ(value_of("t"), "47");
    run("for i := [s] 2 do t := 0 od");
    EXPECT_EQ(value_of("t"), "47");
    EXPECT_EQ(value_of("i"), "0"); /* no row has an entry there */
    EXPECT_EQ(value_of("Sigma<i = [s] 1, 3>[i]"), "13");
    run("t := 0; for i = [s] 1 do s[7,1] := 0; t := 10*t + i od");
    EXPECT_EQ(value_of("t"), "27"); /* the rows are those of the beginning */
    run("&a\nt := 0; for i = [s] 2 do t := 10*t + i od\n&a");
    EXPECT_EQ(value_of("t"), "36"); /* rows and columns from 0 */
}

TEST_F(loops, over_sparse_columns_have_their_errors) {
    run("Array s[9,3] Sparse; Array a[3]");
    EXPECT_EQ(error_of(run("for i = [zz] 1 do 1 od")), 28);
    EXPECT_EQ(error_of(run("for i = [a] 1 do 1 od")), 335);
    EXPECT_EQ(error_of(run("for i = [s] 4 do 1 od")), 27);
    EXPECT_EQ(error_of(run("for i = [s] 0 do 1 od")), 27);
    EXPECT_EQ(error_of(run("for i = [s] 2^60 do 1 od")), 27);
    EXPECT_EQ(error_of(run("for i = [s] 1/2 do 1 od")), 118);
    EXPECT_EQ(error_of(run("for i = [s 1 do 1 od")), 24);
    EXPECT_EQ(error_of(run("for i = [s] 1 2 do 1 od")), 27); /* 12 */
}

TEST_F(loops, a_control_statement_cannot_stand_inside_a_stored_expression) {
    run("Func F = x := 1 + if 1 then 2 fi;.");
    EXPECT_EQ(error_of(run("F")), 225);
}

/* ---- conditions ---- */

TEST_F(conditions, relations_of_numbers) {
    struct {
        const char *condition;
        int value;
    } const cases[] = {
        {"2 < 3", 1},  {"3 < 3", 0},  {"3 <= 3", 1},    {"4 > 3", 1},     {"3 >= 4", 0},  {"3 = 3", 1},
        {"3 <> 3", 0}, {"-2 < 1", 1}, {"1/3 < 1/2", 1}, {"1/2 = 2/4", 1}, {"3/2 > 1", 1}, {"-1/2 >= 0", 0},
    };
    for (const auto &c : cases)
        EXPECT_EQ(trimmed(run(std::string("if ") + c.condition + " then 1 else 0 fi")), std::to_string(c.value))
            << c.condition;
}

TEST_F(conditions, only_the_number_1_is_true) {
    EXPECT_EQ(trimmed(run("if 2 then 5 else 6 fi")), "6");
    EXPECT_EQ(trimmed(run("if 1 then 5 else 6 fi")), "5");
    EXPECT_EQ(trimmed(run("if 1/2 then 5 else 6 fi")), "6");
}

TEST_F(conditions, and_binds_tighter_than_or) {
    EXPECT_EQ(trimmed(run("if 1 or 0 and 0 then 5 else 6 fi")), "5");
    EXPECT_EQ(trimmed(run("if [1 or 0] and 0 then 5 else 6 fi")), "6");
    EXPECT_EQ(trimmed(run("if not 0 and 1 then 5 else 6 fi")), "5");
    EXPECT_EQ(trimmed(run("if not [1 and 1] then 5 else 6 fi")), "6");
}

TEST_F(conditions, all_parts_are_evaluated) {
    run("x := 0:\nFunc F = x :+; 1;.\nif 1 or F = 1 then 2 fi");
    EXPECT_EQ(value_of("x"), "1");
    EXPECT_EQ(error_of(run("if 0 and 1/0 = 1 then 2 fi")), 22);
}

TEST_F(conditions, malformed_ones_have_their_errors) {
    EXPECT_EQ(error_of(run("if 1 ) then 2 fi")), 13);
    EXPECT_EQ(error_of(run("if [1 = 1 then 2 fi")), 153);
    EXPECT_EQ(error_of(run("if 1 = 1 ) then 2 fi")), 104);
}

/* ---- sums and products ---- */

TEST_F(sums, of_numbers) {
    EXPECT_EQ(value_of("Sigma<i = 1 to 10>[i^2]"), "385");
    EXPECT_EQ(value_of("Sigma<i = 1, 10, 3>(i)+1"), "23");
    EXPECT_EQ(value_of("Prod<i = 1, 5>[i]"), "120");
    EXPECT_EQ(value_of("Sigma<i = 1, 3><j = 1, i>[i*j]"), "25");
    EXPECT_EQ(value_of("Sigma<i = 2 to 1>[i]"), "0");
    EXPECT_EQ(value_of("Prod<i = 2 to 1>(i)*7"), "7");
    EXPECT_EQ(value_of("Sigma<i = 2 to 1><j = 1 to 2>[(i+1)*(j)]+4"), "4");
}

TEST_F(sums, in_functions) {
    run("Func S(n) = Sigma<i = 1 to n by 2>[Prod<j = 1 to i>[j]] + 1;.");
    EXPECT_EQ(value_of("S(5)"), "128"); /* 1! + 3! + 5! + 1 */
    EXPECT_EQ(value_of("S(0)"), "1");
}

TEST_F(sums, malformed_ones_have_their_errors) {
    struct {
        const char *text;
        int number;
    } const cases[] = {
        {"Sigma[3]", 144},   {"Sigma<i = 1 to 3;", 81}, {"Sigma<i = 1 to 3>3", 145}, {"Sigma<i = 1 to 3>[i", 274},
        {"Sigma<3>[i]", 51},
    };
    for (const auto &c : cases) EXPECT_EQ(error_of(run(c.text)), c.number) << c.text;
}

/* ---- floats and compiled names ---- */

TEST_F(fast_path, computes_like_the_ordinary_one) {
    run("Func F(x) = Float; x := x*x + 1/4; x - 2^3;.\nFunc G(x) = x := x*x + 1/4; x - 2^3;.");
    for (const char *x : {"1", "2.5", "-3"})
        EXPECT_EQ(value_of(std::string("F(") + x + ")"), value_of(std::string("G(") + x + ")")) << x;
}

TEST_F(fast_path, integer_quotients_are_float_quotients) {
    run("Func F = Float; 7 \\ 2;.");
    EXPECT_EQ(value_of("F"), "3.5");
}

TEST_F(fast_path, multiplies_in_place) {
    run("Func F(x) = Float; x :* 5; x :+ 2; x :-; x;.");
    EXPECT_EQ(value_of("F(3)"), "16");
    EXPECT_EQ(error_of(run("x := 2:\nx :* 5")), 317);
}

TEST_F(fast_path, reads_every_kind_of_factor) {
    run("z := 4:\nFunc Twice(x) = 2x;.\n"
        "Func F(x) = Float; -x + $2.7 + |(0-3)| + _sqrt(z) + 3! + Twice(x) + Sigma<i = 1 to 3>[i*x] + 1e+1 + (2);.");
    EXPECT_EQ(value_of("F(1)"), "32"); /* -1 + 2 + 3 + 2 + 6 + 2 + 6 + 10 + 2 */
}

TEST_F(fast_path, differs_from_the_ordinary_path_where_the_manual_says_so) {
    struct {
        const char *statement, *with, *without; /* values, or the numbers of errors with a minus sign */
    } const rows[] = {
        {"7 | 2", "1", "0"},         {"7.6 | 3", "2", "0"},   {"2^0.5 - _sqrt(2)", "0", "0.5857864376269049512"},
        {"x :* 5; x", "15", "e317"}, {"6 // 3", "e340", "2"}, {"7 \\ 2", "3.5", "3.5"},
        {"_sin(0) + 3!", "6", "6"},
    };
    for (const auto &row : rows) {
        run(std::string("Func F(x) = Float; ") + row.statement + ";.\nFunc G(x) = " + row.statement + ";.");
        for (const char *call : {"F(3)", "G(3)"}) {
            const std::string expected = call[0] == 'F' ? row.with : row.without;
            if (expected[0] == 'e')
                EXPECT_EQ(error_of(run(call)), std::stoi(expected.substr(1))) << row.statement;
            else
                EXPECT_EQ(value_of(call).substr(0, 15), expected.substr(0, 15)) << row.statement << call;
        }
    }
    run("&(J = p)\nFunc F(x) = Float; x + 1;.");
    EXPECT_EQ(error_of(run("F(p)")), 227);
}

TEST_F(functions, float_leaves_the_exact_ring_as_it_is) {
    run("Func F(x) = Float; 7 \\ 2 + x/3;.");
    EXPECT_TRUE(contains(run("F(1)"), "10 / 3"));
    run("Func G(x) = Float; _sin(x);.");
    EXPECT_NE(error_of(run("G(1)")), 0);
    run("Func H(x) = Float; x :* 5;.");
    EXPECT_EQ(error_of(run("H(1)")), 317);
}

TEST_F(fast_path, a_called_function_starts_on_the_ordinary_path) {
    run("Func G = 7 \\ 2;.\nFunc F = Float; G;.");
    EXPECT_EQ(value_of("F"), value_of("7 \\ 2"));
}

TEST_F(fast_path, failures) {
    run("Func F(x) = Float; 1/x;.\nFunc G = Float; 2//1;.\nFunc H = Float; y + 1;.\nFunc K = Float; 2 + ;.");
    EXPECT_EQ(error_of(run("F(0)")), 22);
    EXPECT_EQ(error_of(run("G")), 340);
    EXPECT_EQ(error_of(run("H")), 19);
    EXPECT_EQ(error_of(run("K")), 68);
    EXPECT_EQ(integerflag, 0);
}

TEST_F(functions, float_has_no_effect_in_the_exact_ring) {
    run("Func F = Float; 1/3;.");
    EXPECT_TRUE(contains(run("F"), "1 / 3"));
}

TEST_F(fast_path, reads_and_writes_elements) {
    run("Array a[4]; Array m[2,3]; Array s[5,5] Sparse; s[2,2] := 8\n"
        "Func F(v, w, z, i) = Float; for i = 1 to 4 do v[i] := i/4 od; v[2] :+ 1; v[3] :-; v[4] :* 3;"
        "w[2,3] := v[4]^2; z[1,1] := 5; z[2,2] :- 8; z[3,3] :+ 2; v[1] + w[2,3] + z[4,4] + z[1,1];.");
    EXPECT_EQ(value_of("F([a], [m], [s])"), "14.25"); /* 1/4 + 9 + 0 + 5 */
    EXPECT_EQ(value_of("a[2]"), "1.5");
    EXPECT_EQ(value_of("a[3]"), "-0.25");
    EXPECT_EQ(value_of("m[6]"), "9");
    EXPECT_EQ(value_of("s[3,3]"), "2");
    EXPECT_EQ(value_of("s[2,2]"), "0");
    EXPECT_EQ(value_of("a[1]"), "0.25");
}

TEST_F(fast_path, wrong_elements) {
    run("Array a[4]\na[1] := 0\nFunc F(v, i) = Float; _sqrt(v[i]);.\nFunc G = Float; zz[1];.\nFunc H = Float; a[1;.\n"
        "Func K = Float; a[1]/a[1];.");
    EXPECT_EQ(error_of(run("F([a], 5)")), 27);
    EXPECT_EQ(error_of(run("F([a], 0)")), 27);
    EXPECT_EQ(error_of(run("G")), 28);
    EXPECT_EQ(error_of(run("H")), 61);
    EXPECT_EQ(error_of(run("K")), 22);
    EXPECT_EQ(value_of("F([a], 3)"), "0"); /* without a value it is 0 */
}

/* ---- the table of built-in functions ---- */

TEST_F(functions, every_built_in_has_the_place_of_its_name) {
    for (int code = 0; code <= numbuiltins; code++) EXPECT_STREQ(builtin_entry_name(code), builtin[code].name);
}

} // namespace
