/* The state of the system as a script: settings, functions, scalars and arrays, in the statements that make them again.
   It ends in &x, which stops a load. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

struct switch_call;

/* &s: writes the state to the output file, behind what stands there; asks for a file while none is open. &S: asks for
   a file. Errors 33, 149, 248. A write that fails is told, and ends the statement; what was written of the state is
   taken back. */
void save(switch_call &call);

/* &(S = name): the output file is the one of that name; "@" closes it. Nothing is saved. */
void save_to(switch_call &call, const char *name);

/* The statements alone. Each name stands once, with its outermost value; parameters of running functions are left out,
   and so are floats that no literal writes. */
void write_state(text_out *out);

} // namespace tolvek
