#include "matrix/integer_determinant.h"

#include "numbers/int_mult.h"
#include "support/fresh_system.h"
#include "support/rand_numbers.h"
#include "top/ring.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvek {

namespace {

/* A matrix whose cells it owns. */
struct test_matrix {
    int n;
    std::vector<quolynode *> cells;

    explicit test_matrix(int rows) : n(rows), cells(static_cast<size_t>(rows * rows)) {
        for (quolynode *&q : cells) quoly_set(0, &q);
    }
    ~test_matrix() {
        for (quolynode *&q : cells) free_quoly(&q);
    }
    number *entry(int i, int j) { return cells[static_cast<size_t>(j * n + i)]->numb; }
    integer_matrix view() const { return {cells.data(), n}; }
};

struct integer_determinant_test : fresh_exact_system {
    test_random rnd;

    /* Row operations with small factors on the triangle with this diagonal: the determinant stays. */
    void plant(test_matrix &m, const std::vector<number_handle> &diagonal, int operations) {
        for (int i = 0; i < m.n; i++) {
            spec_num_assign(&diagonal[static_cast<size_t>(i)], m.entry(i, i));
            for (int j = i + 1; j < m.n; j++) setvalue(rnd.below(19) - 9, m.entry(i, j));
        }
        for (int k = 0; k < operations; k++) {
            const int to = rnd.below(m.n), from = rnd.below(m.n), factor = rnd.below(7) - 3;
            if (to == from) continue;
            for (int j = 0; j < m.n; j++) {
                number_handle f, product;
                setvalue(factor, &f);
                multiply(m.entry(from, j), &f, &product);
                fastsum(m.entry(to, j), &product);
            }
        }
    }
    /* The planted determinant by both methods. */
    void check(int n, int digits, int operations) {
        test_matrix m(n);
        std::vector<number_handle> diagonal(static_cast<size_t>(n));
        number_handle expected, found;
        setvalue(1, &expected);
        for (number_handle &d : diagonal) {
            do rand_number(rnd, digits, &d);
            while (num_sign(&d) == 0);
            multiply(&expected, &d, &expected);
        }
        plant(m, diagonal, operations);
        integer_determinant(m.view(), &found);
        ASSERT_EQ(hex_of(&found), hex_of(&expected)) << n;
        const hadamard_bounds bounds(m.view());
        ASSERT_GE(bounds.least() + 1, logg2_magnitude(&expected));
        determinant_by_primes(m.view(), bounds.least(), &found);
        ASSERT_EQ(hex_of(&found), hex_of(&expected)) << n;
        determinant_without_fractions(m.view(), &found);
        ASSERT_EQ(hex_of(&found), hex_of(&expected)) << n;
        ASSERT_TRUE(determinant_by_lifting(m.view(), bounds, &found));
        ASSERT_EQ(hex_of(&found), hex_of(&expected)) << n;
    }
    static double logg2_magnitude(const number *x) { return num_sign(x) < 0 ? logg2_neg(x) : logg2(x); }
};

TEST_F(integer_determinant_test, planted_determinants_come_out_by_every_method) {
    for (int n = 1; n <= 14; n++)
        for (int i = 0; i < times(4); i++) check(n, 1 + rnd.below(4), 3 * n);
    check(30, 2, 100);
    check(60, 1, 200);
}

TEST_F(integer_determinant_test, lifting_declines_a_singular_matrix_and_the_determinant_is_0) {
    for (int n : {2, 5, 45}) {
        test_matrix m(n);
        std::vector<number_handle> diagonal(static_cast<size_t>(n));
        for (int i = 0; i < n; i++) setvalue(i == n / 2 ? 0 : 1234567 + i, &diagonal[static_cast<size_t>(i)]);
        plant(m, diagonal, 4 * n);
        number_handle found;
        integer_determinant(m.view(), &found);
        EXPECT_EQ(num_sign(&found), 0);
        EXPECT_FALSE(determinant_by_lifting(m.view(), hadamard_bounds(m.view()), &found));
        determinant_without_fractions(m.view(), &found);
        EXPECT_EQ(num_sign(&found), 0);
    }
}

TEST_F(integer_determinant_test, a_row_or_column_of_zeros_is_told_by_the_bound) {
    test_matrix m(3);
    for (int j = 0; j < 3; j++) {
        setvalue(5, m.entry(0, j));
        setvalue(7 - j, m.entry(2, j));
    }
    const hadamard_bounds bounds(m.view());
    EXPECT_LT(bounds.rows, 0);
    EXPECT_GT(bounds.columns, 0);
    number_handle found;
    integer_determinant(m.view(), &found);
    EXPECT_EQ(num_sign(&found), 0);
}

TEST_F(integer_determinant_test, primes_that_divide_the_determinant_do_no_harm) {
    test_matrix m(4);
    const int32_t primes[] = {2147483629, 2147483587, 2147483579, 2147483563}; /* the largest below 2^31 */
    number_handle expected, found;
    setvalue(1, &expected);
    for (int i = 0; i < 4; i++) {
        setvalue(primes[i], m.entry(i, i));
        multiply(&expected, m.entry(i, i), &expected);
    }
    integer_determinant(m.view(), &found);
    EXPECT_EQ(hex_of(&found), hex_of(&expected));
    EXPECT_FALSE(determinant_by_lifting(m.view(), hadamard_bounds(m.view()), &found));
}

/* H H^T = n, so that the determinant of J. Sylvester's matrix of signs is the bound itself: 16^8. */
TEST_F(integer_determinant_test, matrices_that_reach_the_bound_have_all_their_bits) {
    test_matrix m(16);
    for (int i = 0; i < 16; i++)
        for (int j = 0; j < 16; j++)
            setvalue(__builtin_popcount(static_cast<unsigned>(i & j)) % 2 ? -1 : 1, m.entry(i, j));
    number_handle found;
    integer_determinant(m.view(), &found);
    EXPECT_EQ(hex_of(&found), "0x100000000");
    EXPECT_NEAR(hadamard_bounds(m.view()).least(), 32, 1e-3);
}

} // namespace

} // namespace tolvek
