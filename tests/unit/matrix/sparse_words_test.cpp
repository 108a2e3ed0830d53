#include "matrix/sparse_words.h"

#include "matrix/word_matrix.h"
#include "support/rand_numbers.h"

#include <vector>

namespace tolvek {

namespace {

struct sparse_words_test : numbers_test {
    using table = std::vector<std::vector<uint32_t>>;

    static uint32_t sparse_determinant(const uni_field &f, const table &t) {
        sparse_words m(static_cast<int>(t.size()));
        for (const auto &row : t) {
            m.begin_row();
            for (std::size_t j = 0; j < row.size(); j++) m.add(static_cast<int32_t>(j), row[j]);
        }
        return sparse_word_determinant(f, &m);
    }
    static uint32_t dense_determinant(const uni_field &f, const table &t) {
        const int n = static_cast<int>(t.size());
        word_matrix m(n, n);
        for (int i = 0; i < n; i++)
            for (int j = 0; j < n; j++) m[i][j] = t[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
        return word_determinant(f, &m);
    }
    /* About `entries` in each row, one of them on a permuted diagonal unless that is ruled out. */
    table thin_table(const uni_field &f, int n, int entries, bool diagonal) {
        table t(static_cast<std::size_t>(n), std::vector<uint32_t>(static_cast<std::size_t>(n)));
        for (int i = 0; i < n; i++) {
            auto &row = t[static_cast<std::size_t>(i)];
            for (int k = 0; k < entries; k++)
                row[static_cast<std::size_t>(rnd.below(n))] = static_cast<uint32_t>(rnd() % f.p);
            if (diagonal) row[static_cast<std::size_t>(n - 1 - i)] = f.p - 1;
        }
        return t;
    }
};

TEST_F(sparse_words_test, determinants_are_those_of_the_dense_matrix) {
    for (const uint32_t p : {2u, 3u, 65521u, 2147483629u})
        for (const int n : {1, 2, 3, 5, 9, 20, 60})
            for (int entries = 0; entries <= 4; entries++)
                for (int i = times(3); i > 0; i--) {
                    const uni_field f(p);
                    const table t = thin_table(f, n, entries, !rnd.one_in(3));
                    EXPECT_EQ(sparse_determinant(f, t), dense_determinant(f, t)) << p << ", rows: " << n;
                }
}

TEST_F(sparse_words_test, full_matrices) {
    for (const int n : {1, 4, 17}) {
        const uni_field f(65521);
        const table t = thin_table(f, n, 4 * n, true);
        EXPECT_EQ(sparse_determinant(f, t), dense_determinant(f, t)) << n;
    }
}

/* A cycle of n columns has the sign (-1)^(n-1). */
TEST_F(sparse_words_test, long_cycles_have_their_sign) {
    const uni_field f(1073741789);
    for (const int n : {2, 3, 1000, 4001}) {
        sparse_words m(n);
        for (int i = 0; i < n; i++) {
            m.begin_row();
            m.add((i + 1) % n, 1);
        }
        EXPECT_EQ(sparse_word_determinant(f, &m), n % 2 ? 1 : f.p - 1) << n;
    }
}

/* 2 on the diagonal and -1 beside it: n + 1. */
TEST_F(sparse_words_test, a_long_band) {
    const uni_field f(1073741789);
    const int n = 5000;
    sparse_words m(n);
    for (int i = 0; i < n; i++) {
        m.begin_row();
        if (i > 0) m.add(i - 1, f.p - 1);
        m.add(i, 2);
        if (i + 1 < n) m.add(i + 1, f.p - 1);
    }
    EXPECT_EQ(sparse_word_determinant(f, &m), static_cast<uint32_t>(n + 1));
}

TEST_F(sparse_words_test, an_empty_row_or_column_makes_it_0) {
    const uni_field f(65521);
    EXPECT_EQ(sparse_determinant(f, {{0, 0}, {1, 2}}), 0u);
    EXPECT_EQ(sparse_determinant(f, {{0, 1}, {0, 2}}), 0u);
    EXPECT_EQ(sparse_determinant(f, {{0}}), 0u);
    EXPECT_EQ(sparse_determinant(f, {}), 1u);
}

} // namespace

} // namespace tolvek
