/* Comparison and sizes of numbers. */
#include "numbers/number_work.h"

#include <bit>

namespace tolvek {

/* ---- chains ---- */

/* The sign of |a| - |b| for two chains of the same length. */
static int compare_digits(const numnode *a, const numnode *b, int len, int32_t a_sign, int32_t b_sign) {
    for (; len > 0; len--, a = a->next, b = b->next) {
        int32_t difference = a_sign * a->digit - b_sign * b->digit;
        if (difference) return difference < 0 ? -1 : 1;
    }
    return 0;
}

static int32_t sign_of(const number *x) { return x->num_head->digit < 0 ? -1 : 1; }

/* The sign of |a| - |b|. */
static int compare_magnitudes(const number *a, const number *b) {
    if (a->num_len != b->num_len) return a->num_len < b->num_len ? -1 : 1;
    return compare_digits(a->num_head, b->num_head, a->num_len, sign_of(a), sign_of(b));
}

/* The sign of a - b. */
static int compare_chains(const number *a, const number *b) {
    int32_t sa = sign_of(a), sb = sign_of(b);
    if (sa != sb) return sa; /* 0 counts as positive, and nothing negative equals it */
    return sa * compare_magnitudes(a, b);
}

int pos_bigger(const number *a, const number *b) {
    if (a->num_len != b->num_len) return a->num_len > b->num_len;
    return compare_digits(a->num_head, b->num_head, a->num_len, 1, 1) > 0;
}

int fast_bigger(const numnode *chain_a, const numnode *chain_b, int len_a, int len_b) {
    if (len_a > len_b) return 1;
    return compare_digits(chain_a, chain_b, len_b, 1, 1) > 0;
}

int spec_equal(const number *a, const number *b) {
    return a->num_len == b->num_len && compare_digits(a->num_head, b->num_head, a->num_len, 1, 1) == 0;
}

int equal_which(const number *a, const number *b, int *first_bigger) {
    int sign = compare_magnitudes(a, b);
    *first_bigger = sign > 0;
    return sign == 0;
}

int int_abs_bigger(const number *a, const number *b, int tie) {
    int sign = compare_magnitudes(a, b);
    return sign == 0 ? tie : sign > 0;
}

int is_longint(const number *x, int32_t v) { return x->num_len == 1 && x->num_head->digit == v; }

/* ---- in the form in force ---- */

int bigger(const number *a, const number *b) {
    if (flotemode) return a->flote_val > b->flote_val;
    if (lintmode) return a->lint_val > b->lint_val;
    return compare_chains(a, b) > 0;
}

int equal(const number *a, const number *b) {
    if (flotemode) return a->flote_val == b->flote_val;
    if (lintmode) return a->lint_val == b->lint_val;
    return spec_equal(a, b);
}

int negtive(const number *a, const number *b) {
    if (flotemode) return a->flote_val == -b->flote_val;
    if (lintmode) {
        uint32_t sum = static_cast<uint32_t>(a->lint_val) + static_cast<uint32_t>(b->lint_val);
        if (!modularmode) return sum == 0;
        if (finf) return a->lint_val == b->lint_val;
        return sum == static_cast<uint32_t>(modulus) || (a->lint_val == 0 && b->lint_val == 0);
    }
    return a->num_len == b->num_len && compare_digits(a->num_head, b->num_head, a->num_len, 1, -1) == 0;
}

int equal_to_pm1(const number *x, int *is_minus_one) {
    bool plus, minus;
    if (flotemode) {
        plus = x->flote_val == 1;
        minus = x->flote_val == -1;
    } else if (lintmode) {
        plus = x->lint_val == 1;
        minus = modularmode && !finf ? x->lint_val == modulus - 1 : x->lint_val == -1;
    } else {
        plus = is_longint(x, 1);
        minus = is_longint(x, -1);
    }
    *is_minus_one = !plus && minus;
    return plus || minus;
}

static uint32_t magnitude(int32_t v) { return v < 0 ? -static_cast<uint32_t>(v) : static_cast<uint32_t>(v); }

int abs_larger(const number *a, const number *b) {
    if (flotemode) {
        long double x = a->flote_val < 0 ? -a->flote_val : a->flote_val;
        long double y = b->flote_val < 0 ? -b->flote_val : b->flote_val;
        return x > y;
    }
    if (lintmode) return magnitude(a->lint_val) > magnitude(b->lint_val);
    return compare_magnitudes(a, b) > 0;
}

int num_sign(const number *x) {
    if (flotemode) return (x->flote_val > 0) - (x->flote_val < 0);
    int32_t v = lintmode ? x->lint_val : x->num_head->digit;
    return (v > 0) - (v < 0);
}

/* ---- sizes ---- */

static int chain_bits(const number *x, int32_t head) {
    return x->num_len * digit_bits - digit_bits + static_cast<int>(std::bit_width(static_cast<uint32_t>(head)));
}

int logg2(const number *x) { return chain_bits(x, x->num_head->digit); }
int logg2_neg(const number *x) { return chain_bits(x, -x->num_head->digit); }

/* The residue or its negative, whichever is smaller in magnitude. */
static uint32_t smaller_residue(uint32_t v) {
    uint32_t m = static_cast<uint32_t>(modulus);
    return v > m / 2 && v <= m ? m - v : v;
}

int logg2lint(int32_t v) {
    uint32_t u = magnitude(v);
    if (modularmode) u = smaller_residue(u);
    return static_cast<int>(std::bit_width(u)) - 1;
}

int number_mass(const number *x) {
    if (flotemode) {
        long double size = x->flote_val < 0 ? -x->flote_val : x->flote_val;
        long double mass = 1 + size / digit_radix;
        return mass < INT32_MAX ? static_cast<int>(mass) : INT32_MAX; /* also for what is no number */
    }
    if (lintmode) {
        uint32_t u = magnitude(x->lint_val);
        if (!modularmode) return static_cast<int>(u / digit_radix) + 1;
        return static_cast<int>(uint64_t{smaller_residue(u)} * 5 / static_cast<uint32_t>(modulus)) + 1;
    }
    constexpr uint32_t half = 65536;
    return 2 * x->num_len - (magnitude(x->num_head->digit) < half);
}

int power_of_two(uint32_t v) { return std::has_single_bit(v); }

} // namespace tolvek
