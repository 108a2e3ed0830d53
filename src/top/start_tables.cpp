/* The loading of the data files, in the order in which their faults are reported:

     chdat; Qerrs and its messages; the constants; pow228; the built-ins of Qerrs; then pprods, primelist, bprimes,
     f256d, f2t16d and lrgpmes are opened, and only then read and checked.

   Messages, built-ins and the lists of primes are filled at once. The binomial coefficients, the products of primes
   and their inverses, which most sessions never need, are built from the text of their file when they are first asked
   for; at start the layout of that text is checked alone. */
#include "top/start_tables.h"

#include "language/builtin_table.h"
#include "top/data_files.h"
#include "top/defaults.h"
#include "top/messages.h"

#include <algorithm>
#include <cstring>

namespace tolvek {

uint16_t small_prime[small_prime_count];
int32_t med_prime[med_prime_count], big_prime[big_prime_count], lrgpme[lrgpme_count];
uint16_t global_list[global_list_count];
number *prime[prime_count];
int64_t size_data_strucs = 0;

/* A table of numbers that the accessors below hand out. */
struct number_table {
    buffer<number> entries;

    bool stands() const { return !entries.empty(); }
    void make(int count);
    void forget();
};

void number_table::make(int count) {
    entries.resize(static_cast<std::size_t>(count));
    for (number &x : entries) x = {};
}

void number_table::forget() {
    for (number &x : entries) special_free(&x);
    entries.clear();
}

static number_table prime_table, num_prod_table, binom_table;
static buffer<int32_t> invs_prod_table;

static data_file chdat, Qerrs, pow228, pprods;
static std::size_t binomials_at; /* of the text of pow228 */

/* ---- the directory ---- */

constexpr std::size_t path_bytes = 1080;
static char path[path_bytes]; /* the text of the directory, with the name of a file behind it at times */
static std::size_t directory_length;

static const char *path_of(const char *name) {
    if (directory_length + std::strlen(name) >= path_bytes) return "";
    std::strcpy(path + directory_length, name);
    return path;
}

static bool fatal(const char *text) {
    tolvek_error(text, 0);
    return false;
}

static bool open_or_fail(data_file &file, const char *name, const char *text) {
    return open_data_file(file, path_of(name)) || fatal(text);
}

/* A directory that does not hold the first file is tried with ":" appended, up to 25 times. */
static bool open_chdat(const char *directory) {
    constexpr int retries = 25;
    directory_length = std::min(std::strlen(directory), path_bytes - 1);
    std::memcpy(path, directory, directory_length);
    for (int i = 0; i <= retries; i++) {
        if (open_data_file(chdat, path_of("chdat"))) return true;
        if (directory_length + 1 < path_bytes) path[directory_length++] = ':';
    }
    return fatal("can't find chdat.");
}

/* ---- numbers of the files ---- */

/* x := the next `count` digits of the file, as a chain; false, with a shorter chain, where the file ends. */
static bool read_chain(data_file &file, int64_t count, number *x) {
    special_free(x);
    x->num_head = x->num_tail = nullptr;
    int64_t digit;
    for (; count > 0 && next_integer(file, &digit); count--) {
        numnode *node = newdigit();
        node->digit = static_cast<int32_t>(digit);
        node->next = nullptr;
        (x->num_head ? x->num_tail->next : x->num_head) = node;
        x->num_tail = node;
        x->num_len++;
    }
    if (!x->num_head) special_set(0, x);
    return count == 0;
}

static bool read_number(data_file &file, number *x) {
    int64_t count = 0;
    bool whole = next_integer(file, &count) && count > 0;
    return read_chain(file, whole ? count : 0, x) && whole;
}

/* The value of a chain, rounded to Float at each digit. */
template <class Float> static Float sum_of_digits(const number *x) {
    Float value = 0;
    for (const numnode *node = x->num_head; node; node = node->next)
        value = value * static_cast<Float>(268435456.0) + static_cast<Float>(node->digit);
    return value;
}

bool direct_number_read(number *x) { return read_number(chdat, x); }

bool direct_integer_read(int32_t *value) { return next_integers(chdat, value, 1); }

/* ---- powers, factorials, binomial coefficients ---- */

/* The three readers of the binomial coefficients go through the rows alike: entry(file, digits) for each. */
template <class Entry> static void for_each_binomial(data_file &file, Entry entry) {
    for (int n = 3; n <= 150; n += 3) {
        int64_t digits = 1, first = 0;
        for (int k = 1; k <= n / 2; k++) {
            std::size_t at = file.at;
            if (next_integer(file, &first) && first < 0)
                digits++; /* a mark: the coefficients are a digit longer from here on */
            else
                file.at = at;
            entry(digits);
        }
    }
}

/* Goes through the powers of the radix in decimal form, the factorials and the binomial coefficients, to the place
   of the last, and sees that behind these no more follows than the small coefficients once again. */
static bool check_pow228() {
    constexpr int powers = 130, factorials = 22;
    int64_t count = 0;
    for (int i = 0; i < powers && next_integer(pow228, &count); i++) skip_tokens(pow228, (count + 7) / 8);
    skip_tokens(pow228, factorials);
    for (int i = 0; i < factorials && next_integer(pow228, &count); i++) skip_tokens(pow228, count);
    binomials_at = pow228.at;
    for_each_binomial(pow228, [](int64_t digits) { skip_tokens(pow228, digits); });
    if (count_rest(pow228) > small_binom_count) return fatal(" k > 1900.  bad binomial data in pow228");
    return true;
}

/* The text is read before a table is begun: an interrupt, which may throw, then finds none half built. */
static void build_binom_table() {
    fetch_whole(pow228);
    binom_table.make(binom_count);
    number *x = binom_table.entries.begin();
    pow228.at = binomials_at;
    for_each_binomial(pow228, [&x](int64_t digits) {
        read_chain(pow228, digits, x);
        x->flote_val = sum_of_digits<double>(x);
        x++;
    });
    for (int i = 0; i < small_binom_count; i++) {
        number &small = binom_table.entries[static_cast<std::size_t>(i)];
        next_integers(pow228, &small.lint_val, 1);
        small.flote_val = small.lint_val;
    }
    close_data_file(pow228);
}

const number *binom(int i) {
    if (!binom_table.stands()) build_binom_table();
    return &binom_table.entries[static_cast<std::size_t>(i)];
}

/* ---- built-ins ---- */

static bool read_builtins() {
    int64_t highest = 0;
    next_integer(Qerrs, &highest);
    if (highest < least_numbuiltins || highest >= builtin_rows) return fatal("number builtins is wrong.");
    numbuiltins = static_cast<int>(highest);
    for (builtin_row &row : builtin) row = {"b", ""};
    for (int i = 0; i <= numbuiltins; i++) {
        next_word(Qerrs, builtin[i].name, builtin_name_bytes);
        next_word(Qerrs, builtin[i].code_text, builtin_name_bytes);
    }
    close_data_file(Qerrs);
    return true;
}

/* ---- primes ---- */

/* The tables of one file, which is open: read, their last entries checked, and closed. */
static bool read_primelist(data_file &file) {
    small_prime[small_prime_count - 1] = 0;
    med_prime[med_prime_count - 1] = 0;
    next_integers(file, small_prime, small_prime_count);
    next_integers(file, med_prime, med_prime_count);
    close_data_file(file);
    if (med_prime[med_prime_count - 1] != 42349) return fatal("primelist file is damaged, medium.");
    if (!small_prime[small_prime_count - 1]) return fatal("primelist file is damaged, small.");
    return true;
}

static bool read_list(data_file &file, int32_t *table, int count, int32_t last, const char *text) {
    table[count - 1] = 0;
    next_integers(file, table, count);
    close_data_file(file);
    return table[count - 1] == last || fatal(text);
}

static bool load_prime_lists() {
    data_file primelist, bprimes, f256d, f2t16d, lrgpmes;
    bool open =
        open_or_fail(pprods, "pprods", "can't find pprods") &&
        open_or_fail(primelist, "primelist", "can't find primelist") &&
        open_or_fail(bprimes, "bprimes", "can't find bprimes") && open_or_fail(f256d, "f256d", "can't find f256d") &&
        open_or_fail(f2t16d, "f2t16d", "can't find f2t16d") && open_or_fail(lrgpmes, "lrgpmes", "can't find lrgpmes");
    bool whole = open && read_primelist(primelist) &&
                 read_list(bprimes, big_prime, big_prime_count, 65521, "bprimes file is damaged.") &&
                 read_list(lrgpmes, lrgpme, lrgpme_count, 2147483629, "lrgpmes file is damaged.");
    for (data_file *file : {&primelist, &bprimes, &f256d, &f2t16d, &lrgpmes}) close_data_file(*file);
    std::copy_n(small_prime + 7, global_list_count, global_list);
    return whole;
}

static void set_prime(int i, int32_t value) {
    number *x = &prime_table.entries[static_cast<std::size_t>(i)];
    special_set(value, x);
    x->lint_val = value;
    x->flote_val = value;
    prime[i] = x;
}

/* Both tables of pprods may be damaged without an end to the program: a warning says so. */
static void load_primes() {
    constexpr int32_t fixed[first_file_prime] = {3001, 16087, 16273, 16339, 19997};
    constexpr int32_t last = 48869;
    int32_t listed[num_prod_count] = {};
    next_integers(pprods, listed, num_prod_count);
    prime_table.make(prime_count);
    for (int i = 0; i < first_file_prime; i++) set_prime(i, fixed[i]);
    for (int i = 0; i < num_prod_count; i++) set_prime(first_file_prime + i, listed[i]);
    if (listed[num_prod_count - 1] != last) {
        say("*** Tolvek error. ");
        say("error in pprods, last prime.\n");
        sayf("%li %c %d\n", static_cast<long>(listed[num_prod_count - 1]), ' ', last);
    }
}

constexpr int last_product_digits = 332;

static void warn_of_products() {
    say("*** Tolvek error. ");
    say("error in pprods, last num_prod.\n");
}

/* The last product is seen from the end of the file; what lies before it waits until it is asked for. */
static void check_last_product() {
    constexpr std::size_t bytes = (last_product_digits + 2) * 10; /* a digit and its blank have at most 10 */
    int64_t digits = 0;
    if (!integer_from_end(pprods, last_product_digits + 1, bytes, &digits) || digits != last_product_digits)
        warn_of_products();
}

static void build_num_prod_table() {
    fetch_whole(pprods);
    num_prod_table.make(num_prod_count);
    for (number &product : num_prod_table.entries) {
        read_number(pprods, &product);
        product.flote_val = sum_of_digits<long double>(&product);
    }
    if (num_prod_table.entries.back().num_len != last_product_digits) warn_of_products();
    close_data_file(pprods);
}

const number *num_prod(int i) {
    if (!num_prod_table.stands()) build_num_prod_table();
    return &num_prod_table.entries[static_cast<std::size_t>(i)];
}

/* The inverse of a modulo p, 0 < a < p and coprime, by Euclid's algorithm. */
static int32_t inverse_modulo(int32_t a, int32_t p) {
    int32_t r = p, s = a, x = 0, y = 1; /* r = x a and s = y a modulo p */
    while (s > 1) {
        int32_t quotient = r / s, remainder = r % s, z = x - quotient * y;
        r = s, s = remainder;
        x = y, y = z;
    }
    return y < 0 ? y + p : y;
}

/* The primes have at most 16 bits, so that a product of residues fits 32. */
static void build_invs_prod_table() {
    invs_prod_table.resize(invs_prod_count);
    for (int i = 0; i < invs_prod_count; i++) {
        uint32_t p = static_cast<uint32_t>(prime[first_file_prime + 1 + i]->lint_val), product = 1;
        for (int j = first_file_prime; j <= first_file_prime + i; j++)
            product = product * static_cast<uint32_t>(prime[j]->lint_val) % p;
        invs_prod_table[static_cast<std::size_t>(i)] =
            inverse_modulo(static_cast<int32_t>(product), static_cast<int32_t>(p));
    }
}

int32_t invs_prod(int i) {
    if (invs_prod_table.empty()) build_invs_prod_table();
    return invs_prod_table[static_cast<std::size_t>(i)];
}

/* ---- accounting ---- */

/* A table or work space that lasts: how many items, and the bytes of each in the memory reports. */
struct accounted {
    const char *what;
    int64_t count, bytes;
};

constexpr int word = 4, half_word = 2;

static constexpr accounted lasting[] = {
    {"messages", message_count, message_bytes},
    {"builtin", builtin_rows, 2 * builtin_name_bytes},
    {"two_28, records", 130, numbersize},
    {"two_28, digits", two_28_digits, numnodesize},
    {"factnum", 22, word},
    {"facts, records", 22, numbersize},
    {"facts, digits", facts_digits, numnodesize},
    {"binom, records", binom_count, numbersize + word},
    {"binom, digits", binom_digits, numnodesize},
    {"prime", prime_count, numbersize + numnodesize + word},
    {"num_prod, records", num_prod_count, numbersize + word},
    {"num_prod, digits", num_prod_digits, numnodesize},
    {"invs_prod", invs_prod_count, word},
    {"small_prime", small_prime_count, half_word},
    {"med_prime", med_prime_count, word},
    {"big_prime", big_prime_count, word},
    {"lrgpme", lrgpme_count, word},
    {"global_list", global_list_count, half_word},
    {"pol", 38 * 38, word},
    {"stash", 1000000, word},
    {"arrstash", 400000, word},
    {"mod_mode_matrix", 1000000, word},
    {"mod_mode_matrix, entries", 400, quolysize + numbersize},
    {"xx, yy, zz", 3 * 22009, word},
    {"x2, y2, z2", 3 * 491401, word},
    {"clc, clr, clc_min, clbest", 4 * 50001, word},
    {"sortp", 20000, 1},
    {"spsort", 5000, word},
    {"frames of functions", 500, 3 * word},
    {"last tokens", 60, 10 * word},
    {"preloaded digits", 5001, numnodesize},
    {"preloaded polynodes", 5001, polynodesize},
};

static void account_tables() {
    size_data_strucs = 0;
    for (const accounted &row : lasting) size_data_strucs += row.count * row.bytes;
}

/* ---- start ---- */

static void forget_tables() {
    for (number_table *table : {&prime_table, &num_prod_table, &binom_table}) table->forget();
    invs_prod_table.clear();
    for (data_file *file : {&chdat, &Qerrs, &pow228, &pprods}) close_data_file(*file);
}

bool initialize(const char *directory) {
    forget_tables();
    set_defaults();
    if (!open_chdat(directory)) return false;
    if (!open_or_fail(Qerrs, "Qerrs", "can't find Qerrs")) return false;
    read_messages(Qerrs);
    set_number_constants();
    if (!open_or_fail(pow228, "pow228", "can't find pow228.") || !check_pow228()) return false;
    if (!read_builtins()) return false;
    if (!load_prime_lists()) return false;
    load_primes();
    check_last_product();
    preload_free_lists();
    account_tables();
    return true;
}

} // namespace tolvek
