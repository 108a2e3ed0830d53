/* User functions and control statements. */
#include "support/fresh_system.h"

#include "language/builtin_table.h"
#include "language/builtins.h"
#include "language/execution.h"
#include "language/functions.h"
#include "top/driver.h"

using namespace tolvek;

namespace {

int error_of(const std::string &text) {
    std::size_t at = text.find("*** Inappropriate symbol: ");
    if (at == std::string::npos) return 0;
    std::size_t line = text.find('\n', at) + 1;
    std::string message = text.substr(line, text.find('\n', line) - line);
    for (int n = 1; n <= 377; n++)
        if (message == message_text(n)) return n;
    return -1;
}

bool contains(const std::string &text, const std::string &part) { return text.find(part) != std::string::npos; }

struct functions : fresh_exact_system {};
struct loops : functions {};
struct conditions : functions {};
struct sums : functions {};
struct listings : functions {};
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

/* ---- listings ---- */

TEST_F(listings, a_listing_reads_back_to_the_same_function) {
    const char *const definitions[] = {
        "Func F(x, ^y) = { a comment } y := y+1; if x > 3 and not [y=2] then z := -2*(x-1); w := x else z :+ fi; x y.",
        "Func F = 7;.",
        "Func F(a) = for i = 1 to 3 by 2 do while a < 3 do a :+ od od; Sigma<i = 1 to 3><j = 1, i>[i-j]; 'q'; a:.",
        "Func F = if 1 then if 2 then 3 fi else 4 fi.",
        "Func F(n) = Func G(x) = x+1;. ; G(n).",
        "Func F(x) = x <= -3; x <> 2; -x + (-3)*x - 2/x;.",
    };
    for (const char *definition : definitions) {
        run(definition);
        std::string listed = run("&f ,F");
        run("@F");
        run(trimmed(listed));
        EXPECT_EQ(run("&f ,F"), listed) << definition;
        run("@F");
    }
}

TEST_F(listings, heads_are_listed_by_name) {
    run("Func G(x, ^y) = 1;.\nFunc F = 2;.");
    EXPECT_EQ(run("&f"), "\nF\n\nG(x,^y)\n\n\n");
    EXPECT_TRUE(contains(run("&f ,H"), "H has not been defined.\n"));
    EXPECT_TRUE(contains(run("&f 3"), "3 is not a legal function name.\n"));
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

TEST_F(fast_path, compiled_names_follow_their_variables) {
    run("s := 0:\ni := 0:\nFunc F(n) = Compile(s, i); s := 0; for i = 1 to n do s := s + i od; s;.");
    EXPECT_EQ(value_of("F(3)"), "6");
    EXPECT_EQ(value_of("F(4)"), "10");
    run("@s");
    run("s := 100:");
    EXPECT_EQ(value_of("F(5)"), "15");
}

TEST_F(fast_path, a_compiled_function_may_call_itself) {
    run("Func F(n) = Compile; if n < 2 then n else F(n-1) + F(n-2) fi.");
    EXPECT_EQ(value_of("F(12)"), "144");
}

TEST_F(fast_path, refusals_of_compile) {
    EXPECT_EQ(error_of(run("Func F = Compile(q); 1;.\nF")), 19);
    EXPECT_EQ(error_of(run("q := 1:\nFunc G = Compile(q 1); 1;.\nG")), 231);
    EXPECT_EQ(error_of(run("Func H = Compile(Q); 1;.\nH")), 232);
    EXPECT_EQ(error_of(run("Func K = if 1 then Compile fi; 1;.\nK")), 229);
    EXPECT_EQ(error_of(run("if 1 then Compile fi")), 234);
}

TEST_F(functions, float_has_no_effect_in_the_exact_ring) {
    run("Func F = Float; 1/3;.");
    EXPECT_TRUE(contains(run("F"), "1 / 3"));
}

/* ---- the table of built-in functions ---- */

TEST_F(functions, every_built_in_has_the_place_of_its_name) {
    for (int code = 0; code <= numbuiltins; code++) EXPECT_STREQ(builtin_entry_name(code), builtin[code].name);
}

} // namespace
