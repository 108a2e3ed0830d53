/* The one door to the system's heap. Nothing else in the core calls malloc, new or free; the records of values
   come from the free lists in front of it (numbers/stash.h, numbers/free_lists.h). */
#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace tolvek {

/* A block of at least `bytes` bytes, aligned to 16; never null. A refusal calls mem_error and tries once more; a
   second refusal of the same request is a panic stop (throws). The contents are undefined. */
void *heap_request(std::size_t bytes);
void *heap_request_cleared(std::size_t bytes);
void heap_release(void *block); /* null is fine */
/* The memory, all of which will be used now, gets its pages at once: so it costs about half of what it costs when each
   page stops the program as it is first touched. For speed only; the contents stay. */
void heap_fill_pages(void *memory, std::size_t bytes);

/* Where requests go: malloc and free unless a test or another program sets other routines. */
struct heap_hooks {
    void *(*request)(std::size_t bytes);
    void (*release)(void *block);
};
extern heap_hooks heap;

/* A growing array of plain values that gives its block back at the end of its frame. */
template <class T> class buffer {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    buffer() = default;
    explicit buffer(std::size_t n) { resize(n); }
    ~buffer() { heap_release(block); }
    buffer(const buffer &) = delete;
    buffer &operator=(const buffer &) = delete;
    buffer(buffer &&other) noexcept : block(other.block), used(other.used), room(other.room) {
        other.block = nullptr;
        other.used = other.room = 0;
    }
    buffer &operator=(buffer &&other) noexcept {
        if (this != &other) {
            heap_release(block);
            block = other.block;
            used = other.used;
            room = other.room;
            other.block = nullptr;
            other.used = other.room = 0;
        }
        return *this;
    }

    T *data() { return block; }
    const T *data() const { return block; }
    std::size_t size() const { return used; }
    bool empty() const { return used == 0; }
    T &operator[](std::size_t i) { return block[i]; }
    const T &operator[](std::size_t i) const { return block[i]; }
    T *begin() { return block; }
    T *end() { return block + used; }
    const T *begin() const { return block; }
    const T *end() const { return block + used; }
    T &back() { return block[used - 1]; }

    void clear() { used = 0; }
    void pop() { used--; }
    void push(T value) {
        if (used == room) reserve(room < 8 ? 16 : 2 * room);
        block[used++] = value;
    }
    /* New elements are undefined. */
    void resize(std::size_t n) {
        reserve(n);
        used = n;
    }
    void reserve(std::size_t n) {
        if (n <= room) return;
        T *larger = static_cast<T *>(heap_request(n * sizeof(T)));
        if (used) std::memcpy(static_cast<void *>(larger), block, used * sizeof(T));
        heap_release(block);
        block = larger;
        room = n;
    }

  private:
    T *block = nullptr;
    std::size_t used = 0, room = 0;
};

} // namespace tolvek
