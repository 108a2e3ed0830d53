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

/* The digits of a value; 0 has one. */
static int32_t digits_of(const limb *a, size_t n) {
    n = flat_length(a, n);
    return n ? static_cast<int32_t>((flat_bits(a, n) + digit_bits - 1) / digit_bits) : 1;
}

/* The first `count` nodes of x, which has more, go back. */
static void drop_first(number *x, int32_t count) {
    numnode *first = x->num_head, *last = first;
    for (int32_t i = 1; i < count; i++) last = last->next;
    x->num_head = last->next;
    x->num_len -= count;
    push_digits(first, last);
}

chain_room::chain_room(const limb *a, size_t n, const number *dst) : digits(digits_of(a, n)) {
    for (int32_t i = maxx(dst->num_len, 0); i < digits; i++) more.append(0);
}

void chain_room::write(const limb *a, size_t n, int32_t sign, number *dst) {
    if (dst->num_len < 1) {
        more.give_to(dst);
    } else if (dst->num_len > digits) {
        drop_first(dst, dst->num_len - digits);
    } else if (more.len) {
        more.last->next = dst->num_head;
        dst->num_head = more.top.next;
        dst->num_len = digits;
        more.last = &more.top;
    }
    n = flat_length(a, n);
    numnode *node = dst->num_head;
    if (n == 0)
        node->digit = 0;
    else
        for (size_t bit = static_cast<size_t>(digits) * digit_bits; node; node = node->next)
            node->digit = sign * digit_at(a, n, bit -= digit_bits);
}

void chain_from_limbs(const limb *a, size_t n, int32_t sign, number *dst) {
    chain_room(a, n, dst).write(a, n, sign, dst);
}

} // namespace tolvek
