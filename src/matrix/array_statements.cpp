/* Statements that begin with an array. How a value is stored: array_store.cpp. */
#include "matrix/array_statements.h"

#include "matrix/array_arithmetic.h"
#include "matrix/array_expressions.h"
#include "matrix/array_literals.h"
#include "matrix/array_store.h"
#include "matrix/slots.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/parse.h"

namespace tolvek {

/* What belongs to the right side of a statement, and to no statement inside it. */
struct statement_frame {
    explicit statement_frame(known_shape target, int sparse)
        : shape(shape_at_hand, target), wanted(want_sparse, sparse) {}
    kept_value<known_shape> shape;
    kept_value<int> wanted;
};

/* ---- expressions ---- */

/* Goes on behind the first factor, and gives the value of the statement. */
static void finish_expression(stream *input, quolynode **result, name **cursor, matrix_value &value) {
    half_arr_expre(input, cursor, value);
    give_statement_value(value, result);
}

void expression_of_array(stream *input, quolynode **result, name **cursor, array_record *a) {
    statement_frame frame({}, 0);
    array_region region;
    whole_array(a, region);
    region.tok = arr_arrsign;
    matrix_value value;
    fetch_region(region, value);
    finish_expression(input, result, cursor, value);
}

static void expression_of_region(stream *input, quolynode **result, name **cursor, const array_region &region,
                                 bool diagonal) {
    statement_frame frame({}, 0);
    matrix_value value;
    fetch_region(region, value);
    if (diagonal) extract_diagonal(value);
    finish_expression(input, result, cursor, value);
}

/* ---- assignments ---- */

/* What the name means now that the right side has been evaluated, which may have deleted or replaced the array. */
static void look_again(array_region &region) {
    array_record *found = region.array;
    if (token_is(region.tok, "%")) {
        if (!is_in_slot(found)) array_error(220, region.tok);
    } else {
        found = find_array(region.tok);
    }
    if (!region.sub) {
        const token_record array_name = region.tok;
        region.array = found;
        if (found) whole_array(found, region);
        region.tok = array_name;
    } else if (found != region.array || found->rows != region.stride ||
               region.index(region.rows - 1, region.cols - 1) >= found->size) {
        array_error(55, region.tok);
    }
}

/* What the value borrows, from the target perhaps, is copied before anything is stored (store_matrix). */
static void assign_array(stream *input, quolynode **result, name **cursor, array_region &region, bool diagonal) {
    if (region.array == &syst) array_error(176, region.tok);
    if (region.sub && region.array->sparse_head) array_error(244, region.tok);
    known_shape target;
    if (region.array) target = {region.rows, region.cols, true};
    matrix_value value;
    {
        statement_frame frame(target, region.array && region.array->sparse_head && !diagonal);
        held_cells held(region.sub || token_is(region.tok, "%"));
        scanner(input, token, cursor);
        arr_expre(input, cursor, value);
    }
    look_again(region);
    if (diagonal)
        store_diagonal(region, value);
    else
        store_matrix(region, value);
    quoly_set(0, result);
}

bool reads_array_assignment(stream *input, name **cursor) {
    scanner(input, token, cursor);
    if (token_is(token, "=")) return true;
    if (!token_is(token, ";") || *cursor) array_error(317, token);
    set_token(token, ":");
    return false;
}

void arr_asstat(stream *input, quolynode **result, name **cursor) {
    const bool diagonal = token_is(token, "Diag") || token_is(token, "~");
    if (diagonal) scanner(input, token, cursor);
    if (!token_is(token, "[")) array_error(92, token);
    array_region region;
    left_side(input, cursor, region, true);
    if (token_is(token, ":") && reads_array_assignment(input, cursor))
        assign_array(input, result, cursor, region, diagonal);
    else
        expression_of_region(input, result, cursor, region, diagonal);
}

void arr_parse(stream *input, quolynode **result, name **cursor) {
    if (token_is(token, "[") || token_is(token, "Diag") || token_is(token, "~")) {
        arr_asstat(input, result, cursor);
        return;
    }
    if (token_is(token, "\"")) set_token(token, "Trans");
    array_expression(input, result, cursor);
}

} // namespace tolvek
