/* Quotients and remainders of chains, and the operators \ and | on numbers.

   Long division works on the poured digits (D. E. Knuth, The Art of Computer Programming, volume 2, section 4.3.1,
   Algorithm D); a divisor of one digit is divided by down the chain itself. */
#include "numbers/int_divide.h"

#include "numbers/flat_chains.h"
#include "numbers/handles.h"
#include "numbers/int_mult.h"
#include "numbers/number_work.h"
#include "numbers/poured.h"
#include "top/interrupts.h"

#include <bit>

namespace tolvek {

int pos_mod = 1;

/* Digit products after which a long division passes a safe point. */
constexpr int64_t work_between_safe_points = 1 << 20;

/* ---- non-negative chains ---- */

/* q := chain / d, the remainder comes back; 0 < d < 2^28. */
static int32_t divide_by_digit(const numnode *a, int len, int32_t d, number *q) {
    const uint64_t divisor = static_cast<uint32_t>(d);
    uint64_t rest = 0;
    growing_chain quotient;
    for (; len > 0; len--, a = a->next) {
        uint64_t u = rest << digit_bits | static_cast<uint32_t>(a->digit);
        uint64_t digit = u / divisor;
        rest = u - digit * divisor;
        if (digit || quotient.len || len == 1) quotient.append(static_cast<int32_t>(digit));
    }
    quotient.give_to(q);
    return static_cast<int32_t>(rest);
}

static int32_t remainder_by_digit(const numnode *a, int len, int32_t d) {
    const uint64_t divisor = static_cast<uint32_t>(d);
    uint64_t rest = 0;
    for (; len > 0; len--, a = a->next) rest = (rest << digit_bits | static_cast<uint32_t>(a->digit)) % divisor;
    return static_cast<int32_t>(rest);
}

/* Shifts n digits by less than 28 bits. The bits above the top digit must be 0, or have a digit to go to. */
static void shift_flat_left(uint32_t *x, std::size_t n, int bits) {
    uint32_t entering = 0;
    for (std::size_t i = 0; i < n; i++) {
        uint32_t v = x[i];
        x[i] = (v << bits & static_cast<uint32_t>(digit_mask)) | entering;
        entering = v >> (digit_bits - bits);
    }
}

static void shift_flat_right(uint32_t *x, std::size_t n, int bits) {
    for (std::size_t i = 0; i + 1 < n; i++)
        x[i] = x[i] >> bits | (x[i + 1] << (digit_bits - bits) & static_cast<uint32_t>(digit_mask));
    x[n - 1] >>= bits;
}

/* u := u - factor * v over n digits and the one above; 1 when the result is negative (u then lacks a borrow). */
static bool subtract_product(uint32_t *u, const uint32_t *v, std::size_t n, uint64_t factor) {
    uint64_t taken = 0; /* what is still to be subtracted, at the next digit */
    for (std::size_t i = 0; i < n; i++) {
        taken += factor * v[i];
        uint32_t low = static_cast<uint32_t>(taken) & static_cast<uint32_t>(digit_mask);
        taken >>= digit_bits;
        uint32_t difference = u[i] - low;
        taken += difference >> 31;
        u[i] = difference & static_cast<uint32_t>(digit_mask);
    }
    bool negative = u[n] < taken;
    u[n] = (u[n] - static_cast<uint32_t>(taken)) & static_cast<uint32_t>(digit_mask);
    return negative;
}

static void add_back(uint32_t *u, const uint32_t *v, std::size_t n) {
    uint32_t carry = 0;
    for (std::size_t i = 0; i < n; i++) {
        uint32_t sum = u[i] + v[i] + carry;
        carry = sum >> digit_bits;
        u[i] = sum & static_cast<uint32_t>(digit_mask);
    }
    u[n] = (u[n] + carry) & static_cast<uint32_t>(digit_mask);
}

/* The quotient digit of u / v, given their top digits: exact, or too large by 1 in rare cases. v1 has its top bit
   set. */
static uint64_t estimate(uint64_t u2, uint64_t u1, uint64_t u0, uint64_t v1, uint64_t v0) {
    const uint64_t top = u2 << digit_bits | u1;
    uint64_t q = top / v1, rest = top % v1;
    while (q >= digit_radix || q * v0 > (rest << digit_bits | u0)) {
        q--;
        rest += v1;
        if (rest >= digit_radix) break;
    }
    return q;
}

/* Divides u, which has len_u digits, the top one 0 after scaling at most, by v of len_v >= 2 digits. The quotient's
   len_u - len_v digits go to q unless it is null; the remainder is left in u. Both are scaled by 2^bits here. */
static void divide_flat(uint32_t *u, std::size_t len_u, uint32_t *v, std::size_t len_v, uint32_t *q) {
    const int bits = digit_bits - static_cast<int>(std::bit_width(v[len_v - 1]));
    shift_flat_left(v, len_v, bits);
    shift_flat_left(u, len_u, bits);
    int64_t work = 0;
    for (std::size_t j = len_u - len_v; j-- > 0;) {
        uint32_t *part = u + j;
        uint64_t digit = estimate(part[len_v], part[len_v - 1], part[len_v - 2], v[len_v - 1], v[len_v - 2]);
        if (digit && subtract_product(part, v, len_v, digit)) {
            digit--;
            add_back(part, v, len_v);
        }
        if (q) q[j] = static_cast<uint32_t>(digit);
        work += static_cast<int64_t>(len_v);
        if (work > work_between_safe_points) {
            work = 0;
            safe_point();
        }
    }
    shift_flat_right(u, len_v, bits);
}

/* q := a / b unless q is null, r := the remainder, of two to four digits by two. */
static void divide_in_128_bits(const numnode *a, int len_a, const numnode *b, number *q, number *r) {
    unsigned __int128 u = 0;
    for (; len_a > 0; len_a--, a = a->next) u = u << digit_bits | static_cast<uint32_t>(a->digit);
    const uint64_t v = short_value(b, 2);
    const unsigned __int128 quotient = u >> 64 ? u / v : static_cast<uint64_t>(u) / v;
    const uint64_t rest = static_cast<uint64_t>(u - quotient * v);
    if (q) set_from_128_bits(quotient, 1, q);
    set_chain(static_cast<int64_t>(rest), r);
}

/* q := a / b unless q is null, r := the remainder. q and r may be the owners of the chains. */
static void divide_chains(const numnode *a, int len_a, const numnode *b, int len_b, number *q, number *r) {
    if (len_a < len_b || (len_a == len_b && fast_bigger(b, a, len_b, len_a))) {
        number_handle rest;
        fast_assign(a, len_a, &rest);
        if (q) set_one_digit(0, q);
        take_chain(&rest, r);
        return;
    }
    if (len_b == 1) {
        const int32_t d = b->digit;
        int32_t rest = q ? divide_by_digit(a, len_a, d, q) : remainder_by_digit(a, len_a, d);
        set_one_digit(rest, r);
        return;
    }
    if (len_a <= 4 && len_b == 2) {
        divide_in_128_bits(a, len_a, b, q, r);
        return;
    }
    if (len_b >= flat_quotient_cut) {
        flat_chain_divide(a, len_a, b, len_b, q, r);
        return;
    }
    poured_digits u(a, len_a, 1), v(b, len_b);
    flat_array<uint32_t, poured_digits::usual_length> quotient(static_cast<std::size_t>(len_a - len_b + 1));
    divide_flat(u.data, u.size, v.data, v.size, q ? quotient.data : nullptr);
    number_handle rest;
    chain_from_flat(u.data, v.size, 1, &rest);
    if (q) chain_from_flat(quotient.data, quotient.size, 1, q);
    take_chain(&rest, r);
}

void pos_divide(const number *a, const number *b, number *q, number *r) {
    divide_chains(a->num_head, a->num_len, b->num_head, b->num_len, q, r);
}

void pos_divide_noq(const numnode *chain_a, const numnode *chain_b, int len_a, int len_b, number *r) {
    divide_chains(chain_a, len_a, chain_b, len_b, nullptr, r);
}

void simp_divide(const numnode *chain, int len, const number *b, number *q, number *r) {
    divide_chains(chain, len, b->num_head, b->num_len, q, r);
}

void simp_divide_noq(const numnode *chain_a, const numnode *chain_b, int len_a, int len_b, number *r) {
    divide_chains(chain_a, len_a, chain_b, len_b, nullptr, r);
}

/* ---- signed chains ---- */

static void negate_chain(number *x) {
    for (numnode *d = x->num_head; d; d = d->next) d->digit = -d->digit;
}

static bool is_negative(const number *x) { return x->num_head->digit < 0; }

void divide(const number *a, const number *b, number *q, number *r) {
    if (b->num_len < 1 || b->num_head->digit == 0) return;
    const bool opposite = is_negative(a) != is_negative(b);
    number_handle positive_a, positive_b;
    const number *x = a, *y = b;
    if (is_negative(a)) {
        abs_val_num(a, &positive_a);
        x = &positive_a;
    }
    if (is_negative(b)) {
        abs_val_num(b, &positive_b);
        y = &positive_b;
    }
    pos_divide(x, y, q, r);
    if (opposite) {
        negate_chain(q);
        negate_chain(r);
    }
}

/* ---- the operators ---- */

static bool is_zero(const number *x) {
    if (flotemode) return x->flote_val == 0;
    if (lintmode) return x->lint_val == 0;
    return x->num_len < 1 || x->num_head->digit == 0;
}

/* Error 22 where the divisor is 0. Where it returns, x becomes 1. */
static bool refuses(const number *divisor, number *x) {
    if (!is_zero(divisor)) return false;
    error(22, blank);
    setvalue(1, x);
    return true;
}

static void small_mod_and_div(int32_t a, int32_t b, number *r, number *q) {
    const int64_t quotient = int64_t{a} / b;
    int64_t rest = int64_t{a} % b;
    if (pos_mod && rest < 0) rest += b < 0 ? -int64_t{b} : int64_t{b};
    q->lint_val = static_cast<int32_t>(quotient);
    r->lint_val = static_cast<int32_t>(rest);
}

static void chain_mod_and_div(const number *a, const number *b, number *r, number *q) {
    number_handle quotient, rest;
    divide(a, b, &quotient, &rest);
    if (is_negative(b)) negate_chain(&rest); /* now of the sign of a */
    if (pos_mod && is_negative(&rest)) add_in_place(&rest, b, is_negative(b) ? -1 : 1, binary_radix{});
    take_chain(&quotient, q);
    take_chain(&rest, r);
}

void mod_and_div(const number *a, const number *b, number *r, number *q) {
    if (refuses(b, r)) return;
    if (flotemode) {
        q->flote_val = a->flote_val / b->flote_val;
        r->flote_val = 0;
    } else if (lintmode) {
        small_mod_and_div(a->lint_val, b->lint_val, r, q);
    } else {
        chain_mod_and_div(a, b, r, q);
    }
}

void mod_or_div(const number *a, const number *b, number *result, int want_quotient) {
    if (refuses(b, result)) return;
    number_handle other;
    if (want_quotient)
        mod_and_div(a, b, &other, result);
    else
        mod_and_div(a, b, result, &other);
}

/* ---- small ones ---- */

int32_t quotient_of(const number *x, int32_t d) {
    if (x->num_len == 1) return x->num_head->digit / d;
    if (x->num_len < 1) return 0;
    const int32_t sign = is_negative(x) ? -1 : 1;
    int64_t rest = 0;
    for (const numnode *node = x->num_head; node; node = node->next) {
        rest = rest << digit_bits | sign * node->digit;
        if (rest >= d) return sign * static_cast<int32_t>(rest / d);
    }
    return 0;
}

void fast_modout(number *a, const number *b) {
    const int kept = b->num_len - 1;
    if (a->num_len <= kept) return;
    if (kept == 0) {
        set_one_digit(0, a);
        return;
    }
    int dropped = a->num_len - kept;
    numnode *last = a->num_head;
    for (int i = 1; i < dropped; i++) last = last->next;
    while (last->next->digit == 0 && dropped < a->num_len - 1) {
        last = last->next;
        dropped++;
    }
    numnode *first = a->num_head;
    a->num_head = last->next;
    a->num_len -= dropped;
    push_digits(first, last);
}

} // namespace tolvek
