/* Conversion of chains between radix 2^28 and radix 10^8. */
#include "numbers/number_decimal.h"

#include "numbers/flat_chains.h"
#include "numbers/handles.h"
#include "numbers/int_mult.h"
#include "numbers/number_work.h"
#include "numbers/poured.h"
#include "top/interrupts.h"

namespace tolvek {

constexpr int figures_a_group = 8;

/* ---- the powers of 2^28 in decimal form ---- */

constexpr int two_28_entries = 130;
static number two_28[two_28_entries];
static int two_28_made;

const number *two_28_entry(int i) {
    while (two_28_made <= i) {
        number_handle power;
        if (two_28_made == 0) {
            growing_chain radix;
            radix.append(digit_radix / decimal_radix);
            radix.append(digit_radix % decimal_radix);
            radix.give_to(&power);
        } else {
            base_10_multiply(&two_28[two_28_made - 1], &two_28[0], &power);
        }
        take_chain(&power, &two_28[two_28_made]);
        two_28_made++;
    }
    return &two_28[i];
}

/* ---- to decimal form ---- */

/* dst := the decimal form of the first len digits, group by group from the tail, in time len^2. */
static void convert_by_groups(const numnode *chain, int len, number *dst) {
    const int32_t sign = chain->digit < 0 ? -1 : 1;
    poured_digits digits(chain, len);
    growing_chain groups;
    std::size_t n = digits.size;
    while (n > 0 && digits[n - 1] == 0) n--;
    do {
        uint64_t rest = 0;
        for (std::size_t i = n; i-- > 0;) {
            uint64_t u = rest << digit_bits | digits[i];
            digits[i] = static_cast<uint32_t>(u / decimal_radix);
            rest = u % decimal_radix;
        }
        groups.prepend(sign * static_cast<int32_t>(rest));
        while (n > 0 && digits[n - 1] == 0) n--;
    } while (n > 0);
    groups.give_to(dst);
}

void make_base_10(const number *x, number *dst) {
    if (x->num_len > 0) convert_by_groups(x->num_head, x->num_len, dst);
}

/* power := 2^(28k) in decimal form. */
static void decimal_power(int k, number *power) {
    const number *largest = two_28_entry(two_28_entries - 1);
    const int whole = (k - 1) / two_28_entries; /* so that 1 to 130 digits are left */
    spec_num_assign(two_28_entry(k - 1 - whole * two_28_entries), power);
    number_handle square;
    spec_num_assign(largest, &square);
    for (int n = whole; n > 0; n >>= 1) {
        if (n & 1) base_10_fast_mult(power, &square, power);
        if (n > 1) base_10_fast_mult(&square, &square, &square);
    }
}

/* dst := the decimal form of a chain: its upper half times the power of 2^28 that its lower half spans, plus that. */
static void convert_in_halves(const numnode *head, int len, number *dst) {
    constexpr int plain_length = 9;
    if (len <= plain_length) {
        convert_by_groups(head, len, dst);
        return;
    }
    if (len > two_28_entries) safe_point();
    const int upper = len / 2;
    int lower = len - upper;
    const numnode *middle = head;
    for (int i = 0; i < upper; i++) middle = middle->next;

    number_handle high, power;
    convert_in_halves(head, upper, &high);
    if (lower <= two_28_entries) {
        base_10_fast_mult(&high, two_28_entry(lower - 1), &high);
    } else {
        decimal_power(lower, &power);
        base_10_fast_mult(&high, &power, &high);
    }
    for (; lower > 1 && middle->digit == 0; lower--) middle = middle->next;
    number_handle low;
    convert_in_halves(middle, lower, &low);
    add_in_place(&high, &low, 1, decimal_form{});
    take_chain(&high, dst);
}

void verybig_base_10(const numnode *head, const numnode *, int len, number *dst) { convert_in_halves(head, len, dst); }

/* ---- from figures ---- */

/* A chain for `groups` groups of 8 figures, the first of them of `first` figures, in time groups^2. */
static void chain_by_groups(const char *figures, std::size_t count, number *x) {
    const std::size_t groups = (count + figures_a_group - 1) / figures_a_group;
    flat_array<uint32_t, 72> digits(groups + 1); /* 8 figures take less than a digit */
    std::size_t n = 0;
    std::size_t group_end = count - (groups - 1) * figures_a_group;
    for (std::size_t at = 0; at < count; group_end += figures_a_group) {
        uint64_t carry = 0;
        for (; at < group_end; at++) carry = 10 * carry + static_cast<uint64_t>(figures[at] - '0');
        for (std::size_t i = 0; i < n; i++) {
            carry += static_cast<uint64_t>(digits[i]) * decimal_radix;
            digits[i] = static_cast<uint32_t>(carry & digit_mask);
            carry >>= digit_bits;
        }
        if (carry) digits[n++] = static_cast<uint32_t>(carry);
    }
    if (n == 0) digits[n++] = 0;
    chain_from_flat(digits.data, n, 1, x);
}

void number_from_figures(const char *figures, std::size_t count, number *x) {
    for (; count > 1 && *figures == '0'; count--) figures++;
    if (count >= flat_figures_cut)
        flat_chain_figures(figures, count, x);
    else
        chain_by_groups(figures, count, x);
}

} // namespace tolvek
