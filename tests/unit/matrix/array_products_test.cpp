#include "array_operands.h"
#include "matrix/array_arithmetic.h"
#include "matrix/flat_matrix.h"
#include "numbers/modular.h"
#include "numbers/number.h"
#include "support/rand_numbers.h"

#include <algorithm>
#include <vector>

using namespace tolvek;

namespace {

/* The rings: 0 exact, -1 floats, otherwise the modulus; 256 and 65536 are table fields. */
struct ring_of {
    explicit ring_of(int32_t m) {
        flotemode = m == -1;
        lintmode = m != 0;
        modularmode = m > 0;
        finf = m == 256 || m == 65536;
        f256 = m == 256;
        f2t16 = m == 65536;
        modulus = m > 0 ? m : -1;
    }
    ring_guard found;
};
constexpr int32_t rings[] = {0, -1, 2, 7, 12, 65521, 2147483629, 256};

struct array_products : array_fixture {
    test_random rnd;

    /* A value of the ring; small ones meet their negatives often. */
    void random_value(quolynode **q) {
        if (modularmode)
            quoly_set(static_cast<int32_t>(rnd() % 3 == 0
                                               ? rnd() % static_cast<uint64_t>(modulus)
                                               : rnd() % std::min<uint64_t>(2, static_cast<uint64_t>(modulus))),
                      q);
        else
            quoly_set(static_cast<int32_t>(rnd() % 5) - 2, q);
    }
    /* Two matrices with the same entries. */
    void random_pair(int32_t rows, int32_t cols, unsigned percent, matrix_value &thin, matrix_value &full) {
        sparse_handle entries(rows);
        full.make_dense(rows, cols);
        row_walk walk(entries.get());
        for (int32_t r = 0; r < rows; r++, walk.next()) {
            row_builder row(&*walk);
            for (int32_t c = 0; c < cols; c++) {
                quoly_handle value;
                if (rnd() % 100 < percent)
                    random_value(value.slot());
                else
                    quoly_set(0, value.slot());
                quoly_assign(value.get(), &full.cell(int64_t{c} * rows + r));
                row.add(c + 1, value);
            }
        }
        thin.make_sparse(entries.release(), rows, cols);
    }
    static void copy(const matrix_value &m, matrix_value &to) {
        if (m.is_sparse()) {
            sparse_frame *head;
            copy_sparse(m.sparse, &head, m.rows, false);
            to.make_sparse(head, m.rows, m.size / m.rows);
            return;
        }
        to.make_dense(m.rows, m.cols());
        for (int64_t i = 0; i < m.size; i++) quoly_assign(m.cell(i), &to.cell(i));
    }
    static bool same(const matrix_value &m, const matrix_value &full) {
        if (m.rows != full.rows || m.size != full.size) return false;
        if (m.is_sparse() && !is_regular(m.sparse, m.rows, m.cols())) return false;
        for (int64_t i = 0; i < m.size; i++) {
            const auto r = static_cast<int32_t>(i % m.rows) + 1, c = static_cast<int32_t>(i / m.rows) + 1;
            if (!quoly_equal(m.is_sparse() ? spar_retrieve(m.sparse, r, c) : m.cell(i), full.cell(i))) return false;
        }
        return true;
    }
    /* Entry by entry from the sums of products. */
    static void plain_product(const matrix_value &a, const matrix_value &b, matrix_value &r) {
        r.make_dense(a.rows, b.cols());
        for (int64_t i = 0; i < a.rows; i++)
            for (int64_t j = 0; j < b.cols(); j++) {
                quoly_handle sum;
                quoly_set(0, sum.slot());
                for (int64_t k = 0; k < b.rows; k++) {
                    quoly_handle term;
                    quoly_mult(a.cell(k * a.rows + i), b.cell(j * b.rows + k), term.slot());
                    quoly_add(sum.get(), term.get(), sum.slot());
                }
                r.cell(j * a.rows + i) = sum.release();
            }
    }
    int32_t length() { return static_cast<int32_t>(rnd() % 12) + 1; }
};

TEST_F(array_products, of_all_four_pairs_of_forms_agree_with_the_plain_sums_in_each_ring) {
    for (int32_t m : rings) {
        ring_of ring(m);
        for (int i = 0; i < times(40); i++) {
            matrix_value thin_a, full_a, thin_b, full_b, expected, r;
            const int32_t inner = length();
            random_pair(length(), inner, 30, thin_a, full_a);
            random_pair(inner, length(), 30, thin_b, full_b);
            plain_product(full_a, full_b, expected);
            for (const matrix_value *a : {&thin_a, &full_a})
                for (const matrix_value *b : {&thin_b, &full_b}) {
                    matrix_product(*a, *b, r);
                    EXPECT_EQ(r.is_sparse(), a->is_sparse() && b->is_sparse());
                    EXPECT_TRUE(same(r, expected)) << "ring " << m;
                }
            if (m != -1) {
                fast_mat_mult(full_a, full_b, r);
                EXPECT_TRUE(same(r, expected)) << "ring " << m;
            }
        }
    }
}

TEST_F(array_products, sums_differences_and_scalings_agree_with_those_of_dense_matrices_in_each_ring) {
    for (int32_t m : rings) {
        ring_of ring(m);
        for (int i = 0; i < times(60); i++) {
            matrix_value thin_a, full_a, thin_b, full_b, x, y, expected, other;
            const int32_t rows = length(), cols = length();
            random_pair(rows, cols, 40, thin_a, full_a);
            random_pair(rows, cols, 40, thin_b, full_b);
            const bool minus = i % 2 == 1;
            copy(full_a, expected);
            copy(full_b, other);
            add_values(expected, other, minus);
            for (int forms = 0; forms < 4; forms++) {
                copy(forms & 1 ? thin_a : full_a, x);
                copy(forms & 2 ? thin_b : full_b, y);
                add_values(x, y, minus);
                EXPECT_EQ(x.is_sparse(), forms == 3);
                EXPECT_TRUE(same(x, expected)) << "ring " << m;
            }
            quoly_handle scalar;
            random_value(scalar.slot());
            copy(full_a, expected);
            copy(thin_a, x);
            entries_with_scalar('*', expected, scalar.get());
            entries_with_scalar('*', x, scalar.get());
            EXPECT_TRUE(same(x, expected)) << "ring " << m;
            copy(thin_a, x);
            copy(full_a, expected);
            transpose(x);
            transpose(expected);
            EXPECT_TRUE(same(x, expected)) << "ring " << m;
        }
    }
}

/* ---- values known by construction ---- */

int64_t integer_at(const matrix_value &m, int64_t row, int64_t col) {
    const quolynode *q = m.is_sparse() ? spar_retrieve(m.sparse, static_cast<int32_t>(row), static_cast<int32_t>(col))
                                       : m.cell((col - 1) * m.rows + row - 1);
    const number *x = q->numb;
    int64_t v = 0;
    for (const numnode *d = x->num_head; d; d = d->next) v = v * digit_radix + d->digit;
    return v;
}

TEST_F(array_products, rows_beyond_the_first_and_the_second_frame_are_reached) {
    for (int32_t n : {2047, 2048, 2049, 4096, 4097, 5000}) {
        /* S moves each row down by one; its n-th power is the identity. */
        sparse_handle rows(n);
        for (int32_t r = 1; r <= n; r++) {
            quoly_handle value;
            quoly_set(1, value.slot());
            sparse_adjoin(rows.get(), r, r == n ? 1 : r + 1, value);
        }
        matrix_value shift, power;
        shift.make_sparse(rows.release(), n, n);
        copy(shift, power);
        number_handle e;
        setvalue(n, &e);
        matrix_power(power, &e);
        EXPECT_EQ(sparse_count(power.sparse, n), n);
        for (int32_t r : {1, 2048, 2049, 4096, 4097, n})
            EXPECT_EQ(integer_at(power, std::min(r, n), std::min(r, n)), 1);
        matrix_value minus_one;
        copy(power, minus_one);
        negate_value(minus_one);
        add_values(power, minus_one, false);
        EXPECT_EQ(sparse_count(power.sparse, n), 0); /* entries that cancel are not stored */
        power.clear();
        transpose(shift);
        EXPECT_EQ(integer_at(shift, n, n - 1), 1);
        EXPECT_EQ(integer_at(shift, 1, n), 1);
    }
}

TEST_F(array_products, very_wide_sparse_matrices_cost_what_their_entries_cost) {
    const int64_t wide = 2000000000;
    sparse_handle tall(3), one(1);
    matrix_value a, b, r;
    quoly_handle value;
    quoly_set(5, value.slot());
    sparse_adjoin(tall.get(), 3, 1, value);
    quoly_set(7, value.slot());
    sparse_adjoin(one.get(), 1, 1999999999, value);
    a.make_sparse(tall.release(), 3, 1);
    b.make_sparse(one.release(), 1, wide);
    matrix_product(a, b, r);
    EXPECT_EQ(r.size, 3 * wide);
    EXPECT_EQ(sparse_count(r.sparse, 3), 1);
    EXPECT_EQ(integer_at(r, 3, 1999999999), 35);
}

/* (x + y)^2 = x^2 + 2 x y + y^2 for x = a times ones, entries of any length and sign. */
TEST_F(array_products, products_of_long_integers_have_no_bound) {
    for (int digits : {1, 2, 3, 8, 40, 200})
        for (int32_t n : {1, 2, 7, 30}) {
            if (digits > 40 && n > 7) continue;
            matrix_value a, b, r, expected;
            a.make_dense(n, n);
            b.make_dense(n, n);
            for (matrix_value *m : {&a, &b})
                for (int64_t i = 0; i < m->size; i++) {
                    quoly_set(0, &m->cell(i));
                    rand_number(rnd, digits, m->cell(i)->numb);
                }
            matrix_product(a, b, r);
            plain_product(a, b, expected);
            EXPECT_TRUE(same(r, expected)) << digits << " digits, order " << n;
        }
}

TEST_F(array_products, the_greatest_and_least_values_that_a_bound_allows_are_kept) {
    for (int32_t inner : {1, 3, 4, 1023, 1024, 1025})
        for (int sign : {1, -1}) {
            matrix_value a, b, r;
            a.make_dense(2, inner);
            b.make_dense(inner, 2);
            for (int64_t i = 0; i < a.size; i++) {
                quoly_set(sign * (digit_radix - 1), &a.cell(i));
                quoly_set(digit_radix - 1, &b.cell(i));
            }
            matrix_product(a, b, r);
            const int64_t largest = int64_t{digit_radix} - 1;
            quoly_handle expected, count;
            quoly_set_int64(sign * largest * largest, expected.slot());
            quoly_set(inner, count.slot());
            fast_quoly_mult(expected.slot(), count.get());
            for (int64_t i = 0; i < 4; i++) EXPECT_TRUE(quoly_equal(r.cell(i), expected.get())) << inner;
        }
}

/* All residues are -1 (or 1 and -1 by turns): sums are as long as they can be. */
TEST_F(array_products, sums_of_residues_are_reduced_before_they_overflow) {
    for (bool wide : {true, false}) {
        if (wide && !wide_vectors) continue;
        const bool found = wide_vectors;
        wide_vectors = wide;
        for (uint32_t p : {2u, 3u, 65521u, 65536u, 65537u, 1048583u, 2147483629u, 2147483644u})
            for (std::size_t length : {1u, 7u, 8u, 9u, 1000u, 131072u, 131073u, 300001u}) {
                word_lines a(3, length), b(5, length);
                for (std::size_t i = 0; i < 3; i++)
                    for (std::size_t k = 0; k < length; k++) a.line(i)[k] = p - 1;
                for (std::size_t j = 0; j < 5; j++)
                    for (std::size_t k = 0; k < length; k++) b.line(j)[k] = j % 2 ? 1 : p - 1;
                std::vector<uint32_t> c(15);
                residue_lines_product(a, b, word_divisor(p), c.data());
                const auto sum = static_cast<uint32_t>(length % p), minus = sum ? p - sum : 0;
                for (std::size_t j = 0; j < 5; j++)
                    for (std::size_t i = 0; i < 3; i++)
                        EXPECT_EQ(c[j * 3 + i], j % 2 ? minus : sum) << p << " " << length;
            }
        wide_vectors = found;
    }
}

TEST_F(array_products, lines_of_words_agree_by_both_kinds_of_instructions) {
    for (int i = 0; i < times(200); i++) {
        const std::size_t rows = rnd() % 9 + 1, cols = rnd() % 9 + 1, length = rnd() % 40 + 1;
        const uint32_t p = static_cast<uint32_t>(rnd() % 2147483643) + 2;
        word_lines a(rows, length), b(cols, length);
        for (std::size_t k = 0; k < rows * length; k++) a.line(k % rows)[k / rows] = static_cast<uint32_t>(rnd() % p);
        for (std::size_t k = 0; k < cols * length; k++) b.line(k % cols)[k / cols] = static_cast<uint32_t>(rnd() % p);
        std::vector<uint32_t> c(rows * cols), d(rows * cols);
        const bool found = wide_vectors;
        residue_lines_product(a, b, word_divisor(p), c.data());
        wide_vectors = false;
        residue_lines_product(a, b, word_divisor(p), d.data());
        wide_vectors = found;
        EXPECT_EQ(c, d);
        for (std::size_t j = 0; j < cols; j++)
            for (std::size_t r = 0; r < rows; r++) {
                unsigned __int128 sum = 0;
                for (std::size_t k = 0; k < length; k++) sum += uint64_t{a.line(r)[k]} * b.line(j)[k];
                EXPECT_EQ(c[j * rows + r], static_cast<uint32_t>(sum % p));
            }
    }
}

} // namespace
