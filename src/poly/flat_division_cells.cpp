/* Cells of long integers. */
#include "poly/flat_division_cells.h"

#include "numbers/flat_divide.h"
#include "numbers/flat_pour.h"

namespace tolvek {

static int bit_length(int64_t n) { return n > 0 ? 64 - __builtin_clzll(static_cast<uint64_t>(n)) : 0; }

long_cells::long_cells(uint32_t cells, const poly_extent &a, const poly_extent &b, const number *leading,
                       int quotient_bits)
    : width(static_cast<std::size_t>(limbs_for(std::max(a.bits, b.bits + bit_length(b.terms) + quotient_bits) + 2))),
      most_bits(static_cast<std::size_t>(quotient_bits)) {
    word.resize(cells * width);
    flat_clear(word.data(), word.size());
    magnitude.resize(width);
    quotient.resize(width);
    rest.resize(width);
    lead = places[static_cast<std::size_t>(load(leading))];
}

int64_t long_cells::keep(const limb *m, std::size_t n, bool negative) {
    places.push({limbs.size(), n, negative});
    for (std::size_t i = 0; i < n; i++) limbs.push(m[i]);
    return static_cast<int64_t>(places.size()) - 1;
}

int64_t long_cells::load(const number *x) {
    const poured_limbs m(x);
    return keep(m.data, m.n, num_sign(x) < 0);
}

void long_cells::add(uint32_t cell, const number *x) {
    const poured_limbs m(x);
    if (num_sign(x) < 0)
        flat_sub(at(cell), at(cell), width, m.data, m.n);
    else
        flat_add(at(cell), at(cell), width, m.data, m.n);
}

division_step long_cells::divide(uint32_t cell, int64_t *q) {
    const limb *c = at(cell);
    const bool negative = static_cast<int64_t>(c[width - 1]) < 0;
    flat_clear(magnitude.data(), width);
    if (negative)
        flat_sub(magnitude.data(), magnitude.data(), c, width);
    else
        flat_copy(magnitude.data(), c, width);
    const std::size_t n = flat_length(magnitude.data(), width);
    if (n == 0) return division_step::zero;
    if (n < lead.limbs) return division_step::fails;
    flat_divide(quotient.data(), rest.data(), magnitude.data(), n, &limbs[lead.first], lead.limbs);
    if (flat_length(rest.data(), lead.limbs)) return division_step::fails;
    const std::size_t of_quotient = flat_length(quotient.data(), n - lead.limbs + 1);
    if (flat_bits(quotient.data(), of_quotient) > most_bits) return division_step::too_large;
    *q = keep(quotient.data(), of_quotient, negative != lead.negative);
    return division_step::found;
}

/* The cells from `from` on, at the places, -= q * y. The shorter factor is the outer one. */
void long_cells::subtract(uint32_t from, int64_t q, const int64_t *y, const uint32_t *cells, uint32_t count) {
    const place &x = places[static_cast<std::size_t>(q)];
    for (uint32_t k = 0; k < count; k++) {
        const place &z = places[static_cast<std::size_t>(y[k])];
        const place &outer = x.limbs < z.limbs ? x : z, &inner = x.limbs < z.limbs ? z : x;
        limb *c = at(from + cells[k]);
        const bool minus = x.negative == z.negative;
        for (std::size_t i = 0; i < outer.limbs && i < width; i++) {
            const std::size_t n = std::min(inner.limbs, width - i);
            const limb factor = limbs[outer.first + i], *m = &limbs[inner.first];
            const limb carry = (minus ? flat_sub_product : flat_add_product)(c + i, m, n, factor);
            const std::size_t above = width - i - n;
            (minus ? flat_sub_limb : flat_add_limb)(c + i + n, c + i + n, above, carry);
        }
    }
}

void long_cells::put(int64_t q, number *x) const {
    const place &p = places[static_cast<std::size_t>(q)];
    put_chain(&limbs[p.first], static_cast<int>(p.limbs), p.negative ? -1 : 1, x);
}

} // namespace tolvek
