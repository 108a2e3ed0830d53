#include "numbers/storage_report.h"

#include "numbers/stash.h"
#include "top/driver.h"

#include <initializer_list>

namespace tolvek {

uint64_t memavail() {
    uint64_t budget = find_total_available_memory(), used = 0;
    for (const stash_record *s : {polystash, quolystash, numstash, imagstash, colmstash}) {
        if (s) used += uint64_t{s->slug_size} * s->slugs_used;
        if (used >= budget) return 0;
    }
    return budget - used;
}

} // namespace tolvek
