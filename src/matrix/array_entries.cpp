/* Operations entry by entry: one loop for all shapes and owners. */
#include "matrix/array_arithmetic.h"
#include "matrix/array_map.h"
#include "quoly/calculus.h"

namespace tolvek {

/* *r := a op b; *r may be a or b, and where it is a it is consumed. */
static void combine(int op, const quolynode *a, const quolynode *b, quolynode **r) {
    const bool in_place = *r == a;
    switch (op) {
    case '+':
        if (in_place) return better_quoly_add(*r, b, r);
        return quoly_add(a, b, r);
    case '-':
        if (in_place) return better_quoly_sub(*r, b, r);
        return quoly_sub(a, b, r);
    case '*':
        if (in_place) return fast_quoly_mult(r, b);
        return quoly_mult(a, b, r);
    case '/':
        if (in_place) return fast_quoly_quot(r, b, 0);
        return quoly_quot(a, b, r, 0);
    default: quoly_mod_or_div(a, b, r, op);
    }
}

/* The result goes into the cells of an operand that is owned, the left one first. */
void entrywise(int op, matrix_value &a, matrix_value &b) {
    a.fill_holes();
    b.fill_holes();
    if (b.is_scalar()) {
        const quolynode *right = b.scalar.get();
        map_entries(a, [=](const quolynode *left, quolynode **r) { combine(op, left, right, r); });
    } else if (a.is_scalar()) {
        const quolynode *left = a.scalar.get();
        map_entries(b, [=](const quolynode *right, quolynode **r) { combine(op, left, right, r); });
        a.take(b);
    } else {
        matrix_value fresh;
        if (!a.owned && !b.owned) fresh.make_dense(a.rows, a.cols());
        matrix_value &to = a.owned ? a : b.owned ? b : fresh;
        for (int64_t i = 0; i < a.size; i++) {
            safe_point();
            combine(op, a.cell(i), b.cell(i), &to.cell(i));
        }
        if (!a.owned) a.take(to);
    }
    b.clear();
}

/* Zeros that are not stored stay 0 under each of the operators; so a division by 0 is looked for once, in front. */
void entries_with_scalar(int op, matrix_value &m, const quolynode *scalar) {
    if (op != '*' && quoly_is_zero(scalar)) {
        quoly_handle refused;
        combine(op, quol_num_0, scalar, refused.slot());
    }
    map_entries(m, [=](const quolynode *left, quolynode **r) { combine(op, left, scalar, r); });
}

void negate_value(matrix_value &m) {
    map_entries(m, [](const quolynode *q, quolynode **r) {
        if (*r == q)
            quoly_inplace(*r);
        else
            quoly_makeneg(q, r);
    });
}

/* Entries by a routine that changes a value in place. */
template <class Change> static void change_entries(matrix_value &m, Change change) {
    map_entries(m, [=](const quolynode *q, quolynode **r) {
        if (*r != q) quoly_assign(q, r);
        change(r);
    });
}

void greatest_integers(matrix_value &m) { change_entries(m, quoly_great_int); }
void magnitudes(matrix_value &m) { change_entries(m, quoly_abs); }

void evaluate_entries(matrix_value &m, const quolynode *const *values, int count) {
    change_entries(m, [=](quolynode **r) { get_evalquoly(r, values, count); });
}

} // namespace tolvek
