/* User functions: the table of functions, and their calls. */
#pragma once

#include "language/names.h"
#include "language/stored.h"

namespace tolvek {

extern function *func_store[function_chains];

function *find_function(token_record &t); /* the newest of the name; null: none */
void add_function(function *f);           /* at the head of its chain; the table owns it */
bool delete_function(token_record &t);    /* the newest of the name */
/* Deletes all functions of the name but the newest; false: there is none. */
bool delete_older_functions(token_record &t);
bool rename_function(token_record &from, const token_record &to); /* false: there is none */
void forget_functions();                                          /* for tests */

/* A name of upper case as a factor: a built-in function or a call of a user's. Error 16. */
void call_function(stream *input, quolynode **result, name **cursor);

/* Calls a user function, with its name as the token; leaves the token behind the call. Missing arguments are 0.
   Errors 14, 15, 16, 31, 125, 206, 207, 318. */
void evaluate(stream *input, quolynode **result, name **cursor);

/* Takes the parameters of all calls off the tables: a computation is abandoned. By-reference values are dropped. */
void end_all_calls();

/* A list that may be running is freed when the outermost statement has ended. */
void retire_forms(form *list);
void release_retired_forms();

} // namespace tolvek
