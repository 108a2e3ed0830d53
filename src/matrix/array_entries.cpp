/* Operations entry by entry on dense matrices: one loop for all shapes and ownerships. */
#include "matrix/array_arithmetic.h"
#include "top/interrupts.h"

namespace tolvek {

/* *a := *a op b, where *a belongs to the expression. */
static void combine_in_place(int op, quolynode **a, const quolynode *b) {
    switch (op) {
    case '+': better_quoly_add(*a, b, a); break;
    case '-': better_quoly_sub(*a, b, a); break;
    case '*': fast_quoly_mult(a, b); break;
    case '/': fast_quoly_quot(a, b, 0); break;
    default: quoly_mod_or_div(*a, b, a, op);
    }
}

/* *r := a op b; *r may be either. */
static void combine_into(int op, const quolynode *a, const quolynode *b, quolynode **r) {
    switch (op) {
    case '+': quoly_add(a, b, r); break;
    case '-': quoly_sub(a, b, r); break;
    case '*': quoly_mult(a, b, r); break;
    case '/': quoly_quot(a, b, r, 0); break;
    default: quoly_mod_or_div(a, b, r, op);
    }
}

/* The entry of a matrix, or the scalar for every place. */
static const quolynode *entry_of(const matrix_value &m, int64_t i) {
    return m.is_scalar() ? m.scalar.get() : m.cell(i);
}

void entrywise(int op, matrix_value &a, matrix_value &b) {
    a.fill_holes();
    b.fill_holes();
    const matrix_value &shape = a.is_scalar() ? b : a;
    const int64_t size = shape.size;
    if (!a.is_scalar() && a.owned) {
        for (int64_t i = 0; i < size; i++) {
            safe_point();
            combine_in_place(op, &a.cell(i), entry_of(b, i));
        }
    } else if (!b.is_scalar() && b.owned) {
        for (int64_t i = 0; i < size; i++) {
            safe_point();
            combine_into(op, entry_of(a, i), b.cell(i), &b.cell(i));
        }
        a.take(b);
    } else {
        matrix_value fresh;
        fresh.make_dense(shape.rows, shape.cols());
        for (int64_t i = 0; i < size; i++) {
            safe_point();
            combine_into(op, entry_of(a, i), entry_of(b, i), &fresh.cell(i));
        }
        a.take(fresh);
    }
    b.clear();
}

} // namespace tolvek
