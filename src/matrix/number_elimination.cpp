/* Determinants, inverses and adjoints of matrices of residues and of integers. */
#include "language/scanner.h"
#include "matrix/elimination_work.h"
#include "matrix/integer_adjoint.h"
#include "numbers/handles.h"
#include "numbers/modular.h"
#include "top/interrupts.h"
#include "top/settings.h"

namespace tolvek {

/* *q := the plain number x, an integer in the chain form, in the modular ring in force. */
static void set_residue(uint32_t x, quolynode **q) { quoly_set(static_cast<int32_t>(x), q); }

/* ---- residues modulo a prime, and fields of tables ---- */

static void pour_residues(elimination &e, word_matrix &words) {
    for (int i = 0; i < e.n; i++)
        for (int j = 0; j < e.n; j++) words[i][j] = static_cast<uint32_t>(e.cell(i, j)->numb->lint_val);
}

static void multiply_by_residue(elimination &e, uint32_t x) {
    quoly_handle factor;
    set_residue(x, factor.slot());
    e.multiply_result(factor.get());
}

static void take_inverse(elimination &e, const word_matrix &words) {
    for (int i = 0; i < e.n; i++)
        for (int j = 0; j < e.n; j++) set_residue(words[i][j], &e.cell(i, j));
}

static void by_field(elimination &e) {
    const uni_field f = uni_field::in_force();
    word_matrix words(e.n, e.n);
    pour_residues(e, words);
    if (!e.invert()) return multiply_by_residue(e, word_determinant(f, &words));
    tell_elimination(e);
    if (!word_invert(f, &words, nullptr)) array_error(44, token);
    take_inverse(e, words);
}

/* ---- adjoints of integers ---- */

/* Each cell of the matrix := give(entry of the adjoint of m), whose determinant det is not 0. */
template <class Give>
static void adjoint_to_cells(const integer_matrix &m, const number *det, matrix_value &to, Give give) {
    const adjoint_images images(m, det);
    chinese_values values = images.values();
    for (int64_t i = 0; i < to.size; i++) {
        number_handle x;
        images.entry(values, i, &x);
        give(&x, &to.cell(i));
        safe_point();
    }
}

static void lifted_adjoint(matrix_value &m, const integer_matrix &integers, const number *det) {
    adjoint_to_cells(integers, det, m, [](const number *x, quolynode **cell) {
        set_residue(chain_modulo(x, static_cast<uint32_t>(int32_t{modulus})), cell);
    });
}

bool adjoint_of_integers(matrix_value &m) {
    integer_cells integers(m);
    number_handle det;
    integer_determinant(integers.view(), &det);
    if (det.num_head->digit == 0) return false;
    if (modularmode)
        lifted_adjoint(m, integers.view(), &det);
    else
        adjoint_to_cells(integers.view(), &det, m, [](number *x, quolynode **cell) { scalar_to_quoly(x, cell); });
    return true;
}

/* ---- residues modulo a composite number: over the integers, and back ---- */

static uint32_t residue_of_determinant(const integer_matrix &m, number *det) {
    integer_determinant(m, det);
    return chain_modulo(det, static_cast<uint32_t>(int32_t{modulus}));
}

static void by_lifts(elimination &e) {
    integer_cells integers(e.m);
    number_handle det;
    const uint32_t residue = residue_of_determinant(integers.view(), &det);
    if (!e.invert()) return multiply_by_residue(e, residue);
    if (residue == 0) array_error(44, token);
    const int32_t inverse = mod_inverse(static_cast<int32_t>(residue)); /* error 85 */
    lifted_adjoint(e.m, integers.view(), &det);
    quoly_handle factor;
    set_residue(static_cast<uint32_t>(inverse), factor.slot());
    for (int64_t i = 0; i < e.m.size; i++) fast_quoly_mult(&e.m.cell(i), factor.get());
}

bool by_residues(elimination &e) {
    if (!e.all_numbers || !modularmode) return false;
    if (mod_is_prime())
        by_field(e);
    else
        by_lifts(e);
    return true;
}

/* ---- integers in the exact ring ---- */

static constexpr int least_integer_rows = 4;

static bool are_integers(const elimination &e) {
    return e.all_numbers && !lintmode && !flotemode && e.n >= least_integer_rows;
}

bool by_integers(elimination &e) {
    if (!are_integers(e) || e.invert() || detcutoff >= 0) return false;
    const integer_matrix m{e.m.cells(), e.n};
    quoly_handle det;
    quoly_set(0, det.slot());
    integer_determinant(m, det->numb);
    e.multiply_result(det.get());
    return true;
}

/* The primes of the table that the bound would ask for: what the message counts to. */
static int primes_told(double bits) { return static_cast<int>(bits / 15.5) + 6; }

bool by_adjoint_of_integers(elimination &e) {
    if (!are_integers(e) || !e.invert() || !mod_matrix_ok) return false;
    if (verbose) dumpitt("All integers; adjoint-CRT Method; first compute det: \n", -1, 1, 0, 0);
    const integer_matrix m{e.m.cells(), e.n};
    quoly_handle det;
    quoly_set(0, det.slot());
    integer_determinant(m, det->numb);
    if (quoly_is_zero(det.get())) array_error(44, token);
    if (verbose) dumpitt("Modular algorithm, counting to ", primes_told(hadamard_bounds(m).least()), 1, 0, 0);
    adjoint_to_cells(m, det->numb, e.m, [&](number *x, quolynode **cell) {
        scalar_to_quoly(x, cell);
        fast_quoly_quot(cell, det.get(), 0);
    });
    if (verbose) dumpitt("Finishing up Chinese Remainder Theorem.\n", -1, 1, 0, 0);
    return true;
}

} // namespace tolvek
