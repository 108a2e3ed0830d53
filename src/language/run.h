/* Running of stored statements. */
#pragma once

#include "language/stored.h"
#include "top/heap.h"
#include "top/tolvek.h"

namespace tolvek {

/* Runs the statements of a list one after the other, the value of the last one being left in the result, until one of the
   flags exit_flag, leave_flag and cycle_flag is on. */
void eval_form(stream *input, const form *list, quolynode **result);

/* Runs one statement. Error 31: it does not end where its tokens do. */
void getval(stream *input, const cond *c, quolynode **result);

/* A control statement typed at the prompt, with its keyword as the token: it is read whole, kept as the stored statement of
   <F, and run. */
void call_sys_func(stream *input, quolynode **result, name **cursor);
/* <F: runs it once more. Errors 222, 225. */
void rerun_sys_func(stream *input, quolynode **result, name **cursor);
extern form *sys_func;

bool begins_control_word(const token_record &t); /* if, while or for */

/* ---- loops (loops.cpp) ---- */

/* The head of a loop over integers. */
struct integer_range {
    token_record variable;
    int64_t lower, upper, step;
};

/* The same, or that of a loop over the rows of a sparse array which have an entry in given columns. */
struct loop_range : integer_range {
    bool by_rows = false;
    buffer<int32_t> rows; /* ascending, as the user counts them */
    std::size_t next_row = 0;
};

/* Reads the head of a `for` or of a sum, with its variable as the token, and sets the variable to the lower bound. Errors
   27, 28, 49, 50, 51, 52, 53, 77, 118, 335; over_array, unless it is 0, for a loop over the rows of an array. */
void set_up_for_loop(stream *input, name **cursor, loop_range &range, int over_array = 0);
/* Writes the lower bound into the variable once more, in the ring in force. */
void start_loop(integer_range &range);
/* The next value into the variable; it is created anew where it has gone. Error 47. False: the loop has ended. */
bool step_loop(integer_range &range);
bool step_loop(loop_range &range);
inline bool runs(const integer_range &r) { return r.step < 0 ? r.lower >= r.upper : r.lower <= r.upper; }

void run_for(stream *input, const cond *c, quolynode **result);
void run_while(stream *input, const cond *c, quolynode **result);
void run_if(stream *input, const cond *c, quolynode **result);

/* ---- conditions (conditions.cpp) ---- */

/* A whole condition. All its parts are evaluated. Errors 13, 104, 123, 153. */
int bool_expre(stream *input, name **cursor);

/* ---- sums and products (sums.cpp) ---- */

/* Sigma and Prod, with the name as the token; leaves the token behind the closing bracket. */
void sum_or_product(stream *input, quolynode **result, name **cursor, bool product);
long double flote_sum_or_product(stream *input, name **cursor, bool product);

} // namespace tolvek
