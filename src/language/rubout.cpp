#include "language/rubout.h"

#include "language/execution.h"
#include "language/expressions.h"
#include "language/functions.h"
#include "matrix/arrays.h"

namespace tolvek {

static void delete_scalar(stream *input, name **cursor) {
    if (!delete_variable(token)) error(19, token);
    scanner(input, token, cursor);
}

/* [a], [a*] and [*]; with older_ones all arrays of the name but the newest. */
static void delete_arrays(stream *input, name **cursor, bool older_ones) {
    scanner(input, token, cursor);
    token_record array_name = token;
    if (token_is(array_name, "<")) array_error(176, token);
    if (older_ones || !token_is(array_name, "*")) array_seek(array_name);
    scanner(input, token, cursor);
    if (!older_ones && token_is(array_name, "*")) {
        remove_all_arrays();
    } else if (older_ones) {
        remove_arrays_of_name(array_name, false);
    } else if (token_is(token, "*")) {
        remove_arrays_of_name(array_name, true);
        scanner(input, token, cursor);
    } else {
        removearray(array_name, false);
    }
    require("]", 24, input, cursor);
}

static void delete_newest_function(stream *input, name **cursor) {
    if (!delete_function(token)) error(20, token);
    scanner(input, token, cursor);
}

static void delete_older(stream *input, name **cursor) {
    if (!delete_older_functions(token)) error(20, token);
    scanner(input, token, cursor);
}

/* What stands between < and >: the newest of the name is kept. */
static void delete_all_but_newest(stream *input, name **cursor) {
    scanner(input, token, cursor);
    if (token_is(token, "["))
        delete_arrays(input, cursor, true);
    else if (is_upper_letter(first_char(token)))
        delete_older(input, cursor);
    else
        error(208, token);
    require(">", 128, input, cursor);
}

static void single_rubout(stream *input, name **cursor) {
    if (is_lower_letter(first_char(token)))
        delete_scalar(input, cursor);
    else if (token_is(token, "["))
        delete_arrays(input, cursor, false);
    else if (is_upper_letter(first_char(token)))
        delete_newest_function(input, cursor);
    else if (token_is(token, "<"))
        delete_all_but_newest(input, cursor);
    else
        error(21, token);
}

void rubout(stream *input, name **cursor) {
    if (cancelflag) error(170, token);
    scanner(input, token, cursor);
    if (!token_is(token, "(")) {
        single_rubout(input, cursor);
        return;
    }
    do {
        scanner(input, token, cursor);
        single_rubout(input, cursor);
    } while (token_is(token, ","));
    require(")", 95, input, cursor);
}

} // namespace tolvek
