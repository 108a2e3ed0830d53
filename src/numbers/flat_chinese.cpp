/* The value is the sum of r(i) w(i) P / p(i) modulo P, with w(i) the inverse of P / p(i) modulo p(i) and the factors r(i) w(i)
   reduced modulo p(i): a sum below m P. */
#include "numbers/flat_chinese.h"

#include "numbers/flat_divide.h"
#include "numbers/flat_pour.h"
#include "top/interrupts.h"

namespace tolvek {

chinese_values::chinese_values(const uint32_t *its_primes, std::size_t count) : limbs((count + 1) / 2 + 1) {
    product.resize(limbs);
    half.resize(limbs);
    sum.resize(limbs);
    quotient.resize(limbs);
    parts.resize(limbs * count);
    flat_clear(product.data(), limbs);
    product[0] = 1;
    for (std::size_t i = 0; i < count; i++) flat_mult_limb(product.data(), product.data(), limbs, its_primes[i]);
    flat_shift_right(half.data(), product.data(), limbs, 1);
    for (std::size_t i = 0; i < count; i++) {
        const word_divisor p(its_primes[i]);
        flat_divide_limb(part(i), product.data(), limbs, its_primes[i]);
        uint32_t weight = 1;
        inverse_modulo(static_cast<uint32_t>(flat_mod_limb(part(i), limbs, its_primes[i])), p, &weight);
        primes.push(its_primes[i]);
        weights.push(weight);
        reciprocals.push(p.inverse);
        safe_point();
    }
}

void chinese_values::value(const uint32_t *residues, std::size_t step, number *x) {
    flat_clear(sum.data(), limbs);
    for (std::size_t i = 0; i < count(); i++) {
        const word_divisor p(primes[i], reciprocals[i]);
        const limb factor = p.product(residues[i * step], weights[i]);
        if (factor) flat_add_product(sum.data(), part(i), limbs, factor);
    }
    const std::size_t n = flat_length(product.data(), limbs);
    flat_divide(quotient.data(), sum.data(), sum.data(), limbs, product.data(), n);
    const bool negative = flat_compare(sum.data(), half.data(), n) > 0;
    if (negative) flat_sub(sum.data(), product.data(), sum.data(), n);
    chain_from_limbs(sum.data(), n, negative ? -1 : 1, x);
}

} // namespace tolvek
