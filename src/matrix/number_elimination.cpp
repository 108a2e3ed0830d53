/* Determinants and inverses of matrices of numbers: on flat arrays, in each kind of ring. */
#include "language/scanner.h"
#include "matrix/elimination_work.h"
#include "matrix/integer_determinant.h"
#include "matrix/word_primes.h"
#include "numbers/flat_chinese.h"
#include "numbers/handles.h"
#include "numbers/modular.h"
#include "top/interrupts.h"
#include "top/settings.h"

#include <cmath>

namespace tolvek {

static std::size_t index_of(int i) { return static_cast<std::size_t>(i); }

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

static void tell_elimination(const elimination &e) {
    if (!verbose) return;
    dumpitt("Standard G.E. method, rank ", e.n, 1, 0, 1);
    if (!e.invert()) return;
    dumpitt(" Now inverting upper triangular matrix, rank ", e.n, 1, 0, 0);
    dumpitt("Restoring row and column ops. \n", -1, 1, 0, 0);
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

/* ---- integers ---- */

/* The residues as integers in the chain form, or entries that are integers already. */
class integer_cells {
  public:
    explicit integer_cells(elimination &e) : n(e.n) {
        cells.make_dense(n, n);
        const bool modular = modularmode;
        chain_form chains;
        for (int64_t i = 0; i < cells.size; i++)
            if (modular)
                quoly_set_int64(e.m.cell(i)->numb->lint_val, &cells.cell(i));
            else
                quoly_assign(e.m.cell(i), &cells.cell(i));
    }
    ~integer_cells() {
        chain_form chains;
        cells.clear();
    }
    integer_cells(const integer_cells &) = delete;
    integer_cells &operator=(const integer_cells &) = delete;
    integer_matrix view() { return {cells.cells(), n}; }

  private:
    int n;
    matrix_value cells;
};

/* The residues modulo one prime after the other of det A^-1, for a matrix A with the determinant det other than 0. */
class adjoint_images {
  public:
    explicit adjoint_images(const integer_matrix &matrix) : m(matrix) {
        const int count = word_primes_for(hadamard_bounds(m).least() + 1);
        images.resize(index_of(count) * cells());
    }
    void compute(const number *det) {
        word_primes candidates;
        word_matrix image(m.n, m.n);
        while (primes.size() * cells() < images.size()) {
            const uni_field f(candidates.next());
            m.residues(f.p, &image);
            if (word_invert(f, &image, nullptr)) keep(f, chain_modulo(det, f.p), image);
        }
    }
    /* x := the entry, at i + j n. The values' order is that of the residues. */
    chinese_values values() const { return chinese_values(primes.data(), primes.size()); }
    void entry(chinese_values &values_of, std::size_t at, number *x) { values_of.value(&images[at], cells(), x); }

  private:
    std::size_t cells() const { return index_of(m.n) * index_of(m.n); }
    void keep(const uni_field &f, uint32_t det, word_matrix &image) {
        uint32_t *to = &images[primes.size() * cells()];
        for (int i = 0; i < m.n; i++)
            for (int j = 0; j < m.n; j++) to[index_of(j) * index_of(m.n) + index_of(i)] = f.product(image[i][j], det);
        primes.push(f.p);
        safe_point();
    }

    const integer_matrix &m;
    buffer<uint32_t> primes, images;
};

/* Each cell of e := give(entry of the adjoint), where det is not 0. */
template <class Give>
static void adjoint_to_cells(elimination &e, const integer_matrix &m, const number *det, Give give) {
    adjoint_images images(m);
    images.compute(det);
    chinese_values values = images.values();
    for (int64_t i = 0; i < e.m.size; i++) {
        number_handle x;
        images.entry(values, static_cast<std::size_t>(i), &x);
        give(&x, &e.m.cell(i));
        safe_point();
    }
}

/* ---- residues modulo a composite number: over the integers, and back ---- */

static uint32_t residue_of_determinant(const integer_matrix &m, number *det) {
    integer_determinant(m, det);
    return chain_modulo(det, static_cast<uint32_t>(int32_t{modulus}));
}

static void by_lifts(elimination &e) {
    integer_cells integers(e);
    number_handle det;
    const uint32_t residue = residue_of_determinant(integers.view(), &det);
    if (!e.invert()) return multiply_by_residue(e, residue);
    const int32_t inverse = mod_inverse(static_cast<int32_t>(residue)); /* error 85 */
    const integer_matrix m = integers.view();
    adjoint_to_cells(e, m, &det, [&](const number *x, quolynode **cell) {
        const int32_t entry = static_cast<int32_t>(chain_modulo(x, static_cast<uint32_t>(int32_t{modulus})));
        set_residue(static_cast<uint32_t>(modmult(entry, inverse)), cell);
    });
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
    integer_cells integers(e);
    const integer_matrix m = integers.view();
    quoly_handle det;
    quoly_set(0, det.slot());
    integer_determinant(m, det->numb);
    if (quoly_is_zero(det.get())) array_error(44, token);
    if (verbose) dumpitt("Modular algorithm, counting to ", primes_told(hadamard_bounds(m).least()), 1, 0, 0);
    adjoint_to_cells(e, m, det->numb, [&](number *x, quolynode **cell) {
        scalar_to_quoly(x, cell);
        fast_quoly_quot(cell, det.get(), 0);
    });
    if (verbose) dumpitt("Finishing up Chinese Remainder Theorem.\n", -1, 1, 0, 0);
    return true;
}

/* ---- floats ---- */

namespace {

/* A square of floats, row by row, on which elimination goes with the pivot of largest magnitude in half of the columns. */
class float_elimination {
  public:
    explicit float_elimination(elimination &e)
        : n(e.n), cells(index_of(n) * index_of(n)), rows(index_of(n)), columns(index_of(n)) {
        for (int i = 0; i < n; i++)
            for (int j = 0; j < n; j++) at(i, j) = e.cell(i, j)->numb->flote_val;
    }
    long double &at(int row, int column) { return cells[index_of(row) * index_of(n) + index_of(column)]; }

    long double determinant(int minors_cut) {
        long double product = 1;
        for (int k = 0; k < n; k++) {
            if (!place_pivot(k)) return 0;
            if ((rows[index_of(k)] != k) != (columns[index_of(k)] != k)) product = -product;
            if (n - k == 2 && minors_cut >= 2)
                return product * (at(k, k) * at(k + 1, k + 1) - at(k, k + 1) * at(k + 1, k));
            product *= at(k, k);
            eliminate(k);
        }
        return product;
    }
    bool invert() {
        for (int k = 0; k < n; k++) {
            if (!place_pivot(k)) return false;
            eliminate(k);
        }
        invert_upper_triangle();
        for (int k = n - 1; k >= 0; k--) restore_column(k);
        for (int k = n - 1; k >= 0; k--) exchange_columns(rows[index_of(k)], k);
        for (int k = n - 1; k >= 0; k--) exchange_rows(columns[index_of(k)], k);
        return true;
    }

  private:
    void exchange(long double &a, long double &b) {
        const long double kept = a;
        a = b;
        b = kept;
    }
    void exchange_rows(int i, int k) {
        for (int j = 0; j < n && i != k; j++) exchange(at(i, j), at(k, j));
    }
    void exchange_columns(int i, int k) {
        for (int j = 0; j < n && i != k; j++) exchange(at(j, i), at(j, k));
    }
    bool place_pivot(int k) {
        int row = -1, column = -1;
        for (int j = k; j < k + (n - k + 1) / 2; j++) {
            for (int i = k; i < n; i++)
                if (at(i, j) != 0 && (row < 0 || std::fabs(at(i, j)) > std::fabs(at(row, column)))) {
                    row = i;
                    column = j;
                }
            if (row < 0) return false;
        }
        rows[index_of(k)] = row;
        columns[index_of(k)] = column;
        exchange_rows(row, k);
        exchange_columns(column, k);
        return true;
    }
    /* Row k is divided by its pivot and subtracted from the lower rows; the pivot and the multipliers stay. */
    void eliminate(int k) {
        const long double inverse = 1 / at(k, k);
        for (int j = k + 1; j < n; j++) at(k, j) *= inverse;
        for (int i = k + 1; i < n; i++) {
            const long double factor = at(i, k);
            if (factor == 0) continue;
            for (int j = k + 1; j < n; j++) at(i, j) -= factor * at(k, j);
            safe_point();
        }
    }
    void invert_upper_triangle() {
        for (int column = n - 1; column > 0; column--)
            for (int row = column - 1; row >= 0; row--) {
                long double sum = at(row, column);
                for (int k = row + 1; k < column; k++) sum += at(row, k) * at(k, column);
                at(row, column) = -sum;
                safe_point();
            }
    }
    void restore_column(int k) {
        buffer<long double> factors(index_of(n));
        const long double inverse = 1 / at(k, k);
        at(k, k) = 1;
        for (int i = k + 1; i < n; i++) {
            factors[index_of(i)] = at(i, k);
            at(i, k) = 0;
        }
        for (int row = 0; row < n; row++) {
            long double x = at(row, k);
            for (int i = k + 1; i < n; i++) x -= at(row, i) * factors[index_of(i)];
            at(row, k) = x * inverse;
            safe_point();
        }
    }

    int n;
    buffer<long double> cells;
    buffer<int> rows, columns;
};

} // namespace

bool by_extended_precision(elimination &e) {
    if (!e.all_numbers || !flotemode || (gauss_cutoff == 1 && !e.invert())) return false;
    float_elimination floats(e);
    tell_elimination(e);
    if (!e.invert()) {
        quoly_handle det;
        quoly_set_flote(floats.determinant(e.minors_cut), det.slot());
        e.multiply_result(det.get());
        return true;
    }
    if (!floats.invert()) array_error(44, token);
    for (int i = 0; i < e.n; i++)
        for (int j = 0; j < e.n; j++) quoly_set_flote(floats.at(i, j), &e.cell(i, j));
    return true;
}

} // namespace tolvek
