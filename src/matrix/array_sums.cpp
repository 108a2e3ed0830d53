/* Sums and differences of array values. */
#include "language/scanner.h"
#include "matrix/array_arithmetic.h"
#include "top/interrupts.h"

namespace tolvek {

/* ---- sparse with sparse ---- */

/* One operand of a sum of rows. The nodes of an owned one are taken, a borrowed one is copied. */
struct row_operand {
    colm **head; /* owned: what is left of the row */
    const colm *at;
    bool owned, negated;

    row_operand(colm **row, bool is_owned, bool is_negated)
        : head(row), at(*row), owned(is_owned), negated(is_negated) {}

    void pass() {
        if (owned) {
            free_colm(head);
            at = *head;
        } else {
            at = at->next;
        }
    }
    void take_into(row_builder &row) {
        if (owned) {
            colm *c = *head;
            if (negated) quoly_inplace(c->value);
            at = *head = c->next;
            row.add_node(c);
        } else {
            quoly_handle copy;
            (negated ? quoly_makeneg : quoly_assign)(at->value, copy.slot());
            row.add(at->column, copy);
            at = at->next;
        }
    }
};

/* Both have an entry in the column: their sum, if it is not 0, in a node of an owned one. */
static void add_entries(row_operand &a, row_operand &b, row_builder &row) {
    const int32_t column = a.at->column;
    quoly_handle sum;
    if (a.owned) {
        colm *c = *a.head;
        *sum.slot() = c->value;
        c->value = nullptr;
        (b.negated ? better_quoly_sub : better_quoly_add)(sum.get(), b.at->value, sum.slot());
    } else {
        (b.negated ? quoly_sub : quoly_add)(a.at->value, b.at->value, sum.slot());
    }
    a.pass();
    b.pass();
    row.add(column, sum);
}

static void add_rows(row_operand a, row_operand b, colm **sum) {
    row_builder row(sum);
    while (a.at && b.at) {
        safe_point();
        if (a.at->column < b.at->column)
            a.take_into(row);
        else if (b.at->column < a.at->column)
            b.take_into(row);
        else
            add_entries(a, b, row);
    }
    while (a.at) a.take_into(row);
    while (b.at) b.take_into(row);
}

/* Row by row, each in time that is proportional to its entries. */
static void add_sparses(matrix_value &a, matrix_value &b, bool minus) {
    sparse_handle sum(a.rows);
    row_walk row_a(a.sparse), row_b(b.sparse), row_sum(sum.get());
    for (int32_t r = 0; r < a.rows; r++, row_a.next(), row_b.next(), row_sum.next()) {
        safe_point();
        add_rows({&*row_a, a.owned, false}, {&*row_b, b.owned, minus}, &*row_sum);
    }
    const int64_t cols = a.size / a.rows;
    a.make_sparse(sum.release(), a.rows, cols);
}

/* ---- sparse with dense ---- */

/* The entries are added to, or subtracted from, the cells of an owned dense matrix. */
static void add_one_sparse(matrix_value &dense, const matrix_value &thin, bool minus) {
    row_walk walk(thin.sparse);
    for (int32_t r = 0; r < thin.rows; r++, walk.next()) {
        safe_point();
        for (const colm *c = *walk; c; c = c->next) {
            quolynode *&cell = dense.cell(static_cast<int64_t>(c->column - 1) * dense.rows + r);
            (minus ? better_quoly_sub : better_quoly_add)(cell, c->value, &cell);
        }
    }
}

static void make_private(matrix_value &m) {
    m.own();
    m.fill_holes();
}

/* The dense operand becomes the sum. */
static void add_mixed(matrix_value &a, matrix_value &b, bool minus) {
    if (a.is_sparse()) {
        if (minus)
            negate_value(b);
        else
            make_private(b);
        add_one_sparse(b, a, false);
        a.take(b);
    } else {
        make_private(a);
        add_one_sparse(a, b, minus);
    }
}

/* ---- all ---- */

static void add_scalars(matrix_value &a, matrix_value &b, bool minus) {
    (minus ? best_quoly_sub : best_quoly_add)(a.scalar.slot(), b.scalar.release());
}

void add_values(matrix_value &a, matrix_value &b, bool minus) {
    if (a.is_scalar() && b.is_scalar()) {
        add_scalars(a, b, minus);
    } else if (a.is_scalar() || b.is_scalar()) {
        a.to_dense();
        b.to_dense();
        entrywise(minus ? '-' : '+', a, b);
    } else {
        if (a.size != b.size || a.rows != b.rows) array_error(39, token);
        if (a.is_sparse() && b.is_sparse())
            add_sparses(a, b, minus);
        else if (a.is_sparse() || b.is_sparse())
            add_mixed(a, b, minus);
        else
            entrywise(minus ? '-' : '+', a, b);
    }
    b.clear();
}

} // namespace tolvek
