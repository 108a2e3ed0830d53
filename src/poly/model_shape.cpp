/* Which variables a polynomial involves, and how high. A wrapper that has a successor is no mere wrapper: with negative
   exponents y + x^-1 involves x, though its head has exponent 0. */
#include "poly/model_work.h"
#include "top/stack_limit.h"

#include <cstring>

namespace tolvek {

static bool is_wrapper(const polynode *p) { return !p->is_number && p->expo == 0 && !p->next; }

int poly_level(const polynode *p) {
    if (is_constant(p)) return 0;
    int level = 1;
    for (; is_wrapper(p); p = p->poly) level++;
    return level;
}

int poly_depth(const polynode *p) {
    constexpr int deeper_than_all = 16384;
    return is_constant(p) ? deeper_than_all : poly_level(p);
}

void height_next_var(polynode **p, int *level, int err) {
    while (!(*p)->is_number && (*p)->expo == 0) {
        if ((*p)->next) {
            error(err, blank);
            return;
        }
        *p = (*p)->poly;
        ++*level;
    }
}

int32_t real_degree(const polynode *p, int k) {
    for (; k > 1 && !p->is_number; k--) p = p->poly;
    return p->expo;
}

int32_t real_q_degree(const quolynode *q, int k) { return q->is_num ? 0 : real_degree(q->num, k); }

void max_degree(const polynode *p, int k, int32_t *d) {
    if (k == 1) {
        if (p->expo > *d) *d = p->expo;
        return;
    }
    for (; p; p = p->next) {
        if (!p->is_number)
            max_degree(p->poly, k - 1, d);
        else if (*d < 0)
            *d = 0;
    }
}

int is_poly_var(const quolynode *q, int *level) {
    if (q->is_num || q->den) return 0;
    const polynode *p = q->num;
    int at = 1;
    for (; is_wrapper(p); p = p->poly) at++;
    if (p->is_number || p->expo != 1 || p->next || !poly_eq_1(p->poly)) return 0;
    *level = at;
    return 1;
}

/* Marks the levels that occur; the deepest of them, 0 for none. */
int poly_vars(const polynode *p, int level, char *flags) {
    int deepest = 0;
    for (; p; p = p->next) {
        if (p->is_number) continue;
        if (p->expo != 0) {
            flags[level] = 1;
            if (level > deepest) deepest = level;
        }
        int below = poly_vars(p->poly, level + 1, flags);
        if (below > deepest) deepest = below;
    }
    return deepest;
}

int driver_poly_vars(const polynode *p) {
    check_stack();
    char flags[most_variables + 2];
    std::memset(flags, 0, sizeof flags);
    int deepest = poly_vars(p, 1, flags), count = 0;
    for (int level = 1; level <= deepest; level++) count += flags[level];
    return count;
}

/* ---- exponents ---- */

void raise_exponents(polynode **p, int32_t s) {
    if (poly_iszero(*p)) return;
    for (polynode **at = p; *at; at = &(*at)->next) {
        polynode *t = *at;
        if (t->is_number) {
            polynode *carrier = new_term();
            carrier->next = t->next;
            carrier->poly = t;
            t->next = nullptr;
            *at = carrier;
            carrier->expo = s;
        } else if ((t->expo += s) == 0 && is_constant(t->poly)) {
            polynode *constant = t->poly;
            constant->next = t->next;
            *at = constant;
            push_poly(t);
        }
    }
}

} // namespace tolvek
