#include "matrix/elimination_work.h"
#include "matrix/minor_table.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

namespace tolvek {

namespace {

/* A row, or a column. */
struct line {
    int index = 0;
    bool is_column = false;
    const quolynode *&entry(minor_table &m, int i) const { return is_column ? m.at(i, index) : m.at(index, i); }
};

int zeros_of(minor_table &m, const line &l) {
    int zeros = 0;
    for (int i = 0; i < m.n; i++) zeros += quoly_is_zero(l.entry(m, i));
    return zeros;
}

/* The line with the most zeros: the first one, rows before columns. */
line emptiest_line(minor_table &m) {
    line best;
    int most = -1;
    static constexpr bool directions[] = {false, true};
    for (const bool columns : directions)
        for (int i = 0; i < m.n; i++) {
            const line l{i, columns};
            const int zeros = zeros_of(m, l);
            if (zeros <= most) continue;
            most = zeros;
            best = l;
        }
    return best;
}

void determinant_of(minor_table &m, quolynode **result);

/* The table without a line and without the line across it at i. */
void take_minor(minor_table &m, const line &l, int i, minor_table &minor) {
    const int skipped_row = l.is_column ? i : l.index, skipped_column = l.is_column ? l.index : i;
    for (int row = 0, to = 0; row < m.n; row++) {
        if (row == skipped_row) continue;
        for (int column = 0, at = 0; column < m.n; column++)
            if (column != skipped_column) minor.at(to, at++) = m.at(row, column);
        to++;
    }
}

void expand(minor_table &m, const line &l, quolynode **result) {
    quoly_handle sum;
    quoly_set(0, sum.slot());
    minor_table minor(m.n - 1);
    for (int i = 0; i < m.n; i++) {
        const quolynode *factor = l.entry(m, i);
        if (quoly_is_zero(factor)) continue;
        safe_point();
        take_minor(m, l, i, minor);
        quoly_handle term;
        determinant_of(minor, term.slot());
        fast_quoly_mult(term.slot(), factor);
        if ((i + l.index) % 2)
            best_quoly_sub(sum.slot(), term.release());
        else
            best_quoly_add(sum.slot(), term.release());
    }
    sum.release_to(result);
}

void two_by_two(minor_table &m, quolynode **result) {
    quoly_handle first, second;
    quoly_mult(m.at(0, 0), m.at(1, 1), first.slot());
    quoly_mult(m.at(0, 1), m.at(1, 0), second.slot());
    best_quoly_sub(first.slot(), second.release());
    first.release_to(result);
}

/* From here on minors are kept. In floats they are not: rounding would show in which order they are added. */
constexpr int least_kept_rows = 4;

void determinant_of(minor_table &m, quolynode **result) {
    check_stack();
    if (m.n == 1) return quoly_assign(m.at(0, 0), result);
    if (m.n == 2) return two_by_two(m, result);
    if (m.n >= least_kept_rows && !flotemode && determinant_by_kept_minors(m, result)) return;
    const line l = emptiest_line(m);
    expand(m, l, result);
}

} // namespace

void multiply_by_determinant(minor_table &m, quolynode **result) {
    quoly_handle determinant;
    determinant_of(m, determinant.slot());
    fast_quoly_mult(result, determinant.get());
}

void small_determ(elimination &e, int k, quolynode **result) {
    minor_table block(e.n - k);
    for (int row = k; row < e.n; row++)
        for (int column = k; column < e.n; column++) block.at(row - k, column - k) = e.cell(row, column);
    multiply_by_determinant(block, result);
}

} // namespace tolvek
