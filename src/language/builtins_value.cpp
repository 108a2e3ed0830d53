/* Built-in functions of values in general. */
#include "language/builtin_routines.h"
#include "poly/model.h"
#include "quoly/compare.h"

namespace tolvek {

/* A copy of a numerator or denominator as a value of its own. */
static void give_part(const polynode *p, quolynode **result) {
    quoly_handle value;
    *value.slot() = newquoly();
    value->is_num = value->is_rat = value->array_mark = 0;
    value->num = value->den = nullptr;
    poly_assign(p, &value->num);
    if (is_constant(value->num)) polynum_to_quoly(value.slot());
    value.release_to(result);
}

void builtin_numerator(builtin_call &call) {
    argument value;
    standard_read(call, value);
    if (value.is_number())
        value.give_copy(call.result);
    else
        give_part(value.get()->num, call.result);
}

void builtin_denominator(builtin_call &call) {
    argument value;
    standard_read(call, value);
    const quolynode *q = value.get();
    if (q->is_num || !q->den)
        call.give(1);
    else
        give_part(q->den, call.result);
}

/* Killden(x): the value without its denominator. With ^x the variable itself loses it, and the value is 0. */
void builtin_kill_denominator(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    if (token_is(token, "[") || token_is(token, "*")) return kill_denominators(call);
    changed_argument x(call);
    close_paren(call);
    quoly_handle fresh;
    if (x.get()->is_num)
        quoly_assign(x.get(), fresh.slot());
    else
        give_part(x.get()->num, fresh.slot());
    x.give(fresh, call);
}

/* Reads (^a, ^b) and compares. */
static void compare(builtin_call &call, int (*holds)(const quolynode *, const quolynode *)) {
    argument a, b;
    read_two(call, a, b);
    close_paren(call);
    call.give(holds(a.get(), b.get()));
}

void builtin_equal(builtin_call &call) { compare(call, quoly_equal); }
void builtin_equal_negative(builtin_call &call) { compare(call, quoly_negtive); }

} // namespace tolvek
