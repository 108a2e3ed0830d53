/* Deletion of names: the statement @. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

/* @x, @(x, y), @[a], @[a*], @[*], @F, @<F>, @<[a]>. Entered with "@" as the token; leaves the token behind the list.
   Errors: 19, 20, 28 for what does not exist, 21 and 208 bad token, 24 "]", 95 separator, 128 ">", 170. */
void rubout(stream *input, name **cursor);

} // namespace tolvek
