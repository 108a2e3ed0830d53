/* The product of well-filled polynomials of residues: all exponents become one (L. Kronecker, 1882), by mixed radix with
   the spans of the product, and the polynomials in one variable are multiplied as flat ones are (flat_uni.h). The
   operands are poured straight into their cells, and the product out of them. */
#include "poly/flat_residues.h"

#include "poly/flat_dense.h"
#include "poly/flat_emit.h"
#include "poly/flat_product.h"
#include "poly/flat_uni_transform.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tolvek {

namespace {

constexpr uint32_t stretch = 65536; /* terms, or cells, between two safe points */

/* What a walk over an operand carries. */
struct cell_pourer {
    const flat_shape &shape;
    const bool second;
    uni_poly &cells;
    uint32_t seen = 0;

    uint32_t place(int l, int32_t exponent) const {
        const flat_level &level = shape.level[l];
        return static_cast<uint32_t>(int64_t{exponent} - (second ? level.low_b : level.low_a)) * level.stride;
    }
    void constant(const number *x, int l, uint32_t cell) {
        for (; l < shape.count; l++) cell += place(l, 0);
        cells[cell] = static_cast<uint32_t>(x->lint_val);
        if (++seen % stretch == 0) safe_point();
    }
    /* The list p of level `depth`; l is the first live level at or below it, and `cell` the place of what is above. */
    void list(const polynode *p, int depth, int l, uint32_t cell) {
        check_stack();
        const bool live = l < shape.count && shape.level[l].depth == depth;
        for (const polynode *t = p; t; t = t->next) {
            const uint32_t c = live ? cell + place(l, t->expo) : cell;
            if (t->is_number)
                constant(t->num, l + live, c);
            else if (is_constant(t->poly))
                constant(t->poly->num, l + live, c);
            else
                list(t->poly, depth + 1, l + live, c);
        }
    }
};

void pour_cells(const polynode *p, const flat_shape &shape, bool second, uni_poly *cells) {
    uint32_t highest = 0;
    for (int l = 0; l < shape.count; l++)
        highest += (second ? shape.level[l].span_b : shape.level[l].span_a) * shape.level[l].stride;
    cells->resize(std::size_t{highest} + 1);
    std::fill(cells->begin(), cells->end(), 0);
    cell_pourer{shape, second, *cells}.list(p, 1, 0, 0);
}

void pour_out(const flat_shape &shape, const uni_poly &cells, polynode **p) {
    poly_emitter out(shape);
    pour_box(shape, out, 0, 0, 0, static_cast<uint32_t>(cells.size() - 1), [&](uint32_t cell) {
        if (cell % stretch == 0) safe_point();
        if (!cells[cell]) return false;
        out.next_number()->lint_val = static_cast<int32_t>(cells[cell]);
        return true;
    });
    out.release_to(p);
}

} // namespace

/* Measured by bench/kernels/poly.cpp (route/residues): a product in a row costs so many nanoseconds; a point of a
   transform so many for each doubling of the size and so many beside, for each prime; the way in and out of a cell so
   many. */
constexpr double row_step = 0.6, point_step = 0.5, point_rest = 4, cell_step = 10;

double residues_cost(const poly_extent &a, const poly_extent &b) {
    if (!modularmode || finf) return std::numeric_limits<double>::infinity();
    double cells = 1, last_a = 0, last_b = 0;
    for (int l = std::max(a.levels, b.levels); l > 0; l--) {
        const exponent_range ra = a.range_at(l), rb = b.range_at(l);
        const double span_a = static_cast<double>(int64_t{ra.high} - ra.low);
        const double span_b = static_cast<double>(int64_t{rb.high} - rb.low);
        last_a += span_a * cells;
        last_b += span_b * cells;
        cells *= span_a + span_b + 1;
    }
    if (cells > static_cast<double>(flat_dense_longest)) return std::numeric_limits<double>::infinity();
    const double shorter = std::min(last_a, last_b) + 1, longer = std::max(last_a, last_b) + 1;
    if (shorter < uni_limit.mult) return shorter * longer * row_step + cells * cell_step;
    const double parts = longer > 3 * shorter ? longer / shorter : 1;
    const double least = parts > 1 ? 2 * shorter : shorter + longer;
    const double points = static_cast<double>(uni_transform_points(static_cast<std::size_t>(least)));
    const uint32_t n = static_cast<uint32_t>(modulus);
    return parts * uni_transform_primes(n, static_cast<std::size_t>(shorter)) * points *
               (point_step * std::log2(points) + point_rest) +
           cells * cell_step;
}

void mult_residues(const polynode *a, const poly_extent &xa, const polynode *b, const poly_extent &xb, polynode **p) {
    flat_shape shape;
    make_flat_shape(xa, xb, flat_dense_longest, flat_dense_longest, &shape);
    assert(shape.zone == 0);
    const uni_field f(static_cast<uint32_t>(modulus));
    uni_poly of_a, of_b, product;
    pour_cells(a, shape, false, &of_a);
    if (a != b) pour_cells(b, shape, true, &of_b);
    uni_mult(f, of_a, a == b ? of_a : of_b, &product);
    pour_out(shape, product, p);
}

} // namespace tolvek
