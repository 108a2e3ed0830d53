/* The display of values. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

/* Shows one value. want_continuation: the text goes to the screen. finish: it is a whole value, to be followed by the
   end of the line (on the terminal) or the terminator (to a file). as_character: the value is one byte. `column`
   counts the characters of the line. The value is not changed. */
void quoly_display(text_out *out, int want_continuation, int finish, int after_value, const quolynode *q, int *column,
                   const char *terminator, int blank_after_minus, int lead_blank, int as_character);

/* The value of a statement, on the screen. */
void quoly_display_value(text_out *out, const quolynode *q, int *column);

} // namespace tolvek
