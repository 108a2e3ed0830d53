/* Compile: what is bound, for how long, and what is refused. */
#include "support/fresh_system.h"
#include "support/reports.h"

#include "language/compile.h"
#include "language/functions.h"

using namespace tolvek;

namespace {

struct compile_names : fresh_system {
    /* How many tokens of a function's body are bound. */
    static int bound_tokens(const char *name) {
        token_record t{};
        set_token(t, name);
        return count(find_function(t)->body);
    }

  private:
    static int count(const struct name *list) {
        int n = 0;
        for (; list; list = list->next) n += list->bound != nullptr;
        return n;
    }
    static int count(const form *list) {
        int n = 0;
        for (; list; list = list->next) {
            const cond *c = list->statement;
            n += count(c->test) + count(c->tokens) + count(c->body) + count(c->else_part);
        }
        return n;
    }
};

TEST_F(compile_names, every_list_behind_the_statement_is_bound_and_none_in_front_of_it) {
    run("s := 0:\nFunc F(n) = s := 7; Compile(s); for i = n to n do while s < n do s :+ od od;"
        "if s = n then s else n fi; Sigma<j = 1 to n>[s].");
    EXPECT_EQ(value_of("F(9)"), "81");
    /* n n | s n | s | s n | s | n | n s */
    EXPECT_EQ(bound_tokens("F"), 11);
}

TEST_F(compile_names, a_second_and_a_third_call_run_what_the_first_one_bound) {
    run("g := 1:\nFunc F(a, b) = g := 100; Compile(g); if a > b then g := a else while g < b do g := g + a od fi;"
        "for i = 1 to a by b do g :+ b od; g;.");
    EXPECT_EQ(value_of("F(3, 1)"), "6"); /* 3, then three steps of 1 */
    const int bound = bound_tokens("F");
    EXPECT_EQ(value_of("F(5, 15)"), "115"); /* 100, then one step of 15 */
    EXPECT_EQ(value_of("F(3, 1)"), "6");
    EXPECT_EQ(bound_tokens("F"), bound);
}

TEST_F(compile_names, the_statements_in_front_run_at_each_call) {
    run("c := 0:\nFunc F(n) = c :+; Compile; n + c;.");
    EXPECT_EQ(value_of("F(10)"), "11");
    EXPECT_EQ(value_of("F(10)"), "12");
    EXPECT_EQ(value_of("F(10)"), "13");
}

TEST_F(compile_names, follow_their_variables) {
    run("s := 0:\ni := 0:\nFunc F(n) = Compile(s, i); s := 0; for i = 1 to n do s := s + i od; s;.");
    EXPECT_EQ(value_of("F(3)"), "6");
    EXPECT_EQ(value_of("F(4)"), "10");
    run("@s");
    run("s := 100:");
    EXPECT_EQ(value_of("F(5)"), "15");
    run("Rname(s, t)");
    EXPECT_EQ(error_of(run("Func G = s;.\nG")), 19);
    EXPECT_EQ(value_of("F(2)"), "3"); /* the assignment makes s anew */
    EXPECT_EQ(value_of("t"), "15");
}

TEST_F(compile_names, a_function_may_call_itself) {
    run("Func F(n) = Compile; if n < 2 then n else F(n-1) + F(n-2) fi.");
    EXPECT_EQ(value_of("F(12)"), "144");
    EXPECT_EQ(value_of("F(13)"), "233");
}

TEST_F(compile_names, a_star_leaves_the_parameters_out) {
    run("s := 5:\nFunc F(n) = Compile*(s); n + s;.");
    EXPECT_EQ(value_of("F(3)"), "8");
    EXPECT_EQ(bound_tokens("F"), 1);
    run("Func G(n) = Compile*; n;.");
    EXPECT_EQ(value_of("G(3)"), "3");
    EXPECT_EQ(bound_tokens("G"), 0);
}

TEST_F(compile_names, scalars_and_arrays_of_one_name_are_told_apart) {
    run("Array a[2]; a[1] := 3; a := 40\nFunc F = Compile([a], a); a + a[1];.");
    EXPECT_EQ(value_of("F"), "43");
    EXPECT_EQ(bound_tokens("F"), 2);
    run("a[1] := 4; a := 50");
    EXPECT_EQ(value_of("F"), "54");
}

TEST_F(compile_names, array_parameters_follow_the_argument) {
    run("Array a[3]; Array b[2]\na[2] := 5; b[2] := 7\nFunc F(v) = Compile; v[2] := v[2] + 1; v[2];.");
    EXPECT_EQ(value_of("F([a])"), "6");
    EXPECT_EQ(value_of("F([b])"), "8");
    EXPECT_EQ(value_of("F([a])"), "7");
    run("@[a]");
    EXPECT_EQ(error_of(run("F([a])")), 28);
    run("Array a[9]; a[2] := 1");
    EXPECT_EQ(value_of("F([a])"), "2");
}

TEST_F(compile_names, elements_of_fixed_place) {
    run("Array a[12]; k := 3; a[3] := 10; a[12] := 7\nFunc F = Compile(a[3], a[12]); a[3] + a[12] + a[k];.");
    EXPECT_EQ(value_of("F"), "27");
    run("a[3] := 20");
    EXPECT_EQ(value_of("F"), "47");
    run("Func G = Compile(a[k]); a[k];.");
    EXPECT_EQ(value_of("G"), "20");
}

TEST_F(compile_names, arrays_of_a_new_declaration_are_found) {
    run("Array a[2]; a[1] := 1\nFunc F = Compile([a]); a[1];.");
    EXPECT_EQ(value_of("F"), "1");
    run("Array a[5]; a[1] := 2");
    EXPECT_EQ(value_of("F"), "2");
    run("@[a]");
    EXPECT_EQ(value_of("F"), "1");
    run("Sparse[a]");
    EXPECT_EQ(value_of("F"), "1");
    run("@[a]");
    EXPECT_EQ(error_of(run("F")), 28);
}

TEST_F(compile_names, a_hundred_names_are_the_most) {
    std::string declarations, names;
    for (int i = 0; i < 101; i++) {
        std::string v = "v" + std::to_string(i);
        declarations += v + " := " + std::to_string(i) + ":\n";
        names += (i ? ", " : "") + v;
    }
    run(declarations);
    EXPECT_EQ(error_of(run("Func F = Compile(" + names + "); 1;.\nF")), 230);
    names.resize(names.rfind(", v100"));
    EXPECT_EQ(value_of("Func G = Compile(" + names + "); v0 + v99;."), "0");
    EXPECT_EQ(value_of("G"), "99");
}

TEST_F(compile_names, refusals) {
    run("q := 1:\nArray a[2]; Array s[2,2] Sparse\nArray z[1]; z[1] := 1");
    expect_errors(*this, {
                             {"Func F = Compile(zz); 1;.\nF", 19},
                             {"Func F = Compile(q 1); 1;.\nF", 231},
                             {"Func F = Compile(Q); 1;.\nF", 232},
                             {"Func F = if 1 then Compile fi; 1;.\nF", 229},
                             {"if 1 then Compile fi", 234},
                             {"Func F = Compile([zz]); 1;.\nF", 28},
                             {"Func F = Compile([a); 1;.\nF", 24},
                             {"Func F = Compile([s]); 1;.\nF", 242},
                             {"Func F = Compile(a[1]); 1;.\nF", 29},
                             {"Func F = Compile(a[9]); 1;.\nF", 27},
                             {"Func F = Compile(zz[1]); 1;.\nF", 28},
                             {"Func F = Compile(z[zz]); 1;.\nF", 246},
                             {"Func F = Compile(z[(1)]); 1;.\nF", 246},
                             {"Func F = Compile(z[1); 1;.\nF", 267},
                             {"Func F(v) = Compile; 1;.\nF([s])", 247},
                         });
    run("Func G(v) = Compile; v[1];.");
    EXPECT_EQ(value_of("G([z])"), "1");
    EXPECT_EQ(error_of(run("G([s])")), 247); /* at a later call too */
    EXPECT_EQ(value_of("G([z])"), "1");
}

} // namespace
