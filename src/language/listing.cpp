/* Listing of stored statements. */
#include "language/execution.h"

#include <cstring>

namespace tolvek {

static bool ends_list(const name *n) { return !n || is_end_of_list(n->tok); }

static bool is_one_of(const name *n, const char *characters) {
    return !ends_list(n) && n->tok.text[0] && !n->tok.text[1] && std::strchr(characters, n->tok.text[0]);
}

static bool begins_word(const name *n) {
    return !ends_list(n) && (is_letter(first_char(n->tok)) || is_digit(first_char(n->tok)));
}

/* Tokens of the operator that stands at n between two operands; 0 when none does. A sign behind another operator, a
   comma or an opening bracket belongs to its operand. */
static int operator_length(const name *before, const name *n) {
    if (!before || is_one_of(before, "([,:=+-*/\\|^<>")) return 0;
    if (is_one_of(n, ":")) return is_one_of(n->next, "=+-") ? 2 : 0;
    if (is_one_of(n, "<>")) return is_one_of(n->next, "=>") ? 2 : 1;
    return is_one_of(n, "+-=") ? 1 : 0;
}

void listchars(text_out *out, const name *list) {
    int depth = 0;
    const name *before = nullptr;
    for (const name *n = list; !ends_list(n);) {
        if (is_one_of(n, ")]")) depth--;
        int length = depth == 0 ? operator_length(before, n) : 0;
        bool is_operator = length > 0;
        if (is_operator) put_char(out, ' ');
        bool apart = is_operator || (n->blank_after && begins_word(n) && begins_word(n->next));
        if (is_one_of(n, "([")) depth++;
        for (int i = 0; i < (is_operator ? length : 1); i++) {
            put_text(out, n->tok.text);
            before = n;
            n = n->next;
        }
        if (apart && !ends_list(n)) put_char(out, ' ');
    }
}

} // namespace tolvek
