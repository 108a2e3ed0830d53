/* The table of everything that has a default and that a user or a layer can set: one row for each. Start-up writes
   the defaults from it; switches and the report of settings read the limits. */
#pragma once

namespace tolvek {

struct setting {
    const char *name;
    int *variable;
    int value;       /* the default */
    int least, most; /* what it may be set to; for a flag 0 and 1 */
    const char *reason;
};

/* The rows, in groups by what they steer. */
extern const setting settings[];
extern const int setting_count;

/* The row of a variable; null for one that has none. */
const setting *find_setting(const int *variable);

/* Every variable of the table to its default, and the prompt and the continuation character to theirs. */
void set_defaults();

} // namespace tolvek
