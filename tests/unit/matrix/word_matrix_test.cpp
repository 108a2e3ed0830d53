#include "matrix/word_matrix.h"

#include "support/rand_poly.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvek {

namespace {

using table = std::vector<std::vector<uint32_t>>;

struct word_matrix_test : ::testing::Test {
    test_random rnd;

    uint32_t entry(const uni_field &f) {
        if (rnd.one_in(4)) return 0;
        if (rnd.one_in(3)) return f.p - 1;
        return static_cast<uint32_t>(rnd() % f.p);
    }
    table random_table(const uni_field &f, int n) {
        table t(static_cast<std::size_t>(n), std::vector<uint32_t>(static_cast<std::size_t>(n)));
        for (auto &row : t)
            for (uint32_t &cell : row) cell = entry(f);
        return t;
    }
};

void fill(const table &t, word_matrix *m) {
    for (int i = 0; i < m->rows(); i++)
        for (int j = 0; j < m->cols(); j++) (*m)[i][j] = t[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
}

/* From the definition, along the first row. */
uint32_t determinant_by_cofactors(const uni_field &f, const table &t) {
    if (t.empty()) return 1;
    uint32_t sum = 0;
    for (std::size_t j = 0; j < t.size(); j++) {
        table minor;
        for (std::size_t i = 1; i < t.size(); i++) {
            minor.push_back(t[i]);
            minor.back().erase(minor.back().begin() + static_cast<std::ptrdiff_t>(j));
        }
        const uint32_t term = f.product(t[0][j], determinant_by_cofactors(f, minor));
        sum = j % 2 ? f.difference(sum, term) : f.sum(sum, term);
    }
    return sum;
}

const uint32_t some_primes[] = {2, 3, 5, 65521, 1073741827, 2147483629};

TEST_F(word_matrix_test, determinants_are_those_of_the_definition) {
    for (uint32_t p : some_primes)
        for (int n = 1; n <= 6; n++)
            for (int times = 0; times < 20; times++) {
                const uni_field f(p);
                const table t = random_table(f, n);
                word_matrix m(n, n);
                fill(t, &m);
                ASSERT_EQ(word_determinant(f, &m), determinant_by_cofactors(f, t)) << p << " " << n;
            }
}

TEST_F(word_matrix_test, a_matrix_times_its_inverse_is_1) {
    for (uint32_t p : some_primes)
        for (int n : {1, 2, 3, 4, 5, 7, 8, 9, 16, 33}) {
            const uni_field f(p);
            const table t = random_table(f, n);
            word_matrix m(n, n), eliminated(n, n);
            fill(t, &m);
            fill(t, &eliminated);
            uint32_t det = 0;
            const uint32_t expected = word_determinant(f, &eliminated);
            ASSERT_EQ(word_invert(f, &m, &det), expected != 0);
            if (!expected) continue;
            ASSERT_EQ(det, expected);
            for (int i = 0; i < n; i++)
                for (int j = 0; j < n; j++) {
                    uint32_t sum = 0;
                    for (int k = 0; k < n; k++)
                        sum =
                            f.sum(sum, f.product(t[static_cast<std::size_t>(i)][static_cast<std::size_t>(k)], m[k][j]));
                    ASSERT_EQ(sum, i == j ? 1u : 0u) << p << " " << n;
                }
        }
}

TEST_F(word_matrix_test, a_matrix_with_a_row_twice_is_singular) {
    for (uint32_t p : some_primes)
        for (int n = 2; n < 12; n++) {
            const uni_field f(p);
            table t = random_table(f, n);
            t[static_cast<std::size_t>(n - 1)] = t[static_cast<std::size_t>(rnd.below(n - 1))];
            word_matrix m(n, n);
            fill(t, &m);
            ASSERT_FALSE(word_invert(f, &m, nullptr));
            fill(t, &m);
            ASSERT_EQ(word_determinant(f, &m), 0u);
        }
}

TEST_F(word_matrix_test, a_permutation_has_its_sign_as_determinant) {
    const uni_field f(65521);
    word_matrix m(5, 5);
    const int image[] = {1, 2, 0, 4, 3}; /* a cycle of three and one of two: odd */
    fill(table(5, std::vector<uint32_t>(5)), &m);
    for (int i = 0; i < 5; i++) m[i][image[i]] = 1;
    EXPECT_EQ(word_determinant(f, &m), 65520u);
}

TEST_F(word_matrix_test, sums_of_rows_with_the_largest_residues_do_not_overflow) {
    const uni_field f(2147483629);
    std::vector<uint32_t> x(9, f.p - 1), y(9, f.p - 1), factors(11, f.p - 1);
    const std::vector<const uint32_t *> rows(11, y.data());
    word_add_rows(f, x.data(), rows.data(), factors.data(), 11, 9);
    for (uint32_t value : x) EXPECT_EQ(value, 10u); /* -1 + 11 */
}

} // namespace

} // namespace tolvek
