/* Reading of definitions and control statements. */
#include "language/attach.h"
#include "language/execution.h"
#include "language/expressions.h"
#include "language/functions.h"
#include "language/names.h"
#include "poly/variables.h"
#include "top/heap.h"
#include "top/stack_limit.h"

#include <cstring>

namespace tolvek {

constexpr int empty_lines_of_a_loop = 12;     /* end a control statement typed at the prompt */
constexpr int empty_lines_of_a_function = 15; /* cancel a definition */

static void read_sequence(statement_source &from, const char *terminator, form_list &list);

/* ---- comments ---- */

static bool read_comment_character(statement_source &from) {
    int line_end;
    dumbscanner(from.input, token, from.cursor, &line_end);
    if (is_end_of_list(token) || (line_end && token_is(token, ";"))) return false;
    if (line_end) {
        say(" Warning. End of line encountered inside a comment.\n");
        set_token(token, " ");
    }
    return !token_is(token, "}");
}

/* { any text } */
static void read_comment(statement_source &from, comment **place) {
    name_list text;
    int blanks = 0; /* those at the end are left out: a listing writes one */
    token_record one_blank = blank;
    while (read_comment_character(from)) {
        if (token_is(token, " ")) {
            blanks++;
            continue;
        }
        for (; blanks > 0; blanks--) text.add(one_blank);
        text.add(token);
    }
    text.close();
    *place = static_cast<comment *>(heap_request(sizeof(comment)));
    **place = {text.release(), nullptr};
    scanner(from.input, token, from.cursor);
}

static void read_comments(statement_source &from, form *f) {
    comment **place = &f->comments;
    while (token_is(token, "{")) {
        read_comment(from, place);
        place = &(*place)->next;
        while (token_is(token, ";") && drop_newline(from)) scanner(from.input, token, from.cursor);
    }
}

/* ---- one statement ---- */

static bool begins_control_statement() {
    return token_is(token, "if") || token_is(token, "while") || token_is(token, "for");
}

static void read_head(statement_source &from, cond *c) {
    bool is_if = token_is(token, "if"), is_for = token_is(token, "for");
    const char *terminator = is_if ? "then" : "do";
    name_list head;
    scanner(from.input, token, from.cursor);
    attach_head(from, terminator, is_for, head);
    c->loops = !is_if;
    c->test = head.release();
    require(terminator, 38, from.input, from.cursor);
}

static void read_else(statement_source &from, cond *c) {
    if (c->loops) error(214, token);
    scanner(from.input, token, from.cursor);
    form_list list;
    read_sequence(from, "fi", list);
    c->else_part = list.release();
}

static void read_control(statement_source &from, cond *c) {
    read_head(from, c);
    form_list body;
    read_sequence(from, c->loops ? "od" : else_or_fi, body);
    c->body = body.release();
    if (token_is(token, "else")) read_else(from, c);
    require(c->loops ? "od" : "fi", 38, from.input, from.cursor);
}

/* basic_form: one statement with its comments. */
static void read_statement(statement_source &from, const char *terminator, form *f) {
    check_stack();
    read_comments(from, f);
    if (token_is(token, "else") || token_is(token, "fi") || token_is(token, "od")) error(319, token);
    if (begins_control_statement()) {
        read_control(from, f->statement);
        return;
    }
    name_list tokens;
    attach(from, terminator, tokens);
    f->statement->tokens = tokens.release();
}

/* ---- sequences ---- */

/* Behind a ";": the newline of the line is dropped, and the next token read. */
static void read_past_semicolon(statement_source &from) {
    drop_newline(from);
    scanner(from.input, token, from.cursor);
}

/* Counts an empty line. True: it ends the sequence. */
static bool count_empty_line(const char *terminator) {
    bool closes_loop = in_sys_func && std::strcmp(terminator, ".") != 0;
    semicount++;
    if (closes_loop && semicount >= empty_lines_of_a_loop) return true;
    if (semicount >= empty_lines_of_a_function) error(132, token);
    return false;
}

static void remember(form *f) {
    last_good_one = f->statement->tokens;
    last_comm = f->comments ? f->comments->tokens : nullptr;
}

/* Behind a statement only ";" or the terminator can stand. */
static void require_separator(const char *terminator) {
    if (token_is(token, ";") || is_end_of_list(token) || ends_sequence(terminator)) return;
    error(token_is(token, "{") ? 35 : 38, token);
}

/* right_side: statements up to the terminator, which is left in `token`. */
static void read_sequence(statement_source &from, const char *terminator, form_list &list) {
    semicount = 0;
    for (;;) {
        while (token_is(token, ";") && !source_ended(from)) {
            if (at_newline(from) && count_empty_line(terminator)) {
                if (!list.first()) error(8, token);
                set_token(token, terminator == else_or_fi ? "fi" : terminator);
                return; /* the newline ends the statement */
            }
            drop_newline(from);
            scanner(from.input, token, from.cursor);
        }
        if (ends_sequence(terminator) || is_end_of_list(token) || source_ended(from)) break;
        form *f = list.add();
        read_statement(from, terminator, f);
        semicount = 0;
        remember(f);
        require_separator(terminator);
        if (!token_is(token, ";") || source_ended(from)) break;
        read_past_semicolon(from);
    }
    if (source_ended(from) && !ends_sequence(terminator)) error(103, token);
    if (!list.first()) error(8, token);
}

void read_control_statement(stream *input, name **cursor, form_list &into) {
    statement_source from{input, cursor};
    form *f = into.add();
    semicount = 0;
    read_control(from, f->statement);
    remember(f);
}

/* ---- functions ---- */

/* A function that is being read. */
struct function_handle {
    function *f;
    function_handle() : f(static_cast<function *>(heap_request_cleared(sizeof(function)))) {}
    ~function_handle() { free_function(&f); }
    function_handle(const function_handle &) = delete;
    function_handle &operator=(const function_handle &) = delete;
};

static void add_parameter(function *f, bool by_reference) {
    parameter **place = &f->params;
    for (; *place; place = &(*place)->next)
        if (token_is((*place)->tok, token.text)) error(237, token);
    *place = static_cast<parameter *>(heap_request(sizeof(parameter)));
    **place = {token, by_reference, nullptr};
    hash_of((*place)->tok, scalar_chains);
}

static void read_parameters(statement_source &from, function *f) {
    do {
        scanner(from.input, token, from.cursor);
        bool by_reference = token_is(token, "^");
        if (by_reference) scanner(from.input, token, from.cursor);
        if (!is_lower_letter(first_char(token))) error(5, token);
        int level;
        if (is_poly_name(token.text, &level)) error(125, token);
        add_parameter(f, by_reference);
        scanner(from.input, token, from.cursor);
        if (!token_is(token, ",") && !token_is(token, ";") && !token_is(token, ")")) error(6, token);
    } while (!token_is(token, ")"));
    scanner(from.input, token, from.cursor);
    require("=", 7, from.input, from.cursor);
}

void funcdef(stream *input, name **cursor) {
    statement_source from{input, cursor};
    current_func = token;
    func_def_count++;
    last_good_one = last_comm = last_attached = nullptr;
    function_handle made;
    made.f->tok = token;
    hash_of(made.f->tok, function_chains);
    scanner(input, token, cursor);
    if (token_is(token, "("))
        read_parameters(from, made.f);
    else
        require("=", 12, input, cursor);
    form_list body;
    read_sequence(from, ".", body);
    made.f->body = body.release();
    add_function(made.f);
    made.f = nullptr;
    func_def_count--;
    scanner(input, token, cursor);
}

} // namespace tolvek
