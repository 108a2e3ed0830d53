/* Private to the built-in functions: how their arguments are read. */
#pragma once

#include "language/expressions.h"
#include "quoly/quoly.h"
#include "top/guards.h"

namespace tolvek {

/* One call on its way. Entered with the name of the function as the token; a routine leaves the token behind the call. */
struct builtin_call {
    stream *input;
    quolynode **result;
    name **cursor;
    int code;

    void read_on() { scanner(input, token, cursor); }
    void give(int32_t value) { quoly_set(value, result); }
};

/* An argument: a value of its own, or what stands at a variable's slot, which is neither copied nor freed. */
class argument {
  public:
    /* "^" and a name: the value in place, a missing one being 0; otherwise an expression. `token` is its first token. */
    void read(builtin_call &call);
    /* An expression alone: "^" is error 313. Reads the next token first. */
    void read_expression(builtin_call &call);
    const quolynode *get() const;
    bool is_number() const { return get()->is_num; }
    /* The value as the result's own. */
    void give_copy(quolynode **result) const { quoly_assign(get(), result); }
    quolynode **slot() { return place ? place : own.slot(); }

  private:
    void read_own(builtin_call &call);

    quoly_handle own;
    quolynode **place = nullptr;
    kept_value<int> held{values_held}; /* an own value is held as long as the argument lives */
};

/* An argument that a call with ^ changes: then the variable takes the new value, and that of the call is 0. */
class changed_argument {
  public:
    explicit changed_argument(builtin_call &call); /* reads it; `token` is its first token */
    const quolynode *get() const { return value.get(); }
    void give(quoly_handle &fresh, builtin_call &call);

  private:
    bool by_name;
    argument value;
};

/* "(" argument ")" and the next token. Errors 1, 177. */
void standard_read(builtin_call &call, argument &a);
void check_for_paren(builtin_call &call); /* the next token must be "(" (177) */
void require_comma(builtin_call &call);   /* the token must be "," (202); it is read past */
void close_paren(builtin_call &call);     /* the token must be ")" (1); the next one is read */

/* "^x", "x" or an element, by name: its slot. Errors 19, 125. `token` is its first token. */
quolynode **get_quoly_ptr(builtin_call &call);

/* The value of a plain number as an integer: floats are rounded. Error n, and 0, for anything else or too large. */
int64_t integer_argument(const quolynode *q, int n);

} // namespace tolvek
