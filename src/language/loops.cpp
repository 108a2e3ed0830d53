/* Loops over stored statements. */
#include "language/builtin_args.h"
#include "language/execution.h"
#include "language/expressions.h"
#include "language/float_path.h"
#include "language/functions.h"
#include "language/parameters.h"
#include "language/run.h"
#include "matrix/array_names.h"
#include "matrix/matrix_value.h"
#include "numbers/modular.h"
#include "numbers/number.h"
#include "poly/variables.h"
#include "top/driver.h"
#include "top/interrupts.h"

#include <cmath>

namespace tolvek {

constexpr int64_t loop_value_bound = 0x10000000; /* a loop value fits one digit */

/* ---- the loop variable ---- */

/* Writes the value straight into the variable's number. At a level above 1 the old value may be an operand of the
   interrupted computation: a new one takes its place. */
static void set_loop_variable(token_record &t, int64_t value) {
    variable *found = find_variable(t);
    const bool in_ring = modularmode || (ring_is_paused() && !(found && is_parameter(&found->value)));
    const int32_t v = in_ring ? residue_of_integer(value) : static_cast<int32_t>(value);
    if (found && found->value && found->value->is_num && levelcount == 1) {
        drop_original(found->value);
        setvalue(v, found->value->numb);
        found->value->array_mark = 0;
        return;
    }
    quoly_handle fresh;
    quoly_set(v, fresh.slot());
    insert_var(t, fresh);
}

void start_loop(integer_range &r) { set_loop_variable(r.variable, r.lower); }

/* The variable takes the value of `lower`. */
static bool take_value(integer_range &r) {
    if (r.lower >= loop_value_bound || r.lower <= -loop_value_bound) {
        error(47, r.variable);
        return false;
    }
    start_loop(r);
    return runs(r);
}

bool step_loop(integer_range &r) {
    r.lower += r.step;
    return take_value(r);
}

bool step_loop(loop_range &r) {
    if (!r.by_rows) return step_loop(static_cast<integer_range &>(r));
    r.lower = r.next_row < r.rows.size() ? r.rows[r.next_row++] : r.upper + 1;
    return take_value(r);
}

/* ---- the head ---- */

/* An integer of the head; error n for anything else. */
static int64_t obtain_int(stream *input, name **cursor, int n) {
    if (integerflag) return std::llround(old_iexpre(input, cursor));
    quoly_handle value;
    old_expre(input, value.slot(), cursor);
    bool is_integer = value->is_num;
    if (is_integer && flotemode) is_integer = std::fabs(value->numb->flote_val) < 1e18L;
    if (is_integer && !lintmode && !flotemode) is_integer = value->numb->num_len == 1;
    if (!is_integer) {
        error(n, token);
        return 0;
    }
    if (flotemode) return std::llround(value->numb->flote_val);
    return quoly_to_int(value.get());
}

static bool is_to(const token_record &t) { return token_is(t, to_mark) || token_is(t, ","); }
static bool is_by(const token_record &t) { return token_is(t, by_mark) || token_is(t, ","); }

static void read_equals(stream *input, name **cursor) {
    if (token_is(token, ":")) {
        scanner(input, token, cursor);
        if (!token_is(token, "=")) error(77, token);
    } else if (!token_is(token, "from") && !token_is(token, "=")) {
        error(77, token);
    }
    scanner(input, token, cursor);
}

/* Marks the rows that have an entry in the column. */
static void mark_rows(const matrix_value &m, int32_t column, buffer<bool> &marks) {
    row_walk walk(m.sparse);
    for (int32_t r = 0; r < m.rows; r++) {
        if (r % 65536 == 0) safe_point();
        if (get_sparse(column, walk)) marks[static_cast<std::size_t>(r)] = true;
    }
}

/* A column as the user counts it; the result counts from 1. */
static int32_t read_column(stream *input, const matrix_value &m, name **cursor) {
    quoly_handle value;
    old_expre(input, value.slot(), cursor);
    if (!value->is_num) array_error(118, token);
    const int64_t column = integer_argument(value.get(), 27) - addresser;
    if (column < 0 || column >= m.cols()) array_error(27, token);
    return static_cast<int32_t>(column + 1);
}

/* [s] c1, c2, ... : v runs over the rows with an entry in these columns. */
static void read_rows(stream *input, name **cursor, loop_range &range) {
    array_region region;
    left_side(input, cursor, region, false);
    if (!existing(region)->sparse_head) array_error(335, region.tok);
    modular_pause pause;
    matrix_value m;
    m.borrow_sparse(region.array);
    buffer<bool> marks;
    marks.resize(static_cast<std::size_t>(m.rows));
    for (bool &mark : marks) mark = false;
    mark_rows(m, read_column(input, m, cursor), marks);
    while (token_is(token, ",")) {
        scanner(input, token, cursor);
        mark_rows(m, read_column(input, m, cursor), marks);
    }
    for (int32_t r = 0; r < m.rows; r++)
        if (marks[static_cast<std::size_t>(r)]) range.rows.push(r + static_cast<int32_t>(addresser));
    range.by_rows = true;
    range.step = 1;
    range.upper = range.rows.empty() ? addresser - 2 : range.rows[range.rows.size() - 1];
    range.lower = range.rows.empty() ? addresser - 1 : range.rows[range.next_row++];
}

void set_up_for_loop(stream *input, name **cursor, loop_range &range, int over_array) {
    range.variable = token;
    int level;
    if (!is_lower_letter(first_char(token))) error(51, token);
    if (is_poly_name(token.text, &level)) error(125, token);
    scanner(input, token, cursor);
    read_equals(input, cursor);
    if (token_is(token, "[")) {
        if (over_array) error(over_array, token);
        read_rows(input, cursor, range);
        return start_loop(range);
    }
    modular_pause pause;
    range.lower = obtain_int(input, cursor, 50);
    if (!is_to(token)) error(49, token);
    start_loop(range); /* the upper bound may use it */
    scanner(input, token, cursor);
    range.upper = obtain_int(input, cursor, 52);
    range.step = 1;
    if (is_by(token)) {
        scanner(input, token, cursor);
        range.step = obtain_int(input, cursor, 53);
    }
}

/* ---- the loops ---- */

/* After a pass: does another one follow? */
static bool goes_on() {
    if (exit_flag) return false;
    cycle_flag = 0;
    if (!leave_flag) return true;
    leave_flag = 0;
    return false;
}

void run_for(stream *input, const cond *c, quolynode **result) {
    name *cursor = c->test->next;
    token = cursor->tok;
    currentchar = cursor->next;
    loop_range range;
    set_up_for_loop(input, &cursor, range);
    start_loop(range);
    if (!is_end_of_list(token)) error(190, token);
    name *head = startexpr;
    bool more = runs(range);
    while (more) {
        safe_point();
        eval_form(input, c->body, result);
        startexpr = head;
        more = goes_on() && step_loop(range);
    }
    token = end_of_list;
}

static bool holds(stream *input, name *test) {
    name *cursor = test;
    token = test->tok;
    currentchar = test->next;
    return bool_expre(input, &cursor);
}

void run_while(stream *input, const cond *c, quolynode **result) {
    do {
        safe_point();
        startexpr = c->test;
        if (!holds(input, c->test)) break;
        eval_form(input, c->body, result);
        prev_expr = startexpr;
    } while (goes_on());
    token = end_of_list;
}

void run_if(stream *input, const cond *c, quolynode **result) {
    const form *part = holds(input, c->test) ? c->body : c->else_part;
    if (part) eval_form(input, part, result);
    token = end_of_list;
}

} // namespace tolvek
