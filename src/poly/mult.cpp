/* The choice among the routes of a product. */
#include "poly/mult.h"

#include "poly/flat_dense.h"
#include "poly/flat_product.h"
#include "poly/flat_residues.h"
#include "poly/mult_work.h"
#include "top/stack_limit.h"

#include <cstdlib>

namespace tolvek {

int64_t flat_product_cut = 150;
void (*fold_product)(polynode **p, pt *names) = nullptr;

bool any_relation(const pt *names) {
    for (; names; names = names->pt_next)
        if (names->pt_mod_poly) return true;
    return false;
}

/* *p := the product of two constants. */
static void mult_constants(const polynode *a, const polynode *b, polynode **p) {
    poly_handle product(new_number_term());
    number_product(a->num, b->num, product->num);
    product.release_to(p);
}

/* Is one operand a constant? Then that is all there is to do. */
static bool mult_by_constant(const polynode *a, const polynode *b, polynode **p) {
    if (is_constant(a) && is_constant(b))
        mult_constants(a, b, p);
    else if (is_constant(a))
        scalar_by_poly(a->num, b, p);
    else if (is_constant(b))
        scalar_by_poly(b->num, a, p);
    else
        return false;
    return true;
}

void mult_lists(const polynode *a, const polynode *b, polynode **p, pt *names) {
    check_stack();
    if (mult_by_constant(a, b, p)) return;
    int32_t last_a, last_b;
    int lean = 1;
    const int n_a = exp_poly_length(a, &last_a, &lean);
    const int n_b = a == b ? n_a : exp_poly_length(b, &last_b, &lean);
    if (a == b) last_b = last_a;
    if (lean) {
        simplest_poly_mult(a, b, p, n_a, n_b, last_a, last_b);
        fold_if_related(p, names);
        return;
    }
    const int cutoff = names ? names->pt_cutoff : poly_cutoff;
    if (n_a >= cutoff && n_b >= cutoff && n_a > 1 && n_b > 1)
        karatsuba_lists(a, b, last_a, last_b, p, names);
    else if (names)
        mod_standard(a, b, std::abs(n_a), std::abs(n_b), p, names);
    else
        simple_standard(a, b, std::abs(n_a), std::abs(n_b), p);
}

/* An exponent of the product is out of range: a value where the error returns. */
static void out_of_range(polynode **p) {
    error(32, blank);
    if (!*p) poly_set(1, p);
}

void poly_mult(const polynode *a, const polynode *b, polynode **p, pt *names) {
    if (mult_by_constant(a, b, p)) return;
    poly_extent xa, xb;
    measure_poly(a, &xa);
    if (a != b) measure_poly(b, &xb);
    const poly_extent &of_b = a == b ? xa : xb;
    if (product_leaves_range(xa, of_b)) return out_of_range(p);
    if (xa.terms * of_b.terms < flat_product_cut || any_relation(names) || !fits_flat_product(xa, of_b))
        mult_lists(a, b, p, names);
    else if (residues_cost(xa, of_b) < plain_flat_cost(xa, of_b))
        mult_residues(a, xa, b, of_b, p);
    else if (transform_cost(xa, of_b) < plain_flat_cost(xa, of_b))
        mult_dense(a, xa, b, of_b, p);
    else if (narrow_coefficients(xa, of_b))
        mult_flat(a, xa, b, of_b, p);
    else
        mult_lists(a, b, p, names);
}

} // namespace tolvek
