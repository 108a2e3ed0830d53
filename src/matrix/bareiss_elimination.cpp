/* Fraction-free elimination of values without denominators (E. Bareiss, 1968): what remains after k steps are minors of
   k + 1 rows, so that the division by the pivot before is exact. */
#include "language/scanner.h"
#include "matrix/elimination_work.h"
#include "poly/divide.h"
#include "poly/measures.h"
#include "top/interrupts.h"
#include "top/settings.h"

namespace tolvek {

namespace {

/* A value without a denominator as a polynomial; a number's is kept in p. */
const polynode *as_polynomial(const quolynode *q, poly_handle &p) {
    if (!q->is_num) return q->num;
    quoly_to_poly(q, p.slot());
    return p.get();
}

/* Cell (i, j) := (pivot * (i, j) - (i, k) * (k, j)) / previous */
void fraction_free_step(elimination &e, int k, int i, int j, const quolynode *previous) {
    quoly_handle product;
    quoly_mult(e.cell(i, k), e.cell(k, j), product.slot());
    quolynode **x = &e.cell(i, j);
    fast_quoly_mult(x, e.cell(k, k));
    best_quoly_sub(x, product.release());
    if (k > 0) trial_divide(x, previous);
}

/* Does the interpolation that the switches ask for turn out too heavy for a small matrix of small entries? Then they
   are eliminated without fractions. */
bool small_for_interpolation(elimination &e) {
    if (rat_det_method_cut != 1 || detcutoff >= 0 || e.n < 4 || e.n > 6) return false;
    const int64_t most = lintmode ? mod_det_method_cut : rat_det_method_cut;
    int64_t mass = 0;
    for (int64_t i = 0; i < e.m.size && mass <= most; i++) {
        const quolynode *q = e.m.cell(i);
        mass += !q->is_num ? poly_mass(q->num, 2, 1) : lintmode ? 1 : maxx(1, quoly_max_digits(q)) / 2;
    }
    return mass <= most;
}

} // namespace

void trial_divide(quolynode **q, const quolynode *divisor) {
    if (quoly_is_zero(*q)) return;
    if (flotemode || ((*q)->is_num && divisor->is_num)) return fast_quoly_quot(q, divisor, 0);
    check_pivot(divisor);
    poly_handle a, b, quotient;
    int failed = 0;
    Lpoly_divide(as_polynomial(*q, a), as_polynomial(divisor, b), quotient.slot(), polynames, &failed);
    if (failed) {
        tolvekerror(" Gauss-Bareiss");
        abandon_statement();
    }
    poly_to_value(quotient, q);
}

bool by_fraction_free_steps(elimination &e) {
    if (e.invert() || !e.no_denoms) return false;
    const bool needed = has_zero_divisors() && e.n > e.minors_cut;
    if (gauss_cutoff != 1 && !needed && !small_for_interpolation(e)) return false;
    progress_level level;
    if (verbose) dumpitt("Gauss-Bareiss method, size ", e.n, 1, 1, 1);
    const quolynode *previous = quol_num_1;
    for (int k = 0; k < e.n - 1; k++) {
        if (verbose) dumpitt(" ", k + 1, 0, 0, 0);
        if (!place_pivot(e, k, e.n - k).found()) {
            e.finish_with_zero();
            return true;
        }
        if (k < e.n - 2) check_pivot(e.cell(k, k)); /* later steps divide by it, or find a column that it made 0 */
        for (int i = k + 1; i < e.n; i++)
            for (int j = k + 1; j < e.n; j++) {
                safe_point();
                fraction_free_step(e, k, i, j, previous);
            }
        previous = e.cell(k, k);
    }
    e.multiply_result(e.cell(e.n - 1, e.n - 1));
    level.leave(e.n, 0, 1);
    return true;
}

} // namespace tolvek
