/* Work arrays, and the record of a matrix in flight.

   A work array is asked of the heap when it is first claimed, and kept for the next claim. Claims need not end in the
   order in which they began: values are swapped and taken over. */
#include "matrix/matrix_value.h"

#include "language/scanner.h"
#include "matrix/array_map.h"
#include "quoly/ring_change.h"
#include "top/driver.h"
#include "top/interrupts.h"

namespace tolvek {

/* ---- work arrays ---- */

int first_available = 1;
static quolynode **workhead[work_arrays];
static bool in_use[work_arrays];

int new_worknode() {
    if (first_available > work_arrays) array_error(88, token);
    int i = 0;
    while (in_use[i]) i++;
    if (!workhead[i]) workhead[i] = static_cast<quolynode **>(heap_request(most_cells * sizeof(quolynode *)));
    in_use[i] = true;
    first_available++;
    return i;
}

void free_work(int index) {
    in_use[index] = false;
    first_available--;
}

quolynode **work_cells(int index) { return workhead[index]; }

/* ---- the value ---- */

/* The fields of a scalar; what they held has gone already, or elsewhere. */
void matrix_value::forget() {
    size = 0;
    rows = 0;
    sparse = nullptr;
    owned = holes = false;
}

/* A borrowed matrix no longer makes replaced values wait, and its rows may change again; an owned one frees what it has. */
void matrix_value::clear() {
    free_quoly(scalar.slot());
    if (size && !owned) borrowed_matrices--;
    if (size && !owned && sparse) take_rows_back(sparse);
    if (size && owned && sparse) free_sparse(&sparse, rows);
    if (size && owned && work.claimed())
        for (int64_t i = 0; i < size; i++) free_quoly(&cell(i));
    work.give_back();
    forget();
}

template <class T> static void exchange(T &a, T &b) {
    T kept = a;
    a = b;
    b = kept;
}

void matrix_value::swap(matrix_value &other) {
    exchange(*scalar.slot(), *other.scalar.slot());
    exchange(size, other.size);
    exchange(rows, other.rows);
    exchange(sparse, other.sparse);
    exchange(owned, other.owned);
    exchange(holes, other.holes);
    work.swap(other.work);
}

void matrix_value::make_dense(int64_t its_rows, int64_t its_cols) {
    if (oversize(its_rows, its_cols)) array_error(43, token);
    clear();
    work.claim();
    rows = static_cast<int32_t>(its_rows);
    size = its_rows * its_cols;
    owned = true;
    for (int64_t i = 0; i < size; i++) cell(i) = nullptr; /* clear() may meet it half filled */
}

void matrix_value::make_borrowed(int64_t its_rows, int64_t its_cols) {
    clear();
    work.claim();
    rows = static_cast<int32_t>(its_rows);
    size = its_rows * its_cols;
    borrowed_matrices++;
}

void matrix_value::make_sparse(sparse_frame *head, int32_t its_rows, int64_t its_cols) {
    clear();
    sparse = head;
    rows = its_rows;
    size = its_rows * its_cols;
    owned = true;
}

sparse_frame *matrix_value::release_sparse() {
    sparse_frame *head = sparse;
    forget();
    return head;
}

void matrix_value::borrow_sparse(array_record *a) {
    clear();
    sparse = a->sparse_head;
    rows = a->rows;
    size = a->size;
    borrowed_matrices++;
    lend_rows(sparse);
}

void matrix_value::copy_from(const matrix_value &m) {
    if (m.sparse) {
        sparse_frame *head;
        copy_sparse(m.sparse, &head, m.rows, false);
        make_sparse(head, m.rows, m.size / m.rows);
        return;
    }
    make_dense(m.rows, m.size / m.rows);
    holes = m.holes;
    for (int64_t i = 0; i < size; i++) {
        if (m.cell(i)) quoly_assign(m.cell(i), &cell(i));
        if (i % 4096 == 0) safe_point();
    }
}

void matrix_value::own() {
    if (is_scalar() || owned) return;
    matrix_value copy;
    copy.copy_from(*this);
    take(copy);
}

void matrix_value::own_in_ring() {
    own();
    if (!ring_is_paused()) return;
    if (!is_dense()) return map_entries(*this, [](const quolynode *, quolynode **entry) { quoly_into_ring(entry); });
    for (int64_t i = 0; i < size; i++)
        if (cell(i)) quoly_into_ring(&cell(i));
}

void matrix_value::fill_holes() {
    if (!holes) return;
    own();
    for (int64_t i = 0; i < size; i++)
        if (!cell(i)) {
            quoly_set(0, &cell(i));
            warn_uninitialized(nullptr);
        }
    holes = false;
}

/* The cells of one row: its entries, which ascend, and zeros between them. */
static void fill_row(const colm *c, const matrix_value &from, matrix_value &to, int32_t row) {
    for (int64_t column = 1; column <= from.cols(); column++) {
        quolynode **cell = &to.cell((column - 1) * from.rows + row);
        if (c && c->column == column) {
            quoly_assign(c->value, cell);
            c = c->next;
        } else {
            quoly_set(0, cell);
        }
    }
}

void matrix_value::to_dense() {
    if (!sparse) return;
    if (size > most_cells) array_error(250, token);
    matrix_value dense;
    dense.make_dense(rows, size / rows);
    row_walk walk(sparse);
    for (int32_t r = 0; r < rows; r++, walk.next()) {
        safe_point();
        fill_row(*walk, *this, dense, r);
    }
    take(dense);
}

void matrix_value::to_sparse() {
    sparse_handle kept(rows);
    row_walk walk(kept.get());
    for (int32_t r = 0; r < rows; r++, walk.next()) {
        row_builder row(&*walk);
        for (int64_t i = r; i < size; i += rows) {
            quoly_handle entry;
            exchange(*entry.slot(), cell(i));
            if (entry) row.add(static_cast<int32_t>(i / rows) + 1, entry);
        }
    }
    const int32_t its_rows = rows;
    const int64_t its_cols = cols();
    make_sparse(kept.release(), its_rows, its_cols);
}

/* ---- arrays and the system array ---- */

/* Cells are copied as pointers. The system array alone is copied whole: the statement may replace it while its value is on
   the way. */
void fetch_array(array_record *a, matrix_value &m, const token_record *shown_name) {
    if (a->sparse_head) {
        m.borrow_sparse(a);
        if (a == &syst) m.own();
        return;
    }
    m.make_borrowed(a->rows, a->cols());
    for (int64_t i = 0; i < m.size; i++) {
        quolynode *&cell = element(a, i);
        if (!cell) {
            quoly_set(0, &cell);
            warn_uninitialized_in(shown_name ? *shown_name : a->tok);
        }
        m.cell(i) = cell;
    }
    if (a == &syst) m.own();
}

/* What m borrows is copied first: it may go with the old values. */
void fill_syst_array(matrix_value &m) {
    m.own_in_ring();
    clear_syst();
    syst.rows = m.rows;
    syst.size = m.size;
    syst.sparse_head = m.sparse;
    if (!m.sparse) {
        make_syst_cells();
        syst.last = static_cast<int32_t>(m.size) - 1;
        for (int64_t i = 0; i < m.size; i++) {
            syst_cells[i] = m.cell(i);
            m.cell(i) = nullptr;
        }
    }
    m.sparse = nullptr;
    m.clear();
    syst_dump = 1;
}

} // namespace tolvek
