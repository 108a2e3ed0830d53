/* Synth: columns of a sparse array as sets. A column is the set of the rows where it has an entry; the rows that it
   gets take the entry of the first column named that has one there. */
#include "language/builtin_array_args.h"
#include "language/builtin_routines.h"
#include "matrix/sparse.h"
#include "top/driver.h"

#include <algorithm>

namespace tolvek {

enum set_operation { intersect, synth_union, synth_merge };

/* Synth([s], operation, k, i, j, ...): column k becomes the set that the operation gives of the columns i, j, ...; a merge
   is a union that empties these, but for k itself. */
struct set_statement {
    set_operation operation;
    int32_t target;
    buffer<int32_t> sources;
};

/* ---- arguments ---- */

/* Behind a comma: an integer from `low` to `high`. Errors 202, 373. */
static int32_t read_number(builtin_call &call, int64_t low, int64_t high) {
    if (!token_is(token, ",")) array_error(202, token);
    modular_pause pause;
    argument value;
    value.read_expression(call);
    const int64_t n = integer_argument(value.get(), 373);
    if (n < low || n > high) array_error(373, token);
    return static_cast<int32_t>(n);
}

/* A column that is there, counted from 1. */
static int32_t check_set_cols(builtin_call &call, const array_record *a) {
    const int64_t first = addresser;
    return read_number(call, first, first + a->cols() - 1) - static_cast<int32_t>(first) + 1;
}

static int32_t largest_column(const set_statement &s) {
    return std::max(s.target, *std::max_element(s.sources.begin(), s.sources.end()));
}

static void read_statement(builtin_call &call, const array_record *a, set_statement &s) {
    s.operation = static_cast<set_operation>(read_number(call, intersect, synth_merge));
    s.target = check_set_cols(call, a);
    do s.sources.push(check_set_cols(call, a));
    while (token_is(token, ","));
    close_paren(call);
}

/* ---- rows ---- */

/* *value := a copy of the entry that the target gets in this row; null: the row is not in the set. */
static void entry_of_set(colm **row, const set_statement &s, quolynode **value) {
    const colm *first = nullptr;
    for (const int32_t column : s.sources) {
        const colm *c = entry_at(row, column);
        if (!c && s.operation == intersect) return;
        if (!first) first = c;
    }
    if (first) quoly_assign(first->value, value);
}

static void clear_entry(colm **row, int32_t column) {
    colm **link = find_entry(row, column);
    if (*link && (*link)->column == column) free_colm(link);
}

/* Of a copy, which takes the place of the array's rows when all is done. True: the row is in the set. */
static bool change_row(colm **row, const set_statement &s) {
    quoly_handle value;
    entry_of_set(row, s, value.slot());
    if (s.operation == synth_merge)
        for (const int32_t column : s.sources) clear_entry(row, column);
    clear_entry(row, s.target);
    if (!value) return false;
    insert_at(find_entry(row, s.target), s.target, value);
    return true;
}

/* ---- the function ---- */

void builtin_sets_of_rows(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    array_argument argument(call);
    array_record *a = argument.whole_sparse();
    set_statement s;
    read_statement(call, a, s);
    if (largest_column(s) > a->cols()) array_error(373, token); /* an argument has changed the array */
    sparse_handle changed;
    changed.rows = a->rows;
    copy_sparse(a->sparse_head, changed.slot(), a->rows, false);
    int32_t size = 0;
    row_walk walk(changed.get());
    for (int32_t r = 0; r < a->rows; r++, walk.next()) size += change_row(&*walk, s);
    own_rows(a);
    put_back_sparse(changed.get(), a->sparse_head, a->rows);
    call.give(size);
}

} // namespace tolvek
