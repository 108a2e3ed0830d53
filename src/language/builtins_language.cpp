/* Built-in functions of the language itself: definitions, values of settings, storage. */
#include "language/builtin_routines.h"
#include "language/execution.h"
#include "language/functions.h"
#include "language/run.h"
#include "matrix/arrays.h"
#include "top/driver.h"

namespace tolvek {

void builtin_fast(builtin_call &call) { call.read_on(); }

void builtin_function(builtin_call &call) {
    call.read_on();
    if (!is_upper_letter(first_char(token))) {
        error(11, token);
        return;
    }
    funcdef(call.input, call.cursor);
}

static void give_setting(builtin_call &call, int32_t value) {
    call.read_on();
    call.give(value);
}

void builtin_mode(builtin_call &call) { give_setting(call, modularmode); }
void builtin_modulus(builtin_call &call) { give_setting(call, modulus); }
void builtin_numvars(builtin_call &call) { give_setting(call, number_polys); }
void builtin_true(builtin_call &call) { give_setting(call, 1); }

void builtin_time(builtin_call &call) {
    showtime();
    call.read_on();
}

void builtin_tone(builtin_call &call) {
    say("\a");
    call.read_on();
}

void builtin_sigma(builtin_call &call) { sum_or_product(call.input, call.result, call.cursor, false); }
void builtin_product(builtin_call &call) { sum_or_product(call.input, call.result, call.cursor, true); }

void builtin_return(builtin_call &call) {
    check_for_paren(call);
    argument value;
    value.read_expression(call);
    close_paren(call);
    value.give_copy(call.result);
    if (*call.cursor && statcount > 0)
        exit_flag = 1;
    else
        say(" *** Warning. 'Return' ignored.\n");
}

/* ---- storage ---- */

/* Two places: (^x, ^y). */
struct two_places {
    named_place first, second;
    explicit two_places(builtin_call &call) {
        check_for_paren(call);
        call.read_on();
        first.read(call);
        require_comma(call);
        second.read(call);
        close_paren(call);
    }
    bool found() const { return first.found() && second.found(); }
};

void builtin_move(builtin_call &call) {
    two_places of(call);
    quoly_handle value, nothing;
    if (!of.found()) return;
    quoly_assign(of.first.get(), value.slot());
    quoly_set(0, nothing.slot());
    of.first.store(nothing);
    of.second.store(value);
}

void builtin_swap(builtin_call &call) {
    two_places of(call);
    if (of.found()) of.first.exchange(of.second);
}

static token_record read_name(builtin_call &call) {
    token_record t = token;
    if (!is_letter(first_char(t))) error(124, t);
    call.read_on();
    return t;
}

static void rename_variable(token_record &from, token_record &to) {
    variable *v = find_variable(from);
    if (!v) {
        error(19, from);
        return;
    }
    unlink_variable(v);
    v->tok = to;
    v->tok.hash_slot = hash_unknown;
    scalar_generation++;
    link_variable(v);
}

/* [x] */
static token_record read_array_name(builtin_call &call) {
    if (!token_is(token, "[")) error(178, token);
    call.read_on();
    token_record t = token;
    if (!is_lower_letter(first_char(t))) error(124, t);
    call.read_on();
    require("]", 24, call.input, call.cursor);
    return t;
}

static void rename_arrays(builtin_call &call) {
    token_record from = read_array_name(call);
    require_comma(call);
    token_record to = read_array_name(call);
    close_paren(call);
    if (!rename_array(from, to)) error(28, from);
}

void builtin_rename(builtin_call &call) {
    check_for_paren(call);
    call.read_on();
    if (token_is(token, "[")) return rename_arrays(call);
    token_record from = read_name(call);
    require_comma(call);
    token_record to = read_name(call);
    close_paren(call);
    if (is_lower_letter(first_char(from)) != is_lower_letter(first_char(to)))
        error(124, to);
    else if (is_lower_letter(first_char(from)))
        rename_variable(from, to);
    else if (!rename_function(from, to))
        error(16, from);
}

} // namespace tolvek
