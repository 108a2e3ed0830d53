#include "numbers/primes.h"

#include "numbers/int_mult.h"
#include "quoly/quoly.h"
#include "support/fresh_system.h"
#include "support/rand_numbers.h"
#include "top/interrupts.h"
#include "top/start_tables.h"

#include <algorithm>
#include <map>
#include <vector>

using namespace tolvek;

/* The least prime factor of every number up to 10^6, by a sieve. */
static const std::vector<int32_t> &least_factors() {
    static std::vector<int32_t> least;
    if (least.empty()) {
        least.assign(1000001, 0);
        for (std::size_t p = 2; p < least.size(); p++)
            for (std::size_t n = p; least[p] == 0 || n < least.size(); n += p) {
                if (least[n] == 0) least[n] = static_cast<int32_t>(p);
                if (n + p >= least.size()) break;
            }
    }
    return least;
}

/* longg_is_prime of a word given as one number. */
static uint64_t factor_of(uint64_t n) {
    return longg_is_prime(static_cast<int32_t>(n >> 56), static_cast<int32_t>(n >> 28 & 0xfffffff),
                          static_cast<int32_t>(n & 0xfffffff));
}

/* ---- primality ---- */

TEST(primes, the_tests_agree_with_a_sieve) {
    const std::vector<int32_t> &least = least_factors();
    for (int32_t n = 2; n <= 1000000; n++) {
        const int32_t factor = least[static_cast<std::size_t>(n)], prime = factor == n;
        ASSERT_EQ(is_prime(n), prime) << n;
        ASSERT_EQ(long_is_prime(n), prime ? 1 : factor) << n;
        ASSERT_EQ(longg_is_prime(0, 0, n), static_cast<uint64_t>(prime ? 1 : factor)) << n;
    }
}

TEST(primes, small_cases) {
    EXPECT_FALSE(is_prime(25));
    EXPECT_FALSE(is_prime(49));
    EXPECT_TRUE(is_prime(2147483629));
    EXPECT_TRUE(is_prime(2));
    EXPECT_TRUE(is_prime(3));
    for (int32_t n : {1, 0, -1, -7, INT32_MIN}) {
        EXPECT_EQ(is_prime(n), 0) << n;
        EXPECT_EQ(long_is_prime(n), 0) << n;
    }
    EXPECT_EQ(longg_is_prime(0, 0, 0), 0u);
    EXPECT_EQ(longg_is_prime(0, 0, 1), 0u);
    EXPECT_EQ(longg_is_prime(0, 0, 2), 1u);
    EXPECT_EQ(longg_is_prime(0, 0, 3), 1u);
    EXPECT_EQ(longg_is_prime(0, 1, 0), 2u);
    EXPECT_EQ(longg_is_prime(0, 1, 3), 1u); /* 2^28 + 3 */
}

/* The primes next to powers of two: 2^31 - 1, 2^31 + 11, 2^56 - 5, 2^56 + 81, 2^63 - 25, 2^63 + 29, 2^64 - 59. */
TEST(primes, next_to_powers_of_two) {
    const uint64_t two31 = 1ull << 31, two56 = 1ull << 56, two63 = 1ull << 63;
    for (uint64_t p : {two31 - 1, two31 + 11, two56 - 5, two56 + 81, two63 - 25, two63 + 29, UINT64_MAX - 58}) {
        EXPECT_TRUE(is_prime_word(p)) << p;
        EXPECT_EQ(factor_of(p), 1u) << p;
    }
    EXPECT_EQ(long_is_prime(2147483647), 1);
    for (uint64_t n = two31; n < two31 + 11; n++) EXPECT_FALSE(is_prime_word(n)) << n;
    for (uint64_t n = two56 - 4; n < two56 + 81; n++) EXPECT_FALSE(is_prime_word(n)) << n;
    for (uint64_t n = two63 - 24; n < two63 + 29; n++) EXPECT_FALSE(is_prime_word(n)) << n;
}

/* Products of primes p such that p - 1 divides n - 1: a power of any base to the n - 1 takes them for primes. */
TEST(primes, carmichael_numbers_are_composite) {
    struct row {
        uint64_t n, least;
    };
    for (row r : {row{561, 3}, row{1105, 5}, row{1729, 7}, row{2140538401, 23}, /* 23 * 29 * 53 * 151 * 401 */
                  row{2140699681, 127},                 /* 127 * 631 * 26713, the last below 2^31 */
                  row{2159003281, 17},                  /* 17 * 29 * 1481 * 2957, the first above */
                  row{2170282969, 373},                 /* 373 * 1117 * 5209 */
                  row{71204550486778369, 228097},       /* 228097 * 456193 * 684289, below 2^56 */
                  row{68262326731564561, 224911},       /* 224911 * 449821 * 674731 */
                  row{9215447790472998049ull, 1153777}, /* 1153777 * 2307553 * 3461329, below 2^63 */
                  row{9188875985136564889ull, 1152667}}) {
        EXPECT_FALSE(is_prime_word(r.n)) << r.n;
        EXPECT_EQ(factor_of(r.n), r.least) << r.n;
    }
}

/* The least strong pseudoprimes to the first 4 and to the first 9 primes (Jaeschke, 1993). */
TEST(primes, strong_pseudoprimes_are_composite) {
    EXPECT_EQ(factor_of(3215031751), 151u);
    EXPECT_EQ(factor_of(3825123056546413051), 149491u);
    for (int32_t n : {2047, 1373653, 25326001}) EXPECT_FALSE(is_prime(n)) << n; /* to 2; 2, 3; 2, 3, 5 */
}

/* ---- least factors ---- */

TEST(primes, the_factor_told_is_the_least_whatever_its_size) {
    struct row {
        uint64_t p, q;
    };
    for (row r : {row{2097143, 2097169}, /* on both sides of 2^21 */
                  row{2097169, 2097211}, row{2097169, 4398046511093}, row{3037000493, 3037000493},
                  row{3037000453, 3037000493}, row{4294967279, 4294967291}, row{2, 4611686018427387847},
                  row{2147483629, 2147483647}, row{2147483647, 2147483659}}) {
        ASSERT_TRUE(is_prime_word(r.q)) << r.q;
        ASSERT_TRUE(is_prime_word(r.p)) << r.p;
        EXPECT_EQ(factor_of(r.p * r.q), r.p) << r.p << " * " << r.q;
    }
    EXPECT_EQ(factor_of(2097169ull * 2097211 * 2097223), 2097169u); /* three factors above 2^21 */
    EXPECT_EQ(factor_of(2097223ull * 2097169 * 2097223), 2097169u);
    EXPECT_EQ(factor_of(2097169ull * 2097169 * 2097169), 2097169u);
    EXPECT_EQ(factor_of(UINT64_MAX), 3u);
    EXPECT_EQ(factor_of((1ull << 63) - 1), 7u);
}

TEST(primes, the_factor_told_is_that_of_trial_division) {
    test_random rnd;
    const std::vector<int32_t> &least = least_factors();
    for (int i = times(300); i > 0; i--) {
        uint64_t n = 2 + rnd() % (1ull << (rnd.one_in(2) ? 32 : 39)), found = 0;
        for (uint64_t p = 2; p * p <= n && !found; p++)
            if (least[p] == static_cast<int32_t>(p) && n % p == 0) found = p;
        ASSERT_EQ(least_factor(n), found ? found : n) << n;
    }
    std::vector<uint64_t> large;
    for (uint64_t n = (1u << 30) + 1; large.size() < 40; n += 2 * (1 + rnd() % 3000000))
        if (is_prime_word(n)) large.push_back(n);
    for (int i = times(40); i > 0; i--) {
        uint64_t p = large[rnd() % large.size()], q = large[rnd() % large.size()];
        ASSERT_EQ(least_factor(p * q), std::min(p, q)) << p << " * " << q;
    }
}

static int safe_points_met;

TEST_F(fresh_exact_system, the_search_for_a_factor_passes_safe_points) {
    safe_points_met = 0;
    watch_safe_points([] { safe_points_met++; });
    EXPECT_EQ(factor_of(3037000453ull * 3037000493ull), 3037000453u);
    watch_safe_points(nullptr);
    EXPECT_GT(safe_points_met, 30);
}

/* ---- enumeration ---- */

TEST(primes, the_next_prime) {
    const std::vector<int32_t> &least = least_factors();
    int32_t next = 0;
    for (int32_t n = 999983; n >= 3; n--) {
        if (n % 2 && next) {
            ASSERT_EQ(nextprime(n), next) << n;
        }
        if (least[static_cast<std::size_t>(n)] == n) next = n;
    }
    EXPECT_EQ(nextprime(1), 3);
    EXPECT_EQ(nextprime(-7), -5);
    EXPECT_EQ(nextprime(48869), 48871);
    EXPECT_EQ(nextprime(2147483587), 2147483629);
    EXPECT_EQ(nextprime(2147483629), 2147483647);
    EXPECT_EQ(nextprime(2147483647), 0);
    EXPECT_EQ(nextprime(8), 11);
}

static std::vector<int32_t> factors_of(int32_t n) {
    numnode *list = nullptr;
    prime_factors(n, &list);
    std::vector<int32_t> factors;
    while (numnode *d = list) {
        factors.push_back(d->digit);
        list = d->next;
        push_digit(d);
    }
    return factors;
}

struct prime_numbers : numbers_test {};

TEST_F(prime_numbers, the_distinct_factors_come_largest_first) {
    using list = std::vector<int32_t>;
    for (int k = 1; k < 31; k++) EXPECT_EQ(factors_of(1 << k), list{2});
    for (int32_t p : {2, 3, 5, 7, 11, 65521, 2147483629, 2147483647}) EXPECT_EQ(factors_of(p), list{p});
    EXPECT_EQ(factors_of(1), list{});
    EXPECT_EQ(factors_of(2147483644), (list{536870911 / 233 / 1103, 1103, 233, 2})); /* 2^2 (2^29 - 1) */
    EXPECT_EQ(factors_of(46337 * 46337), list{46337});
    EXPECT_EQ(factors_of(1162261467), list{3});
    EXPECT_EQ(factors_of(223092870), (list{23, 19, 17, 13, 11, 7, 5, 3, 2}));
    EXPECT_EQ(factors_of(2 * 1073741789), (list{1073741789, 2}));
    const std::vector<int32_t> &least = least_factors();
    for (int32_t n = 2; n <= 100000; n++) {
        list expected;
        for (int32_t rest = n; rest > 1;) {
            int32_t p = least[static_cast<std::size_t>(rest)];
            expected.insert(expected.begin(), p);
            while (rest % p == 0) rest /= p;
        }
        ASSERT_EQ(factors_of(n), expected) << n;
    }
}

TEST_F(prime_numbers, factors_are_pushed_in_front_of_what_is_there) {
    numnode *list = newdigit();
    list->digit = 77;
    list->next = nullptr;
    prime_factors(12, &list);
    EXPECT_EQ(list->digit, 3);
    EXPECT_EQ(list->next->digit, 2);
    EXPECT_EQ(list->next->next->digit, 77);
    push_digits(list, list->next->next);
}

TEST_F(fresh_exact_system, the_nth_prime) {
    EXPECT_EQ(nth_prime(1), 2);
    EXPECT_EQ(nth_prime(1229), 9973);
    for (int32_t n : {0, 1230, -1}) {
        EXPECT_TRUE(unwinds([n] { nth_prime(n); })) << n;
        EXPECT_NE(last_text.find(message_text(346)), std::string::npos);
    }
}

TEST_F(fresh_exact_system, the_nth_prime_in_every_form) {
    quoly_handle q;
    quoly_set(25, q.slot());
    nth_prime(q.slot());
    EXPECT_EQ(quoly_to_int(q.get()), 97);
    quoly_set_int64((int64_t{1} << 32) + 3, q.slot());
    EXPECT_TRUE(unwinds([&] { nth_prime(q.slot()); }));
    set_ring({0, 1, 1, 0, 0, 0, 0, 7});
    quoly_set(5, q.slot());
    nth_prime(q.slot());
    EXPECT_EQ(q->numb->lint_val, 4); /* 11 */
    set_ring({1, 1, 0, 0, 0, 0, 0, -1});
    for (auto [n, p] : {std::pair{1229.0L, 9973.0L}, {3.4L, 5.0L}, {2.5L, 5.0L}}) {
        quoly_set_flote(n, q.slot());
        nth_prime(q.slot());
        EXPECT_EQ(q->numb->flote_val, p);
    }
    for (long double n : {0.4L, 1229.5L, 1e30L, -3.0L}) {
        quoly_set_flote(n, q.slot());
        EXPECT_TRUE(unwinds([&] {
            set_ring({1, 1, 0, 0, 0, 0, 0, -1});
            nth_prime(q.slot());
        })) << static_cast<double>(n);
        set_ring({1, 1, 0, 0, 0, 0, 0, -1});
    }
    set_ring(user_ring);
}

/* ---- lists of primes ---- */

using prime_list = std::vector<std::pair<int32_t, int32_t>>;

/* The entries; the list is freed. */
static prime_list taken(number **list) {
    prime_list entries;
    for (const number *x = *list; x; x = x->num_link) {
        EXPECT_EQ(x->num_len, 1);
        EXPECT_EQ(x->num_head, x->num_tail);
        EXPECT_EQ(x->num_head->next, nullptr);
        entries.push_back({x->lint_val, x->num_head->digit});
    }
    free_prime_list(list);
    EXPECT_EQ(*list, nullptr);
    return entries;
}

TEST_F(prime_numbers, a_list_is_kept_in_descending_order) {
    number *list = nullptr;
    for (int32_t p : {53, 41, 97, 61, 97, 41}) add_prime_to_list(&list, p, p % 10);
    add_prime_to_list(&list, 53, 40);
    EXPECT_EQ(taken(&list), (prime_list{{97, 7}, {61, 1}, {53, 3}, {41, 1}}));
    insert_new_prime(7, 3, &list);
    insert_new_prime(5, 4, &list);
    EXPECT_EQ(taken(&list), (prime_list{{5, 4}, {7, 3}}));
}

static void list_factors_of(const std::vector<int32_t> &factors, int32_t value, int32_t sign, number **list) {
    number_handle n;
    special_set(sign, &n);
    for (int32_t f : factors) {
        number_handle factor;
        set_int64(f, &factor);
        fast_mult(&n, &factor, &n);
    }
    add_all_to_list(list, value, &n);
}

TEST_F(fresh_exact_system, the_factors_of_a_number_from_41_on_are_listed) {
    number *list = nullptr;
    const records_in_use before = count_records_in_use();
    for (int32_t sign : {1, -1}) {
        list_factors_of({2, 2, 37, 41, 41, 41, 9973, 10007, 47639}, 100, sign, &list);
        EXPECT_EQ(taken(&list), (prime_list{{47639, 100}, {10007, 100}, {9973, 100}, {41, 18}}));
    }
    list_factors_of({47701, 47699, 10007, 9973}, 50000, 1, &list); /* 47699 is the 4916th prime (sieve in Python) */
    EXPECT_EQ(taken(&list), (prime_list{{47699, 2301}, {10007, 9972}, {9973, 135}}));
    list_factors_of({2147483629, 2147483629}, 3, 1, &list); /* a large cofactor is ignored */
    EXPECT_EQ(list, nullptr);
    for (int32_t n : {0, 1}) {
        list_factors_of({n}, 3, 1, &list);
        EXPECT_EQ(list, nullptr);
    }
    EXPECT_TRUE(count_records_in_use() == before);
}

/* ---- the choice of a prime ---- */

static polynode constant(number *x) {
    polynode p{};
    p.is_number = 1;
    p.num = x;
    return p;
}

TEST_F(fresh_exact_system, a_prime_that_divides_neither_number_is_selected) {
    number_handle a, b;
    set_int64(-12345, &a);
    set_int64(98765, &b);
    polynode bottom = constant(&a), y = constant(&b), x{};
    x.poly = &bottom; /* the number lies one level down */
    std::map<int, int> seen;
    for (int i = 0; i < 4000; i++) seen[select_prime(&x, &y, 530, 64, prime_count, prime)]++;
    EXPECT_EQ(seen.begin()->first, 604 - 530 - 63);
    EXPECT_EQ(seen.rbegin()->first, 604 - 530);
    EXPECT_EQ(seen.size(), 64u);
    fast_mult(&a, prime[74], &a);
    fast_mult(&b, prime[75], &b);
    for (int i = 0; i < 100; i++) EXPECT_EQ(select_prime(&x, &y, 530, 1, prime_count, prime), 76);
    fast_mult(&b, prime[603], &b);
    EXPECT_EQ(select_prime(&x, &y, 1, 1, prime_count, prime), 605); /* none is left */
}
