/* Tokens that the code compares with or passes by address; they are never built anew. */
#pragma once

#include "top/tolvek.h"

namespace tolvek {

extern const token_record semicolon, zero, multsign, quotsign, minussign, plussign, comma, esign, quotesign, bulletsign,
    arr_arrsign, diag_sign, sys_func_tok, empty, concatsign, logsign, sqrtsign, expsign, greatintsign, factsign,
    polysign, modoutsign;

/* The token at the end of every stored list, and only there. */
extern const token_record end_of_list;

bool is_end_of_list(const token_record &t);
bool token_is(const token_record &t, const char *text);

/* A token of at most 11 characters, not yet hashed. */
void set_token(token_record &t, const char *text);

/* The first character of a token, 0 to 255. */
inline int first_char(const token_record &t) { return static_cast<unsigned char>(t.text[0]); }

bool is_letter(int c);       /* a to z, A to Z */
bool is_lower_letter(int c); /* a to z */
bool is_upper_letter(int c);
bool is_digit(int c);

} // namespace tolvek
