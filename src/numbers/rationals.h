/* Rational arithmetic: quolys whose numerator and denominator are lone numbers, in lowest terms, the denominator
   positive and not 1 (a denominator of 1 gives a plain number). Outside lintmode only. Operands come back
   unchanged; the result replaces what *out held and may be an operand. */
#pragma once

#include "numbers/number.h"

namespace tolvek {

void mult_numb_rat(const quolynode *n, const quolynode *q, quolynode **out); /* number times rational */
void quot_rat_numb(const quolynode *q, const quolynode *n,
                   quolynode **out); /* rational divided by a number other than 0 */
void mult_rats(const quolynode *a, const quolynode *b, quolynode **out);
void quot_rats(const quolynode *a, const quolynode *b, quolynode **out);
/* n + q with add set, else n - q; and the same for two rationals. */
void add_numb_rat(const quolynode *n, const quolynode *q, quolynode **out, int add);
void add_rats(const quolynode *a, const quolynode *b, quolynode **out, int add);

} // namespace tolvek
