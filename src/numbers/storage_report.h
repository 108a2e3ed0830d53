/* The memory budget, what lies idle on the free lists, and the report of both. A record counts with the bytes of the
   memory reports: a digit 8, a number 48, a polynode 16, a quolynode 20. */
#pragma once

#include <cstdint>

namespace tolvek {

/* Bytes still in the budget; 0 when it is spent. Slugs on the free lists count as used. */
uint64_t memavail();

/* Bytes on the free lists of digits, numbers, polynodes and quolynodes, in that order. Each walk but those of garbsize
   ends at a cap, so that the first is cheap enough for the middle of a long computation; a longer list counts as the
   cap does. big_garbsize leaves the quolynodes out. */
int64_t fast_garbsize();
int64_t med_garbsize();
int64_t big_garbsize();
int64_t garbsize();

/* Writes a line for each free list, and the totals. */
void garbage();

} // namespace tolvek
