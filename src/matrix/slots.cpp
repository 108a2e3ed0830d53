/* How slots are named, and the statements that begin with one. */
#include "matrix/slots.h"

#include "matrix/array_names.h"
#include "matrix/array_statements.h"
#include "matrix/elements.h"
#include "poly/variables.h"
#include "top/driver.h"
#include "top/parse.h"

namespace tolvek {

int32_t read_slot_number(stream *input, name **cursor) {
    scanner(input, token, cursor);
    if (!token_is(token, "[")) array_error(217, token);
    scanner(input, token, cursor);
    int64_t n;
    {
        modular_pause pause;
        quoly_handle value;
        old_expre(input, value.slot(), cursor);
        if (!value->is_num) array_error(219, token);
        n = coordinate_value(value.get()) - addresser;
    }
    if (!token_is(token, "]")) array_error(218, token);
    if (n < 0 || n >= slot_count) array_error(221, token);
    scanner(input, token, cursor);
    return static_cast<int32_t>(n);
}

array_record *get_arr_arr(stream *input, name **cursor) { return slot_array(read_slot_number(input, cursor)); }

static array_record *filled(int32_t slot) {
    array_record *a = slot_array(slot);
    if (!a) array_error(220, arr_arrsign);
    return a;
}

/* ---- elements ---- */

/* The element behind %[i], with its "[" as the token. */
static void read_element(stream *input, name **cursor, array_record *a, place &at) {
    coordinates c = evalcoords(input, cursor, "]", ",", false);
    const int64_t index = element_index(a, c);
    scanner(input, token, cursor);
    at = {};
    at.slot = array_quoly_ptr(a, index);
    if (a->sparse_head) {
        at.array = a;
        at.index = index;
        return;
    }
    at.cell = true;
    if (*at.slot || token_is(token, ":")) return;
    quoly_set(0, at.slot);
    warn_uninitialized("%");
}

void slot_element(stream *input, name **cursor, quolynode **result) {
    array_record *a = get_arr_arr(input, cursor);
    if (!a) array_error(220, arr_arrsign);
    if (!token_is(token, "[")) array_error(217, token);
    place at;
    read_element(input, cursor, a, at);
    own_value(at, result);
}

/* An element at the beginning of a statement is a target, or the first factor of an expression. */
static void element_statement(stream *input, quolynode **result, name **cursor, array_record *a) {
    place at;
    read_element(input, cursor, a, at);
    if (token_is(token, ":")) {
        if (at.cell && !*at.slot) quoly_set(0, at.slot);
        assignment(input, at, result, cursor);
        return;
    }
    own_value(at, result);
    half_expre(input, result, cursor);
}

/* ---- statements ---- */

/* Behind %[i] := , with the first token of the right side. */
static array_record *read_assigned_array(stream *input, name **cursor) {
    if (token_is(token, "%")) {
        array_record *a = get_arr_arr(input, cursor);
        if (!a) array_error(220, arr_arrsign);
        return a;
    }
    if (!token_is(token, "[")) array_error(178, token);
    array_region named;
    left_side(input, cursor, named, false);
    existing(named);
    if (named.sub) array_error(129, token);
    return named.array;
}

/* Behind := . */
static void set_slot_statement(stream *input, quolynode **result, name **cursor, int32_t slot) {
    scanner(input, token, cursor);
    array_record *a = read_assigned_array(input, cursor);
    if (!ends_statement(token)) array_error(129, token);
    set_slot(slot, a);
    quoly_set(0, result);
}

void arr_arr_state(stream *input, quolynode **result, name **cursor) {
    const int32_t slot = read_slot_number(input, cursor);
    if (token_is(token, ":") && reads_array_assignment(input, cursor))
        set_slot_statement(input, result, cursor, slot);
    else if (token_is(token, "["))
        element_statement(input, result, cursor, filled(slot));
    else
        expression_of_array(input, result, cursor, filled(slot));
}

} // namespace tolvek
