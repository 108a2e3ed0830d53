/* The built-in functions. A row for each code of the table of names (builtin_table.h): its routine, or the error that it
   answers with while its layer is closed. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

/* Calls the built-in function of the name in `token`, and leaves the token behind the call; false: there is none of the
   name. */
bool call_builtin(stream *input, quolynode **result, name **cursor);

/* The name that a code's routine goes by: the same as in the table of names. */
const char *builtin_entry_name(int code);
/* The error of a code whose layer is closed; 0: it is open. */
int builtin_refusal(int code);

} // namespace tolvek
