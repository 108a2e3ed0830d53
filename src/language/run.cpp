#include "language/run.h"

#include "language/compile.h"
#include "language/execution.h"
#include "language/expressions.h"
#include "language/float_path.h"
#include "language/functions.h"
#include "language/short_path.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/interrupts.h"
#include "top/parse.h"
#include "top/stack_limit.h"

namespace tolvek {

form *sys_func = nullptr;

static bool stops() { return exit_flag || leave_flag || cycle_flag; }

void eval_form(stream *input, const form *list, quolynode **result) {
    for (const form *f = list; f; f = f->next) {
        getval(input, f->statement, result);
        if (stops()) return;
    }
}

/* ---- plain statements ---- */

/* An expression or assignment on the path that the function runs on. */
static void run_expression(stream *input, quolynode **result, name **cursor) {
    if (integerflag) {
        quoly_set_flote(iexpre(input, cursor), result);
        return;
    }
    place at;
    expre(input, at, result, cursor);
    if (!*result) own_value(at, result);
}

/* Float: the rest of the call runs on floats alone. In another ring it has no effect. */
static void choose_float_path(stream *input, quolynode **, name **cursor) {
    if (flotemode) integerflag = 1;
    scanner(input, token, cursor);
}

static void run_plain(stream *input, quolynode **result, name **cursor) {
    int c = first_char(token);
    if (c == 'F' && token_is(token, "Float"))
        choose_float_path(input, result, cursor);
    else if (c == 'C' && token_is(token, "Compile"))
        compile(input, result, cursor);
    else if (is_lower_letter(c))
        run_expression(input, result, cursor);
    else if (c == '!' || c == '&' || c == '?' || c == '@' || c == '%' || !integerflag || begins_array_statement(token))
        parse(input, result, cursor);
    else
        run_expression(input, result, cursor);
}

static void run_tokens(stream *input, name *tokens, quolynode **result) {
    name *cursor = tokens;
    startexpr = tokens;
    token = tokens->tok;
    currentchar = tokens->next;
    clear_statement_counters();
    safe_point();
    if (short_statement(tokens, result)) return;
    free_quoly(result);
    run_plain(input, result, &cursor);
    if (is_end_of_list(token) || token_is(token, ";")) return;
    if (!exit_flag) error(31, token);
}

void getval(stream *input, const cond *c, quolynode **result) {
    prev_expr = startexpr;
    if (!c->test) {
        run_tokens(input, c->tokens, result);
        return;
    }
    safe_point();
    check_stack();
    kept_value<name *> around(startexpr, c->test);
    if (!c->loops)
        run_if(input, c, result);
    else if (token_is(c->test->tok, ":"))
        run_for(input, c, result);
    else
        run_while(input, c, result);
}

/* ---- control statements at the prompt ---- */

bool begins_control_word(const token_record &t) {
    return token_is(t, "if") || token_is(t, "while") || token_is(t, "for");
}

/* Runs a list from outside any function. */
static void run_stored(stream *input, const form *list, quolynode **result) {
    kept_value<token_record> behind(token);
    kept_value<int> path(integerflag, 0);
    kept_value<name *> around(prev_expr, nullptr), running(startexpr, nullptr), ahead(currentchar);
    quoly_set(0, result);
    eval_form(input, list, result);
    if (!*result) quoly_set(0, result);
    exit_flag = cycle_flag = leave_flag = 0;
}

void call_sys_func(stream *input, quolynode **result, name **cursor) {
    if (*cursor) {
        error(225, token);
        quoly_set(0, result);
        scanner(input, token, cursor);
        return;
    }
    current_func = sys_func_tok;
    func_def_count++;
    last_good_one = last_comm = last_attached = nullptr;
    form_list list;
    {
        kept_value<int> typed(in_sys_func, 1);
        read_control_statement(input, cursor, list);
    }
    func_def_count--;
    retire_forms(sys_func);
    sys_func = list.release();
    run_stored(input, sys_func, result);
}

void rerun_sys_func(stream *input, quolynode **result, name **cursor) {
    if (*cursor || !sys_func) {
        error(*cursor ? 225 : 222, token);
        scanner(input, token, cursor);
        quoly_set(0, result);
        return;
    }
    scanner(input, token, cursor);
    run_stored(input, sys_func, result);
}

} // namespace tolvek
