/* Array statements that are interrupted at each of their safe points, while a command level deletes what they work on. */
#include "array_statement_fixture.h"

#include "top/interrupts.h"

using namespace tolvek;

namespace {

long passed, note_at;

struct array_statement_interrupts : array_statements {
    void TearDown() override {
        watch_safe_points(nullptr);
        array_statements::TearDown();
    }
    /* The elements alone. */
    static std::string content(const char *array_name) {
        array_record *a = find(array_name);
        if (!a) return "none";
        std::string text;
        for (int64_t i = 0; i < a->size; i++) {
            const quolynode *q = a->sparse_head ? spar_retrieve(a->sparse_head, static_cast<int32_t>(i % a->rows) + 1,
                                                                static_cast<int32_t>(i / a->rows) + 1)
                                                : element(a, i);
            text += std::to_string(quoly_to_int(q)) + " ";
        }
        return text;
    }

    /* Runs the statement, and at its k-th safe point what is typed at a level that is left again. False: the statement has
       fewer safe points. */
    bool interrupted(const std::string &statement, const std::string &typed, long k) {
        passed = 0;
        note_at = k;
        watch_safe_points([] {
            if (++passed == note_at) note_interrupt();
        });
        text = run(statement + "\n" + typed + "\n&_p");
        watch_safe_points(nullptr);
        return text.find("2>") != std::string::npos;
    }

    /* At each safe point: `after` looks at what the statement has made; nothing is lost. */
    void at_each_safe_point(const std::string &statement, const std::string &typed,
                            const std::function<void(long)> &after) {
        long k = 1;
        for (;; k++) {
            forget_arrays();
            run("[x] := [[1,2][3,4]]; Array s[2,3] Sparse; s[1,2] := 5; s[2,3] := 6; [y] := [(0,0,0,0)]; 0");
            const bool yes = interrupted(statement, typed, k);
            EXPECT_EQ(first_available, 1) << statement << ", safe point " << k;
            EXPECT_EQ(borrowed_matrices, 0) << statement << ", safe point " << k;
            EXPECT_EQ(cells_held, 0) << statement << ", safe point " << k;
            if (!yes) break;
            after(k);
            forget_arrays();
            run("i := 0; j := 0; 0");
            if (k == 1) in_use = count_records_in_use();
            EXPECT_EQ(count_records_in_use(), in_use) << statement << ", safe point " << k;
            EXPECT_EQ(sparse_frames_in_use(), 0) << statement << ", safe point " << k;
        }
        EXPECT_GT(k, 2) << statement;
    }
    records_in_use in_use{};
    std::string text; /* all that was written */
};

TEST_F(array_statement_interrupts, an_operand_that_goes_keeps_its_values) {
    at_each_safe_point("[y] := [x] + [x]", "@[x]", [](long k) {
        const bool gone_before = content("y") == "0 0 0 0 ";
        EXPECT_TRUE(gone_before || content("y") == "2 6 4 8 ") << k;
    });
    at_each_safe_point("[y] := [x] + [x]", "[x] := 7; x[1,1] := 9", [](long k) {
        const std::string y = content("y");
        EXPECT_TRUE(y == "2 6 4 8 " || y == "18 14 14 14 " || y == "10 10 9 11 ") << k << ": " << y;
    });
}

TEST_F(array_statement_interrupts, a_sparse_operand_that_changes_keeps_its_entries) {
    at_each_safe_point("[t] := [s] + [s]", "s[1,2] := 0; [s] := 1; @[s]", [](long k) {
        const std::string t = content("t");
        EXPECT_TRUE(t == "none" || t == "0 0 10 0 0 12 ") << k << ": " << t;
    });
}

TEST_F(array_statement_interrupts, a_target_that_goes_is_made_anew) {
    at_each_safe_point("[x] := [<i = 1,2> <j = 1,2> 10*i + j]", "x[2,2]; @[x]", [this](long k) {
        const bool stored_before = text.find("       22\n") != std::string::npos;
        EXPECT_EQ(content("x"), stored_before ? "none" : "11 21 12 22 ") << k;
    });
    at_each_safe_point("[s] := [[1, [1, 2]] [2, [2, 3]]]", "s[2,2]; @[s]", [this](long k) {
        const bool stored_before = text.find("        3\n") != std::string::npos;
        EXPECT_EQ(content("s"), stored_before ? "none" : "2 0 0 3 0 0 ") << k;
    });
}

TEST_F(array_statement_interrupts, a_target_that_turns_sparse_is_stored_into_all_the_same) {
    at_each_safe_point("[x] := [[9,0][0,8]]", "Sparse[x]", [](long k) { EXPECT_EQ(content("x"), "9 0 0 8 ") << k; });
}

TEST_F(array_statement_interrupts, a_part_of_an_array_that_was_replaced_is_refused) {
    at_each_safe_point("[x[1,]] := [(8,9)]", "@[x]; [x] := [(5,6)]", [](long k) {
        const std::string x = content("x");
        EXPECT_TRUE(x == "5 6 " || x == "8 9 ") << k << ": " << x;
    });
}

} // namespace
