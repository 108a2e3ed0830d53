/* Transposes, diagonals, sums, counts and extremes of arrays. */
#include "language/scanner.h"
#include "matrix/array_arithmetic.h"
#include "quoly/compare.h"
#include "top/interrupts.h"

namespace tolvek {

/* ---- shapes ---- */

/* An empty dense matrix that holds entries of m: moved if they are owned, borrowed like them otherwise. */
static void make_like(matrix_value &m, int64_t rows, int64_t cols, matrix_value &fresh) {
    if (m.owned)
        fresh.make_dense(rows, cols);
    else
        fresh.make_borrowed(rows, cols);
}

/* A borrowed cell stays with its array, and two matrices point to it. */
static void move_cell(matrix_value &m, int64_t from, matrix_value &to, int64_t at) {
    to.cell(at) = m.cell(from);
    if (m.owned) m.cell(from) = nullptr;
}

void transpose(matrix_value &m) {
    if (m.is_scalar()) array_error(72, token);
    if (m.is_sparse()) {
        m.own();
        const int64_t cols = m.size / m.rows;
        trans_sparse(&m.sparse, m.rows, static_cast<int32_t>(cols));
        m.set_shape(static_cast<int32_t>(cols));
        return;
    }
    m.fill_holes();
    const int64_t rows = m.rows, cols = m.cols();
    matrix_value fresh;
    make_like(m, cols, rows, fresh);
    for (int64_t i = 0; i < m.size; i++) move_cell(m, i, fresh, i % rows * cols + i / rows);
    m.take(fresh);
}

static void sparse_diagonal(matrix_value &m, int32_t count) {
    sparse_handle column(count);
    row_walk from(m.sparse), to(column.get());
    for (int32_t r = 1; r <= count; r++, from.next(), to.next()) {
        const colm *c = entry_at(&*from, r);
        if (!c) continue;
        quoly_handle copy;
        quoly_assign(c->value, copy.slot());
        row_builder(&*to).add(1, copy);
    }
    m.make_sparse(column.release(), count, 1);
}

void extract_diagonal(matrix_value &m) {
    if (m.is_scalar()) array_error(74, token);
    const int32_t count = m.rows < m.cols() ? m.rows : m.cols();
    if (m.is_sparse()) return sparse_diagonal(m, count);
    m.fill_holes();
    matrix_value fresh;
    make_like(m, count, 1, fresh);
    for (int64_t i = 0; i < count; i++) move_cell(m, i * (m.rows + int64_t{1}), fresh, i);
    m.take(fresh);
}

/* ---- sums ---- */

/* Calls visit(value) for each entry that is stored. */
template <class Visit> static void for_entries(const matrix_value &m, Visit visit) {
    if (m.is_scalar()) {
        visit(m.scalar.get());
    } else if (m.is_sparse()) {
        row_walk walk(m.sparse);
        for (int32_t r = 0; r < m.rows; r++, walk.next())
            for (const colm *c = *walk; c; c = c->next) {
                safe_point();
                visit(c->value);
            }
    } else {
        for (int64_t i = 0; i < m.size; i++) {
            safe_point();
            visit(m.cell(i));
        }
    }
}

void sum_arr(matrix_value &m, quolynode **result) {
    m.fill_holes();
    quoly_handle sum;
    quoly_set(0, sum.slot());
    for_entries(m, [&](const quolynode *q) { better_quoly_add(sum.get(), q, sum.slot()); });
    sum.release_to(result);
}

void trace_of(matrix_value &m, quolynode **result) {
    if (m.is_scalar() || !m.is_square()) array_error(194, token);
    extract_diagonal(m);
    sum_arr(m, result);
}

bool all_zero(const matrix_value &m) {
    bool found = false;
    for_entries(m, [&](const quolynode *q) { found = found || !quoly_is_zero(q); });
    return !found;
}

/* ---- comparisons ---- */

/* -1, 0 or 1. Fractions are numbers here. */
static int compare_numbers(const quolynode *a, const quolynode *b) {
    if (!is_comparable(a) || !is_comparable(b)) array_error(119, token);
    return compare_quolys(a, b);
}

/* Equality asks for equal values of any kind, the other relations for numbers. */
int64_t count_entries(matrix_value &m, int relation, const quolynode *value) {
    if (m.is_sparse()) array_error(242, token);
    m.fill_holes();
    int64_t count = 0;
    for_entries(m, [&](const quolynode *q) {
        if (relation == '=')
            count += quoly_equal(q, value) != 0;
        else
            count += compare_numbers(q, value) == (relation == '>' ? 1 : -1);
    });
    return count;
}

/* The best entry so far. */
struct extreme_search {
    bool greatest, positive;
    const quolynode *best = nullptr;
    int64_t place = -1;

    void consider(const quolynode *q, int64_t at) {
        const int sign = compare_numbers(q, quol_num_0);
        if (positive && sign <= 0) return;
        if (best && compare_numbers(q, best) != (greatest ? 1 : -1)) return;
        best = q;
        place = at;
    }
};

/* By rows; the zeros that are not stored are looked at once in a row, at the first of them. */
static void search_rows(const matrix_value &m, extreme_search &search) {
    const int64_t rows = m.rows, cols = m.cols();
    row_walk walk(m.sparse);
    for (int64_t r = 0; r < rows; r++, walk.next()) {
        safe_point();
        int64_t next = 1;
        bool gap = false;
        const auto look_at_gap = [&] {
            if (!gap && !search.positive) search.consider(quol_num_0, (next - 1) * rows + r);
            gap = true;
        };
        for (const colm *c = *walk; c; c = c->next) {
            if (c->column > next) look_at_gap();
            search.consider(c->value, (c->column - int64_t{1}) * rows + r);
            next = c->column + int64_t{1};
        }
        if (next <= cols) look_at_gap();
    }
}

int64_t extreme_entry(matrix_value &m, bool greatest, bool positive) {
    extreme_search search{greatest, positive};
    m.fill_holes();
    if (m.is_sparse()) {
        search_rows(m, search);
    } else {
        int64_t at = 0;
        for_entries(m, [&](const quolynode *q) { search.consider(q, at++); });
    }
    return search.place;
}

} // namespace tolvek
