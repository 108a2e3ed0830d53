/* Built-in functions that measure polynomials: degrees, variables, terms. */
#include "language/builtin_routines.h"
#include "poly/coefficients.h"
#include "poly/measures.h"

namespace tolvek {

/* ---- degrees ---- */

/* The greatest, or with `low` the least exponent of the level in the numerator; 0 for a number. */
static int32_t generalized_degree(const quolynode *q, int level, bool low) {
    if (q->is_num || level == 0) return 0;
    if (low) return codegree(q->num, level);
    int32_t d = -INT32_MAX;
    max_degree(q->num, level, &d);
    return d;
}

/* A factor, or in parentheses a value and, if wanted, a variable. */
static void give_degree(builtin_call &call, bool low) {
    call.read_on();
    if (!token_is(token, "(")) {
        if (token_is(token, "[")) {
            if (!low) return give_cells_of_array(call);
            error(276, token);
            return;
        }
        old_fact(call.input, call.result, call.cursor);
        call.give(generalized_degree(*call.result, 1, low));
        return;
    }
    call.read_on();
    argument p, v;
    p.read(call);
    int level = 1;
    if (token_is(token, ",")) {
        call.read_on();
        v.read(call);
        level = variable_argument(v.get());
    }
    close_paren(call);
    call.give(generalized_degree(p.get(), level, low));
}

void builtin_degree(builtin_call &call) { give_degree(call, false); }
void builtin_codegree(builtin_call &call) { give_degree(call, true); }

/* ---- variables and terms ---- */

/* Which levels occur in numerator and denominator. */
struct levels_used {
    char used[most_variables + 2] = {};
    int first = 0, deepest = 0, count = 0;

    explicit levels_used(const quolynode *q) {
        if (q->is_num) return;
        poly_vars(q->num, 1, used);
        if (q->den) poly_vars(q->den, 1, used);
        for (int level = 1; level <= most_variables; level++) {
            if (!used[level]) continue;
            if (count++ == 0) first = level;
            deepest = level;
        }
    }
};

static void give_integer_of(builtin_call &call, int64_t (*part)(const quolynode *)) {
    argument value;
    standard_read(call, value);
    quoly_set_int64(part(value.get()), call.result);
}

void builtin_level(builtin_call &call) {
    give_integer_of(call, [](const quolynode *q) -> int64_t { return levels_used(q).first; });
}
void builtin_height(builtin_call &call) {
    give_integer_of(call, [](const quolynode *q) -> int64_t {
        levels_used l(q);
        return l.count ? l.deepest - l.first + 1 : 0;
    });
}
void builtin_vars(builtin_call &call) {
    give_integer_of(call, [](const quolynode *q) -> int64_t { return levels_used(q).count; });
}
void builtin_terms(builtin_call &call) { give_integer_of(call, numterms); }
void builtin_term_count(builtin_call &call) { give_integer_of(call, f_numterms); }
void builtin_logdig(builtin_call &call) {
    give_integer_of(call, [](const quolynode *q) -> int64_t { return quoly_max_digits(q); });
}

} // namespace tolvek
