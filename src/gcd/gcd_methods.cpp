/* The last steps of polygcd: trial divisions, and the methods that compute. */
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "gcd/interpolated_gcd.h"
#include "gcd/sparse_gcd.h"
#include "poly/measures.h"

namespace tolvek {

verdict v_if_it_divides(gcd_work *w, int pretest, int may_guess) {
    if (w->wants_cofactors()) {
        if (!trial_poly_divide(w->u->p, w->v->p, w->u_over_answer.slot(), w->names, pretest)) return verdict::next;
        poly_set(1, w->v_over_answer.slot());
    } else if (!trial_poly_divide_noq(w->u->p, w->v->p, w->names, pretest, may_guess)) {
        return verdict::next;
    }
    poly_assign(w->v->p, w->answer.slot());
    return verdict::finish;
}

/* v cannot divide u where images have told that the GCD has a lower degree. */
static bool v_may_divide(const gcd_work *w) { return w->degree_bound >= w->v->degree(); }

static bool worth_a_trial(const gcd_work *w) {
    return v_may_divide(w) && (w->v->degree() == 1 || w->total > trial_cutoff);
}

/* With small coefficients the division is cheap whatever comes of it. */
verdict early_trial(gcd_work *w) {
    if (!over_integers() || !worth_a_trial(w) || max_digits(w->u->p) >= trial_bits) return verdict::next;
    return v_if_it_divides(w, 0, 0);
}

verdict trial(gcd_work *w) {
    if (!over_integers() || !worth_a_trial(w) || max_digits(w->u->p) < trial_bits) return verdict::next;
    return v_if_it_divides(w, 0, 0);
}

/* Nodes of both operands from which images pay: below, Algorithm C is through before two primes are. */
constexpr int modular_nodes = 40, interpolation_nodes = 24;

static verdict by_images(gcd_work *w) {
    w->images_tried = true;
    const bool wanted = w->wants_cofactors();
    const bool found =
        basic_mod_method(w->u->p, w->v->p, w->answer.slot(), w->names, wanted ? w->u_over_answer.slot() : nullptr,
                         wanted ? w->v_over_answer.slot() : nullptr);
    return found ? verdict::finish : verdict::next;
}

/* The degree is known, so that the images cannot disappoint; operands that the cache may have are looked for first. */
verdict early_modular_method(gcd_work *w) {
    if (!over_integers() || field_depth != 0 || !w->degree_known || !w->balanced) return verdict::next;
    if (w->total <= maxx(tripval, modular_nodes) || v_may_divide(w)) return verdict::next;
    if (w->v->degree() >= stash_degree_early && look_in_stash(w) == verdict::finish) return verdict::finish;
    return by_images(w);
}

verdict modular_method(gcd_work *w) {
    if (!over_integers() || field_depth != 0 || w->total < modular_nodes || w->images_tried) return verdict::next;
    return by_images(w);
}

verdict modular_trial(gcd_work *w) {
    if (!modularmode || !v_may_divide(w)) return verdict::next;
    const bool deep = !has_number_coefficient(w->v->p) || number_polys + 1 - w->level >= 3;
    if (w->v->degree() != 1 && !(w->total > trial_cutoff && deep)) return verdict::next;
    return v_if_it_divides(w, 1, 0);
}

verdict interpolate(gcd_work *w) {
    if (!in_prime_field() || field_depth != 0 || !chinhensel || w->total < interpolation_nodes) return verdict::next;
    if (sparse_gcd(w->u->p, w->v->p, w->answer.slot(), w->names)) return verdict::finish;
    if (w->prefer_c) return verdict::next;
    return interpolated_gcd(w->u->p, w->v->p, w->answer.slot(), w->names) ? verdict::finish : verdict::next;
}

verdict last_resort(gcd_work *w) {
    algorithm_c(w->u->p, w->v->p, w->answer.slot(), w->names);
    return verdict::finish;
}

} // namespace tolvek
