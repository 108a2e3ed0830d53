/* All values of arrays, for changes that every stored value follows. */
#include "matrix/sparse.h"

namespace tolvek {

using value_visitor = void (*)(quolynode **slot, void *context);

static void visit_rows(array_record *a, value_visitor visit, void *context) {
    row_walk row(a->sparse_head);
    for (int32_t r = 0; r < a->rows; r++, row.next())
        for (colm *c = *row; c; c = c->next) visit(&c->value, context);
}

/* An array parameter shares the rows of its array. */
void for_sparse_arrays(void (*action)(array_record *a, void *context), void *context) {
    for (array_record *chain : arr_store)
        for (array_record *a = chain; a; a = a->next)
            if (a->sparse_head && !a->is_parameter()) action(a, context);
    if (syst.sparse_head) action(&syst, context);
}

void visit_cells(value_visitor visit, void *context) {
    for (int32_t i = 0; i <= endarr; i++)
        if (quolynode *&cell = table_cell(i)) visit(&cell, context);
    if (!syst.sparse_head)
        for (int32_t i = 0; i <= syst.last; i++)
            if (syst_cells[i]) visit(&syst_cells[i], context);
}

struct visitor {
    value_visitor visit;
    void *context;
};

void visit_array_values(value_visitor visit, void *context) {
    visitor v{visit, context};
    visit_cells(visit, context);
    for_sparse_arrays(
        [](array_record *a, void *with) {
            visitor *each = static_cast<visitor *>(with);
            visit_rows(a, each->visit, each->context);
        },
        &v);
}

/* Unlinks the entries of a row whose value is 0. */
static void purge_row(colm **link) {
    while (*link) {
        if (quoly_is_zero((*link)->value))
            delete_at(link);
        else
            link = &(*link)->next;
    }
}

void purge_array_values() {
    for_sparse_arrays(
        [](array_record *a, void *) {
            row_walk row(a->sparse_head);
            for (int32_t r = 0; r < a->rows; r++, row.next()) purge_row(&*row);
        },
        nullptr);
}

} // namespace tolvek
