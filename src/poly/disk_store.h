/* The disk store of polynomials: the writer and the reader of one polynomial. No routine of the system opens the store,
   and none calls the pair: &(& = 1) only keeps its flag. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

extern text_out *tolvekstore; /* null: the store is not open */

constexpr int32_t negzero = INT32_MIN;       /* stands in front of a number */
constexpr int32_t end_of_terms = 0x7fffffff; /* stands behind the last term of a list, and for a null list */

/* Writes p, which may be null, in decimal figures with nothing between them: a number term is negzero, then in lintmode
   0 and the value, otherwise the count of digits and the digits; any other term is its exponent and its coefficient.
   Nothing where the store is not open. */
void put_poly_disk(const polynode *p);

/* *where := the polynomial of a store whose tags are decimal figures and whose numbers are raw words of four bytes (so it
   does not read what the writer wrote). What the end of the input cuts short ends there. The old value goes. */
void get_poly_disk(stream store, polynode **where);

} // namespace tolvek
