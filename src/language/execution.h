/* Where the execution of stored statements and the reading of definitions stand: what an error reports, and what a
   command level keeps for the statement that it interrupts. */
#pragma once

#include "language/tokens.h"
#include "top/text_io.h"

namespace tolvek {

struct function;

/* ---- the functions being evaluated, oldest first ---- */

struct call_frame {
    const function *called;
    variable *bound; /* its parameters, linked by next_of_call */
};

extern int statcount;                  /* their number; no limit but the stack */
call_frame &running_frame(int i);      /* 0 is the oldest, statcount - 1 the newest */
int enter_function(const function *f); /* the place of the new frame */
void leave_function();
constexpr int frames_reported = 500;

/* ---- the statement being evaluated ---- */

extern name *startexpr;                       /* its stored tokens; null outside stored lists */
extern name *prev_expr;                       /* those of the control statement around it */
extern int exit_flag, leave_flag, cycle_flag; /* set by &}, &> and &] for the loops and functions around them */
extern int tripval;
extern int matrix_eval;

/* ---- the definition being read ---- */

extern token_record current_func; /* its name */
extern int func_def_count;        /* depth of definitions being read */
extern name *last_good_one;       /* the last list that was stored */
extern name *last_comm;           /* its comment */
extern name *last_attached;       /* the list attached last */
extern int doing_sys_func, in_sys_func;
extern int cancelflag; /* a load deletes functions */
extern int done_load;  /* &x: end the load */
extern int want_sparse;

/* ---- listing of a stored statement ---- */

/* Writes a token list as its author would: blanks around operators outside parentheses, and where the source had
   them. */
void listchars(text_out *out, const name *list);

} // namespace tolvek
