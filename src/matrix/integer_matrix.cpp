/* Products of integer matrices by images modulo primes.

   Entries of the product are below inner * max|a| * max|b|. The images modulo distinct primes whose product is more than
   twice that bound tell them: the digits of the mixed radix of those primes (H. Garner, 1959), and of a value above half
   of their product the negative complement. The primes are the greatest for which a whole line of an image is summed in a
   word without a reduction. */
#include "matrix/flat_matrix.h"
#include "numbers/flat_pour.h"
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

/* Values from their images. */
class image_primes {
  public:
    /* Distinct primes below 2^bits whose product has more than value_bits bits. */
    image_primes(int bits, int64_t value_bits) {
        uint32_t p = (uint32_t{1} << bits) - 1;
        for (int64_t covered = 0; covered < value_bits + 1; p -= 2) {
            if (!is_prime_word(p)) continue;
            prime.push(p);
            covered += bits - 1; /* p is above 2^(bits-1) */
        }
        prepare();
    }
    std::size_t count() const { return prime.size(); }
    uint32_t operator[](std::size_t i) const { return prime[i]; }
    /* x := the value whose image modulo prime i is images[i * step]. */
    void value(const uint32_t *images, std::size_t step, number *x);

  private:
    void prepare();
    uint32_t &inverse_of(std::size_t j, std::size_t i) { return inverse[i * (i - 1) / 2 + j]; }
    word_divisor divisor(std::size_t i) const { return {prime[i], reciprocal[i]}; }

    buffer<uint32_t> prime, inverse, digit; /* inverse: of prime j modulo prime i, j < i */
    buffer<uint64_t> reciprocal;
    buffer<limb> product, half, work;
};

void image_primes::prepare() {
    const std::size_t n = count();
    inverse.resize(n * (n - 1) / 2);
    digit.resize(n);
    reciprocal.resize(n);
    for (std::size_t i = 0; i < n; i++) {
        const word_divisor p(prime[i]);
        reciprocal[i] = p.inverse;
        for (std::size_t j = 0; j < i; j++) inverse_modulo(prime[j] % prime[i], p, &inverse_of(j, i));
    }
    const std::size_t limbs = n / 2 + 1; /* primes have less than 32 bits */
    product.resize(limbs);
    half.resize(limbs);
    work.resize(limbs);
    flat_clear(product.data(), limbs);
    product[0] = 1;
    for (std::size_t i = 0; i < n; i++) flat_mult_limb(product.data(), product.data(), limbs, prime[i]);
    flat_shift_right(half.data(), product.data(), limbs, 1);
}

void image_primes::value(const uint32_t *images, std::size_t step, number *x) {
    const std::size_t n = count(), limbs = product.size();
    for (std::size_t i = 0; i < n; i++) {
        const word_divisor p = divisor(i);
        uint32_t d = images[i * step];
        for (std::size_t j = 0; j < i; j++) {
            const uint32_t lower = digit[j] >= prime[i] ? digit[j] - prime[i] : digit[j]; /* primes have equal bits */
            d = p.product(d >= lower ? d - lower : d + prime[i] - lower, inverse_of(j, i));
        }
        digit[i] = d;
    }
    flat_clear(work.data(), limbs);
    for (std::size_t i = n; i-- > 0;) {
        const std::size_t used = (n - i) / 2 + 1;
        flat_mult_limb(work.data(), work.data(), used, prime[i]);
        flat_add_limb(work.data(), work.data(), used, digit[i]);
    }
    const bool negative = flat_compare(work.data(), half.data(), limbs) > 0;
    if (negative) flat_sub(work.data(), product.data(), work.data(), limbs);
    chain_from_limbs(work.data(), limbs, negative ? -1 : 1, x);
}

/* ---- the product ---- */

static uint32_t image_of(const number *x, const word_divisor &p) {
    const bool negative = x->num_head->digit < 0;
    uint64_t v = 0;
    for (const numnode *d = x->num_head; d; d = d->next)
        v = p.remainder((v << digit_bits) + static_cast<uint32_t>(negative ? -d->digit : d->digit));
    return static_cast<uint32_t>(negative && v ? p.n - v : v);
}

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
            to[k] = image_of(q->numb, p);
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

static void columns_product(const matrix_value &a, const matrix_value &b, image_primes &primes, int64_t first,
                            int64_t columns, matrix_value &r) {
    const auto rows = static_cast<std::size_t>(a.rows), inner = static_cast<std::size_t>(b.rows);
    const std::size_t cells = rows * static_cast<std::size_t>(columns);
    buffer<uint32_t> images(cells * primes.count());
    word_lines left(rows, inner), right(static_cast<std::size_t>(columns), inner);
    for (std::size_t i = 0; i < primes.count(); i++) {
        const word_divisor p(primes[i]);
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
    image_primes primes(plan.prime_bits, plan.value_bits);
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
