/* Operations on whole sparse matrices. */
#include "matrix/sparse.h"
#include "top/interrupts.h"

namespace tolvek {

/* ---- filling ---- */

/* Built aside: a safe point or a refused request leaves the array as it was. */
void sparse_set_scalar(array_record *array, const quolynode *value) {
    sparse_handle fresh(array->rows);
    const int32_t cols = array->cols();
    if (!quoly_is_zero(value)) {
        row_walk walk(fresh.get());
        for (int32_t r = 0; r < array->rows; r++, walk.next()) {
            safe_point();
            row_builder row(&*walk);
            for (int32_t c = 1; c <= cols; c++) {
                quoly_handle copy;
                quoly_assign(value, copy.slot());
                row.add(c, copy);
            }
        }
    }
    own_rows(array);
    put_back_sparse(fresh.get(), array->sparse_head, array->rows);
}

/* A value of 0 leaves all rows empty. */
void spar_identi(sparse_frame **head, int32_t rows, const quolynode *value) {
    sparse_handle fresh(rows);
    row_walk walk(fresh.get());
    for (int32_t r = 1; r <= rows; r++, walk.next()) {
        quoly_handle copy;
        quoly_assign(value, copy.slot());
        row_builder(&*walk).add(r, copy);
    }
    *head = fresh.release();
}

/* ---- copying ---- */

static void copy_row(const colm *from, colm **to, bool negate) {
    row_builder row(to);
    for (; from; from = from->next) {
        quoly_handle copy;
        (negate ? quoly_makeneg : quoly_assign)(from->value, copy.slot());
        row.add(from->column, copy);
    }
}

void copy_sparse(sparse_frame *src, sparse_frame **dst, int32_t rows, bool negate) {
    sparse_handle fresh(rows);
    row_walk from(src), to(fresh.get());
    for (int32_t r = 0; r < rows; r++, from.next(), to.next()) {
        safe_point();
        copy_row(*from, &*to, negate);
    }
    *dst = fresh.release();
}

/* ---- transposition ---- */

/* The frames of a matrix by number, for rows in any order. */
class frame_table {
  public:
    explicit frame_table(sparse_frame *head) {
        for (; head; head = head->frame_next) frames.push(head);
    }
    colm **row(int32_t r) { return &frames[static_cast<std::size_t>((r - 1) >> 11)]->row[(r - 1) & (frame_rows - 1)]; }

  private:
    buffer<sparse_frame *> frames;
};

/* Entries with their row: pushed in front from the last row to the first, so that lists ascend. */
static void reverse_all(sparse_frame *head, int32_t rows) {
    row_walk walk(head);
    for (int32_t r = 0; r < rows; r++, walk.next()) {
        colm *list = *walk, *reversed = nullptr;
        while (colm *c = list) {
            list = c->next;
            c->next = reversed;
            reversed = c;
        }
        *walk = reversed;
    }
}

void flip_sparse(sparse_frame *src, sparse_frame *dst, int32_t rows, int32_t cols) {
    frame_table flipped(dst);
    row_walk walk(src);
    for (int32_t r = 1; r <= rows; r++, walk.next())
        for (const colm *c = *walk; c; c = c->next) {
            colm **head = flipped.row(c->column), *n = newcolm();
            n->column = r;
            n->value = c->value;
            n->next = *head;
            *head = n;
        }
    reverse_all(dst, cols);
}

/* Each entry changes its list, and its column becomes its row: nothing is copied. */
void trans_sparse(sparse_frame **head, int32_t rows, int32_t cols) {
    sparse_handle fresh(cols);
    frame_table flipped(fresh.get());
    row_walk walk(*head);
    for (int32_t r = 1; r <= rows; r++, walk.next())
        while (colm *c = *walk) {
            *walk = c->next;
            colm **to = flipped.row(c->column);
            c->column = r;
            c->next = *to;
            *to = c;
        }
    reverse_all(fresh.get(), cols);
    free_sparse(head, rows);
    *head = fresh.release();
}

/* ---- moving rows ---- */

/* The rows change places first: whatever happens while the old entries are dropped, dst is whole. */
void put_back_sparse(sparse_frame *src, sparse_frame *dst, int32_t rows) {
    row_walk from(src), to(dst);
    for (int32_t r = 0; r < rows; r++, from.next(), to.next()) {
        colm *old = *to;
        *to = *from;
        *from = old;
    }
    row_walk old(src);
    for (int32_t r = 0; r < rows; r++, old.next())
        while (colm *c = *old) {
            prepare_drop();
            *old = c->next;
            drop_entry(c);
        }
}

void reverse_rows(sparse_frame *head, int32_t rows) {
    frame_table table(head);
    for (int32_t low = 1, high = rows; low < high; low++, high--) {
        colm **a = table.row(low), **b = table.row(high), *kept = *a;
        *a = *b;
        *b = kept;
    }
}

/* ---- looking ---- */

bool sparse_allpolys(sparse_frame *head, int32_t rows) {
    row_walk walk(head);
    for (int32_t r = 0; r < rows; r++, walk.next())
        for (const colm *c = *walk; c; c = c->next)
            if (!c->value->is_num) return false;
    return true;
}

int64_t sparse_count(sparse_frame *head, int32_t rows) {
    int64_t count = 0;
    row_walk walk(head);
    for (int32_t r = 0; r < rows; r++, walk.next())
        for (const colm *c = *walk; c; c = c->next) count++;
    return count;
}

} // namespace tolvek
