/* Residues in one word: products out of line, chains, inverses, powers. */
#include "numbers/modular.h"

#include "top/interrupts.h"
#include "top/text_io.h"

#include <bit>

namespace tolvek {

int32_t residue_of_integer(int64_t v) {
    const uint64_t size = v < 0 ? -static_cast<uint64_t>(v) : static_cast<uint64_t>(v);
    const uint32_t n = static_cast<uint32_t>(int32_t{modulus}), r = ring_divisor().remainder(size);
    return static_cast<int32_t>(v < 0 && r && !finf ? n - r : r);
}

int32_t nmodmult(int32_t a, int32_t b) { return modmult(a, b); }

int32_t spec_modmult(int32_t a, int32_t b) { return static_cast<int32_t>(static_cast<int64_t>(a) * b % (modulus - 1)); }

uint32_t chain_modulo(const number *x, uint32_t m) { return chain_modulo(x, word_divisor(m)); }

uint32_t chain_modulo(const number *x, const word_divisor &divisor) {
    const bool negative = x->num_head->digit < 0;
    uint64_t v = 0;
    int until_safe_point = 1 << 20;
    for (const numnode *d = x->num_head; d; d = d->next) {
        v = divisor.remainder((v << 28) + static_cast<uint32_t>(negative ? -d->digit : d->digit));
        if (--until_safe_point == 0) {
            safe_point();
            until_safe_point = 1 << 20;
        }
    }
    return static_cast<uint32_t>(negative && v ? divisor.n - v : v);
}

/* ---- inverses ---- */

/* Throughout r = u x and s = v x modulo n. |u| and |v| stay below n. */
bool inverse_modulo(uint32_t x, const word_divisor &n, uint32_t *y) {
    uint32_t r = static_cast<uint32_t>(n.n), s = x;
    int64_t u = 0, v = 1;
    while (s > 1) {
        uint32_t q = r / s, rest = r - q * s;
        int64_t w = u - static_cast<int64_t>(q) * v;
        r = s;
        s = rest;
        u = v;
        v = w;
    }
    if (s != 1) return false;
    *y = static_cast<uint32_t>(v < 0 ? v + static_cast<int64_t>(n.n) : v);
    return true;
}

bool find_inverse(int32_t x, int32_t *y) {
    if (finf) {
        if (x) *y = field_inverse(x);
        return x != 0;
    }
    uint32_t inverse;
    if (!inverse_modulo(static_cast<uint32_t>(x), ring_divisor(), &inverse)) return false;
    *y = static_cast<int32_t>(inverse);
    return true;
}

int32_t mod_inverse(int32_t x) {
    int32_t y = 1;
    if (!find_inverse(x, &y)) error(85, blank);
    return y;
}

int32_t imod_inverse(int32_t x) {
    int32_t y = 1;
    if (!find_inverse(x, &y)) {
        sayf("bad2: %li\n", static_cast<long>(x));
        error(85, blank);
    }
    return y;
}

/* ---- powers ---- */

/* The exponent can be reduced by Fermat's theorem in a field alone, and for a unit. */
void mod_number_power(int32_t x, uint32_t e, int32_t *y) {
    const uint32_t group = static_cast<uint32_t>(modulus - 1);
    if (e == 0) {
        *y = 1;
        return;
    }
    if (e > group && x != 0 && mod_is_prime()) e %= group;
    int32_t power = 1;
    for (int bit = static_cast<int>(std::bit_width(e)); bit-- > 0;) {
        power = modmult(power, power);
        if (e >> bit & 1) power = modmult(power, x);
    }
    *y = power;
}

} // namespace tolvek
