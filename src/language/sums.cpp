/* Sums and products over a range: Sigma<i = a to b>[e], Prod<i = a, b, step>(e), and nested heads <...><...>[e]. */
#include "language/execution.h"
#include "language/expressions.h"
#include "language/float_path.h"
#include "language/run.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

namespace tolvek {

/* What is summed up: floats on the fast path, else values. */
struct accumulator {
    bool product;
    bool flotes;
    long double flote;
    quolynode **value;

    void begin() {
        flote = product ? 1.0L : 0.0L;
        if (!flotes) quoly_set(product, value);
    }
    void add_flote(long double term) { flote = product ? flote * term : flote + term; }
    void add_value(quoly_handle &term) {
        if (product)
            fast_quoly_mult(value, term.get());
        else
            best_quoly_add(value, term.release());
    }
};

static void sum_up(stream *input, name **cursor, accumulator &total);

/* Steps over the rest of a sum: further heads, then the bracket with what it holds. `token` is its first token. */
static void skip_body(stream *input, name **cursor) {
    while (token_is(token, "<")) {
        while (!token_is(token, ">") && !is_end_of_list(token)) scanner(input, token, cursor);
        scanner(input, token, cursor);
    }
    const char *open = token_is(token, "[") ? "[" : "(", *close = token_is(token, "[") ? "]" : ")";
    int depth = 0;
    do {
        if (token_equals(token, open)) depth++;
        if (token_equals(token, close)) depth--;
        scanner(input, token, cursor);
    } while (depth > 0 && !is_end_of_list(token));
}

/* One term: the expression in the bracket, or the whole of a nested sum. */
static void add_term(stream *input, name **cursor, accumulator &total) {
    bool nested = token_is(token, "<");
    const char *close = token_is(token, "[") ? "]" : ")";
    if (!nested) scanner(input, token, cursor);
    if (total.flotes) {
        accumulator inner{total.product, true, 0, nullptr};
        if (nested) sum_up(input, cursor, inner);
        total.add_flote(nested ? inner.flote : old_iexpre(input, cursor));
    } else {
        held_value sum_so_far;
        quoly_handle term;
        accumulator inner{total.product, false, 0, term.slot()};
        if (nested)
            sum_up(input, cursor, inner);
        else
            old_expre(input, term.slot(), cursor);
        total.add_value(term);
    }
    if (!nested) require(close, 274, input, cursor);
}

/* Entered with "<" as the token; leaves the token behind the closing bracket. */
static void sum_up(stream *input, name **cursor, accumulator &total) {
    check_stack();
    loop_range range;
    scanner(input, token, cursor);
    set_up_for_loop(input, cursor, range);
    start_loop(range);
    require(">", 78, input, cursor);
    if (!token_is(token, "<") && !token_is(token, "[") && !token_is(token, "(")) error(145, token);
    total.begin();
    if (!runs(range)) {
        skip_body(input, cursor);
        return;
    }
    name *body = *cursor;
    do {
        safe_point();
        *cursor = body;
        token = body->tok;
        currentchar = body->next;
        add_term(input, cursor, total);
    } while (step_loop(range));
}

/* Behind the name: the tokens at the cursor, or those that are read and stored first. */
static void sum_of_tokens(stream *input, name **cursor, accumulator &total) {
    scanner(input, token, cursor);
    if (*cursor) {
        if (!token_is(token, "<")) error(144, token);
        sum_up(input, cursor, total);
        return;
    }
    name_list list;
    obtain_sum(input, cursor, list);
    token_record behind = token;
    name *stored = list.first();
    token = stored->tok;
    sum_up(input, &stored, total);
    token = behind;
}

void sum_or_product(stream *input, quolynode **result, name **cursor, bool product) {
    quoly_handle total;
    accumulator sum{product, false, 0, total.slot()};
    sum_of_tokens(input, cursor, sum);
    total.release_to(result);
}

long double flote_sum_or_product(stream *input, name **cursor, bool product) {
    accumulator sum{product, true, 0, nullptr};
    sum_of_tokens(input, cursor, sum);
    return sum.flote;
}

} // namespace tolvek
