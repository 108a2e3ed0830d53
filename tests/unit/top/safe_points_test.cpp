/* An interrupt at every safe point of a statement: the level that opens there is left in each way, and everything is
   as it would have been. */
#include "support/fresh_system.h"

#include "language/names.h"
#include "language/tokens.h"
#include "top/driver.h"
#include "top/interrupts.h"

using namespace tolvek;

namespace {

int passed = 0, wanted = 0; /* safe points passed in this run; the one at which the interrupt comes */

void count_safe_point() {
    if (++passed == wanted) note_interrupt();
}

struct statement {
    const char *before; /* run first, silently */
    const char *line;
    const char *between = ""; /* values of variables, each in the form "x = 1,", while the line is half done */
};

const statement flote_statements[] = {
    {"x := 5:", "y := (x + 3)*(x - 2)/7 + x^2 - |x| + 'a'", "y = 0,"},
    {"x := 5:", "x := x + 1; y := x^2; x:", "y = 0,"},
    {"x := 5:", "x :+ 2; x :-; x + <", "x = 7,"},
    {"x := 9:", "y := _sqrt(x) - -x^3 + $(x/2)!", "y = 0,"},
    {"x := 4:", "y := *x + x", "y = 0,"},
    {"x := 4:", "1.25e+3 + 12345678901234567890 x"},
    {"x := 4:", "x := (x + (x + (x + (x"},
    {"x := 4:", "x := 1/0"},
    {"x := 4:", "@x; x := 7", "x = none, x = 0,"},
};

const statement exact_statements[] = {
    {"x := 5:", "y := (x + 3)*(x - 2)*7 + x^2 - |x| + 'a'", "y = 0,"},
    {"x := 5:", "x := x^40*2^500; y := x^2 - 1; x:", "y = 0,"},
    {"x := 3:", "y := 20! + x^100|1000007", "y = 0,"},
    {"x := 2^3000:", "y := x^2 + x; y\\(x - 1)", "y = 0,"},
    {"x := 7:", "x :+ 5; x :-; < + x", "x = 12,"},
    {"x := 4:", "y := *x + x^2^3", "y = 0, x = 1,"},
    {"x := 4:", "123456789012345678901234567890123456789012345678901234567890^3 x"},
    {"x := 2^300:", "x := x/0"},
};

/* One statement, run with and without an interrupt. */
struct interrupted : fresh_system {
    explicit interrupted(home_ring ring) : fresh_system(ring) {}

    void prepare(const statement &s) {
        watch_safe_points(nullptr);
        forget_variables();
        run("@");
        run(std::string(s.before) + "\n0:");
    }

    /* Runs with the interrupt at the k-th safe point, and then these lines. */
    std::string run_with(const statement &s, int k, const std::string &lines) {
        prepare(s);
        passed = 0;
        wanted = k;
        watch_safe_points(count_safe_point);
        std::string text = run(s.line + lines);
        watch_safe_points(nullptr);
        return text;
    }

    std::string variable(const char *name) {
        token_record t{};
        set_token(t, name);
        std::string value = find_variable(t) ? value_of(name) : "none";
        return std::string(name) + " = " + value + ",";
    }
    std::string variables() {
        std::string previous = "< = " + value_of("<") + ",";
        return previous + variable("x") + variable("y");
    }

    static std::string without(std::string text, const std::string &part) {
        std::size_t at = text.find(part);
        EXPECT_NE(at, std::string::npos) << text;
        if (at != std::string::npos) text.erase(at, part.size());
        return text;
    }

    struct outcome {
        int safe_points;
        std::string text, variables_before, variables_after;
    };
    outcome undisturbed(const statement &s) {
        outcome found;
        prepare(s);
        found.variables_before = variables();
        found.text = run_with(s, 0, "");
        found.safe_points = passed;
        found.variables_after = variables();
        return found;
    }

    void resume_at_every_safe_point(const statement &s) {
        const std::string level = "\n*** New command level.\n2>*** Resuming earlier command level\n";
        outcome expected = undisturbed(s);
        ASSERT_GT(expected.safe_points, 3);
        for (int k = 1; k <= expected.safe_points; k++) {
            SCOPED_TRACE(std::string(s.line) + ", safe point " + std::to_string(k));
            EXPECT_EQ(without(run_with(s, k, "\n&_p"), level), expected.text);
            EXPECT_EQ(variables(), expected.variables_after);
        }
    }

    void work_at_every_safe_point(const statement &s) {
        const std::string level = "\n*** New command level.\n2>\n2>\n2>\n2>*** Resuming earlier command level\n";
        outcome expected = undisturbed(s);
        for (int k = 1; k <= expected.safe_points; k++) {
            SCOPED_TRACE(std::string(s.line) + ", safe point " + std::to_string(k));
            std::string work = "\nz := 3^400 + 1/7:\nz := z^2:\n<:\n&_p";
            EXPECT_EQ(without(run_with(s, k, work), level), expected.text);
            EXPECT_EQ(variables(), expected.variables_after);
        }
    }

    void stop_at_every_safe_point(const statement &s) {
        outcome expected = undisturbed(s);
        for (int k = 1; k <= expected.safe_points; k++) {
            SCOPED_TRACE(std::string(s.line) + ", safe point " + std::to_string(k));
            std::string text = run_with(s, k, "\n&@\n1 + 1");
            EXPECT_NE(text.find("*** New command level.\n2>\n*** Panic stop.\n"), std::string::npos) << text;
            EXPECT_EQ(trimmed(text.substr(text.rfind('>') + 1)), "2");
            const std::string legal = expected.variables_before + expected.variables_after + s.between;
            for (const char *name : {"x", "y"}) EXPECT_NE(legal.find(variable(name)), std::string::npos) << variables();
        }
    }

    /* The operands of the statement are changed and deleted under it. */
    void take_operands_away(const statement &s) {
        outcome expected = undisturbed(s);
        for (int k = 1; k <= expected.safe_points; k++) {
            SCOPED_TRACE(std::string(s.line) + ", safe point " + std::to_string(k));
            run_with(s, k, "\nx := 0:\nx :+ 3:\ny := *x:\n@x\n@y\nx := 8:\n&_p");
            EXPECT_EQ(value_of("1 + 1"), "2");
        }
    }

    /* What a computation held is given back, wherever it was abandoned. */
    void books_balance_behind_a_stop(const statement &s) {
        outcome expected = undisturbed(s);
        prepare(s);
        run("@x; @y\n0");
        forget_variables();
        records_in_use before = count_records_in_use();
        for (int k = 1; k <= expected.safe_points; k++) {
            SCOPED_TRACE(std::string(s.line) + ", safe point " + std::to_string(k));
            run_with(s, k, "\n&@\n0");
            forget_variables();
            run("0");
            EXPECT_EQ(count_records_in_use(), before);
        }
    }
};

struct interrupted_flotes : interrupted {
    interrupted_flotes() : interrupted(home_ring::flote) {}
};
struct interrupted_integers : interrupted {
    interrupted_integers() : interrupted(home_ring::exact) {}
};

TEST_F(interrupted_flotes, a_level_that_is_left_changes_nothing) {
    for (const statement &s : flote_statements) resume_at_every_safe_point(s);
}
TEST_F(interrupted_integers, a_level_that_is_left_changes_nothing) {
    for (const statement &s : exact_statements) resume_at_every_safe_point(s);
}
TEST_F(interrupted_flotes, other_work_at_the_level_does_not_disturb_the_statement) {
    for (const statement &s : flote_statements) work_at_every_safe_point(s);
}
TEST_F(interrupted_integers, other_work_at_the_level_does_not_disturb_the_statement) {
    for (const statement &s : exact_statements) work_at_every_safe_point(s);
}
TEST_F(interrupted_flotes, a_panic_stop_leaves_whole_variables) {
    for (const statement &s : flote_statements) stop_at_every_safe_point(s);
}
TEST_F(interrupted_integers, a_panic_stop_leaves_whole_variables) {
    for (const statement &s : exact_statements) stop_at_every_safe_point(s);
}
TEST_F(interrupted_flotes, operands_may_be_taken_away_at_the_level) {
    for (const statement &s : flote_statements) take_operands_away(s);
}
TEST_F(interrupted_integers, operands_may_be_taken_away_at_the_level) {
    for (const statement &s : exact_statements) take_operands_away(s);
}
TEST_F(interrupted_flotes, the_books_balance_behind_a_panic_stop) {
    for (const statement &s : flote_statements) books_balance_behind_a_stop(s);
}
TEST_F(interrupted_integers, the_books_balance_behind_a_panic_stop) {
    for (const statement &s : exact_statements) books_balance_behind_a_stop(s);
}

} // namespace
