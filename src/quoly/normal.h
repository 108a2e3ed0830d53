/* The normal form of values, and what brings a value into it.

     over the integers      numerator and denominator have no common factor, numbers included; the leading number of the
                            denominator is positive
     modulo n, and floats   they have no common polynomial factor; the leading number of the denominator is 1
     in every ring          no denominator is 1 or -1; in a modular ring and for floats none is a number; a constant is a
                            plain number, or with a denominator a rational; 0 is the plain number

   Modulo a composite number a common factor may stay where it cannot be divided out.

   The routines consume the handles, and *q is replaced when the value is complete. A denominator that is 0 is error 210,
   one whose leading number has no inverse 85. */
#pragma once

#include "quoly/quoly.h"

namespace tolvek {

/* *q := num / den, which have no common factor: scale, sign and shape are set right. den may be null. */
void reduced_to_value(poly_handle &num, poly_handle &den, quolynode **q);
/* *q := num / den, whatever they are. At most one GCD is taken. */
void fraction_to_value(poly_handle &num, poly_handle &den, quolynode **q);

/* The same for the parts of a value: the scale, sign and shape of one whose parts are coprime; the whole normal form. */
void normal_form(quolynode **q);
void check_quoly(quolynode **q);
/* Divides numerator and denominator by the greatest number that divides both; their shape stays. Chain form. */
void sanitize(quolynode *q);

} // namespace tolvek
