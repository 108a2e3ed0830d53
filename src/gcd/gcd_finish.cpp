/* The common end of polygcd: what the steps have taken out of the operands goes back into the answer. */
#include "gcd/gcd_work.h"
#include "numbers/modular.h"
#include "poly/add.h"
#include "poly/mult.h"

namespace tolvek {

void positive_sign(poly_handle &p) {
    if (!lintmode && !flotemode && neg_leading_term(p.get())) poly_inplace(p.get());
}

void answer_form(poly_handle &p, pt *names) {
    if (over_integers()) {
        positive_sign(p);
        return;
    }
    if (!flotemode && !modularmode) { /* words that wrap */
        if (leading_coef(p.get())->num->lint_val < 0) poly_inplace(p.get());
        return;
    }
    int32_t inverse;
    if (in_composite_ring() && !find_inverse(leading_coef(p.get())->num->lint_val, &inverse)) return;
    if (is_constant(p.get())) {
        poly_set(1, p.slot());
        return;
    }
    poly_handle leading;
    monic_poly(p.slot(), leading.slot(), names);
}

void gcd_work::answer_power(int32_t e) {
    poly_handle one;
    poly_set(1, one.slot());
    make_monomial(answer.slot(), e, one.release());
}

/* Exponents of the answer times the stride, plus the monomial. */
static void restore_exponents(poly_handle &g, int32_t stride, int32_t monomial) {
    if (stride == 1 && monomial == 0) return;
    growing_list list;
    while (polynode *t = g.get()) {
        *g.slot() = std::exchange(t->next, nullptr);
        const int32_t e = t->expo * stride + monomial;
        if (t->is_number && e != 0) {
            polynode *power = new_term();
            power->poly = t;
            power->expo = e;
            t = power;
        } else {
            t->expo = e;
        }
        list.append(t);
    }
    *g.slot() = list.release();
}

bool exact_quotient(const polynode *a, const polynode *b, polynode **q, pt *names) {
    poly_handle quotient;
    int failed = 0;
    gen_poly_divide(a, b, quotient.slot(), names, &failed);
    if (failed) return false;
    quotient.release_to(q);
    return true;
}

bool divided_by(const polynode *u, const polynode *g, polynode **q, pt *names) {
    if (q) return trial_poly_divide(u, g, q, names, 0);
    return trial_poly_divide_noq(u, g, names, 0, 0);
}

/* What the steps have divided goes to the caller. */
static void hand_over(gcd_work *w) {
    if (!w->wants_cofactors() || !w->u_over_answer || !w->v_over_answer) return;
    if (neg_leading_term(w->answer.get())) {
        poly_inplace(w->u_over_answer.get());
        poly_inplace(w->v_over_answer.get());
    }
    gcd_cofactors *c = w->cofactors;
    w->u_over_answer.release_to((w->u == &w->first ? c->of_u : c->of_v).slot());
    w->v_over_answer.release_to((w->u == &w->first ? c->of_v : c->of_u).slot());
}

void finish_4(gcd_work *w) {
    poly_handle &g = w->answer;
    hand_over(w);
    positive_sign(g);
    w->attempt.keep(w->u->p, w->v->p, w->level, g.get());
    if (w->content && !poly_eq_1(w->content.get())) {
        padded(w->content, 1);
        poly_mult(g.get(), w->content.get(), g.slot(), w->names);
    }
    if (w->general) poly_mult(g.get(), w->general.get(), g.slot(), w->names);
    restore_exponents(g, w->stride, w->monomial);
    if (!w->just_degree) answer_form(g, w->names);
}

} // namespace tolvek
