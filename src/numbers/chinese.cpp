#include "numbers/chinese.h"

#include "numbers/handles.h"
#include "numbers/modular.h"
#include "numbers/poured.h"
#include "top/interrupts.h"

namespace tolvek {

/* ---- inverses of products ---- */

int32_t inverse_prod(const numnode *list) {
    int32_t product = 1;
    for (; list; list = list->next) product = modmult(product, list->digit % modulus);
    return imod_inverse(product);
}

int32_t multi_inverse_prod(const numnode *list, int32_t v) {
    int32_t product = 1;
    for (; list; list = list->next) product = modmult(product, mod_sub(v, list->digit, modulus));
    return imod_inverse(product);
}

/* ---- the digits of the mixed radix ---- */

/* The digit that takes the value so far, of k digits, to the residue modulo m. */
static int32_t next_digit(int32_t residue, int32_t m, const int32_t *digits, const int32_t *moduli, int k) {
    const word_divisor divisor(static_cast<uint32_t>(m));
    uint32_t value = 0, weight = 1; /* of the digits so far, and of the new one, modulo m */
    for (int j = k - 1; j >= 0; j--) {
        const uint32_t step = divisor.remainder(static_cast<uint32_t>(moduli[j]));
        const uint32_t digit = static_cast<uint32_t>(digits[j]);
        value = divisor.remainder(static_cast<uint64_t>(value) * step + digit);
        weight = divisor.product(weight, step);
    }
    uint32_t inverse = 0;
    if (!inverse_modulo(weight, divisor, &inverse)) error(85, blank);
    const uint32_t wanted = divisor.remainder(static_cast<uint32_t>(residue));
    const uint32_t missing = wanted >= value ? wanted - value : wanted - value + static_cast<uint32_t>(m);
    return static_cast<int32_t>(divisor.product(missing, inverse));
}

void mixed_radix_digits(const int32_t *residues, const int32_t *moduli, int n, int32_t *digits) {
    for (int k = 0; k < n; k++) {
        digits[k] = next_digit(residues[k], moduli[k], digits, moduli, k);
        safe_point();
    }
}

/* ---- the value ---- */

/* A non-negative integer of radix 2^28, least significant digit first, that grows by products with words. */
struct growing_value {
    buffer<uint32_t> digits;

    explicit growing_value(std::size_t room) { digits.reserve(room); }
    /* value := value * factor + summand, both below 2^31. The carry stays below 2^35. */
    void multiply_and_add(uint32_t factor, uint32_t summand) {
        uint64_t carry = summand;
        for (uint32_t &d : digits) {
            carry += static_cast<uint64_t>(d) * factor;
            d = static_cast<uint32_t>(carry) & digit_mask;
            carry >>= digit_bits;
        }
        for (; carry; carry >>= digit_bits) digits.push(static_cast<uint32_t>(carry) & digit_mask);
    }
    void give_to(number *x) {
        if (digits.empty()) digits.push(0);
        chain_from_flat(digits.data(), digits.size(), 1, x);
    }
};

void number_from_mixed_radix(const int32_t *digits, const int32_t *moduli, int n, number *x, number *product) {
    const std::size_t room = static_cast<std::size_t>(n) * 31 / digit_bits + 2;
    growing_value value(room), weight(room);
    for (int k = n - 1; k >= 0; k--) {
        value.multiply_and_add(static_cast<uint32_t>(moduli[k]), static_cast<uint32_t>(digits[k]));
        safe_point();
    }
    value.give_to(x);
    if (!product) return;
    weight.digits.push(1);
    for (int k = 0; k < n; k++) weight.multiply_and_add(static_cast<uint32_t>(moduli[k]), 0);
    weight.give_to(product);
}

void number_from_residues(const int32_t *residues, const int32_t *moduli, int n, int symmetric, number *x) {
    buffer<int32_t> digits(static_cast<std::size_t>(n));
    mixed_radix_digits(residues, moduli, n, digits.data());
    number_handle product, twice;
    number_from_mixed_radix(digits.data(), moduli, n, x, &product);
    if (!symmetric) return;
    spec_num_assign(x, &twice);
    fastsum(&twice, x);
    if (pos_bigger(&twice, &product)) fastdiff(x, &product);
}

} // namespace tolvek
