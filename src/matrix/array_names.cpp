#include "matrix/array_names.h"

#include "matrix/elements.h"
#include "matrix/slots.h"
#include "poly/variables.h"
#include "top/driver.h"

namespace tolvek {

void whole_array(array_record *a, array_region &region) {
    region = {};
    region.tok = a->tok;
    region.array = a;
    region.rows = region.stride = a->rows;
    region.cols = a->cols();
}

/* ---- subscripts ---- */

/* Rows or columns, counted from 0. */
struct index_range {
    int64_t low, high;
};

/* An end that is left out stands for all, or for the last. */
static bool ends_range() { return token_is(token, ",") || token_is(token, "]"); }

/* Reads a range out of `count`, with the token in front of it, and leaves the one behind it. */
static index_range read_range(stream *input, name **cursor, int64_t count, int out_of_range, int reversed) {
    scanner(input, token, cursor);
    index_range range{0, count - 1};
    bool single = false;
    if (!ends_range() && !token_is(token, "~")) {
        range.low = range.high = coordinate(input, cursor, false) - addresser;
        single = true;
    }
    if (token_is(token, "~")) {
        scanner(input, token, cursor);
        single = false;
        range.high = ends_range() ? count - 1 : coordinate(input, cursor, false) - addresser;
    }
    if (!ends_range()) array_error(61, token);
    if (range.low < 0 || range.low >= count) array_error(out_of_range, token);
    if (!single && (range.high < 0 || range.high >= count)) array_error(out_of_range, token);
    if (range.high < range.low) array_error(reversed, token);
    return range;
}

void subarray(stream *input, name **cursor, array_region &region) {
    array_record *a = region.array;
    modular_pause pause;
    held_cells held;
    index_range rows = read_range(input, cursor, a->rows, 56, 57), cols{0, a->cols() - 1};
    if (token_is(token, ",")) {
        cols = read_range(input, cursor, a->cols(), 58, 59);
        if (!token_is(token, "]")) array_error(61, token);
    }
    scanner(input, token, cursor);
    region.sub = true;
    region.first = cols.low * a->rows + rows.low;
    region.rows = static_cast<int32_t>(rows.high - rows.low + 1);
    region.cols = cols.high - cols.low + 1;
    region.stride = a->rows;
}

/* ---- names ---- */

/* [<], with "<" as the token. */
static void system_array(stream *input, name **cursor, array_region &region, bool allowed) {
    if (!allowed) array_error(176, token);
    if (syst_is_empty()) array_error(175, token);
    scanner(input, token, cursor);
    if (token_is(token, "[")) array_error(83, token);
    whole_array(&syst, region);
}

/* The name of the region stays "%": a slot can get no new array by an assignment. */
static void array_of_slot(stream *input, name **cursor, array_region &region) {
    array_record *a = get_arr_arr(input, cursor);
    if (!a) array_error(220, token);
    whole_array(a, region);
    set_token(region.tok, "%");
}

/* A name without an array is no error yet: it may be the target of an assignment. */
static void named_array(stream *input, name **cursor, array_region &region) {
    int level;
    if (!is_lower_letter(first_char(token))) array_error(42, token);
    if (is_poly_name(token.text, &level)) array_error(125, token);
    token_record array_name = token;
    if (array_record *a = find_array(array_name)) whole_array(a, region);
    region.tok = array_name;
    scanner(input, token, cursor);
}

void left_side(stream *input, name **cursor, array_region &region, bool syst_allowed, int no_such_array) {
    region = {};
    scanner(input, token, cursor);
    if (token_is(token, "<"))
        system_array(input, cursor, region, syst_allowed);
    else if (token_is(token, "%"))
        array_of_slot(input, cursor, region);
    else
        named_array(input, cursor, region);
    if (token_is(token, "[")) {
        if (!region.array) array_error(no_such_array, region.tok);
        subarray(input, cursor, region);
    }
    require("]", 24, input, cursor);
}

} // namespace tolvek
