/* The statement &: a switch or a command by one letter, or by "_" and a letter. */
#include "language/expressions.h"
#include "quoly/quoly.h"
#include "top/parse.h"
#include "top/switches.h"

namespace tolvek {

static bool is_one_character(const token_record &t) { return !t.text[0] || !t.text[1] || is_end_of_list(t); }

/* The row of the command; null when an error was reported. */
static const switch_row *read_command_letter(stream *input, name **cursor) {
    scanner(input, token, cursor);
    if (!is_one_character(token)) {
        error(114, token);
        return nullptr;
    }
    const switch_row *row = nullptr;
    if (token_is(token, "_")) {
        scanner(input, token, cursor);
        if (is_one_character(token)) row = find_underscore_switch(first_char(token));
    } else {
        row = find_switch(first_char(token));
    }
    if (!row) error(17, token);
    return row;
}

void and_statement(stream *input, quolynode **result, name **cursor) {
    switch_call call{read_command_letter(input, cursor), input, result, cursor, false, false};
    if (call.row) run_switch(call);
    if (!call.keeps_result || !*result) quoly_set(0, result);
    if (!call.token_is_read) scanner(input, token, cursor);
}

} // namespace tolvek
