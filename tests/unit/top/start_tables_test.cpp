#include "top/start_tables.h"

#include "language/builtin_table.h"
#include "numbers/handles.h"
#include "numbers/int_power.h"
#include "numbers/number_decimal.h"
#include "numbers/stash.h"
#include "top/data_files.h"
#include "top/interrupts.h"
#include "top/messages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

using namespace tolvek;
namespace fs = std::filesystem;

namespace {

const std::vector<std::string> file_names = {"chdat",   "Qerrs", "pow228", "pprods", "primelist",
                                             "bprimes", "f256d", "f2t16d", "lrgpmes"};

/* The folder of the data files, beside the test programs. */
fs::path built() { return fs::read_symlink("/proc/self/exe").parent_path() / "BACKWARD"; }

std::string written;
ssize_t keep_text(int, const char *from, std::size_t count) {
    written.append(from, count);
    return static_cast<ssize_t>(count);
}

std::string contents(const fs::path &path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

std::vector<std::string> words(const std::string &text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), {}};
}

/* A folder with links to all data files, some of which a test replaces or takes away. */
struct start_tables_test : testing::Test {
    fs::path folder = fs::temp_directory_path() / ("tolvek_start_" + std::to_string(::getpid()) + "_" +
                                                   testing::UnitTest::GetInstance()->current_test_info()->name());
    io_hooks kept_io = io;

    void SetUp() override {
        static bool opened = (open_value_stashes(), true);
        ASSERT_TRUE(opened);
        fs::remove_all(folder);
        fs::create_directories(folder);
        for (const std::string &name : file_names) fs::create_symlink(built() / name, folder / name);
    }
    void TearDown() override {
        io = kept_io;
        fs::remove_all(folder);
    }

    void replace(const std::string &name, const std::string &text) {
        fs::remove(folder / name);
        std::ofstream(folder / name, std::ios::binary) << text;
    }
    /* The words of a file, changed by a routine, are written back one a line. */
    template <class Change> void change(const std::string &name, Change how) {
        std::vector<std::string> all = words(contents(built() / name));
        how(all);
        std::string text;
        for (const std::string &word : all) text += word + "\n";
        replace(name, text);
    }
    void set_highest_code(const std::string &value) {
        std::string text = contents(built() / "Qerrs");
        std::size_t at = text.find("\n109\n");
        ASSERT_NE(at, std::string::npos);
        replace("Qerrs", text.replace(at + 1, 3, value));
    }

    bool start_in(const std::string &directory) {
        flush(&standard_output);
        written.clear();
        io.write_some = keep_text;
        bool stands = initialize(directory.c_str());
        flush(&standard_output);
        io = kept_io;
        return stands;
    }
    bool start() { return start_in(folder.string() + "/"); }

    void stops_with(const std::string &text) {
        EXPECT_FALSE(start());
        EXPECT_EQ(written, "*** Tolvek error. " + text + "\n");
    }
};

/* ---- what stops the start ---- */

TEST_F(start_tables_test, whole_files_start_in_silence) {
    EXPECT_TRUE(start());
    EXPECT_EQ(written, "");
}

TEST_F(start_tables_test, a_missing_file_stops_the_start_in_the_order_told) {
    const std::vector<std::string> texts = {"can't find chdat.", "can't find Qerrs",     "can't find pow228.",
                                            "can't find pprods", "can't find primelist", "can't find bprimes",
                                            "can't find f256d",  "can't find f2t16d",    "can't find lrgpmes"};
    for (std::size_t i = file_names.size(); i-- > 0;) {
        fs::remove(folder / file_names[i]);
        stops_with(texts[i]); /* the files behind it are missing too */
    }
}

TEST_F(start_tables_test, files_are_opened_before_any_list_of_primes_is_checked) {
    replace("primelist", "2 3 5\n");
    fs::remove(folder / "lrgpmes");
    stops_with("can't find lrgpmes");
}

TEST_F(start_tables_test, built_ins_are_checked_before_primes_are_looked_for) {
    set_highest_code("53");
    fs::remove(folder / "pprods");
    stops_with("number builtins is wrong.");
}

TEST_F(start_tables_test, a_directory_that_is_too_long_holds_no_file) {
    EXPECT_FALSE(start_in(std::string(2000, '/')));
    EXPECT_EQ(written, "*** Tolvek error. can't find chdat.\n");
    EXPECT_FALSE(start_in(""));
}

TEST_F(start_tables_test, colons_are_appended_to_the_directory_25_times) {
    for (int colons : {1, 25, 26}) {
        std::string prefix = folder.string() + "/" + std::string(colons, ':');
        for (const std::string &name : file_names) fs::rename(folder / name, prefix + name);
        EXPECT_EQ(start(), colons <= 25) << colons;
        EXPECT_EQ(written, colons <= 25 ? "" : "*** Tolvek error. can't find chdat.\n");
        for (const std::string &name : file_names) fs::rename(prefix + name, folder / name);
    }
}

TEST_F(start_tables_test, colons_hold_for_the_other_files_too) {
    fs::rename(folder / "chdat", folder / ":chdat");
    stops_with("can't find Qerrs");
}

TEST_F(start_tables_test, during_start_up_the_process_ends_with_status_1) {
    fs::remove(folder / "bprimes");
    EXPECT_EXIT(
        {
            starting_up = true;
            io.write_some = [](int, const char *from, std::size_t count) { return ::write(2, from, count); };
            initialize((folder.string() + "/").c_str());
        },
        testing::ExitedWithCode(1), "^\\*\\*\\* Tolvek error. can't find bprimes\n$");
}

TEST_F(start_tables_test, an_interrupt_before_the_prompt_does_not_hold_the_start_up) {
    EXPECT_EXIT(
        {
            note_interrupt();
            std::exit(initialize((folder.string() + "/").c_str()) && num_prod(0)->num_len == 1 ? 0 : 3);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(start_tables_test, the_highest_code_of_a_built_in_lies_in_54_to_109) {
    for (const char *wrong : {"53", "110", "-1", "0", "x", "99999999999"}) {
        set_highest_code(wrong);
        stops_with("number builtins is wrong.");
    }
    set_highest_code("54");
    EXPECT_TRUE(start());
    EXPECT_EQ(numbuiltins, 54);
    EXPECT_STREQ(builtin[54].name, "Normalize");
    for (int i = 55; i < builtin_rows; i++) {
        EXPECT_STREQ(builtin[i].name, "b");
        EXPECT_STREQ(builtin[i].code_text, "");
    }
}

TEST_F(start_tables_test, a_line_of_messages_too_few_is_seen) {
    std::string text = contents(built() / "Qerrs");
    replace("Qerrs", text.substr(text.find('\n') + 1));
    stops_with("number builtins is wrong.");
}

TEST_F(start_tables_test, a_list_of_primes_without_its_last_entry_is_damaged) {
    auto cut = [](std::vector<std::string> &all) { all.pop_back(); };
    change("lrgpmes", cut);
    stops_with("lrgpmes file is damaged.");
    change("bprimes", cut);
    stops_with("bprimes file is damaged.");
    change("primelist", cut);
    stops_with("primelist file is damaged, medium.");
    replace("primelist", "");
    stops_with("primelist file is damaged, medium.");
}

TEST_F(start_tables_test, the_last_small_prime_must_not_be_0) {
    change("primelist", [](std::vector<std::string> &all) { all[1228] = "0"; });
    stops_with("primelist file is damaged, small.");
}

TEST_F(start_tables_test, more_than_1900_binomial_coefficients_are_refused) {
    change("pow228", [](std::vector<std::string> &all) { all.insert(all.end() - 80, "12345"); });
    stops_with(" k > 1900.  bad binomial data in pow228");
}

/* ---- what only warns ---- */

TEST_F(start_tables_test, a_wrong_last_prime_of_pprods_warns) {
    change("pprods", [](std::vector<std::string> &all) { all[598] = "48871"; });
    EXPECT_TRUE(start());
    EXPECT_EQ(written, "*** Tolvek error. error in pprods, last prime.\n48871   48869\n");
    EXPECT_EQ(prime[603]->lint_val, 48871);
}

TEST_F(start_tables_test, a_wrong_last_product_of_pprods_warns) {
    change("pprods", [](std::vector<std::string> &all) { all.pop_back(); });
    EXPECT_TRUE(start());
    EXPECT_EQ(written, "*** Tolvek error. error in pprods, last num_prod.\n");
}

TEST_F(start_tables_test, an_empty_pprods_gives_both_warnings) {
    replace("pprods", "");
    EXPECT_TRUE(start());
    EXPECT_EQ(written, "*** Tolvek error. error in pprods, last prime.\n0   48869\n"
                       "*** Tolvek error. error in pprods, last num_prod.\n");
    written.clear();
    io.write_some = keep_text;
    EXPECT_EQ(num_prod(0)->num_len, 1) << "a harmless value";
    flush(&standard_output);
    EXPECT_EQ(written, "*** Tolvek error. error in pprods, last num_prod.\n");
    EXPECT_TRUE(start_in(built().string() + "/"));
}

/* ---- what the tables hold ---- */

struct tables_test : start_tables_test {
    void SetUp() override {
        start_tables_test::SetUp();
        ASSERT_TRUE(start());
    }
};

/* The value of a chain modulo m. */
uint64_t residue(const number *x, uint64_t m) {
    __int128 value = 0;
    for (const numnode *node = x->num_head; node; node = node->next)
        value = (value * (1 << 28) + node->digit) % static_cast<__int128>(m);
    return static_cast<uint64_t>(value < 0 ? value + static_cast<__int128>(m) : value);
}

uint64_t times(uint64_t a, uint64_t b, uint64_t m) {
    return static_cast<uint64_t>(static_cast<unsigned __int128>(a) * b % m);
}

/* Two primes near 2^61: a value that is wrong by chance agrees with neither. */
constexpr uint64_t moduli[] = {2305843009213693951u, 2305843009213693921u};

bool is_prime_by_division(int64_t n) {
    for (int64_t d = 2; d * d <= n; d++)
        if (n % d == 0) return false;
    return n >= 2;
}

std::vector<int> primes_from(int first, int last) {
    std::vector<int> found;
    for (int n = first; n <= last; n++)
        if (is_prime_by_division(n)) found.push_back(n);
    return found;
}

TEST_F(tables_test, the_lists_of_primes_have_no_gap) {
    EXPECT_EQ(std::vector<int>(small_prime, small_prime + small_prime_count), primes_from(2, 9973));
    EXPECT_EQ(std::vector<int>(med_prime, med_prime + med_prime_count), primes_from(17021, 42349));
    EXPECT_EQ(std::vector<int>(big_prime, big_prime + big_prime_count), primes_from(48871, 65521));
    EXPECT_EQ(lrgpme[lrgpme_count - 1], 2147483629);
    int next = lrgpme[0];
    for (int p : lrgpme) {
        for (; next < p; next++) EXPECT_FALSE(is_prime_by_division(next)) << next;
        EXPECT_TRUE(is_prime_by_division(p)) << p;
        next = p + 1;
    }
}

TEST_F(tables_test, evaluation_points_are_the_primes_from_19_on) {
    EXPECT_EQ(std::vector<int>(global_list, global_list + global_list_count), primes_from(19, small_prime[157]));
}

TEST_F(tables_test, primes_of_modular_methods_stand_in_all_three_forms) {
    std::vector<int> expected = {3001, 16087, 16273, 16339, 19997};
    for (int p : primes_from(42359, 48869)) expected.push_back(p);
    ASSERT_EQ(expected.size(), static_cast<std::size_t>(prime_count));
    for (int i = 0; i < prime_count; i++) {
        EXPECT_EQ(prime[i]->lint_val, expected[i]);
        EXPECT_EQ(prime[i]->flote_val, expected[i]);
        EXPECT_EQ(chain_rule_broken(prime[i]), 0);
        EXPECT_TRUE(is_longint(prime[i], expected[i]));
    }
}

TEST_F(tables_test, products_of_primes_agree_modulo_two_large_primes) {
    for (uint64_t m : moduli) {
        uint64_t product = 1;
        long double logarithm = 0;
        for (int i = 0; i < num_prod_count; i++) {
            product = times(product, static_cast<uint64_t>(prime[5 + i]->lint_val), m);
            logarithm += log2l(static_cast<long double>(prime[5 + i]->lint_val));
            ASSERT_EQ(residue(num_prod(i), m), product) << i;
            ASSERT_EQ(chain_rule_broken(num_prod(i)), 0) << i;
            ASSERT_EQ(num_prod(i)->num_len, static_cast<int>(logarithm / 28) + 1) << i;
            ASSERT_NEAR(log2l(num_prod(i)->flote_val), logarithm, 1e-10L) << i;
        }
    }
    EXPECT_EQ(num_prod(num_prod_count - 1)->num_len, 332);
}

TEST_F(tables_test, inverses_of_products_multiply_to_1) {
    for (int i = 0; i < invs_prod_count; i++) {
        uint64_t p = static_cast<uint64_t>(prime[i + 6]->lint_val);
        EXPECT_GT(invs_prod(i), 0);
        EXPECT_LT(static_cast<uint64_t>(invs_prod(i)), p);
        EXPECT_EQ(times(residue(num_prod(i), p), static_cast<uint64_t>(invs_prod(i)), p), 1u) << i;
    }
}

TEST_F(tables_test, inverses_do_not_need_the_products) {
    /* By Python: P the list of primes from 42359 on, pow(prod(P[:i + 1]), -1, P[i + 1]). */
    EXPECT_EQ(invs_prod(0), 33293);
    EXPECT_EQ(invs_prod(299), 21305);
    EXPECT_EQ(invs_prod(597), 15461);
}

TEST_F(tables_test, binomial_coefficients_follow_from_their_neighbours) {
    /* C(n, k) = C(n, k - 1) * (n - k + 1) / k, checked without the division. */
    int i = 0;
    for (int n = 3; n <= 150; n += 3)
        for (int k = 1; k <= n / 2; k++, i++) {
            ASSERT_EQ(chain_rule_broken(binom(i)), 0) << n << " " << k;
            for (uint64_t m : moduli) {
                uint64_t before = k == 1 ? 1 : residue(binom(i - 1), m);
                ASSERT_EQ(times(residue(binom(i), m), static_cast<uint64_t>(k), m),
                          times(before, static_cast<uint64_t>(n - k + 1), m))
                    << n << " " << k;
            }
            long double before = k == 1 ? 1 : binom(i - 1)->flote_val;
            ASSERT_NEAR(binom(i)->flote_val / (before * (n - k + 1) / k), 1, 1e-15L) << n << " " << k;
        }
    EXPECT_EQ(i, binom_count);
}

TEST_F(tables_test, binomial_coefficients_up_to_30_stand_in_all_three_forms) {
    for (int i = 0; i < small_binom_count; i++) {
        EXPECT_TRUE(is_longint(binom(i), binom(i)->lint_val)) << i;
        EXPECT_EQ(binom(i)->flote_val, binom(i)->lint_val) << i;
    }
    EXPECT_EQ(binom(0)->lint_val, 3);
    EXPECT_EQ(binom(small_binom_count - 1)->lint_val, 155117520); /* C(30, 15) */
}

TEST_F(tables_test, large_binomial_coefficients_are_floats_of_double_precision) {
    /* C(150, 75) = 92826069736708789698985814872605121940117520, by Python's math.comb; the sum of its digits in
       double precision is the double 9.28260697367088e+43. */
    EXPECT_EQ(binom(binom_count - 1)->flote_val,
              static_cast<long double>(static_cast<double>(binom(binom_count - 1)->flote_val)));
    EXPECT_NEAR(binom(binom_count - 1)->flote_val / 92826069736708789698985814872605121940117520.0L, 1, 1e-15L);
}

TEST_F(tables_test, messages_are_texts_of_1_to_65_characters) {
    for (int n = 1; n <= message_count; n++) {
        std::string text = message_text(n);
        EXPECT_GE(text.size(), 1u) << n;
        EXPECT_LE(text.size(), 65u) << n;
        EXPECT_NE(text[0], ' ') << n;
    }
    for (int n : {0, -1, 378, 100000}) EXPECT_STREQ(message_text(n), "") << n;
    EXPECT_STREQ(message_text(1), "A \")\" is missing.");
    EXPECT_STREQ(message_text(22), "Division by 0.");
}

TEST_F(tables_test, built_ins_are_found_by_name_and_nothing_else_is) {
    EXPECT_EQ(numbuiltins, 109);
    const struct {
        const char *name;
        int code;
    } some[] = {{"Array", 0},  {"Bin", 1},    {"Det", 12},    {"Lterm", 40}, {"MSmith", 42}, {"Mcoef", 43},
                {"Prime", 65}, {"RRand", 68}, {"Raise", 69},  {"SDet", 79},  {"STrans", 81}, {"Sigma", 82},
                {"Sqrt", 89},  {"Swap", 91},  {"Trans", 101}, {"True", 102}, {"ZZ0", 105},   {"Zcoef", 109}};
    for (const auto &row : some) EXPECT_EQ(find_built_in(0, numbuiltins, row.name), row.code) << row.name;
    for (const char *name : {"", "A", "Bi", "Bins", "array", "Float", "Compile", "Zz", "b"})
        EXPECT_EQ(find_built_in(0, numbuiltins, name), -1) << name;
    EXPECT_STREQ(builtin[89].code_text, "*89");
}

TEST_F(tables_test, lagrange_polynomials_are_1_at_their_own_point_and_0_at_the_others) {
    for (int r = 1; r <= lagrange_rows; r++)
        for (int c = 0; c <= r; c++) {
            number_handle denominator, coefficient;
            int32_t degree = 0;
            ASSERT_TRUE(direct_number_read(&denominator));
            ASSERT_TRUE(direct_integer_read(&degree));
            ASSERT_EQ(degree, r);
            std::vector<uint64_t> coefficients;
            for (int i = 0; i <= degree; i++) {
                ASSERT_TRUE(direct_number_read(&coefficient));
                ASSERT_EQ(chain_rule_broken(&coefficient), 0);
                coefficients.push_back(residue(&coefficient, moduli[0]));
            }
            for (int point = 1; point <= r + 1; point++) {
                uint64_t value = 0;
                for (uint64_t a : coefficients)
                    value = (times(value, static_cast<uint64_t>(point), moduli[0]) + a) % moduli[0];
                ASSERT_EQ(value, point == c + 1 ? residue(&denominator, moduli[0]) : 0) << r << " " << c;
            }
        }
    number_handle x;
    EXPECT_FALSE(direct_number_read(&x));
    EXPECT_TRUE(is_longint(&x, 0));
}

TEST_F(tables_test, powers_and_factorials_are_those_that_the_arithmetic_computes) {
    data_file file;
    ASSERT_TRUE(open_data_file(file, (built() / "pow228").c_str()));
    auto next = [&file] {
        int64_t value = -1;
        EXPECT_TRUE(next_integer(file, &value));
        return value;
    };
    auto same_digits = [&next](const number *x) {
        for (const numnode *node = x->num_head; node; node = node->next) ASSERT_EQ(next(), node->digit);
    };
    for (int i = 0; i < 130; i++) {
        const number *power = two_28_entry(i);
        ASSERT_EQ((next() + 7) / 8, power->num_len);
        same_digits(power);
    }
    int32_t argument;
    for (int i = 0; i < 22; i++) {
        fact_entry(i, &argument);
        EXPECT_EQ(next(), argument);
    }
    for (int i = 0; i < 22; i++) {
        const number *factorial = fact_entry(i, &argument);
        ASSERT_EQ(next(), factorial->num_len);
        same_digits(factorial);
    }
    close_data_file(file);
}

TEST_F(tables_test, the_accounted_digits_are_those_of_the_tables) {
    long digits = 0;
    for (int i = 0; i < num_prod_count; i++) digits += num_prod(i)->num_len;
    EXPECT_EQ(digits, num_prod_digits);
    digits = 0;
    for (int i = 0; i < binom_count; i++) digits += binom(i)->num_len;
    EXPECT_EQ(digits, binom_digits);
    std::vector<std::string> all = words(contents(built() / "pow228"));
    std::size_t at = 0;
    digits = 0;
    for (int i = 0; i < 130; i++) {
        int nodes = (std::stoi(all[at]) + 7) / 8;
        digits += nodes;
        at += static_cast<std::size_t>(nodes) + 1;
    }
    EXPECT_EQ(digits, two_28_digits);
    at += 22;
    digits = 0;
    for (int i = 0; i < 22; i++) {
        digits += std::stoi(all[at]);
        at += static_cast<std::size_t>(std::stoi(all[at])) + 1;
    }
    EXPECT_EQ(digits, facts_digits);
    EXPECT_GT(size_data_strucs, 4000000 + 1600000 + 4000000);
}

TEST_F(tables_test, a_second_start_gives_back_what_the_first_has_built) {
    num_prod(0), binom(0), invs_prod(0);
    ASSERT_TRUE(start());
    records_in_use before = count_records_in_use();
    for (int i = 0; i < 3; i++) {
        num_prod(0), binom(0), invs_prod(0);
        ASSERT_TRUE(start());
    }
    EXPECT_EQ(count_records_in_use(), before);
}

} // namespace
