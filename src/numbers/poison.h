/* In a sanitizer build a record on a free list is poisoned, so that a use after its return is reported at once. In
   every other build these are empty. */
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#define TOLVEK_POISONING 1
#else
#define TOLVEK_POISONING 0
#endif

#include <cstddef>

namespace tolvek {

#if TOLVEK_POISONING
inline void poison(void *record, std::size_t bytes) { ASAN_POISON_MEMORY_REGION(record, bytes); }
inline void unpoison(void *record, std::size_t bytes) { ASAN_UNPOISON_MEMORY_REGION(record, bytes); }
#else
inline void poison(void *, std::size_t) {}
inline void unpoison(void *, std::size_t) {}
#endif

} // namespace tolvek
