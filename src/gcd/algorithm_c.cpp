/* Algorithm C: the sequence of subresultants, which ends over every ring. Its main variable is the one whose leading
   coefficients are smallest, since those are the multipliers of the pseudo-divisions. */
#include "gcd/gcd_levels.h"
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "poly/measures.h"
#include "poly/mult.h"
#include "top/interrupts.h"

#include <algorithm>

namespace tolvek {

constexpr int leave_main_variable = 30; /* terms of both up to which the main variable stays */
constexpr int least_degree_to_choose = 3;
constexpr int most_levels_looked_at = 12;
constexpr int64_t few_terms = 3; /* of a leading coefficient: the search ends */

/* ---- the choice of the main variable ---- */

/* The number of terms of the coefficient of the highest power of the k-th variable. */
static int64_t terms_of_leading_coefficient(const polynode *p, int k, int32_t degree) {
    if (k == 1) return p->expo == degree ? (p->is_number ? 1 : poly_numterms(p->poly, 2)) : 0;
    int64_t n = 0;
    for (; p; p = p->next)
        if (!p->is_number)
            n += terms_of_leading_coefficient(p->poly, k - 1, degree);
        else if (degree == 0)
            n++;
    return n;
}

static int best_variable(const polynode *u, const polynode *v, int level) {
    if (fast_f_numterms(u, level) + fast_f_numterms(v, level) <= leave_main_variable) return 1;
    if (v->expo < least_degree_to_choose) return 1;
    const int below = field_depth > 0 ? field_depth - level : number_polys + 1 - level;
    int best = 1;
    int64_t fewest = INT64_MAX;
    for (int i = 1; i <= std::min(below, most_levels_looked_at); i++) {
        int32_t degree_u = 0, degree_v = 0;
        max_degree(u, i, &degree_u);
        max_degree(v, i, &degree_v);
        if (degree_u <= 0 || degree_v <= 0) continue;
        const int64_t terms = terms_of_leading_coefficient(v, i, degree_v);
        if (terms < fewest) {
            fewest = terms;
            best = i;
        }
        if (terms < few_terms) break;
    }
    return best;
}

/* ---- the sequence ---- */

/* p := p^e for e from 0 on. */
static void raise(poly_handle &p, int32_t e, pt *names) {
    if (e == 0)
        poly_set(1, p.slot());
    else if (e > 1)
        compute_power(p.slot(), static_cast<uint32_t>(e), names);
}

static void leading_coefficient(const polynode *p, poly_handle &lc) {
    if (p->is_number)
        node_assign(p, lc.slot());
    else
        poly_assign(p->poly, lc.slot());
    padded(lc, 1);
}

/* What runs along with the sequence: the factors by which the next remainder is divisible. */
struct subresultant_factors {
    poly_handle g, h;

    subresultant_factors() {
        poly_set(1, g.slot());
        poly_set(1, h.slot());
    }
    /* r := r / (g h^delta) */
    bool divide(poly_handle &r, int32_t delta, pt *names) {
        poly_handle divisor;
        poly_assign(h.get(), divisor.slot());
        raise(divisor, delta, names);
        poly_mult(divisor.get(), g.get(), divisor.slot(), names);
        return poly_eq_1(divisor.get()) || exact_quotient(r.get(), divisor.get(), r.slot(), names);
    }
    /* g := the leading coefficient of u, h := g^delta / h^(delta - 1) */
    bool advance(const polynode *u, int32_t delta, pt *names) {
        leading_coefficient(u, g);
        if (delta == 0) return true;
        poly_handle power;
        poly_assign(g.get(), power.slot());
        raise(power, delta, names);
        raise(h, delta - 1, names);
        if (poly_eq_1(h.get())) {
            power.release_to(h.slot());
            return true;
        }
        return exact_quotient(power.get(), h.get(), h.slot(), names);
    }
};

static bool contains_main(const polynode *p) { return p->expo != 0 || p->next; }

/* *g := the last member of the sequence that is not 0, 1 where it is free of the main variable. False where a division
   was not exact. */
static bool last_subresultant(const polynode *u, const polynode *v, poly_handle &g, pt *names) {
    if (u->expo < v->expo ||
        (u->expo == v->expo && poly_numterms(u, names->pt_level) < poly_numterms(v, names->pt_level)))
        std::swap(u, v);
    poly_handle own_u, own_v;
    subresultant_factors factors;
    for (;;) {
        safe_point();
        const int32_t delta = u->expo - v->expo;
        poly_handle r;
        pseudo_div_no_q(u, v, r.slot(), names, 1);
        if (poly_iszero(r.get())) {
            poly_assign(v, g.slot());
            return true;
        }
        if (!contains_main(r.get())) {
            poly_set(1, g.slot());
            return true;
        }
        if (!factors.divide(r, delta, names)) return false;
        u = v;
        v = r.get();
        own_v.release_to(own_u.slot());
        r.release_to(own_v.slot());
        if (!factors.advance(u, delta, names)) return false;
    }
}

/* ---- the routine ---- */

/* p := p divided by its content, which goes to c, a wrapper or a constant. */
static bool make_primitive(poly_handle &p, poly_handle &c, pt *names) {
    content(p.get(), c.slot(), names, 0, 1, 1);
    padded(c, 1);
    return poly_eq_1(c.get()) || exact_quotient(p.get(), c.get(), p.slot(), names);
}

/* The k-th variable leads; contents with respect to it may contain the main variable. */
static bool by_other_variable(const polynode *u, const polynode *v, int k, poly_handle &g, pt *names) {
    poly_handle front_u(level_to_front(u, k)), front_v(level_to_front(v, k));
    poly_handle c_u, c_v, c;
    if (!make_primitive(front_u, c_u, names) || !make_primitive(front_v, c_v, names)) return false;
    polygcd(c_u.get(), c_v.get(), c.slot(), 0, 1, 1, names, 1, 1, 0);
    if (!last_subresultant(front_u.get(), front_v.get(), g, names)) return false;
    if (!is_constant(g.get()) && !make_primitive(g, c_u, names)) return false;
    poly_mult(g.get(), c.get(), g.slot(), names);
    replace_poly(level_from_front(g.get(), k), g.slot());
    return true;
}

void algorithm_c(const polynode *u, const polynode *v, polynode **g, pt *names) {
    poly_handle answer;
    const int best = flotemode ? 1 : best_variable(u, v, names->pt_level);
    const bool done = best == 1 ? last_subresultant(u, v, answer, names) : by_other_variable(u, v, best, answer, names);
    if (!done) {
        if (!flotemode) tolvek_error("poly_divide failed in Alg C.", 0);
        poly_set(1, answer.slot());
    }
    if (!contains_main(answer.get())) poly_set(1, answer.slot());
    poly_handle c;
    if (!is_constant(answer.get())) make_primitive(answer, c, names);
    answer.release_to(g);
}

} // namespace tolvek
