/* Private to the array arithmetic: one loop over the entries of a value, whatever its form and its owner. */
#pragma once

#include "matrix/matrix_value.h"
#include "top/interrupts.h"

namespace tolvek {

template <class Into> void map_row_in_place(colm **link, Into into) {
    while (colm *c = *link) {
        into(c->value, &c->value);
        if (quoly_is_zero(c->value))
            free_colm(link);
        else
            link = &c->next;
    }
}

template <class Into> void map_sparse(matrix_value &m, Into into) {
    row_walk from(m.sparse);
    if (m.owned) {
        for (int32_t r = 0; r < m.rows; r++, from.next()) {
            safe_point();
            map_row_in_place(&*from, into);
        }
        return;
    }
    sparse_handle fresh(m.rows);
    row_walk to(fresh.get());
    for (int32_t r = 0; r < m.rows; r++, from.next(), to.next()) {
        safe_point();
        row_builder row(&*to);
        for (const colm *c = *from; c; c = c->next) {
            quoly_handle value;
            into(c->value, value.slot());
            row.add(c->column, value);
        }
    }
    m.make_sparse(fresh.release(), m.rows, m.size / m.rows);
}

template <class Into> void map_dense(matrix_value &m, Into into) {
    m.fill_holes();
    matrix_value fresh;
    if (!m.owned) fresh.make_dense(m.rows, m.cols());
    matrix_value &to = m.owned ? m : fresh;
    for (int64_t i = 0; i < m.size; i++) {
        safe_point();
        into(m.cell(i), &to.cell(i));
    }
    if (!m.owned) m.take(fresh);
}

/* Calls into(value, slot) for each entry that is stored, and for a scalar; the slot may hold the value. */
template <class Into> void map_entries(matrix_value &m, Into into) {
    if (m.is_scalar())
        into(m.scalar.get(), m.scalar.slot());
    else if (m.is_sparse())
        map_sparse(m, into);
    else
        map_dense(m, into);
}

} // namespace tolvek
