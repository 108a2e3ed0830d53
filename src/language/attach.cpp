#include "language/attach.h"

#include "language/execution.h"
#include "language/expressions.h"
#include "top/driver.h"
#include "top/interrupts.h"
#include "top/parse.h"

#include <cstring>

namespace tolvek {

const char else_or_fi[] = "elfi*";

bool source_ended(const statement_source &from) {
    bool ahead = leftover && leftover != ' ';
    return !*from.cursor && !ahead && input_ended(*from.input);
}

bool at_newline(const statement_source &from) {
    bool ahead = leftover && leftover != ' ';
    if (*from.cursor || !tt_flag || ahead || !at_line_end(*from.input)) return false;
    return peek_char(*from.input) == '\n';
}

bool drop_newline(statement_source &from) {
    if (!at_newline(from)) return false;
    take_char(*from.input);
    leftover = 0;
    return true;
}

bool ends_sequence(const char *terminator) {
    if (terminator == else_or_fi) return token_is(token, "else") || token_is(token, "fi");
    if (token_is(token, "else") && std::strcmp(terminator, "od") == 0) return true; /* to be refused there */
    return token_equals(token, terminator);
}

static bool is_digit_token(const name *n) { return n && is_digit(first_char(n->tok)); }

/* Is the "." in `token` a decimal point? Behind a figure it always is, and in front of one. */
static bool is_decimal_point(const statement_source &from, const name *before) {
    if (!token_is(token, ".")) return false;
    if (is_digit_token(before)) return true;
    if (*from.cursor) return is_digit_token((*from.cursor)->next);
    return is_digit(peek_char(*from.input));
}

static bool begins_definition(const name *before) {
    return before && is_upper_letter(first_char(token)) &&
           (token_is(before->tok, "Func") || token_is(before->tok, "Function"));
}

/* ---- text in quotes ---- */

static void warn_of_line_end() { say(" Warning. End of line encountered inside a literal.\n"); }

/* The characters between quotes, each a token, and the closing quote. */
static void attach_literal(statement_source &from, name_list &list) {
    list.add(token);
    for (;;) {
        int line_end;
        dumbscanner(from.input, token, from.cursor, &line_end);
        if (is_end_of_list(token) || (line_end && token_is(token, ";"))) return;
        if (line_end) warn_of_line_end();
        list.add(token);
        if (token_is(token, "'")) break;
    }
    scanner(from.input, token, from.cursor);
}

/* ---- heads of sums ---- */

/* Inside <...> behind Sigma or Prod, and inside a further <...> right behind it, "to" and "by" are words of the head. */
struct sum_heads {
    bool inside = false;
    const name *closed = nullptr; /* the ">" of the last head */

    void see(const name *before) {
        bool opens = token_is(token, "<") && before &&
                     (token_is(before->tok, "Sigma") || token_is(before->tok, "Prod") || before == closed);
        if (opens) inside = true;
        if (inside && token_is(token, "to")) set_token(token, to_mark);
        if (inside && token_is(token, "by")) set_token(token, by_mark);
    }
    void added(const name *n) {
        if (!inside || !token_is(n->tok, ">")) return;
        inside = false;
        closed = n;
    }
};

/* ---- the lists ---- */

/* A blank behind a name waits in leftover; a definition inside a stored one keeps its blanks. */
static void add_and_read_on(statement_source &from, name_list &list) {
    list.add(token);
    list.last()->blank_after = *from.cursor ? (*from.cursor)->blank_after : leftover == ' ';
    scanner(from.input, token, from.cursor);
}

void attach(statement_source &from, const char *terminator, name_list &list) {
    int definitions = 0; /* depth of definitions inside */
    sum_heads heads;
    for (;;) {
        safe_point();
        if (is_end_of_list(token) || source_ended(from)) break;
        const name *before = list.last();
        bool point = is_decimal_point(from, before);
        if (definitions > 0 && token_is(token, ".") && !point) {
            definitions--;
        } else if (definitions == 0) {
            if (token_is(token, ";") || (!point && ends_sequence(terminator))) break;
        }
        if (begins_definition(before)) definitions++;
        if (token_is(token, "'")) {
            attach_literal(from, list);
            continue;
        }
        heads.see(before);
        bool line_ended = token_is(token, ";") && drop_newline(from);
        if (!line_ended || !token_is(before->tok, ";")) {
            add_and_read_on(from, list);
            heads.added(list.last());
        } else {
            scanner(from.input, token, from.cursor); /* an empty line of a definition inside */
        }
    }
    if (list.empty()) error(8, token);
    list.close();
    last_attached = list.first();
}

void attach_head(statement_source &from, const char *terminator, bool is_for, name_list &list) {
    if (is_for) {
        token_record mark;
        set_token(mark, ":");
        list.add(mark);
    }
    while (!token_equals(token, terminator) && !token_is(token, ";") && !is_end_of_list(token) && !source_ended(from)) {
        if (is_for && token_is(token, "to")) set_token(token, to_mark);
        if (is_for && token_is(token, "by")) set_token(token, by_mark);
        if (token_is(token, "'"))
            attach_literal(from, list);
        else
            add_and_read_on(from, list);
    }
    if (list.empty()) error(8, token);
    list.close();
    last_attached = list.first();
}

/* ---- sums ---- */

/* One token, or a text in quotes, of an expression. */
static void attach_part(statement_source &from, name_list &list, sum_heads &heads) {
    if (token_is(token, "'")) return attach_literal(from, list);
    heads.see(list.last());
    add_and_read_on(from, list);
    heads.added(list.last());
}

/* Stores the tokens from an opening bracket to its mate, nested ones included. */
static void obtain_expression(statement_source &from, name_list &list, const char *open, const char *close, int n) {
    int depth = 0;
    sum_heads heads;
    do {
        if (token_is(token, ";") || is_end_of_list(token)) {
            error(n, token);
            return;
        }
        if (token_equals(token, open)) depth++;
        if (token_equals(token, close)) depth--;
        attach_part(from, list, heads);
    } while (depth > 0);
}

static void obtain_head(statement_source &from, name_list &list) {
    if (!token_is(token, "<")) error(144, token);
    while (!token_is(token, ">")) {
        if (token_is(token, ";") || is_end_of_list(token)) {
            error(81, token);
            return;
        }
        if (token_is(token, "to")) set_token(token, to_mark);
        if (token_is(token, "by")) set_token(token, by_mark);
        list.add(token);
        scanner(from.input, token, from.cursor);
    }
    list.add(token);
    scanner(from.input, token, from.cursor);
}

void obtain_sum(stream *input, name **cursor, name_list &list) {
    statement_source from{input, cursor};
    do obtain_head(from, list);
    while (token_is(token, "<"));
    if (token_is(token, "["))
        obtain_expression(from, list, "[", "]", 274);
    else if (token_is(token, "("))
        obtain_expression(from, list, "(", ")", 274);
    else
        error(145, token);
    list.close();
}

/* ---- parts of array literals ---- */

void obtain_part(stream *input, name **cursor, const char *ends, name_list &list) {
    statement_source from{input, cursor};
    sum_heads heads;
    for (int depth = 0; depth > 0 || !std::strchr(ends, first_char(token));) {
        if (token_is(token, ";") || is_end_of_list(token)) break;
        if (token_is(token, "(") || token_is(token, "[")) depth++;
        if (token_is(token, ")") || token_is(token, "]")) depth--;
        attach_part(from, list, heads);
    }
    list.close();
}

void obtain_loop_head(stream *input, name **cursor, name_list &list) {
    statement_source from{input, cursor};
    while (!token_is(token, ">") && !token_is(token, ";") && !is_end_of_list(token)) {
        if (token_is(token, "to")) set_token(token, to_mark);
        if (token_is(token, "by")) set_token(token, by_mark);
        add_and_read_on(from, list);
    }
    list.close();
}

} // namespace tolvek
