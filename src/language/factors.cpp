/* Factors: one row of the table below for each way in which a factor begins, then the postfix operators. */
#include "language/compile.h"
#include "language/expressions.h"
#include "language/flote_functions.h"
#include "language/functions.h"
#include "language/run.h"
#include "matrix/array_expressions.h"
#include "matrix/elements.h"
#include "matrix/slots.h"
#include "numbers/handles.h"
#include "numbers/int_power.h"
#include "quoly/calculus.h"
#include "top/driver.h"
#include "top/interrupts.h"
#include "top/parse.h"
#include "top/stack_limit.h"

namespace tolvek {

/* One factor on its way. Entered with its first token in `token`. */
struct factor {
    stream *input;
    place &at;
    quolynode **result;
    name **cursor;
    bool moving; /* "*" in front: the value leaves its variable */

    void read_on() { scanner(input, token, cursor); }
    void give_zero() { quoly_set(0, result); }
};

/* ---- names ---- */

/* Behind a name that is not defined: ":" creates it; anything else is an error. */
static void missing_scalar(factor &f, token_record &variable_name) {
    if (token_is(token, ":")) {
        quoly_handle value;
        quoly_set(0, value.slot());
        f.at.slot = &insert_var(variable_name, value)->value;
        return;
    }
    if (token_is(variable_name, "quit"))
        say(" The quit command is &q.\n");
    else
        error(19, variable_name);
    f.give_zero();
}

static void array_element(factor &f, token_record &array_name) {
    new_arretrieve(f.input, f.cursor, array_name, f.at, f.result);
}

/* A compiled token knows its scalar. */
static bool bound_value(factor &f) {
    if (!*f.cursor || !(*f.cursor)->bound) return false;
    f.at.slot = bound_slot((*f.cursor)->bound);
    if (!f.at.slot) return false;
    f.read_on();
    return true;
}

/* A variable of polynomials stands for itself: it can be no target, and has no value to move. */
static bool polynomial_variable(factor &f) {
    int level;
    if (!polynames || !is_poly_name(token.text, &level)) return false;
    if (f.moving) error(363, token);
    base_quoly(level, f.result);
    f.read_on();
    return true;
}

static void named_value(factor &f) {
    if (bound_value(f) || polynomial_variable(f)) return;
    token_record variable_name = token;
    if (begins_control_word(token) && !find_variable(variable_name)) return call_sys_func(f.input, f.result, f.cursor);
    hash_of(variable_name, scalar_chains);
    f.read_on();
    if (token_is(token, "[")) return array_element(f, variable_name);
    retrieve(variable_name, &f.at.slot, f.result, f.input, f.cursor);
    if (!f.at.slot) missing_scalar(f, variable_name);
}

static void function_value(factor &f) { call_function(f.input, f.result, f.cursor); }

static void number_value(factor &f) { read_number(f.input, f.result, f.cursor); }

/* ---- brackets and prefix operators ---- */

static void parenthesis(factor &f) {
    f.read_on();
    old_expre(f.input, f.result, f.cursor);
    require(")", 1, f.input, f.cursor);
}

/* Reads the factor behind a prefix operator, and makes its value the result's own. */
static void read_operand(factor &f) {
    f.read_on();
    fact(f.input, f.at, f.result, f.cursor, 0);
    own_value(f.at, f.result);
}

static void negation(factor &f) {
    read_operand(f);
    quoly_inplace(*f.result);
}

static void greatest_integer(factor &f) {
    read_operand(f);
    quoly_great_int(f.result);
}

static void absolute_value(factor &f) {
    read_operand(f);
    bool closed = token_is(token, "|");
    if (!closed) error(63, token);
    quoly_abs(f.result);
    if (closed) f.read_on();
}

/* ---- characters, dynamic arrays, float functions ---- */

static void character_constant(factor &f) {
    int line_end;
    dumbscanner(f.input, token, f.cursor, &line_end);
    quoly_set(first_char(token), f.result);
    if (!line_end) dumbscanner(f.input, token, f.cursor, &line_end);
    if (line_end || !token_is(token, "'")) error(109, token);
    f.read_on();
}

static void dynamic_array_element(factor &f) { slot_element(f.input, f.cursor, f.result); }

/* _sqrt(x) and its like; outside the float ring the token is left standing. */
static void flote_function_value(factor &f) {
    if (!flotemode) return;
    f.read_on();
    token_record function = token;
    f.read_on();
    require("(", 177, f.input, f.cursor);
    old_expre(f.input, f.result, f.cursor);
    require(")", 1, f.input, f.cursor);
    if ((*f.result)->is_num)
        (*f.result)->numb->flote_val = apply_flote_function(function, (*f.result)->numb->flote_val);
    else
        error(227, function);
}

/* ---- previous values and statements ---- */

static void previous_value(factor &f) {
    f.read_on();
    if (token_is(token, "[")) {
        syst_element(f.input, f.cursor, f.result);
    } else if (token_is(token, "F")) {
        rerun_sys_func(f.input, f.result, f.cursor);
    } else if (prevnum) {
        quoly_assign(prevnum, f.result); /* a copy: it can be no target */
    } else {
        f.give_zero();
    }
}

static void statement_value(factor &f) {
    parse(f.input, f.result, f.cursor);
    if (!*f.result) f.give_zero();
}

static void no_factor(factor &f) {
    error(2, token);
    f.give_zero();
}

/* ---- the table ---- */

using factor_reader = void (*)(factor &);

struct factor_form {
    const char *first_characters;
    factor_reader read;
};

static constexpr factor_form factor_forms[] = {
    {"abcdefghijklmnopqrstuvwxyz", named_value},
    {"0123456789.", number_value},
    {"ABCDEFGHIJKLMNOPQRSTUVWXYZ", function_value},
    {"(", parenthesis},
    {"-", negation},
    {"$", greatest_integer},
    {"|", absolute_value},
    {"'", character_constant},
    {"%", dynamic_array_element},
    {"_", flote_function_value},
    {"<", previous_value},
    {"!&?@", statement_value},
};

/* The same by character. */
struct factor_readers {
    factor_reader of[256];
    constexpr factor_readers() : of{} {
        for (factor_reader &reader : of) reader = no_factor;
        for (const factor_form &form : factor_forms)
            for (const char *p = form.first_characters; *p; p++) of[static_cast<unsigned char>(*p)] = form.read;
    }
};

static constexpr factor_readers readers;

/* ---- postfix operators ---- */

static void power(factor &f) {
    number_handle exponent;
    {
        held_value base;
        held_cells cell(f.at.cell);
        get_exponent(f.input, f.cursor, &exponent, 1);
    }
    own_value(f.at, f.result);
    raise_to_power(f.result, &exponent);
}

static void factorial_of(factor &f) {
    own_value(f.at, f.result);
    bool is_number = (*f.result)->is_num;
    if (!is_number) error(130, token);
    f.read_on();
    if (is_number) factorial((*f.result)->numb);
}

void evaluation_point::read_value(stream *input, name **cursor) {
    if (count == most_variables) error(278, token);
    count = minn(count, most_variables - 1);
    old_expre(input, value[count].slot(), cursor);
    count++;
}

/* One value in parentheses is a factor like any other, with postfix operators of its own. */
void evaluation_point::read_values(stream *input, name **cursor) {
    held_value polynomial;
    if (!token_is(token, "(")) {
        old_fact(input, value[count++].slot(), cursor);
        return;
    }
    scanner(input, token, cursor);
    read_value(input, cursor);
    bool several = token_is(token, ",");
    while (token_is(token, ",")) {
        held_value left;
        scanner(input, token, cursor);
        read_value(input, cursor);
    }
    require(")", 1, input, cursor);
    if (!several) half_fact(input, value[0].slot(), cursor);
}

/* More values than there are variables are an error; a single one is none, since numbers stay as they are. */
int evaluation_point::read(stream *input, name **cursor, const quolynode **values) {
    read_values(input, cursor);
    if (count > 1 && count > number_polys) error(278, token);
    const int used = minn(count, number_polys);
    for (int i = 0; i < used; i++) values[i] = value[i].get();
    return used;
}

static void evaluation(factor &f) {
    f.read_on();
    (f.moving ? move_value : own_value)(f.at, f.result);
    if (token_is(token, "[")) return evaluate_into_syst_array(f.input, f.cursor, f.result);
    evaluation_point point;
    const quolynode *values[most_variables];
    const int count = point.read(f.input, f.cursor, values);
    get_evalquoly(f.result, values, count);
}

static void read_postfix(factor &f) {
    if (token_is(token, "^"))
        power(f);
    else if (token_is(token, "!"))
        factorial_of(f);
    else if (token_is(token, "#"))
        evaluation(f);
    while (token_is(token, "\"")) {
        (f.moving ? move_value : own_value)(f.at, f.result);
        quoly_differen_once(f.result, 1);
        f.read_on();
    }
}

/* ---- the factor ---- */

/* Reads "*" in front of a name; the value is then moved out of the variable. */
static bool read_move_flag(stream *input, name **cursor) {
    if (!token_is(token, "*")) return false;
    scanner(input, token, cursor);
    if (is_lower_letter(first_char(token))) return true;
    error(337, token);
    return false;
}

static void read_bare_factor(factor &f) {
    check_stack();
    safe_point();
    free_quoly(f.result);
    f.at = {};
    readers.of[first_char(token)](f);
    if (*f.result) f.at.slot = f.result;
}

static void read_factor(factor &f) {
    read_bare_factor(f);
    read_postfix(f);
    if (*f.result) f.at.slot = f.result;
}

void fact(stream *input, place &at, quolynode **result, name **cursor, int) {
    bool moving = read_move_flag(input, cursor);
    factor f{input, at, result, cursor, moving};
    read_factor(f);
    if (moving && !token_is(token, ":")) move_value(at, result);
}

void old_fact(stream *input, quolynode **result, name **cursor) {
    place at;
    bool moving = read_move_flag(input, cursor);
    factor f{input, at, result, cursor, moving};
    read_factor(f);
    if (moving && *result) tolvek_error("eatstorage and n <> nil in old_fact.", 1);
    (moving ? move_value : own_value)(at, result);
}

void bare_fact(stream *input, quolynode **result, name **cursor) {
    place at;
    factor f{input, at, result, cursor, false};
    read_bare_factor(f);
    own_value(at, result);
}

void half_fact(stream *input, quolynode **result, name **cursor) {
    place at;
    at.slot = result;
    factor f{input, at, result, cursor, false};
    read_postfix(f);
}

} // namespace tolvek
