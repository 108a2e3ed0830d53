/* Products of flat polynomials. */
#include "poly/flat_uni_transform.h"
#include "top/interrupts.h"

#include <algorithm>

namespace tolvek {

/* *z := the na + nb - 1 coefficients of a * b. */
static void mult_by_transforms(const uni_field &f, const uint32_t *a, std::size_t na, const uint32_t *b, std::size_t nb,
                               uni_poly *z) {
    const std::size_t length = na + nb - 1;
    const uni_transformer t(f, length, std::min(na, nb));
    uni_transformer::image x, y, product;
    const bool square = a == b && na == nb;
    t.transform(a, na, &x);
    if (!square) t.transform(b, nb, &y);
    t.multiply(x, square ? x : y, &product);
    z->resize(length);
    t.coefficients(&product, z->data(), length);
}

static void add_product(const uni_field &f, const uint32_t *a, std::size_t na, const uint32_t *b, std::size_t nb,
                        uint32_t *c);

/* c[0 .. na + nb - 1) := a * b of lengths na >= nb, by products of parts: na is much above nb, or both are too long. */
static void mult_parts(const uni_field &f, const uint32_t *a, std::size_t na, const uint32_t *b, std::size_t nb,
                       uint32_t *c) {
    const std::size_t part = std::min((na + 1) / 2, std::max(nb, std::size_t{uni_limit.mult}));
    for (std::size_t from = 0; from < na; from += part)
        add_product(f, a + from, std::min(part, na - from), b, nb, c + from);
}

/* c[0 .. na + nb - 1) += a * b. */
static void add_product(const uni_field &f, const uint32_t *a, std::size_t na, const uint32_t *b, std::size_t nb,
                        uint32_t *c) {
    safe_point();
    if (na < nb) return add_product(f, b, nb, a, na, c);
    if (!f.transforms() || nb < uni_limit.mult) return uni_add_product(f, c, a, na, b, nb);
    if (na > 3 * nb || na + nb - 1 > most_uni_points) return mult_parts(f, a, na, b, nb, c);
    const std::size_t length = na + nb - 1;
    uni_poly z;
    mult_by_transforms(f, a, na, b, nb, &z);
    uni_add_to(f, c, z.data(), length);
}

void uni_mult(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *c) {
    if (a.empty() || b.empty()) return c->clear();
    uni_poly list(a.size() + b.size() - 1);
    std::fill(list.begin(), list.end(), 0);
    add_product(f, a.data(), a.size(), b.data(), b.size(), list.data());
    uni_move(&list, c);
}

} // namespace tolvek
