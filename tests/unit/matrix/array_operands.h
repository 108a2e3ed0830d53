/* A plain model of array values in exact arithmetic, for tests of array expressions. */
#pragma once

#include "language/expressions.h"
#include "matrix/array_expressions.h"
#include "matrix/arrays.h"
#include "matrix/sparse.h"
#include "quoly/compare.h"
#include "support/fresh_system.h"
#include "top/driver.h"

#include <numeric>
#include <string>
#include <vector>

namespace tolvek {

struct fraction {
    int64_t n = 0, d = 1;
    fraction() = default;
    fraction(int64_t num, int64_t den = 1) : n(num), d(den) { // NOLINT: integers are fractions
        int64_t g = std::gcd(n, d) * (d < 0 ? -1 : 1);
        n /= g;
        d /= g;
    }
    bool operator==(const fraction &) const = default;
};
inline fraction operator+(fraction a, fraction b) { return {a.n * b.d + b.n * a.d, a.d * b.d}; }
inline fraction operator-(fraction a, fraction b) { return {a.n * b.d - b.n * a.d, a.d * b.d}; }
inline fraction operator*(fraction a, fraction b) { return {a.n * b.n, a.d * b.d}; }
inline fraction operator/(fraction a, fraction b) { return {a.n * b.d, a.d * b.n}; }

/* What an operand or a result is; a failure holds the number of its error. */
struct model {
    int error = 0;
    bool matrix = false, sparse = false;
    int64_t rows = 1, cols = 1;
    std::vector<fraction> at; /* column by column */

    static model failure(int n) {
        model m;
        m.error = n;
        return m;
    }
    static model scalar(fraction v) {
        model m;
        m.at = {v};
        return m;
    }
    static model of(int64_t rows, int64_t cols, bool sparse) {
        model m;
        m.matrix = true;
        m.sparse = sparse;
        m.rows = rows;
        m.cols = cols;
        m.at.resize(static_cast<std::size_t>(rows * cols));
        return m;
    }
    fraction &cell(int64_t r, int64_t c) { return at[static_cast<std::size_t>(c * rows + r)]; }
    fraction cell(int64_t r, int64_t c) const { return at[static_cast<std::size_t>(c * rows + r)]; }
    fraction entry(std::size_t i) const { return matrix ? at[i] : at[0]; }
};

/* In a modular ring, of its residue. */
inline bool has_value(const quolynode *q, fraction v) {
    quoly_handle n, d, expected;
    const auto residue = [](int64_t i) { return modularmode ? (i % modulus + modulus) % modulus : i; };
    quoly_set_int64(residue(v.n), n.slot());
    quoly_set_int64(residue(v.d), d.slot());
    quoly_quot(n.get(), d.get(), expected.slot(), 0);
    return quoly_equal(q, expected.get());
}

/* Is every row strictly ascending, inside the matrix and without zeros, and are the heads behind the last row null? */
inline bool is_regular(sparse_frame *head, int64_t rows, int64_t cols) {
    row_walk walk(head);
    for (int64_t r = 0; r < rows; r++, walk.next()) {
        int32_t last = 0;
        for (const colm *c = *walk; c; c = c->next) {
            if (c->column <= last || c->column > cols || quoly_is_zero(c->value)) return false;
            last = c->column;
        }
    }
    return true;
}

inline bool same_matrix(const matrix_value &m, const model &expected) {
    if (m.is_scalar()) return !expected.matrix && has_value(m.scalar.get(), expected.at[0]);
    if (!expected.matrix || m.is_sparse() != expected.sparse || m.rows != expected.rows) return false;
    if (m.size != expected.rows * expected.cols) return false;
    if (m.is_sparse() && !is_regular(m.sparse, m.rows, expected.cols)) return false;
    for (int64_t r = 0; r < m.rows; r++)
        for (int64_t c = 0; c < expected.cols; c++) {
            const quolynode *q = m.is_sparse()
                                     ? spar_retrieve(m.sparse, static_cast<int32_t>(r) + 1, static_cast<int32_t>(c) + 1)
                                     : m.cell(c * m.rows + r);
            if (!has_value(q, expected.cell(r, c))) return false;
        }
    return true;
}

inline token_record named(const std::string &text) {
    token_record t;
    set_token(t, text.c_str());
    return t;
}

/* A new array with the values of the model. */
inline array_record *store_model(const std::string &text, const model &m) {
    array_record *a = m.sparse ? sparse_create(named(text), m.rows, m.cols, false, true)
                               : insertarr(named(text), m.rows, m.cols, false);
    for (int64_t r = 0; r < m.rows; r++)
        for (int64_t c = 0; c < m.cols; c++) {
            quoly_handle value;
            quoly_set_int64(m.cell(r, c).n, value.slot());
            if (m.sparse)
                sparse_insert(r + 1, c + 1, a, true, value.get());
            else
                element(a, c * m.rows + r) = value.release();
        }
    return a;
}

/* The system with books that are looked at after each expression. */
struct array_fixture : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(p = 7)\n&p"); /* tables of the start take another form in the first change of ring */
        run("c := 4; &(J = t); &(J = u)");
        in_use = count_records_in_use();
    }
    void TearDown() override {
        forget_arrays();
        EXPECT_TRUE(balanced(in_use));
        fresh_exact_system::TearDown();
    }
    /* Is nothing in flight, and are as many records in use? */
    static bool balanced(const records_in_use &before) {
        return first_available == 1 && borrowed_matrices == 0 && values_held == 0 && count_records_in_use() == before;
    }
    /* m := the value of an expression. */
    void evaluate(const std::string &text, matrix_value &m) {
        set_input(text + ";\n");
        scanner(&Input, token, &zilch);
        arr_expre(&Input, &zilch, m);
        EXPECT_TRUE(token_is(token, ";")) << text << " stops at " << token.text;
    }
    /* The expression has the value, or fails as it should; and nothing else has changed. */
    void check(const std::string &text, const model &expected) {
        const records_in_use before = count_records_in_use();
        const long frames = sparse_frames_in_use();
        bool same = false;
        const bool failed = unwinds([&] {
            matrix_value m;
            evaluate(text, m);
            same = !expected.error && same_matrix(m, expected);
        });
        release_pending_arrays();
        EXPECT_EQ(failed, expected.error != 0) << text << "\n" << last_text;
        if (expected.error)
            EXPECT_NE(last_text.find(message_text(expected.error)), std::string::npos) << text << "\n" << last_text;
        else
            EXPECT_TRUE(same) << text;
        EXPECT_TRUE(balanced(before)) << text;
        EXPECT_EQ(sparse_frames_in_use(), frames) << text;
    }
    void refused(const std::string &text, int n) { check(text, model::failure(n)); }

    records_in_use in_use{};
};

} // namespace tolvek
