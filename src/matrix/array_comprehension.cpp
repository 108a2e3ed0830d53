/* [<i = a, b, s> <j = c, d, t> e]: a matrix of the values of e. Cells that the steps leave out have no value. */
#include "language/expressions.h"
#include "language/run.h"
#include "matrix/array_expressions.h"
#include "matrix/literal_work.h"
#include "top/driver.h"
#include "top/interrupts.h"

namespace tolvek {

struct comprehension {
    loop_range row{}, col{};
    bool two = false; /* there is a loop over columns */
    name_list body;
    int32_t rows = 0;
    int64_t cols = 1;
};

/* ---- reading ---- */

/* One head, with the token behind "<"; leaves the token behind ">". The bounds are evaluated here, once. */
static void read_head(stream *input, name **cursor, loop_range &range) {
    name_list head;
    obtain_loop_head(input, cursor, head);
    if (!token_is(token, ">")) array_error(78, token);
    const token_record behind = token;
    name *stored = head.first();
    token = stored->tok;
    set_up_for_loop(input, &stored, range, 336);
    if (!is_end_of_list(token)) array_error(78, token);
    if (range.lower < addresser) array_error(79, range.variable);
    if (range.upper < addresser) array_error(80, range.variable);
    if (range.step < 1) array_error(82, range.variable);
    token = behind;
    scanner(input, token, cursor);
}

static void read_parts(stream *input, name **cursor, comprehension &c) {
    read_head(input, cursor, c.row);
    if (token_is(token, "<")) {
        scanner(input, token, cursor);
        c.two = is_lower_letter(first_char(token));
        if (c.two) {
            read_head(input, cursor, c.col);
        } else { /* e begins with the previous value or the system array */
            token_record previous;
            set_token(previous, "<");
            c.body.add(previous);
        }
    }
    obtain_part(input, cursor, "]", c.body);
    if (!token_is(token, "]")) array_error(24, token);
}

/* ---- filling ---- */

/* The stored tokens are read anew for each pair; the last of them must end the value. */
static void evaluate_body(stream *input, const comprehension &c, quoly_handle &value) {
    name *stored = c.body.first();
    token = stored->tok;
    currentchar = stored->next;
    old_expre(input, value.slot(), &stored);
    if (!is_end_of_list(token)) array_error(24, token);
}

/* All columns of one row: `store` takes the value of each. */
template <class Store> static void fill_row(stream *input, const comprehension &c, Store store) {
    integer_range col = c.col;
    if (c.two) start_loop(col);
    bool more = !c.two || runs(col);
    while (more) {
        safe_point();
        quoly_handle value;
        evaluate_body(input, c, value);
        store(c.two ? col.lower - addresser : 0, value);
        more = c.two && step_loop(col);
    }
}

static void fill_dense(stream *input, const comprehension &c, matrix_value &m) {
    integer_range row = c.row;
    m.make_dense(c.rows, c.cols);
    m.holes = true;
    start_loop(row);
    for (bool more = runs(row); more; more = step_loop(row)) {
        const int64_t r = row.lower - addresser;
        fill_row(input, c, [&](int64_t col, quoly_handle &value) { m.cell(col * c.rows + r) = value.release(); });
    }
}

static void fill_sparse_rows(stream *input, const comprehension &c, matrix_value &m) {
    integer_range row = c.row;
    sparse_handle fresh(c.rows);
    start_loop(row);
    for (bool more = runs(row); more; more = step_loop(row)) {
        row_builder builder(sparse_row(fresh.get(), static_cast<int32_t>(row.lower - addresser) + 1));
        fill_row(input, c,
                 [&](int64_t col, quoly_handle &value) { builder.add(static_cast<int32_t>(col) + 1, value); });
    }
    m.make_sparse(fresh.release(), c.rows, c.cols);
}

void read_comprehension(stream *input, name **cursor, matrix_value &result) {
    comprehension c;
    read_parts(input, cursor, c);
    const int64_t rows = c.row.upper + 1 - addresser;
    if (c.two) c.cols = c.col.upper + 1 - addresser;
    if (rows > INT32_MAX || c.cols > INT32_MAX) array_error(43, c.row.variable);
    c.rows = static_cast<int32_t>(rows);
    const token_record behind = token;
    name *ahead = currentchar;
    matrix_value m;
    {
        held_value so_far;
        if (want_sparse)
            fill_sparse_rows(input, c, m);
        else
            fill_dense(input, c, m);
    }
    token = behind;
    currentchar = ahead;
    result.take(m);
}

} // namespace tolvek
