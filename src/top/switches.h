/* Switches and settings: the commands &x, and the assignments &(x = y). Both forms and the report of settings read
   one table (top/switches_table.cpp), a row for each letter. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

struct switch_row;

/* One command on its way. Entered with its letter in `token`. */
struct switch_call {
    const switch_row *row;
    stream *input;
    quolynode **result;
    name **cursor;
    bool keeps_result;  /* out: the value of the statement stands in the result; otherwise it is 0 */
    bool token_is_read; /* out: the token behind the statement is in `token` */
};

/* The row of the command &x, and that of &_x; null when there is none. */
const switch_row *find_switch(int letter);
const switch_row *find_underscore_switch(int letter);

void run_switch(switch_call &call);

/* Sets disp_size, negative values as 0, and disp_cons to match; warns from 1000 on. An interrupt leaves both as they
   were. */
void calc_disp(int size);

/* The argument &o of an output statement, entered with "&" as the token: the stream of the output file, with "o" as the
   token. Errors 261 no "o", 263 no output file; null where they return. */
text_out *handle_andsign(stream *input, name **cursor);

} // namespace tolvek
