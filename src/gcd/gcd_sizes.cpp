#include "gcd/gcd_sizes.h"

#include "gcd/gcd_work.h"
#include "numbers/int_divide.h"
#include "numbers/modular.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

/* ---- nodes ---- */

static void count_nodes(const polynode *p, int cap, int *n) {
    for (; p && *n < cap; p = p->next) {
        ++*n;
        if (!p->is_number) count_nodes(p->poly, cap, n);
    }
}

int node_total_up_to(const polynode *p, int cap) {
    check_stack();
    int n = 0;
    count_nodes(p, cap, &n);
    return n;
}

/* ---- levels ---- */

/* Greatest exponents by level; level 1 stands at 0. */
struct degree_list {
    int32_t of[most_variables] = {};
    int deepest = 1;
};

static void find_degrees(const polynode *p, int level, degree_list *degrees) {
    if (p->expo != 0 && level > degrees->deepest) degrees->deepest = level;
    for (; p; p = p->next) {
        int32_t &most = degrees->of[level - 1];
        most = std::max(most, p->expo);
        if (!p->is_number) find_degrees(p->poly, level + 1, degrees);
    }
}

static degree_list degrees_of(const polynode *p) {
    check_stack();
    degree_list degrees;
    find_degrees(p, 1, &degrees);
    return degrees;
}

int expon_node_total(const polynode *p, int64_t *box) {
    const degree_list degrees = degrees_of(p);
    int64_t volume = 1;
    for (int i = 0; i < degrees.deepest; i++) {
        volume *= int64_t{degrees.of[i]} + 1;
        if (volume >= box_overflow) volume = box_overflow;
    }
    *box = volume;
    return node_total_up_to(p, expon_node_cap);
}

int64_t sum_degrees(const polynode *p, int64_t cap) {
    const degree_list degrees = degrees_of(p);
    int64_t sum = 0;
    for (int i = 0; i < degrees.deepest && sum <= cap; i++) sum += degrees.of[i];
    return sum;
}

static void find_deepest(const polynode *p, int level, int *deepest) {
    if (p->expo != 0) *deepest = std::max(*deepest, level);
    for (; p; p = p->next)
        if (!p->is_number && !is_constant(p->poly)) find_deepest(p->poly, level + 1, deepest);
}

int deepest_level(const polynode *p) {
    check_stack();
    int deepest = 1;
    find_deepest(p, 1, &deepest);
    return deepest;
}

/* ---- the top level ---- */

int32_t low_exponent(const polynode *p) {
    while (p->next) p = p->next;
    return p->expo;
}

int pad_levels(const polynode *p) {
    int n = 0;
    for (; p->expo == 0 && !p->is_number; p = p->poly) n++;
    return n;
}

bool any_number_coefficient(const polynode *p) {
    for (; p; p = p->next)
        if (has_number_coefficient(p)) return true;
    return false;
}

/* ---- equal up to a unit ---- */

/* The number at the bottom of corresponding leaves of b is `factor` times that of a. */
static bool is_multiple(const polynode *a, const polynode *b, int32_t factor) {
    for (; a && b; a = a->next, b = b->next) {
        if (a->expo != b->expo || a->is_number != b->is_number) return false;
        if (a->is_number ? modmult(a->num->lint_val, factor) != b->num->lint_val
                         : !is_multiple(a->poly, b->poly, factor))
            return false;
    }
    return a == b;
}

bool essentially_equal(const polynode *u, const polynode *v) {
    if (u->expo != v->expo) return false;
    if (poly_equal(u, v) || poly_neg(u, v)) return true;
    if (!in_prime_field()) return false;
    const int32_t inverse = mod_inverse(leading_coef(u)->num->lint_val);
    return is_multiple(u, v, modmult(inverse, leading_coef(v)->num->lint_val));
}

} // namespace tolvek
