/* Array expressions that are left, or interrupted, at each of their safe points, and how far apart those lie. */
#include "array_operands.h"
#include "matrix/array_arithmetic.h"
#include "support/safe_point_gaps.h"
#include "support/safe_points.h"
#include "top/interrupts.h"

#include <algorithm>

using namespace tolvek;

namespace {

const char *const expressions[] = {
    "[d]*[d] - 2*[d] + [s]",
    "([d]*t + [s])*([d] - t)",
    "[s]*[s]*[d] + [s]^3",
    "[d]^5 - Altpower([d],5)",
    "[d]_[d]_7",
    "Trans ([s] + [d])*Diag [d]",
    "|-[d]| + $([d]/2)",
    "[d]/[d] + [d]^(-2)",
    "(t^3 - 2*t + 5)#[s] + (t^2)#[d]",
    "([d]*t)#3 + MPowermod([d],9,11)",
    "Altmult([d]*t,[d]) | 5",
    "[s] - [s] + [s]*0",
};

struct array_interrupts : array_fixture {
    void SetUp() override {
        array_fixture::SetUp();
        fill();
    }
    void fill() {
        model d = model::of(3, 3, false), s = model::of(3, 3, true);
        const int values[] = {2, 1, 7, -3, 5, 4, 1, 1, -6};
        for (std::size_t i = 0; i < 9; i++) d.at[i] = values[i];
        s.at[1] = 4;
        s.at[3] = -2;
        s.at[8] = 9;
        store_model("d", d);
        store_model("s", s);
    }
};

TEST_F(array_interrupts, an_expression_that_is_left_at_any_safe_point_leaves_nothing_behind) {
    for (const char *text : expressions) {
        const auto routine = [&] {
            matrix_value m;
            evaluate(text, m);
        };
        routine(); /* constants that stay are made */
        const records_in_use before = count_records_in_use();
        const long frames = sparse_frames_in_use();
        long all = 0;
        while (leave_at(all + 1, routine)) {
            all++;
            release_pending_arrays();
            EXPECT_TRUE(balanced(before)) << text << ", safe point " << all;
            EXPECT_EQ(sparse_frames_in_use(), frames) << text << ", safe point " << all;
        }
        release_pending_arrays();
        EXPECT_TRUE(balanced(before)) << text;
        EXPECT_GT(all, 5) << text;
    }
}

/* At the level that opens, both arrays are deleted or changed; the expression goes on with what it has read. */
TEST_F(array_interrupts, arrays_that_go_while_an_expression_is_interrupted_stay_whole_for_it) {
    for (const char *text : expressions) {
        const std::string statement = std::string("[r] := ") + text;
        run(statement);
        const long all = interrupt_at(0, [&] { run(statement); });
        for (long k = 1; k <= all; k += std::max(1L, all / 12)) {
            for (const char *change :
                 {"@[d]; @[s]", "d[1] := 0; s[2,1] := 0; s[1,1] := 8; Reverse([d])", "STrans([s])"}) {
                std::string shown;
                interrupt_at(k, [&] { shown = run(statement + "\n" + change + "\n&_p"); });
                EXPECT_NE(shown.find("*** New command level."), std::string::npos);
                run("@[*]");
                fill();
            }
        }
    }
    run("0");
}

TEST_F(array_interrupts, functions_inside_expressions_may_replace_the_operands) {
    const std::string functions =
        "Func F(y) =\n@[d]; [d] := [[0, 0, 0]]; y\n.\nFunc G(y) =\ns[2,1] := 0; s[1,1] := 8; y\n.";
    run(functions);
    run("[a] := [d]*F(2)");
    EXPECT_EQ(value_of("a[1]"), "4"); /* twice what it was */
    EXPECT_EQ(value_of("Cols[d]"), "3");
    EXPECT_EQ(value_of("Deg[d]"), "3");
    run("[b] := [s]*[s]*G(1)");
    EXPECT_EQ(value_of("b[1,1]"), "-8");
    EXPECT_NE(run("[c] := [a] + 1/0").find(message_text(22)), std::string::npos);
    EXPECT_EQ(first_available, 1);
    run("@F; @G");
    run("0");
}

/* ---- how far apart safe points lie ---- */

void fill_dense(matrix_value &m, int32_t rows, int32_t cols, const char *figures) {
    quoly_handle value;
    quoly_set(1, value.slot());
    for (const char *p = figures; *p; p++) {
        quoly_handle ten, figure;
        quoly_set(10, ten.slot());
        quoly_set(*p - '0', figure.slot());
        fast_quoly_mult(value.slot(), ten.get());
        best_quoly_add(value.slot(), figure.release());
    }
    m.make_dense(rows, cols);
    for (int64_t i = 0; i < m.size; i++) quoly_assign(value.get(), &m.cell(i));
}

TEST_F(array_interrupts, long_products_answer_an_interrupt) {
    for (const char *figures : {"", "1234567890", "12345678901234567890123456789012345678901234567890"}) {
        matrix_value a, b, r;
        fill_dense(a, 150, 150, figures);
        fill_dense(b, 150, 150, figures);
        EXPECT_LT(least_gap_of([&] { matrix_product(a, b, r); }), most_gap) << figures;
        EXPECT_LT(least_gap_of([&] { add_values(a, b, false); }), most_gap) << figures;
    }
    matrix_value row, column, r;
    fill_dense(row, 1, 400000, "");
    fill_dense(column, 400000, 1, "");
    EXPECT_LT(least_gap_of([&] { matrix_product(row, column, r); }), most_gap);
}

} // namespace
