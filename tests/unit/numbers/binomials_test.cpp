#include "numbers/binomials.h"

#include "quoly/quoly.h"
#include "support/fresh_system.h"
#include "support/rand_numbers.h"
#include "top/errors.h"

#include <cmath>
#include <functional>

using namespace tolvek;

namespace {

/* The tables of the data files, in the chain form; Python's values at the end. */
struct binomials : fresh_exact_system {
    python_check python;
    quoly_handle q;

    std::string exact(int32_t n, int32_t k) {
        rat_binom(n, k, q.slot());
        EXPECT_TRUE(q->is_num);
        EXPECT_EQ(chain_rule_broken(q->numb), 0);
        return hex_of(q->numb);
    }
    void expect_exact(int32_t n, int32_t k) {
        python.expect("hex(math.comb(" + std::to_string(n) + "," + std::to_string(k) + "))", exact(n, k));
    }
    /* In a modular ring. */
    void expect_residue(int32_t n, int32_t k) {
        mod_binom(n, k, q.slot());
        python.expect("math.comb(" + std::to_string(n) + "," + std::to_string(k) + ")%" +
                          std::to_string(int32_t{modulus}),
                      std::to_string(q->numb->lint_val));
    }
    void expect_refused(int number_of_error, const std::function<void()> &routine) {
        EXPECT_TRUE(unwinds(routine));
        EXPECT_NE(last_text.find(message_text(number_of_error)), std::string::npos) << last_text;
    }
    void TearDown() override {
        python.run();
        quoly_set(0, q.slot());
        free_quoly(q.slot());
        fresh_exact_system::TearDown();
    }
};

struct word_ring : ring_guard {
    word_ring() { lintmode = 1; }
};

struct residue_ring : ring_guard {
    explicit residue_ring(int32_t n) {
        lintmode = modularmode = 1;
        modulus = n;
    }
};

} // namespace

TEST_F(binomials, exact_ones_of_every_row_within_reach_of_the_table) {
    for (int32_t n = 0; n <= 152; n++)
        for (int32_t k = 0; k <= n; k += n < 40 ? 1 : 1 + n % 4) expect_exact(n, k);
}

TEST_F(binomials, exact_ones_above_the_table) {
    for (const int32_t n : {153, 154, 155, 199, 200, 300, 498, 499, 500}) /* steps from row 150, or factorials */
        for (const int32_t d : {0, 1, 2, 3, 5, n - 150, n - 149, n - 148, n - 147, n - 146, n / 3, n / 2 - 1, n / 2})
            expect_exact(n, d);
    for (const int32_t n : {501, 502, 1000, 1754})
        for (const int32_t k : {0, 1, 2, 3, 10, n / 2, n - 3, n - 1, n}) expect_exact(n, k);
}

TEST_F(binomials, edges_need_no_factorials_however_large_n_is) {
    expect_exact(1755, 0);
    expect_exact(1755, 1);
    expect_exact(16384, 2);
    expect_exact(2000000000, 1999999999);
    expect_exact(2000000000, 2);
}

TEST_F(binomials, too_large_is_error_87) {
    expect_refused(87, [&] { rat_binom(1755, 3, q.slot()); });
    expect_refused(87, [&] { rat_binom(2000, 1000, q.slot()); });
}

TEST_F(binomials, in_words_up_to_row_30) {
    word_ring ring;
    for (int32_t n = 0; n <= 30; n++) {
        for (int32_t k = 0; k <= n; k++) {
            lint_binom(n, k, q.slot());
            python.expect("math.comb(" + std::to_string(n) + "," + std::to_string(k) + ")",
                          std::to_string(q->numb->lint_val));
        }
    }
    lint_binom(30, 15, q.slot());
    EXPECT_EQ(q->numb->lint_val, 155117520);
}

TEST_F(binomials, in_words_row_31_is_error_239) {
    expect_refused(239, [&] {
        word_ring ring;
        lint_binom(31, 1, q.slot());
    });
}

TEST_F(binomials, as_floats_up_to_row_152) {
    long double row[153] = {1}; /* Pascal's triangle: an error below n half units in the last place */
    ring_guard ring;
    flotemode = lintmode = 1;
    for (int n = 1; n <= 152; n++) {
        for (int k = n; k > 0; k--) row[k] += row[k - 1];
        for (int k = 0; k <= n; k++) {
            flote_binom(n, k, q.slot());
            EXPECT_LE(std::fabs(q->numb->flote_val / row[k] - 1), 1e-14L) << n << " over " << k;
            if (n <= 30) {
                EXPECT_EQ(q->numb->flote_val, row[k]);
            }
        }
    }
}

TEST_F(binomials, as_floats_row_153_is_error_377) {
    expect_refused(377, [&] {
        ring_guard ring;
        flotemode = lintmode = 1;
        flote_binom(153, 5, q.slot());
    });
}

TEST_F(binomials, modulo_primes_and_composite_moduli) {
    for (const int32_t m : {2, 3, 4, 6, 7, 12, 151, 1009, 1000000, 268435399, 1 << 28, 2147483629}) {
        residue_ring ring(m);
        for (int32_t n = 0; n <= 150; n++)
            for (int32_t k = n % 3; k <= n; k += 1 + n / 12) expect_residue(n, k);
    }
}

TEST_F(binomials, modulo_a_prime_n_is_reduced_first) {
    for (const int32_t p : {7, 11, 101, 139}) {
        residue_ring ring(p);
        for (const int32_t n : {151, 152, 153, 700, 10007, 12345})
            for (int32_t k = 0; k < p; k += 1 + p / 12) expect_residue(n, k);
    }
}

TEST_F(binomials, modulo_a_composite_number_row_151_is_error_87) {
    expect_refused(87, [&] {
        residue_ring ring(12);
        mod_binom(151, 5, q.slot());
    });
}
