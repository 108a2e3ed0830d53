/* Shifts of non-negative chains, in place. */
#include "numbers/number_work.h"

namespace tolvek {

/* Links a chain of zeros behind the tail of x. */
static void splice_behind(number *x, growing_chain &zeros) {
    if (!zeros.len) return;
    x->num_tail->next = zeros.top.next;
    x->num_tail = zeros.last;
    x->num_tail->next = nullptr;
    x->num_len += zeros.len;
    zeros.last = &zeros.top; /* taken */
}

static void append_zeros(number *x, int count) {
    growing_chain zeros;
    for (int i = 0; i < count; i++) zeros.append(0);
    splice_behind(x, zeros);
}

void fillout(number *x, int k) {
    if (x->num_head->digit != 0) append_zeros(x, k);
}

/* Drops the last `count` digits; 0 when none is left. */
static void drop_digits(number *x, int count) {
    if (count <= 0) return;
    if (count >= x->num_len) {
        set_one_digit(0, x);
        return;
    }
    numnode *tail = x->num_head;
    for (int i = x->num_len - count; i > 1; i--) tail = tail->next;
    push_digits(tail->next, x->num_tail);
    tail->next = nullptr;
    x->num_tail = tail;
    x->num_len -= count;
}

static void drop_zero_head(number *x) {
    if (x->num_head->digit != 0 || x->num_len < 2) return;
    numnode *head = x->num_head;
    x->num_head = head->next;
    x->num_len--;
    push_digit(head);
}

/* Shifts by n bits, 0 < n < 28, from the head down; the bits that leave a digit enter the next one at its top. */
static inline void shift_digits_right(number *x, int n) {
    int32_t entering = 0;
    for (numnode *d = x->num_head; d; d = d->next) {
        int32_t v = d->digit;
        d->digit = (v >> n) | entering;
        entering = (v & ones[n]) << (digit_bits - n);
    }
    drop_zero_head(x);
}

void shift_right_1(number *x) { shift_digits_right(x, 1); }
void shift_right_2(number *x) { shift_digits_right(x, 2); }
void gen_shift_right(number *x, int n) { shift_digits_right(x, n); }

void shift_right(number *x, int n) {
    drop_digits(x, n / digit_bits);
    if (n % digit_bits) shift_digits_right(x, n % digit_bits);
}

void shift_left(number *x, int n) {
    if (x->num_head->digit == 0) return;
    const int bits = n % digit_bits;
    growing_chain zeros;
    for (int i = n / digit_bits; i > 0; i--) zeros.append(0);
    if (bits) {
        int32_t leaving = x->num_head->digit >> (digit_bits - bits);
        numnode *new_head = leaving ? newdigit() : nullptr;
        for (numnode *d = x->num_head; d; d = d->next) {
            int32_t below = d->next ? d->next->digit : 0;
            d->digit = ((d->digit << bits) & digit_mask) | (below >> (digit_bits - bits));
        }
        if (new_head) {
            *new_head = {leaving, x->num_head};
            x->num_head = new_head;
            x->num_len++;
        }
    }
    splice_behind(x, zeros);
}

} // namespace tolvek
