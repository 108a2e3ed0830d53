#include "language/scanner.h"

#include "language/char_sets.h"
#include "numbers/number_decimal.h"
#include "top/driver.h"

namespace tolvek {

token_record token{"", hash_unknown};
int namelength = 10;
int leftover = 0;
int semicount = 0;
name *currentchar = nullptr;
token_ring recent_tokens;

void token_ring::note(const token_record &t) {
    if (count < room) {
        at[(oldest + count++) % room] = t;
        return;
    }
    at[oldest] = t;
    oldest = (oldest + 1) % room;
}

void token_ring::write() const {
    for (int i = 0; i < count; i++) say(at[(oldest + i) % room].text);
}

/* ---- steps that the three scanners share ---- */

static bool take_stored_token(token_record &into, name **cursor) {
    if (!*cursor) return false;
    *cursor = (*cursor)->next;
    into = (*cursor)->tok;
    currentchar = (*cursor)->next;
    return true;
}

bool skip_white_space(stream in) {
    int c = peek_char(in);
    while (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
        take_char(in);
        c = peek_char(in);
    }
    return c != no_char;
}

void skip_line(stream in) {
    int c;
    do c = take_char(in);
    while (c != '\n' && c != no_char);
}

static bool is_throwaway(int c) { return PSet_Test(throwaways, c); }
static bool is_continuation(int c) { return c == static_cast<unsigned char>(continuation); }
static bool is_name_char(int c) { return is_letter(c) || is_digit(c) || c == '_'; }

/* The rest of a continued line is no part of the statement. */
static int continue_on_next_line(stream in) {
    skip_line(in);
    semicount = 0;
    return ' ';
}

/* The first visible character of a token. A newline ends the statement at a terminal, and is white space in a file. */
static int first_visible(stream in) {
    int c;
    do {
        c = input_ended(in) ? ';' : ' ';
        while (is_throwaway(c) && !input_ended(in) && peek_char(in) != '\n') c = take_char(in);
        if (c == ' ' && peek_char(in) == '\n') c = tt_flag ? ';' : take_char(in);
        if (is_continuation(c)) c = continue_on_next_line(in);
    } while (is_throwaway(c));
    return c;
}

/* The character behind a character of a name. */
static int next_of_name(stream in) {
    if (input_ended(in)) return ';';
    int c = ' ';
    if (peek_char(in) != '\n') c = take_char(in);
    if (c == ' ' && peek_char(in) == '\n' && tt_flag) c = ';';
    return is_continuation(c) ? continue_on_next_line(in) : c;
}

/* The character that the last name was ended by; 0 when it was white space, or there is none. */
static int take_leftover() {
    int c = leftover;
    leftover = 0;
    return is_throwaway(c) ? 0 : c;
}

void scanner(stream *input, token_record &into, name **cursor) {
    if (take_stored_token(into, cursor)) return;
    set_token(into, "");
    int c = take_leftover();
    if (!c) c = first_visible(*input);
    if (!is_letter(c)) {
        into.text[0] = static_cast<char>(c);
    } else {
        int length = 0;
        do {
            into.text[length++] = static_cast<char>(c);
            c = next_of_name(*input);
        } while (length < namelength && is_name_char(c));
        leftover = c;
    }
    recent_tokens.note(into);
}

void dumbscanner(stream *input, token_record &into, name **cursor, int *line_end) {
    *line_end = 0;
    if (take_stored_token(into, cursor)) return;
    set_token(into, "");
    int c = take_char(*input);
    if (c == no_char || c == '\n') {
        *line_end = 1;
        c = c == '\n' ? '\r' : ';';
    } else if (is_continuation(c)) {
        skip_line(*input);
        c = ' ';
    }
    into.text[0] = static_cast<char>(c);
    recent_tokens.note(into);
}

void mygetchar(char_source &s) {
    stream in = *s.input;
    s.c = ' ';
    while (s.c == ' ' || s.c == '\t' || s.c == '\r') {
        if (input_ended(in)) {
            s.c = ';';
        } else if (peek_char(in) == '\n') {
            if (tt_flag) {
                s.c = ';';
            } else {
                take_char(in);
                *s.line_end = 1;
            }
        } else {
            s.c = take_char(in);
        }
        if (is_continuation(s.c)) {
            s.c = continue_on_next_line(in);
            *s.line_end = 1;
        }
    }
}

void spec_scanner(stream *input, token_record &into, name **cursor, int *line_end) {
    *line_end = 0;
    if (take_stored_token(into, cursor)) return;
    set_token(into, "");
    char_source source{take_leftover(), input, line_end};
    if (!source.c) mygetchar(source);
    if (!is_letter(source.c)) {
        into.text[0] = static_cast<char>(source.c);
    } else {
        int length = 0;
        do {
            into.text[length++] = static_cast<char>(source.c);
            mygetchar(source);
        } while (length < namelength && is_name_char(source.c));
        leftover = source.c;
    }
    recent_tokens.note(into);
}

} // namespace tolvek
