/* Products of flat polynomials. */
#include "poly/flat_uni_transform.h"
#include "top/interrupts.h"

#include <algorithm>

namespace tolvek {

/* z[0 .. na + nb - 1) := a * b */
static void mult_by_transforms(const uni_field &f, const uint32_t *a, std::size_t na, const uint32_t *b, std::size_t nb,
                               uint32_t *z) {
    const std::size_t length = na + nb - 1;
    const uni_transformer t(f, length, std::min(na, nb));
    uni_transformer::image product;
    t.multiply(a, na, b, nb, &product);
    t.coefficients(&product, z, length);
}

/* In one piece? na >= nb */
static bool transforms_fit(const uni_field &f, std::size_t na, std::size_t nb) {
    return f.transforms() && nb >= uni_limit.mult && na <= 3 * nb && na + nb - 1 <= most_uni_points;
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
    if (!transforms_fit(f, na, nb)) return mult_parts(f, a, na, b, nb, c);
    uni_poly z(na + nb - 1);
    mult_by_transforms(f, a, na, b, nb, z.data());
    uni_add_to(f, c, z.data(), z.size());
}

void uni_mult(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *c) {
    if (a.empty() || b.empty()) return c->clear();
    uni_poly list(a.size() + b.size() - 1);
    if (transforms_fit(f, std::max(a.size(), b.size()), std::min(a.size(), b.size()))) {
        mult_by_transforms(f, a.data(), a.size(), b.data(), b.size(), list.data());
    } else {
        std::fill(list.begin(), list.end(), 0);
        add_product(f, a.data(), a.size(), b.data(), b.size(), list.data());
    }
    uni_move(&list, c);
}

} // namespace tolvek
