/* Tokens that the code compares with or passes by address; they are never built anew. */
#pragma once

#include "top/tolvek.h"

#include <cstring>

namespace tolvek {

extern const token_record semicolon, zero, multsign, quotsign, minussign, plussign, comma, esign, quotesign, bulletsign,
    arr_arrsign, diag_sign, sys_func_tok, empty, concatsign, logsign, sqrtsign, expsign, greatintsign, factsign,
    polysign, modoutsign;

/* The token at the end of every stored list, and only there. */
extern const token_record end_of_list;

/* Does the token read so? For literals, which are compared in a word or two: texts are filled up with NULs. */
template <std::size_t n> inline bool token_is(const token_record &t, const char (&text)[n]) {
    static_assert(n <= token_bytes);
    return std::memcmp(t.text, text, n) == 0;
}
bool token_equals(const token_record &t, const char *text);
inline bool same_text(const token_record &a, const token_record &b) {
    return std::memcmp(a.text, b.text, token_bytes) == 0;
}
inline bool is_end_of_list(const token_record &t) { return token_is(t, "\xC2\xA5"); }

/* A token of at most 11 characters, not yet hashed. */
void set_token(token_record &t, const char *text);

/* The first character of a token, 0 to 255. */
inline int first_char(const token_record &t) { return static_cast<unsigned char>(t.text[0]); }

inline bool is_lower_letter(int c) { return c >= 'a' && c <= 'z'; }
inline bool is_upper_letter(int c) { return c >= 'A' && c <= 'Z'; }
inline bool is_letter(int c) { return is_lower_letter(c) || is_upper_letter(c); }
inline bool is_digit(int c) { return c >= '0' && c <= '9'; }

} // namespace tolvek
