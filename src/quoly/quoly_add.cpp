/* Sums. All families share one tree, `sum`; they differ in what becomes of the operands. */
#include "numbers/rationals.h"
#include "quoly/quoly_numbers.h"

namespace tolvek {

void number_result(void (*compute)(const number *, const number *, number *), const number *a, const number *b,
                   quolynode **r) {
    if (*r && (*r)->is_num) {
        compute(a, b, (*r)->numb);
        (*r)->array_mark = 0;
        return;
    }
    quoly_handle result;
    quoly_set(0, result.slot());
    compute(a, b, result->numb);
    result.release_to(r);
}

/* The rational layer rewrites operands and restores them. */
static quolynode *rewritable(const quolynode *q) { return const_cast<quolynode *>(q); }

static void sum(const quolynode *a, const quolynode *b, quolynode **r, bool minus) {
    if (a->is_num && b->is_num) {
        number_result(minus ? sub : num_add, a->numb, b->numb, r);
    } else if (a->is_num) {
        add_numb_rat(rewritable(a), rewritable(b), r, !minus);
    } else if (b->is_num) { /* a - b = -(b - a) */
        add_numb_rat(rewritable(b), rewritable(a), r, !minus);
        if (minus) quoly_inplace(*r);
    } else {
        add_rats(rewritable(a), rewritable(b), r, !minus);
    }
}

void quoly_add(const quolynode *a, const quolynode *b, quolynode **r) { sum(a, b, r, false); }
void quoly_sub(const quolynode *a, const quolynode *b, quolynode **r) { sum(a, b, r, true); }

/* The first operand is consumed: the sum is built in its place. */
static void consuming_sum(quolynode *a, const quolynode *b, quolynode **r, bool minus) {
    quolynode *own = a;
    sum(a, b, &own, minus);
    if (*r != a) free_quoly(r);
    *r = own;
}

void better_quoly_add(quolynode *a, const quolynode *b, quolynode **r) { consuming_sum(a, b, r, false); }
void better_quoly_sub(quolynode *a, const quolynode *b, quolynode **r) { consuming_sum(a, b, r, true); }

static void consuming_both(quolynode **a, quolynode *b, bool minus) {
    quoly_handle second;
    *second.slot() = b;
    sum(*a, b, a, minus);
}

void best_quoly_add(quolynode **a, quolynode *b) { consuming_both(a, b, false); }
void best_quoly_sub(quolynode **a, quolynode *b) { consuming_both(a, b, true); }

} // namespace tolvek
