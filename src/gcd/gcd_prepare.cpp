/* Preparation in polygcd: the operands come into divided form, the larger one first, and are measured. */
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_gcd.h"
#include "numbers/modular.h"

namespace tolvek {

/* ---- spines ---- */

void spine::drop() {
    while (polynode *t = first) {
        first = t->next;
        push_poly(t);
    }
}

void spine::set(const polynode *p, int32_t low, int32_t stride) {
    drop();
    polynode **end = &first;
    for (; p; p = p->next) {
        polynode *t = newpoly();
        *t = {(p->expo - low) / stride, p->is_number, nullptr, {nullptr}};
        if (p->is_number)
            t->num = p->num;
        else if (t->expo == 0 && is_constant(p->poly)) {
            t->is_number = 1;
            t->num = p->poly->num;
        } else
            t->poly = p->poly;
        *end = t;
        end = &t->next;
    }
}

static void divide_exponents(gcd_operand *a, int32_t low, int32_t stride) {
    const polynode *p = a->p;
    if (low == 0 && stride == 1) return;
    spine divided;
    divided.set(p, low, stride);
    a->divided.swap(divided);
    a->p = a->divided.get();
}

/* ---- the steps ---- */

verdict reset_level_counters(gcd_work *w) {
    if (w->use_general && w->level < original_depth) original_depth = w->level;
    if (w->level > original_depth) return verdict::next;
    c_cntcount = a_cntcount = d_cntcount = c_cntdepth = 0;
    if (w->use_general && w->top) {
        g_cntcount = 0;
        g_cutoff = first_g_cutoff;
    }
    return verdict::next;
}

/* x^e * rest with e the lower one of the powers of x that divide the operands. A single term a * x^d is settled here: its
   GCD with v is x^min(d, e_v) times that of a and the coefficients of v. */
verdict take_monomials(gcd_work *w) {
    w->u->low = low_exponent(w->u->p);
    w->v->low = low_exponent(w->v->p);
    w->monomial = minn(w->u->low, w->v->low);
    const gcd_operand *single = is_single_term(w->u->p) ? w->u : is_single_term(w->v->p) ? w->v : nullptr;
    if (!single) {
        divide_exponents(w->u, w->u->low, 1);
        divide_exponents(w->v, w->v->low, 1);
        return verdict::next;
    }
    w->answer_one();
    if (w->just_degree && w->monomial > 0) return verdict::finish;
    const gcd_operand *other = single == w->u ? w->v : w->u;
    spine coefficient;
    coefficient.set(single->p, single->low, 1);
    aux_content(const_cast<polynode *>(coefficient.get()), const_cast<polynode *>(other->p), w->content.slot(),
                w->names, 0, w->use_general, 1, 1);
    return verdict::finish;
}

static int32_t stride_of(const polynode *p, int32_t s) {
    for (; p->next && s != 1; p = p->next) {
        const uint32_t gap = static_cast<uint32_t>(p->expo) - static_cast<uint32_t>(p->next->expo);
        s = s ? static_cast<int32_t>(smallgcd(static_cast<uint32_t>(s), gap)) : static_cast<int32_t>(gap);
    }
    return s;
}

/* Both operands are polynomials in x^s. They have more than one term each, and one of exponent 0. */
verdict take_stride(gcd_work *w) {
    if (!modularmode) return verdict::next;
    const int32_t s = stride_of(w->v->p, stride_of(w->u->p, 0));
    if (s <= 1) return verdict::next;
    w->stride = s;
    divide_exponents(w->u, 0, s);
    divide_exponents(w->v, 0, s);
    return verdict::next;
}

verdict larger_first(gcd_work *w) {
    if (w->u->degree() < w->v->degree()) std::swap(w->u, w->v);
    w->degree_bound = w->v->degree();
    return verdict::next;
}

/* Where not every number has an inverse: what needs no division, and the division of one operand by another whose leading
   number is a unit; else the power of the main variable alone. */
verdict composite_modulus(gcd_work *w) {
    if (!in_composite_ring()) return verdict::next;
    const polynode *u = w->u->p, *v = w->v->p;
    int32_t inverse;
    const bool divides = essentially_equal(u, v) || (find_inverse(leading_coef(v)->num->lint_val, &inverse) &&
                                                     trial_poly_divide_noq(u, v, w->names, 0, 0));
    if (divides)
        poly_assign(v, w->answer.slot());
    else
        w->answer_one();
    return verdict::finish;
}

verdict measure_operands(gcd_work *w) {
    w->u->nodes = big_node_total(w->u->p);
    w->v->nodes = big_node_total(w->v->p);
    w->total = w->u->nodes + w->v->nodes;
    return verdict::next;
}

/* Over the integers v can divide u only if its content divides that of u. */
static bool contents_divide(const polynode *u, const polynode *v) {
    number_handle of_u, of_v, rest;
    find_gcdcoefs(v, &of_v);
    int minus;
    if (equal_to_pm1(&of_v, &minus)) return true;
    find_gcdcoefs(u, &of_u);
    divide(&of_u, &of_v, &of_u, &rest);
    return num_sign(&rest) == 0;
}

verdict small_divides_large(gcd_work *w) {
    if (field_depth != 0 || w->v->nodes > trial_small || w->u->nodes < trial_large) return verdict::next;
    if (over_integers() && !contents_divide(w->u->p, w->v->p)) return verdict::next;
    return v_if_it_divides(w, 1, lintmode ? 0 : rat_yes);
}

verdict permit_general(gcd_work *w) {
    if (modularmode && w->total >= forced_general && c_cntcount < content_count_limit) w->use_general = 1;
    if (!w->use_general) return verdict::next;
    if ((c_cntcount == 0 || w->level == c_cntdepth) && depth_only_2(w->u->p)) w->use_general = 0;
    if (g_cntcount > g_cutoff) w->use_general = 0;
    return verdict::next;
}

} // namespace tolvek
