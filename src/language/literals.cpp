/* Literals. The figures of a literal are gathered first and converted once, so that a float is the nearest one to
   what was written and an exact number has any size. */
#include "language/expressions.h"
#include "numbers/handles.h"
#include "numbers/number_decimal.h"
#include "top/driver.h"
#include "top/interrupts.h"

#include <cstdlib>

namespace tolvek {

constexpr int overflow_warnings = 30; /* written by one statement */

static void gather_figures(stream *input, name **cursor, buffer<char> &figures) {
    while (is_digit(first_char(token))) {
        if (figures.size() % 4096 == 0) safe_point();
        figures.push(token.text[0]);
        scanner(input, token, cursor);
    }
}

/* The exponent of a float: e+ or e- and figures. A token "e" alone comes from no name: names end where figures do. */
static void gather_exponent(stream *input, name **cursor, buffer<char> &text) {
    if (!token_is(token, "e")) return;
    scanner(input, token, cursor);
    if (!token_is(token, "+") && !token_is(token, "-")) {
        error(376, token);
        return;
    }
    text.push('e');
    text.push(token.text[0]);
    scanner(input, token, cursor);
    std::size_t before = text.size();
    gather_figures(input, cursor, text);
    if (text.size() == before) text.push('0');
}

static void overflow_warning() {
    if (warn_cnt++ < overflow_warnings) say(" *** Warning. overflow while reading constant.\n");
}

/* The value of figures in lintmode: a residue in the modular ring, else 32 bits that wrap. */
static int32_t word_from_figures(const buffer<char> &figures) {
    uint64_t value = 0;
    bool overflow = false;
    for (char figure : figures) {
        value = 10 * value + static_cast<uint64_t>(figure - '0');
        if (modularmode) {
            value %= static_cast<uint64_t>(modulus);
        } else {
            overflow |= value > INT32_MAX;
            value &= UINT32_MAX;
        }
    }
    if (overflow) overflow_warning();
    return static_cast<int32_t>(static_cast<uint32_t>(value));
}

/* q := the integer that the figures write, in a ring without floats. */
static void integer_from_figures(const buffer<char> &figures, quolynode **q) {
    if (lintmode) {
        quoly_set(word_from_figures(figures), q);
        return;
    }
    number_handle value;
    number_from_figures(figures.data(), figures.size(), &value);
    scalar_to_quoly(&value, q);
}

static void flote_from_text(buffer<char> &text, quolynode **result) {
    text.push(0);
    quoly_set_flote(std::strtold(text.data(), nullptr), result);
}

/* figures / 10^decimals */
static void exact_from_figures(const buffer<char> &figures, std::size_t decimals, quolynode **result) {
    integer_from_figures(figures, result);
    if (decimals == 0) return;
    buffer<char> power;
    power.push('1');
    for (std::size_t i = 0; i < decimals; i++) power.push('0');
    quoly_handle divisor;
    integer_from_figures(power, divisor.slot());
    fast_quoly_quot(result, divisor.get(), 0);
}

/* Figures that a machine integer holds; what stands behind them is looked at by the caller. */
static int64_t short_figures(stream *input, name **cursor, int *count) {
    constexpr int most = 18; /* below 10^18 < 2^63 */
    int64_t value = 0;
    for (*count = 0; *count < most && is_digit(first_char(token)); ++*count) {
        value = 10 * value + (token.text[0] - '0');
        scanner(input, token, cursor);
    }
    return value;
}

/* The common literal: a short integer, with nothing behind it that belongs to it. */
static bool is_whole(int count) {
    return count > 0 && !is_digit(first_char(token)) && !token_is(token, ".") && !(flotemode && token_is(token, "e"));
}

static void give_integer(int64_t value, quolynode **result) {
    if (modularmode) value %= modulus;
    quoly_set_int64(value, result);
}

static void write_figures(int64_t value, int count, buffer<char> &text) {
    for (int i = 0; i < count; i++) text.push('0');
    for (int i = count - 1; i >= 0; i--, value /= 10)
        text[static_cast<std::size_t>(i)] = static_cast<char>('0' + value % 10);
}

static bool fits_ring(int64_t value) { return flotemode || modularmode || !lintmode || value <= INT32_MAX; }

/* What follows the figures of a float that were gathered. */
static void read_rest_of_flote(stream *input, name **cursor, buffer<char> &text, quolynode **result) {
    if (token_is(token, ".")) {
        text.push('.');
        scanner(input, token, cursor);
        gather_figures(input, cursor, text);
        if (text.size() == 1) error(2, token); /* no figure on either side */
    }
    gather_exponent(input, cursor, text);
    flote_from_text(text, result);
}

static void read_rest_of_exact(stream *input, name **cursor, buffer<char> &text, quolynode **result) {
    const std::size_t whole = text.size();
    if (token_is(token, ".")) {
        scanner(input, token, cursor);
        gather_figures(input, cursor, text);
        if (text.size() == 0) error(2, token);
    }
    exact_from_figures(text, text.size() - whole, result);
}

void read_number(stream *input, quolynode **result, name **cursor) {
    int count;
    int64_t value = short_figures(input, cursor, &count);
    if (is_whole(count) && fits_ring(value)) return give_integer(value, result);
    buffer<char> text;
    write_figures(value, count, text);
    gather_figures(input, cursor, text);
    (flotemode ? read_rest_of_flote : read_rest_of_exact)(input, cursor, text, result);
}

void read_coefficient(stream *input, name **cursor, number *x) {
    int count;
    int64_t value = short_figures(input, cursor, &count);
    const bool ends = flotemode ? is_whole(count) : !is_digit(first_char(token));
    if (ends && fits_ring(value)) return set_int64(modularmode ? value % modulus : value, x);
    buffer<char> text;
    write_figures(value, count, text);
    gather_figures(input, cursor, text);
    quoly_handle q;
    if (flotemode)
        read_rest_of_flote(input, cursor, text, q.slot());
    else
        integer_from_figures(text, q.slot());
    num_assign(q->numb, x);
}

} // namespace tolvek
