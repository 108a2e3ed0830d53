/* The right margin: where lines of shown values break, and how.

   The columns of a line are counted roughly: some characters are not counted and some are counted in advance. The
   counts are kept as they are, since they decide where lines break, and a text that was saved is compared line by
   line. A margin of 0 or less breaks a line at each chance. */
#pragma once

#include "numbers/number_decimal.h"
#include "top/text_io.h"

namespace tolvek {

/* Has the line come within `before` columns of the margin? */
inline bool near_margin(int column, int before = 0) { return column >= int64_t{dispcutoff} - before; }

/* At the margin: ends the line, with the continuation mark if the text goes to the screen (want_continuation), or alone
   under uglyprint; column := 0, and one more line. Without a mark the break is harmless in a file, since line ends
   inside a statement are skipped when it is read. A text for the screen is flushed. */
void checklength(text_out *out, int want_continuation, int *column, int *lines);

/* The same without a flush and without a count of lines. */
void checklength320(text_out *out, int want_continuation, int *column);

/* Ends the line wherever it stands, with the same marks; column := 0. */
void break_line(text_out *out, int want_continuation, int *column);

/* n blanks; dispcutoff - 12 of them if n comes within 3 columns of the margin, and none if that is not positive. So a
   deep indent never pushes a line past the margin. */
void doblanks(text_out *out, int n);

} // namespace tolvek
