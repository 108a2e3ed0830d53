/* Built-in functions that change named arrays in place. Rows of a sparse array that a computation outside has borrowed stay
   as they are: own_rows gives the array rows of its own first. */
#include "language/builtin_array_args.h"
#include "language/builtin_routines.h"
#include "matrix/sparse.h"
#include "poly/coefficients.h"
#include "quoly/compare.h"
#include "top/driver.h"
#include "top/interrupts.h"

#include <algorithm>

namespace tolvek {

static void exchange(quolynode *&a, quolynode *&b) {
    quolynode *kept = a;
    a = b;
    b = kept;
}

static void refuse_part_of_sparse(const array_region &region) {
    if (region.sub && region.array->sparse_head) array_error(244, region.tok);
}

/* "(" array ")" */
static array_region only_argument(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    array_argument a(call);
    a.whole();
    close_paren(call);
    return a.region;
}

/* ---- Reverse, STrans ---- */

/* Cells in the order of the columns; of a sparse array the rows. */
void builtin_reverse(builtin_call &call) {
    array_record *a = only_argument(call).array;
    if (a->sparse_head) {
        own_rows(a);
        return reverse_rows(a->sparse_head, a->rows);
    }
    for (int64_t i = 0, j = a->size - 1; i < j; i++, j--) exchange(element(a, i), element(a, j));
}

/* The record, and those of parameters that stand for the same array. */
template <class Action> static void for_records_of(const array_record *a, Action action) {
    const int32_t birth = a->birth < 0 ? -a->birth : a->birth;
    for (array_record *chain : arr_store)
        for (array_record *r = chain; r; r = r->next)
            if (r->birth == birth || r->birth == -birth) action(r);
}

/* The transpose is built aside, and the old rows wait while somebody may stand on them. */
void builtin_sparse_transpose(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    array_argument argument(call);
    array_record *a = argument.whole_sparse();
    close_paren(call);
    const int32_t rows = a->rows, cols = a->cols();
    sparse_handle transposed;
    copy_sparse(a->sparse_head, transposed.slot(), rows, false);
    transposed.rows = rows;
    trans_sparse(transposed.slot(), rows, cols);
    sparse_frame *old = a->sparse_head, *fresh = transposed.release();
    for_records_of(a, [=](array_record *r) {
        r->sparse_head = fresh;
        r->rows = cols;
        r->one_dim = false;
    });
    drop_rows(old, rows);
}

/* ---- Switchrow, Switchcol ---- */

/* A place in 1 to n. Errors 180, 181, 202, 313. */
static int64_t read_place(builtin_call &call, int64_t n) {
    if (!token_is(token, ",")) array_error(202, token);
    modular_pause pause;
    argument place;
    place.read_expression(call);
    const int64_t at = integer_argument(place.get(), 180) - addresser;
    if (at < 0 || at >= n) array_error(181, token);
    return at;
}

/* The lists change places: no entry knows its row. */
static void exchange_rows_of_sparse(array_record *a, int64_t i, int64_t j) {
    colm **x = sparse_row(a->sparse_head, static_cast<int32_t>(i) + 1);
    colm **y = sparse_row(a->sparse_head, static_cast<int32_t>(j) + 1);
    colm *kept = *x;
    *x = *y;
    *y = kept;
}

/* The entries of one row in two columns, low < high: a lone one moves along the row. */
static void exchange_in_row(colm **row, int32_t low, int32_t high) {
    colm **x = find_entry(row, low), *first = entry_at(x, low);
    colm **y = find_entry(x, high), *second = entry_at(y, high);
    if (first && second) return exchange(first->value, second->value);
    if (first) {
        *x = first->next;
        if (y == &first->next) y = x;
        first->column = high;
        first->next = *y;
        *y = first;
    } else if (second) {
        *y = second->next;
        second->column = low;
        second->next = *x;
        *x = second;
    }
}

static void exchange_lines(const array_region &region, bool rows, int64_t i, int64_t j) {
    array_record *a = region.array;
    if (i == j) return;
    if (a->sparse_head) own_rows(a);
    if (a->sparse_head && rows) return exchange_rows_of_sparse(a, i, j);
    if (a->sparse_head) {
        row_walk walk(a->sparse_head);
        const auto low = static_cast<int32_t>(std::min(i, j)) + 1, high = static_cast<int32_t>(std::max(i, j)) + 1;
        for (int32_t r = 0; r < a->rows; r++, walk.next()) exchange_in_row(&*walk, low, high);
        return;
    }
    const int64_t count = rows ? region.cols : region.rows;
    for (int64_t k = 0; k < count; k++)
        exchange(element(a, rows ? region.index(i, k) : region.index(k, i)),
                 element(a, rows ? region.index(j, k) : region.index(k, j)));
}

static void exchange_command(builtin_call &call, bool rows) {
    check_for_paren(call);
    call.read_on();
    if (!token_is(token, "[") && !token_is(token, "*")) array_error(179, token);
    array_argument a(call);
    refuse_part_of_sparse(a.region);
    const int64_t n = rows ? a.region.rows : a.region.cols;
    const int64_t i = read_place(call, n), j = read_place(call, n);
    if (!token_is(token, ")")) array_error(70, token);
    call.read_on();
    const array_record *now = a.region.array; /* an argument may have changed it */
    refuse_part_of_sparse(a.region);
    if (std::max(i, j) >= (a.region.sub ? n : rows ? now->rows : now->cols())) array_error(181, token);
    exchange_lines(a.region, rows, i, j);
}

void builtin_exchange_rows(builtin_call &call) { exchange_command(call, true); }
void builtin_exchange_columns(builtin_call &call) { exchange_command(call, false); }

/* ---- Sort ---- */

/* Numbers in front of other values, by size; those by the product of powers that leads. */
static bool comes_before(const quolynode *a, const quolynode *b) {
    const bool a_is_number = is_comparable(a), b_is_number = is_comparable(b);
    if (a_is_number != b_is_number) return a_is_number;
    if (a_is_number) return compare_quolys(a, b) < 0;
    return compare_leading_mons(a->num, b->num) < 0;
}

static void sort_cells(array_record *a) {
    buffer<quolynode *> cells;
    for (int64_t i = 0; i < a->size; i++) {
        quolynode *&cell = element(a, i);
        if (!cell) quoly_set(0, &cell);
        cells.push(cell);
    }
    std::stable_sort(cells.begin(), cells.end(), comes_before);
    for (int64_t i = 0; i < a->size; i++) element(a, i) = cells[static_cast<std::size_t>(i)];
}

/* Whole rows, by their first entries. */
static void sort_rows(array_record *a) {
    constexpr int32_t most_rows = 5000 * frame_rows;
    if (a->rows > most_rows) array_error(372, a->tok);
    own_rows(a);
    buffer<colm *> rows;
    row_walk walk(a->sparse_head);
    for (int32_t r = 0; r < a->rows; r++, walk.next()) {
        if (!*walk) array_error(370, a->tok);
        rows.push(*walk);
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const colm *x, const colm *y) { return comes_before(x->value, y->value); });
    row_walk to(a->sparse_head);
    for (int32_t r = 0; r < a->rows; r++, to.next()) *to = rows[static_cast<std::size_t>(r)];
}

void builtin_sort(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    if (!token_is(token, "[") && !token_is(token, "*")) array_error(369, token);
    array_argument argument(call);
    array_record *a = argument.whole();
    close_paren(call);
    if (a->sparse_head)
        sort_rows(a);
    else
        sort_cells(a);
}

/* ---- Killden ---- */

/* Of one value; its numerator becomes a value of its own. */
static void kill_denominator(quolynode **slot) {
    const quolynode *q = *slot;
    if (q->is_num || !q->den) return;
    quoly_handle fresh;
    poly_handle numerator;
    poly_assign(q->num, numerator.slot());
    poly_to_value(numerator, fresh.slot());
    store_element(slot, fresh.release());
}

void kill_denominators(builtin_call &call) {
    array_argument argument(call);
    const array_region &region = argument.region;
    array_record *a = region.array;
    close_paren(call);
    if (a->sparse_head) {
        refuse_part_of_sparse(region);
        own_rows(a);
        row_walk walk(a->sparse_head);
        for (int32_t r = 0; r < a->rows; r++, walk.next())
            for (colm *c = *walk; c; c = c->next) kill_denominator(&c->value);
        return;
    }
    for (int64_t c = 0; c < region.cols; c++)
        for (int64_t r = 0; r < region.rows; r++) {
            safe_point();
            quolynode *&cell = element(a, region.index(r, c));
            if (cell) {
                kill_denominator(&cell);
            } else {
                quoly_set(0, &cell);
                warn_uninitialized(nullptr);
            }
        }
}

} // namespace tolvek
