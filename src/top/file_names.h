/* Names of files as users give them: typed in quotes, as an array of character codes, or as the answer to a question. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

struct file_name {
    static constexpr std::size_t longest = 255;
    char text[longest + 1] = "";
};

/* Reads [x], with "[" as the token, and leaves the token behind "]": the elements of a whole ordinary array are character
   codes; blanks among them are left out. Errors: 28 no array, 258 a part of one, 259 sparse, 260 no number. */
bool name_from_array(stream *input, name **cursor, file_name &into);

/* Asks for a name. False: there is none, as the user was told: by `cancelled` for the answer "@", or by error 33 or
   a warning. What was typed behind the command is as before. */
bool ask_for_name(const char *question, const char *cancelled, file_name &into);

/* Is it a name for a file, other than that of the file of the other direction? Errors 149, 248. */
bool is_usable(const char *name, const char *other);

} // namespace tolvek
