#include "matrix/determinant.h"

#include "gcd/gcd.h"
#include "language/scanner.h"
#include "matrix/elimination_work.h"
#include "numbers/int_gcd.h"
#include "numbers/modular.h"
#include "poly/divide.h"
#include "poly/measures.h"
#include "top/settings.h"

namespace tolvek {

/* ---- the choice for dense matrices ---- */

static constexpr elimination_step dense_steps[] = {
    by_residues,  by_extended_precision,   by_integers, by_adjoint_of_integers, by_fraction_free_steps,
    by_cofactors, by_gaussian_elimination,
};

static void eliminate(elimination &e) {
    for (const elimination_step step : dense_steps)
        if (step(e)) return;
}

/* Remaining rows that are expanded by minors: what detcutoff says, or by the size. */
static int rows_for_minors(int n, bool all_numbers) {
    if (detcutoff >= 0) return minn(detcutoff, most_minor_rows);
    if (all_numbers || n <= 2) return 2;
    if (n <= 5) return n - 1;
    return n == 6 ? 4 : 0;
}

elimination::elimination(matrix_value &matrix, quolynode **product) : m(matrix), result(product), n(matrix.rows) {
    for (int64_t i = 0; i < m.size && no_denoms; i++) {
        const quolynode *q = m.cell(i);
        if (q->is_num) continue;
        all_numbers = false;
        no_denoms = q->den == nullptr;
    }
    if (!invert()) minors_cut = rows_for_minors(n, all_numbers);
}

void elimination::swap_rows(int i, int k) {
    for (int column = 0; column < n; column++) {
        quolynode *kept = cell(i, column);
        cell(i, column) = cell(k, column);
        cell(k, column) = kept;
    }
}

void elimination::swap_columns(int i, int k) {
    for (int row = 0; row < n; row++) {
        quolynode *kept = cell(row, i);
        cell(row, i) = cell(row, k);
        cell(row, k) = kept;
    }
}

void tell_elimination(const elimination &e) {
    if (!verbose) return;
    dumpitt("Standard G.E. method, rank ", e.n, 1, 0, 1);
    if (!e.invert()) return;
    dumpitt(" Now inverting upper triangular matrix, rank ", e.n, 1, 0, 0);
    dumpitt("Restoring row and column ops. \n", -1, 1, 0, 0);
}

/* ---- pivots ---- */

static int64_t quoly_mass(const quolynode *q) {
    int64_t mass = poly_mass(q->num, 1, 1);
    if (q->den) mass += poly_mass(q->den, 1, 1);
    return mass;
}

int64_t entry_mass(const quolynode *q) {
    if (!q->is_num) return quoly_mass(q);
    return lintmode ? 1 : q->numb->num_len;
}

static bool larger_number(const number *a, const number *b) {
    return lintmode && modularmode ? false : abs_larger(a, b);
}

static int32_t leading_residue(const quolynode *q) {
    return (q->is_num ? q->numb : leading_coef(q->num)->num)->lint_val;
}

bool has_zero_divisors() { return modularmode && !mod_is_prime(); }

bool is_pivot(const quolynode *q) {
    if (!has_zero_divisors()) return true;
    const int32_t x = leading_residue(q);
    return x != 0 && smallgcd(static_cast<uint32_t>(x), static_cast<uint32_t>(int32_t{modulus})) == 1;
}

void check_pivot(const quolynode *pivot) {
    if (!is_pivot(pivot)) mod_inverse(leading_residue(pivot)); /* error 85 */
}

/* The best pivot so far. */
struct pivot_choice {
    const quolynode *number = nullptr;
    int64_t mass = 0;
    pivot_place number_at, value_at, useless_at;

    void consider(const quolynode *q, int row, int column) {
        if (!is_pivot(q)) {
            useless_at = {row, column};
            return;
        }
        if (q->is_num) {
            if (number && !larger_number(q->numb, number->numb)) return;
            number = q;
            number_at = {row, column};
            return;
        }
        const int64_t its_mass = quoly_mass(q);
        if (value_at.found() && its_mass >= mass) return;
        mass = its_mass;
        value_at = {row, column};
    }
    pivot_place best() const {
        if (number_at.found()) return number_at;
        return value_at.found() ? value_at : useless_at;
    }
};

pivot_place find_good_spot(elimination &e, int k, int columns) {
    pivot_choice choice;
    for (int column = k; column < k + columns; column++) {
        for (int row = k; row < e.n; row++) {
            const quolynode *q = e.cell(row, column);
            if (!quoly_is_zero(q)) choice.consider(q, row, column);
        }
        if (!choice.best().found()) break;
    }
    return choice.best();
}

pivot_place place_pivot(elimination &e, int k, int columns) {
    const pivot_place at = find_good_spot(e, k, columns);
    if (!at.found()) return at;
    if (at.row != k) e.swap_rows(at.row, k);
    if (at.column != k) e.swap_columns(at.column, k);
    if (!e.invert() && (at.row != k) != (at.column != k)) quoly_inplace(*e.result);
    return at;
}

/* ---- the entries ---- */

void divide_fct(quolynode **result, const polynode *factor, bool no_denoms) {
    if (!factor) return;
    poly_handle copy;
    quoly_handle divisor;
    poly_assign(factor, copy.slot());
    poly_to_value(copy, divisor.slot());
    if (quoly_is_zero(divisor.get())) array_error(305, token);
    const quolynode *q = *result;
    if (!no_denoms || q->is_num || q->den) return fast_quoly_quot(result, divisor.get(), 0);
    poly_handle quotient;
    int failed = 0;
    Lpoly_divide(q->num, factor, quotient.slot(), polynames, &failed);
    if (failed) array_error(305, token);
    poly_to_value(quotient, result);
}

void mat_determinant(matrix_value &m, const determinant_hints &hints, quolynode **result) {
    gcd_caching cache;
    matrix_value work;
    work.take(m);
    work.own();
    if (work.is_sparse()) return sparse_determinant(work, hints, result);
    work.fill_holes();
    elimination e(work, result);
    const bool no_denoms = e.no_denoms;
    eliminate(e);
    divide_fct(result, hints.factor, no_denoms);
}

void mat_inverse(matrix_value &m) {
    gcd_caching cache;
    m.own();
    if (m.is_sparse()) return invert_sparse(m);
    m.fill_holes();
    elimination e(m, nullptr);
    eliminate(e);
}

} // namespace tolvek
