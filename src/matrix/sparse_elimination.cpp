/* Elimination of sparse matrices, row by row. Each pivot is sought in the row with the fewest entries. Rows and columns stay
   where they are: which column's entry was a row's pivot makes the sign in the end. */
#include "matrix/elimination_work.h"
#include "top/interrupts.h"
#include "top/settings.h"

#include <cmath>

namespace tolvek {

/* ---- rows on their own ---- */

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

/* What can be divided by comes first. A number serves better than any other value; of floats the larger one, else what has the lesser mass. */
bool is_better_pivot(const quolynode *a, const quolynode *b) {
    const bool usable = is_pivot(a);
    if (usable != is_pivot(b)) return usable;
    if (a->is_num != b->is_num) return a->is_num;
    if (flotemode && a->is_num) return std::fabs(a->numb->flote_val) > std::fabs(b->numb->flote_val);
    return entry_mass(a) < entry_mass(b);
}

/* What is known of a row that is still to be eliminated. */
struct row_measure {
    int32_t entries; /* -1: it has been eliminated */
    const colm *best;
};

row_measure measure_row(const colm *c) {
    row_measure found{0, c};
    for (; c; c = c->next, found.entries++)
        if (is_better_pivot(c->value, found.best->value)) found.best = c;
    return found;
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

void insert_entry(colm **link, int32_t column, quoly_handle &value) {
    colm *c = newcolm();
    c->column = column;
    c->value = value.release();
    c->next = *link;
    *link = c;
}

/* *row := *row - factor * other */
void subtract_multiple(colm **row, const quolynode *factor, const colm *other) {
    for (colm **link = row; other; other = other->next) {
        quoly_handle product;
        quoly_mult(factor, other->value, product.slot());
        if (quoly_is_zero(product.get())) continue;
        link = find_entry(link, other->column);
        if (!*link || (*link)->column != other->column) {
            quoly_inplace(product.get());
            insert_entry(link, other->column, product);
        } else {
            best_quoly_sub(&(*link)->value, product.release());
            if (quoly_is_zero((*link)->value)) {
                free_colm(link);
                continue;
            }
        }
        link = &(*link)->next;
    }
}

/* ---- the elimination ---- */

class row_elimination {
  public:
    row_elimination(sparse_elimination &its_matrix, bool without_fractions)
        : e(its_matrix), fraction_free(without_fractions), rows(e.m),
          column_of(static_cast<std::size_t>(rows.count())) {
        for (int i = 0; i < rows.count(); i++) measures.push(measure_row(rows[i]));
        quoly_set(1, previous.slot());
    }
    /* The determinant goes into *result. */
    void run() {
        if (!run_steps()) return quoly_set(0, e.result);
        if (fraction_free) fast_quoly_mult(e.result, previous.get());
        if (make_identity(column_of)) quoly_inplace(*e.result);
    }

  private:
    bool run_steps();
    int best_row() const;
    void eliminate_by(int top);
    void subtract_row(int i, int top, const quolynode *pivot, quoly_handle &factor);
    void combine_rows(int i, int top, const quolynode *pivot, const quolynode *factor);
    std::size_t index_of(int i) const { return static_cast<std::size_t>(i); }

    sparse_elimination &e;
    bool fraction_free;
    loose_rows rows;
    buffer<row_measure> measures;
    buffer<int> column_of;
    quoly_handle previous; /* without fractions: the pivot of the step before */
};

/* -1: a row without entries is left. */
int row_elimination::best_row() const {
    int best = -1;
    for (int i = 0; i < static_cast<int>(measures.size()); i++) {
        const row_measure &m = measures[index_of(i)];
        if (m.entries == 0) return -1;
        if (m.entries < 0) continue;
        const row_measure *old = best < 0 ? nullptr : &measures[index_of(best)];
        if (!old || m.entries < old->entries ||
            (m.entries == old->entries && is_better_pivot(m.best->value, old->best->value)))
            best = i;
    }
    return best;
}

/* Row i loses a multiple of row `top`; factor is its entry in the pivot's column, which has left it. */
void row_elimination::subtract_row(int i, int top, const quolynode *pivot, quoly_handle &factor) {
    if (!factor) return;
    check_pivot(pivot);
    fast_quoly_quot(factor.slot(), pivot, 0);
    subtract_multiple(&rows[i], factor.get(), rows[top]);
}

/* The same without fractions; the factor may be null. */
void row_elimination::combine_rows(int i, int top, const quolynode *pivot, const quolynode *factor) {
    for (colm *c = rows[i]; c; c = c->next) {
        fast_quoly_mult(&c->value, pivot);
        safe_point();
    }
    if (factor) subtract_multiple(&rows[i], factor, rows[top]);
    for (colm *c = rows[i]; c; c = c->next) {
        trial_divide(&c->value, previous.get());
        safe_point();
    }
}

void row_elimination::eliminate_by(int top) {
    const int32_t column = measures[index_of(top)].best->column;
    measures[index_of(top)].entries = -1;
    column_of[index_of(top)] = column - 1;
    quoly_handle pivot;
    *pivot.slot() = take_entry(&rows[top], column);
    if (!fraction_free) fast_quoly_mult(e.result, pivot.get());
    for (int i = 0; i < rows.count(); i++) {
        row_measure &measure = measures[index_of(i)];
        if (measure.entries < 0) continue;
        quoly_handle factor;
        *factor.slot() = take_entry(&rows[i], column);
        if (!factor && !fraction_free) continue;
        if (fraction_free)
            combine_rows(i, top, pivot.get(), factor.get());
        else
            subtract_row(i, top, pivot.get(), factor);
        measure = measure_row(rows[i]);
        safe_point();
    }
    if (fraction_free) pivot.release_to(previous.slot());
}

/* False: the determinant is 0. */
bool row_elimination::run_steps() {
    const int n = rows.count();
    for (int step = 0; step < n; step++) {
        if (verbose && step + 1 < n && step % (n / 32 + 1) == 0) dumpitt(" ", step + 1, 0, 0, 0);
        const int top = best_row();
        if (top < 0) return false;
        if (step < n - 2)
            check_pivot(
                measures[index_of(top)].best->value); /* later steps divide by it, or find a row that it made 0 */
        eliminate_by(top);
    }
    return true;
}

bool eliminate_rows(sparse_elimination &e, const char *title, bool without_fractions) {
    progress_level level;
    if (verbose) dumpitt(title, e.n, 1, 1, 1);
    row_elimination(e, without_fractions).run();
    level.leave(e.n, 0, 1);
    return true;
}

} // namespace

bool make_identity(buffer<int> &of) {
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

bool by_sparse_bareiss(sparse_elimination &e) {
    if ((gauss_cutoff != 1 && !has_zero_divisors()) || !e.no_denoms) return false;
    return eliminate_rows(e, "Gauss-Bareiss method, sparse, size ", true);
}

bool by_sparse_fractions(sparse_elimination &e) {
    return eliminate_rows(e, "Gauss-Jordan elim method, sparse, size ", false);
}

} // namespace tolvek
