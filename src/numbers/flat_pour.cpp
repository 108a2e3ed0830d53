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

/* Digit i of a, counted from the lowest; of 0, which has no limbs, the one digit. */
static int32_t digit_of(const limb *a, size_t n, int32_t i) {
    return n ? digit_at(a, n, static_cast<size_t>(i) * digit_bits) : 0;
}

/* The new nodes stand in front, and are written as they are taken. */
chain_room::chain_room(const limb *a, size_t n, int32_t its_sign, const number *dst)
    : value(a), limbs(flat_length(a, n)), sign(its_sign), digits(digits_of(a, n)) {
    for (int32_t i = digits; i > maxx(dst->num_len, 0); i--) more.append(sign * digit_of(value, limbs, i - 1));
}

void chain_room::write(number *dst) {
    if (dst->num_len < 1) return more.give_to(dst);
    if (dst->num_len > digits) drop_first(dst, dst->num_len - digits);
    int32_t i = dst->num_len;
    for (numnode *node = dst->num_head; node; node = node->next) node->digit = sign * digit_of(value, limbs, --i);
    if (more.len == 0) return;
    more.last->next = dst->num_head;
    dst->num_head = more.top.next;
    dst->num_len = digits;
    more.last = &more.top;
}

void chain_from_limbs(const limb *a, size_t n, int32_t sign, number *dst) { chain_room(a, n, sign, dst).write(dst); }

} // namespace tolvek
