/* Saves and loads that are interrupted, resumed or broken off, and what they leave behind. */
#include "language/execution.h"
#include "language/poly_reader.h"
#include "support/fresh_system.h"
#include "top/driver.h"
#include "top/errors.h"
#include "top/interrupts.h"
#include "top/load.h"
#include "top/output_file.h"

#include <fstream>
#include <sstream>

namespace tolvek {

static std::string contents(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

static bool has(const std::string &text, const std::string &part) { return text.find(part) != std::string::npos; }

static int passed, wanted;
static void count_safe_point() {
    if (++passed == wanted) note_interrupt();
}

struct saved_state : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(J = x)\n&(J = y)\nf := (x + y)^3/(x - 2):\ng := 3*x^2 - y:\nn := 5:\n"
            "Func F(n) = n + 1;.\nArray v[2], w[2,2]\nv[1] := 3: v[2] := 4:\nw[1,2] := x*y:");
    }
    /* Runs statements with the interrupt at the k-th safe point; false: there are fewer. */
    bool interrupted(int k, const std::string &lines, std::string &text) {
        passed = 0;
        wanted = k;
        watch_safe_points(count_safe_point);
        text = run(lines);
        watch_safe_points(nullptr);
        return passed >= k;
    }
    int files() {
        int count = 0;
        for ([[maybe_unused]] const auto &entry : std::filesystem::directory_iterator(".")) count++;
        return count;
    }
};

TEST_F(saved_state, an_interrupted_save_that_is_resumed_is_whole) {
    run("&(S = 'whole')\n&s\n&(S = '@')");
    const std::string whole = contents("whole");
    ASSERT_GT(whole.size(), 200u);
    std::string text;
    int resumed = 0;
    for (int k = 1; k < 400; k += 7) {
        run("&(S = 'state')");
        const bool met = interrupted(k, "&s\n&(S = '@')\n&s\n&_p", text);
        if (has(text, "Save cancelled")) {
            resumed++;
            EXPECT_EQ(contents("state"), whole) << k << text;
        }
        EXPECT_EQ(value_of("1 + 1"), "2");
        if (!met) break;
    }
    EXPECT_GT(resumed, 3);
}

TEST_F(saved_state, a_save_that_is_broken_off_is_taken_back) {
    write_file("state", "old;\n");
    std::string text;
    int broken_off = 0;
    for (int k = 1; k < 200; k += 5) {
        run("&(S = 'state')");
        interrupted(k, "&s\n&@\n&@", text);
        if (!has(text, "New command level")) break;
        const std::string now = contents("state");
        if (now != "old;\n") break; /* the interrupt came behind the save */
        broken_off++;
        run("&(S = '@')");
        EXPECT_EQ(contents("state"), "old;\n");
        EXPECT_EQ(files(), 1) << "nothing is left beside the file";
    }
    EXPECT_GT(broken_off, 3);
}

TEST_F(saved_state, a_load_interrupted_and_resumed_is_whole) {
    run("&(S = 'state')\n&s\n&(S = '@')\n");
    const std::string whole = contents("state");
    std::string text;
    for (int k = 1; k < 600; k += 31) {
        run("@[*]: @(f, g, n): @F:\n&(J = -x)\n&(J = -y)");
        const bool met = interrupted(k, "&(R = 'state')\n1 + 1\n&_p", text);
        EXPECT_FALSE(has(text, "Inappropriate")) << k << text;
        run("&(S = 'again')\n&s\n&(S = '@')");
        EXPECT_EQ(contents("again"), whole) << k;
        if (!met) break;
    }
}

TEST_F(saved_state, records_do_not_leak) {
    write_file("bad", "q := &_n (x + 1)y;\n");
    write_file("worse", "q := &_n x^2 + (y^3 + ((5y) + 1;\n");
    write_file("good", "q := &_n x^2 + (y^3 + 1)x - 4;\n&x;\n");
    auto all = [&] {
        run("&(R = 'bad')\n&(R = 'worse')\n&(R = 'good')\n&r\n&(S = 'state')\n&s\n&(S = '@')\nq := 0:\n0:");
        run("&_n x + y + z\n&_n (x)/0\n&_n x^2 + (y + (y\n!(f, g:z\n!(f, ^zz)\n0:");
    };
    all();
    const records_in_use before = count_records_in_use();
    for (int i = 0; i < 50; i++) all();
    EXPECT_TRUE(count_records_in_use() == before);
}

TEST_F(saved_state, a_load_leaves_the_flags_as_they_were) {
    write_file("good", "n := 7;\n&x;\n");
    write_file("bad", "n := 8;\nn := zz;\n");
    run("&(R = 'good')");
    EXPECT_EQ(tt_flag, 1);
    EXPECT_EQ(minus_warning, 0);
    run("&(R = 'bad')");
    EXPECT_EQ(tt_flag, 1);
    EXPECT_EQ(minus_warning, 0);
    EXPECT_EQ(value_of("n"), "8");
    EXPECT_NE(inpuf, nullptr);
    run("&b\n&(R = 'bad')");
    EXPECT_EQ(inpuf, nullptr);
    EXPECT_STREQ(input_file_name, "");
    run("&b");
}

TEST_F(saved_state, a_minus_among_residues_is_warned_of_once_in_a_load) {
    run("&(p = 7)\n&n");
    write_file("data", "a := &_n -3x + 1;\nb := &_n -2x;\n");
    const std::string text = run("&(R = 'data')");
    const std::string words = "*** Warning. Negative value seen during poly readin in modular mode.\n"
                              "    Check your data carefully.\n\n";
    const std::size_t at = text.find(words);
    ASSERT_NE(at, std::string::npos) << text;
    EXPECT_EQ(text.find(words, at + 1), std::string::npos);
    EXPECT_EQ(value_of("a"), "-3x + 1");
    EXPECT_FALSE(has(run("&_n -3x"), "Negative value")) << "outside loads there is none";
    run("&n");
    EXPECT_FALSE(has(run("&(R = 'data')"), "Negative value")) << "residues have signs";
}

TEST_F(saved_state, in_a_function_a_file_is_closed_without_a_word) {
    run("Func Close = &(S = '@'); 1;.\n&(S = 'out')");
    EXPECT_FALSE(has(run("Close"), "Now closing"));
    EXPECT_EQ(outpuf, nullptr);
    EXPECT_TRUE(has(run("Close"), "No output file had been open"));
}

TEST_F(saved_state, a_quoted_answer_ends_on_its_line) {
    EXPECT_TRUE(has(run("&S\n'out"), "before the closing quote"));
    EXPECT_TRUE(has(run("&R\n'out"), "before the closing quote"));
    EXPECT_EQ(value_of("1 + 1"), "2");
}

TEST_F(saved_state, prompts_come_back) {
    run("&(M = 'ab')");
    run(" &(S = 'state')\n &s\n &(S = '@')\n &(M = '>')");
    EXPECT_TRUE(has(contents("state"), "\n&(M = 'ab');\n"));
    run("&(M = ' ')");
    run(" &(S = 'state')\n &s\n &(S = '@')\n &(M = '>')");
    EXPECT_TRUE(has(contents("state"), "\n&(M = ' ');\n"));
    run("&(S = 'state')\n&s\n&(S = '@')");
    EXPECT_FALSE(has(contents("state"), "&(M"));
}

TEST_F(saved_state, the_compact_style_is_warned_of) {
    run("&(U = 1)\n&(S='state')"); /* blanks continue a line in this style */
    EXPECT_TRUE(
        has(run("&s"), " Warning: You saved with ugly format! File is unreadable, except for the variables.\n"));
    run("&(S='@')\n&(U=0)");
    EXPECT_TRUE(has(contents("state"), "\n&(U = 1);\n"));
}

TEST_F(saved_state, of_functions_of_one_name_the_newest_counts_behind_a_load) {
    run("Func F(n) = n + 2;.\nFunc F(n) = n + 3;.\n&(S = 'state')\n&s\n&(S = '@')\n@F: @F: @F:");
    run("@[*]: @(f, g, n):\n&(J = -x)\n&(J = -y)\n&(R = 'state')");
    EXPECT_EQ(value_of("F(1)"), "4");
    run("&(S = 'again')\n&s\n&(S = '@')");
    EXPECT_EQ(contents("again"), contents("state"));
}

TEST_F(saved_state, of_arrays_of_one_name_the_newest_stands_once) {
    run("[v] := [(5,6,7)]\n[v] := [[1,2][8,9]]\nFunc P(v) = &s; 0;.\n&(S = 'state')\nP([w])\n&(S = '@')");
    const std::string text = contents("state");
    EXPECT_EQ(text.find("Array v"), text.rfind("Array v"));
    run("@[*]:\n&(J = -x)\n&(J = -y)\n&(R = 'state')");
    EXPECT_EQ(value_of("Deg[v]"), "4");
    EXPECT_EQ(value_of("v[1,2] + 10*v[2,1]"), "82");
    EXPECT_EQ(value_of("w[1,2] - x*y"), "0");
    EXPECT_TRUE(has(run("@[v]\n[v]"), "There is no array with this name.\n"));
}

TEST_F(saved_state, two_states_stand_one_behind_the_other) {
    run("&(S = 'one')\n&s\n&(S = '@')\n&(S = 'two')\n&s\n&s\n&(S = '@')");
    EXPECT_EQ(contents("two"), contents("one") + contents("one"));
}

TEST_F(saved_state, the_oldest_value_of_a_name_stands_once) {
    run("Func Deep(n) = if n > 0 then Deep(n - 1) else &s fi; n.\n&(S = 'state')\nDeep(12)\n&(S = '@')");
    const std::string text = contents("state");
    EXPECT_TRUE(has(text, " n := 5;\n"));
    EXPECT_EQ(text.find(" n := "), text.rfind(" n := "));
}

TEST_F(fresh_system, infinite_floats_are_left_out_with_a_remark) {
    run("a := 1e+4000^3: b := 2:\nb := 2:\n&(S = 'state')\n&s\n&(S = '@')\n@(a, b):");
    EXPECT_TRUE(has(contents("state"), ";; a has no finite value.\n")) << contents("state");
    EXPECT_FALSE(has(run("&(R = 'state')"), "Inappropriate"));
    EXPECT_EQ(value_of("b"), "2");
}

} // namespace tolvek
