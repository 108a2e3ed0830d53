#include "numbers/flat_pour.h"

namespace tolvek {

size_t pour_limbs(limb *dst, const numnode *chain, int len) {
    if (len == 1) {
        dst[0] = static_cast<limb>(chain->digit < 0 ? -chain->digit : chain->digit);
        return dst[0] != 0;
    }
    const size_t n = limbs_of_digits(len);
    const int32_t sign = chain->digit < 0 ? -1 : 1;
    size_t at = n;
    int open = static_cast<int>(static_cast<size_t>(len) * digit_bits - (n - 1) * limb_bits); /* bits still to come */
    limb now = 0;
    for (; len > 0; len--, chain = chain->next) {
        const limb digit = static_cast<limb>(sign * chain->digit);
        if (open > digit_bits) {
            now = now << digit_bits | digit;
            open -= digit_bits;
        } else {
            const int rest = digit_bits - open; /* bits of the digit that belong to the next limb */
            dst[--at] = now << open | digit >> rest;
            now = digit & ((limb{1} << rest) - 1);
            open = limb_bits - rest;
        }
    }
    return flat_length(dst, n);
}

/* The digit whose lowest bit is bit `bit` of a. */
static int32_t digit_at(const limb *a, size_t n, size_t bit) {
    const size_t at = bit / limb_bits;
    const int shift = static_cast<int>(bit % limb_bits);
    limb v = a[at] >> shift;
    if (shift > limb_bits - digit_bits && at + 1 < n) v |= a[at + 1] << (limb_bits - shift);
    return static_cast<int32_t>(v & digit_mask);
}

void chain_from_limbs(const limb *a, size_t n, int32_t sign, number *dst) {
    n = flat_length(a, n);
    if (n == 0) {
        set_one_digit(0, dst);
        return;
    }
    growing_chain chain;
    for (size_t digit = (flat_bits(a, n) + digit_bits - 1) / digit_bits; digit-- > 0;)
        chain.append(sign * digit_at(a, n, digit * digit_bits));
    chain.give_to(dst);
}

} // namespace tolvek
