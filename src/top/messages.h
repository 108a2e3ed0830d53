/* The texts of the numbered messages. message_text stands in top/errors.h, with the routines that write them. */
#pragma once

#include "top/data_files.h"

namespace tolvek {

constexpr int message_count = 377;
constexpr int message_bytes = 66; /* of a stored text, the NUL included */

/* Takes the next message_count lines of the file, each cut to its first 65 characters. Texts that the file does not
   have are empty. */
void read_messages(data_file &file);

} // namespace tolvek
