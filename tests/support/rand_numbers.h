/* Random numbers for tests, biased to what goes wrong: 0, 1, -1, long runs of zero digits and of maximal digits. And
   Python's integers as the second opinion on what comes out. */
#pragma once

#include "numbers/flat_chains.h"
#include "numbers/handles.h"
#include "numbers/number.h"
#include "numbers/stash.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace tolvek {

/* The seed is fixed unless TOLVEK_TEST_SEED is set; it is told when a test fails. */
struct test_random : std::mt19937_64 {
    test_random();
    ~test_random();
    uint64_t seed;
    int below(int n) { return static_cast<int>((*this)() % static_cast<uint64_t>(n)); }
    bool one_in(int n) { return below(n) == 0; }
};

/* How often a random test repeats: n times the factor TOLVEK_TEST_TIMES (1 unless set). */
int times(int n);

/* x := a random chain of 1 to max_len digits, negative half of the time unless that is ruled out. */
enum class signs { both, not_negative, positive };
void rand_number(test_random &rnd, int max_len, number *x, signs wanted = signs::both, int32_t radix = digit_radix);
/* The same with exactly len digits, the head other than 0 (but 0 is allowed for a len of 1). */
void rand_number_of_length(test_random &rnd, int len, number *x, signs wanted = signs::both,
                           int32_t radix = digit_radix);

std::string hex_of(const number *x);     /* "-0x1f"; the digits of a chain read in radix 2^28 */
std::string decimal_of(const number *x); /* of a decimal-form number */
void set_hex(const std::string &text, number *x);
std::string figures_of_display(const number *x); /* what showint writes, on one line */

/* Asks Python at the end of the test whether expressions have the expected values. A value is compared as text. */
struct python_check {
    void expect(const std::string &expression, const std::string &value) {
        expressions.push_back(expression);
        values.push_back(value);
    }
    void run();

  private:
    std::vector<std::string> expressions, values;
};

/* A chain ring with its constants; afterwards every digit and record must be back. */
struct numbers_test : ::testing::Test {
    void SetUp() override;
    void TearDown() override;
    ~numbers_test() override; /* after the handles of a test's own fixture */
    test_random rnd;
    python_check python;

  private:
    struct counts {
        long digits, numbers;
    } before{};
};

/* The same with the plain methods at every length, and with the flat ones from their least length on. A file makes
   both of its fixture by INSTANTIATE_TEST_SUITE_P(methods, its_fixture, both_methods, method_name). */
enum class method { plain, flat };
struct both_methods_test : numbers_test, ::testing::WithParamInterface<method> {
    void SetUp() override;
    ~both_methods_test() override;

  private:
    int mult_cut = flat_mult_cut, quotient_cut = flat_quotient_cut, root_cut = flat_root_cut;
    int decimal_cut = flat_decimal_cut;
    std::size_t figures_cut = flat_figures_cut;
};
inline const auto both_methods = ::testing::Values(method::plain, method::flat);
inline std::string method_name(const ::testing::TestParamInfo<method> &info) {
    return info.param == method::plain ? "plain" : "flat";
}

#define expect_whole(x) EXPECT_EQ(chain_rule_broken(x), 0)

} // namespace tolvek
