/* Powers of matrices, powers modulo a number, polynomials at matrices. */
#include "language/scanner.h"
#include "matrix/array_arithmetic.h"
#include "matrix/array_map.h"
#include "matrix/determinant.h"
#include "numbers/flat_value.h"
#include "numbers/handles.h"
#include "poly/coefficients.h"

#include <cmath>

namespace tolvek {

static void check_square(const matrix_value &m, int n) {
    if (m.is_scalar() || !m.is_square()) array_error(n, token);
}

/* ---- exponents ---- */

static bool is_negative(const number *e) {
    if (flotemode) return e->flote_val < 0;
    return (lintmode ? e->lint_val : e->num_head->digit) < 0;
}

/* *r := -e, which is an integer in every ring. */
static void integer_opposite(const number *e, number *r) {
    modular_pause pause;
    makeneg(e, r);
}

/* The bits of an exponent of 0 or above. */
class exponent_bits {
  public:
    explicit exponent_bits(uint64_t e) { set(e); }
    explicit exponent_bits(const number *e) {
        constexpr long double greatest = 9.0e18L;
        if (!flotemode && !lintmode) {
            magnitude.set(e);
            return;
        }
        if (flotemode && !(e->flote_val < greatest)) array_error(32, token);
        set(flotemode ? static_cast<limb>(std::llround(e->flote_val)) : static_cast<limb>(e->lint_val));
    }
    std::size_t count() const { return flat_bits(magnitude.data(), magnitude.n); }
    bool operator[](std::size_t i) const { return magnitude.data()[i / limb_bits] >> (i % limb_bits) & 1; }

  private:
    void set(limb e) {
        magnitude.make_room(1)[0] = e;
        magnitude.n = e != 0;
    }
    flat_value magnitude;
};

/* ---- powers ---- */

static void become_identity(matrix_value &m) {
    const int32_t rows = m.rows;
    if (m.is_sparse()) {
        sparse_frame *head;
        spar_identi(&head, rows, quol_num_1);
        m.make_sparse(head, rows, rows);
        return;
    }
    m.make_dense(rows, rows);
    for (int64_t i = 0; i < m.size; i++) quoly_set(i % (rows + 1) == 0, &m.cell(i));
}

using product_routine = void (*)(const matrix_value &, const matrix_value &, matrix_value &);

/* m := m^e: from the bit below the highest one down, square, and multiply where the bit is set. `reduce` follows each
   step. */
template <class Reduce>
static void power_by_bits(matrix_value &m, const exponent_bits &e, product_routine square, Reduce reduce) {
    if (e.count() == 0) return become_identity(m);
    m.fill_holes();
    reduce(m);
    if (e.count() == 1) return;
    matrix_value base;
    base.swap(m);
    for (std::size_t i = e.count() - 1; i-- > 0;) {
        const matrix_value &last = m.is_scalar() ? base : m;
        matrix_value next;
        square(last, last, next);
        reduce(next);
        m.take(next);
        if (!e[i]) continue;
        matrix_product(m, base, next);
        reduce(next);
        m.take(next);
    }
}

static void no_reduction(matrix_value &) {}

static void any_power(matrix_value &m, const number *exponent, product_routine square) {
    check_square(m, 172);
    if (!is_negative(exponent)) return power_by_bits(m, exponent_bits(exponent), square, no_reduction);
    number_handle opposite;
    integer_opposite(exponent, &opposite);
    mat_inverse(m);
    power_by_bits(m, exponent_bits(&opposite), square, no_reduction);
}

void matrix_power(matrix_value &m, const number *exponent) { any_power(m, exponent, matrix_product); }

void alt_mat_power(matrix_value &m, const number *exponent) {
    check_square(m, 172);
    if (m.is_sparse()) array_error(242, token);
    any_power(m, exponent, fast_mat_mult);
}

/* ---- powers modulo a number ---- */

/* A remainder is taken of entries without denominators alone. */
static void refuse_denominators(matrix_value &m) {
    bool found = false;
    const auto look = [&](const quolynode *q) { found = found || (!q->is_num && q->den); };
    if (m.is_sparse()) {
        row_walk walk(m.sparse);
        for (int32_t r = 0; r < m.rows; r++, walk.next())
            for (const colm *c = *walk; c; c = c->next) look(c->value);
    } else {
        for (int64_t i = 0; i < m.size; i++) look(m.cell(i));
    }
    if (found) array_error(323, token);
}

/* A zero matrix stays 0 without a step, but its power 0 is the identity. */
void matpowermod(matrix_value &m, const number *exponent, const quolynode *modulus_value) {
    check_square(m, 172);
    if (is_negative(exponent)) array_error(287, token);
    m.fill_holes();
    const exponent_bits e(exponent);
    if (e.count() == 0) return become_identity(m);
    refuse_denominators(m);
    if (all_zero(m)) return;
    if (!modulus_value) return power_by_bits(m, e, matrix_product, no_reduction);
    power_by_bits(m, e, matrix_product, [=](matrix_value &step) { entries_with_scalar('|', step, modulus_value); });
}

/* ---- polynomials at matrices ---- */

/* Borrowed values are copied first: the sum is the expression's own. */
void add_to_diag(const quolynode *q, matrix_value &m) {
    m.own();
    if (m.is_dense()) {
        for (int64_t i = 0; i < m.size; i += m.rows + 1) {
            safe_point();
            better_quoly_add(m.cell(i), q, &m.cell(i));
        }
        return;
    }
    row_walk walk(m.sparse);
    for (int32_t r = 1; r <= m.rows; r++, walk.next()) {
        safe_point();
        quoly_handle sum;
        colm **link = find_entry(&*walk, r);
        const bool found = *link && (*link)->column == r;
        quoly_add(found ? (*link)->value : quol_num_0, q, sum.slot());
        if (found) free_colm(link);
        if (!quoly_is_zero(sum.get())) insert_at(link, r, sum);
    }
}

/* The terms of p in its top variable, from the highest on. */
class terms_of_matrix {
  public:
    explicit terms_of_matrix(const polynode *p) : whole(p), term(p), level(poly_level(p)) {
        for (int k = 1; k < level; k++) term = term->poly;
    }
    int32_t exponent() const { return term->expo; }
    void coefficient(quolynode **c) const {
        poly_handle value;
        coefficient_of_power(whole, level, term->expo, value.slot());
        poly_to_value(value, c);
    }
    bool next() { return (term = term->next) != nullptr; }

  private:
    const polynode *whole, *term;
    int level;
};

/* sum := sum * m^gap; a sum that is a scalar stands for it on the diagonal. */
static void multiply_by_power(matrix_value &sum, const matrix_value &m, int32_t gap) {
    if (gap < 0) array_error(198, token);
    matrix_value power;
    if (gap > 1 || sum.is_scalar()) {
        power.copy_from(m);
        power_by_bits(power, exponent_bits(static_cast<uint64_t>(gap)), matrix_product, no_reduction);
    }
    if (sum.is_scalar()) {
        entries_with_scalar('*', power, sum.scalar.get());
        sum.take(power);
    } else if (gap > 0) {
        matrix_value product;
        matrix_product(sum, gap > 1 ? power : m, product);
        sum.take(product);
    }
}

/* Horner's scheme from the highest exponent down. */
void quoly_at_matrix(const quolynode *p, matrix_value &m) {
    check_square(m, 241);
    m.fill_holes();
    if (p->is_num || p->is_rat) {
        become_identity(m);
        return entries_with_scalar('*', m, p);
    }
    if (p->den) array_error(186, token);
    terms_of_matrix term(p->num);
    matrix_value sum;
    term.coefficient(sum.scalar.slot());
    for (;;) {
        const int32_t exponent = term.exponent();
        if (!term.next()) {
            multiply_by_power(sum, m, exponent);
            break;
        }
        multiply_by_power(sum, m, exponent - term.exponent());
        quoly_handle coefficient;
        term.coefficient(coefficient.slot());
        add_to_diag(coefficient.get(), sum);
    }
    m.take(sum);
}

} // namespace tolvek
