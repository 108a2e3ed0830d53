/* A sum of two quolys of which the second is moved up by a power of the first variable. */
#include "language/tokens.h"
#include "poly/add.h"
#include "poly/model_work.h"
#include "quoly/quoly.h"

#include <cassert>
#include <utility>

namespace tolvek {

/* Do all exponents stay in 32 bits? The least one is no exponent. */
static bool can_shift(const polynode *p, int32_t shift) {
    const polynode *last = p;
    while (last->next) last = last->next;
    return int64_t{p->expo} + shift <= INT32_MAX && int64_t{last->expo} + shift > INT32_MIN;
}

/* One term times x^shift; t is consumed. A lone number at exponent 0 becomes the number term, and leaves it. */
static polynode *shifted_term(polynode *t, int32_t shift) {
    poly_handle term(t);
    int32_t expo = t->expo + shift;
    if (!t->is_number && !(expo == 0 && is_constant(t->poly))) {
        t->expo = expo;
        return term.release();
    }
    polynode *coefficient = term.get();
    if (!t->is_number) {
        coefficient = std::exchange(t->poly, nullptr);
    } else {
        term.release();
    }
    polynode *moved = nullptr;
    make_monomial(&moved, expo, coefficient);
    return moved;
}

static polynode *shifted(polynode *p, int32_t shift) {
    poly_handle rest(p);
    if (shift == 0 || poly_iszero(p)) return rest.release();
    growing_list result;
    while (polynode *t = rest.get()) {
        *rest.slot() = t->next;
        t->next = nullptr;
        result.append(shifted_term(t, shift));
    }
    return result.release();
}

/* The polynomial of a quoly without a denominator, which is left without one. */
static polynode *take_polynomial(quolynode **q) {
    assert((*q)->is_num || !(*q)->den);
    polynode *p = nullptr;
    if ((*q)->is_num)
        scalar_to_poly((*q)->numb, &p);
    else
        p = std::exchange((*q)->num, nullptr);
    return p;
}

/* The merge links the terms of b above a's top one by one and then, once b has ended, all the rest of a at once: where
   the two do not overlap nothing is added. */
void splice_poly(quolynode **a, quolynode **b, int32_t shift) {
    if (!(*b)->is_num && !can_shift((*b)->num, shift)) {
        error(32, expsign);
        return;
    }
    poly_handle first(take_polynomial(a)), second(take_polynomial(b));
    quoly_set(0, a);
    quoly_set(1, b);
    *second.slot() = shifted(second.release(), shift);
    best_poly_add(second.release(), first.release(), first.slot());
    poly_to_value(first, a);
}

} // namespace tolvek
