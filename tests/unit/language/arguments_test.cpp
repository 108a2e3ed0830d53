/* Arguments: arrays that a parameter stands for, and elements by reference. */
#include "support/fresh_system.h"
#include "support/reports.h"

#include "language/names.h"
#include "matrix/sparse.h"

using namespace tolvek;

namespace {

struct array_arguments : fresh_exact_system {
    /* The figures of an array's elements, one behind the other. */
    std::string elements_of(const std::string &name, int count) {
        std::string text;
        for (int i = 1; i <= count; i++) text += value_of(name + "[" + std::to_string(i) + "]") + " ";
        return text;
    }
};
struct element_arguments : array_arguments {};

TEST_F(array_arguments, a_parameter_shares_the_elements_of_the_array) {
    run("Array a[3]; Array b[2]\nFunc Fill(v, n, i) = for i = 1 to n do v[i] := i*i od.\nFill([a], 3)\nFill([b], 2)");
    EXPECT_EQ(elements_of("a", 3), "1 4 9 ");
    EXPECT_EQ(elements_of("b", 2), "1 4 ");
    run("Func Second(v) = v[2]+v[2,1];.");
    EXPECT_EQ(value_of("Second([a]) + Second([b])"), "16");
}

TEST_F(array_arguments, the_parameter_hides_arrays_and_scalars_of_its_name_for_the_call) {
    run("Array v[1]; v[1] := 7; v := 8\nArray a[1]; a[1] := 5\nFunc F(v) = v[1];.");
    EXPECT_EQ(value_of("F([a])"), "5");
    EXPECT_EQ(value_of("v[1]*100 + v"), "708");
    EXPECT_EQ(value_of("F([v])"), "7");
}

TEST_F(array_arguments, pass_through_calls_inside_calls) {
    run("Array a[2]; a[1] := 1\nFunc Inner(m) = m[1] := m[1] + 1; m[1];.\nFunc Outer(m) = Inner([m]) + Inner([m]);.");
    EXPECT_EQ(value_of("Outer([a])"), "5"); /* 2 + 3 */
    EXPECT_EQ(value_of("a[1]"), "3");
}

TEST_F(array_arguments, a_function_may_sort_in_place) {
    run("Array a[6]\na[1] := 5; a[2] := 3; a[3] := 9; a[4] := -1; a[5] := 3; a[6] := 0");
    run("Func Insert(v, n, i, j, t) = for i = 2 to n do t := v[i]; j := i;\n"
        "while j > 1 do if v[j-1] > t then v[j] := v[j-1]; j :- else &> fi od; v[j] := t od.\nInsert([a], 6)");
    EXPECT_EQ(elements_of("a", 6), "-1 0 3 3 5 9 ");
}

TEST_F(array_arguments, sparse_ones_take_new_entries_and_lose_them) {
    run("Array s[10,10] Sparse; s[2,3] := 5\nFunc F(m) = m[9,9] := 4; m[2,3] := 0; m[1,1];.");
    EXPECT_EQ(value_of("F([s])"), "0");
    EXPECT_EQ(value_of("s[9,9]*10 + s[2,3]"), "40");
    records_in_use before = count_records_in_use();
    for (int i = 0; i < 50; i++) run("F([s])");
    EXPECT_TRUE(count_records_in_use() == before);
}

TEST_F(array_arguments, of_a_scalar_use_warn) {
    run("Array a[1]; a[1] := 3\nFunc F(m) = m;.\nFunc G(^y) = y;.\nFunc H(m) = G(m);.");
    const std::string text = run("F([a])");
    EXPECT_TRUE(contains(text, "Warning. m is an array parameter used as a scalar.\n  Value 0 used for m.\n"));
    EXPECT_TRUE(contains(run("H([a])"), "Warning. m is an array parameter.\n  Value 0 used for m.\n"));
}

TEST_F(array_arguments, refusals) {
    run("Array a[2]; Array s[2,2] Sparse\nFunc F(m) = m[1];.\nFunc Delete(m) = @[m];.\nFunc Turn(m) = Sparse[m];.");
    EXPECT_EQ(error_of(run("F([zz])")), 28);
    EXPECT_EQ(error_of(run("F([<])")), 176);
    EXPECT_EQ(error_of(run("F([a;")), 24);
    EXPECT_EQ(error_of(run("Delete([a])")), 138);
    EXPECT_EQ(error_of(run("Delete([s])")), 138);
    EXPECT_EQ(error_of(run("Turn([a])")), 138);
    EXPECT_EQ(error_of(run("m[1]")), 28); /* every record is off the tables */
    EXPECT_EQ(value_of("a[1]"), "0");
}

TEST_F(array_arguments, a_new_array_of_the_name_is_an_error_at_the_end_of_the_call) {
    run("Array a[2]; a[1] := 6\nFunc F(m) = Array m[3]; m[1] := 9; 1;.\ny := 0:");
    const std::string text = run("y := F([a])");
    EXPECT_TRUE(contains(text, "*** Warning. On function termination, found an array with the same name as an \n"
                               "       array parameter, namely: m\n"));
    EXPECT_EQ(error_of(text), 30);
    EXPECT_EQ(value_of("y"), "0");
    EXPECT_EQ(value_of("m[1]"), "9"); /* the new one stays */
    EXPECT_EQ(value_of("a[1]"), "6");
}

TEST_F(array_arguments, an_error_inside_takes_the_parameters_off_the_tables) {
    run("Array a[2]; a[1] := 6\nFunc F(m, n) = if n = 0 then m[7] else F([m], n-1) fi.");
    EXPECT_EQ(error_of(run("F([a], 20)")), 27);
    EXPECT_EQ(error_of(run("m[1]")), 28);
    run("Func G(m) = Array m[3]; 1/0;.");
    const std::string text = run("G([a])");
    EXPECT_EQ(error_of(text), 22);
    EXPECT_TRUE(contains(text, message_text(30))); /* the lost parameter is told, and is no error of its own */
    run("@[m]");
    EXPECT_EQ(error_of(run("m[1]")), 28);
    EXPECT_EQ(value_of("a[1]"), "6");
}

TEST_F(array_arguments, an_array_deleted_by_its_own_name_ends_the_call) {
    run("Array a[2]; a[1] := 6\nFunc F(m) = @[a]; m[1];.");
    EXPECT_TRUE(contains(run("F([a])"), message_text(139)));
    EXPECT_EQ(error_of(run("a[1]")), 28);
    EXPECT_EQ(error_of(run("m[1]")), 28);
}

TEST_F(array_arguments, an_argument_that_deletes_an_earlier_one_is_an_error) {
    run("Array a[2]; a[1] := 6\nFunc Drop = @[a]; 1;.\nFunc F(m, x) = m[1];.");
    EXPECT_EQ(error_of(run("F([a], Drop)")), 28);
    EXPECT_EQ(error_of(run("m[1]")), 28);
}

TEST_F(array_arguments, nothing_leaks_from_calls) {
    run("Array a[5]; Array s[5,5] Sparse\nFunc F(v, w, ^y, i) = for i = 1 to 5 do v[i] := i; w[i,i] := v[i]/3 od; y "
        ":+;.\n"
        "Func G(v) = v[1]/0;.");
    auto once = [&] { run("F([a], [s], a[2])\nG([a])\nF([a], [zz])\nF([a], [s], s[1,2])\nF([a], 3"); };
    for (int i = 0; i < 3; i++) once();
    records_in_use before = count_records_in_use();
    for (int i = 0; i < 200; i++) once();
    EXPECT_TRUE(count_records_in_use() == before);
}

/* ---- elements by reference ---- */

TEST_F(element_arguments, take_the_value_at_the_end_of_the_call) {
    run("Array a[3]; a[2] := 7\nFunc F(^y) = y := y + 1; a[2];.");
    EXPECT_EQ(value_of("F(a[2])"), "7");
    EXPECT_EQ(value_of("a[2]"), "8");
    EXPECT_EQ(value_of("F(^a[3,1])"), "8");
    EXPECT_EQ(value_of("a[3]"), "1");
}

TEST_F(element_arguments, are_exchanged) {
    run("Array a[2]; a[1] := 10; a[2] := 20\nFunc Exchange(^x, ^y, t) = t := x; x := y; y := t.\nExchange(a[1], a[2])");
    EXPECT_EQ(elements_of("a", 2), "20 10 ");
}

TEST_F(element_arguments, of_sparse_arrays_must_be_there) {
    run("Array s[3,3] Sparse; s[1,2] := 5\nFunc F(^y) = y := y - 5;.");
    EXPECT_EQ(error_of(run("F(s[1,1])")), 318);
    run("F(s[1,2])");
    EXPECT_EQ(value_of("s[1,2]"), "0");
    EXPECT_EQ(error_of(run("F(s[1,2])")), 318); /* a 0 leaves no entry */
}

TEST_F(element_arguments, that_are_gone_drop_the_value) {
    run("Array a[3]\nFunc F(^y) = y := 9; @[a]; Array a[1]; 0;.\nF(a[2])");
    EXPECT_EQ(error_of(run("a[2]")), 27);
    EXPECT_EQ(value_of("a[1]"), "0");
    run("Array s[2,2] Sparse; s[1,1] := 4\nFunc G(^y) = y := 9; s[1,1] := 0; 0;.\nG(s[1,1])");
    EXPECT_EQ(value_of("s[1,1]"), "0");
}

TEST_F(element_arguments, refusals) {
    run("Array a[3]\nFunc F(^y) = y;.");
    EXPECT_EQ(error_of(run("F(a[4])")), 27);
    EXPECT_EQ(error_of(run("F(zz[4])")), 28);
    EXPECT_EQ(error_of(run("F(a[1;")), 61);
}

/* ---- elements by name in built-in functions ---- */

TEST_F(element_arguments, built_in_functions_read_and_store_them_by_name) {
    run("&(J = x)\nArray a[3]; Array s[3,3] Sparse\na[1] := x^2-1");
    EXPECT_EQ(value_of("Deg(^a[1])"), "2");
    EXPECT_EQ(value_of("SDivide(^a[1], x-1, ^a[2])"), "1");
    EXPECT_EQ(value_of("a[2]-x"), "1");
    EXPECT_EQ(value_of("SDivide(^a[1], x-1, ^s[2,3])"), "1");
    EXPECT_EQ(value_of("s[2,3]-x"), "1");
    run("Swap(^s[2,3], ^s[1,1])");
    EXPECT_EQ(value_of("s[1,1]-x"), "1");
    EXPECT_EQ(value_of("s[2,3]"), "0");
    run("Move(^s[1,1], ^a[3])");
    EXPECT_EQ(value_of("a[3]-x"), "1");
    EXPECT_EQ(value_of("s[1,1]"), "0");
    EXPECT_EQ(error_of(run("Deg(^a[4])")), 27);
    EXPECT_EQ(error_of(run("Deg(^zz[1])")), 28);
    EXPECT_EQ(error_of(run("Deg(^x[1])")), 125);
}

} // namespace
