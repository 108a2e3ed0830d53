#include "top/parse.h"

#include "language/char_sets.h"
#include "language/expressions.h"
#include "language/names.h"
#include "language/rubout.h"
#include "matrix/array_statements.h"
#include "matrix/slots.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/interrupts.h"
#include "top/loop.h"
#include "top/output_statement.h"
#include "top/stack_limit.h"

namespace tolvek {

bool ends_statement(const token_record &t) {
    return token_is(t, ";") || token_is(t, "@") || token_is(t, ":") || is_end_of_list(t);
}

bool at_line_end(stream in) {
    int c = peek_char(in);
    while (c == ' ' || c == '\t' || c == '\r') {
        take_char(in);
        c = peek_char(in);
    }
    return c == '\n' || c == no_char;
}

/* ---- the kinds of statements ---- */

static void empty_statement(stream *, quolynode **, name **) { set_token(token, "@"); }

static void deletion(stream *input, quolynode **result, name **cursor) {
    rubout(input, cursor);
    quoly_set(0, result);
}

/* Names that begin with A or M: the value is always the result's own. ":" ends them at the end of a line alone. */
static void old_expression(stream *input, quolynode **result, name **cursor) {
    old_expre(input, result, cursor);
    if (!*cursor && token_is(token, ":") && !at_line_end(*input)) error(129, token);
}

static void expression(stream *input, quolynode **result, name **cursor) {
    place at;
    expre(input, at, result, cursor);
    if (!*result) own_value(at, result);
}

bool begins_array_statement(const token_record &t) {
    static const char *const words[] = {"Diag", "Trans", "MPowermod", "Adjoint", "Altmult", "Altpower", "~", "[", "\""};
    static constexpr PSet beginnings = PSet_Of("DTMA~[\"");
    if (!PSet_Test(beginnings, first_char(t))) return false;
    for (const char *word : words)
        if (token_equals(t, word)) return true;
    return false;
}

using statement_runner = void (*)(stream *, quolynode **, name **);

static statement_runner runner_of(const token_record &t) {
    if (begins_array_statement(t)) return arr_parse;
    switch (first_char(t)) {
    case ';': return empty_statement;
    case '?': return ask_for_value;
    case '@': return deletion;
    case '!': return write_out;
    case '%': return arr_arr_state;
    case '&': return and_statement;
    case 'A':
    case 'M': return old_expression;
    default: return expression;
    }
}

void parse(stream *input, quolynode **result, name **cursor) {
    check_stack(); /* &_m(...) holds statements inside statements */
    runner_of(token)(input, result, cursor);
}

void run_statement(stream *input, quolynode **result) {
    ddummy = bozo = warn_cnt = 0;
    scanner(input, token, &zilch);
    clear_statement_counters();
    start_clock();
    parse(input, result, &zilch);
    zilch = nullptr;
    stop_clock();
    safe_point();
    if (!*result) quoly_set(0, result);
    if (!ends_statement(token)) {
        error(129, token);
        while (!at_line_end(*input)) take_char(*input);
        set_token(token, ";");
    }
    recent_tokens.clear();
}

/* ---- ?x ---- */

/* Reads the answer; "@" leaves the variable as it is. */
static void read_answer(token_record &variable_name, quolynode **result) {
    scanner(&Input, token, &zilch);
    if (token_is(token, "@")) return;
    quoly_handle answer;
    old_expre(&Input, answer.slot(), &zilch);
    if (!ends_statement(token)) error(129, token);
    quoly_assign(answer.get(), result);
    insert_var(variable_name, answer);
}

/* Is there more on the rest of a line than blanks and its end? */
static bool has_text(const buffer<char> &line) {
    for (char c : line)
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n') return true;
    return false;
}

void ask_for_value(stream *input, quolynode **result, name **cursor) {
    token_record asked;
    quoly_set(0, result);
    scanner(input, asked, cursor);
    if (token_is(asked, "[")) {
        token = asked;
        whole_arrinsert(input, cursor);
        return;
    }
    scanner(input, token, cursor);
    if (token_is(token, "[")) {
        ask_for_element(input, cursor, asked);
        return;
    }
    if (!is_lower_letter(first_char(asked))) {
        error(3, asked);
        return;
    }
    token_record behind = token;
    int left = leftover;
    buffer<char> line, behind_answer; /* statements wait behind the question, and behind the answer */
    take_rest_of_line(Input, line);
    {
        kept_value<int> terminal(tt_flag, 1);
        do_prompts();
        sayf("%s := ", asked.text);
        read_answer(asked, result);
    }
    if (has_text(line)) {
        take_rest_of_line(Input, behind_answer);
        put_back_line(Input, behind_answer);
        put_back_line(Input, line);
    }
    token = behind;
    leftover = left;
    if (*cursor) quoly_set(0, result);
}

} // namespace tolvek
