/* Changes of the ground ring for some values alone: the list of names behind &(p=n: ...) and &p(...).

     x         the scalar changes for good
     [a]       so do the elements of an array; [%[n]], [<]
     *x, *[a]  they change for the time, as what is not named does
     **        everything does

   The names are separated by commas; an empty list names nothing. The system array changes for good with every list that is
   not empty. */
#pragma once

#include "top/ring_values.h"

namespace tolvek {

/* Makes the images of all values. Where a name cannot be changed the rest of the list is left, and a text says so (`quiet`:
   none does). Errors 19, 24, 28, 220, 236 and 358 are told there and not raised. */
void change_local(const name *names, value_change &change, bool quiet);

} // namespace tolvek
