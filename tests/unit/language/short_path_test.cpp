/* The short path gives what the ordinary path gives: the same expressions are run from stored tokens, where it is tried,
   and typed at the prompt, where characters are read and it is not. */
#include "support/fresh_system.h"

#include "language/scanner.h"
#include "language/short_path.h"
#include "numbers/stash.h"
#include "top/heap.h"

#include <chrono>
#include <cstdlib>
#include <random>

using namespace tolvek;

namespace {

struct short_path_of_wholes : fresh_exact_system {};
struct short_path_of_flotes : fresh_system {};

class expressions {
  public:
    explicit expressions(bool quotients) : with_quotients(quotients) {
        const char *given = std::getenv("TOLVEK_TEST_SEED");
        seed = given ? static_cast<unsigned>(std::atoi(given)) : 20240229u;
        generator.seed(seed);
    }
    std::string next() { return sum(2); }
    unsigned seed;

  private:
    unsigned below(unsigned n) { return static_cast<unsigned>(generator() % n); }
    std::string factor(int depth) {
        switch (below(depth ? 10 : 6)) {
        case 0: return "a";
        case 1: return "b";
        case 2: return "c";
        case 3: return std::to_string(below(1000));
        case 4: return with_quotients ? std::to_string(below(100)) + "." + std::to_string(below(100000)) : "268435455";
        case 5: return "-d";
        case 6: return "m[" + std::to_string(1 + below(6)) + "]";
        case 7: return "m[1+" + std::to_string(below(2)) + ",(c-c)+" + std::to_string(1 + below(3)) + "]";
        default: return "(" + sum(depth - 1) + ")";
        }
    }
    std::string product(int depth) {
        std::string text = factor(depth);
        for (unsigned n = below(3); n; n--) text += (with_quotients && below(3) == 0 ? "/" : "*") + factor(depth);
        return text;
    }
    std::string sum(int depth) {
        std::string text = product(depth);
        for (unsigned n = below(3); n; n--) text += (below(2) ? " + " : " - ") + product(depth);
        return text;
    }
    bool with_quotients;
    std::mt19937_64 generator;
};

int times() {
    const char *given = std::getenv("TOLVEK_TEST_TIMES");
    return given ? std::atoi(given) : 1;
}

void compare_with_the_prompt(fresh_system &system, bool quotients) {
    system.run("a := 3:\nb := -17:\nc := 72057594037927935:\nd := 268435456:\nr := 0:\nArray m[2,3]; Array e[3]\n"
               "for i = 1 to 6 do m[i] := 10^i - i od");
    expressions random(quotients);
    for (int i = 0; i < 300 * times(); i++) {
        std::string e = random.next(), other = random.next();
        std::string typed = system.value_of(e), right = system.value_of(other);
        if (typed[0] == '*' || right[0] == '*') continue; /* a division by 0 */
        system.run("Func F = " + e + ";.\nFunc G = r := " + e + "; e[2] := r; e[2];.\nFunc H = if " + e + " < " +
                   other + " then 1 else 0 fi.");
        ASSERT_EQ(system.value_of("F"), typed) << e << ", seed " << random.seed;
        ASSERT_EQ(system.value_of("G"), typed) << e << ", seed " << random.seed;
        system.run("u := " + e + ":\nv := " + other + ":");
        std::string order = system.value_of("if u - v < 0 then 1 else 0 fi");
        ASSERT_EQ(system.value_of("H"), order) << e << " < " << other << ", seed " << random.seed;
        system.run("@F\n@G\n@H");
    }
}

TEST_F(short_path_of_wholes, random_expressions_have_the_values_of_the_prompt) {
    compare_with_the_prompt(*this, false);
}
TEST_F(short_path_of_flotes, random_expressions_have_the_values_of_the_prompt) { compare_with_the_prompt(*this, true); }

TEST_F(short_path_of_wholes, values_pass_over_the_bounds_of_a_word) {
    run("Func P(n) = p := 1; for i = 1 to n do p := p*2 od; p.\nFunc Q(x) = x*x*x - x*x;.\nFunc S(x) = x :+ 1; x :- 3; "
        "x;.");
    EXPECT_EQ(value_of("P(62)"), "4611686018427387904");
    EXPECT_EQ(value_of("P(64)"), "18446744073709551616");     /* 2^64 */
    EXPECT_EQ(value_of("Q(2097152)"), "9223367638808264704"); /* 2^63 - 2^42 */
    EXPECT_EQ(value_of("Q(-2097152)"), "-9223376434901286912");
    EXPECT_EQ(value_of("S(72057594037927936)"), "72057594037927934");
    EXPECT_EQ(value_of("S(2^90)"), "1237940039285380274899124222"); /* 2^90 - 2 */
}

TEST_F(short_path_of_wholes, refusals_are_those_of_the_ordinary_path) {
    run("Func F(x) = x*nothing;.\nFunc G = (((((((((((1)))))))))));.\nFunc H(x) = 2 x + x!;.\nFunc K = 1 2;.");
    EXPECT_NE(run("F(2)").find("*** Inappropriate symbol: nothing"), std::string::npos);
    EXPECT_EQ(value_of("G"), "1");
    EXPECT_EQ(value_of("H(4)"), "32");
    EXPECT_EQ(value_of("K"), "12"); /* figures run on across a blank */
}

TEST_F(short_path_of_wholes, every_relation) {
    const char *const relations[] = {"<", "<=", "=", ">=", ">", "<>"};
    const bool expected[][3] = {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}, {1, 0, 1}};
    for (int r = 0; r < 6; r++) {
        run(std::string("Func F(x) = if x ") + relations[r] + " 5 then 1 else 0 fi.");
        for (int i = 0; i < 3; i++)
            EXPECT_EQ(value_of("F(" + std::to_string(4 + i) + ")"), expected[r][i] ? "1" : "0") << relations[r];
        run("@F");
    }
    run("Func T(x) = if x then 1 else 0 fi.");
    EXPECT_EQ(value_of("T(1)"), "1");
    EXPECT_EQ(value_of("T(2)"), "0");
}

TEST_F(short_path_of_wholes, a_polynomial_variable_is_no_scalar) {
    run("w := 5:\nFunc F = 2*w;.");
    EXPECT_EQ(value_of("F"), "10");
    run("@w\n&(J = w)");
    std::string shown = value_of("F"), prompt = value_of("2*w");
    run("&(J = -w)");
    EXPECT_EQ(shown, prompt);
    EXPECT_NE(shown.find('w'), std::string::npos);
}

TEST_F(short_path_of_wholes, nothing_changes_at_a_refusal) {
    run("Func F(x) = y := x; y := y*2; y := y/0; y;.\ny := 0:");
    run("F(3)");
    EXPECT_EQ(value_of("y"), "6");
}

/* ---- what a statement costs ---- */

long requests = 0;
void *(*real_request)(std::size_t) = nullptr;
void *counting_request(std::size_t bytes) {
    requests++;
    return real_request(bytes);
}

struct counted_heap {
    counted_heap() {
        real_request = heap.request;
        requests = 0;
        heap.request = counting_request;
    }
    ~counted_heap() { heap.request = real_request; }
};

/* Free records as well as the heap: with none left, each new record would ask the heap or a stash. */
TEST_F(short_path_of_flotes, loops_of_the_fast_path_ask_for_no_memory) {
    run("s := 0:\ni := 0:\nFunc F(n) = Compile(s, i); Float; s := 0; for i = 1 to n do s := s + i*i - i/2; s :+ 1; "
        "if s < 0 then s := 0 fi od; s;.\nFunc G(n) = Float; t := 0; for j = 1 to n do t := _sqrt(t)^2 + |j| od; "
        "t;.\nArray a[9]; a[1] := 0; a[2] := 0\nFunc H(n) = Compile([a]); Float; for i = 1 to n do a[1] := a[1] + i; "
        "a[a[1]*0 + 2] :+ _sqrt(a[1]) od; a[1];.\nt := "
        "0:\nj := 0:\nF(10)\nG(10)\nH(10)");
    for (const char *function : {"F", "G", "H"}) {
        records_in_use before = count_records_in_use();
        long asked[2];
        for (int run_of : {0, 1}) {
            counted_heap counter;
            run(std::string(function) + (run_of ? "(20000):" : "(10):"));
            asked[run_of] = requests;
        }
        EXPECT_EQ(asked[0], asked[1]) << function;
        EXPECT_TRUE(count_records_in_use() == before) << function;
    }
}

TEST_F(short_path_of_wholes, a_statement_costs_no_more_behind_many_others) {
    using clock = std::chrono::steady_clock;
    std::string block;
    for (int i = 0; i < 1000; i++) block += "x := x + 1:\n";
    run("x := 0:\n" + block);
    records_in_use before = count_records_in_use();
    auto seconds_of = [&](int blocks) {
        auto start = clock::now();
        for (int i = 0; i < blocks; i++) run(block);
        return std::chrono::duration<double>(clock::now() - start).count();
    };
    double first = seconds_of(10);
    counted_heap counter;
    seconds_of(80);
    EXPECT_TRUE(count_records_in_use() == before);
    EXPECT_EQ(requests, 0); /* what is asked for at each statement would be kept or given back: neither is there */
    double last = seconds_of(10);
    EXPECT_LT(last, 5 * first + 0.5);
    EXPECT_EQ(value_of("x"), "101000");
}

} // namespace
