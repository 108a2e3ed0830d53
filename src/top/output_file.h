/* The output file: what &s saves and output statements behind &o write.

   Nothing that a user has written before is lost to a write that fails. The text of a file that exists already goes
   into a new file beside it, which takes its name when the first statement that wrote to it has ended well. What a
   statement has written that was broken off or refused is taken back, as far as the file allows that. */
#pragma once

#include "top/text_io.h"

namespace tolvek {

/* Opens the file for writing, from its beginning, and stores its name. On a failure none is open, a text has told why,
   and the answer is false. No file is open before. */
bool open_output(const char *name);

/* Writes out what is due and closes the file. A failure is told. */
void close_output();

/* At the end of a statement: what it wrote is written out and stays. False: that failed, which was told, and it was
   taken back. */
bool settle_output();

/* Behind a statement that was broken off: what it wrote is taken back. */
void take_back_output();

} // namespace tolvek
