/* Listing of functions. What is listed reads back to the same function. */
#include "language/execution.h"
#include "language/functions.h"
#include "language/scanner.h"
#include "numbers/number_decimal.h"
#include "top/interrupts.h"

#include <algorithm>
#include <cstring>

namespace tolvek {

constexpr int columns_of_body = 4;    /* what a function's body is indented by */
constexpr int columns_of_nesting = 3; /* and what stands in a control statement, further */
constexpr std::size_t most_sorted = 1000;

static void put_blanks(text_out *out, int n) {
    for (int i = 0; i < n; i++) put_char(out, ' ');
}

/* The end of a line of a listing: in a file the newline is hidden behind the continuation mark. */
static void end_line(text_out *out, int indent) {
    if (out != &standard_output) put_char(out, continuation);
    put_char(out, '\n');
    put_blanks(out, indent);
}

static void list_comments(text_out *out, const comment *c, int indent) {
    for (; c; c = c->next) {
        put_char(out, '{');
        for (const name *n = c->tokens; n && !is_end_of_list(n->tok); n = n->next) put_text(out, n->tok.text);
        put_text(out, out == &standard_output ? " }" : "} ");
        end_line(out, indent);
    }
}

static void list_control(text_out *out, const cond *c, int indent) {
    bool is_for = token_is(c->test->tok, ":");
    put_text(out, is_for ? "for " : c->loops ? "while " : "if ");
    listchars(out, is_for ? c->test->next : c->test);
    put_text(out, c->loops ? " do " : " then ");
    end_line(out, indent + columns_of_nesting);
    listform(out, c->body, indent + columns_of_nesting);
    if (c->else_part) {
        put_char(out, ' ');
        end_line(out, indent);
        put_text(out, "else ");
        end_line(out, indent + columns_of_nesting);
        listform(out, c->else_part, indent + columns_of_nesting);
    }
    put_char(out, ' ');
    end_line(out, indent);
    put_text(out, c->loops ? "od" : "fi");
}

void listrht(text_out *out, const form *f, int indent) {
    list_comments(out, f->comments, indent);
    if (f->statement->test)
        list_control(out, f->statement, indent);
    else
        listchars(out, f->statement->tokens);
}

void listform(text_out *out, const form *list, int indent) {
    for (const form *f = list; f; f = f->next) {
        listrht(out, f, indent);
        if (!f->next) break;
        put_text(out, "; ");
        end_line(out, indent);
    }
}

/* ---- functions ---- */

static void listpars(text_out *out, const function *f) {
    if (!f->params) return;
    put_char(out, '(');
    for (const parameter *p = f->params; p; p = p->next) {
        if (p->by_reference) put_char(out, '^');
        put_text(out, p->tok.text);
        if (p->next) put_char(out, ',');
    }
    put_char(out, ')');
}

void simple_write_p(text_out *out, const function *f) {
    put_char(out, '\n');
    put_text(out, f->tok.text);
    listpars(out, f);
    put_char(out, '\n');
}

/* A "." behind a figure would be a decimal point. */
static bool ends_in_figure(const form *list) {
    if (!list) return false;
    while (list->next) list = list->next;
    const name *n = list->statement->tokens;
    while (n && n->next && !is_end_of_list(n->next->tok)) n = n->next;
    return n && is_digit(static_cast<unsigned char>(n->tok.text[std::strlen(n->tok.text) - 1]));
}

void big_write_p(text_out *out, const function *f) {
    put_format(out, "\n Function %s", f->tok.text);
    listpars(out, f);
    put_text(out, " =  ");
    end_line(out, columns_of_body);
    listform(out, f->body, columns_of_body);
    put_text(out, ends_in_figure(f->body) ? "; ." : ".");
}

/* ---- the command ---- */

static void gather_functions(buffer<const function *> &all) {
    for (const function *f : func_store)
        for (; f; f = f->next) all.push(f);
}

static void sort_functions(buffer<const function *> &all) {
    std::stable_sort(all.begin(), all.end(),
                     [](const function *a, const function *b) { return std::strcmp(a->tok.text, b->tok.text) < 0; });
}

static void list_all(void (*write)(text_out *, const function *), bool full) {
    buffer<const function *> all;
    gather_functions(all);
    if (all.size() <= most_sorted) sort_functions(all); /* otherwise in the order of the chains */
    for (const function *f : all) {
        write(&standard_output, f);
        if (full) say("\n");
    }
}

void save_functions(text_out *out) {
    buffer<const function *> all;
    gather_functions(all);
    std::reverse(all.begin(), all.end()); /* the newest of a name, which counts, is read last */
    sort_functions(all);
    for (const function *f : all) {
        safe_point();
        big_write_p(out, f);
        put_text(out, ";\n");
    }
}

static void list_one(stream *input, name **cursor) {
    scanner(input, token, cursor);
    if (const function *f = find_function(token)) {
        big_write_p(&standard_output, f);
        say("\n");
    } else {
        sayf("%s has not been defined.\n", token.text);
    }
    scanner(input, token, cursor);
}

static void refuse(stream *input, name **cursor) {
    sayf("%s is not a legal function name.\n", token.text);
    while (!token_is(token, ";") && !is_end_of_list(token)) scanner(input, token, cursor);
}

void listfuncs(stream *input, name **cursor) {
    if (token_is(token, "*")) {
        list_all(big_write_p, true);
        scanner(input, token, cursor);
    } else if (token_is(token, ";") || is_end_of_list(token)) {
        list_all(simple_write_p, false);
    } else if (token_is(token, ",") || token_is(token, "<")) {
        list_one(input, cursor);
    } else {
        refuse(input, cursor);
    }
    if (!is_end_of_list(token)) set_token(token, "@");
}

} // namespace tolvek
