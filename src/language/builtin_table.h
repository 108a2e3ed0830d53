/* The built-in functions by name. The place of a name in the table is the code that dispatches it; the names come
   from the data file Qerrs, in the order of their bytes. */
#pragma once

namespace tolvek {

constexpr int builtin_rows = 110;
constexpr int builtin_name_bytes = 11; /* the NUL included */
constexpr int least_numbuiltins = 54;

struct builtin_row {
    char name[builtin_name_bytes];
    /* What a reader of expressions knows the name by, "*" and the code for a factor with a form of its own.
       Dispatch goes by the place in the table alone. */
    char code_text[builtin_name_bytes];
};

extern builtin_row builtin[builtin_rows]; /* rows past numbuiltins are named "b" */
extern int numbuiltins;                   /* the highest code */

/* The code of a name among the rows low to high, by bisection; -1 if it is not there. */
int find_built_in(int low, int high, const char *name);

} // namespace tolvek
