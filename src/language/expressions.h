/* Scalar expressions, read and evaluated in one pass.

   Precedence, tightest first: postfix " (derivative); one postfix ^ ! or #; prefix - $ * (on the factor with its
   postfix operator); * / // \ | and juxtaposition; + and -; the assignment forms := :+ :- and :.

   Arguments: `input` and `cursor` say where tokens come from (language/scanner.h); `result` is a slot of the caller,
   whose old value goes. Entered with the first token of the form in `token`; on return `token` is the first token
   behind it. Errors leave every variable as it was. */
#pragma once

#include "language/scanner.h"
#include "quoly/quoly.h"

namespace tolvek {

struct array_record;

/* Where a value lives: a variable's slot, an array cell, or the result itself. */
struct place {
    quolynode **slot = nullptr;    /* null: an element that a sparse array does not have */
    array_record *array = nullptr; /* that array, and the index of the missing element */
    int64_t index = 0;
    bool cell = false; /* the slot is one of an ordinary array */
};

/* Operands that expressions hold while they evaluate others. As long as there are any, nothing may change that would
   give the held values another meaning: the variables of polynomials, their relations, the ring (error 73). Whoever
   keeps a value in a frame while something else is evaluated keeps one of these too. */
extern int values_held;
struct held_value {
    held_value() { values_held++; }
    ~held_value() { values_held--; }
    held_value(const held_value &) = delete;
    held_value &operator=(const held_value &) = delete;
};

/* Statement level: a sum, or an assignment. The result is left empty when the value is only at the place: whoever
   must own it copies it (own_value). */
void expre(stream *input, place &at, quolynode **result, name **cursor);
void term(stream *input, place &at, quolynode **result, name **cursor);
/* keep_missing: an element that does not exist leaves the slot null, and is no 0. */
void fact(stream *input, place &at, quolynode **result, name **cursor, int keep_missing);

/* The same grammar without assignment; the result always holds a value of its own. */
void old_expre(stream *input, quolynode **result, name **cursor);
void old_term(stream *input, quolynode **result, name **cursor);
void old_fact(stream *input, quolynode **result, name **cursor);
/* A factor without the operators behind it, and without "*" in front. */
void bare_fact(stream *input, quolynode **result, name **cursor);

/* Continue an expression whose first factor is already in the result. */
void half_expre(stream *input, quolynode **result, name **cursor);
void half_term(stream *input, quolynode **result, name **cursor);
void half_fact(stream *input, quolynode **result, name **cursor);

/* The exponent behind ^, read outside the modular ring. Mode 1: one factor; mode 0: a whole sum, computed exactly.
   Error 116: not a number. */
void get_exponent(stream *input, name **cursor, number *out, int mode);

/* Values for the first variables, behind "#": one factor, or several values in parentheses. */
class evaluation_point {
  public:
    /* Reads them; values[] := those that are used, at most number_polys: how many. Error 278. */
    int read(stream *input, name **cursor, const quolynode **values);

  private:
    void read_values(stream *input, name **cursor);
    void read_value(stream *input, name **cursor);

    quoly_handle value[most_variables];
    int count = 0;
};

/* Makes the result hold the value: a copy of what is at the place, or 0 when nothing is. */
void own_value(place &at, quolynode **result);
/* The same, leaving 1 in the variable. */
void move_value(place &at, quolynode **result);

/* Reads the assignment behind a first term, with ":" as the token. */
void assignment(stream *input, place &at, quolynode **result, name **cursor);

/* A literal: figures with a decimal part, in the float ring also with e+ or e- and an exponent (error 376).
   A literal beyond 32 bits in lintmode outside the modular ring wraps, with a warning. */
void read_number(stream *input, quolynode **result, name **cursor);

/* The figures of a literal into x, which is fresh: a whole number; in the float ring all that read_number takes. */
void read_coefficient(stream *input, name **cursor, number *x);

/* The token must be `text`; otherwise error n. Then the next token is read. */
void require(const char *text, int n, stream *input, name **cursor);

} // namespace tolvek
