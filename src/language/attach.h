/* Private to the reading of stored statements: how tokens become lists. */
#pragma once

#include "language/stored.h"

namespace tolvek {

/* The terminator of the body of an `if`: "else" or "fi". */
extern const char else_or_fi[];

/* Does the token end a sequence of this terminator? A "." between figures is part of a number. */
bool ends_sequence(const char *terminator);

/* Reads tokens, the first being `token`, up to the terminator or a ";" into a closed list; both stay in `token`. A
   definition inside, and text in quotes, are taken whole. Error 8: no token. */
void attach(statement_source &from, const char *terminator, name_list &list);

/* The same for the head of a loop: "to" and "by" are marked, and a `for` is marked by a first token ":". */
void attach_head(statement_source &from, const char *terminator, bool is_for, name_list &list);

/* Behind a ";" that ended a line of a definition: drops its newline. True: there was one. */
bool drop_newline(statement_source &from);
bool at_newline(const statement_source &from);

/* No more tokens will come. */
bool source_ended(const statement_source &from);

} // namespace tolvek
