/* Conditions. "and" binds tighter than "or"; every part is evaluated, whatever the others gave. */
#include "language/char_sets.h"
#include "language/expressions.h"
#include "language/float_path.h"
#include "language/run.h"
#include "language/short_path.h"
#include "numbers/handles.h"
#include "quoly/compare.h"
#include "top/stack_limit.h"

namespace tolvek {

/* Relations of two characters have codes beyond those of characters. */
enum relation { less = '<', greater = '>', equals = '=', differs = 256, at_most, at_least };

static relation read_relation(stream *input, name **cursor) {
    int c = first_char(token);
    scanner(input, token, cursor);
    relation r = static_cast<relation>(c);
    if (c == '>' && token_is(token, "="))
        r = at_least;
    else if (c == '<' && token_is(token, "="))
        r = at_most;
    else if (c == '<' && token_is(token, ">"))
        r = differs;
    else
        return r;
    scanner(input, token, cursor);
    return r;
}

static bool continues_condition() {
    return token_is(token, "]") || token_is(token, "or") || token_is(token, "and") || is_end_of_list(token);
}

/* A relation stands here; otherwise the value is all of the condition. */
static bool at_relation() {
    if (PSet_Test(cond_set, first_char(token)) && !token.text[1]) return true;
    if (!continues_condition()) error(13, token);
    return false;
}

static bool holds_of_flotes(relation r, long double a, long double b) {
    switch (r) {
    case less: return a < b;
    case greater: return a > b;
    case equals: return a == b;
    case differs: return a != b;
    case at_most: return a <= b;
    default: return a >= b;
    }
}

static int flote_condition(stream *input, name **cursor) {
    long double left = old_iexpre(input, cursor);
    if (!at_relation()) return left == 1.0L;
    relation r = read_relation(input, cursor);
    return holds_of_flotes(r, left, old_iexpre(input, cursor));
}

static bool holds_of_values(relation r, const quolynode *a, const quolynode *b) {
    if (r == equals) return quoly_equal(a, b);
    if (r == differs) return !quoly_equal(a, b);
    if (!is_comparable(a) || !is_comparable(b)) {
        error(123, token);
        return false;
    }
    if (flotemode) return holds_of_flotes(r, a->numb->flote_val, b->numb->flote_val);
    int order = compare_quolys(a, b);
    return r == less ? order < 0 : r == greater ? order > 0 : r == at_most ? order <= 0 : order >= 0;
}

static int evalcond(stream *input, name **cursor) {
    bool holds;
    if (short_comparison(cursor, holds)) return holds;
    if (integerflag) return flote_condition(input, cursor);
    quoly_handle left, right;
    old_expre(input, left.slot(), cursor);
    if (!at_relation()) return left->is_num && quoly_is_one(left.get());
    relation r = read_relation(input, cursor);
    held_value other;
    old_expre(input, right.slot(), cursor);
    return holds_of_values(r, left.get(), right.get());
}

static int bool_alternatives(stream *input, name **cursor);

static int bool_fact(stream *input, name **cursor) {
    check_stack();
    if (token_is(token, "not")) {
        scanner(input, token, cursor);
        return !bool_fact(input, cursor);
    }
    if (!token_is(token, "[")) return evalcond(input, cursor);
    scanner(input, token, cursor);
    int value = bool_alternatives(input, cursor);
    require("]", 153, input, cursor);
    return value;
}

static int bool_term(stream *input, name **cursor) {
    int value = bool_fact(input, cursor);
    while (token_is(token, "and")) {
        scanner(input, token, cursor);
        int right = bool_fact(input, cursor);
        value = value && right;
    }
    return value;
}

static int bool_alternatives(stream *input, name **cursor) {
    int value = bool_term(input, cursor);
    while (token_is(token, "or")) {
        scanner(input, token, cursor);
        int right = bool_term(input, cursor);
        value = value || right;
    }
    return value;
}

int bool_expre(stream *input, name **cursor) {
    int value = bool_alternatives(input, cursor);
    if (!is_end_of_list(token)) error(104, token);
    return value;
}

} // namespace tolvek
