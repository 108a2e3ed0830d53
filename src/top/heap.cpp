#include "top/heap.h"

#include "top/tolvek.h"

#include <cstdint>
#include <cstdlib>
#include <sys/mman.h>

namespace tolvek {

heap_hooks heap{std::malloc, std::free};

void *heap_request(std::size_t bytes) {
    if (bytes == 0) bytes = 1;
    if (void *block = heap.request(bytes)) return block;
    mem_error();
    void *block = heap.request(bytes);
    if (!block) error(0, blank);
    return block;
}

void *heap_request_cleared(std::size_t bytes) {
    void *block = heap_request(bytes);
    std::memset(block, 0, bytes);
    return block;
}

void heap_release(void *block) {
    if (block) heap.release(block);
}

void heap_fill_pages(void *memory, std::size_t bytes) {
#ifdef MADV_POPULATE_WRITE
    constexpr std::uintptr_t page = 4096; /* where pages are larger, the request is refused or fills more */
    const std::uintptr_t from = reinterpret_cast<std::uintptr_t>(memory) / page * page;
    madvise(reinterpret_cast<void *>(from), reinterpret_cast<std::uintptr_t>(memory) + bytes - from,
            MADV_POPULATE_WRITE);
#else
    (void)memory, (void)bytes;
#endif
}

} // namespace tolvek
