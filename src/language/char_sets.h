/* Sets of characters: 256 bits in 16 words, indexed by the character as an unsigned value. */
#pragma once

#include <cstdint>

namespace tolvek {

struct PSet {
    uint16_t words[16];
};

constexpr void PSet_Init(PSet &set) { set = {}; }

constexpr void PSet_Set(PSet &set, unsigned char c) { set.words[c / 16] |= static_cast<uint16_t>(1u << c % 16); }

/* A code outside 0 to 255 is in no set: neither the end of the input nor an internal code is a character. */
constexpr bool PSet_Test(const PSet &set, int c) { return c >= 0 && c <= 255 && set.words[c / 16] >> c % 16 & 1; }

/* The set of the characters of a text. */
constexpr PSet PSet_Of(const char *members) {
    PSet set{};
    PSet_Init(set);
    for (; *members; members++) PSet_Set(set, static_cast<unsigned char>(*members));
    return set;
}

/* Relations of two characters are codes above 255, so that no typed character is taken for one; cond_set and
   poly_cond_set hold the characters that a relation begins with. */
inline constexpr PSet throwaways = PSet_Of(" \t\n\r");  /* skipped between tokens */
inline constexpr PSet cond_set = PSet_Of("<=>");        /* comparisons */
inline constexpr PSet short_set = PSet_Of("=>");        /* what completes a relation */
inline constexpr PSet poly_cond_set = PSet_Of("=");     /* comparisons of polynomials */
inline constexpr PSet iterm_set = PSet_Of("*/\\|");     /* what continues a term on the fast path */
inline constexpr PSet term_set = PSet_Of("*/\\|(");     /* what continues a term */
inline constexpr PSet arr_term_ops = PSet_Of("*/|\\_"); /* what continues a term of arrays */
inline constexpr PSet continset = PSet_Of("\"`");       /* continuation marks */

} // namespace tolvek
