/* Polynomials and their quotients read term by term, behind &_n: the terms stand in the order in which a polynomial
   holds them, and are linked as they come, without a product or a sum of polynomials.

     quotient    = polynomial [ "/" polynomial ]        each of them may stand in parentheses
     polynomial  = term { ("+" | "-") term }
     term        = [ coefficient ] variable [ "^" [ "-" ] figures ]  |  coefficient
     coefficient = figures  |  "(" polynomial ")"  |  "-" coefficient

   A coefficient has inner variables alone. Terms of one variable have falling exponents; behind a power of a variable
   terms of inner variables may follow, which make up its term of exponent 0: x^2 + y^2 + y + 1. A number behind a
   number is added. The "/" stands between the whole numerator and the whole denominator. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

/* Reads a quotient from the first token on, which is in `token`, up to the first one that is no part of it. It is
   brought into normal form. Errors 1, 22, 159 to 165, 204, with nothing left behind; the result is then 0, and 1 for a
   denominator of 0.

   A 0 at the beginning of a polynomial is the whole of it. With nomodpolyreadin the figures of residues are read as
   integers of 32 bits, and their residues taken then; with a load under way a minus in front of one is warned of. */
void quoly_readin(stream *input, quolynode **result, name **cursor);

extern int minus_warning; /* the warning of a minus among residues is due: once in a load */

} // namespace tolvek
