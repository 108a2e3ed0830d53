/* Determinants of sparse matrices of numbers by way of words: residues as they are, integers by Chinese remainders, residues
   modulo a composite number as the integers that they are written as. */
#include "language/scanner.h"
#include "matrix/elimination_work.h"
#include "matrix/sparse_words.h"
#include "matrix/word_primes.h"
#include "numbers/handles.h"
#include "numbers/modular.h"
#include "top/interrupts.h"
#include "top/settings.h"

#include <cmath>

namespace tolvek {

namespace {

/* words := the entries, modulo p unless they are residues of the field itself. */
template <class Image> void pour(const sparse_elimination &e, sparse_words &words, Image image) {
    row_walk walk(e.m.sparse);
    for (int i = 0; i < e.n; i++, walk.next()) {
        words.begin_row();
        for (const colm *c = *walk; c; c = c->next) words.add(c->column - 1, image(c->value->numb));
        if (i % frame_rows == 0) safe_point();
    }
}

uint32_t residue(const number *x) { return static_cast<uint32_t>(x->lint_val); }

uint32_t determinant_of_residues(const sparse_elimination &e) {
    sparse_words words(e.n);
    pour(e, words, residue);
    return sparse_word_determinant(uni_field::in_force(), &words);
}

uint32_t determinant_modulo(const sparse_elimination &e, uint32_t p) {
    sparse_words words(e.n);
    const word_divisor divisor(p);
    if (modularmode)
        pour(e, words, [&](const number *x) { return divisor.remainder(residue(x)); });
    else
        pour(e, words, [&](const number *x) { return chain_modulo(x, divisor); });
    return sparse_word_determinant(uni_field(p), &words);
}

/* ---- the bound ---- */

/* The logarithm of a magnitude, rounded up: of 0 below 0. */
double bits_of(const number *x) {
    if (modularmode) return x->lint_val ? std::log2(static_cast<double>(x->lint_val)) : -1;
    const double lead = std::fabs(static_cast<double>(x->num_head->digit));
    if (x->num_len == 1) return lead > 0 ? std::log2(lead) : -1;
    return digit_bits * static_cast<double>(x->num_len - 1) + std::log2(lead + 1);
}

/* Of a determinant's magnitude (J. Hadamard, 1893): the norm of a row is at most its largest entry times the root of the
   number of its entries. Below 0: a row is empty. */
double row_bound(sparse_frame *rows, int n) {
    constexpr double rounding = 1e-6;
    double bits = 0;
    row_walk walk(rows);
    for (int i = 0; i < n; i++, walk.next()) {
        double largest = -1;
        int entries = 0;
        for (const colm *c = *walk; c; c = c->next, entries++) {
            const double its = bits_of(c->value->numb);
            if (its > largest) largest = its;
        }
        if (largest < 0) return -1;
        bits += largest + std::log2(entries) / 2 + rounding;
    }
    return bits;
}

double determinant_bound(const sparse_elimination &e) {
    const double rows = row_bound(e.m.sparse, e.n);
    const flipped_rows columns(e.m.sparse, e.n, e.n);
    const double by_columns = row_bound(columns.get(), e.n);
    return rows < by_columns ? rows : by_columns;
}

/* ---- integers ---- */

void integer_determinant_of(const sparse_elimination &e, number *x) {
    const double bits = determinant_bound(e);
    if (bits < 0) return special_set(0, x);
    integer_by_primes(
        bits, [&](uint32_t p) { return determinant_modulo(e, p); }, x);
}

void multiply_by_word(sparse_elimination &e, uint32_t x) {
    quoly_handle factor;
    quoly_set(static_cast<int32_t>(x), factor.slot());
    fast_quoly_mult(e.result, factor.get());
}

} // namespace

bool by_sparse_words(sparse_elimination &e) {
    if (!e.all_numbers || flotemode || (e.n < 2 && !modularmode)) return false;
    if (modularmode && mod_is_prime()) {
        if (verbose) dumpitt(" Sparse mod integral determ, size ", e.n, 1, 0, 0);
        multiply_by_word(e, determinant_of_residues(e));
        return true;
    }
    if (!modularmode && (detcutoff >= 0 || gauss_cutoff == 1)) return false;
    if (modularmode) {
        number_handle det;
        integer_determinant_of(e, &det);
        multiply_by_word(e, chain_modulo(&det, static_cast<uint32_t>(int32_t{modulus})));
        return true;
    }
    quoly_handle det;
    quoly_set(0, det.slot());
    integer_determinant_of(e, det->numb);
    fast_quoly_mult(e.result, det.get());
    return true;
}

} // namespace tolvek
