/* Lists of primes with residues, and the choice of a prime for a modular method. */
#include "numbers/free_lists.h"
#include "numbers/modular.h"
#include "numbers/number.h"
#include "numbers/primes.h"
#include "numbers/random.h"
#include "top/heap.h"
#include "top/interrupts.h"
#include "top/start_tables.h"

namespace tolvek {

/* ---- lists ---- */

void insert_new_prime(int32_t p, int32_t residue, number **list) {
    numnode *digit = newdigit();
    digit->digit = residue;
    digit->next = nullptr;
    number *entry = newimag();
    entry->lint_val = p;
    entry->num_head = entry->num_tail = digit;
    entry->num_len = 1;
    entry->num_link = *list;
    *list = entry;
}

void add_prime_to_list(number **list, int32_t p, int32_t residue) {
    while (*list && (*list)->lint_val > p) list = &(*list)->num_link;
    if (!*list || (*list)->lint_val != p) insert_new_prime(p, residue, list);
}

void free_prime_list(number **list) {
    while (number *entry = *list) {
        *list = entry->num_link;
        push_digits(entry->num_head, entry->num_tail);
        push_imag(entry);
    }
}

/* ---- the factors of a long number ---- */

/* The magnitude of a chain, most significant digit first, from which factors are divided out. */
struct shrinking_number {
    buffer<uint32_t> digits;
    std::size_t first = 0;

    explicit shrinking_number(const number *x) {
        digits.reserve(static_cast<std::size_t>(x->num_len));
        for (const numnode *d = x->num_head; d; d = d->next)
            digits.push(static_cast<uint32_t>(d->digit < 0 ? -d->digit : d->digit));
    }
    bool is(uint32_t v) const { return first + 1 == digits.size() && digits[first] == v; }

    bool divisible_by(const word_divisor &p) const {
        uint64_t rest = 0;
        for (std::size_t i = first; i < digits.size(); i++) rest = p.remainder((rest << digit_bits) + digits[i]);
        return rest == 0;
    }
    void divide_by(uint32_t p) {
        uint64_t rest = 0;
        for (std::size_t i = first; i < digits.size(); i++) {
            rest = (rest << digit_bits) + digits[i];
            digits[i] = static_cast<uint32_t>(rest / p);
            rest %= p;
        }
        if (digits[first] == 0 && first + 1 < digits.size()) first++;
    }
};

constexpr int trial_primes = 4916;
constexpr int32_t least_listed = 41;

void add_all_to_list(number **list, int32_t value, const number *n) {
    shrinking_number rest(n);
    int32_t p = 2;
    std::size_t work = 0;
    for (int i = 1; i <= trial_primes && !rest.is(0) && !rest.is(1); i++) {
        p = i <= small_prime_count ? small_prime[i - 1] : nextprime(p);
        const word_divisor divisor(static_cast<uint32_t>(p));
        work += rest.digits.size();
        if (work > 1 << 20) {
            safe_point();
            work = 0;
        }
        if (!rest.divisible_by(divisor)) continue;
        do rest.divide_by(static_cast<uint32_t>(p));
        while (rest.divisible_by(divisor));
        if (p >= least_listed) add_prime_to_list(list, p, spec_mod_add(value, 0, p));
    }
}

/* ---- the choice of a prime ---- */

static const number *bottom_number(const polynode *x) {
    while (!x->is_number) x = x->poly;
    return x->num;
}

int select_prime(const polynode *x, const polynode *y, int low, int range, int count, number *const *primes) {
    const number *a = bottom_number(x), *b = bottom_number(y);
    for (int i = count - (rand_integer2() % range + low); i < count; i++) {
        uint32_t p = static_cast<uint32_t>(primes[i]->lint_val);
        if (chain_modulo(a, p) && chain_modulo(b, p)) return i;
    }
    return count + 1;
}

} // namespace tolvek
