#include "matrix/minor_table.h"

#include "quoly/compare.h"
#include "support/fresh_system.h"
#include "support/rand_numbers.h"

namespace tolvek {

namespace {

struct kept_minors_test : fresh_exact_system {
    test_random rnd;
    std::size_t most = most_kept_minors;
    void TearDown() override {
        most_kept_minors = most;
        fresh_exact_system::TearDown();
    }
};

/* A table with values of its own. */
struct owned_table {
    minor_table table;
    explicit owned_table(int n) : table(n) {
        for (const quolynode *&q : table.cells) q = quol_num_0;
    }
    ~owned_table() {
        for (const quolynode *&q : table.cells) forget(q);
    }
    void set(int i, int j, quoly_handle &value) {
        forget(table.at(i, j));
        table.at(i, j) = value.release();
    }
    void set(int i, int j, int value) {
        quoly_handle q;
        quoly_set(value < 0 ? -value : value, q.slot());
        if (value < 0) quoly_inplace(q.get());
        set(i, j, q);
    }
    void exchange_rows(int i, int k) {
        for (int j = 0; j < table.n; j++) std::swap(table.at(i, j), table.at(k, j));
    }

  private:
    static void forget(const quolynode *&q) {
        quolynode *mine = const_cast<quolynode *>(q);
        if (q != quol_num_0) free_quoly(&mine);
        q = quol_num_0;
    }
};

std::string determinant(minor_table &t, const quolynode *expected) {
    quoly_handle d;
    quoly_set(1, d.slot());
    multiply_by_determinant(t, d.slot());
    return quoly_equal(d.get(), expected) ? "" : "differs";
}

/* x on the diagonal, 1 above and -1 below it: d(n) = x d(n-1) + d(n-2). The rows come in any order. */
TEST_F(kept_minors_test, forty_rows_that_are_banded) {
    run("&(J = x)");
    quoly_handle x, last, d;
    base_quoly(1, x.slot());
    quoly_set(1, last.slot());
    quoly_assign(x.get(), d.slot());
    for (int n = 2; n <= most_minor_rows; n++) {
        quoly_handle next;
        quoly_mult(d.get(), x.get(), next.slot());
        best_quoly_add(next.slot(), last.release());
        *last.slot() = d.release();
        *d.slot() = next.release();
        owned_table t(n);
        for (int i = 0; i < n; i++) {
            quoly_handle diagonal;
            quoly_assign(x.get(), diagonal.slot());
            t.set(i, i, diagonal);
            if (i + 1 < n) {
                t.set(i, i + 1, 1);
                t.set(i + 1, i, -1);
            }
        }
        EXPECT_EQ(determinant(t.table, d.get()), "") << n;
        for (int exchanges = 0; exchanges < 10; exchanges++) { /* an even number */
            const int a = rnd.below(n);
            t.exchange_rows(a, (a + 1 + rnd.below(n - 1)) % n);
        }
        EXPECT_EQ(determinant(t.table, d.get()), "") << n;
    }
}

/* The all-ones matrix plus n on the diagonal: n^(n-1) (n + n) = 2 n^n. */
TEST_F(kept_minors_test, full_rows_with_and_without_room_for_their_minors) {
    for (int n = 1; n <= 9; n++) {
        owned_table t(n);
        quoly_handle expected, factor;
        quoly_set(2, expected.slot());
        quoly_set(n, factor.slot());
        for (int i = 0; i < n; i++) {
            for (int j = 0; j < n; j++) t.set(i, j, i == j ? 1 + n : 1);
            fast_quoly_mult(expected.slot(), factor.get());
        }
        for (const std::size_t room : {std::size_t{0}, std::size_t{20}, most}) {
            most_kept_minors = room;
            if (n > 7 && room == 0) continue; /* that many products take too long */
            EXPECT_EQ(determinant(t.table, expected.get()), "") << n << ", room " << room;
        }
    }
}

TEST_F(kept_minors_test, it_declines_when_there_is_no_room) {
    owned_table t(6);
    for (int i = 0; i < 6; i++)
        for (int j = 0; j < 6; j++) t.set(i, j, 1 + i * j);
    quoly_handle d;
    most_kept_minors = 8;
    EXPECT_FALSE(determinant_by_kept_minors(t.table, d.slot()));
    EXPECT_FALSE(d);
    most_kept_minors = 100;
    EXPECT_TRUE(determinant_by_kept_minors(t.table, d.slot()));
    EXPECT_TRUE(quoly_is_zero(d.get())); /* the rows lie in a plane */
}

/* Five rows in two columns: no entry is 0 where it could be, but no choice of columns is left. */
TEST_F(kept_minors_test, rows_with_too_few_columns) {
    owned_table t(7);
    for (int i = 0; i < 7; i++)
        for (int j = 0; j < 7; j++)
            if (i < 2 || j < 4) t.set(i, j, 3 + i - j);
    EXPECT_EQ(determinant(t.table, quol_num_0), "");
}

TEST_F(kept_minors_test, permutations_have_their_sign) {
    for (int n = 1; n <= 40; n += 3) {
        owned_table t(n);
        std::vector<int> to(static_cast<std::size_t>(n));
        for (std::size_t i = 0; i < to.size(); i++) to[i] = static_cast<int>(i);
        int sign = 1;
        for (std::size_t i = 0; i < to.size(); i++) {
            const std::size_t j = i + static_cast<std::size_t>(rnd.below(n - static_cast<int>(i)));
            if (i != j) sign = -sign;
            std::swap(to[i], to[j]);
        }
        for (std::size_t i = 0; i < to.size(); i++) t.set(static_cast<int>(i), to[i], 1);
        quoly_handle expected;
        quoly_set(1, expected.slot());
        if (sign < 0) quoly_inplace(expected.get());
        EXPECT_EQ(determinant(t.table, expected.get()), "") << n;
    }
}

} // namespace

} // namespace tolvek
