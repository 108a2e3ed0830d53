/* Contents with respect to other variables than the main one. For every variable y the GCD of u and v is that of their
   contents in y, which are free of y, times that of the primitive parts. An operand that is free of y itself leaves of the
   other one only the content in y. */
#include "gcd/content.h"
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "poly/measures.h"
#include "poly/mult.h"

#include <algorithm>

namespace tolvek {

/* The last variable that is tried, by the size of the operands. */
static int last_variable(const gcd_work *w) {
    const int nodes = bigg_node_total(w->u->p) + bigg_node_total(w->v->p);
    const int limit = nodes < 1200 ? 4 : nodes < 10000 ? 8 : 12;
    const int last = std::min(std::max(deepest_level(w->u->p), deepest_level(w->v->p)), limit);
    return field_depth > 0 ? std::min(last, field_depth - w->level) : last;
}

/* A sparse operand is worth more contents. */
static int cutoff_for(const polynode *u) {
    int64_t box;
    const int nodes = expon_node_total(u, &box);
    const int64_t sparsity = box / nodes;
    if (sparsity >= 20001) return std::max(100, g_cutoff);
    if (sparsity >= 6001) return std::max(50, g_cutoff);
    return g_cutoff;
}

/* What one variable has brought. */
struct content_gain {
    int terms = 0;        /* of the contents, less 1 each */
    bool useless = false; /* a division has failed: the stage ends */
};

static bool divide_operand(gcd_work *w, gcd_operand *a, const polynode *divisor) {
    if (poly_eq_1(divisor)) return true;
    poly_handle quotient;
    if (!exact_quotient(a->p, divisor, quotient.slot(), w->names)) return false;
    a->become(quotient.release());
    return true;
}

static void multiply_general(gcd_work *w, poly_handle &factor) {
    if (poly_eq_1(factor.get())) return;
    if (!w->general)
        factor.release_to(w->general.slot());
    else
        poly_mult(w->general.get(), factor.get(), w->general.slot(), w->names);
}

static void content_in(const gcd_operand *a, int k, poly_handle &c, pt *names, int *no_main) {
    constexpr int big_nodes = 13000;
    general_content(const_cast<polynode *>(a->p), k, c.slot(), names, no_main, bigg_node_total(a->p) > big_nodes);
}

static content_gain take_content_in(gcd_work *w, int k) {
    constexpr int long_content = 12; /* terms less 1 of u's from which v's is not computed */
    content_gain gain;
    poly_handle c_u, c_v, factor;
    int free_u = 0, free_v = 0;
    content_in(w->u, k, c_u, w->names, &free_u);
    const int t_u = fast_numterms(free_u ? w->u->p : c_u.get()) - 1;
    if (!free_u && t_u >= long_content) {
        polygcd(c_u.get(), const_cast<polynode *>(w->v->p), factor.slot(), 0, 1, 1, w->names, 1, 1, 0);
        gain.terms = t_u + fast_numterms(factor.get()) - 1;
        gain.useless = !divide_operand(w, w->u, c_u.get()) || !divide_operand(w, w->v, factor.get());
        multiply_general(w, factor);
        return gain;
    }
    content_in(w->v, k, c_v, w->names, &free_v);
    gain.terms = t_u + fast_numterms(free_v ? w->v->p : c_v.get()) - 1;
    if (free_u || free_v) { /* the one that is not free leaves its content */
        if (!free_u) w->u->become(c_u.release());
        if (!free_v) w->v->become(c_v.release());
        return gain;
    }
    polygcd(c_u.get(), c_v.get(), factor.slot(), 0, 1, 1, w->names, 1, 1, 0);
    gain.useless = !divide_operand(w, w->u, c_u.get()) || !divide_operand(w, w->v, c_v.get());
    multiply_general(w, factor);
    return gain;
}

/* The operands are primitive with respect to the main variable: one that has lost it is a unit. */
static bool has_lost_main(const gcd_operand *a) { return a->p->expo == 0 && !a->p->next; }

verdict general_contents(gcd_work *w) {
    constexpr int enough_terms = 18, enough_for_unequal = 30, unequal_nodes = 501, unequal_ratio = 8;
    if (!w->use_general || flotemode) return verdict::next;
    const int n_u = poly_length(w->u->p), n_v = poly_length(w->v->p);
    if (n_u <= general_nodes || n_v <= general_nodes || (n_u <= general_largest && n_v <= general_largest))
        return verdict::next;
    const int last = last_variable(w);
    int cut = cutoff_for(w->u->p), sum = 0;
    for (int k = 2; k <= last; k++) {
        g_cutoff = cut;
        g_cntcount += 2;
        const content_gain gain = take_content_in(w, k);
        const int sum_before = sum;
        sum += gain.terms;
        if (3 * g_cutoff < sum / (k - 1)) g_cutoff = 3 * g_cutoff + 2;
        cut = std::max(gain.terms, g_cutoff);
        if (has_lost_main(w->u) || has_lost_main(w->v)) {
            w->answer_one();
            return verdict::finish;
        }
        const int nodes_u = bigg_node_total(w->u->p), nodes_v = bigg_node_total(w->v->p);
        const bool unequal = g_cntcount < g_cutoff && nodes_u + nodes_v >= unequal_nodes &&
                             (nodes_u > unequal_ratio * nodes_v || nodes_v > unequal_ratio * nodes_u);
        if (gain.useless || g_cntcount >= g_cutoff) break;
        if (sum_before + gain.terms >= (unequal ? enough_for_unequal : enough_terms)) break;
    }
    w->degree_bound = minn(w->degree_bound, minn(w->u->degree(), w->v->degree()));
    return verdict::next;
}

} // namespace tolvek
