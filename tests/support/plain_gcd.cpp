#include "support/plain_gcd.h"

#include "numbers/handles.h"
#include "numbers/int_gcd.h"
#include "numbers/modular.h"
#include "poly/add.h"
#include "poly/model_work.h"
#include "poly/mult.h"

#include <utility>

namespace tolvek {

/* The coefficient of a term as a polynomial of the next level: a look at it. */
class coefficient {
  public:
    explicit coefficient(const polynode *t) : seen(t->is_number ? &lone : t->poly) {
        if (t->is_number) lone = {0, 1, nullptr, {t->num}};
    }
    coefficient(const coefficient &) = delete;
    coefficient &operator=(const coefficient &) = delete;
    const polynode *get() const { return seen; }

  private:
    const polynode *seen;
    polynode lone{};
};

/* ---- by a number ---- */

static bool number_divides(const number *c, const polynode *a) {
    int32_t inverse;
    if (lintmode) return find_inverse(c->lint_val, &inverse);
    number_handle content, common;
    find_gcdcoefs(a, &content);
    binary_gcd(&content, c, &common);
    number_handle magnitude;
    abs_val_num(c, &magnitude);
    return equal(&common, &magnitude);
}

static bool quotient_by_number(const polynode *a, const number *c, polynode **q) {
    if (!number_divides(c, a)) return false;
    poly_handle quotient;
    poly_assign(a, quotient.slot());
    num_poly_quot(quotient.slot(), c);
    quotient.release_to(q);
    return true;
}

/* ---- term by term ---- */

/* b is below the main variable of a: each coefficient is divided by the one of b. */
static bool divide_coefficients(const polynode *a, const polynode *b, polynode **q) {
    growing_list quotient;
    coefficient below(b);
    for (const polynode *t = a; t; t = t->next) {
        polynode *c = nullptr, *term = nullptr;
        if (!plain_quotient(coefficient(t).get(), below.get(), &c)) return false;
        make_monomial(&term, t->expo, c);
        if (!poly_iszero(term))
            quotient.append(term);
        else
            free_poly(&term);
    }
    replace_poly(list_or_zero(quotient.release()), q);
    return true;
}

static void drop_head(poly_handle &p) {
    polynode *rest = p->next;
    p->next = nullptr;
    poly_handle head(p.release());
    *p.slot() = list_or_zero(rest);
}

/* rest := rest - term * b, both without their leading terms, which cancel. */
static void subtract_multiple(poly_handle &rest, const polynode *term, const polynode *b) {
    drop_head(rest);
    if (!b->next) return;
    poly_handle multiple;
    poly_mult(term, b->next, multiple.slot(), nullptr);
    best_poly_sub(rest.release(), multiple.release(), rest.slot());
}

/* The classical division; what is left behind comes back in `rest`. */
static bool divide_lists(const polynode *a, const polynode *b, polynode **q, poly_handle &rest) {
    growing_list quotient;
    coefficient leading(b);
    poly_assign(a, rest.slot());
    while (!is_constant(rest.get()) && rest->expo >= b->expo) {
        polynode *c = nullptr;
        poly_handle term;
        if (!plain_quotient(coefficient(rest.get()).get(), leading.get(), &c)) return false;
        make_monomial(term.slot(), rest->expo - b->expo, c);
        if (poly_iszero(term.get())) {
            drop_head(rest);
            continue;
        }
        subtract_multiple(rest, term.get(), b);
        quotient.append(term.release());
    }
    replace_poly(list_or_zero(quotient.release()), q);
    return true;
}

bool plain_quotient(const polynode *a, const polynode *b, polynode **q) {
    if (is_constant(b)) return quotient_by_number(a, b->num, q);
    if (poly_iszero(a)) return poly_set(0, q), true;
    if (is_constant(a) || a->expo < b->expo) return false;
    if (b->expo == 0) return divide_coefficients(a, b, q);
    poly_handle quotient, rest;
    if (!divide_lists(a, b, quotient.slot(), rest) || !poly_iszero(rest.get())) return false;
    quotient.release_to(q);
    return true;
}

/* ---- the form of an answer ---- */

static void set_answer_form(poly_handle &g) {
    if (poly_iszero(g.get())) return;
    const number *leading = leading_coef(g.get())->num;
    if (!lintmode) {
        if (num_sign(leading) < 0) poly_inplace(g.get());
        return;
    }
    int32_t inverse;
    if (!find_inverse(leading->lint_val, &inverse)) return;
    number_handle c;
    num_assign(leading, &c);
    num_poly_quot(g.slot(), &c);
}

/* ---- contents ---- */

/* *c := the content of p in its main variable, a polynomial of the next level. */
static void plain_content(const polynode *p, polynode **c) {
    for (const polynode *t = p; t; t = t->next) {
        if (!t->is_number && !is_constant(t->poly)) continue;
        gcd_coefs(p, c); /* one number among the coefficients: the content is a number */
        return;
    }
    poly_handle content;
    poly_assign(p->poly, content.slot());
    for (const polynode *t = p->next; t && !poly_eq_1(content.get()); t = t->next)
        plain_gcd(content.get(), t->poly, content.slot());
    content.release_to(c);
}

/* *c := the content, *p := the primitive part. A constant has itself as its content. */
static void split_content(poly_handle &p, polynode **c) {
    plain_content(p.get(), c);
    poly_handle as_wrapper;
    poly_assign(*c, as_wrapper.slot());
    make_monomial(as_wrapper.slot(), 0, as_wrapper.release());
    if (!poly_eq_1(as_wrapper.get())) plain_quotient(p.get(), as_wrapper.get(), p.slot());
}

/* ---- remainders ---- */

/* The coefficients by which the leading terms of rest and v become equal. */
static void make_factors(const polynode *rest, const polynode *v, poly_handle &of_rest, poly_handle &of_v) {
    coefficient l(rest), m(v);
    poly_assign(m.get(), of_rest.slot());
    poly_assign(l.get(), of_v.slot());
    if (!is_constant(l.get()) || !is_constant(m.get())) return;
    if (lintmode) { /* v is monic */
        poly_set(1, of_rest.slot());
        return;
    }
    number_handle g;
    int coprime;
    extgcd(m.get()->num, l.get()->num, &g, of_rest->num, of_v->num, &coprime);
}

static void multiply(poly_handle &p, const polynode *factor, int32_t shift) {
    poly_handle monomial;
    poly_assign(factor, monomial.slot());
    make_monomial(monomial.slot(), shift, monomial.release());
    if (!poly_eq_1(monomial.get())) poly_mult(p.get(), monomial.get(), p.slot(), nullptr);
}

/* u := a multiple of u by a coefficient, less a multiple of v, of lower degree than v. The leading terms cancel by
   structure. */
static void pseudo_remainder(poly_handle &u, const polynode *v) {
    while (!is_constant(u.get()) && u->expo >= v->expo) {
        poly_handle of_rest, of_v, multiple;
        make_factors(u.get(), v, of_rest, of_v);
        int32_t shift = u->expo - v->expo;
        drop_head(u);
        multiply(u, of_rest.get(), 0);
        if (!v->next) continue;
        poly_assign(v->next, multiple.slot());
        multiply(multiple, of_v.get(), shift);
        best_poly_sub(u.release(), multiple.release(), u.slot());
    }
}

static bool has_main_variable(const polynode *p) { return !is_constant(p) && p->expo > 0; }

/* u := the GCD of primitive u and v, both with the main variable, but for a factor of the ring. */
static void primitive_gcd(poly_handle &u, poly_handle &v) {
    if (u->expo < v->expo) std::swap(*u.slot(), *v.slot());
    for (;;) {
        if (lintmode) set_answer_form(v);
        pseudo_remainder(u, v.get());
        if (poly_iszero(u.get())) break;
        if (!has_main_variable(u.get())) {
            poly_set(1, v.slot());
            break;
        }
        poly_handle c;
        split_content(u, c.slot());
        std::swap(*u.slot(), *v.slot());
    }
    std::swap(*u.slot(), *v.slot());
}

/* ---- the cases ---- */

static void gcd_with_constant(const polynode *a, const polynode *b, poly_handle &g) {
    poly_set(1, g.slot());
    if (lintmode) return;
    number_handle x, y;
    find_gcdcoefs(a, &x);
    find_gcdcoefs(b, &y);
    binary_gcd(&x, &y, g->num);
}

/* Only one of the two has the main variable, or none: the GCD lies below it. */
static void gcd_below(const polynode *a, const polynode *b, poly_handle &g) {
    poly_handle c, d;
    plain_content(a, c.slot());
    plain_content(b, d.slot());
    plain_gcd(c.get(), d.get(), g.slot());
    make_monomial(g.slot(), 0, g.release());
}

static void gcd_of_lists(const polynode *a, const polynode *b, poly_handle &g) {
    poly_handle u, v, c, d;
    poly_assign(a, u.slot());
    poly_assign(b, v.slot());
    split_content(u, c.slot());
    split_content(v, d.slot());
    plain_gcd(c.get(), d.get(), c.slot());
    primitive_gcd(u, v);
    poly_handle content;
    make_monomial(content.slot(), 0, c.release());
    if (!poly_eq_1(content.get())) poly_mult(u.get(), content.get(), u.slot(), nullptr);
    u.release_to(g.slot());
}

void plain_gcd(const polynode *a, const polynode *b, polynode **result) {
    poly_handle g;
    if (poly_iszero(a) || poly_iszero(b))
        poly_assign(poly_iszero(a) ? b : a, g.slot());
    else if (is_constant(a) || is_constant(b))
        gcd_with_constant(a, b, g);
    else if (poly_equal(a, b))
        poly_assign(a, g.slot());
    else if (!has_main_variable(a) || !has_main_variable(b))
        gcd_below(a, b, g);
    else
        gcd_of_lists(a, b, g);
    set_answer_form(g);
    g.release_to(result);
}

} // namespace tolvek
