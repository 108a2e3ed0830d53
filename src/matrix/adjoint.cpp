#include "gcd/gcd.h"
#include "language/scanner.h"
#include "matrix/elimination_work.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

/* minor := m without a row and a column; borrowed. */
void borrow_minor(const matrix_value &m, int row, int column, matrix_value &minor) {
    minor.make_borrowed(m.rows - 1, m.rows - 1);
    int64_t to = 0;
    for (int j = 0; j < m.rows; j++)
        for (int i = 0; i < m.rows; i++)
            if (i != row && j != column) minor.cell(to++) = m.cell(i + int64_t{j} * m.rows);
}

/* Each entry by its own determinant: right in every ring, and for singular matrices. */
void classic_method(matrix_value &m) {
    if (m.rows == 1) return quoly_set(1, &m.cell(0));
    matrix_value result;
    result.make_dense(m.rows, m.rows);
    for (int i = 0; i < m.rows; i++)
        for (int j = 0; j < m.rows; j++) {
            matrix_value minor;
            borrow_minor(m, j, i, minor);
            quolynode **entry = &result.cell(i + int64_t{j} * m.rows);
            quoly_set(1, entry);
            mat_determinant(minor, {}, entry);
            if ((i + j) % 2) quoly_inplace(*entry);
            safe_point();
        }
    m.take(result);
}

/* det m^-1; false for a singular matrix. */
bool inversion_method(matrix_value &m) {
    matrix_value copy;
    copy.copy_from(m);
    quoly_handle det;
    quoly_set(1, det.slot());
    mat_determinant(copy, {}, det.slot());
    if (quoly_is_zero(det.get())) return false;
    mat_inverse(m);
    for (int64_t i = 0; i < m.size; i++) fast_quoly_mult(&m.cell(i), det.get());
    return true;
}

bool adjoint_of_numbers(matrix_value &m) {
    if (modularmode && mod_is_prime()) return inversion_method(m);
    if (lintmode && !modularmode) array_error(62, token);
    return adjoint_of_integers(m);
}

} // namespace

void adjoint(matrix_value &m) {
    gcd_caching cache;
    m.own();
    m.fill_holes();
    const elimination entries(m, nullptr);
    const bool done = entries.all_numbers ? adjoint_of_numbers(m) : !entries.no_denoms && inversion_method(m);
    if (!done) classic_method(m);
}

bool by_cofactors(elimination &e) {
    if (!e.invert() || !e.no_denoms || !has_zero_divisors()) return false;
    matrix_value copy;
    copy.copy_from(e.m);
    quoly_handle det;
    quoly_set(1, det.slot());
    mat_determinant(copy, {}, det.slot());
    if (quoly_is_zero(det.get())) array_error(44, token);
    check_pivot(det.get());
    classic_method(e.m);
    for (int64_t i = 0; i < e.m.size; i++) fast_quoly_quot(&e.m.cell(i), det.get(), 0);
    return true;
}

} // namespace tolvek
