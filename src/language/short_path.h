/* The short path: sums, products and comparisons of plain numbers, read from stored tokens with no record made.

   It serves the ring of floats, and of the exact one the integers of at most two digits. A routine either gives the value
   of the ordinary path, or gives up with nothing changed and nothing said, and the ordinary path reads the same tokens. It
   knows names of scalars, elements of arrays, figures, parentheses, + - and *, and / between floats. It gives up at everything else: calls,
   powers, undefined names, values of other kinds, results beyond 63 bits, divisions by 0, which are the ordinary path's
   to refuse. Where the tokens alone make it give up they are marked, so that each place is tried once. */
#pragma once

#include "language/tokens.h"
#include "top/tolvek.h"

namespace tolvek {

/* A value of the short path, in the form of the ring in force. */
union short_number {
    int64_t whole;
    long double flote;
};

/* Each of these is entered with its first token in `token`, at the cursor, and leaves the token behind it there. A cursor
   that is null, which means that characters are read, makes them give up. */

bool short_sum(name **cursor, short_number &value);
bool short_sum(name **cursor, quolynode **result); /* the same as a plain number */
bool short_flote_sum(name **cursor, long double &value);

/* A value or a comparison of two; whether it holds. What stands behind it can follow a comparison. */
bool short_comparison(name **cursor, bool &holds);

/* A whole statement of a stored list: a sum, or an assignment x := e, x :+ n, x :- n, in Float also x :* n, to a scalar
   that exists or to an element of an ordinary array. The result is the sum, or 0. */
bool short_statement(name *tokens, quolynode **result);

} // namespace tolvek
