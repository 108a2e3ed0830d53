/* Products of integer matrices by images modulo primes.

   Entries of the product are below inner * max|a| * max|b|. The images modulo distinct primes whose product is more than
   twice that bound tell them. The primes are the greatest for which a whole line of an image is summed in a word without a
   reduction. */
#include "matrix/flat_matrix.h"
#include "numbers/flat_chinese.h"
#include "numbers/primes.h"
#include "top/interrupts.h"

namespace tolvek {

static int bits_of(uint64_t v) { return v ? 64 - __builtin_clzll(v) : 0; }

static int64_t chain_bits(const number *x) {
    const int32_t head = x->num_head->digit;
    return int64_t{x->num_len - 1} * digit_bits + bits_of(static_cast<uint64_t>(head < 0 ? -head : head));
}

static int64_t greatest_bits(const matrix_value &m) {
    int64_t most = 0;
    for (int64_t i = 0; i < m.size; i++) {
        const int64_t bits = chain_bits(m.cell(i)->numb);
        if (bits > most) most = bits;
    }
    return most;
}

/* Distinct primes below 2^bits whose product has more than value_bits bits. */
static void choose_primes(int bits, int64_t value_bits, buffer<uint32_t> *primes) {
    uint32_t p = (uint32_t{1} << bits) - 1;
    for (int64_t covered = 0; covered < value_bits + 1; p -= 2) {
        if (!is_prime_word(p)) continue;
        primes->push(p);
        covered += bits - 1; /* p is above 2^(bits-1) */
    }
}

/* ---- the product ---- */

/* The images of rows or columns of m, from the first line on. */
static void pour_images(const matrix_value &m, bool by_rows, int64_t first_line, const word_divisor &p,
                        word_lines &lines) {
    for (std::size_t i = 0; i < lines.count; i++) {
        safe_point();
        const int64_t at = first_line + static_cast<int64_t>(i);
        uint32_t *to = lines.line(i);
        for (std::size_t k = 0; k < lines.length; k++) {
            const auto inner = static_cast<int64_t>(k);
            const quolynode *q = m.cell(by_rows ? inner * m.rows + at : at * m.rows + inner);
            to[k] = chain_modulo(q->numb, p);
        }
    }
}

struct integer_plan {
    int prime_bits;
    int64_t value_bits; /* a value and its sign */
    bool pays;

    integer_plan(const matrix_value &a, const matrix_value &b);
};

integer_plan::integer_plan(const matrix_value &a, const matrix_value &b) {
    constexpr int most_prime_bits = 31;
    constexpr int64_t most_primes = 512;
    const int inner_bits = bits_of(static_cast<uint64_t>(b.rows));
    prime_bits = (64 - inner_bits) / 2;
    if (prime_bits > most_prime_bits) prime_bits = most_prime_bits;
    const int64_t bits = greatest_bits(a) + greatest_bits(b);
    value_bits = bits + inner_bits + 1;
    /* In processor cycles, for operands of l limbs: a product of entries takes about 400 + 2 l^2, one value out of its
       images 90 l^2. */
    const int64_t limbs = bits / 2 / limb_bits + 1;
    pays = value_bits / (prime_bits - 1) < most_primes && b.rows * (400 + 2 * limbs * limbs) > 90 * limbs * limbs;
}

/* Columns of the product whose images are held at one time. */
static int64_t columns_of_block(int64_t rows, std::size_t primes) {
    constexpr int64_t most_words = int64_t{1} << 24;
    const int64_t columns = most_words / (rows * static_cast<int64_t>(primes));
    return columns < 4 ? 4 : columns;
}

static void columns_product(const matrix_value &a, const matrix_value &b, chinese_values &primes, int64_t first,
                            int64_t columns, matrix_value &r) {
    const auto rows = static_cast<std::size_t>(a.rows), inner = static_cast<std::size_t>(b.rows);
    const std::size_t cells = rows * static_cast<std::size_t>(columns);
    buffer<uint32_t> images(cells * primes.count());
    word_lines left(rows, inner), right(static_cast<std::size_t>(columns), inner);
    for (std::size_t i = 0; i < primes.count(); i++) {
        const word_divisor p(primes.prime(i));
        pour_images(a, true, 0, p, left);
        pour_images(b, false, first, p, right);
        residue_lines_product(left, right, p, &images[i * cells]);
    }
    for (std::size_t i = 0; i < cells; i++) {
        safe_point();
        quolynode *&cell = r.cell(first * a.rows + static_cast<int64_t>(i));
        quoly_set(0, &cell);
        primes.value(&images[i], cells, cell->numb);
    }
}

bool integer_product(const matrix_value &a, const matrix_value &b, matrix_value &r) {
    const integer_plan plan(a, b);
    if (!plan.pays) return false;
    buffer<uint32_t> chosen;
    choose_primes(plan.prime_bits, plan.value_bits, &chosen);
    chinese_values primes(chosen.data(), chosen.size());
    matrix_value product;
    product.make_dense(a.rows, b.cols());
    const int64_t step = columns_of_block(a.rows, primes.count());
    for (int64_t j = 0; j < b.cols(); j += step) {
        const int64_t columns = b.cols() - j < step ? b.cols() - j : step;
        columns_product(a, b, primes, j, columns, product);
    }
    r.take(product);
    return true;
}

} // namespace tolvek
