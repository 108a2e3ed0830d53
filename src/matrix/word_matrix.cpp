/* Both eliminations take the columns in panels of four. Inside a panel they go step by step; what the panel's four pivots
   do to the rest of a row is one pass over the row with one reduction an entry. */
#include "matrix/word_matrix.h"

#include "poly/flat_uni_work.h"
#include "top/interrupts.h"

namespace tolvek {

static constexpr int panel_width = 4;

static std::size_t index_of(int i) { return static_cast<std::size_t>(i); }

word_matrix::word_matrix(int its_rows, int its_cols)
    : columns(its_cols), cells(index_of(its_rows) * index_of(its_cols)), row_of(index_of(its_rows)) {
    for (int i = 0; i < its_rows; i++)
        row_of[index_of(i)] = cells.data() + static_cast<std::ptrdiff_t>(i) * static_cast<std::ptrdiff_t>(columns);
}

/* ---- rows ---- */

/* Four products and the reduction of P. Montgomery, 1985: the factors come multiplied by 2^32. The sum is at most
   4 (p - 1)^2, so that its high word is below 2 p. */
TOLVEK_WIDE_VECTORS
static void add_four_rows(uint32_t *x, const uint32_t *const *y, const uint32_t *c, int n, uint32_t p,
                          uint32_t p_inverse) {
    const uint32_t *const y0 = y[0], *const y1 = y[1], *const y2 = y[2], *const y3 = y[3];
    const uint64_t c0 = c[0], c1 = c[1], c2 = c[2], c3 = c[3];
    for (int i = 0; i < n; i++) {
        const uint64_t t = c0 * y0[i] + c1 * y1[i] + c2 * y2[i] + c3 * y3[i];
        const uint32_t m = static_cast<uint32_t>(t) * p_inverse;
        const uint32_t high = uni_cut(static_cast<uint32_t>(t >> 32), p);
        const uint32_t r = high - static_cast<uint32_t>(uint64_t{m} * p >> 32); /* above -p */
        x[i] = uni_cut(x[i] + (r + p < r ? r + p : r), p);
    }
}

void word_add_rows(const uni_field &f, uint32_t *x, const uint32_t *const *y, const uint32_t *c, int count, int n) {
    int i = 0;
    if (f.odd_prime())
        for (; i + panel_width <= count; i += panel_width) {
            uint32_t scaled[panel_width];
            for (int k = 0; k < panel_width; k++) scaled[k] = f.product(c[i + k], f.word);
            add_four_rows(x, y + i, scaled, n, f.p, f.p_inverse);
        }
    for (; i < count; i++)
        if (c[i]) uni_add_row(f, x, y[i], index_of(n), c[i]);
}

/* ---- the determinant ---- */

/* The first row from `row` on with an entry in the column, or -1. */
static int find_pivot(const word_matrix &m, int row, int column) {
    while (row < m.rows() && m[row][column] == 0) row++;
    return row < m.rows() ? row : -1;
}

/* Clears the columns first .. first + width - 1 below their pivots inside the panel and leaves the negative multipliers in
   the place of what was cleared. The determinant's factor; 0 without a pivot. */
static uint32_t eliminate_panel(const uni_field &f, word_matrix &m, int first, int width) {
    uint32_t factor = 1;
    for (int k = first; k < first + width; k++) {
        const int pivot = find_pivot(m, k, k);
        if (pivot < 0) return 0;
        if (pivot != k) {
            m.swap_rows(pivot, k);
            factor = f.negative(factor);
        }
        const uint32_t *top = m[k];
        factor = f.product(factor, top[k]);
        const uint32_t scale = f.negative(f.inverse(top[k]));
        for (int i = k + 1; i < m.rows(); i++) {
            uint32_t *row = m[i];
            if (row[k] == 0) continue;
            row[k] = f.product(row[k], scale);
            for (int j = k + 1; j < first + width; j++) row[j] = f.sum(row[j], f.product(top[j], row[k]));
        }
    }
    return factor;
}

uint32_t word_determinant(const uni_field &f, word_matrix *matrix) {
    word_matrix &m = *matrix;
    const int n = m.rows();
    uint32_t det = 1;
    for (int first = 0; first < n; first += panel_width) {
        const int width = n - first < panel_width ? n - first : panel_width, rest = n - first - width;
        det = f.product(det, eliminate_panel(f, m, first, width));
        if (det == 0 || rest == 0) return det;
        const uint32_t *pivots[panel_width];
        for (int i = first; i < n; i++) {
            const int above = i - first < width ? i - first : width;
            word_add_rows(f, m[i] + first + width, pivots, m[i] + first, above, rest);
            if (above < width) pivots[above] = m[i] + first + width;
            safe_point();
        }
    }
    return det;
}

/* ---- the inverse ---- */

/* Brings rows with pivots for the columns first .. first + width - 1 to the rows first, first + 1, ...: swapped[k] is the
   row that k changed places with. The search goes on in a copy of the panel, which is all that it changes. */
static uint32_t choose_pivots(const uni_field &f, word_matrix &m, int first, int width, int *swapped) {
    const int n = m.rows();
    word_matrix panel(n - first, width);
    for (int i = first; i < n; i++)
        for (int k = 0; k < width; k++) panel[i - first][k] = m[i][first + k];
    uint32_t factor = 1;
    for (int k = 0; k < width; k++) {
        const int pivot = find_pivot(panel, k, k);
        if (pivot < 0) return 0;
        swapped[first + k] = first + pivot;
        if (pivot != k) factor = f.negative(factor);
        panel.swap_rows(pivot, k);
        m.swap_rows(first + pivot, first + k);
        factor = f.product(factor, panel[k][k]);
        const uint32_t scale = f.negative(f.inverse(panel[k][k]));
        for (int i = k + 1; i < n - first; i++) {
            const uint32_t c = f.product(panel[i][k], scale);
            if (c == 0) continue;
            for (int j = k; j < width; j++) panel[i][j] = f.sum(panel[i][j], f.product(panel[k][j], c));
        }
    }
    return factor;
}

/* v := the inverse of the block of pivots, all of whose leading minors are other than 0. */
static void invert_block(const uni_field &f, const word_matrix &m, int first, int width, uint32_t (*v)[panel_width]) {
    for (int i = 0; i < width; i++)
        for (int j = 0; j < width; j++) v[i][j] = m[first + i][first + j];
    for (int k = 0; k < width; k++) {
        const uint32_t inverse = f.inverse(v[k][k]);
        v[k][k] = 1;
        for (int j = 0; j < width; j++) v[k][j] = f.product(v[k][j], inverse);
        for (int i = 0; i < width; i++) {
            if (i == k) continue;
            const uint32_t c = f.negative(v[i][k]);
            v[i][k] = 0;
            for (int j = 0; j < width; j++) v[i][j] = f.sum(v[i][j], f.product(v[k][j], c));
        }
    }
}

/* One panel of the elimination in place: with B the block of pivots, the pivot rows (B R) become (B^-1 B^-1 R), and every
   other row (C S) becomes (-C B^-1, S - C B^-1 R). */
static void sweep_panel(const uni_field &f, word_matrix &m, int first, int width) {
    const int n = m.rows();
    uint32_t v[panel_width][panel_width];
    invert_block(f, m, first, width, v);
    const uint32_t *old_rows[panel_width], *new_rows[panel_width];
    for (int k = 0; k < width; k++) {
        for (int j = 0; j < width; j++) m[first + k][first + j] = j == k;
        old_rows[k] = m[first + k];
    }
    word_matrix swept(width, n);
    for (int k = 0; k < width; k++) {
        std::memset(swept[k], 0, index_of(n) * sizeof(uint32_t));
        word_add_rows(f, swept[k], old_rows, v[k], width, n);
        new_rows[k] = swept[k];
    }
    for (int i = 0; i < n; i++) {
        if (i >= first && i < first + width) continue;
        uint32_t factors[panel_width];
        for (int k = 0; k < width; k++) {
            factors[k] = f.negative(m[i][first + k]);
            m[i][first + k] = 0;
        }
        word_add_rows(f, m[i], new_rows, factors, width, n);
        safe_point();
    }
    for (int k = 0; k < width; k++) std::memcpy(m[first + k], swept[k], index_of(n) * sizeof(uint32_t));
}

bool word_invert(const uni_field &f, word_matrix *matrix, uint32_t *det) {
    word_matrix &m = *matrix;
    const int n = m.rows();
    buffer<int> swapped(index_of(n));
    uint32_t product = 1;
    for (int first = 0; first < n; first += panel_width) {
        const int width = n - first < panel_width ? n - first : panel_width;
        product = f.product(product, choose_pivots(f, m, first, width, swapped.data()));
        if (product == 0) return false;
        sweep_panel(f, m, first, width);
    }
    /* What rows changed places before their elimination are columns of the inverse. */
    for (int i = 0; i < n; i++)
        for (int k = n - 1; k >= 0; k--) {
            const int other = swapped[index_of(k)];
            const uint32_t kept = m[i][k];
            m[i][k] = m[i][other];
            m[i][other] = kept;
        }
    if (det) *det = product;
    return true;
}

} // namespace tolvek
