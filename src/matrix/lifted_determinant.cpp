/* With a random vector b, the solution x of x A = b has a denominator that nearly always is the largest invariant factor of
   A, which for nearly all matrices is the determinant but for a small cofactor. x is found modulo a power of a prime p,
   digit by digit: the next digits are d = r A^-1 modulo p for what remains to be solved, r, and then r := (r - d A) / p.
   What remains stays below a bound that the entries of A set, so that residues of r modulo a few further primes tell it.
   One random combination of the components of x is all that is kept: its denominator is theirs, nearly always, and in
   every case a divisor of the determinant. */
#include "matrix/integer_determinant.h"
#include "matrix/word_primes.h"
#include "numbers/chinese.h"
#include "numbers/flat_divide.h"
#include "numbers/flat_ratio.h"
#include "numbers/handles.h"
#include "numbers/int_mult.h"
#include "numbers/modular.h"
#include "poly/flat_uni_work.h"
#include "top/interrupts.h"

#include <cmath>
#include <cstdlib>

namespace tolvek {

namespace {

using words = buffer<uint32_t>;

std::size_t index_of(int i) { return static_cast<std::size_t>(i); }

/* x += c M for the rows of M from `first` on, one for each entry of c. */
void add_combination(const uni_field &f, uint32_t *x, const words &c, const word_matrix &m, int first = 0) {
    const int count = static_cast<int>(c.size());
    buffer<const uint32_t *> rows(c.size());
    for (int i = 0; i < count; i++) rows[index_of(i)] = m[first + i];
    word_add_rows(f, x, rows.data(), c.data(), count, m.cols());
}

/* A residue modulo p, read as the integer from -(p - 1) / 2 on. */
int64_t symmetric(uint32_t r, uint32_t p) { return r > p / 2 ? int64_t{r} - p : r; }
uint32_t to_residue(int64_t v, uint32_t p) {
    const int64_t r = v % int64_t{p};
    return static_cast<uint32_t>(r < 0 ? r + p : r);
}

/* ---- what remains, by residues modulo some primes q whose product is above twice its entries ---- */

class remainder_vector {
  public:
    remainder_vector(const integer_matrix &m, uint32_t p, word_primes &primes, int count)
        : n(m.n), modulus_p(p), a(count * m.n, m.n), r(index_of(count * m.n)) {
        word_matrix image(n, n);
        uint32_t product = 1;
        for (int k = 0; k < count; k++) {
            const uni_field f(primes.next());
            fields.push(f);
            by_p.push(f.inverse(p % f.p));
            weights.push(product);
            product = modulus_p.product(product, f.p % p);
            m.residues(f.p, &image);
            for (int i = 0; i < n; i++) {
                std::memcpy(a[k * n + i], image[i], index_of(n) * sizeof(uint32_t));
                uni_scale_row(f, a[k * n + i], index_of(n), f.negative(by_p.back()));
            }
            for (int j = 0; j < k; j++) inverses.push(f.inverse(fields[index_of(j)].p % f.p));
        }
        total = product;
    }

    void set(const int64_t *values) {
        for (std::size_t k = 0; k < fields.size(); k++)
            for (int i = 0; i < n; i++) image(k)[i] = to_residue(values[i], fields[k].p);
    }
    /* r := (r - d A) / p */
    void take_digits(const int64_t *digits) {
        words d(index_of(n));
        for (std::size_t k = 0; k < fields.size(); k++) {
            const uni_field &f = fields[k];
            for (std::size_t i = 0; i < d.size(); i++) d[i] = to_residue(digits[i], f.p);
            uni_scale_row(f, image(k), d.size(), by_p[k]);
            add_combination(f, image(k), d, a, static_cast<int>(k) * n);
            safe_point();
        }
    }
    /* residues[i] := the integer i modulo p. */
    void modulo_p(words *residues) {
        words digits(fields.size());
        for (int i = 0; i < n; i++) (*residues)[index_of(i)] = entry_modulo_p(i, digits.data());
    }

  private:
    uint32_t *image(std::size_t k) { return r.data() + k * index_of(n); }

    /* The digits of the mixed radix (H. Garner, 1959); the last one tells the sign. */
    uint32_t entry_modulo_p(int i, uint32_t *digits) {
        uint32_t sum = 0;
        const uint32_t *inverse = inverses.data();
        for (std::size_t k = 0; k < fields.size(); k++) {
            const uni_field &f = fields[k];
            uint32_t v = image(k)[i];
            for (std::size_t j = 0; j < k; j++) v = f.product(f.difference(v, digits[j] % f.p), *inverse++);
            digits[k] = v;
            sum = modulus_p.sum(sum, modulus_p.product(v % modulus_p.p, weights[k]));
        }
        const std::size_t last = fields.size() - 1;
        return digits[last] > fields[last].p / 2 ? modulus_p.difference(sum, total) : sum;
    }

    int n;
    uni_field modulus_p;
    buffer<uni_field> fields;
    word_matrix a; /* -A / p modulo one prime after the other */
    words r;       /* the entries, in the same order */
    words by_p;    /* 1 / p modulo each */
    words weights; /* modulo p: the product of the primes before each; of all */
    uint32_t total;
    words inverses; /* modulo each prime those of the primes before it */
};

/* ---- small random integers ---- */

/* The values need not be good: they only have to differ from what makes a matrix special (D. Lehmer, 1949). */
struct small_random {
    uint64_t state = 20260131;
    int64_t next() {
        state = state * 16807 % 2147483647;
        return static_cast<int64_t>(state % 65535) - 32767;
    }
};
constexpr double random_bits = 15;

/* ---- the lifting ---- */

/* The digits of a combination of the components of x in radix p, each from 0 to p - 1. */
struct lifted_digits {
    uint32_t p;
    buffer<int32_t> digits;
    int64_t carry = 0;

    void add(const int64_t *values, const int64_t *factors, int n) {
        __int128 sum = carry;
        for (int i = 0; i < n; i++) sum += static_cast<__int128>(values[i]) * factors[i];
        __int128 digit = sum % p;
        if (digit < 0) digit += p;
        digits.push(static_cast<int32_t>(digit));
        carry = static_cast<int64_t>((sum - digit) / p);
    }
    /* v := the value, m := p^count */
    void value(flat_value *v, flat_value *m) {
        buffer<int32_t> radices;
        for (std::size_t i = 0; i < digits.size(); i++) radices.push(static_cast<int32_t>(p));
        number_handle x, power;
        number_from_mixed_radix(digits.data(), radices.data(), static_cast<int>(digits.size()), &x, &power);
        v->set(&x);
        m->set(&power);
    }
};

/* Finds the digits of u x for x A = b with random u and b. `inverse` is that of A modulo p. */
void lift(const integer_matrix &m, const word_matrix &inverse, int steps, double entry_bits, word_primes &primes,
          lifted_digits *result) {
    const int n = m.n;
    const uni_field f(result->p);
    const double remainder_bits = std::fmax(entry_bits + std::log2(n), random_bits) + 3;
    remainder_vector r(m, f.p, primes, word_primes_for(remainder_bits));
    buffer<int64_t> factors(index_of(n)), digits(index_of(n));
    small_random random;
    for (int64_t &d : digits) d = random.next();
    for (int64_t &u : factors) u = random.next();
    r.set(digits.data());
    words residues(index_of(n)), next(index_of(n));
    for (int step = 0; step < steps; step++) {
        r.modulo_p(&residues);
        std::memset(next.data(), 0, index_of(n) * sizeof(uint32_t));
        add_combination(f, next.data(), residues, inverse);
        for (std::size_t i = 0; i < index_of(n); i++) digits[i] = symmetric(next[i], f.p);
        result->add(digits.data(), factors.data(), n);
        r.take_digits(digits.data());
        safe_point();
    }
}

/* Bits of the entry with the most digits, rounded up to digits. */
double largest_entry_bits(const integer_matrix &m) {
    int digits = 0;
    for (int j = 0; j < m.n; j++)
        for (int i = 0; i < m.n; i++)
            if (m.entry(i, j)->num_len > digits) digits = m.entry(i, j)->num_len;
    if (digits > 1) return digit_bits * static_cast<double>(digits);
    int32_t most = 1;
    for (int j = 0; j < m.n; j++)
        for (int i = 0; i < m.n; i++) most = maxx(most, std::abs(m.entry(i, j)->num_head->digit));
    return std::log2(most) + 1;
}

/* inverse := that of A modulo one of the next three primes, *p; false if all three divide the determinant. */
bool invert_modulo_a_prime(const integer_matrix &m, word_primes &primes, word_matrix *inverse, uint32_t *p) {
    for (int tries = 0; tries < 3; tries++) {
        *p = primes.next();
        m.residues(*p, inverse);
        if (word_invert(uni_field(*p), inverse, nullptr)) return true;
    }
    return false;
}

void power_of_two(double bits, flat_value *x) {
    const size_t bit = static_cast<size_t>(bits) + 1, n = bit / limb_bits + 1;
    limb *at = x->make_room(n);
    flat_clear(at, n);
    at[n - 1] = limb{1} << bit % limb_bits;
    x->n = n;
}

/* ---- the cofactor ---- */

uint32_t flat_residue(const flat_value &x, uint32_t p) {
    return static_cast<uint32_t>(x.n ? flat_mod_limb(x.data(), x.n, p) : 0);
}

/* c := det A / d, d > 0 a divisor of it, |c| <= 2^bits; false if a prime more than that gives another value. */
bool find_cofactor(const integer_matrix &m, const flat_value &d, double bits, word_primes &primes, number *c) {
    const int count = word_primes_for(bits + 1) + 1;
    buffer<int32_t> residues, moduli;
    word_matrix images(m.n, m.n);
    while (static_cast<int>(moduli.size()) < count) {
        const uni_field f(primes.next());
        const uint32_t divisor = flat_residue(d, f.p);
        if (divisor == 0) continue;
        m.residues(f.p, &images);
        const uint32_t det = word_determinant(f, &images);
        moduli.push(static_cast<int32_t>(f.p));
        residues.push(static_cast<int32_t>(f.product(det, f.inverse(divisor))));
    }
    number_from_residues(residues.data(), moduli.data(), count - 1, 1, c);
    return chain_modulo(c, static_cast<uint32_t>(moduli.back())) == static_cast<uint32_t>(residues.back());
}

} // namespace

bool determinant_by_lifting(const integer_matrix &m, const hadamard_bounds &bounds, number *x) {
    word_primes primes;
    flat_value divisor, numerator;
    {
        word_matrix inverse(m.n, m.n);
        lifted_digits solution{};
        if (!invert_modulo_a_prime(m, primes, &inverse, &solution.p)) return false;
        /* By G. Cramer's rule a component of x is the determinant of A with a row that is b, over that of A. */
        const double numerator_bits = bounds.rows + 2 * random_bits + 1.5 * std::log2(m.n) + 1;
        const double bits = numerator_bits + bounds.least() + 4;
        lift(m, inverse, static_cast<int>(bits / word_prime_bits) + 1, largest_entry_bits(m), primes, &solution);
        flat_value v, modulus_power, limit;
        solution.value(&v, &modulus_power);
        power_of_two(numerator_bits, &limit);
        flat_ratio(numerator, divisor, v, modulus_power, limit);
    }
    const double found = static_cast<double>(flat_bits(divisor.data(), divisor.n)) - 1;
    number_handle cofactor, d;
    if (!find_cofactor(m, divisor, bounds.least() - found, primes, &cofactor)) return false;
    chain_from_limbs(divisor.data(), divisor.n, 1, &d);
    fast_mult(&cofactor, &d, x);
    return true;
}

} // namespace tolvek
