/* Loads: statements read from a file, as if they were typed, with nothing shown of their values. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

struct switch_call;

/* &r: reads the open file on behind the &x that ended the last load, or once more from its beginning; asks for a file
   while none is open. &R: asks for a file. Errors 33, 149, 248, 374, and those of the statements.

   A statement in a file ends on the line of its terminator: the rest of that line is dropped. The file stays open. A load
   inside a load goes on with the new file, and the rest of the old one is not read. An error ends all loads; the values
   that were read before it stay. */
void load(switch_call &call);

/* &(R = name): the input file is the one of that name, and is read; "@" closes it. The value of its last statement is the
   result. */
void load_from(switch_call &call, const char *name);

void close_input();

} // namespace tolvek
