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

/* dst := a + b_sign * b, b_sign being 1 or -1. In place, a is dst's own chain. b may be the same chain as a. */
template <form f, class radix_type>
static void add_chains(digits_of_a<f> *a, int32_t len_a, const numnode *b, int32_t len_b, int32_t b_sign, number *dst,
                       radix_type radix) {
    constexpr bool in_place = f == form::in_place;
    if (len_a == 1 && len_b == 1) {
        int32_t sum = a->digit + b_sign * b->digit;
        if (sum < radix.value && sum > -radix.value) {
            set_one_digit(sum, dst);
            return;
        }
    }
    /* Where both heads have one sign only carries can occur, else only borrows. */
    const int32_t step = (a->digit ^ (b_sign * b->digit)) < 0 ? -1 : 1;

    if (len_a == len_b) {
        int32_t cancelled = 0;
        digits_of_a<f> *last_cancelled = nullptr;
        while (a->digit + b_sign * b->digit == 0) {
            if (++cancelled == len_a) {
                if (in_place)
                    set_to_zero(dst);
                else
                    set_one_digit(0, dst);
                return;
            }
            last_cancelled = a;
            a = a->next;
            b = b->next;
        }
        len_a -= cancelled;
        len_b -= cancelled;
        if constexpr (in_place)
            if (cancelled) drop_leading(dst, last_cancelled, cancelled);
    }
    const int32_t top_digit = len_a > len_b   ? a->digit
                              : len_a < len_b ? b_sign * b->digit
                                              : a->digit + b_sign * b->digit;
    const int32_t sign = top_digit < 0 ? -1 : 1;

    growing_chain sum; /* the new chain; in place, the surplus of b first and then a's own nodes */
    int32_t above = 0; /* magnitude of the digit above, which sum.last is to hold */
    for (; len_b > len_a; len_b--, b = b->next) sum.append(b_sign * b->digit);
    if constexpr (in_place) {
        if (!numhead) push_digit(more_digits()); /* for a carry out of the head: no refusal half-way */
        sum.len += len_a;
        if (len_a > len_b) sum.top.next = a;
        for (; len_a > len_b; len_a--, a = a->next) sum.last = a;
        sum.last->next = a;
    } else {
        for (; len_a > len_b; len_a--, a = a->next) sum.append(a->digit);
    }
    if (sum.last != &sum.top) above = sum.last->digit * sign;

    const int32_t a_factor = sign, b_factor = sign * b_sign;
    numnode *last_outside = nullptr;
    for (; len_a > 0; len_a--) {
        int32_t u = a_factor * a->digit + b_factor * b->digit;
        above += radix.carry_of(u);
        if (radix.outside(above)) [[unlikely]]
            last_outside = sum.last;
        sum.last->digit = sign * above;
        above = u;
        b = b->next;
        if constexpr (in_place) {
            sum.last = a;
            a = a->next;
        } else {
            sum.append(0);
            a = a->next;
        }
    }
    sum.last->digit = sign * above;

    if (last_outside) repair_chain(&sum.top, last_outside, sign, step, radix);
    if constexpr (in_place) dst->num_len = 0; /* its nodes are the sum's */
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
