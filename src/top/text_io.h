/* Text in and out. Statements are read, and everything is written, through this module alone; nothing else in the
   core calls stdio or read and write. */
#pragma once

#include "top/heap.h"

#include <cstdarg>
#include <cstdint>
#include <cstdint>
#include <sys/types.h>

namespace tolvek {

/* ---- reading ---- */

constexpr int no_char = -1; /* the stream has ended */

/* A source of characters. Characters are unsigned: 0 to 255. */
struct text_in {
    text_in() = default;
    explicit text_in(int descriptor) : fd(descriptor) {}

    int fd = -1;
    int at = 0, end = 0;      /* the unread part of `block` */
    bool ended = false;       /* the last read met the end */
    bool failed = false;      /* the last read met an error: the terminal has gone */
    bool inside_line = false; /* a character of the current line was taken, its newline was not */
    buffer<char> replay;      /* text put back, read before `block` */
    std::size_t replay_at = 0;
    char block[4096];
};
using stream = text_in *;

extern text_in standard_input;

int peek_char(stream in); /* the next character, left in place; no_char at the end */
int take_char(stream in); /* the next character; no_char at the end */
inline bool input_ended(stream in) { return peek_char(in) == no_char; }

/* Forgets that the end or an error was met, so that the next look asks again. */
void ask_again(stream in);

/* Discards the rest of the line that is being read, newline included; nothing when no line has been begun.
   Ends at the end of input. Does what ask_again does as well. Never seeks. */
void rewind_line(stream in);

/* Takes the same characters into `line`, so that they can be put back when a command level is left. */
void take_rest_of_line(stream in, buffer<char> &line);
void put_back_line(stream in, const buffer<char> &line);

/* Opens a file for reading; false if it cannot be opened. close_text gives the descriptor back. */
bool open_text(text_in &in, const char *path);
void close_text(text_in &in);
void restart_text(text_in &in); /* back to the beginning, where the file has one */

/* ---- writing ---- */

struct text_out {
    explicit text_out(int descriptor) : fd(descriptor) {}

    int fd;
    int used = 0;
    bool failed = false;     /* a write was refused: text is dropped from here on */
    int why = 0;             /* the errno of that write */
    int64_t taken = 0;       /* characters taken so far */
    bool line_begun = false; /* the last character was no newline */
    int64_t count = 0;       /* characters so far */
    char block[8192];
};

extern text_out standard_output, standard_error;
extern text_out *Output; /* where results are displayed */

void put_char(text_out *out, int c);
void put_text(text_out *out, const char *text);
void put_bytes(text_out *out, const char *bytes, std::size_t count);
[[gnu::format(printf, 2, 3)]] void put_format(text_out *out, const char *format, ...);
void fresh_line(text_out *out); /* a newline, unless the line is empty */
void flush(text_out *out);

/* The same on standard output. */
void say(const char *text);
[[gnu::format(printf, 1, 2)]] void sayf(const char *format, ...);

/* ---- what lies beneath ---- */

/* Reads and writes of the C library unless a test or another program sets other routines. read_some waits, and
   returns the count, 0 at the end, -1 with errno EINTR when a signal came first, or -1 for an error. */
struct io_hooks {
    ssize_t (*read_some)(int fd, char *to, std::size_t room);
    ssize_t (*write_some)(int fd, const char *from, std::size_t count);
};
extern io_hooks io;

} // namespace tolvek
