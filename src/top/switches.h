/* Switches and settings: the commands behind &, and the assignments &(x = y). */
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

} // namespace tolvek
