#include "poly/flat_emit.h"

namespace tolvek {

poly_emitter::~poly_emitter() {
    for (int l = 0; l < shape.count; l++) free_poly(&list[l].head);
    free_poly(&node_in_work);
    if (number_in_work) free_imag(&number_in_work);
}

/* Wraps the child for the levels that are skipped. On the way it stands in the place of the list it came from. */
polynode *poly_emitter::wrapped(polynode *child, int times) {
    for (; times > 0; times--) {
        open_list *home = list;
        while (home->head != child) home++;
        polynode *t = newpoly();
        t->expo = 0;
        t->is_number = 0;
        t->next = nullptr;
        t->poly = child;
        home->head = child = t;
    }
    return child;
}

void poly_emitter::release_to(polynode **p) {
    if (!list[0].head) return poly_set(0, p);
    if (!is_constant(list[0].head)) wrapped(list[0].head, shape.level[0].depth - 1);
    polynode *old = *p;
    *p = list[0].head;
    list[0].head = nullptr;
    free_poly(&old);
}

void put_chain(const uint64_t *limbs, int n, int32_t sign, number *x) {
    while (n > 0 && !limbs[n - 1]) n--;
    int at = 0, within = 0; /* the next bit */
    const int top = n ? 64 * n - __builtin_clzll(limbs[n - 1]) : 1;
    for (int done = 0; done < top; done += digit_bits) {
        uint64_t v = limbs[at] >> within;
        if (within > 64 - digit_bits && at + 1 < n) v |= limbs[at + 1] << (64 - within);
        within += digit_bits;
        at += within >> 6;
        within &= 63;
        numnode *d = newdigit();
        d->digit = sign * static_cast<int32_t>(static_cast<uint32_t>(v) & digit_mask);
        if (!done) {
            x->num_tail = d;
            d->next = nullptr;
        } else {
            d->next = x->num_head;
        }
        x->num_head = d;
        x->num_len++;
    }
}

} // namespace tolvek
