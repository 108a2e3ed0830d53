/* Variables that occur in one operand alone cannot occur in the GCD. Modulo a prime they get random values, and the GCD
   of what is left is the answer if it divides the operands as they were: it is a multiple of their GCD as long as neither
   has lost degree. */
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "numbers/modular.h"
#include "numbers/random.h"
#include "poly/add.h"
#include "poly/measures.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

namespace tolvek {

constexpr int32_t stays = -1; /* in the place of a value: the variable is not replaced */

/* *out := p with the values of its levels, from its own one on; 0 as such. A level that is replaced keeps its wrapper. */
static void evaluate_levels(const polynode *p, const int32_t *values, poly_handle &out) {
    check_stack();
    if (is_constant(p)) {
        poly_assign(p, out.slot());
        return;
    }
    poly_handle sum;
    poly_set(0, sum.slot());
    for (; p; p = p->next) {
        safe_point();
        poly_handle coefficient, term;
        if (p->is_number)
            node_assign(p, coefficient.slot());
        else
            evaluate_levels(p->poly, values + 1, coefficient);
        int32_t power = 1;
        if (values[0] != stays) mod_number_power(values[0], static_cast<uint32_t>(p->expo), &power);
        if (power == 0 || poly_iszero(coefficient.get())) continue;
        if (power != 1) mod_num_poly_mult(power, coefficient.slot());
        make_monomial(term.slot(), values[0] == stays ? p->expo : 0, coefficient.release());
        simplest_poly_add(sum.release(), term.release(), sum.slot());
    }
    sum.release_to(out.slot());
}

/* Copies of the operands without the variables that only one of them has; null where there are too few of these. */
static bool find_values(const gcd_work *w, int32_t *values) {
    char in_u[most_variables + 2] = {}, in_v[most_variables + 2] = {};
    const int deepest = maxx(poly_vars(w->u->p, 1, in_u), poly_vars(w->v->p, 1, in_v));
    int alone = 0;
    for (int i = 0; i < most_variables; i++) values[i] = stays;
    for (int level = 2; level <= deepest; level++) {
        if (in_u[level] == in_v[level]) continue;
        values[level - 1] = random_31() % (modulus - 1) + 1;
        alone++;
    }
    return alone >= thinning_variables;
}

static bool divides_both(const gcd_work *w, const polynode *g) {
    if (g->expo == 0 && !g->next) return is_constant(g);
    return trial_poly_divide_noq(w->u->p, g, w->names, 0, 0) && trial_poly_divide_noq(w->v->p, g, w->names, 0, 0);
}

verdict thin_variables(gcd_work *w) {
    if (!in_prime_field() || field_depth != 0 || w->just_degree || w->total < thinning_nodes) return verdict::next;
    const int terms_u = fast_numterms(w->u->p), terms_v = fast_numterms(w->v->p);
    if (terms_u < thinning_terms || terms_v < thinning_terms || terms_u + terms_v < thinning_both_terms)
        return verdict::next;
    int32_t values[most_variables];
    if (!find_values(w, values)) return verdict::next;
    poly_handle thin_u, thin_v;
    evaluate_levels(w->u->p, values, thin_u);
    evaluate_levels(w->v->p, values, thin_v);
    if (thin_u->expo != w->u->degree() || thin_v->expo != w->v->degree()) return verdict::next;
    polygcd(thin_u.get(), thin_v.get(), w->answer.slot(), 0, w->run_tests, w->use_general, w->names, 1, 1, 0);
    return divides_both(w, w->answer.get()) ? verdict::finish : verdict::next;
}

} // namespace tolvek
