/* Chains poured into flat arrays of digits, least significant first, and back. For operands of moderate length, whose
   work arrays fit the stack; longer arrays come from the heap. */
#pragma once

#include "numbers/number_work.h"
#include "top/heap.h"

#include <utility>

namespace tolvek {

/* An array of a length fixed at its making, on the stack up to `small` elements. Undefined at first. */
template <class T, std::size_t small> struct flat_array {
    std::size_t size;
    T *data;

    explicit flat_array(std::size_t n) : size(n), data(nearby) {
        if (n > small) {
            from_heap.resize(n);
            data = from_heap.data();
        }
    }
    flat_array(const flat_array &) = delete;
    flat_array &operator=(const flat_array &) = delete;
    T &operator[](std::size_t i) { return data[i]; }
    const T &operator[](std::size_t i) const { return data[i]; }

  private:
    T nearby[small];
    buffer<T> from_heap;
};

/* The magnitudes of the first len digits of a chain, and room for `extra` zeros above them. */
struct poured_digits : flat_array<uint32_t, 72> {
    static constexpr std::size_t usual_length = 72;

    poured_digits(const numnode *chain, int len, int extra = 0)
        : flat_array(static_cast<std::size_t>(len) + static_cast<std::size_t>(extra)) {
        for (int i = len + extra; i > len;) data[--i] = 0;
        for (int i = len; i > 0; chain = chain->next)
            data[--i] = static_cast<uint32_t>(chain->digit < 0 ? -chain->digit : chain->digit);
    }
};

/* Brings each column below the radix; the top one takes what is left. */
template <class count> inline void run_carries(uint64_t *column, count n, uint64_t radix) {
    uint64_t carry = 0;
    for (count i = 0; i + 1 < n; i++) {
        uint64_t v = column[i] + carry;
        carry = v / radix;
        column[i] = v - carry * radix;
    }
    column[n - 1] += carry;
}

/* dst := the chain of n flat digits with the given sign; leading zeros are dropped. */
template <class T> inline void chain_from_flat(const T *digits, std::size_t n, int32_t sign, number *dst) {
    while (n > 1 && digits[n - 1] == 0) n--;
    growing_chain chain;
    while (n > 0) chain.append(sign * static_cast<int32_t>(digits[--n]));
    chain.give_to(dst);
}

} // namespace tolvek
