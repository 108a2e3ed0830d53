#include "poly/coefficients.h"

#include "poly/evaluate_work.h"
#include "poly/model_work.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

/* ---- products of powers ---- */

bool power_product_of(const polynode *p, power_product *m) {
    for (int level = 1;; level++, p = p->poly) {
        if (p->next) return false;
        if (p->is_number) return num_sign(p->num) != 0;
        m->expo[level] = p->expo;
        if (p->expo != 0) m->deepest = level;
    }
}

/* c with the exponent e on top; c is consumed, null is 0. */
static void append_power(growing_list &list, int32_t e, polynode *c) {
    if (!c) return;
    poly_handle term(c);
    make_monomial(term.slot(), e, term.get());
    list.append(term.release());
}

static polynode *copy_of_term_coefficient(const polynode *t) {
    return t->is_number ? copy_term(t) : copy_list(t->poly);
}

/* ---- coefficients ---- */

/* What stands with the e-th power, `level` levels down; null for 0. */
static polynode *with_power(const polynode *p, int level, int32_t e) {
    growing_list result;
    for (; p; p = p->next) {
        safe_point();
        if (level == 1) {
            if (p->expo == e) append_power(result, 0, copy_of_term_coefficient(p));
        } else if (!p->is_number) {
            append_power(result, p->expo, with_power(p->poly, level - 1, e));
        } else if (e == 0) {
            result.append(copy_term(p));
        }
    }
    return result.release();
}

void coefficient_of_power(const polynode *p, int level, int32_t e, polynode **c) {
    check_stack();
    if (poly_iszero(p)) return poly_set(0, c);
    replace_poly(list_or_zero(with_power(p, level, e)), c);
}

void coefficient_of_product(const polynode *p, const power_product &m, polynode **c) {
    poly_handle rest;
    poly_assign(p, rest.slot());
    for (int level = 1; level <= m.deepest; level++)
        if (m.expo[level] != 0) coefficient_of_power(rest.get(), level, m.expo[level], rest.slot());
    rest.release_to(c);
}

/* p is of the level; null for 0. */
static polynode *multiples(const polynode *p, const power_product &m, int level) {
    if (level > m.deepest) return copy_list(p);
    growing_list result;
    for (; p; p = p->next) {
        safe_point();
        if (p->expo < m.expo[level]) continue;
        polynode lone = *p; /* a number term stands for itself at the levels below too */
        lone.next = nullptr;
        append_power(result, p->expo - m.expo[level], multiples(p->is_number ? &lone : p->poly, m, level + 1));
    }
    return result.release();
}

void cofactor_of_multiples(const polynode *p, const power_product &m, polynode **c) {
    check_stack();
    if (poly_iszero(p)) return poly_set(0, c);
    replace_poly(list_or_zero(multiples(p, m, 1)), c);
}

const number *number_at(const polynode *p, const power_product &m) {
    for (int level = 1;; level++) {
        const int32_t e = level <= m.deepest ? m.expo[level] : 0;
        while (p && p->expo != e) p = p->next;
        if (!p) return nullptr;
        if (!p->is_number) {
            p = p->poly;
            continue;
        }
        for (level++; level <= m.deepest; level++)
            if (m.expo[level] != 0) return nullptr;
        return num_sign(p->num) ? p->num : nullptr;
    }
}

/* ---- leading terms ---- */

/* p down to its first real variable: the number of wrappers is *k. */
static const polynode *first_real_level(const polynode *p, int *k) {
    for (*k = 0; !p->is_number && p->expo == 0 && !p->next; p = p->poly) ++*k;
    return p;
}

static void give_padded(polynode *p, int k, polynode **to) {
    poly_handle padded(p);
    for (; k > 0; k--) make_monomial(padded.slot(), 0, padded.get());
    padded.release_to(to);
}

void leading_term(const polynode *p, polynode **t) {
    check_stack();
    int k;
    const polynode *head = first_real_level(p, &k);
    give_padded(copy_term(head), k, t);
}

void poly_leading_coef(const polynode *p, polynode **c) {
    check_stack();
    int k;
    const polynode *head = first_real_level(p, &k);
    give_padded(copy_of_term_coefficient(head), head->is_number ? k : k + 1, c);
}

void leading_mon(const polynode *p, polynode **m) {
    check_stack();
    if (poly_iszero(p)) return poly_set(0, m);
    int depth = 0;
    int32_t expo[most_variables + 2];
    for (; !p->is_number; p = p->poly) expo[depth++] = p->expo;
    poly_handle product;
    poly_set(1, product.slot());
    while (depth > 0) make_monomial(product.slot(), expo[--depth], product.get());
    product.release_to(m);
}

const polynode *trailing_coef(const polynode *p) {
    for (;;) {
        while (p->next) p = p->next;
        if (p->is_number) return p;
        p = p->poly;
    }
}

int compare_leading_mons(const polynode *a, const polynode *b) {
    for (;;) {
        if (a->expo != b->expo) return a->expo < b->expo ? -1 : 1;
        if (a->is_number && b->is_number) return 0;
        /* a number has exponent 0 at the levels below */
        if (!a->is_number) a = a->poly;
        if (!b->is_number) b = b->poly;
    }
}

/* ---- degrees ---- */

int32_t codegree(const polynode *p, int level) {
    if (level == 1) {
        while (p->next) p = p->next;
        return p->expo;
    }
    int32_t least = INT32_MAX;
    for (; p; p = p->next) least = std::min(least, p->is_number ? 0 : codegree(p->poly, level - 1));
    return least;
}

} // namespace tolvek
