/* Private to the arrays: records without names, and room in the element table. */
#pragma once

#include "matrix/arrays.h"

namespace tolvek {

array_record *newarray(); /* empty, on no list */
void push_array(array_record *a);

/* Sees to it that so many cells can follow endarr, and that their blocks are there. If the table is full and nobody holds
   a slot of it, the gaps of deleted arrays are closed first, then arrays that are hidden behind newer ones of the same name
   go. False: no room. */
bool make_room(int32_t count);

/* The cells first to last, which hold no value any more, are closed when nothing holds them. */
void leave_gap(int32_t first, int32_t last);

/* Is the array a parameter, or does a parameter stand for it? */
bool is_shared(const array_record *a);
/* An ordinary array gives its cells up; it is left without any. */
void drop_cells(array_record *a);

} // namespace tolvek
