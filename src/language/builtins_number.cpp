/* Built-in functions of numbers. */
#include "language/builtin_routines.h"
#include "numbers/handles.h"
#include "numbers/int_power.h"
#include "top/start_tables.h"

#include <cmath>

namespace tolvek {

void builtin_number(builtin_call &call) {
    argument value;
    standard_read(call, value);
    call.give(value.is_number());
}

void builtin_rational(builtin_call &call) {
    argument value;
    standard_read(call, value);
    call.give(!lintmode && !value.is_number() && value.get()->is_rat);
}

/* The number as a machine integer: a float is rounded, an exact number gives its first digit. */
void builtin_cast(builtin_call &call) {
    argument value;
    standard_read(call, value);
    if (!value.is_number()) {
        error(91, token);
        return;
    }
    const number *x = value.get()->numb;
    call.give(flotemode || lintmode ? quoly_to_int(value.get()) : x->num_head->digit);
}

void builtin_prime(builtin_call &call) {
    argument value;
    standard_read(call, value);
    if (!value.is_number()) {
        error(227, token);
        return;
    }
    int64_t n = integer_argument(value.get(), 346);
    if (n < 1 || n > small_prime_count) {
        error(346, token);
        return;
    }
    call.give(small_prime[n - 1]);
}

/* Sqrt of a factor: the integer square root, of a fraction that of its greatest integer; a float's is a float. */
void builtin_square_root(builtin_call &call) {
    call.read_on();
    old_fact(call.input, call.result, call.cursor);
    quolynode *q = *call.result;
    if (!q->is_num && !q->is_rat) {
        error(115, token);
        return;
    }
    if (!q->is_num) quoly_great_int(call.result);
    number *x = (*call.result)->numb;
    if (flotemode) {
        x->flote_val = std::sqrt(x->flote_val);
    } else if (lintmode || num_sign(x) < 0) {
        error(62, token);
    } else if (num_sign(x) > 0) {
        int_sqrt(x, x, 1);
    }
}

} // namespace tolvek
