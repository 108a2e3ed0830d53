/* What the number routines share among themselves: chains under construction, and the repair of digits that a
   carry has pushed out of range. */
#pragma once

#include "numbers/number.h"

namespace tolvek {

/* The radices as types: the binary one splits a digit by shift and mask. */
struct binary_radix {
    static constexpr int32_t value = digit_radix;
    /* Brings u, which is at most one radix outside, into 0 .. value - 1; the carry -1, 0 or 1. */
    static int32_t carry_of(int32_t &u) {
        int32_t carry = u >> digit_bits;
        u &= digit_mask;
        return carry;
    }
    static bool outside(int32_t u) { return (u >> digit_bits) != 0; }
    static int32_t high_part(uint64_t product) { return static_cast<int32_t>(product >> digit_bits); }
    static int32_t low_part(uint64_t product, int32_t) { return static_cast<int32_t>(product & digit_mask); }
};

struct decimal_form {
    static constexpr int32_t value = decimal_radix;
    static int32_t carry_of(int32_t &u) {
        int32_t carry = (u >= value) - (u < 0);
        u -= carry * value;
        return carry;
    }
    static bool outside(int32_t u) { return u < 0 || u >= value; }
    static int32_t high_part(uint64_t product) { return static_cast<int32_t>(product / value); }
    static int32_t low_part(uint64_t product, int32_t high) {
        return static_cast<int32_t>(product - static_cast<uint64_t>(high) * value);
    }
};

/* A chain under construction, from the head down. Its nodes go back unless a destination takes them. `top` is the
   place above the head: a carry out of the head digit is collected there. */
struct growing_chain {
    numnode top{0, nullptr};
    numnode *last = &top;
    int32_t len = 0;

    growing_chain() = default;
    growing_chain(const growing_chain &) = delete;
    growing_chain &operator=(const growing_chain &) = delete;
    ~growing_chain() {
        if (last != &top) push_digits(top.next, last);
    }

    void append(int32_t digit) {
        numnode *d = newdigit();
        d->digit = digit;
        last->next = d;
        last = d;
        len++;
    }
    void prepend(int32_t digit) {
        numnode *d = newdigit();
        d->digit = digit;
        d->next = top.next;
        if (last == &top) last = d;
        top.next = d;
        len++;
    }
    /* Makes a carry that `top` has collected the new head, or drops leading zeros. */
    void trim() {
        if (top.digit) {
            last->next = nullptr;
            prepend(top.digit);
            top.digit = 0;
            return;
        }
        while (len > 1 && top.next->digit == 0) {
            numnode *dropped = top.next;
            top.next = dropped->next;
            push_digit(dropped);
            len--;
        }
    }
    /* The chain, which is not empty, becomes dst's; the old one of dst goes back. */
    void give_to(number *dst) {
        last->next = nullptr;
        if (dst->num_len > 0) push_digits(dst->num_head, dst->num_tail);
        dst->num_head = top.next;
        dst->num_tail = last;
        dst->num_len = len;
        last = &top;
    }
};

/* The chain of x goes back, if there is one, whatever the ring. */
inline void drop_chain(number *x) {
    if (x->num_len > 0) push_digits(x->num_head, x->num_tail);
    x->num_len = 0;
}

/* x := the one digit d, |d| below 2^28. */
inline void set_one_digit(int32_t d, number *x) {
    if (x->num_len == 1) {
        x->num_head->digit = d;
        return;
    }
    numnode *node = newdigit();
    node->digit = d;
    node->next = nullptr;
    drop_chain(x);
    x->num_head = x->num_tail = node;
    x->num_len = 1;
}

void set_chain(int64_t v, number *x); /* x := v as a chain, whatever the ring */

/* x := sign * v, v of at most 112 bits. */
void set_from_128_bits(unsigned __int128 v, int32_t sign, number *x);

/* The magnitude of a chain of one or two digits. */
inline uint64_t short_value(const numnode *chain, int len) {
    int64_t v = chain->digit;
    if (len == 2) v = v * digit_radix + chain->next->digit;
    return v < 0 ? -static_cast<uint64_t>(v) : static_cast<uint64_t>(v);
}

/* The chain of src becomes dst's, whose old one goes back; the other forms of dst stay. */
inline void take_chain(number *src, number *dst) {
    drop_chain(dst);
    dst->num_head = src->num_head;
    dst->num_tail = src->num_tail;
    dst->num_len = src->num_len;
    src->num_len = 0;
}

/* a := a + b or a - b (b_sign 1 or -1) in place, for the two radices. */
void add_in_place(number *a, const number *b, int32_t b_sign, binary_radix radix);
void add_in_place(number *a, const number *b, int32_t b_sign, decimal_form radix);
/* dst := a + b of bare chains. */
void add_new(const numnode *a, int len_a, const numnode *b, int len_b, number *dst, binary_radix radix);
void add_new(const numnode *a, int len_a, const numnode *b, int len_b, number *dst, decimal_form radix);

/* Brings the digits between top and last into range when each is at most one step outside: `step` is 1 where
   carries ran, -1 where borrows did, in terms of the magnitude; `sign` is that of the chain. One pass from the top:
   `taker` is the lowest node so far that can take another step, and every digit below it is already at its limit.
   A carry out of the head ends in top. */
template <class radix_type>
void repair_chain(numnode *top, const numnode *last, int32_t sign, int32_t step, radix_type radix) {
    const int32_t beyond = step > 0 ? radix.value : -1;
    const int32_t limit = step > 0 ? radix.value - 1 : 0;
    const int32_t passed = (radix.value - 1 - limit) * sign; /* what a digit at its limit becomes */
    numnode *taker = top;
    numnode *d = top;
    while (d != last) {
        d = d->next;
        int32_t u = d->digit * sign;
        if (u == beyond) {
            taker->digit += step * sign;
            for (numnode *e = taker; e != d;) {
                e = e->next;
                e->digit = passed;
            }
            taker = d;
        } else if (u != limit) {
            taker = d;
        }
    }
}

} // namespace tolvek
