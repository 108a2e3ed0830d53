/* Failures. Everything that goes wrong ends in one of these routines. They write to standard output.

   error(n, symbol)
     n > 0   numbered error: reports it, then unwinds to the command loop at level 1 by throwing `unwind`;
             with errorpush on, inside a function or at a level above 1, it opens a new command level instead
             and RETURNS when the user resumes. Errors 19 and 22 at a level above 1 are warnings and return.
     n = 0   panic stop: always unwinds.
     n < 0   opens a new command level inside the failing or interrupted computation, and returns.
   So callers go on with a harmless value behind every error(n, ...) with n other than 0.

   Only this module and the statement &q throw; only the driver (top/loop.cpp) catches. */
#pragma once

#include "top/records.h"

namespace tolvek {

/* What is thrown. It holds nothing but its kind. */
struct unwind {
    enum kind { to_top, quit } what;
};

int error(int n, const token_record &symbol);

/* The symbol of errors that have none. */
extern const token_record blank;

/* Back to the prompt at level 1 with no report: for a routine that has written a text of its own. Throws. */
[[noreturn]] void abandon_statement();

/* Reports and goes on. Numbers 0 to 5, 19, 22, 90 and 342 have texts of their own. */
void warning(int n, const char *symbol);

/* Writes message n and a newline; for n = 17 the list of legal symbols first. */
void out_err_mess(int n);

/* An internal check has failed: "*** Tolvek error. ", the text and a newline. A flag other than 0 also opens a
   command level. During start-up the process ends with status 1. Returns otherwise. */
void tolvek_error(const char *text, int flag);
void tolvekerror(const char *text);

/* The heap has refused a request: frees the GCD cache if it can, else opens a command level. Called by the heap
   module alone, which tries again after a return. */
void mem_error();

/* The text of message n, 1 to 377; "" for a number outside. */
const char *message_text(int n);

extern int levelcount;   /* command level, 1 to 9 */
extern int errorpush;    /* after an error open a level instead of unwinding */
extern int close_inpuf;  /* close the file being loaded after an error in it */
extern bool starting_up; /* until the tables stand: an internal error is fatal */

constexpr int highest_level = 9;

} // namespace tolvek
