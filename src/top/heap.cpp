#include "top/heap.h"

#include "top/tolvek.h"

#include <cstdlib>

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

} // namespace tolvek
