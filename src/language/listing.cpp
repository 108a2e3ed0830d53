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

/* The words "to" and "by" of a loop head carry the blank in front of them. */
static bool is_marked_word(const name *n) { return !ends_list(n) && n->tok.text[0] == ' ' && n->tok.text[1]; }

/* "<" opens the head of a sum behind its name, or behind the ">" of another head. */
static bool opens_head(const name *before, const name *n, const name *closed) {
    if (!is_one_of(n, "<") || !before) return false;
    return token_is(before->tok, "Sigma") || token_is(before->tok, "Prod") || before == closed;
}

/* What the position in a list says of the tokens around. */
struct list_position {
    int depth = 0; /* of brackets and heads */
    bool inside_head = false;
    const name *before = nullptr, *closed_head = nullptr;

    void enter(const name *n) {
        bool closes_head = inside_head && is_one_of(n, ">");
        if (is_one_of(n, ")]") || closes_head) depth--;
        if (closes_head) {
            inside_head = false;
            closed_head = n;
        }
    }
    void leave(const name *n) {
        bool head = opens_head(before, n, closed_head);
        if (is_one_of(n, "([") || head) depth++;
        if (head) inside_head = true;
        before = n;
    }
    bool at_operator(const name *n) const {
        return depth == 0 && n != closed_head && !opens_head(before, n, closed_head);
    }
};

static bool stands_apart(const name *n) {
    return is_marked_word(n) ||
           (n->blank_after && begins_word(n) && (begins_word(n->next) || is_one_of(n->next, "[(")));
}

/* A figure in front of "and" or "or" leaves no mark of the blank behind it. */
static bool joins_conditions(const name *n) { return token_is(n->tok, "and") || token_is(n->tok, "or"); }

void listchars(text_out *out, const name *list) {
    list_position at;
    for (const name *n = list; !ends_list(n);) {
        at.enter(n);
        int length = at.at_operator(n) ? operator_length(at.before, n) : 0;
        bool blank_written = at.before && stands_apart(at.before);
        if (length || (joins_conditions(n) && !blank_written)) put_char(out, ' ');
        bool apart = length || stands_apart(n);
        for (int i = 0; i < (length ? length : 1); i++) {
            put_text(out, n->tok.text);
            at.leave(n);
            n = n->next;
        }
        if (apart && !ends_list(n)) put_char(out, ' ');
    }
}

} // namespace tolvek
