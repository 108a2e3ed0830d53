/* Products of chains, in radix 2^28 and in radix 10^8: by one digit, schoolbook, and in halves by Karatsuba's method
   (A. Karatsuba and Yu. Ofman, 1962). One template serves both radices. */
#include "numbers/int_mult.h"

#include "numbers/flat_chains.h"
#include "numbers/handles.h"
#include "numbers/number_work.h"
#include "numbers/poured.h"
#include "top/interrupts.h"

namespace tolvek {

int multcut = 16;
constexpr int base_10_multcut = 10; /* the same for decimal form */

/* Digits of a product from which one of its steps takes long enough to pass a safe point. */
constexpr int safe_point_length = 1000;

/* A product by one digit, from the head down. The product of a digit has a high and a low part; the low part meets the
   high part of the next one. A carry goes to the digit above at once, and what that pushes out of range is repaired
   at the end, as in sums; nothing leaves the head, which is a high part. */
template <class radix_type> struct digit_steps {
    int32_t sign;                    /* of the product */
    int64_t factor;                  /* brings the sign of a digit to that of the magnitude */
    numnode *last_outside = nullptr; /* the lowest digit to be repaired */
    int32_t above = 0, low = 0;

    digit_steps(int32_t head, int32_t digit) : sign((head ^ digit) < 0 ? -1 : 1), factor(sign * int64_t{digit}) {}

    /* Takes the next digit; the one above it is complete, but for repairs, and goes to `slot`. */
    void take(int32_t digit, numnode *slot) {
        const uint64_t p = static_cast<uint64_t>(digit * factor);
        const int32_t high = radix_type::high_part(p);
        int32_t u = low + high;
        low = radix_type::low_part(p, high);
        above += radix_type::carry_of(u);
        if (radix_type::outside(above)) [[unlikely]]
            last_outside = slot;
        slot->digit = sign * above;
        above = u;
    }
    /* The last two digits; then product becomes dst's. */
    void finish(numnode *slot, numnode *tail, growing_chain &product, number *dst, numnode **penultimate) {
        slot->digit = sign * above;
        tail->digit = sign * low;
        if (last_outside) repair_chain(&product.top, last_outside, sign, 1, radix_type{});
        product.trim();
        if (product.len > 1) *penultimate = slot;
        product.give_to(dst);
    }
};

/* x := x * digit. A new node goes in front, and each node takes the product's digit for the place below that of the
   digit it held. */
template <class radix_type> static void multiply_in_place(number *x, int32_t digit, numnode **penultimate) {
    digit_steps<radix_type> steps(x->num_head->digit, digit);
    growing_chain product;
    numnode *slot = &product.top, *next_slot = newdigit();
    next_slot->next = x->num_head;
    product.top.next = next_slot;
    product.last = x->num_tail;
    product.len = x->num_len + 1;
    x->num_len = 0;
    for (numnode *d = next_slot->next; d; d = d->next) {
        steps.take(d->digit, slot);
        slot = next_slot;
        next_slot = d;
    }
    steps.finish(slot, next_slot, product, x, penultimate);
}

/* dst := chain * digit. */
template <class radix_type>
static void digit_product(const numnode *a, int len, int32_t digit, number *dst, numnode **penultimate, radix_type) {
    *penultimate = nullptr;
    if (digit == 0 || a->digit == 0) {
        set_one_digit(0, dst);
        return;
    }
    if (dst->num_head == a && dst->num_len == len) {
        multiply_in_place<radix_type>(dst, digit, penultimate);
        return;
    }
    digit_steps<radix_type> steps(a->digit, digit);
    growing_chain product;
    numnode *slot = &product.top;
    for (; len > 0; len--, a = a->next) {
        steps.take(a->digit, slot);
        product.append(0);
        slot = product.last;
    }
    product.append(0);
    steps.finish(slot, product.last, product, dst, penultimate);
}

/* dst := a * b for at most two digits each. */
static void short_product(const numnode *a, int len_a, const numnode *b, int len_b, number *dst) {
    const unsigned __int128 product = static_cast<unsigned __int128>(short_value(a, len_a)) * short_value(b, len_b);
    set_from_128_bits(product, (a->digit ^ b->digit) < 0 ? -1 : 1, dst);
}

/* dst := a * b by the schoolbook method on flat digits. Column sums of 64 bits take many products before their
   carries have to run. */
template <class radix_type>
static void schoolbook(const numnode *a, int len_a, const numnode *b, int len_b, number *dst, radix_type radix) {
    if (len_a < len_b) {
        std::swap(a, b);
        std::swap(len_a, len_b);
    }
    if (len_b == 1) {
        numnode *penultimate;
        digit_product(a, len_a, b->digit, dst, &penultimate, radix);
        return;
    }
    constexpr uint64_t largest = uint64_t{radix_type::value - 1} * (radix_type::value - 1);
    constexpr int rows_between_carries = static_cast<int>((UINT64_MAX - 2 * uint64_t{radix_type::value}) / largest) - 1;

    const int32_t sign = (a->digit ^ b->digit) < 0 ? -1 : 1;
    const poured_digits x(a, len_a), y(b, len_b);
    flat_array<uint64_t, 2 * poured_digits::usual_length> column(static_cast<std::size_t>(len_a) + len_b);
    for (std::size_t i = 0; i < column.size; i++) column[i] = 0;
    for (int j = 0, rows = 0; j < len_b; j++) {
        const uint64_t factor = y[j];
        if (!factor) continue;
        uint64_t *sum = column.data + j;
        for (int i = 0; i < len_a; i++) sum[i] += factor * x[i];
        if (++rows == rows_between_carries) {
            run_carries(column.data, column.size, radix_type::value);
            rows = 0;
        }
        if (len_a >= safe_point_length) safe_point();
    }
    run_carries(column.data, column.size, radix_type::value);
    chain_from_flat(column.data, column.size, sign, dst);
}

/* A part of a chain, without leading zeros. */
struct chain_part {
    const numnode *head;
    int len;
};

static chain_part low_part(const numnode *chain, int len, int kept) {
    for (; len > kept; len--) chain = chain->next;
    for (; len > 1 && chain->digit == 0; len--) chain = chain->next;
    return {chain, len};
}

/* dst := a * b in three products of half the length. The operands are only read, by head and length. */
template <class radix_type>
static void product_of(const numnode *a, int len_a, const numnode *b, int len_b, number *dst, int cut,
                       radix_type radix) {
    if (len_a <= cut || len_b <= cut || len_a >= 2 * len_b || len_b >= 2 * len_a) {
        schoolbook(a, len_a, b, len_b, dst, radix);
        return;
    }
    if (len_a >= safe_point_length) safe_point();
    const int half = maxx(len_a, len_b) / 2;
    const chain_part high_a{a, len_a - half}, high_b{b, len_b - half};
    const chain_part low_a = low_part(a, len_a, half), low_b = low_part(b, len_b, half);

    number_handle high, middle, low;
    product_of(high_a.head, high_a.len, high_b.head, high_b.len, &high, cut, radix);
    product_of(low_a.head, low_a.len, low_b.head, low_b.len, &low, cut, radix);
    {
        number_handle sum_a, sum_b;
        add_new(high_a.head, high_a.len, low_a.head, low_a.len, &sum_a, radix);
        add_new(high_b.head, high_b.len, low_b.head, low_b.len, &sum_b, radix);
        product_of(sum_a.num_head, sum_a.num_len, sum_b.num_head, sum_b.num_len, &middle, cut, radix);
    }
    add_in_place(&middle, &high, -1, radix);
    add_in_place(&middle, &low, -1, radix);

    fillout(&high, 2 * half);
    fillout(&middle, half);
    add_in_place(&low, &middle, 1, radix);
    add_in_place(&low, &high, 1, radix);
    take_chain(&low, dst);
}

/* ---- by their names ---- */

void simp_mult(const number *a, number *dst, int32_t digit, numnode **penultimate) {
    digit_product(a->num_head, a->num_len, digit, dst, penultimate, binary_radix{});
}

void multiply(const number *a, const number *b, number *dst) {
    schoolbook(a->num_head, a->num_len, b->num_head, b->num_len, dst, binary_radix{});
}

void fast_mult(const number *a, const number *b, number *dst) {
    if (a->num_len == 1 && b->num_len == 1)
        special_set_2(a->num_head->digit, b->num_head->digit, dst);
    else if (a->num_len <= 2 && b->num_len <= 2)
        short_product(a->num_head, a->num_len, b->num_head, b->num_len, dst);
    else if (minn(a->num_len, b->num_len) >= flat_mult_cut)
        flat_chain_mult(a->num_head, a->num_len, b->num_head, b->num_len, dst);
    else
        product_of(a->num_head, a->num_len, b->num_head, b->num_len, dst, maxx(multcut, 1), binary_radix{});
}

void simp_base_10_mult(const number *a, number *dst, int32_t digit, numnode **penultimate) {
    digit_product(a->num_head, a->num_len, digit, dst, penultimate, decimal_form{});
}

void base_10_multiply(const number *a, const number *b, number *dst) {
    schoolbook(a->num_head, a->num_len, b->num_head, b->num_len, dst, decimal_form{});
}

void base_10_fast_mult(const number *a, const number *b, number *dst) {
    product_of(a->num_head, a->num_len, b->num_head, b->num_len, dst, base_10_multcut, decimal_form{});
}

/* ---- products of 32-bit integers ---- */

static int64_t product(int32_t a, int32_t b) { return int64_t{a} * b; }

void special_set_2(int32_t a, int32_t b, number *x) { set_chain(product(a, b), x); }

int is_product_of(const number *x, int32_t a, int32_t b) {
    number_handle p;
    special_set_2(a, b, &p);
    return spec_equal(x, &p);
}

int oversize(int32_t a, int32_t b) {
    constexpr int64_t most_cells = 1000000;
    return product(a, b) > most_cells || product(a, b) <= -digit_radix;
}

int sparse_oversize(int32_t a, int32_t b) {
    constexpr int64_t least_too_large = int64_t{1} << 31;
    return product(a, b) >= least_too_large || product(a, b) <= -(int64_t{1} << 2 * digit_bits);
}

} // namespace tolvek
