/* A proof that two polynomials have no common factor: their images in one variable modulo a prime. */
#include "numbers/modular.h"
#include "quoly/plain_work.h"
#include "top/heap.h"

#include <algorithm>

namespace tolvek {

namespace {

/* Residues for the variables below the main one. In the chain form any word prime will do. */
struct image_point {
    word_divisor prime;
    uint32_t values[most_variables];
    bool table_field;

    uint32_t times(uint32_t a, uint32_t b) const {
        if (table_field) return static_cast<uint32_t>(field_product(static_cast<int32_t>(a), static_cast<int32_t>(b)));
        return prime.product(a, b);
    }
    uint32_t minus(uint32_t a, uint32_t b) const {
        if (table_field) return a ^ b;
        return static_cast<uint32_t>(prime.remainder(uint64_t{a} + prime.n - b));
    }
    uint32_t plus(uint32_t a, uint32_t b) const {
        if (table_field) return a ^ b;
        return static_cast<uint32_t>(prime.remainder(uint64_t{a} + b));
    }
    uint32_t power(uint32_t x, uint32_t e) const {
        uint32_t y = 1;
        for (; e; e >>= 1, x = times(x, x))
            if (e & 1) y = times(y, x);
        return y;
    }
    uint32_t inverse(uint32_t x) const {
        if (table_field) return static_cast<uint32_t>(field_inverse(static_cast<int32_t>(x)));
        uint32_t y = 1;
        inverse_modulo(x, prime, &y);
        return y;
    }
    uint32_t residue(const number *x) const {
        if (lintmode) return static_cast<uint32_t>(x->lint_val);
        uint64_t r = 0;
        for (const numnode *d = x->num_head; d; d = d->next)
            r = prime.remainder((r << 28) + static_cast<uint64_t>(d->digit < 0 ? -int64_t{d->digit} : d->digit));
        return num_sign(x) < 0 && r ? static_cast<uint32_t>(prime.n - r) : static_cast<uint32_t>(r);
    }
    /* p, whose top variable is `depth` levels below the main one, by Horner's rule. */
    uint32_t value(const polynode *p, int depth) const {
        if (p->is_number) return residue(p->num);
        uint32_t sum = 0;
        for (; p; p = p->next) {
            sum = plus(sum, p->is_number ? residue(p->num) : value(p->poly, depth + 1));
            int32_t gap = p->next ? p->expo - p->next->expo : p->expo;
            if (gap) sum = times(sum, power(values[depth], static_cast<uint32_t>(gap)));
        }
        return sum;
    }
};

} // namespace

constexpr uint32_t image_prime = 2147483629; /* the largest but one below 2^31 */
constexpr int32_t longest_image = 5000;      /* the remainders of higher ones would take more than 20 ms */

/* A sequence of its own (S. Park, K. Miller, 1988): the one of the user's random numbers goes on undisturbed. */
static uint32_t next_image_value() {
    static uint64_t seed = 1;
    seed = seed * 48271 % 2147483647;
    return static_cast<uint32_t>(seed);
}

/* Coefficients by exponent. False when the degree is lost. */
static bool make_image(const polynode *p, const image_point &at, buffer<uint32_t> &image) {
    for (int32_t i = 0; i <= p->expo; i++) image.push(0);
    for (const polynode *t = p; t; t = t->next)
        image[static_cast<std::size_t>(t->expo)] = t->is_number ? at.residue(t->num) : at.value(t->poly, 1);
    return image[static_cast<std::size_t>(p->expo)] != 0;
}

/* a := a modulo b, both of the lengths given, without zeros at their ends; the length of the rest. */
static std::size_t remainder_of_images(uint32_t *a, std::size_t na, const uint32_t *b, std::size_t nb,
                                       const image_point &at) {
    const uint32_t inverse = at.inverse(b[nb - 1]);
    while (na >= nb) {
        const uint32_t factor = at.times(a[na - 1], inverse);
        uint32_t *low = a + (na - nb);
        for (std::size_t i = 0; i + 1 < nb; i++) low[i] = at.minus(low[i], at.times(b[i], factor));
        na--;
        while (na > 0 && a[na - 1] == 0) na--;
    }
    return na;
}

static bool have_unit_gcd(buffer<uint32_t> &a, buffer<uint32_t> &b, const image_point &at) {
    uint32_t *x = &a[0], *y = &b[0];
    std::size_t nx = a.size(), ny = b.size();
    while (ny > 1) {
        nx = remainder_of_images(x, nx, y, ny, at);
        std::swap(x, y);
        std::swap(nx, ny);
    }
    return ny == 1;
}

bool images_are_coprime(const polynode *u, const polynode *v) {
    if (flotemode || u->expo > longest_image || v->expo > longest_image) return false;
    image_point at{lintmode ? ring_divisor() : word_divisor(image_prime), {}, finf != 0 && lintmode};
    for (int attempt = 0; attempt < 2; attempt++) {
        for (int i = 0; i < std::min(number_polys, most_variables); i++)
            at.values[i] = at.prime.remainder(next_image_value());
        buffer<uint32_t> a, b;
        if (!make_image(u, at, a) || !make_image(v, at, b)) continue;
        return have_unit_gcd(a, b, at);
    }
    return false;
}

} // namespace tolvek
