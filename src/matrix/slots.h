/* Array slots: %[n] stands for the array whose record slot n holds. */
#pragma once

#include "language/expressions.h"
#include "matrix/arrays.h"

namespace tolvek {

constexpr int32_t slot_count = 400000;

/* Slot i, counted from 0; null: empty. */
array_record *slot_array(int32_t i);
void set_slot(int32_t i, array_record *a);
/* Empties the slots of an array that goes. */
void clear_slots_of(const array_record *a);
bool is_in_slot(const array_record *a);

/* Behind "%", which is the token: reads [n] and the token behind it, and gives the array. Null: the slot is empty. Errors
   217, 218, 219, 221. */
array_record *get_arr_arr(stream *input, name **cursor);
/* The same for a slot that is to be set: its number from 0. */
int32_t read_slot_number(stream *input, name **cursor);

/* The factor %[n][i,j], with "%" as the token: a copy. An element without a value becomes 0, with a warning. Errors 217,
   220. */
void slot_element(stream *input, name **cursor, quolynode **result);

/* The statement that begins with %, with "%" as the token:

     %[n] := [x]     %[n] := %[m]       the slot stands for the array: 24, 28, 129, 220, 317
     %[n][i,j] := e  %[n][i,j] :+ e     an element is stored
     %[n][i,j] ...                      a scalar expression
     %[n] ...                           an array expression, whose value goes to the system array */
void arr_arr_state(stream *input, quolynode **result, name **cursor);

} // namespace tolvek
