/* Sums of products of residues, reduced once at their end. */
#pragma once

#include <cstdint>

namespace tolvek {

/* Modulo n from 2 to 2^31. A sum is kept below 2^63 by taking away a multiple of n. */
struct residue_sum {
    uint64_t n;
    uint64_t inverse; /* of n, times 2^64, rounded down */
    uint64_t excess;  /* the greatest multiple of n up to 2^63 */

    explicit residue_sum(uint32_t m) : n(m), inverse(~uint64_t{0} / m), excess((uint64_t{1} << 63) / m * m) {}

    /* The sum stays below excess: before it is cut it is below excess + 2^62 < 2^64. */
    void add(uint64_t &sum, uint64_t x, uint64_t y) const {
        const uint64_t s = sum + x * y;
        sum = s >= excess ? s - excess : s;
    }
    /* v mod n for every v: 2^64 - n * inverse <= n, so the quotient is too low by less than v / 2^64 + 1. */
    uint64_t settle(uint64_t v) const {
        const uint64_t q = static_cast<uint64_t>(static_cast<unsigned __int128>(v) * inverse >> 64);
        const uint64_t r = v - q * n;
        return r >= n ? r - n : r;
    }
};

} // namespace tolvek
