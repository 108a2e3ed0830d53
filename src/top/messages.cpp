#include "top/messages.h"

#include "top/errors.h"

namespace tolvek {

static char erp[message_count][message_bytes]; /* message n stands in row n - 1 */

void read_messages(data_file &file) {
    for (auto &text : erp) text[0] = 0;
    for (auto &text : erp)
        if (!next_line(file, text, message_bytes)) return;
}

const char *message_text(int n) { return n >= 1 && n <= message_count ? erp[n - 1] : ""; }

} // namespace tolvek
