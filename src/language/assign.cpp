/* The assignment forms behind a first term: x := e, x :+ n, x :- n, x :+, x :- and the silent x: . */
#include "display/progress.h"
#include "language/expressions.h"
#include "language/names.h"
#include "language/parameters.h"
#include "matrix/elements.h"
#include "matrix/sparse.h"
#include "numbers/handles.h"
#include "top/driver.h"

namespace tolvek {

/* A computed value has no slot of its own to store into. */
static bool has_target(const place &at, quolynode *const *result) {
    if (!*result && (at.slot || at.array)) return true;
    error(316, token);
    return false;
}

static void give_value(const place &at, quolynode **result, name **cursor) {
    if (*cursor || !at.slot || !*at.slot)
        quoly_set(0, result); /* inside a stored list nothing is displayed */
    else
        quoly_assign(*at.slot, result);
}

/* The right side is complete before the target changes. */
static void assign_value(stream *input, place &at, quolynode **result, name **cursor) {
    held_cells held(at.cell);
    scanner(input, token, cursor);
    quoly_handle value;
    old_expre(input, value.slot(), cursor);
    if (value->is_num) value->array_mark = 0;
    bring_into_ring(at.slot, value.slot());
    if (at.array) {
        *cursor ? quoly_set(0, result) : quoly_assign(value.get(), result);
        store_sparse_element(at, value.release());
        return;
    }
    store_value(at.slot, value.release());
    give_value(at, result, cursor);
}

/* The step of :+ and :- is one factor: a number, of one digit in the exact ring; 1 when none is written. */
static void read_step(stream *input, quolynode **step, name **cursor) {
    int c = first_char(token);
    if (!is_lower_letter(c) && !is_digit(c) && c != '(') {
        quoly_set(1, step);
        return;
    }
    old_fact(input, step, cursor);
    int refusal = 0;
    if (!(*step)->is_num)
        refusal = 223;
    else if (!lintmode && !flotemode && (*step)->numb->num_len > 1)
        refusal = 224;
    if (!refusal) return;
    error(refusal, token);
    quoly_set(0, step);
}

/* A number changes in place. A polynomial is built aside, so that it is whole whatever happens; and so is a number at a
   level above 1, where it may be an operand of the interrupted computation. */
static void add_step(quolynode **slot, const quolynode *step, bool minus) {
    if (!values_are_held() && !ring_is_paused() && (*slot)->is_num && !(*slot)->original) {
        (minus ? better_quoly_sub : better_quoly_add)(*slot, step, slot);
        return;
    }
    quoly_handle sum;
    (minus ? quoly_sub : quoly_add)(*slot, step, sum.slot());
    bring_into_ring(slot, sum.slot());
    store_value(slot, sum.release());
}

/* The elements of a table field are no figures to count with. */
static void warn_in_table_field() {
    constexpr int most_warnings = 10;
    if (!finf || !verbose || warn_cnt >= most_warnings) return;
    warn_cnt++;
    say("*** Warning. increment makes no sense over finite field GF(2^n).\n");
}

static void increase(stream *input, place &at, quolynode **result, name **cursor) {
    bool minus = token_is(token, "-");
    held_cells held(at.cell);
    scanner(input, token, cursor);
    quoly_handle step;
    read_step(input, step.slot(), cursor);
    const int64_t index = at.index;
    array_record *sparse = at.array;
    if (sparse) at.slot = sparse_set(index, 0, sparse, false);
    if (!*at.slot) quoly_set(0, at.slot);
    if (!(*at.slot)->is_num && (*at.slot)->den) {
        error(196, token);
        return;
    }
    warn_in_table_field();
    add_step(at.slot, step.get(), minus);
    give_value(at, result, cursor);
    if (!sparse) return;
    sparse_place purged = place_of(index, 0, sparse, false);
    purge_sparse(sparse_row(sparse->sparse_head, purged.row), purged.column);
}

void assignment(stream *input, place &at, quolynode **result, name **cursor) {
    scanner(input, token, cursor);
    if (token_is(token, "=")) {
        if (has_target(at, result)) assign_value(input, at, result, cursor);
    } else if (token_is(token, "+") || token_is(token, "-")) {
        if (has_target(at, result)) increase(input, at, result, cursor);
    } else if (token_is(token, ";") && !*cursor) {
        own_value(at, result);
        set_token(token, ":");
    } else {
        error(317, token);
    }
    if (!*result) quoly_set(0, result);
    at = {};
    at.slot = result;
}

} // namespace tolvek
