/* Polynomials made, copied, negated, compared and freed. */
#include "numbers/number_decimal.h"
#include "poly/model_work.h"
#include "quoly/quoly.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <utility>

namespace tolvek {

polynode *poly_1 = nullptr;

/* ---- making ---- */

void init_poly_node(polynode *n) { n->num = newimag(); }

/* A refusal of the heap takes no record out of reach: the node is there before the number is asked for. */
polynode *new_number_term() {
    if (!polygarb) push_poly(more_polynodes());
    number *x = newimag();
    polynode *t = newpoly();
    t->expo = 0;
    t->is_number = 1;
    t->next = nullptr;
    t->num = x;
    return t;
}

void poly_set(int32_t v, polynode **p) {
    poly_handle constant(new_number_term());
    setvalue(v, constant->num);
    constant.release_to(p);
}

static void move_number(number *from, number *to) {
    *to = *from;
    to->num_link = nullptr;
    from->num_head = from->num_tail = nullptr;
    from->num_len = 0;
}

void scalar_to_poly(number *x, polynode **p) {
    polynode *constant = new_number_term();
    move_number(x, constant->num);
    replace_poly(constant, p);
}

void node_assign(const polynode *n, polynode **p) {
    poly_handle copy(new_number_term());
    num_assign(n->num, copy->num);
    copy.release_to(p);
}

/* p under k wrappers. */
static void wrap(poly_handle &p, int k) {
    for (; k > 0; k--) {
        polynode *wrapper = new_term();
        wrapper->poly = p.release();
        *p.slot() = wrapper;
    }
}

void base_poly(polynode **p, int k) {
    poly_handle variable;
    poly_set(1, variable.slot());
    if (k > 0) {
        wrap(variable, k);
        polynode *term = variable.get();
        while (!term->poly->is_number) term = term->poly;
        term->expo = 1;
    }
    variable.release_to(p);
}

void make_monomial(polynode **p, int32_t e, polynode *q) {
    if (*p == q) *p = nullptr;
    poly_handle coefficient(q);
    if (!poly_iszero(q) && !(e == 0 && is_constant(q))) {
        wrap(coefficient, 1);
        coefficient->expo = e;
    }
    coefficient.release_to(p);
}

void make_poly_constants() {
    if (poly_1) return;
    poly_1 = new_number_term();
    special_set(1, poly_1->num);
    poly_1->num->lint_val = 1;
    poly_1->num->flote_val = 1;
}

/* ---- between polynomials and quolys ---- */

void poly_consume(polynode **p, quolynode **q) {
    poly_handle constant(std::exchange(*p, nullptr));
    scalar_to_quoly(constant->num, q);
}

void poly_to_quoly(const polynode *p, quolynode **q) {
    quoly_handle copy;
    quoly_set(0, copy.slot());
    num_assign(p->num, copy->numb);
    copy.release_to(q);
}

/* ---- copying ---- */

template <bool negated> static void copy_number(const number *from, number *to) {
    if constexpr (negated)
        makeneg(from, to);
    else
        num_assign(from, to);
}

/* Each node is in the list before its coefficient is made: what is there goes back on every way out. */
template <bool negated> static polynode *copied(const polynode *a) {
    growing_list copy;
    for (; a; a = a->next) {
        safe_point();
        polynode *t = a->is_number ? new_number_term() : new_term();
        copy.append(t);
        t->expo = a->expo;
        if (a->is_number)
            copy_number<negated>(a->num, t->num);
        else
            t->poly = copied<negated>(a->poly);
    }
    return copy.release();
}

polynode *copy_list(const polynode *a) { return copied<false>(a); }
polynode *negated_copy(const polynode *a) { return copied<true>(a); }

polynode *copy_term(const polynode *t) {
    polynode lone = *t;
    lone.next = nullptr;
    return copied<false>(&lone);
}

void poly_assign(const polynode *a, polynode **p) {
    check_stack();
    if (a != *p) replace_poly(copied<false>(a), p);
}

void poly_makeneg(const polynode *a, polynode **p) {
    check_stack();
    replace_poly(copied<true>(a), p);
}

/* ---- in place ---- */

void poly_inplace(polynode *p) {
    for (; p; p = p->next) negate_term(p);
}

void standard_form(polynode *p) {
    for (; p; p = p->next) {
        if (!p->is_number)
            standard_form(p->poly);
        else if (p->num->lint_val < 0)
            p->num->lint_val += modulus;
    }
}

/* ---- freeing ---- */

/* Gives the numbers of a list back and links its nodes into one chain, which begins with `first`, each term before its
   coefficient. The last node of it. So nodes come back in the order in which a polynomial is built, and a later one
   that takes them from the free list walks memory as this one did. A coefficient that is one number, the commonest,
   goes without a call. */
static polynode *chain_nodes(polynode *first) {
    polynode *last = nullptr;
    for (polynode *t = first, *next; t; t = next) {
        next = t->next;
        last = t;
        if (t->is_number) {
            free_imag(&t->num);
        } else if (polynode *c = t->poly) {
            t->next = c;
            if (c->is_number && !c->next) {
                free_imag(&c->num);
                last = c;
            } else {
                last = chain_nodes(c);
            }
        }
        last->next = next;
    }
    return last;
}

void free_poly(polynode **p) {
    polynode *old = *p;
    *p = nullptr;
    if (old) push_nodes(old, chain_nodes(old));
}

/* ---- values ---- */

int poly_iszero(const polynode *p) { return is_constant(p) && num_sign(p->num) == 0; }

int poly_eq_1(const polynode *p) { return is_constant(p) && equal(p->num, &number_1); }

int poly_eq_m1(const polynode *p) {
    if (!is_constant(p)) return 0;
    if (!modularmode) return equal(p->num, &number_m1);
    return p->num->lint_val == (finf ? 1 : modulus - 1);
}

/* Are both lists alike, numbers compared by `same`? */
template <int (*same)(const number *, const number *)> static int alike(const polynode *a, const polynode *b) {
    for (; a && b; a = a->next, b = b->next) {
        safe_point();
        if (a->expo != b->expo || a->is_number != b->is_number) return 0;
        if (a->is_number ? !same(a->num, b->num) : !alike<same>(a->poly, b->poly)) return 0;
    }
    return a == b;
}

int poly_equal(const polynode *a, const polynode *b) {
    check_stack();
    return a == b || alike<equal>(a, b);
}

int poly_neg(const polynode *a, const polynode *b) {
    check_stack();
    return alike<negtive>(a, b);
}

const polynode *leading_coef(const polynode *p) {
    while (!p->is_number) p = p->poly;
    return p;
}

int pos_leading_coef(const polynode *p) {
    const number *x = leading_coef(p)->num;
    if (modularmode && alt_form_display) return x->lint_val > 0 && x->lint_val <= half_modulus;
    return num_sign(x) > 0;
}

int neg_leading_term(const polynode *p) {
    const number *x = leading_coef(p)->num;
    if (modularmode && alt_form_display) return x->lint_val > half_modulus;
    return num_sign(x) < 0;
}

} // namespace tolvek
