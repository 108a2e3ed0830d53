/* Determinants of sparse matrices. Numbers go the ways of dense matrices while there is room; what else there is is
   eliminated row by row, where each pivot is sought in the row with the fewest entries. */
#include "matrix/elimination_work.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

/* The rows of a matrix, taken out of it. */
class loose_rows {
  public:
    explicit loose_rows(matrix_value &m) : heads(static_cast<std::size_t>(m.rows)) {
        row_walk walk(m.sparse);
        for (colm *&head : heads) {
            head = *walk;
            *walk = nullptr;
            walk.next();
        }
    }
    ~loose_rows() {
        for (colm *&head : heads) free_sparse_row(&head);
    }
    loose_rows(const loose_rows &) = delete;
    loose_rows &operator=(const loose_rows &) = delete;
    int count() const { return static_cast<int>(heads.size()); }
    colm *&operator[](int i) { return heads[static_cast<std::size_t>(i)]; }

  private:
    buffer<colm *> heads;
};

/* What is known of a row that is still to be eliminated. */
struct row_measure {
    int32_t entries; /* -1: it has been eliminated */
    int64_t mass;    /* of its lightest entry */
    int32_t column;  /* where that stands */
};

row_measure measure_row(const colm *c) {
    row_measure found{0, INT64_MAX, 0};
    for (; c; c = c->next, found.entries++) {
        const int64_t mass = entry_mass(c->value);
        if (mass >= found.mass) continue;
        found.mass = mass;
        found.column = c->column;
    }
    return found;
}

bool is_better(const row_measure &a, const row_measure &b) {
    return a.entries != b.entries ? a.entries < b.entries : a.mass < b.mass;
}

int best_row(const buffer<row_measure> &measures) {
    std::size_t best = measures.size();
    for (std::size_t i = 0; i < measures.size(); i++)
        if (measures[i].entries >= 0 && (best == measures.size() || is_better(measures[i], measures[best]))) best = i;
    return static_cast<int>(best);
}

/* The entry of the column leaves the row: its value, or null. */
quolynode *take_entry(colm **row, int32_t column) {
    colm **link = find_entry(row, column);
    colm *c = *link;
    if (!c || c->column != column) return nullptr;
    *link = c->next;
    quolynode *value = c->value;
    c->value = nullptr;
    c->next = nullptr;
    free_colm(&c);
    return value;
}

/* *row := *row - factor * other */
void subtract_multiple(colm **row, const quolynode *factor, const colm *other) {
    for (colm **link = row; other; other = other->next) {
        quoly_handle product;
        quoly_mult(factor, other->value, product.slot());
        link = find_entry(link, other->column);
        if (!*link || (*link)->column != other->column) {
            if (quoly_is_zero(product.get())) continue;
            quoly_inplace(product.get());
            colm *c = newcolm();
            c->column = other->column;
            c->value = product.release();
            c->next = *link;
            *link = c;
        } else {
            best_quoly_sub(&(*link)->value, product.release());
            if (quoly_is_zero((*link)->value)) {
                colm *gone = *link;
                *link = gone->next;
                gone->next = nullptr;
                free_colm(&gone);
                continue;
            }
        }
        link = &(*link)->next;
    }
}

/* The sign of the permutation that takes row i to column of[i]. */
bool is_odd(buffer<int> &of) {
    bool odd = false;
    for (std::size_t i = 0; i < of.size(); i++)
        while (of[i] != static_cast<int>(i)) {
            const int to = of[i];
            of[i] = of[static_cast<std::size_t>(to)];
            of[static_cast<std::size_t>(to)] = to;
            odd = !odd;
        }
    return odd;
}

/* The row's other entries := themselves divided by the pivot. */
void divide_row(colm *row, const quolynode *pivot) {
    quoly_handle inverse;
    quoly_assign(pivot, inverse.slot());
    quoly_reciprocal(inverse.slot());
    for (; row; row = row->next) {
        if (pivot->is_num)
            fast_quoly_mult(&row->value, inverse.get());
        else
            fast_quoly_quot(&row->value, pivot, 0);
        safe_point();
    }
}

void clear_column(loose_rows &rows, buffer<row_measure> &measures, int top, int32_t column) {
    for (int i = 0; i < rows.count(); i++) {
        row_measure &measure = measures[static_cast<std::size_t>(i)];
        if (measure.entries < 0) continue;
        quoly_handle factor;
        *factor.slot() = take_entry(&rows[i], column);
        if (!factor) continue;
        subtract_multiple(&rows[i], factor.get(), rows[top]);
        measure = measure_row(rows[i]);
        safe_point();
    }
}

/* The product of the pivots goes into *result; false: a row without entries is left over. */
bool eliminate_rows(loose_rows &rows, quolynode **result) {
    const int n = rows.count();
    buffer<row_measure> measures;
    buffer<int> column_of(static_cast<std::size_t>(n));
    for (int i = 0; i < n; i++) measures.push(measure_row(rows[i]));
    for (int step = 0; step < n; step++) {
        if (verbose) dumpitt(" ", step + 1, 0, 0, 0);
        const int top = best_row(measures);
        row_measure &measure = measures[static_cast<std::size_t>(top)];
        if (measure.entries == 0) return false;
        const int32_t column = measure.column;
        measure.entries = -1;
        column_of[static_cast<std::size_t>(top)] = column - 1;
        quoly_handle pivot;
        *pivot.slot() = take_entry(&rows[top], column);
        fast_quoly_mult(result, pivot.get());
        divide_row(rows[top], pivot.get());
        clear_column(rows, measures, top, column);
    }
    if (is_odd(column_of)) quoly_inplace(*result);
    return true;
}

/* The sparse elimination, "G.E." in a plain form. */
void sparse_gauss_elim(matrix_value &m, quolynode **result) {
    progress_level level;
    const int n = m.rows;
    if (verbose) dumpitt("Standard G.E. method, rank ", n, 1, 1, 1);
    loose_rows rows(m);
    if (!eliminate_rows(rows, result)) quoly_set(0, result);
    level.leave(n, 0, 1);
}

} // namespace

void sparse_determinant(matrix_value &m, const determinant_hints &hints, quolynode **result) {
    bool all_numbers = sparse_allpolys(m.sparse, m.rows);
    if (all_numbers && m.rows > 1 && m.size <= most_cells) {
        m.to_dense();
        return mat_determinant(m, hints, result);
    }
    sparse_gauss_elim(m, result);
    divide_fct(result, hints.factor, true);
}

} // namespace tolvek
