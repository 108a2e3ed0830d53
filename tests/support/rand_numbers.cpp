#include "support/rand_numbers.h"

#include "numbers/int_power.h"
#include "numbers/number_decimal.h"
#include "numbers/number_work.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <unistd.h>

namespace tolvek {

test_random::test_random() {
    const char *given = std::getenv("TOLVEK_TEST_SEED");
    seed = given ? std::strtoull(given, nullptr, 10) : 20240229;
    std::mt19937_64::seed(seed);
}

test_random::~test_random() {
    if (::testing::Test::HasFailure())
        std::printf("random seed: TOLVEK_TEST_SEED=%llu\n", static_cast<unsigned long long>(seed));
}

int times(int n) {
    const char *given = std::getenv("TOLVEK_TEST_TIMES");
    int factor = given ? std::atoi(given) : 1;
    return n * (factor > 0 ? factor : 1);
}

/* ---- generators ---- */

void rand_number_of_length(test_random &rnd, int len, number *x, signs wanted, int32_t radix) {
    const int32_t sign = wanted == signs::both && rnd.one_in(2) ? -1 : 1;
    growing_chain chain;
    enum { zeros, maximal, any, small } run = any;
    for (int i = 0, left = 0; i < len; i++, left--) {
        if (left == 0) {
            run = static_cast<decltype(run)>(rnd.below(4));
            left = 1 + rnd.below(rnd.one_in(3) ? len : 4);
        }
        int32_t digit = run == zeros ? 0 : run == maximal ? radix - 1 : run == small ? rnd.below(3) : rnd.below(radix);
        if (digit == 0 && i == 0 && (len > 1 || wanted == signs::positive)) digit = 1;
        chain.append(sign * digit);
    }
    chain.give_to(x);
}

void rand_number(test_random &rnd, int max_len, number *x, signs wanted, int32_t radix) {
    rand_number_of_length(rnd, 1 + rnd.below(rnd.one_in(3) ? minn(max_len, 3) : max_len), x, wanted, radix);
}

/* ---- text ---- */

std::string hex_of(const number *x) {
    std::string text = x->num_head->digit < 0 ? "-0x" : "0x";
    bool first = true;
    for (const numnode *d = x->num_head; d; d = d->next) {
        char group[16];
        std::snprintf(group, sizeof group, first ? "%x" : "%07x", static_cast<unsigned>(std::abs(d->digit)));
        text += group;
        first = false;
    }
    return text;
}

std::string decimal_of(const number *x) {
    std::string text = x->num_head->digit < 0 ? "-" : "";
    bool first = true;
    for (const numnode *d = x->num_head; d; d = d->next) {
        char group[16];
        std::snprintf(group, sizeof group, first ? "%d" : "%08d", std::abs(d->digit));
        text += group;
        first = false;
    }
    return text;
}

void set_hex(const std::string &text, number *x) {
    std::size_t at = text[0] == '-' ? 3 : 2;
    const int32_t sign = text[0] == '-' ? -1 : 1;
    growing_chain chain;
    std::size_t end = at + ((text.size() - at - 1) % 7 + 1);
    for (; at < text.size(); at = end, end += 7)
        chain.append(sign * static_cast<int32_t>(std::strtol(text.substr(at, end - at).c_str(), nullptr, 16)));
    chain.trim();
    chain.give_to(x);
}

static std::string *captured;
static ssize_t capture(int, const char *from, std::size_t count) {
    captured->append(from, count);
    return static_cast<ssize_t>(count);
}

std::string figures_of_display(const number *x) {
    std::string text;
    captured = &text;
    const io_hooks found = io;
    const int cutoff = dispcutoff;
    io.write_some = capture;
    dispcutoff = INT32_MAX;
    text_out out(-1);
    int column = 0;
    showint(&out, x, 1, 0, 0, 0, 0, 1, &column);
    flush(&out);
    EXPECT_EQ(static_cast<std::size_t>(column), text.size());
    dispcutoff = cutoff;
    io = found;
    return text;
}

/* ---- Python ---- */

void python_check::run() {
    if (expressions.empty()) return;
    char path[] = "/tmp/tolvek_python_XXXXXX";
    int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    close(fd);
    std::ofstream questions(path);
    for (const std::string &e : expressions) questions << e << "\n";
    questions.close();
    const std::string program = "import sys, math\n"
                                "getattr(sys, 'set_int_max_str_digits', int)(0)\n"
                                "for line in open(sys.argv[1]): print(eval(line))\n";
    FILE *answers = popen(("python3 -c \"" + program + "\" " + path).c_str(), "r");
    ASSERT_TRUE(answers);
    std::string all;
    char block[65536];
    for (std::size_t n; (n = std::fread(block, 1, sizeof block, answers)) > 0;) all.append(block, n);
    pclose(answers);
    std::remove(path);
    std::size_t at = 0, wrong = 0;
    for (std::size_t i = 0; i < expressions.size(); i++) {
        std::size_t end = all.find('\n', at);
        ASSERT_NE(end, std::string::npos) << "Python gave no answer to " << expressions[i];
        if (all.compare(at, end - at, values[i]) != 0 && wrong++ < 5)
            ADD_FAILURE() << expressions[i] << "\n is " << all.substr(at, end - at) << "\n not " << values[i];
        at = end + 1;
    }
    expressions.clear();
    values.clear();
}

/* ---- the fixture ---- */

void numbers_test::SetUp() {
    open_value_stashes();
    flotemode = lintmode = modularmode = finf = 0;
    modulus = -1;
    set_number_constants();
    two_28_entry(129); /* tables that stay once they are made */
    fact_entry(21, nullptr);
    records_in_use now = count_records_in_use();
    before = {now.digits, now.numbers};
}

void numbers_test::TearDown() { python.run(); }

numbers_test::~numbers_test() {
    records_in_use now = count_records_in_use();
    EXPECT_EQ(now.digits, before.digits) << "digits lost";
    EXPECT_EQ(now.numbers, before.numbers) << "number records lost";
    flotemode = lintmode = modularmode = finf = 0;
    modulus = -1;
}

void both_methods_test::SetUp() {
    constexpr int least = 2;
    const bool flat = GetParam() == method::flat;
    flat_mult_cut = flat_quotient_cut = flat_root_cut = flat_decimal_cut = flat ? least : INT32_MAX;
    flat_figures_cut = flat ? least : SIZE_MAX;
    numbers_test::SetUp();
}

both_methods_test::~both_methods_test() {
    flat_mult_cut = mult_cut;
    flat_quotient_cut = quotient_cut;
    flat_root_cut = root_cut;
    flat_decimal_cut = decimal_cut;
    flat_figures_cut = figures_cut;
}

} // namespace tolvek
