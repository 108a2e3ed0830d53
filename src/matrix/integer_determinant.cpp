#include "matrix/integer_determinant.h"

#include "matrix/word_primes.h"
#include "numbers/handles.h"
#include "numbers/modular.h"
#include "top/interrupts.h"

#include <cmath>

namespace tolvek {

/* ---- the matrix ---- */

void integer_matrix::residues(uint32_t p, word_matrix *m) const {
    const word_divisor divisor(p);
    for (int i = 0; i < n; i++) {
        uint32_t *row = (*m)[i];
        for (int j = 0; j < n; j++) row[j] = chain_modulo(entry(i, j), divisor);
        safe_point();
    }
}

/* ---- the bound ---- */

/* |x| / 2^(28 digits), from its two leading digits, rounded up. */
static double fraction_of(const number *x, int digits) {
    const double radix = digit_radix;
    double value = std::fabs(static_cast<double>(x->num_head->digit)) / radix;
    if (x->num_len > 1) value += (std::fabs(static_cast<double>(x->num_head->next->digit)) + 1) / (radix * radix);
    return std::ldexp(value, digit_bits * (x->num_len - digits));
}

/* The logarithm of the norm of a row, or of a column; below 0: none of its entries differs from 0. */
static double norm_bits(const integer_matrix &m, int i, bool column) {
    const auto entry = [&](int k) { return column ? m.entry(k, i) : m.entry(i, k); };
    int digits = 0;
    for (int k = 0; k < m.n; k++)
        if (entry(k)->num_len > digits) digits = entry(k)->num_len;
    double sum = 0;
    for (int k = 0; k < m.n; k++) {
        const double part = fraction_of(entry(k), digits);
        sum += part * part;
    }
    return sum > 0 ? digit_bits * static_cast<double>(digits) + std::log2(sum) / 2 : -1;
}

/* What the rounding of a norm adds at most, and much more. */
static constexpr double rounding_bits = 1e-6;

static double product_bits(const integer_matrix &m, bool columns) {
    double bits = 0;
    for (int i = 0; i < m.n; i++) {
        const double norm = norm_bits(m, i, columns);
        if (norm < 0) return -1;
        bits += norm + rounding_bits;
        safe_point();
    }
    return bits;
}

hadamard_bounds::hadamard_bounds(const integer_matrix &m)
    : rows(product_bits(m, false)), columns(product_bits(m, true)) {}

/* ---- by primes ---- */

void determinant_by_primes(const integer_matrix &m, double bits, number *x) {
    word_matrix images(m.n, m.n);
    const auto image = [&](uint32_t p) {
        m.residues(p, &images);
        return word_determinant(uni_field(p), &images);
    };
    integer_by_primes(bits, image, x);
}

/* ---- the choice ---- */

/* Measured: lifting costs some n^2 words of products for each prime that the bound asks for, residues n^3 / 12. The residues
   of long entries cost more than their products when they are longer than the matrix. */
static constexpr int least_lifted_rows = 20;

static int longest_entry(const integer_matrix &m) {
    int digits = 0;
    for (int i = 0; i < m.n * m.n; i++) digits = maxx(digits, m.cells[i]->numb->num_len);
    return digits;
}

void integer_determinant(const integer_matrix &m, number *x) {
    const hadamard_bounds bounds(m);
    if (bounds.least() < 0) return special_set(0, x);
    const int digits = longest_entry(m);
    if (digits > 2 * m.n) return determinant_without_fractions(m, x);
    if (m.n >= least_lifted_rows && digits <= m.n / 2 && determinant_by_lifting(m, bounds, x)) return;
    determinant_by_primes(m, bounds.least(), x);
}

} // namespace tolvek
