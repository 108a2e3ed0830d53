/* Built-in functions of numbers. */
#include "language/builtin_routines.h"
#include "numbers/binomials.h"
#include "numbers/handles.h"
#include "numbers/int_power.h"
#include "numbers/modular.h"
#include "numbers/primes.h"
#include "numbers/random.h"
#include "top/start_tables.h"

#include <cmath>

namespace tolvek {

void builtin_number(builtin_call &call) {
    argument value;
    standard_read(call, value);
    call.give(value.is_number());
}

void builtin_rational(builtin_call &call) {
    argument value;
    standard_read(call, value);
    call.give(!lintmode && !value.is_number() && value.get()->is_rat);
}

/* The number as a machine integer: a float is rounded, an exact number gives its first digit. */
void builtin_cast(builtin_call &call) {
    argument value;
    standard_read(call, value);
    if (!value.is_number()) {
        error(91, token);
        return;
    }
    const number *x = value.get()->numb;
    call.give(flotemode || lintmode ? quoly_to_int(value.get()) : x->num_head->digit);
}

/* The plain number that stands in brackets behind the name; error 227, and null, for anything else. */
static const quolynode *number_argument(builtin_call &call, argument &value) {
    standard_read(call, value);
    if (value.is_number()) return value.get();
    error(227, token);
    return nullptr;
}

/* ---- binomials ---- */

static void binomial(int64_t n, int64_t k, quolynode **result) {
    if (k < 0 || k > n || n > INT32_MAX) {
        if (n > INT32_MAX) error(87, token);
        quoly_set(0, result);
    } else if (flotemode) {
        flote_binom(static_cast<int32_t>(n), static_cast<int32_t>(k), result);
    } else if (lintmode) {
        lint_binom(static_cast<int32_t>(n), static_cast<int32_t>(k), result);
    } else {
        rat_binom(static_cast<int32_t>(n), static_cast<int32_t>(k), result);
    }
}

/* The arguments are read as integers, outside the modular ring; the value is reduced behind it. */
void builtin_binomial(builtin_call &call) {
    {
        modular_pause pause;
        check_for_paren(call);
        argument n, k;
        n.read_expression(call);
        if (!token_is(token, ",")) error(202, token);
        k.read_expression(call);
        close_paren(call);
        int64_t upper = integer_argument(n.get(), 227), lower = integer_argument(k.get(), 227);
        binomial(upper, lower, call.result);
    }
    if (modularmode) quoly_set((*call.result)->numb->lint_val % modulus, call.result);
}

void builtin_prime(builtin_call &call) {
    argument value;
    const quolynode *q = number_argument(call, value);
    if (!q) return;
    int64_t n = integer_argument(q, 346);
    if (n < 1 || n > small_prime_count)
        error(346, token);
    else
        call.give(small_prime[n - 1]);
}

/* The number as an integer of at most 63 bits, at least 0; error 289 for a longer one. */
static uint64_t primality_candidate(const quolynode *q) {
    constexpr int most_bits = 63;
    if (num_sign(q->numb) <= 0) return 0;
    if (flotemode || lintmode) return static_cast<uint64_t>(integer_argument(q, 289));
    if (logg2(q->numb) > most_bits) {
        error(289, token);
        return 0;
    }
    uint64_t n = 0;
    for (const numnode *d = q->numb->num_head; d; d = d->next) n = (n << digit_bits) + static_cast<uint64_t>(d->digit);
    return n;
}

void builtin_isprime(builtin_call &call) {
    argument value;
    const quolynode *q = number_argument(call, value);
    if (!q) return;
    uint64_t n = primality_candidate(q);
    if (n < 2)
        call.give(0);
    else
        quoly_set_int64(is_prime_word(n) ? 1 : static_cast<int64_t>(least_factor(n)), call.result);
}

static void give_random(builtin_call &call, int seed_flag) {
    randomize(seed_flag, call.result);
    call.read_on();
}

void builtin_random(builtin_call &call) { give_random(call, 0); }
void builtin_random_real(builtin_call &call) { give_random(call, 1); }

/* x := the floor of its square root. int_sqrt rounds what is one digit long to the nearest integer. */
static void integer_root(number *x) {
    const int64_t before = x->num_len == 1 ? x->num_head->digit : -1;
    int_sqrt(x, x, 1);
    const int64_t root = x->num_head->digit;
    if (before >= 0 && root * root > before) x->num_head->digit--;
}

/* In a prime field: a root of a residue, 0 where there is none. */
static void modular_root(number *x) {
    if (mod_is_prime())
        x->lint_val = modular_sqrt(x->lint_val);
    else
        error(293, token);
}

/* Sqrt of a factor: the floor of the root of an integer, of a fraction that of its greatest integer; a float's root is a
   float. */
void builtin_square_root(builtin_call &call) {
    call.read_on();
    old_fact(call.input, call.result, call.cursor);
    quolynode *q = *call.result;
    if (!q->is_num && !q->is_rat) {
        error(115, token);
        return;
    }
    if (!q->is_num) quoly_great_int(call.result);
    number *x = (*call.result)->numb;
    if (flotemode) {
        x->flote_val = std::sqrt(x->flote_val);
    } else if (modularmode) {
        modular_root(x);
    } else if (lintmode || num_sign(x) < 0) {
        error(62, token);
    } else if (num_sign(x) > 0) {
        integer_root(x);
    }
}

} // namespace tolvek
