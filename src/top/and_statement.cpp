/* The statement &: a switch or a command by one letter. */
#include "language/expressions.h"
#include "quoly/quoly.h"
#include "top/parse.h"
#include "top/switches.h"

namespace tolvek {

struct underscore_letter {
    char letter;
    int code;
};

static const underscore_letter underscore_letters[] = {
    {'d', code_columns}, {'k', code_karatsuba},   {'l', '2'},         {'m', code_exactly},
    {'n', code_read_in}, {'p', code_leave_level}, {'r', code_random}, {'s', code_suppress},
    {'t', code_try_rat}, {'G', code_clean_up},    {'L', '5'},         {'P', code_new_level},
};

constexpr int no_code = -1, refused = -2; /* refused: an error has been reported */

static int code_behind_underscore(const token_record &t) {
    if (t.text[0] && t.text[1] == 0)
        for (const underscore_letter &row : underscore_letters)
            if (row.letter == t.text[0]) return row.code;
    return no_code;
}

static int read_code(stream *input, name **cursor) {
    scanner(input, token, cursor);
    if (token.text[0] && token.text[1] && !is_end_of_list(token)) {
        error(114, token);
        return refused;
    }
    if (!token_is(token, "_")) return first_char(token);
    scanner(input, token, cursor);
    return code_behind_underscore(token);
}

void and_statement(stream *input, quolynode **result, name **cursor) {
    switch_call call{read_code(input, cursor), input, result, cursor, false, false};
    if (call.code != refused && !run_switch(call)) error(17, token);
    if (!call.keeps_result || !*result) quoly_set(0, result);
    if (!call.token_is_read) scanner(input, token, cursor);
}

} // namespace tolvek
