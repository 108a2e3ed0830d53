/* Array statements whose requests of memory are refused, each in its turn: arrays are as they were, or as the whole statement
   leaves them, and nothing stays in flight. */
#include "array_statement_fixture.h"

#include "top/heap.h"

#include <cstdlib>

using namespace tolvek;

namespace {

int granted; /* requests before the one that is refused */

/* A refusal unwinds at once, as a panic stop does behind its report. */
void *request(std::size_t bytes) {
    if (granted-- == 0) throw unwind{unwind::to_top};
    return std::malloc(bytes);
}

struct array_famine : array_statements {
    heap_hooks found = heap;

    void TearDown() override {
        heap = found;
        array_statements::TearDown();
    }
    void make_arrays() {
        forget_arrays();
        run("[x] := [[1,t][3,4]]; [y] := [(7,8,6,5)]; Array s[2,2] Sparse; s[1,2] := 9; s[2,1] := t; %[1] := [x]; "
            "i := 0; j := 0; [y]:\n0");
    }
    std::string all_arrays() {
        return content("x") + "; " + content("y") + "; " + content("s") + "; " + content("z") + "; " + system_array();
    }
    /* Is a request refused when so many are granted? */
    bool is_refused(const char *statement, int requests) {
        granted = requests;
        heap.request = request;
        run(statement);
        heap = found;
        return granted < 0;
    }
    /* With each request refused in its turn. */
    void check(const char *statement) {
        make_arrays();
        const std::string before = all_arrays();
        const records_in_use records = count_records_in_use();
        const long frames = sparse_frames_in_use();
        run(statement);
        const std::string after = all_arrays();
        for (int requests = 0;; requests++) {
            ASSERT_LT(requests, 1000) << statement;
            make_arrays();
            const bool refused = is_refused(statement, requests);
            EXPECT_EQ(first_available, 1) << statement << ", " << requests;
            EXPECT_EQ(borrowed_matrices, 0) << statement << ", " << requests;
            EXPECT_EQ(cells_held, 0) << statement << ", " << requests;
            const std::string now = all_arrays();
            if (!refused) {
                EXPECT_EQ(now, after) << statement;
                break;
            }
            EXPECT_TRUE(now == before || now == after) << statement << ", " << requests << ": " << now;
            make_arrays();
            EXPECT_EQ(count_records_in_use(), records) << statement << ", " << requests;
            EXPECT_EQ(sparse_frames_in_use(), frames) << statement << ", " << requests;
        }
    }
};

TEST_F(array_famine, each_refused_request_leaves_the_arrays_whole) {
    run("&(J = t)");
    for (const char *statement : {"[z] := [[1,2][3,4]]:",
                                  "[z] := [<i = 1,2> <j = 1,2> i*j]:",
                                  "[x] := [x]*[y[1,1~2]]:",
                                  "[z] := [x]*[x]:",
                                  "[z] := [[3,1][4,1]]^5:",
                                  "[z] := [s]*[s] + [s]:",
                                  "[s] := [[1, [1, 4]] [2, [2, t]]]:",
                                  "[s] := [x]:",
                                  "[x] := [s]:",
                                  "[s] := 5:",
                                  "Diag [z] := [y]:",
                                  "[x[1,]] := [(8,9)]:",
                                  "Trans [x]",
                                  "[z] := [y]_3:",
                                  "[z] := Adjoint [x]:",
                                  "[z] := 1/[[1,2][3,5]]:",
                                  "Sort([y]):",
                                  "Sort([s]):",
                                  "STrans([s]):",
                                  "Reverse([s]):",
                                  "Synth([s], 1, 1, 1, 2):",
                                  "Sparse[x]:",
                                  "Switchcol([s], 1, 2):",
                                  "Poly([y]):",
                                  "Monlist(t^2 + t, [z]):",
                                  "[z] := (t^2 + 1)#[x]:",
                                  "Det[s]",
                                  "[y] + 1",
                                  "@[x]",
                                  "Array z[3,3]:",
                                  "Array z[3,3] Sparse:",
                                  "%[1] + [x]",
                                  "s[2,1] := 0:",
                                  "s[2,2] := 5:"})
        check(statement);
    run("&(J = -t)");
}

/* Inside a function what is dropped waits. */
TEST_F(array_famine, inside_a_function_nothing_is_lost_either) {
    run("&(J = t)");
    for (const char *body : {"s[1,2] := 0", "Synth([s], 2, 1, 1, 2)", "[s] := 0", "[s] := [x]", "STrans([s])",
                             "Sparse[x]", "[x] := [s]", "@[s]", "[z] := [s] + [s]"}) {
        run("Func F(n) =\n" + std::string(body) + "; n\n.");
        check("[u] := [s]*F(1):");
        run("@F");
    }
    run("&(J = -t)");
}

} // namespace
