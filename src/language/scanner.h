/* How characters become tokens. Every routine takes the next token either from the stored list at the cursor, when
   that is not null, or from the input's characters. */
#pragma once

#include "language/tokens.h"
#include "top/text_io.h"

namespace tolvek {

extern token_record token; /* the current token: what every routine of the language looks at */
extern int namelength;     /* characters of a name at most; the rest begins the next token */
extern int leftover;       /* the character read ahead; 0 or a blank: none */
extern int semicount;      /* successive empty lines inside a definition */
extern name *currentchar;  /* the stored token behind the current one, for error reports */

/* Delivers the next token: a name, any other single character, or the end-of-list token of a stored list. At the end
   of input, and at the end of a line of a terminal (tt_flag), it delivers ";"; the newline stays unread. */
void scanner(stream *input, token_record &into, name **cursor);

/* Delivers the next raw character, white space included, for quotes and comments. *line_end tells that it stands
   for the end of a line (carriage return) or of the input (";"). */
void dumbscanner(stream *input, token_record &into, name **cursor, int *line_end);

/* As scanner, but a name runs on across blanks, and *line_end tells that the end of a line was crossed. */
void spec_scanner(stream *input, token_record &into, name **cursor, int *line_end);

/* What spec_scanner reads from. */
struct char_source {
    int c; /* the current character */
    stream *input;
    int *line_end;
};
void mygetchar(char_source &s); /* the next significant character */

/* Skips to the end of the line and takes the newline. */
void skip_line(stream in);
/* White space, newlines included; false: the input has ended behind it. */
bool skip_white_space(stream in);

/* ---- the last 60 tokens of the statement, for error reports ---- */

struct token_ring {
    static constexpr int room = 60;
    token_record at[room];
    int oldest = 0, count = 0;

    void note(const token_record &t);
    void clear() { oldest = count = 0; }
    void write() const; /* one after the other, on standard output */
};
extern token_ring recent_tokens;

} // namespace tolvek
