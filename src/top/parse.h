/* The statement dispatcher. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

/* Runs one statement whose first token stands in `token`, and returns with the token behind it in `token`. The value
   is left in the result. Also called for a factor that begins with ! & ? or @. */
void parse(stream *input, quolynode **result, name **cursor);

/* Does the token end a statement: ";", the end of a stored list, "@" or ":"? */
bool ends_statement(const token_record &t);

/* Does a statement of the array layer begin with the token? */
bool begins_array_statement(const token_record &t);

/* Reads and evaluates one statement of a stream, up to its terminator (error 129). */
void run_statement(stream *input, quolynode **result);

/* The statement &... (top/and_statement.cpp). */
void and_statement(stream *input, quolynode **result, name **cursor);

/* The statement ?x: reads a value from the terminal. */
void ask_for_value(stream *input, quolynode **result, name **cursor);

/* Is nothing but blanks left of the line that is being read? */
bool at_line_end(stream in);

} // namespace tolvek
