/* Powers, products of ranges, factorials. */
#include "numbers/int_power.h"

#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_mult.h"
#include "numbers/modular.h"
#include "numbers/number_work.h"
#include "top/interrupts.h"

#include <bit>
#include <cmath>

namespace tolvek {

/* ---- products in the form in force ---- */

static int32_t wrapping_product(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}

/* dst := a * b. */
static void ring_product(const number *a, const number *b, number *dst) {
    if (flotemode)
        dst->flote_val = a->flote_val * b->flote_val;
    else if (modularmode)
        dst->lint_val = modmult(a->lint_val, b->lint_val);
    else if (lintmode)
        dst->lint_val = wrapping_product(a->lint_val, b->lint_val);
    else
        fast_mult(a, b, dst);
}

/* The value in the form in force goes from a work record to dst. */
static void ring_take(number *src, number *dst) {
    if (flotemode)
        dst->flote_val = src->flote_val;
    else if (lintmode || modularmode)
        dst->lint_val = src->lint_val;
    else
        take_chain(src, dst);
}

/* dst := v, reduced in a modular ring. */
static void ring_set(int32_t v, number *dst) {
    setvalue(v, dst);
    if (modularmode) dst->lint_val = v % modulus;
}

/* ---- powers ---- */

void number_power(number *x, uint32_t n) {
    if (n == 0) {
        ring_set(1, x);
        return;
    }
    number_handle power;
    num_assign(x, &power);
    for (int bit = static_cast<int>(std::bit_width(n)) - 2; bit >= 0; bit--) {
        ring_product(&power, &power, &power);
        if (n >> bit & 1) ring_product(&power, x, &power);
    }
    ring_take(&power, x);
}

int its_a_square(int32_t v) {
    const int32_t exponent = (modulus - 1) / 2;
    if (exponent <= 1) return v == 1;
    int32_t power = v;
    for (int bit = static_cast<int>(std::bit_width(static_cast<uint32_t>(exponent))) - 2; bit >= 0; bit--) {
        power = modmult(power, power);
        if (exponent >> bit & 1) power = modmult(power, v);
    }
    return power == 1;
}

int32_t modout(const number *x) {
    chain_form chains;
    number_handle m, quotient, rest;
    set_chain(modulus, &m);
    divide(x, &m, &quotient, &rest);
    int64_t v = 0;
    for (const numnode *d = rest.num_head; d; d = d->next) v = v * digit_radix + d->digit;
    return static_cast<int32_t>(v < 0 ? v + modulus : v);
}

/* ---- products of ranges ---- */

constexpr int32_t multout_leaf = 5; /* a range that spans less is multiplied number by number */

static bool is_zero_residue(const number *x) { return modularmode && x->lint_val == 0; }

static void multout_in_order(int32_t from, int32_t to, number *dst) {
    number_handle factor;
    ring_set(from, dst);
    for (int32_t i = from; i < to && !is_zero_residue(dst);) {
        ring_set(++i, &factor);
        ring_product(dst, &factor, dst);
    }
}

void multout(int32_t from, int32_t to, number *dst, number *slot) {
    if (int64_t{to} - from < multout_leaf) {
        multout_in_order(from, to, dst);
        return;
    }
    const int32_t middle = static_cast<int32_t>((int64_t{from} + to) / 2);
    number_handle upper;
    multout(from, middle, dst, slot);
    if (is_zero_residue(dst)) return;
    multout(middle + 1, to, &upper, slot);
    if (!flotemode && !lintmode && dst->num_len > 100) safe_point();
    ring_product(dst, &upper, dst);
}

/* ---- factorials ---- */

constexpr int fact_entries = 22;
constexpr int32_t fact_step = 10; /* the arguments in the table are 0, 10, 20, ... */
static number facts[fact_entries];
static int facts_made;

/* The value of a chain as an extended float, digit by digit from the head. */
static long double float_of(const number *x) {
    long double v = 0;
    for (const numnode *d = x->num_head; d; d = d->next) v = v * digit_radix + d->digit;
    return v;
}

static void make_facts(int count) {
    chain_form chains;
    for (; facts_made < count; facts_made++) {
        number_handle value;
        const int32_t argument = facts_made * fact_step;
        set_one_digit(1, &value);
        if (facts_made > 0) {
            multout(argument - fact_step + 1, argument, &value, nullptr);
            fast_mult(&value, &facts[facts_made - 1], &value);
        }
        number *entry = &facts[facts_made];
        take_chain(&value, entry);
        entry->flote_val = float_of(entry);
        entry->lint_val = entry->num_len == 1 ? entry->num_head->digit : 0;
    }
}

const number *fact_entry(int i, int32_t *argument) {
    if (argument) *argument = i * fact_step;
    if (i >= facts_made) make_facts(i + 1);
    return &facts[i];
}

/* Why n! is not computed: the number of the error, 0 when it is. */
constexpr int too_large = 94, too_large_for_32_bits = 240, in_table_field = 347;

static int refusal(const number *x) {
    constexpr int32_t modular_limit = 46341, small_limit = 14;
    if (flotemode) return x->flote_val >= 0 ? 0 : too_large;
    if (modularmode) return finf ? in_table_field : x->lint_val >= modular_limit ? too_large : 0;
    if (lintmode) return x->lint_val >= small_limit || x->lint_val < 0 ? too_large_for_32_bits : 0;
    return x->num_len > 1 || x->num_head->digit < 0 ? too_large : 0;
}

static int32_t factorial_argument(const number *x) {
    if (flotemode) return static_cast<int32_t>(lroundl(x->flote_val));
    return lintmode || modularmode ? x->lint_val : x->num_head->digit;
}

/* dst := the table's value, in the form in force. */
static void take_fact(const number *entry, number *dst) {
    if (modularmode)
        dst->lint_val = modout(entry);
    else
        num_assign(entry, dst);
}

void factorial(number *x) {
    if (int number_of_error = refusal(x)) {
        error(number_of_error, blank);
        return;
    }
    /* 1754! is the last one that is finite. */
    constexpr long double surely_infinite = 2000;
    if (flotemode && x->flote_val > surely_infinite) {
        x->flote_val = HUGE_VALL;
        return;
    }
    const int32_t n = factorial_argument(x);
    if (modularmode && n >= modulus) {
        x->lint_val = 0;
        return;
    }
    int32_t done;
    const number *entry = fact_entry(minn(n / fact_step, fact_entries - 1), &done);
    number_handle value;
    take_fact(entry, &value);
    if (n > done) {
        number_handle rest;
        multout(done + 1, n, &rest, nullptr);
        ring_product(&rest, &value, &value);
    }
    ring_take(&value, x);
}

} // namespace tolvek
