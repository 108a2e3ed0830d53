#include "language/functions.h"

#include "language/builtins.h"
#include "language/compile.h"
#include "language/execution.h"
#include "language/parameters.h"
#include "language/run.h"
#include "language/scanner.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/stack_limit.h"

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

/* ---- the call ---- */

void end_all_calls() {
    while (statcount > 0) {
        abandon_args(running_frame(statcount - 1));
        leave_function();
    }
}

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
