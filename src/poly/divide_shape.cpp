/* The shape of operands of divisions. */
#include "poly/divide_work.h"

#include <utility>

namespace tolvek {

void add_pad(polynode **p, int k) {
    if (is_constant(*p)) return;
    for (; k > 0; k--) {
        polynode *wrapper = new_term();
        wrapper->poly = *p;
        *p = wrapper;
    }
}

void remove_dummy(polynode *t) {
    if (t->is_number || t->expo != 0 || !is_constant(t->poly)) return;
    polynode *constant = t->poly;
    t->is_number = 1;
    t->num = constant->num;
    push_poly(constant);
}

static bool is_wrapper(const polynode *p) { return !p->is_number && p->expo == 0 && !p->next; }

void findHeight(const polynode **a, const polynode **b, int *count, pt **names) {
    for (*count = 0; is_wrapper(*a) && is_wrapper(*b); ++*count) {
        *a = (*a)->poly;
        *b = (*b)->poly;
        *names = names_below(*names);
    }
}

int height_is_1(const polynode *p) {
    for (; p; p = p->next)
        if (!p->is_number && !is_constant(p->poly)) return 0;
    return 1;
}

int anynegs(const polynode *p) {
    for (; p; p = p->next)
        if (p->expo < 0 || (!p->is_number && anynegs(p->poly))) return 1;
    return 0;
}

int node_iszero(const polynode *t) { return t->is_number && num_sign(t->num) == 0; }

int first_coef_invrtble(const polynode *p, int) { return led_by_number(p) && is_unit(top_number(p)); }

} // namespace tolvek
