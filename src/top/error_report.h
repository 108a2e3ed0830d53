/* What error writes, step by step. */
#pragma once

#include "top/tolvek.h"

namespace tolvek {

struct failure {
    int number;           /* above 0: a numbered error; 0: panic stop; below 0: a new command level */
    token_record symbol;  /* the symbol at fault */
    bool unwinds;         /* the computation is abandoned */
};

/* Heading, definition that failed, lines of the loaded file, tokens of the statement, functions and stored statement
   being evaluated. */
void report_failure(const failure &f);

/* The statement's tokens and the flags of stored statements: nothing of them outlives a report. */
void forget_reported_state();

} // namespace tolvek
