/* Changes of the set of variables and of all the values that are stored: the steps of attach_poly (variables.h). */
#pragma once

#include "poly/variables.h"

namespace tolvek {

/* Calls `visit` for the slot of every value that outlives the statement but the last value. */
void visit_stored_values(void (*visit)(quolynode **slot, void *context), void *context);

/* A new variable at the head of the list, or at its tail, above the field variables. There are less than most_variables.
   Either every stored value follows or, where memory is refused, nothing has changed. */
void adjoin_variable(token_record &variable_name, bool at_head);

/* Takes a variable out: every stored value is evaluated at 1. Where a denominator becomes 0 the value is 1 and a warning
   is written. Passes safe points; until all values are there nothing has changed. */
void cancel_variable(int level);

} // namespace tolvek
