/* Determinants, inverses and adjoints that are left, or interrupted, at their safe points, and how far apart those lie. */
#include "matrix/determinant.h"

#include "matrix_checks.h"
#include "quoly/compare.h"
#include "support/fresh_system.h"
#include "support/safe_point_gaps.h"
#include "support/safe_points.h"
#include "top/settings.h"

#include <algorithm>

namespace tolvek {

namespace {

void small_number(test_random &rnd, quolynode **q) {
    const int v = rnd.below(9) - 4;
    quoly_set(modularmode ? (v + 4) % modulus : v < 0 ? -v : v, q);
    if (!modularmode && v < 0) quoly_inplace(*q);
}

void linear(test_random &rnd, quolynode **q) {
    quoly_handle term, factor;
    base_quoly(1 + rnd.below(2), term.slot());
    small_number(rnd, q);
    small_number(rnd, factor.slot());
    fast_quoly_mult(term.slot(), factor.get());
    best_quoly_add(q, term.release());
}

void unit(test_random &, quolynode **q) { quoly_set(1, q); }

void long_number(test_random &rnd, quolynode **q) {
    small_number(rnd, q);
    for (int i = 0; i < 30; i++) {
        quoly_handle factor, last;
        quoly_set(1 << 27, factor.slot());
        fast_quoly_mult(q, factor.get());
        small_number(rnd, last.slot());
        best_quoly_add(q, last.release());
    }
}

/* ---- what is interrupted ---- */

void determinant_of(matrix_value &m) {
    quoly_handle d;
    quoly_set(1, d.slot());
    mat_determinant(m, {}, d.slot());
}

struct operation {
    const char *name;
    void (*run)(matrix_value &m);
    bool sparse;
    int detcutoff, gauss_cutoff;
};
constexpr operation operations[] = {
    {"determinant", determinant_of, false, -1, 0},         {"minors", determinant_of, false, 40, 0},
    {"elimination", determinant_of, false, 0, 0},          {"fraction-free", determinant_of, false, -1, 1},
    {"sparse determinant", determinant_of, true, -1, 0},   {"sparse elimination", determinant_of, true, 0, 0},
    {"sparse, fraction-free", determinant_of, true, 0, 1}, {"inverse", mat_inverse, false, -1, 0},
    {"sparse inverse", mat_inverse, true, -1, 0},          {"adjoint", adjoint, false, -1, 0},
};

struct determinant_interrupts : fresh_exact_system {
    test_random rnd;

    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(J = x)\n&(J = y)");
    }
    static void force(const operation &op) {
        detcutoff = op.detcutoff;
        gauss_cutoff = op.gauss_cutoff;
    }
    /* Leaves it at some of its safe points: how many it passes. */
    static long leave(const operation &op, const matrix_value &m) {
        const auto routine = [&] {
            matrix_value borrowed;
            if (op.sparse) {
                borrowed.copy_from(m);
                borrowed.to_sparse();
            } else {
                borrowed.make_borrowed(m.rows, m.rows);
                for (int64_t i = 0; i < m.size; i++) borrowed.cell(i) = m.cell(i);
            }
            op.run(borrowed);
        };
        const long all = safe_points_of(routine);
        const records_in_use before = count_records_in_use();
        for (long k = 1; k <= all; k += std::max(1L, all / 25)) EXPECT_TRUE(leave_at(k, routine)) << op.name;
        EXPECT_TRUE(count_records_in_use() == before) << op.name;
        return all;
    }
    void leave_all(int n, const make_entry &entry, const make_entry &diagonal) {
        const planted_matrix planted(rnd, n, entry, diagonal);
        matrix_value kept;
        kept.copy_from(planted.m);
        const int in_use = first_available;
        for (const operation &op : operations) {
            if (op.detcutoff > n && n > 12) continue; /* too many minors */
            force(op);
            EXPECT_GT(leave(op, planted.m), 0) << op.name;
            EXPECT_EQ(first_available, in_use) << op.name;
            for (int64_t i = 0; i < kept.size; i++)
                EXPECT_TRUE(quoly_equal(kept.cell(i), planted.m.cell(i))) << op.name;
        }
    }
};

TEST_F(determinant_interrupts, what_is_left_at_a_safe_point_leaves_nothing_behind_and_the_matrix_as_it_was) {
    leave_all(5, linear, unit);
    leave_all(7, small_number, unit);
    leave_all(21, small_number, unit);
    for (const char *modulus_text : {"65521", "256", "12"}) {
        run("&(p = " + std::string(modulus_text) + ")");
        leave_all(6, small_number, unit);
        if (mod_is_prime()) leave_all(4, linear, unit);
    }
}

/* ---- at the prompt ---- */

/* What a session shows in the end, after an interrupt at the k-th safe point of the statement and its resumption. */
struct statement {
    const char *ring, *switches, *text, *shows;
};
constexpr statement statements[] = {
    {"", "", "d := Det[m]", "d"},
    {"", "&(D = 0)", "d := Det[m]", "d"},
    {"", "&(D = 40)", "d := Det[m]", "d"},
    {"", "&(K = 1)", "d := Det[m]", "d"},
    {"", "", "d := Det[s]", "d"},
    {"", "&(K = 1)", "d := Det[s]", "d"},
    {"", "", "d := Det[i]", "d"},
    {"", "", "[q] := 1/[m]", "[q]"},
    {"", "", "[q] := [i]^(-2)", "[q]"},
    {"", "", "[q] := 1/[s]", "[q]"},
    {"", "", "[q] := Adjoint[m]", "[q]"},
    {"", "", "[q] := Adjoint[i]", "[q]"},
    {"&(p = 6)", "", "d := Det[i]", "d"},
    {"&(p = 7)", "", "[q] := 1/[i]", "[q]"},
    {"&(p = 65521)", "", "d := Det[s]", "d"},
};

TEST_F(determinant_interrupts, interrupted_and_resumed_a_statement_shows_the_same) {
    run("[m] := [[x,1,2,0][3,x,4,y][5,6,x+y,2][1,1,1,x]]\n[s] := [m]\nSparse[s]\n"
        "[i] := [[3,1,0,2][1,4,1,0][7,1,5,9][2,6,5,3]]");
    for (const statement &s : statements) {
        run(std::string(s.ring) + "\n" + s.switches);
        run("@[q]");
        const long all = interrupt_at(0, [&] { run(s.text); });
        const std::string expected = run(s.shows), matrices = run("[m]\n[s]\n[i]");
        for (int times_left = times(6); times_left > 0; times_left--) {
            run("d := 0\n@[q]");
            const long k = 1 + rnd.below(static_cast<int>(all));
            std::string shown;
            interrupt_at(k, [&] { shown = run(std::string(s.text) + "\n&_p"); });
            EXPECT_NE(shown.find("*** New command level."), std::string::npos) << s.text;
            EXPECT_EQ(run(s.shows), expected) << s.text << ", safe point " << k;
            EXPECT_EQ(run("[m]\n[s]\n[i]"), matrices) << s.text;
        }
        run("&(D = -1)\n&(K = 0)");
        if (*s.ring) run("&p");
    }
}

/* After an error, and after an interrupt, the same statement has the same outcome. */
TEST_F(determinant_interrupts, an_error_and_an_interrupt_do_not_change_what_comes_afterwards) {
    run("[m] := [[2*x,3,2][3,2*x,3][2,3,2*x]]\n[i] := [[2,3][3,2]]\n&(p = 6)\n&(D = 0)");
    const std::string refused = run("Det[m]");
    EXPECT_NE(refused.find(message_text(85)), std::string::npos);
    EXPECT_EQ(value_of("Det[i]"), "1");
    interrupt_at(2, [&] { run("Det[m]\n&_p"); });
    EXPECT_EQ(run("Det[m]"), refused);
    EXPECT_EQ(value_of("Det[i]"), "1");
    EXPECT_EQ(value_of("m[1,1]"), "2x");
    EXPECT_EQ(int32_t{modulus}, 6);
}

/* ---- how far apart safe points lie ---- */

TEST_F(determinant_interrupts, long_ones_answer_an_interrupt) {
    const auto check = [&](const char *what, int n, const make_entry &entry, const operation &op) {
        const planted_matrix planted(rnd, n, entry, unit);
        matrix_value m;
        m.copy_from(planted.m);
        if (op.sparse) m.to_sparse();
        force(op);
        EXPECT_LT(longest_gap_of([&] { op.run(m); }), most_gap) << what;
    };
    const operation by_size{"", determinant_of, false, -1, 0}, by_minors{"", determinant_of, false, 40, 0},
        fraction_free{"", determinant_of, false, 0, 1}, sparse{"", determinant_of, true, -1, 0},
        inverse{"", mat_inverse, false, -1, 0}, sparse_inverse{"", mat_inverse, true, -1, 0},
        adjoints{"", adjoint, false, -1, 0};
    check("lifted", 120, small_number, by_size);
    check("by primes", 18, long_number, by_size);
    check("without fractions", 30, long_number, fraction_free);
    check("polynomials by minors", 9, linear, by_minors);
    check("polynomials without fractions", 7, linear, fraction_free);
    check("polynomials with fractions", 5, linear, by_size);
    check("the inverse of integers", 50, small_number, inverse);
    check("the adjoint of integers", 50, small_number, adjoints);
    check("the inverse of polynomials", 4, linear, inverse);
    check("the inverse of a sparse matrix", 5, linear, sparse_inverse);
    check(
        "sparse integers", 120, [](test_random &r, quolynode **q) { quoly_set(r.one_in(60), q); }, sparse);
    run("&(p = 65521)");
    check("residues", 400, small_number, by_size);
    check("the inverse of residues", 250, small_number, inverse);
}

} // namespace

} // namespace tolvek
