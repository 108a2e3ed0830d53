#include "display/folding.h"

namespace tolvek {

void break_line(text_out *out, int want_continuation, int *column) {
    if (uglyprint)
        put_char(out, continuation);
    else if (want_continuation)
        put_format(out, " %c", continuation);
    put_char(out, '\n');
    *column = 0;
}

void checklength(text_out *out, int want_continuation, int *column, int *lines) {
    if (!near_margin(*column)) return;
    break_line(out, want_continuation, column);
    if (want_continuation) flush(out);
    ++*lines;
}

void checklength320(text_out *out, int want_continuation, int *column) {
    if (near_margin(*column)) break_line(out, want_continuation, column);
}

void doblanks(text_out *out, int n) {
    constexpr int kept_free = 3, capped_short_of_margin = 12;
    int64_t count = near_margin(n, kept_free) ? int64_t{dispcutoff} - capped_short_of_margin : n;
    for (; count > 0; count--) put_char(out, ' ');
}

} // namespace tolvek
