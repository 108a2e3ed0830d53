#include "language/functions.h"

#include "language/builtins.h"
#include "language/compile.h"
#include "language/execution.h"
#include "language/expressions.h"
#include "language/run.h"
#include "numbers/free_lists.h"
#include "poly/variables.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/stack_limit.h"

#include <cstring>

namespace tolvek {

function *func_store[function_chains];
static function *retired_functions = nullptr;
static form *retired_forms = nullptr;

/* ---- the table ---- */

static function **link_of(token_record &t, function **from) {
    while (*from && !same_text((*from)->tok, t)) from = &(*from)->next;
    return from;
}

static function **newest(token_record &t) { return link_of(t, &func_store[hash_of(t, function_chains)]); }

function *find_function(token_record &t) { return *newest(t); }

void add_function(function *f) {
    function **chain = &func_store[hash_of(f->tok, function_chains)];
    f->next = *chain;
    *chain = f;
}

/* A function may be running: it stays whole until the outermost statement has ended. */
static void retire(function **link) {
    function *f = *link;
    *link = f->next;
    f->next = retired_functions;
    retired_functions = f;
}

bool delete_function(token_record &t) {
    function **link = newest(t);
    if (!*link) return false;
    retire(link);
    return true;
}

bool delete_older_functions(token_record &t) {
    function *kept = find_function(t);
    if (!kept) return false;
    for (function **link; *(link = link_of(t, &kept->next));) retire(link);
    return true;
}

bool rename_function(token_record &from, const token_record &to) {
    function **link = newest(from), *f = *link;
    if (!f) return false;
    *link = f->next;
    f->tok = to;
    f->tok.hash_slot = hash_unknown;
    add_function(f);
    return true;
}

void retire_forms(form *list) {
    if (!list) return;
    form *last = list;
    while (last->next) last = last->next;
    last->next = retired_forms;
    retired_forms = list;
}

void release_retired_forms() {
    free_form(&retired_forms);
    while (function *f = retired_functions) {
        retired_functions = f->next;
        free_function(&f);
    }
}

void forget_functions() {
    retire_forms(sys_func);
    sys_func = nullptr;
    for (function *&chain : func_store)
        while (chain) retire(&chain);
    release_retired_forms();
}

/* ---- a call being set up: its parameters are on no table yet ---- */

class pending_call {
  public:
    ~pending_call() {
        while (variable *v = first) {
            first = v->next_of_call;
            free_quoly(&v->value);
            push_variable(v);
        }
    }
    variable *add(const parameter *p) {
        variable *v = newvariable();
        v->tok = p->tok;
        v->value = nullptr;
        v->next_of_call = nullptr;
        v->by_reference = p->by_reference;
        *place = v;
        place = &v->next_of_call;
        return v;
    }
    /* Now the parameters shadow the caller's names. */
    variable *link() {
        for (variable *v = first; v; v = v->next_of_call) link_variable(v);
        variable *list = first;
        first = nullptr;
        return list;
    }

  private:
    variable *first = nullptr, **place = &first;
};

/* ---- arguments ---- */

/* Entered with the first token of the argument, or the ")" that stands in its place. */
static void read_reference(stream *input, variable *v, name **cursor) {
    if (token_is(token, ")")) error(206, v->tok);
    if (token_is(token, "^")) scanner(input, token, cursor);
    int level;
    if (!is_lower_letter(first_char(token)) || is_poly_name(token.text, &level)) error(207, token);
    v->home = token;
    scanner(input, token, cursor);
    if (token_is(token, "[")) error(28, v->home); /* no array exists */
    quolynode **slot;
    spec_retrieve(v->home, &v->value, &slot);
}

static void read_value(stream *input, variable *v, name **cursor) {
    if (token_is(token, ")")) {
        quoly_set(0, &v->value);
        return;
    }
    if (token_is(token, "[")) {
        scanner(input, token, cursor);
        error(token_is(token, "<") ? 176 : 28, token); /* no array exists */
    }
    old_expre(input, &v->value, cursor);
}

/* Behind an argument: "," goes on to the next parameter, ")" leaves the others 0. */
static void read_arguments(stream *input, const function *f, pending_call &call, name **cursor) {
    for (const parameter *p = f->params; p; p = p->next) {
        int level;
        if (is_poly_name(p->tok.text, &level)) error(125, p->tok);
        variable *v = call.add(p);
        if (!token_is(token, ")")) scanner(input, token, cursor);
        kept_value<int> earlier(values_held, values_held + (p != f->params));
        (p->by_reference ? read_reference : read_value)(input, v, cursor);
        if (!token_is(token, ",") && !token_is(token, ")")) error(14, token);
    }
    if (!token_is(token, ")")) error(15, token);
}

/* The head of a call. `behind` is the token behind it: what follows a name without an argument list is kept. */
static void read_call(stream *input, const function *f, pending_call &call, token_record &behind, name **cursor) {
    scanner(input, behind, cursor);
    if (!f->params) return;
    bool has_list = token_is(behind, "(");
    token = behind;
    if (!has_list) set_token(token, ")");
    read_arguments(input, f, call, cursor);
    if (has_list) scanner(input, behind, cursor);
}

/* ---- the end of a call ---- */

/* The values of by-reference parameters go back by name, once all parameters are off the tables. */
static void give_back(variable *v) {
    variable *home = v->by_reference ? find_variable(v->home) : nullptr;
    if (!home) return;
    store_value(&home->value, v->value);
    v->value = nullptr;
}

static void remove_args(call_frame &frame) {
    for (variable *v = frame.bound; v; v = v->next_of_call) unlink_variable(v);
    for (variable *v = frame.bound; v; v = v->next_of_call) give_back(v);
    while (variable *v = frame.bound) {
        frame.bound = v->next_of_call;
        free_quoly(&v->value);
        push_variable(v);
    }
}

/* Values may be operands of what is being unwound: the records wait. */
void end_all_calls() {
    while (statcount > 0) {
        call_frame &frame = running_frame(statcount - 1);
        for (variable *v = frame.bound; v; v = v->next_of_call) retire_variable(v);
        leave_function();
    }
}

/* ---- the call ---- */

void evaluate(stream *input, quolynode **result, name **cursor) {
    check_stack();
    function *f = find_function(token);
    if (!f) {
        error(16, token);
        scanner(input, token, cursor);
        quoly_set(0, result);
        return;
    }
    token_record behind;
    pending_call call;
    read_call(input, f, call, behind, cursor);
    int frame = enter_function(f);
    running_frame(frame).bound = call.link();

    kept_value<int> path(integerflag, 0);
    kept_value<name *> around(prev_expr, nullptr), running(startexpr, nullptr), ahead(currentchar);
    quoly_set(0, result);
    eval_form(input, f->body, result);
    if (!*result) quoly_set(0, result);
    exit_flag = 0;
    token = behind;
    remove_args(running_frame(frame));
    leave_function();
    syst_dump = 0;
}

void call_function(stream *input, quolynode **result, name **cursor) {
    if (!call_builtin(input, result, cursor)) evaluate(input, result, cursor);
}

} // namespace tolvek
