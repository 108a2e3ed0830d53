/* A heap that refuses, and the books behind statements that store nothing. */
#include "support/fresh_system.h"

#include "language/names.h"
#include "language/tokens.h"
#include "top/driver.h"
#include "top/heap.h"

#include <cstdlib>

using namespace tolvek;

namespace {

int requests = 0, first_refused = 0, refusals = 0;

/* Refuses `refusals` requests from the first_refused-th on. */
void *request(std::size_t bytes) {
    requests++;
    bool refused = first_refused && requests >= first_refused && requests < first_refused + refusals;
    return refused ? nullptr : std::malloc(bytes);
}

std::string ones(std::size_t count) { return std::string(count, '1'); }

constexpr int plenty = 1 << 30;

struct refusing_heap : fresh_exact_system {
    heap_hooks found = heap;

    void SetUp() override {
        fresh_exact_system::SetUp();
        heap = {request, std::free};
    }
    void TearDown() override {
        first_refused = 0;
        heap = found;
        fresh_exact_system::TearDown();
    }

    /* Runs a statement with some of its requests refused; `behind` answers the level that opens. */
    std::string run_refused(const std::string &line, int from, int count, const std::string &behind) {
        requests = 0;
        first_refused = from;
        refusals = count;
        std::string text = run(line + behind);
        first_refused = 0;
        return text;
    }
    int requests_of(const std::string &line) {
        run_refused(line, 0, 0, "");
        return requests;
    }
};

const std::string out_of_space = "\n*** Warning.  You are out of heap space.  Abort this computation.\n";
const std::string level = "\n*** New command level.\n2>*** Resuming earlier command level\n";

/* A literal gathers its figures in a block that grows. */
const std::string literal = "x := " + ones(3000) + ":";

TEST_F(refusing_heap, a_request_that_is_granted_at_the_second_try_changes_nothing) {
    std::string expected = run(literal + "\nx|1000007");
    int count = requests_of(literal);
    ASSERT_GT(count, 3);
    for (int n = 1; n <= count; n++) {
        SCOPED_TRACE(n);
        run("x := 0:");
        std::string text = run_refused(literal, n, 1, "\n&_p\nx|1000007");
        std::size_t at = text.find(out_of_space);
        ASSERT_NE(at, std::string::npos) << text;
        text.erase(at, out_of_space.size());
        at = text.find(level);
        ASSERT_NE(at, std::string::npos) << text;
        EXPECT_EQ(text.erase(at, level.size()), expected);
    }
}

TEST_F(refusing_heap, a_statement_that_is_stopped_at_a_refusal_leaves_its_variable) {
    run("x := 7:");
    int count = requests_of("y := " + ones(3000) + ":");
    for (int n = 1; n <= count; n++) {
        SCOPED_TRACE(n);
        run_refused(literal, n, 1, "\n&@\n");
        EXPECT_EQ(value_of("x"), "7");
        EXPECT_EQ(value_of("1 + 1"), "2");
    }
}

TEST_F(refusing_heap, a_heap_that_gives_nothing_more_ends_in_a_panic_stop) {
    run("x := 7:");
    int count = requests_of("y := " + ones(3000) + ":");
    for (int n = 1; n <= count; n++) {
        SCOPED_TRACE(n);
        std::string text = run_refused(literal, n, plenty, "\n&_p\n");
        EXPECT_NE(text.find("*** Panic stop."), std::string::npos) << text;
        EXPECT_EQ(value_of("x"), "7");
        EXPECT_EQ(value_of("1 + 1"), "2");
    }
}

/* ---- the books ---- */

const char *const storing_nothing[] = {
    "1 + 1",
    "(((2 + 3)*4 - 1)^3)|17",
    "-5 + |(-7)| - $(7/2)",
    "1/3 + 1/6",
    "20!",
    "2^300 - 3^200",
    "'a'",
    "x",
    "x + y x",
    "x := x",
    "x:",
    "*x: ; x := 5",
    "< + x",
    "",
    ";;",
    "2)",
    "(2",
    "2 + + 3",
    "undefined",
    "1/0",
    "x/(x - 5)",
    "x!^2",
    "2^(1/2)",
    "(1/2)!",
    "x + 1 := 2",
    "x:5",
    "(x + (x + (x + undefined)))",
    "?5",
    "&ab",
    "&_z",
    "&_m(2 + 3)",
    "&_m(2",
    "Foo(x)",
    "a[1]",
    "@nothing",
    "@5",
    "&_p",
    "&@",
    "&_P\n&_p",
    "&_P\n&@",
    "&_P\n&_P\nundefined\n&_p\n1/0\n&_p",
    "x + (&_P) + x\nx := 5\n&_p",
    "?x\n5",
    "?x\n@",
    "?x\n2)",
    "abcdefghijklmnopqrstuvwxyz",
    "3 + `\n4",
    "12345678901234567890123456789012345678901234567890",
    "_sqrt(2)",
};

/* Each is run often, and holds as many records of each kind as behind its first run. */
void books_balance(fresh_system &system) {
    constexpr int times = 1000;
    for (const char *line : storing_nothing) {
        SCOPED_TRACE(line);
        const std::string once = std::string("x := 5:\ny := 7:\n") + line + "\n0:\n";
        system.run(once);
        records_in_use before = count_records_in_use();
        std::string often;
        for (int i = 0; i < times; i++) often += once;
        system.run(often);
        EXPECT_EQ(count_records_in_use(), before);
        EXPECT_EQ(system.value_of("x + y"), "12");
    }
}

struct books_of_floats : fresh_system {};
struct books_of_integers : fresh_exact_system {};

TEST_F(books_of_floats, a_statement_that_stores_nothing_holds_nothing) { books_balance(*this); }
TEST_F(books_of_integers, a_statement_that_stores_nothing_holds_nothing) { books_balance(*this); }

} // namespace
