/* Names of upper case: the built-in functions first, then the user's. */
#include "language/builtin_table.h"
#include "language/expressions.h"
#include "top/driver.h"

namespace tolvek {

/* A name of the table without a routine says so, and the statement is over. */
static void builtin_func(int) {
    say("not implemented\n");
    abandon_statement();
}

void call_function(stream *input, quolynode **result, name **cursor) {
    int index = find_built_in(0, numbuiltins, token.text);
    if (index >= 0) return builtin_func(index);
    error(16, token);
    scanner(input, token, cursor);
    quoly_set(0, result);
}

} // namespace tolvek
