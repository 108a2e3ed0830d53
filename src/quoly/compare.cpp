#include "quoly/compare.h"

#include "numbers/handles.h"
#include "numbers/int_mult.h"
#include "poly/model.h"

namespace tolvek {

/* Do two parts of values, null meaning no denominator, agree? */
static bool same_part(const polynode *a, const polynode *b) { return a && b ? poly_equal(a, b) : a == b; }

int quoly_equal(const quolynode *a, const quolynode *b) {
    if (a == b) return 1;
    if (a->is_num || b->is_num) return a->is_num && b->is_num && equal(a->numb, b->numb);
    return same_part(a->den, b->den) && poly_equal(a->num, b->num);
}

int quoly_negtive(const quolynode *a, const quolynode *b) {
    if (a->is_num || b->is_num) return a->is_num && b->is_num && negtive(a->numb, b->numb);
    return same_part(a->den, b->den) && poly_neg(a->num, b->num);
}

int quoly_is_one(const quolynode *q) {
    int minus;
    return q->is_num && equal_to_pm1(q->numb, &minus) && !minus;
}

bool is_comparable(const quolynode *q) { return q->is_num || (!lintmode && q->is_rat); }

static const number *numerator(const quolynode *q) { return q->is_num ? q->numb : q->num->num; }
static const number *denominator(const quolynode *q) { return q->is_num ? &number_1 : q->den->num; }

static int order_of(const number *a, const number *b) { return bigger(a, b) ? 1 : equal(a, b) ? 0 : -1; }

int compare_quolys(const quolynode *a, const quolynode *b) {
    if (a->is_num && b->is_num) return order_of(a->numb, b->numb);
    number_handle left, right; /* denominators are positive: cross products keep the order */
    fast_mult(numerator(a), denominator(b), &left);
    fast_mult(numerator(b), denominator(a), &right);
    return order_of(&left, &right);
}

} // namespace tolvek
