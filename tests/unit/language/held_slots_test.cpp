/* Places that an expression, a call or a built-in function has found, while something else changes or deletes what stands
   there: a function among further operands, or a command level at any safe point. */
#include "support/fresh_system.h"
#include "support/reports.h"

#include "language/functions.h"
#include "language/names.h"
#include "matrix/arrays.h"
#include "top/driver.h"
#include "top/interrupts.h"

using namespace tolvek;

namespace {

/* ---- by a function ---- */

struct held_by_name : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(J = x)\nFunc Drop(y) = @p; y;.\nFunc Set(y) = p := 5; y;.\nFunc Make(y) = @p; p := x^7; y;.\n"
            "Func Step(y) = p :+ 1; y;.\nFunc Gone(y) = @[a]; y;.\nFunc Empty(y) = s[1,1] := 0; y;.");
    }
    /* The value of the call with p = x^2 - 1 and fresh arrays. */
    std::string after(const std::string &call) {
        run("@(q, p)\n@[*]");
        run("q := 0:\np := x^2-1:\nArray a[2]; Array s[2,2] Sparse\na[1] := x^2-1; s[1,1] := x^2-1");
        return value_of(call);
    }
};

TEST_F(held_by_name, a_variable_that_is_deleted_keeps_its_value_for_the_call) {
    EXPECT_EQ(after("GCD(^p, Drop(x-1)) - x"), "-1");
    EXPECT_EQ(after("Equal(^p, Drop(x^2-1))"), "1");
    EXPECT_EQ(after("Coef(^p, Drop(2))"), "1");
    EXPECT_EQ(after("Deriv(^p, Drop(x)) - 2*x"), "0");
    EXPECT_EQ(after("Divides(^p, Drop(x+1))"), "1");
    EXPECT_EQ(after("Nmon(^p, Drop(x^2))"), "1");
    EXPECT_EQ(after("Monless(^p, Drop(x^3))"), "1");
    EXPECT_EQ(after("p*Drop(2) - 2*x^2"), "-2");
}

TEST_F(held_by_name, a_variable_that_takes_a_new_value_shows_it) {
    EXPECT_EQ(after("GCD(^p, Set(10))"), "5");
    EXPECT_EQ(after("Equal(^p, Set(5))"), "1");
    EXPECT_EQ(after("GCD(^p, Make(x-1)) - x"), "-1"); /* the old variable is held, not its name */
    EXPECT_EQ(after("Equal(^p, Step(x^2))"), "1");
    EXPECT_EQ(after("p*Set(2)"), "10");
}

TEST_F(held_by_name, what_is_stored_in_a_variable_that_was_deleted_goes_with_it) {
    EXPECT_EQ(after("SDivide(Drop(x^2-1), x-1, ^q) + Number(^q)"), "1");
    EXPECT_EQ(after("Splice(^p, Drop(1), 5)"), "0");
    EXPECT_EQ(error_of(run("p")), 19);
    EXPECT_EQ(after("Split(^p, Drop(1), ^q)"), "0");
    EXPECT_EQ(value_of("q-x"), "0");
    EXPECT_EQ(error_of(run("p")), 19);
    EXPECT_EQ(after("Rcoef(^p, x, Drop(2), 3)"), "0");
    EXPECT_EQ(error_of(run("p")), 19);
}

TEST_F(held_by_name, elements_that_go_are_held_too) {
    EXPECT_EQ(after("GCD(^a[1], Gone(x-1)) - x"), "-1");
    EXPECT_EQ(after("GCD(^s[1,1], Empty(x-1)) - x"), "-1");
    EXPECT_EQ(after("a[1]*Gone(2) - 2*x^2"), "-2");
    EXPECT_EQ(after("s[1,1]*Empty(2) - 2*x^2"), "-2");
    EXPECT_EQ(after("Splice(^a[1], Gone(1), 5)"), "0");
    EXPECT_EQ(after("Splice(^s[1,1], Empty(1), 5)"), "0");
    EXPECT_EQ(value_of("s[1,1] - x^5 - x^2"), "-1");
}

TEST_F(held_by_name, a_level_that_is_resumed_behind_an_undefined_name_stores_nothing) {
    run("&e\nq := 4:");
    run("for i = 1 to 1 do Swap(^q, ^zz) od\n&_p");
    run("for i = 1 to 1 do Move(^q, ^zz) od\n&_p");
    run("&e");
    EXPECT_EQ(value_of("q"), "4");
    EXPECT_EQ(value_of("0"), "0"); /* the constant is whole */
}

TEST_F(held_by_name, a_deleted_array_is_no_argument) {
    EXPECT_EQ(error_of(run("Array a[2]\nFunc F(v, y) = v[1];.\nF([a], Gone(1))")), 28);
}

/* ---- by a command level, at each safe point ---- */

int passed = 0, wanted = 0;

void count_safe_point() {
    if (++passed == wanted) note_interrupt();
}

struct changed_at_a_level : fresh_exact_system {
    /* Runs the line with an interrupt at the k-th safe point, the lines of the level, and the rest. */
    std::string run_with(const std::string &line, int k, const std::string &level) {
        forget_functions();
        forget_variables();
        forget_arrays();
        run("x := 2^70:\ny := 3:\nArray a[3]; Array s[3,3] Sparse; a[1] := 2^70; s[1,1] := 2^70\n"
            "Func F(v, ^z, n) = if n > 0 then z := z + v[1]; F([v], z, n-1) else z fi.\n"
            "Func G(n, i, t) = for i = 1 to n do t := t + a[1]*x; x := x + 1 od; t.");
        passed = 0;
        wanted = k;
        watch_safe_points(count_safe_point);
        std::string text = run(line + "\n" + level + "\n&_p");
        watch_safe_points(nullptr);
        return text;
    }
    void change_everywhere(const std::string &line) {
        static const char *const levels[] = {"x := 0",
                                             "@x",
                                             "x :+ 1",
                                             "x := 2^90",
                                             "a[1] := 7",
                                             "@[a]",
                                             "@[*]",
                                             "a[1] :+ 1",
                                             "s[1,1] := 0",
                                             "Array a[1]",
                                             "Sparse[a]",
                                             "@F; @G",
                                             "for i = 1 to 2 do x := i od",
                                             "Func F(v, ^z, n) = 1;."};
        for (const char *level : levels) {
            int k = 0;
            do {
                const std::string text = run_with(line, ++k, level);
                EXPECT_FALSE(contains(text, "Tolvek error")) << line << ", " << level << ", at " << k << text;
                leave_all_levels();
            } while (passed >= wanted && k < 400);
            EXPECT_LT(k, 400) << line;
        }
        forget_functions();
        forget_variables();
        forget_arrays();
    }
    void TearDown() override {
        run("0:");
        fresh_exact_system::TearDown();
    }
};

TEST_F(changed_at_a_level, what_an_expression_holds) {
    change_everywhere("y := x*x + a[1]*x - s[1,1]*(x + a[1]) + x");
    change_everywhere("x :+ y; a[1] := a[1]*x + a[1]; s[1,1] :- 5; s[1,1] := s[1,1]*x");
}

TEST_F(changed_at_a_level, what_calls_hold) {
    change_everywhere("y := F([a], x, 2) + F([a], a[1], 1)*x");
    change_everywhere("G(3)*x + a[1]");
}

TEST_F(changed_at_a_level, what_loops_and_sums_hold) {
    change_everywhere("for i = 1 to 3 do x := x*a[1]; y := y + i*x od");
    change_everywhere("for i = 1 to 2 do y := x*x - (x + i)*x + (x^2 - x) - x od");
    change_everywhere("y := Sigma<x = 1 to 3>[x*a[1]] + Prod<i = 1 to 2>[s[1,1] + x]");
    change_everywhere("for x = [s] 1, 2 do y := y + x*a[1] od");
}

TEST_F(changed_at_a_level, what_built_in_functions_hold) {
    change_everywhere("y := GCD(^x, a[1]*x) + GCD(^a[1], x*x); Swap(^x, ^a[1]); Move(^a[1], ^y)");
}

/* A value of its own is complete whatever the level does. */
TEST_F(changed_at_a_level, values_that_are_copies_do_not_change) {
    for (int k = 1; k < 30; k++) {
        run_with("y := (2^70 + 3)*(2^70 - 3) + 5", k, "x := 0; @x");
        leave_all_levels();
        EXPECT_EQ(value_of("y"), "1393796574908163946345982392040522594123772"); /* 2^140 - 4 */
    }
}

} // namespace
