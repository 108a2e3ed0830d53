/* The output statement: !x, !'text', !(item, item, ...), and with a second "!" in front of a list a newline behind it.

     item in a list   'text'          the text; with :w blanks behind it up to w columns
                      x + 1           a blank and the value
                      x + 1:w         the value, and blanks up to w - 1 columns
                      x + 1:char      the byte that a number stands for; :char:w with blanks behind it
                      ^x              as x, a name, without a copy
                      [x], [x[1,]]    an array; the same widths
                      &o              first: the list goes to the output file
     alone            a factor, a text or an array, and a newline; a ";" is an empty line

   A ":" at the end of the line is the end of the statement. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

/* Runs the statement with "!" as the token; leaves the token behind it in `token`, and the value of the last item in the
   result. Errors 33, 105, 106, 227, 261, 263. Text for a file that is refused ends the statement with a message. */
void write_out(stream *input, quolynode **result, name **cursor);

} // namespace tolvek
