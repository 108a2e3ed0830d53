/* Statements that begin with an array: what they store, and what they leave as it was. */
#include "array_statement_fixture.h"

#include "matrix/slots.h"

using namespace tolvek;

namespace {

/* ---- dense literals ---- */

TEST_F(array_statements, a_literal_by_rows_makes_an_array) {
    run("[x] := [[1,2,3][4,5,6]]; [y] := [[1,2],[3,4]]; [z] := [(7,8,9)]; [w] := [[5]]; [v] := [[1][2][3]]");
    EXPECT_EQ(content("x"), "2x3 1 4 2 5 3 6");
    EXPECT_EQ(content("y"), "2x2 1 3 2 4");
    EXPECT_EQ(content("z"), "1x3 7 8 9");
    EXPECT_EQ(content("w"), "1x1 5");
    EXPECT_EQ(content("v"), "3x1 1 2 3");
}

TEST_F(array_statements, the_end_of_a_line_behind_a_separator_ends_a_row) {
    run("[x] := [[1, 2, `\n3, 4]]\n[y] := [[1 `\n, 2, 3 + `\n 4, `\n 5, 6, 7]]");
    EXPECT_EQ(content("x"), "2x2 1 3 2 4");
    EXPECT_EQ(content("y"), "2x3 1 5 2 6 7 7") << "not inside an entry";
}

TEST_F(array_statements, the_first_row_gives_the_number_of_columns) {
    run("[x] := [[1,2][3][4]]");
    EXPECT_EQ(content("x"), "2x2 1 3 2 4");
    EXPECT_EQ(error_of(run("[y] := [[1,2,3][4,5]]")), 173);
    EXPECT_EQ(content("y"), "none");
}

TEST_F(array_statements, entries_are_expressions) {
    run("x := 5; &J\nt\n[a] := [[x^2, (1+2)*3][1/3, t^2 - 1]]");
    EXPECT_EQ(content("a"), "2x2 25 1 / 3 9 t^2 - 1");
}

TEST_F(array_statements, text_is_a_row_of_codes) {
    run("[x] := 'aB z'");
    EXPECT_EQ(content("x"), "1x4 97 66 32 122");
    run("Func F(n) =\n[y] := 'a;b';\n0\n.\nF(0)");
    EXPECT_EQ(content("y"), "1x3 97 59 98");
}

TEST_F(array_statements, a_scalar_makes_an_array_of_one_element) {
    run("[x] := 7");
    EXPECT_EQ(content("x"), "1x1 7");
    EXPECT_TRUE(find("x")->one_dim);
}

/* ---- comprehensions ---- */

TEST_F(array_statements, comprehensions_evaluate_their_body_for_each_pair) {
    run("[x] := [<i = 1,2> <j = 1,3> 10*i + j]; [y] := [<i = 1 to 3> i^2]");
    EXPECT_EQ(content("x"), "2x3 11 21 12 22 13 23");
    EXPECT_EQ(content("y"), "3x1 1 4 9");
}

TEST_F(array_statements, what_a_step_leaves_out_has_no_value) {
    run("[x] := [<i = 2,5,2> <j = 2,3> i + j]");
    EXPECT_EQ(content("x"), "5x3 * * * * * * 4 * 6 * * 5 * 7 *");
    run("[y] := [<i = 3,2> i]");
    EXPECT_EQ(content("y"), "2x1 * *");
}

TEST_F(array_statements, a_body_may_hold_brackets_quotes_and_previous_values) {
    run("[a] := [(3,4,5)]; 7; [x] := [<i = 1,3> <j = 1,1> < + a[i]*(i + 1)]; [a]; [y] := [<i = 1,2> <[i]]");
    EXPECT_EQ(content("x"), "3x1 13 19 27");
    EXPECT_EQ(content("y"), "2x1 3 4");
    run("[z] := [<i = 1,2> 'A' + i]");
    EXPECT_EQ(content("z"), "2x1 66 67");
}

TEST_F(array_statements, comprehensions_work_inside_functions) {
    run("Func F(n) =\nfor k = 1 to 2 do\n[x] := [<i = 1 to n> <j = 1, k> i*j + k]\nod;\nx[n,2]\n.");
    EXPECT_EQ(value_of("F(3)"), "8");
    EXPECT_EQ(content("x"), "3x2 3 4 5 4 6 8");
}

TEST_F(array_statements, comprehensions_of_sparse_arrays_keep_no_zero) {
    run("Array s[4,4] Sparse; [s] := [<i = 1,4> <j = 1,4> (i - j)*(i - 1)]");
    EXPECT_EQ(content("s"), "4x4 sparse 0 1 4 9 0 0 2 6 0 -1 0 3 0 -2 -2 0");
    EXPECT_EQ(entries("s"), 9);
}

TEST_F(array_statements, comprehensions_count_from_the_first_index) {
    addresser = 0;
    run("[x] := [<i = 0,1> <j = 0,2> 10*i + j]");
    EXPECT_EQ(content("x"), "2x3 0 10 1 11 2 12");
    EXPECT_EQ(error_of(run("[x] := [<i = -1,1> i]")), 79);
    addresser = 1;
}

/* ---- sparse literals ---- */

TEST_F(array_statements, entries_of_sparse_arrays_are_given_by_rows) {
    run("Array s[3,4] Sparse; [s] := [[1, [2, 5] [3, 7]] [3, [4, 2]]]");
    EXPECT_EQ(content("s"), "3x4 sparse 0 0 0 5 0 0 7 0 0 0 0 2");
    run("[s] := [ [3, [4, 2], [1, 1] ], [1, [1, 6] ] ]");
    EXPECT_EQ(content("s"), "3x4 sparse 6 0 1 0 0 0 0 0 0 0 0 2");
    run("[s] := [[2, [1, 4], `\n [2, 5] ] `\n [1, [1, 1]]]");
    EXPECT_EQ(content("s"), "3x4 sparse 1 4 0 0 5 0 0 0 0 0 0 0");
}

TEST_F(array_statements, coordinates_that_are_given_twice_add_up) {
    run("Array s[2,2] Sparse; [s] := [[1, [1, 3] [1, 4]] [2, [2, 5] [2, -5]] [1, [1, 1]]]");
    EXPECT_EQ(content("s"), "2x2 sparse 8 0 0 0");
    EXPECT_EQ(entries("s"), 1);
}

TEST_F(array_statements, rows_of_a_sparse_literal_are_read_outside_the_modular_ring) {
    run("&(p = 3)\nArray s[5,5] Sparse; i := 1; [s] := [[4, [5, 7]] [i + 4, [2, 2]]]");
    EXPECT_EQ(quoly_to_int(spar_retrieve(find("s")->sparse_head, 4, 5)), 1) << "7 = 1 modulo 3";
    EXPECT_EQ(entries("s"), 2);
    run("Array t[1,2] Sparse; [t] := [[4/2, 5]]");
    EXPECT_EQ(entries("t"), 2);
    EXPECT_EQ(quoly_to_int(spar_retrieve(find("t")->sparse_head, 1, 1)), 2) << "4/2 = 1/2 = 2 modulo 3";
    run("&p");
}

TEST_F(array_statements, dense_literals_and_scalars_fill_sparse_arrays) {
    run("Array s[2,3] Sparse; [s] := [[1,0,3][0,5,0]]");
    EXPECT_EQ(content("s"), "2x3 sparse 1 0 0 5 3 0");
    EXPECT_EQ(entries("s"), 3);
    EXPECT_EQ(error_of(run("[s] := [(1,2,3,4,5,6)]")), 249) << "as many cells in other rows";
    EXPECT_EQ(content("s"), "2x3 sparse 1 0 0 5 3 0");
    run("[s] := 5");
    EXPECT_EQ(entries("s"), 6);
    run("[s] := 0");
    EXPECT_EQ(entries("s"), 0);
    run("[s] := [(1,2)]");
    EXPECT_EQ(content("s"), "1x2 1 2") << "another number of cells: a new array";
}

/* ---- assignment ---- */

TEST_F(array_statements, an_array_of_the_same_size_keeps_its_shape) {
    run("[x] := [[1,2,3][4,5,6]]; [y] := [[7,8][9,10][11,12]]; [x] := [y]");
    EXPECT_EQ(content("x"), "2x3 7 9 11 8 10 12") << "column by column";
    EXPECT_EQ(content("y"), "3x2 7 9 11 8 10 12");
}

TEST_F(array_statements, another_size_makes_a_new_array_that_hides_the_old_one) {
    run("[x] := [[1,2][3,4]]; [x] := [(5,6,7)]");
    EXPECT_EQ(content("x"), "1x3 5 6 7");
    run("@[x]");
    EXPECT_EQ(content("x"), "2x2 1 3 2 4");
}

TEST_F(array_statements, a_scalar_fills_an_array) {
    run("[x] := [[1,2][3,4]]; [x] := 9");
    EXPECT_EQ(content("x"), "2x2 9 9 9 9");
    run("h := 1/2; [x[2,]] := h");
    EXPECT_EQ(content("x"), "2x2 9 1 / 2 9 1 / 2");
}

TEST_F(array_statements, a_copy_does_not_share_its_values) {
    run("[x] := [(1,2)]; [y] := [x]; y[1] := 8; x[2] := 9");
    EXPECT_EQ(content("x"), "1x2 1 9");
    EXPECT_EQ(content("y"), "1x2 8 2");
    run("Array s[2,2] Sparse; s[1,1] := 1; [t] := [s]; t[1,1] := 5; s[2,2] := 6");
    EXPECT_EQ(content("s"), "2x2 sparse 1 0 0 6");
    EXPECT_EQ(content("t"), "2x2 sparse 5 0 0 0");
}

TEST_F(array_statements, a_sparse_value_makes_an_ordinary_array_sparse) {
    run("Array s[2,2] Sparse; s[2,1] := 3; [x] := [[1,2][3,4]]; [y] := [(5,6)]; [x] := [s]");
    EXPECT_EQ(content("x"), "2x2 sparse 0 3 0 0");
    EXPECT_EQ(content("y"), "1x2 5 6") << "the cells in front of it are closed";
    run("[y] := [s]");
    EXPECT_EQ(content("y"), "2x2 sparse 0 3 0 0");
    run("Array r[1,4] Sparse; [s] := [r]");
    EXPECT_EQ(content("s"), "1x4 sparse 0 0 0 0") << "as many cells in other rows: a new array";
}

TEST_F(array_statements, the_right_side_may_read_what_the_left_side_overwrites) {
    run("[x] := [[1,2,3][4,5,6][7,8,9]]; [x] := [x]");
    EXPECT_EQ(content("x"), "3x3 1 4 7 2 5 8 3 6 9");
    run("[x[2~3,]] := [x[1~2,]]");
    EXPECT_EQ(content("x"), "3x3 1 1 4 2 2 5 3 3 6");
    run("[x[,2~3]] := [x[,1~2]]");
    EXPECT_EQ(content("x"), "3x3 1 1 4 1 1 4 2 2 5");
    run("Diag [x] := [x[,3]]");
    EXPECT_EQ(content("x"), "3x3 2 1 4 1 2 4 2 2 5");
    run("[x] := [x] + [x]");
    EXPECT_EQ(content("x"), "3x3 4 2 8 2 4 8 4 4 10");
    run("Array s[2,2] Sparse; [s] := [[1, [1, 5] [2, 6]]]; [s] := [s]; [s] := [s] + [s]");
    EXPECT_EQ(content("s"), "2x2 sparse 10 0 12 0");
    run("[s] := [<i = 1,2> <j = 1,2> s[j,i]]");
    EXPECT_EQ(content("s"), "2x2 sparse 10 12 0 0");
    run("%[1] := [x]; [%[1]] := [%[1]] - [x[,]]");
    EXPECT_EQ(content("x"), "3x3 0 0 0 0 0 0 0 0 0");
}

TEST_F(array_statements, the_right_side_may_delete_or_replace_the_target) {
    run("Func F(n) =\n@[x];\n[(1,2)]\n.\nFunc G(n) =\n[x] := [(7,8,9)]; 5\n.\nFunc S(n) =\nSparse[x]; 6\n.");
    run("Func D(n) =\n@[x]; 4\n.");
    run("[x] := [(1,2)]; [x] := D(0)");
    EXPECT_EQ(content("x"), "1x1 4") << "there is no array any more";
    run("@[x]; [x] := [(1,2)]; [x] := G(0)");
    EXPECT_EQ(content("x"), "1x3 5 5 5") << "the newest array of the name";
    run("@[x*]; [x] := [(1,2)]");
    EXPECT_EQ(error_of(run("[x[1,1]] := G(0)")), 55);
    run("@[x*]; [x] := [(1,2)]; [x] := S(0)");
    EXPECT_EQ(content("x"), "1x2 sparse 6 6");
    run("@[x*]; [x] := [(1,2)]");
    EXPECT_EQ(error_of(run("[x[1,1]] := S(0)")), 244);
    run("@[x*]; [x] := [(1,2)]; %[1] := [x]");
    EXPECT_EQ(error_of(run("[%[1]] := D(0)")), 220);
    run("[x] := [(1,2)]; [y] := [x] + D(0)");
    EXPECT_EQ(content("y"), "1x2 5 6") << "a borrowed array that goes keeps its values";
}

TEST_F(array_statements, a_sparse_operand_that_a_function_changes_keeps_its_entries) {
    run("Array s[2,2] Sparse; s[1,2] := 5\nFunc F(n) =\ns[1,2] := 100; s[2,1] := 7; 1\n.");
    run("[t] := [s] + F(0)");
    EXPECT_EQ(content("t"), "2x2 1 1 6 1");
    EXPECT_EQ(content("s"), "2x2 sparse 0 7 100 0");
    run("[u] := [s] + (F(0)*[s])");
    EXPECT_EQ(content("u"), "2x2 sparse 0 14 200 0");
}

TEST_F(array_statements, a_sparse_operand_keeps_its_rows_when_a_function_rearranges_them) {
    run("Func F(n) =\nn\n.");
    for (const char *statement : {"Reverse([s])", "Switchrow([s], 1, 3)", "Switchcol([s], 1, 3)", "Sort([s])",
                                  "STrans([s])", "Killden([s])", "Synth([s], 2, 1, 2, 3)", "[s] := 1", "@[s]"}) {
        forget_arrays();
        run("Array s[3,3] Sparse; s[1,1] := 8; s[1,2] := 5/2; s[2,3] := 6; s[3,1] := 4");
        run("@F\nFunc F(n) =\n" + std::string(statement) + "; n\n.");
        EXPECT_EQ(error_of(run("[t] := [s] + F(1)")), 0) << statement;
        EXPECT_EQ(content("t"), "3x3 9 1 5 7 / 2 1 1 1 7 1") << statement;
        EXPECT_NE(content("s"), "3x3 sparse 8 0 4 5 / 2 0 0 0 6 0") << statement;
    }
}

TEST_F(array_statements, a_loop_over_rows_keeps_the_rows_that_it_began_with) {
    run("Func F(n) =\nSTrans([s]); n\n.");
    run("Array s[3,2] Sparse; s[1,1] := 1; s[2,2] := 2; s[3,1] := 3; n := 0");
    run("for r = [s] F(1), 2 do n := 10*n + r od");
    EXPECT_EQ(value_of("n"), "123");
    EXPECT_EQ(content("s"), "2x3 sparse 1 0 0 2 3 0");
}

/* ---- parts of arrays ---- */

TEST_F(array_statements, a_subscript_names_a_rectangle) {
    run("[x] := [<i = 1,5> <j = 1,4> 10*i + j]; [y] := [x[2~,]]");
    EXPECT_EQ(content("y"), "4x4 21 31 41 51 22 32 42 52 23 33 43 53 24 34 44 54");
    run("[x[2~3,4]]");
    EXPECT_EQ(system_array(), "2x1 24 34");
    run("[x[~2,3~]]");
    EXPECT_EQ(system_array(), "2x2 13 23 14 24");
    run("[x[,2]]");
    EXPECT_EQ(system_array(), "5x1 12 22 32 42 52");
    run("[x[3]]");
    EXPECT_EQ(system_array(), "1x4 31 32 33 34");
    run("[x[5,~]]");
    EXPECT_EQ(system_array(), "1x4 51 52 53 54");
    run("[x[2~1+2,4]]");
    EXPECT_EQ(system_array(), "2x1 24 34") << "coordinates are expressions";
    run("%[7] := [x]; [z] := [%[7][1,1~2]]");
    EXPECT_EQ(content("z"), "1x2 11 12");
}

TEST_F(array_statements, subscripts_count_from_the_first_index) {
    run("[x] := [[1,2][3,4]]");
    addresser = 0;
    run("[x[0,1]]");
    EXPECT_EQ(system_array(), "1x1 2");
    EXPECT_EQ(error_of(run("[x[2,]]")), 56);
    addresser = 1;
}

TEST_F(array_statements, rectangles_are_assigned_to_in_their_shape) {
    run("[x] := [<i = 1,3> <j = 1,3> 0]; [x[1~2,2~3]] := [[1,2][3,4]]; [x[3,]] := [(7,8,9)]");
    EXPECT_EQ(content("x"), "3x3 0 0 7 1 3 8 2 4 9");
    run("[x[,1]] := [(5,6,7)]");
    EXPECT_EQ(content("x"), "3x3 5 6 7 1 3 8 2 4 9") << "a row into a column";
    run("[x[2,]] := [[1][2][3]]");
    EXPECT_EQ(content("x"), "3x3 5 1 7 1 2 8 2 3 9") << "a column into a row";
    EXPECT_EQ(error_of(run("[x[1~2,1~2]] := [(1,2,3,4)]")), 60);
    EXPECT_EQ(error_of(run("[x[1~2,1~3]] := [[1,2][3,4][5,6]]")), 60);
    EXPECT_EQ(content("x"), "3x3 5 1 7 1 2 8 2 3 9");
}

/* ---- diagonals ---- */

TEST_F(array_statements, diagonals_are_made_and_replaced) {
    run("Diag [x] := [(1,2,3)]");
    EXPECT_EQ(content("x"), "3x3 1 0 0 0 2 0 0 0 3");
    run("Diag [x] := 7");
    EXPECT_EQ(content("x"), "3x3 7 0 0 0 7 0 0 0 7");
    run("Diag [x] := [[1][2]]");
    EXPECT_EQ(content("x"), "2x2 1 0 0 2") << "another number of entries: a new array";
    run("Diag [y] := 4");
    EXPECT_EQ(content("y"), "1x1 4");
    run("[z] := [<i = 1,3> <j = 1,4> 0]; Diag [z[2~3,2~3]] := [(5,6)]; Diag [z] := [(1,2,3)]");
    EXPECT_EQ(content("z"), "3x4 1 0 0 0 2 0 0 0 3 0 0 0");
    EXPECT_EQ(error_of(run("Diag [z[1~2,1~2]] := [(1,2,3)]")), 93);
    run("Diag [z]");
    EXPECT_EQ(system_array(), "3x1 1 2 3");
}

/* ---- slots ---- */

TEST_F(array_statements, a_slot_stands_for_an_array) {
    run("[x] := [[1,2][3,4]]; %[5] := [x]; %[6] := %[5]; %[6][1,2] := 20");
    EXPECT_EQ(content("x"), "2x2 1 3 20 4");
    EXPECT_EQ(value_of("%[5][1,2] + 1"), "21");
    EXPECT_EQ(value_of("2 + %[5][1,2]*2"), "42");
    run("%[5] + [x]");
    EXPECT_EQ(system_array(), "2x2 2 6 40 8");
    run("%[5][3] :+ 2");
    EXPECT_EQ(content("x"), "2x2 1 3 22 4");
    run("[%[5]] := 1; [%[6][1,]] := [(8,9)]");
    EXPECT_EQ(content("x"), "2x2 8 1 9 1");
    EXPECT_EQ(error_of(run("[%[5]] := [(1,2)]")), 297);
    run("@[x]");
    EXPECT_EQ(error_of(run("%[5][1]")), 220) << "the slots of an array that goes are empty";
    EXPECT_EQ(error_of(run("%[6]")), 220);
}

TEST_F(array_statements, a_slot_of_a_sparse_array) {
    run("Array s[2,2] Sparse; %[1] := [s]; %[1][2,1] := 5; %[1][1,1] := 6; %[1][2,1] := 0");
    EXPECT_EQ(content("s"), "2x2 sparse 6 0 0 0");
    EXPECT_EQ(entries("s"), 1);
    EXPECT_EQ(value_of("%[1][2,2]"), "0");
    EXPECT_EQ(entries("s"), 1);
}

TEST_F(array_statements, slots_count_from_the_first_index) {
    run("[x] := [(1,2)]; %[400000] := [x]");
    EXPECT_EQ(error_of(run("%[400001] := [x]")), 221);
    EXPECT_EQ(error_of(run("%[0] := [x]")), 221);
    EXPECT_EQ(value_of("%[400000][2]"), "2");
    addresser = 0;
    EXPECT_EQ(value_of("%[399999][1]"), "2");
    EXPECT_EQ(error_of(run("%[400000] := [x]")), 221);
    addresser = 1;
}

/* ---- elements without a value ---- */

TEST_F(array_statements, elements_without_a_value_become_0_with_a_warning) {
    const std::string warning = "Warning. Uninitialized array element in ";
    run("Array x[2], y[3], z[30]; %[1] := [y]");
    EXPECT_EQ(run("[x]"),
              warning + "[x] has been set to 0.\n" + warning + "[x] has been set to 0.\n   0,\n   0\n\n        0\n\n");
    EXPECT_EQ(content("x"), "2x1 0 0");
    EXPECT_EQ(run("%[1][2]"), warning + "% has been set to 0.\n\n        0\n\n");
    EXPECT_EQ(run("%[1]:"), warning + "% has been set to 0.\n" + warning + "% has been set to 0.\n\n");
    std::string twenty;
    for (int i = 0; i < 20; i++) twenty += warning + "[z] has been set to 0.\n";
    EXPECT_EQ(run("[z]:"), twenty + " ....etc...\n\n");
}

/* ---- the system array ---- */

TEST_F(array_statements, the_system_array_keeps_the_last_matrix) {
    EXPECT_EQ(error_of(run("[<]")), 175);
    run("[x] := [[1,2][3,4]]; [x]");
    EXPECT_EQ(value_of("<[2,1]"), "3");
    run("[y] := [<]; x[1] := 100");
    EXPECT_EQ(content("y"), "2x2 1 3 2 4");
    run("[<] + [<]");
    EXPECT_EQ(system_array(), "2x2 2 6 4 8");
    EXPECT_EQ(error_of(run("[<] := [x]")), 176);
    EXPECT_EQ(error_of(run("[<[1,1]]")), 83);
    EXPECT_EQ(error_of(run("[y] := [<[1,1]]")), 83);
    EXPECT_EQ(system_array(), "2x2 2 6 4 8");
}

/* ---- questions ---- */

TEST_F(array_statements, elements_are_asked_for_one_by_one) {
    run("[x] := [[1,2][3,4]]");
    EXPECT_EQ(run("?[x]\n10\n20\n30\n40\n"), ">x[1,1] := >x[1,2] := >x[2,1] := >x[2,2] := \n        0\n\n");
    EXPECT_EQ(content("x"), "2x2 10 30 20 40");
    run("?[x[2,]]\n7\n@\n");
    EXPECT_EQ(content("x"), "2x2 10 7 20 40") << "@ leaves the element and those behind it";
    run("?x[2]\n5\n?x[1,2]\n@\n");
    EXPECT_EQ(content("x"), "2x2 10 5 20 40");
    run("?[t]'abc'; ?[t] := [t]'de'; ?[x]'wxyz'");
    EXPECT_EQ(content("t"), "1x2 100 101");
    EXPECT_EQ(content("x"), "2x2 119 120 121 122");
}

/* ---- reading ---- */

TEST_F(array_statements, statements_that_only_read_change_no_array) {
    run("&J\nt\n[x] := [[1,t][3,4]]; Array s[2,2] Sparse; s[1,2] := 9; %[1] := [x]; i := 0; j := 0; 0");
    const std::string x = content("x"), s = content("s");
    run("[x]:");
    const records_in_use before = count_records_in_use();
    for (const char *statement :
         {"[x] + [x]", "[x] - [s]", "[x[1,]]:", "[x] + 1", "%[1] - [x]", "Diag [x]", "[s] + [s]", "[x] + [<]",
          "[x] + [[1,2][3,t]]", "[x] - [2]", "[s] + [<i = 1,2> <j = 1,2> t*x[i,j]]"}) {
        EXPECT_EQ(error_of(run(statement)), 0) << statement;
        EXPECT_EQ(content("x") + content("s"), x + s) << statement;
    }
    run("[x]:");
    run("i := 0; j := 0; 0");
    EXPECT_TRUE(count_records_in_use() == before);
}

} // namespace
