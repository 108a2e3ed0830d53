/* Reading of the data files in BACKWARD/: plain text, decimal integers and words between white space, however they
   are laid out in lines. A file is read piece by piece, as far as it is asked for, and its text stays until it is
   closed: a file of which only the beginning is wanted costs no more than that.
   Where more has to be read, an interrupt may be taken. */
#pragma once

#include "top/text_io.h"

#include <cstdint>

namespace tolvek {

struct data_file {
    text_in source;     /* open until all text has been read */
    buffer<char> text;  /* what has been read of the file, and a closing NUL */
    std::size_t at = 0; /* where the next token is looked for */
    bool ended = true;  /* there is no more to read */
};

/* Opens the file, from its beginning; false if it cannot be opened. */
bool open_data_file(data_file &file, const char *path);

/* Gives back the descriptor and the text. */
void close_data_file(data_file &file);

/* Reads the rest of the file, so that what follows reads nothing and meets no safe point. */
void fetch_whole(data_file &file);

/* *value := the next integer, as scanf's "%ld" reads it, cut to 64 bits. False, and *value as it was, where the
   file ends or something else stands; what stands there is not passed over. */
bool next_integer(data_file &file, int64_t *value);

/* The same for a table of integers; false when it could not be filled. What was not read is left as it was. */
bool next_integers(data_file &file, int32_t *table, int count);
bool next_integers(data_file &file, uint16_t *table, int count);

/* Passes over tokens of any kind; false when the file ends before. */
bool skip_tokens(data_file &file, long count);

/* Passes over the rest of the file; the count of its tokens. */
long count_rest(data_file &file);

/* *value := the integer that is the n-th token from the end (the last is 1); false if there is none among the last
   bytes of the file, as many as told. Does not move the place of the next token, nor read what lies before. */
bool integer_from_end(data_file &file, long n, std::size_t bytes, int64_t *value);

/* The next word or the rest of the line, cut to room - 1 characters and closed by a NUL; false at the end of the
   file. A line has at most 1,023 characters: what follows counts as the next line. */
bool next_word(data_file &file, char *word, std::size_t room);
bool next_line(data_file &file, char *line, std::size_t room);

} // namespace tolvek
