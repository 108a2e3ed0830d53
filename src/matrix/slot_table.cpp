#include "matrix/slots.h"

namespace tolvek {

static array_record **arrstash = nullptr;
static int32_t slots_used = 0; /* all slots from here on are empty */

array_record *slot_array(int32_t i) { return i < slots_used ? arrstash[i] : nullptr; }

void set_slot(int32_t i, array_record *a) {
    if (!arrstash) arrstash = static_cast<array_record **>(heap_request_cleared(slot_count * sizeof(array_record *)));
    arrstash[i] = a;
    if (i >= slots_used) slots_used = i + 1;
}

void clear_slots_of(const array_record *a) {
    for (int32_t i = 0; i < slots_used; i++)
        if (arrstash[i] == a) arrstash[i] = nullptr;
    while (slots_used > 0 && !arrstash[slots_used - 1]) slots_used--;
}

bool is_in_slot(const array_record *a) {
    for (int32_t i = 0; i < slots_used; i++)
        if (arrstash[i] == a) return true;
    return false;
}

} // namespace tolvek
