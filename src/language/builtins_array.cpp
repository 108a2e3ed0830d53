/* Built-in functions that look at arrays. What changes them: builtins_array_change.cpp. */
#include "language/builtin_array_args.h"
#include "language/builtin_routines.h"
#include "matrix/array_arithmetic.h"
#include "matrix/array_statements.h"
#include "matrix/elements.h"
#include "top/driver.h"

namespace tolvek {

/* ---- arguments ---- */

void read_array_factor(builtin_call &call, matrix_value &m) {
    call.read_on();
    arr_fact(call.input, call.cursor, m);
}

array_argument::array_argument(builtin_call &call) {
    if (token_is(token, "*")) {
        say(" *** Warning. leading * in argument list makes no sense here and was ignored.\n");
        call.read_on();
    }
    if (!token_is(token, "[")) array_error(178, token);
    left_side(call.input, call.cursor, region, false, 28);
    existing(region);
}

array_record *array_argument::whole() const {
    if (region.sub) array_error(182, region.tok);
    return region.array;
}

array_record *array_argument::whole_sparse() const {
    array_record *a = whole();
    if (!a->sparse_head) array_error(333, region.tok);
    return a;
}

/* ---- statements that are read as factors ---- */

void builtin_array(builtin_call &call) { create_array(call.input, call.cursor); }

void builtin_sparse(builtin_call &call) { make_sparse(call.input, call.cursor); }

void builtin_array_expression(builtin_call &call) { arr_parse(call.input, call.result, call.cursor); }

/* ---- sizes ---- */

/* [x] or [<]; the token "[" is missing: error no_bracket, "]": no_end. */
static const array_record *array_in_brackets(builtin_call &call, int no_bracket, int no_end) {
    if (!token_is(token, "[")) array_error(no_bracket, token);
    call.read_on();
    if (token_is(token, "<") && syst_is_empty()) array_error(175, token);
    const array_record *a = token_is(token, "<") ? &syst : array_seek(token);
    call.read_on();
    if (!token_is(token, "]")) array_error(no_end, token);
    call.read_on();
    return a;
}

void builtin_cols(builtin_call &call) {
    call.read_on();
    call.give(array_in_brackets(call, 96, 97)->cols());
}

void give_cells_of_array(builtin_call &call) { quoly_set_int64(array_in_brackets(call, 178, 24)->size, call.result); }

/* ---- sums and zeros ---- */

void builtin_sum_of_entries(builtin_call &call) {
    matrix_value m;
    read_array_factor(call, m);
    sum_arr(m, call.result);
}

void builtin_trace(builtin_call &call) {
    matrix_value m;
    read_array_factor(call, m);
    trace_of(m, call.result);
}

void builtin_iszero(builtin_call &call) {
    matrix_value m;
    call.read_on();
    if (!token_is(token, "[") && !token_is(token, "(")) array_error(184, token);
    arr_fact(call.input, call.cursor, m);
    m.fill_holes();
    call.give(all_zero(m));
}

/* ---- paths in graphs ---- */

/* The matrix of a graph: an entry for each edge. */
static void check_graph(const matrix_value &m) {
    constexpr int most_vertices = 100;
    if (m.is_scalar() || m.is_sparse() || !m.is_square() || m.rows > most_vertices) array_error(23, token);
}

/* Behind the matrix: one value at most, and ")". */
static void read_limit(builtin_call &call) {
    if (token_is(token, ",")) {
        held_value matrix;
        quoly_handle limit;
        call.read_on();
        old_expre(call.input, limit.slot(), call.cursor);
    }
    if (token_is(token, ",")) array_error(15, token);
    close_paren(call);
}

void builtin_hamiltonian_path(builtin_call &call) {
    matrix_value m;
    call.read_on();
    const bool list = token_is(token, "(");
    if (list) call.read_on();
    (list ? arr_expre : arr_fact)(call.input, call.cursor, m);
    check_graph(m);
    if (list) read_limit(call);
    say("not implemented\n");
    abandon_statement();
}

} // namespace tolvek
