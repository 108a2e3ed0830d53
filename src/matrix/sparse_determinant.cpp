/* Determinants of sparse matrices: the list of methods. Interpolation is none of them; with its switch on the list goes on to
   the eliminations, as it does when interpolation declines. */
#include "language/scanner.h"
#include "matrix/elimination_work.h"
#include "numbers/int_gcd.h"
#include "top/driver.h"
#include "top/settings.h"

namespace tolvek {

namespace {

bool is_power_of_two(int64_t n) { return (n & (n - 1)) == 0; }

/* What a power is good for: modulo p an odd one must have an inverse modulo p - 1, an even one must be a power of two, and
   -1 no square. */
void judge_power(int32_t power) {
    const int64_t size = power < 0 ? -int64_t{power} : power;
    if (!lintmode || size < 2) return;
    if (!modularmode) return warning(3, "");
    if (size % 2 == 0) {
        if (modulus % 4 != 3 || !is_power_of_two(size)) warning(4, "");
        return;
    }
    if (smallgcd(static_cast<uint32_t>(size), static_cast<uint32_t>(modulus - 1)) != 1) warning(5, "");
}

bool by_minors(sparse_elimination &e) {
    if (e.n < 2 || e.n > e.cut || e.n > most_minor_rows) return false;
    if (verbose) dumpitt(" Finish by minors, rank ", e.n, 1, 0, 0);
    minor_table rows(e.n);
    for (const quolynode *&q : rows.cells) q = quol_num_0;
    row_walk walk(e.m.sparse);
    for (int i = 0; i < e.n; i++, walk.next())
        for (const colm *c = *walk; c; c = c->next) rows.at(i, c->column - 1) = c->value;
    multiply_by_determinant(rows, e.result);
    return true;
}

/* Floats, which need their pivots chosen by magnitude, and integers of a matrix that is not really sparse. */
bool by_dense_numbers(sparse_elimination &e) {
    constexpr int64_t really_sparse = 8; /* entries are fewer than one in so many */
    if (!e.all_numbers || e.n < 2 || e.m.size > most_cells || detcutoff >= 0) return false;
    if (modularmode && mod_is_prime()) return false;
    if (!flotemode && (gauss_cutoff == 1 || sparse_count(e.m.sparse, e.n) * really_sparse < e.m.size)) return false;
    e.m.to_dense();
    mat_determinant(e.m, {}, e.result);
    return true;
}

constexpr sparse_step sparse_steps[] = {
    by_minors, by_dense_numbers, by_sparse_words, by_sparse_bareiss, by_sparse_fractions,
};

/* Are there no denominators? */
bool has_no_denominators(sparse_frame *head, int32_t rows) {
    row_walk walk(head);
    for (int32_t r = 0; r < rows; r++, walk.next())
        for (const colm *c = *walk; c; c = c->next)
            if (!c->value->is_num && c->value->den) return false;
    return true;
}

} // namespace

void sparse_determinant(matrix_value &m, const determinant_hints &hints, quolynode **result) {
    constexpr int cut_by_default = 3;
    judge_power(hints.power);
    sparse_elimination e{m,
                         result,
                         m.rows,
                         sparse_allpolys(m.sparse, m.rows),
                         has_no_denominators(m.sparse, m.rows),
                         detcutoff < 0 ? cut_by_default : detcutoff};
    const bool no_denoms = e.no_denoms;
    for (const sparse_step step : sparse_steps)
        if (step(e)) break;
    divide_fct(result, hints.factor, no_denoms);
}

} // namespace tolvek
