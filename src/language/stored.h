/* Stored statements: the records of functions and control statements, and how they are made and freed.

   A function is a list of forms; a form is one statement with the comments in front of it; its cond is either a plain
   statement, kept as its tokens, or a control statement with a head and lists of forms of its own. Running a function
   replays the token lists through the routines that read the prompt. */
#pragma once

#include "language/tokens.h"
#include "top/text_io.h"

namespace tolvek {

struct form;

struct comment {
    name *tokens; /* one for each character */
    comment *next;
};

/* One statement. Free list: condhead. */
struct cond {
    name *test;      /* control statements: the condition, or the head of a `for`, marked by a first token ":" */
    bool loops;      /* while and for */
    form *body;      /* behind then or do */
    form *else_part; /* null: there is none */
    name *tokens;    /* a plain statement; null in a control statement */
    cond *free_link;
};

/* One statement of a sequence. Free list: formhead. */
struct form {
    cond *statement;
    comment *comments;
    form *next;
};

/* A parameter of a function. */
struct parameter {
    token_record tok;
    bool by_reference;
    parameter *next;
};

/* A user function, chained in func_store by hash modulo 71, the newest of a name first. */
struct function {
    token_record tok;
    parameter *params = nullptr;
    form *body = nullptr;
    form *compiled_from = nullptr;          /* what is run once it is compiled; null otherwise */
    struct compiled_names *names = nullptr; /* what Compile has bound; null otherwise */
    function *next = nullptr;
};

extern form *formhead;
extern cond *condhead;

form *newform(); /* all fields null */
cond *newcond();
void free_form(form **list); /* the whole list with all that it holds; null is fine */
void free_cond(cond **c);
void free_comments(comment **list);
void free_function(function **f);

/* A token list that is being read. It ends in the end-of-list token once it is closed. */
class name_list {
  public:
    name_list() = default;
    ~name_list() { freename(first_name); }
    name_list(const name_list &) = delete;
    name_list &operator=(const name_list &) = delete;
    /* Names are hashed: lower-case ones modulo 151, upper-case ones modulo 71. */
    void add(const token_record &t);
    void close() { add(end_of_list); }
    name *first() const { return first_name; }
    name *last() const { return last_name; }
    bool empty() const { return !first_name; }
    name *release() {
        name *list = first_name;
        first_name = last_name = nullptr;
        return list;
    }

  private:
    name *first_name = nullptr, *last_name = nullptr;
    static void freename(name *list);
};

/* A form list that is being read. */
class form_list {
  public:
    form_list() = default;
    ~form_list() { free_form(&first_form); }
    form_list(const form_list &) = delete;
    form_list &operator=(const form_list &) = delete;
    form *add(); /* one more form, at the end, with an empty cond */
    form *first() const { return first_form; }
    form *release() {
        form *list = first_form;
        first_form = last_form = nullptr;
        return list;
    }

  private:
    form *first_form = nullptr, *last_form = nullptr;
};

/* ---- reading ---- */

/* Where stored statements come from. */
struct statement_source {
    stream *input;
    name **cursor;
};

/* Func F(x, ^y) = ... . Entered with the name as the token; leaves the token behind the ".". Errors 5, 6, 7, 8, 11, 12,
   35, 38, 103, 132, 214, 237, 319; the definition is cancelled then. */
void funcdef(stream *input, name **cursor);

/* Reads one control statement typed at the prompt, with its keyword as the token, into a list of one form. */
void read_control_statement(stream *input, name **cursor, form_list &into);

/* Reads the tokens of a sum: <head>[body], with "<" as the token, as one closed list. Errors 81, 144, 145, 274. */
void obtain_sum(stream *input, name **cursor, name_list &list);

/* Stores the tokens in front of one of the characters `ends` that stands outside brackets, as one closed list; the end of
   the statement ends it too. */
void obtain_part(stream *input, name **cursor, const char *ends, name_list &list);
/* Stores the head of a loop up to its ">", as one closed list. */
void obtain_loop_head(stream *input, name **cursor, name_list &list);

/* The words "to" and "by" of a loop head, as they are stored: no variable has such a name. */
constexpr char to_mark[] = " to", by_mark[] = " by";

/* ---- listing ---- */

/* The command &f: heads of all functions behind ";", all in full behind "*", one behind "<" or ",". */
void listfuncs(stream *input, name **cursor);
void big_write_p(text_out *out, const function *f);    /* a function in full; it reads back to the same function */
void simple_write_p(text_out *out, const function *f); /* its head */
void save_functions(text_out *out);                    /* all in full, sorted by name, the oldest of a name first */
void listform(text_out *out, const form *list, int indent);
void listrht(text_out *out, const form *f, int indent); /* one statement with its comments */

} // namespace tolvek
