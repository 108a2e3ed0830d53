/* Array statements that are refused, and the limits of arrays. */
#include "array_statement_fixture.h"

using namespace tolvek;

namespace {

using array_failures = array_statements;

/* ---- failures ---- */

TEST_F(array_failures, each_failure_has_its_number_and_changes_nothing) {
    static const wrong_statement failures[] = {
        {"[x] := ([y]", 1},
        {"[x", 24},
        {"[x] := [y", 24},
        {"[x] := [[1,2][3,4]", 24},
        {"[x] := [<i = 1,2> i", 24},
        {"[new]", 28},
        {"[x] := [new]", 28},
        {"Diag [new]", 28},
        {"[y] := [x] + [(1,2)]", 39},
        {"[x] := []", 40},
        {"[x] := [)]", 40},
        {"[X] := 1", 42},
        {"[1] := 1", 42},
        {"[x] := [X]", 42},
        {"[x] := [<i = 1,1001> <j = 1,1000> 1]", 43},
        {"[x] := [3]", 45},
        {"[new] := [-1]", 45},
        {"[x] := [t]", 45},
        {"[x] := [<i = 1,268435456> <j = 1,2> 1]", 52},
        {"[x[3,]] := 1", 56},
        {"[x[0,]]", 56},
        {"[x[1~3,]]", 56},
        {"[x[2~1,]]", 57},
        {"[x[,4]]", 58},
        {"[x[,1~4]]", 58},
        {"[x[,3~2]]", 59},
        {"[new[1,1]] := 5", 55},
        {"[new[1,1]]", 55},
        {"[x[1~2,]] := [(1,2)]", 60},
        {"[x[1;2]]", 61},
        {"[x[1,2,3]]", 61},
        {"[x[1~2~3,]]", 61},
        {"[x] := [(1;2)]", 70},
        {"[x] := [[1;2]]", 70},
        {"[x] := [[1,2],3]", 70},
        {"[x] := [<i = 1,2 i]", 78},
        {"[x] := [<i = 0,2> i]", 79},
        {"[x] := [<i = 1,0> i]", 80},
        {"[x] := [<i = 1,2,0> i]", 82},
        {"[x] := [<i = 1,2> <j = 1,2,-1> i]", 82},
        {"[<[1]]", 83},
        {"Diag x", 92},
        {"Diag [x[1~2,1~2]] := [(1,2,3)]", 93},
        {"?[x] + 1", 107},
        {"[x] := 'abc", 109},
        {"[x] := ''", 110},
        {"[x[1/2,]]", 118},
        {"[x[t,]]", 118},
        {"[t] := 3", 125},
        {"?[t]", 125},
        {"%[1] := %[1] + 1", 129},
        {"%[1] := [x] + [x]", 129},
        {"%[1] := [x[1,1]]", 129},
        {"[new] := [Rand]", 142},
        {"[x] := [[1,2,3][4,5]]", 173},
        {"[<] := [x]", 176},
        {"?[<]", 176},
        {"%[1] := [<]", 176},
        {"%[1] := x", 178},
        {"[s] := [[1, [1, 5] [2 6]]]", 27},
        {"[s] := [[1, [1 5]]]", 27},
        {"[s] := [[1, [2; 5]]]", 202},
        {"[s] := [[1, [2, 5]] [2; [1, 5]]]", 202},
        {"%1 := [x]", 217},
        {"2 + %[1]", 217},
        {"%[1 := [x]", 218},
        {"%[t]", 219},
        {"%[7]", 220},
        {"[%[7]]", 220},
        {"[x] := [%[7]]", 220},
        {"%[2] := %[7]", 220},
        {"%[7][1]", 220},
        {"%[400001] := [x]", 221},
        {"Diag [x] := [s]", 242},
        {"Diag [s] := [(1,2)]", 242},
        {"?[s]", 242},
        {"?[s[1,1]]", 242},
        {"?s[1,1]", 242},
        {"[s[1,1]]", 244},
        {"[s[1,1]] := 5", 244},
        {"[x] := [s[1,1]]", 244},
        {"[x[1~2,1~2]] := [s]", 244},
        {"[s] := [(1,2,3,4)]", 249},
        {"[s] := [[1, [1, 5]; ]]", 251},
        {"[s] := [[1, [1, 5; ]]]", 251},
        {"[s] := [[1, [1, 5]] [2, 3]]", 255},
        {"[s] := [[1, [t, 5]]]", 265},
        {"[s] := [[1, [1/2, 5]]]", 265},
        {"[s] := [[1, [1, 5]] [t, [1, 5]]]", 265},
        {"[s] := [[3, [1, 5]]]", 27},
        {"[s] := [[1, [3, 5]]]", 27},
        {"[s] := [[0, [1, 5]]]", 27},
        {"[%[1]] := [(1,2,3)]", 297},
        {"[x[-1,]]", 56},
        {"x[-1]", 27},
        {"?[x] := [y]'ab'", 334},
        {"?[x] := 5", 334},
        {"[x] := [<i = [y]> i]", 336},
        {"[x] : 5", 317},
        {"?[new]", 28},
        {"?[new[1,1]]", 28},
        {"?new[1]", 28},
    };
    run("&J\nt\n[x] := [[1,t,3][4,5,6]]; [y] := [(7,8)]; Array s[2,2] Sparse; s[1,2] := 9; %[1] := [y]; [y]; i := 0; j "
        ":= 0; 0");
    const std::string x = content("x"), y = content("y"), s = content("s"), last = system_array();
    run("0");
    const records_in_use before = count_records_in_use();
    for (const wrong_statement &f : failures) {
        EXPECT_EQ(error_of(run(f.text)), f.number) << f.text;
        EXPECT_TRUE(count_records_in_use() == before) << f.text;
        EXPECT_EQ(first_available, 1) << f.text;
        EXPECT_EQ(borrowed_matrices, 0) << f.text;
        EXPECT_EQ(content("x") + content("y") + content("s") + system_array(), x + y + s + last) << f.text;
    }
}

/* ---- limits ---- */

TEST_F(array_failures, literals_and_comprehensions_have_a_million_entries_at_most) {
    EXPECT_EQ(error_of(run("[x] := [<i = 1,1000> <j = 1,1000> 1]")), 0);
    EXPECT_EQ(find("x")->size, 1000000);
    EXPECT_EQ(error_of(run("[y] := [<i = 1,1000001> 1]")), 43);
    std::string text(1000000, 'a');
    EXPECT_EQ(error_of(run("[z] := '" + text + "'")), 0);
    EXPECT_EQ(find("z")->size, 1000000);
    EXPECT_EQ(error_of(run("[y] := '" + text + "a'")), 71);
    EXPECT_EQ(content("y"), "none");
}

TEST_F(array_failures, work_arrays_run_out_in_deep_brackets) {
    run("[x] := [(1,2)]");
    std::string nested = "[x]";
    for (int i = 0; i < 18; i++) nested = "[x] + (" + nested + ")";
    EXPECT_EQ(error_of(run(nested)), 0);
    EXPECT_EQ(system_array(), "1x2 19 38");
    EXPECT_EQ(error_of(run("[x] + ([x] + (" + nested + "))")), 88);
}

/* ---- room ---- */

TEST_F(array_failures, reassignment_with_ten_shapes_of_a_million_cells) {
    run("[keep] := [(1,2,3)]");
    for (int k = 0; k < 10; k++) {
        const std::string n = std::to_string(999990 - k);
        EXPECT_EQ(error_of(run("Array y[" + n + "]; y[" + n + "] := " + n)), 0) << k;
        EXPECT_EQ(value_of("y[" + n + "]"), n);
    }
    EXPECT_EQ(content("keep"), "1x3 1 2 3");
}

/* Functions that need more room than is left, unless arrays that are hidden go and cells move. */
struct full_table : array_failures {
    void SetUp() override {
        array_failures::SetUp();
        run("Func F(n) =\nArray a[1000000], a[1000000]; Array a[1000000]; n\n.");
    }
    /* The statement's error when three arrays of a million cells, two of them hidden, stand in front of k. */
    int error_in_full_table(const char *statement) {
        forget_arrays();
        run("Array a[1000000], a[1000000], a[1000000]; [k] := [(5,6)]");
        return error_of(run(statement));
    }
};

TEST_F(full_table, cells_stay_while_a_slot_or_an_array_is_held) {
    for (const char *statement :
         {"k[2] := F(9)", "k[2] :+ (F(9))", "k[2]*F(9)", "k[2]^F(9)", "Equal(^k[2], F(6))", "GCD(^k[1], F(5))",
          "[k] + F(1)", "[k[1,F(2)]]", "[k[1,1]] := F(4)", "Switchcol([k], 1, F(2))", "![k]:F(6)"}) {
        EXPECT_EQ(error_in_full_table(statement), 26) << statement;
        EXPECT_EQ(content("k"), "1x2 5 6") << statement;
    }
    run("Func G([x], n) =\nn\n.\nFunc H(x, n) =\nn\n.\nFunc K(n) =\nFloat\nk[2] := F(9)\n.");
    EXPECT_EQ(error_in_full_table("H([k], F(1))"), 26);
    EXPECT_EQ(error_in_full_table("K(0)"), 26);
    EXPECT_EQ(content("k"), "1x2 5 6");
}

TEST_F(full_table, hidden_arrays_go_while_nothing_is_held) {
    for (const char *statement : {"F(9)", "2*F(9)", "F(9) - F(8)", "h := 3*F(9)", "[m] := [(F(1), F(2))]",
                                  "[k] := F(7)", "if 2 = F(1) then 3 fi"})
        EXPECT_EQ(error_in_full_table(statement), 0) << statement;
    EXPECT_EQ(error_in_full_table("Array a[1000000]; k[2] := 9"), 0);
    EXPECT_EQ(content("k"), "1x2 5 9");
}

} // namespace
