/* Built-in functions on arrays. */
#include "language/builtin_routines.h"
#include "matrix/elements.h"

namespace tolvek {

void builtin_array(builtin_call &call) { create_array(call.input, call.cursor); }

void builtin_sparse(builtin_call &call) { make_sparse(call.input, call.cursor); }

void builtin_cols(builtin_call &call) {
    call.read_on();
    if (!token_is(token, "[")) array_error(96, token);
    call.read_on();
    if (token_is(token, "<") && syst_is_empty()) array_error(175, token);
    const array_record *a = token_is(token, "<") ? &syst : array_seek(token);
    call.read_on();
    if (!token_is(token, "]")) array_error(97, token);
    call.read_on();
    call.give(a->cols());
}

} // namespace tolvek
