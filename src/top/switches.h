/* Switches and settings: the commands &x, and the assignments &(x = y). Both forms and the report of settings read
   one table (top/switches_table.cpp), a row for each letter. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

/* Codes of the commands &_x, outside the range of characters. */
enum switch_code {
    code_columns = 256, /* &_d */
    code_karatsuba,     /* &_k */
    code_exactly,       /* &_m( ) */
    code_read_in,       /* &_n */
    code_leave_level,   /* &_p */
    code_random,        /* &_r */
    code_suppress,      /* &_s */
    code_try_rat,       /* &_t */
    code_clean_up,      /* &_G */
    code_new_level,     /* &_P */
};

/* One command on its way. Entered with its letter in `token`. */
struct switch_call {
    int code; /* the letter, or a switch_code */
    stream *input;
    quolynode **result;
    name **cursor;
    bool keeps_result;  /* out: the value of the statement stands in the result; otherwise it is 0 */
    bool token_is_read; /* out: the token behind the statement is in `token` */
};

/* Runs the command; false when no row has its code. */
bool run_switch(switch_call &call);

/* Sets disp_size, negative values as 0, and disp_cons to match; warns from 1000 on. An interrupt leaves both as they
   were. */
void calc_disp(int size);

/* The argument &o of an output statement, entered with "&" as the token: the stream of the output file, with "o" as the
   token. Errors 261 no "o", 263 no output file; null where they return. */
text_out *handle_andsign(stream *input, name **cursor);

} // namespace tolvek
