/* The first tests of polygcd: constants, equal operands, one variable, operands without the main variable. */
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "numbers/handles.h"
#include "numbers/int_gcd.h"

namespace tolvek {

/* GCD(0, v) is v in the form of an answer. */
verdict zero_operand(gcd_work *w) {
    const polynode *other = nullptr;
    if (poly_iszero(w->u->p))
        other = w->v->p;
    else if (poly_iszero(w->v->p))
        other = w->u->p;
    if (!other) return verdict::next;
    poly_assign(other, w->answer.slot());
    if (!poly_iszero(other)) answer_form(w->answer, w->names);
    return verdict::whole;
}

void gcd_of_integer_contents(const polynode *u, const polynode *v, polynode **g) {
    poly_handle of_u;
    gcd_coefs(u, of_u.slot());
    if (over_integers() && !poly_eq_1(of_u.get())) {
        poly_handle of_v;
        gcd_coefs(v, of_v.slot());
        binary_gcd(of_u->num, of_v->num, of_u->num);
    }
    of_u.release_to(g);
}

verdict two_constants(gcd_work *w) {
    if (!is_constant(w->u->p) || !is_constant(w->v->p)) return verdict::next;
    gcd_of_integer_contents(w->u->p, w->v->p, w->answer.slot());
    return verdict::whole;
}

verdict one_constant(gcd_work *w) {
    const bool u_constant = is_constant(w->u->p);
    if (!u_constant && !is_constant(w->v->p)) return verdict::next;
    /* the constant first: 1 is recognised without a look at the other operand */
    const polynode *constant = u_constant ? w->u->p : w->v->p, *other = u_constant ? w->v->p : w->u->p;
    gcd_of_integer_contents(constant, other, w->answer.slot());
    return verdict::whole;
}

verdict missing_names(gcd_work *w) {
    if (w->names) return verdict::next;
    tolvek_error("pt nil in polygcd.", 0);
    w->answer_one();
    return verdict::whole;
}

verdict many_visits(gcd_work *w) {
    if (c_cntcount > content_count_limit) w->use_general = 0;
    return verdict::next;
}

/* A polynomial that lies in the field wholly is a unit there. */
verdict operand_in_field(gcd_work *w) {
    if (field_depth <= 0) return verdict::next;
    if (poly_depth(w->u->p) + w->level <= field_depth && poly_depth(w->v->p) + w->level <= field_depth)
        return verdict::next;
    gcd_of_integer_contents(w->u->p, w->v->p, w->answer.slot());
    return verdict::whole;
}

verdict same_operand(gcd_work *w) {
    if (w->u->p != w->v->p) return verdict::next;
    poly_assign(w->u->p, w->answer.slot());
    answer_form(w->answer, w->names);
    return verdict::whole;
}

verdict one_variable_modular(gcd_work *w) {
    if (!in_prime_field() || number_polys != 1) return verdict::next;
    basic_poly_gcd(const_cast<polynode *>(w->u->p), const_cast<polynode *>(w->v->p), w->answer.slot(), 1, w->names);
    return verdict::whole;
}

verdict one_variable_float(gcd_work *w) {
    if (!flotemode || number_polys != 1) return verdict::next;
    fl_basic_poly_gcd(const_cast<polynode *>(w->u->p), const_cast<polynode *>(w->v->p), w->answer.slot(), 1, w->names);
    return verdict::whole;
}

/* Neither operand has the main variable: the GCD is that of the coefficients, as many levels down as they have wrappers in
   common. */
verdict descend(gcd_work *w) {
    const polynode *u = w->u->p, *v = w->v->p;
    if (u->expo != 0 || v->expo != 0 || u->next || v->next) return verdict::next;
    pt *names = w->names;
    int k = 0;
    while (names->pt_next && !u->is_number && !v->is_number && u->expo == 0 && v->expo == 0 && !u->next && !v->next) {
        u = u->poly;
        v = v->poly;
        names = names->pt_next;
        k++;
        if (names->pt_level - 1 != original_depth) continue;
        c_cntcount = a_cntcount = d_cntcount = c_cntdepth = 0;
        if (w->top && w->use_general) {
            original_depth++;
            g_cntcount = 0;
            g_cutoff = first_g_cutoff;
        }
    }
    polygcd(const_cast<polynode *>(u), const_cast<polynode *>(v), w->answer.slot(), w->just_degree, w->run_tests,
            w->use_general, names, 1, 1, 1);
    padded(w->answer, k);
    return verdict::whole;
}

/* A wrapper alone: the main variable does not occur. */
static bool is_wrapper(const polynode *p) { return p->expo == 0 && !p->next; }

verdict one_without_main(gcd_work *w) {
    const polynode *q = w->u->p, *p = w->v->p;
    if (is_wrapper(p)) std::swap(p, q);
    if (!is_wrapper(q)) return verdict::next;
    aux_content(const_cast<polynode *>(q), const_cast<polynode *>(p), w->answer.slot(), w->names, 0, w->use_general, 1,
                1);
    padded(w->answer, 1);
    return verdict::whole;
}

verdict univariate_modular(gcd_work *w) {
    if (!in_prime_field() || !height_is_1(w->u->p) || !height_is_1(w->v->p)) return verdict::next;
    basic_poly_gcd(const_cast<polynode *>(w->u->p), const_cast<polynode *>(w->v->p), w->answer.slot(), 1, w->names);
    return verdict::whole;
}

} // namespace tolvek
