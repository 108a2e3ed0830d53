/* Sums and differences of chains.

   A chain is linked from the most significant digit down, so a carry cannot run in the natural direction. One
   routine, add_chains, serves all the forms: it walks both chains from the top, brings each pair's sum into the
   sign of the result and below the radix, and adds the carry to the digit above at once. Where that pushes the
   digit above out of its range, which is rare, the place is remembered, and repair_chain settles all such places
   in one more pass. */
#include "numbers/number_work.h"

#include <type_traits>

namespace tolvek {

/* What the sum goes into: nodes of a, overwritten, or a chain of new nodes. */
enum class form { in_place, new_chain };
template <form f> using digits_of_a = std::conditional_t<f == form::in_place, numnode, const numnode>;

static void set_to_zero(number *x) {
    if (x->num_len > 1) {
        numnode *before_tail = x->num_head;
        while (before_tail->next != x->num_tail) before_tail = before_tail->next;
        push_digits(x->num_head, before_tail);
        x->num_head = x->num_tail;
        x->num_len = 1;
    }
    set_one_digit(0, x);
}

/* In place only: the first `count` nodes of x, which end at `last`, have cancelled and go back. */
static void drop_leading(number *x, numnode *last, int32_t count) {
    numnode *first = x->num_head;
    x->num_head = last->next;
    x->num_len -= count;
    push_digits(first, last);
}

/* The two chains of a sum, at the pair of digits that is next. b counts times b_sign, which is 1 or -1. */
template <form f> struct operands {
    digits_of_a<f> *a;
    const numnode *b;
    int32_t len_a, len_b, b_sign;

    int32_t top_sum() const { return a->digit + b_sign * b->digit; }
    int32_t top_digit() const { /* of the longer one; of both where they are of one length */
        return len_a > len_b ? a->digit : len_a < len_b ? b_sign * b->digit : top_sum();
    }
};

/* Equal lengths: passes over the leading digits that cancel. False if nothing is left. In place they leave dst. */
template <form f> static inline bool pass_cancelled(operands<f> &o, number *dst) {
    int32_t cancelled = 0;
    digits_of_a<f> *last_cancelled = nullptr;
    while (o.top_sum() == 0) {
        if (++cancelled == o.len_a) return false;
        last_cancelled = o.a;
        o.a = o.a->next;
        o.b = o.b->next;
    }
    o.len_a -= cancelled;
    o.len_b -= cancelled;
    if constexpr (f == form::in_place)
        if (cancelled) drop_leading(dst, last_cancelled, cancelled);
    return true;
}

/* The leading digits that only the longer chain has begin the sum. In place, a's nodes follow from here on, and
   nothing is refused any more: one digit is there for a carry out of the head. */
template <form f> static inline void take_surplus(operands<f> &o, growing_chain &sum) {
    for (; o.len_b > o.len_a; o.len_b--, o.b = o.b->next) sum.append(o.b_sign * o.b->digit);
    if constexpr (f == form::in_place) {
        if (!numhead) push_digit(more_digits());
        sum.len += o.len_a;
        if (o.len_a > o.len_b) sum.top.next = o.a;
        for (; o.len_a > o.len_b; o.len_a--, o.a = o.a->next) sum.last = o.a;
        sum.last->next = o.a;
    } else {
        for (; o.len_a > o.len_b; o.len_a--, o.a = o.a->next) sum.append(o.a->digit);
    }
}

/* The pairs of digits, brought into the sign of the sum and below the radix. The lowest node that a carry has put out
   of range comes back, or null. */
template <form f, class radix_type>
static inline numnode *merge_pairs(operands<f> &o, growing_chain &sum, int32_t sign, radix_type radix) {
    const int32_t a_factor = sign, b_factor = sign * o.b_sign;
    int32_t above = sum.last->digit * sign; /* magnitude of the digit above, which sum.last is to hold */
    numnode *last_outside = nullptr;
    for (; o.len_a > 0; o.len_a--) {
        int32_t u = a_factor * o.a->digit + b_factor * o.b->digit;
        above += radix.carry_of(u);
        if (radix.outside(above)) [[unlikely]]
            last_outside = sum.last;
        sum.last->digit = sign * above;
        above = u;
        if constexpr (f == form::in_place)
            sum.last = o.a;
        else
            sum.append(0);
        o.a = o.a->next;
        o.b = o.b->next;
    }
    sum.last->digit = sign * above;
    return last_outside;
}

/* dst := a + b_sign * b. In place, a is dst's own chain. b may be the same chain as a. */
template <form f, class radix_type>
static void add_chains(digits_of_a<f> *a, int32_t len_a, const numnode *b, int32_t len_b, int32_t b_sign, number *dst,
                       radix_type radix) {
    constexpr bool in_place = f == form::in_place;
    operands<f> o{a, b, len_a, len_b, b_sign};
    if (len_a == 1 && len_b == 1) {
        const int32_t sum = o.top_sum();
        if (sum < radix.value && sum > -radix.value) {
            set_one_digit(sum, dst);
            return;
        }
    }
    /* Where both heads have one sign only carries can occur, else only borrows. */
    const int32_t step = (a->digit ^ (b_sign * b->digit)) < 0 ? -1 : 1;
    if (len_a == len_b && !pass_cancelled(o, dst)) {
        if (in_place)
            set_to_zero(dst);
        else
            set_one_digit(0, dst);
        return;
    }
    const int32_t sign = o.top_digit() < 0 ? -1 : 1;

    growing_chain sum; /* new nodes; in place, those of b's surplus and then a's own */
    take_surplus(o, sum);
    numnode *last_outside = merge_pairs(o, sum, sign, radix);
    if (last_outside) repair_chain(&sum.top, last_outside, sign, step, radix);
    if (in_place) dst->num_len = 0; /* its nodes are the sum's */
    sum.trim();
    sum.give_to(dst);
}

template <class radix_type> static void in_place(number *a, const number *b, int32_t b_sign, radix_type radix) {
    add_chains<form::in_place>(a->num_head, a->num_len, b->num_head, b->num_len, b_sign, a, radix);
}

void add_in_place(number *a, const number *b, int32_t b_sign, binary_radix radix) { in_place(a, b, b_sign, radix); }
void add_in_place(number *a, const number *b, int32_t b_sign, decimal_form radix) { in_place(a, b, b_sign, radix); }

void add_new(const numnode *a, int len_a, const numnode *b, int len_b, number *dst, binary_radix radix) {
    add_chains<form::new_chain>(a, len_a, b, len_b, 1, dst, radix);
}
void add_new(const numnode *a, int len_a, const numnode *b, int len_b, number *dst, decimal_form radix) {
    add_chains<form::new_chain>(a, len_a, b, len_b, 1, dst, radix);
}

void fastsum(number *a, const number *b) { in_place(a, b, 1, binary_radix{}); }
void fastdiff(number *a, const number *b) { in_place(a, b, -1, binary_radix{}); }

void medsum(int len_a, int len_b, const numnode *chain_a, const numnode *chain_b, number *dst) {
    add_chains<form::new_chain>(chain_a, len_a, chain_b, len_b, 1, dst, binary_radix{});
}

void meddiff(int len_a, int len_b, const numnode *chain_a, const numnode *chain_b, number *dst) {
    add_chains<form::new_chain>(chain_a, len_a, chain_b, len_b, -1, dst, binary_radix{});
}

static void add_of_radix(const numnode *a, int len_a, const number *b, int32_t b_sign, number *dst, int32_t radix) {
    if (radix == digit_radix)
        add_chains<form::new_chain>(a, len_a, b->num_head, b->num_len, b_sign, dst, binary_radix{});
    else
        add_chains<form::new_chain>(a, len_a, b->num_head, b->num_len, b_sign, dst, decimal_form{});
}

void summ(const number *a, const number *b, number *dst, int32_t radix) {
    add_of_radix(a->num_head, a->num_len, b, 1, dst, radix);
}

void diff(const numnode *chain_a, int len_a, const number *b, number *dst, int32_t radix) {
    add_of_radix(chain_a, len_a, b, -1, dst, radix);
}

/* ---- in the ring in force ---- */

/* a + b or a - b of residues or 32-bit integers. Sums of residues stay below 2^32. */
static int32_t small_sum(int32_t a, int32_t b, bool subtract) {
    uint32_t ua = static_cast<uint32_t>(a), ub = static_cast<uint32_t>(b), m = static_cast<uint32_t>(modulus);
    if (!modularmode) return static_cast<int32_t>(subtract ? ua - ub : ua + ub);
    if (finf) return a ^ b;
    if (subtract) return static_cast<int32_t>(ua >= ub ? ua - ub : ua + (m - ub));
    return static_cast<int32_t>(ua + ub >= m ? ua + ub - m : ua + ub);
}

static bool same_chain(const number *a, const number *b) { return b->num_len > 0 && a->num_head == b->num_head; }

void sub(const number *a, const number *b, number *dst) {
    if (flotemode) {
        dst->flote_val = a->flote_val - b->flote_val;
    } else if (lintmode || modularmode) {
        dst->lint_val = small_sum(a->lint_val, b->lint_val, true);
    } else if (same_chain(a, dst)) {
        fastdiff(dst, b);
    } else {
        meddiff(a->num_len, b->num_len, a->num_head, b->num_head, dst);
    }
}

void num_add(const number *a, const number *b, number *dst) {
    if (flotemode) {
        dst->flote_val = a->flote_val + b->flote_val;
    } else if (lintmode || modularmode) {
        dst->lint_val = small_sum(a->lint_val, b->lint_val, false);
    } else if (same_chain(a, dst)) {
        fastsum(dst, b);
    } else if (same_chain(b, dst)) {
        fastsum(dst, a);
    } else {
        medsum(a->num_len, b->num_len, a->num_head, b->num_head, dst);
    }
}

} // namespace tolvek
