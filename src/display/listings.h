/* Lists of what is defined: scalars, arrays, and the polynomial variables with their relations. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

/* Scalars and arrays on the terminal, sorted by name. with_values: each scalar with its value; otherwise the names. */
void listvars(int with_values);

/* The scalars on the terminal, a line for each: sorted in byte order of the names if there are at most 1000. Of a name
   that functions have shadowed the newest ten stand there, the newest first, and a line tells how many more there
   are. */
void dump(text_out *out, int with_values);

/* The polynomial variables. The list: from the innermost to the outermost, twelve to a line, each with a relation on a
   line of its own. as_saved: the statements that define them when they are read again: the variables from the outermost
   inwards, then the relations from the innermost outwards; in a modular ring each relation behind a remark. */
void polylist(text_out *out, int as_saved);

/* One entry of a sorted list: a name, and which of several records of that name it is. */
struct listed_name {
    const char *text;
    int place;
    const void *record;
};
/* Sorts by the bytes of the names, those of one name by place. */
void sort_vars(listed_name *rows, int count);
constexpr int most_sorted = 1000; /* longer lists are shown in the order of the chains */

} // namespace tolvek
