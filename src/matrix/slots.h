/* Array slots: %[n] stands for the array whose record slot n holds. */
#pragma once

#include "matrix/arrays.h"

namespace tolvek {

constexpr int32_t slot_count = 400000;

/* Slot i, counted from 0; null: empty. */
array_record *slot_array(int32_t i);
void set_slot(int32_t i, array_record *a);
/* Empties the slots of an array that goes. */
void clear_slots_of(const array_record *a);
bool is_in_slot(const array_record *a);

/* Behind "%": reads [n] and the token behind it. Null: the slot is empty. Errors 217, 218, 219, 221. */
array_record *get_arr_arr(stream *input, name **cursor);
/* The same number as a slot from 0, for a slot that is to be set. */
int32_t read_slot_number(stream *input, name **cursor);

/* The statement that begins with %, with "%" as the token. */
void arr_arr_state(stream *input, quolynode **result, name **cursor);

} // namespace tolvek
