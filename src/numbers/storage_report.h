/* The memory budget and the report of the free lists. */
#pragma once

#include <cstdint>

namespace tolvek {

/* Bytes still in the budget; 0 when it is spent. Slugs on the free lists count as used. */
uint64_t memavail();

} // namespace tolvek
