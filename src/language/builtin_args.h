/* Private to the built-in functions: how their arguments are read. */
#pragma once

#include "language/expressions.h"
#include "matrix/arrays.h"
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

/* What "^x", "x", an element "x[i]" or the previous value "<" names: where a function finds a value, or leaves one. What
   is deleted while further arguments are evaluated stays whole; a value that is stored there is dropped with it. */
class named_place {
  public:
    /* `token` is the first token. Errors 19, 27, 28, 125; a command level that is resumed leaves it without a place. */
    void read(builtin_call &call);
    bool found() const { return at.slot || at.array; }
    /* The value in place; 0 where there is none. */
    const quolynode *get() const { return at.slot && *at.slot ? *at.slot : quol_num_0; }
    /* Takes the value over. */
    void store(quoly_handle &value) const;
    void exchange(const named_place &other) const;

  private:
    void read_element(builtin_call &call, token_record &array_name);
    place at;
    kept_value<int> held{cells_held}; /* an element is held as long as this lives */
};

/* An argument: a value of its own, or what stands in a named place, which is neither copied nor freed. */
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
    /* Of an argument that was written with "^". */
    const named_place &where() const { return named; }

  private:
    void read_own(builtin_call &call);

    quoly_handle own;
    named_place named;
    bool by_name = false;
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
/* "(" a "," b; `token` is what stands behind. Errors 177, 202. */
void read_two(builtin_call &call, argument &a, argument &b);
void check_for_paren(builtin_call &call); /* the next token must be "(" (177) */
void require_comma(builtin_call &call);   /* the token must be "," (202); it is read past */
void close_paren(builtin_call &call);     /* the token must be ")" (1); the next one is read */

/* The numerator of a value, which must have no denominator (error 186, and 0). A plain number is a constant. */
class polynomial_view {
  public:
    explicit polynomial_view(const quolynode *q);
    const polynode *get() const { return seen; }

  private:
    polynode lone;
    const polynode *seen;
};

/* The level of a value that is just a variable; error 282, and 0, for anything else. */
int variable_argument(const quolynode *q);

/* The value of a plain number as an integer: floats are rounded. Error n, and 0, for anything else or too large. */
int64_t integer_argument(const quolynode *q, int n);

} // namespace tolvek
