/* Listings of functions: what is listed reads back to the same function. */
#include "support/fresh_system.h"
#include "support/reports.h"

#include <cstdlib>
#include <random>

using namespace tolvek;

namespace {

struct listings : fresh_exact_system {
    /* Lists F, deletes it and reads the listing: the new listing is the old one. */
    void expect_round_trip(const std::string &definition) {
        run(definition);
        const std::string listed = run("&f ,F");
        ASSERT_TRUE(contains(listed, "Function F")) << definition << run("&f ,F");
        run("@F");
        run(trimmed(listed));
        EXPECT_EQ(run("&f ,F"), listed) << definition;
        run("@F");
    }
};

TEST_F(listings, every_kind_of_statement_reads_back) {
    const char *const definitions[] = {
        "Func F(x, ^y) = { a comment } y := y+1; if x > 3 and not [y=2] then z := -2*(x-1); w := x else z :+ fi; x y.",
        "Func F = 7;.",
        "Func F(a) = for i = 1 to 3 by 2 do while a < 3 do a :+ od od; Sigma<i = 1 to 3><j = 1, i>[i-j]; 'q'; a:.",
        "Func F = if 1 then if 2 then 3 fi else 4 fi.",
        "Func F(n) = Func G(x) = x+1;. ; G(n).",
        "Func F(x) = x <= -3; x <> 2; -x + (-3)*x - 2/x;.",
        "Func F = 2.5*2; .5 + 1;.",
        "Func F(x) = { one } { two } x; { three } x + 1; x!.",
        "Func F(x, y, z) = x:; y :- 3; *z; $x|y \\ 3 // 2;.",
        "Func F = &V; &(D = 5); &> ; &]; &}; Return(3);.",
        "Func F(v, ^w) = v[1] := v[2,3]; w :+ v[w+1]; Array a[3], b[2,2] Sparse; @[a]; @(x, F); @<G>; @[b*];.",
        "Func F = Compile(x, [a], a[12]); Float; x :* 2; _sqrt(x) + |x| + <;.",
        "Func F = ' '; ';'; 'a' + 1;.",
        "Func F(to, by) = for to = 1 to by do to od; to by.",
        "Func F(s) = for i = [s] 1, 2 do i od; for i from 1, 2 do i od; for i := 3, 1, -1 do &] od.",
        "Func F = while [1 or 0] and not [x < 3 or y >= 2] do x od; if x then y fi.",
        "Func F(x) = x^2^3; x^-1; (x)^(2); -x^2; x y z; 2x(y+1); x\"; x\"\"; x#3; x#(1, 2).",
        "Func F = Sigma<i = 1 to 3>(Prod<j = 1 to i by 2>[i*j]); Prod<i = 3, 1, -1><j = 1, i>[j]+1;.",
        "Func F = if 1 then { in } 2 else { other } 3 fi; { last } for i = 1 to 2 do { body } i od.",
        "Func F(x) = G(x, ^y, [a], a[3]); GCD(^x, y); Coef(x, 2) - Deg x;.",
    };
    for (const char *definition : definitions) expect_round_trip(definition);
}

TEST_F(listings, a_listed_function_computes_what_it_did) {
    run("Func F(n, s, i) = for i = n to 1 by -1 do if i | 3 = 0 then &] fi; s := 10*s + i; if s > 10^6 then &> fi od; "
        "s - 2*(n-1)/4;.");
    const std::string value = value_of("F(12)"), listed = trimmed(run("&f ,F"));
    run("@F");
    run(listed);
    EXPECT_EQ(value_of("F(12)"), value);
}

/* Statements of random shape. */
class random_statements {
  public:
    random_statements() {
        const char *given = std::getenv("TOLVEK_TEST_SEED");
        seed = given ? static_cast<unsigned>(std::atoi(given)) : 20240301u;
        generator.seed(seed);
    }
    std::string sequence(int depth) {
        std::string text = statement(depth);
        for (unsigned n = below(3); n; n--) text += (below(2) ? "; " : ";\n") + statement(depth);
        return text;
    }
    unsigned seed;

  private:
    unsigned below(unsigned n) { return static_cast<unsigned>(generator() % n); }
    std::string pick(std::initializer_list<const char *> of) {
        return of.begin()[below(static_cast<unsigned>(of.size()))];
    }
    std::string factor(int depth) {
        if (depth == 0 || below(2)) return pick({"x", "y", "n", "7", "120", "2.5", "a[1]", "a[x,2]", "<", "'c'", "-x"});
        switch (below(5)) {
        case 0: return "(" + sum(depth - 1) + ")";
        case 1: return "-" + factor(depth - 1);
        case 2: return "G(" + sum(depth - 1) + ", ^y)";
        case 3: return "Sigma<i = 1 to " + sum(depth - 1) + ">[" + sum(depth - 1) + "]";
        default: return "x^" + factor(0);
        }
    }
    std::string sum(int depth) {
        std::string text = factor(depth);
        for (unsigned n = below(3); n; n--) text += pick({"+", " - ", "*", " / ", "\\", " | ", " * "}) + factor(depth);
        return text;
    }
    std::string condition(int depth) {
        if (depth && below(3) == 0)
            return "[" + condition(depth - 1) + pick({" or ", " and "}) + condition(depth - 1) + "]";
        return (below(4) ? "" : "not ") + sum(1) + pick({" < ", "=", " <> ", ">=", " <= "}) + sum(1);
    }
    std::string statement(int depth) {
        const std::string said = below(5) ? "" : pick({"{ c } ", "{x := 1;} "});
        switch (below(depth ? 7 : 3)) {
        case 0: return said + pick({"x", "a[2]", "y"}) + " := " + sum(2);
        case 1: return said + pick({"x :+", "y :- 3", "n :+ (x)", "x:"});
        case 2: return said + sum(2);
        case 3: return said + "if " + condition(1) + " then " + sequence(depth - 1) + " fi";
        case 4:
            return said + "if " + condition(1) + " then " + sequence(depth - 1) + " else " + sequence(depth - 1) +
                   " fi";
        case 5: return said + "while " + condition(1) + " do " + sequence(depth - 1) + " od";
        default:
            return said + "for i " + pick({"= ", ":= ", "from "}) + sum(1) + pick({" to ", ", "}) + sum(1) +
                   pick({"", " by 2", ", 3"}) + " do " + sequence(depth - 1) + " od";
        }
    }
    std::mt19937_64 generator;
};

TEST_F(listings, random_functions_read_back) {
    random_statements random;
    const char *given = std::getenv("TOLVEK_TEST_TIMES");
    SCOPED_TRACE("TOLVEK_TEST_SEED=" + std::to_string(random.seed));
    for (int i = 0; i < 200 * (given ? std::atoi(given) : 1); i++)
        expect_round_trip("Func F(x, ^n) = " + random.sequence(3) + ";.");
}

TEST_F(listings, heads_are_listed_by_name) {
    run("Func G(x, ^y) = 1;.\nFunc F = 2;.");
    EXPECT_EQ(run("&f"), "\nF\n\nG(x,^y)\n\n\n");
    EXPECT_TRUE(contains(run("&f ,H"), "H has not been defined.\n"));
    EXPECT_TRUE(contains(run("&f <F"), " Function F =  \n"));
    EXPECT_TRUE(contains(run("&f 3"), "3 is not a legal function name.\n"));
    EXPECT_TRUE(contains(run("&f *"), " Function F =  \n") && contains(run("&f *"), " Function G(x,^y) =  \n"));
}

TEST_F(listings, more_than_a_thousand_functions_are_listed_without_order) {
    std::string text;
    for (int i = 0; i < 1001; i++) text += "Func F" + std::to_string(i) + " = 1;.\n";
    run(text);
    const std::string listed = run("&f");
    for (int i : {0, 500, 1000}) EXPECT_TRUE(contains(listed, "\nF" + std::to_string(i) + "\n"));
    EXPECT_TRUE(contains(run("&f *"), "Function F1000 ="));
    run("@F1000");
    const std::string sorted = run("&f");
    EXPECT_LT(sorted.find("\nF10\n"), sorted.find("\nF100\n"));
    EXPECT_LT(sorted.find("\nF100\n"), sorted.find("\nF2\n"));
}

} // namespace
