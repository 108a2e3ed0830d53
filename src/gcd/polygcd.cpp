/* The driver of polynomial GCDs: a list of steps over one working record, in the order in which they run. A step that
   cannot answer leaves the record to the next one, better prepared than before; the last one always answers. */
#include "gcd/gcd_work.h"
#include "quoly/quoly.h"
#include "top/guards.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <cassert>
#include <iterator>

namespace tolvek {

const gcd_step gcd_tree[] = {
    /* trivial cases */
    {0, "an operand 0", zero_operand},
    {1, "two constants", two_constants},
    {2, "one constant", one_constant},
    {3, "no variable", missing_names},
    {4, "too many visits", many_visits},
    {5, "an operand in the field", operand_in_field},
    {6, "one operand twice", same_operand},
    {7, "one variable, modular", one_variable_modular},
    {8, "one variable, float", one_variable_float},
    {9, "neither has the main variable", descend},
    {10, "one has not the main variable", one_without_main},
    {11, "univariate, modular", univariate_modular},
    /* preparation */
    {12, "counters of the level", reset_level_counters},
    {13, "powers of the main variable", take_monomials},
    {14, "stride", take_stride},
    {15, "the larger one first", larger_first},
    {16, "composite modulus", composite_modulus},
    {17, "sizes", measure_operands},
    {18, "a small operand divides a large one", small_divides_large},
    {19, "are general contents worth it", permit_general},
    /* tests and cheap methods */
    {20, "degree modulo a prime", modular_pretest},
    {21, "Euclid over a field of relations", euclid_over_field},
    {22, "images at points, modular", evaluation_tests_modular},
    {24, "variables in one operand alone", thin_variables},
    {25, "contents", take_contents},
    {27, "equal operands", equal_up_to_unit},
    {28, "general contents", general_contents},
    /* choice of a method */
    {31, "the larger one first", larger_first},
    {33, "Algorithm C or interpolation", weigh_methods},
    {34, "balance", balance},
    {36, "trial division, small coefficients", early_trial},
    {37, "images modulo primes, early", early_modular_method},
    {38, "number of tests", count_tests},
    {40, "images at points", evaluation_tests},
    {41, "degree alone", degree_alone},
    {42, "the cache", look_in_stash},
    {43, "trial division", trial},
    {44, "images modulo primes", modular_method},
    {46, "trial division, modular", modular_trial},
    {47, "interpolation", interpolate},
    {48, "Algorithm C", last_resort},
};
constexpr int steps = static_cast<int>(std::size(gcd_tree));

static long answers[50];
long gcd_answers(int number) { return answers[number]; }
long polygcd_calls = 0;

static void run_tree(gcd_work *w) {
    for (const gcd_step &step : gcd_tree) {
        const verdict said = step.run(w);
        if (said == verdict::next) continue;
        answers[step.number]++;
        if (said == verdict::finish) finish_4(w);
        return;
    }
}

/* An operand that the caller has given away. */
static polynode *given(polynode *p, int keep, polynode **g) {
    if (keep) return nullptr;
    if (*g == p) *g = nullptr;
    return p;
}

static void start(gcd_work *w, const polynode *u, const polynode *v, pt *names) {
    check_stack();
    safe_point();
    polygcd_calls++;
    w->u->p = u;
    w->v->p = v;
    w->names = names;
    w->level = names ? names->pt_level : 0;
}

void polygcd(polynode *u, polynode *v, polynode **g, int just_degree, int run_tests, int use_general, pt *names,
             int keep_u, int keep_v, int top) {
    assert(keep_u || keep_v || u != v);
    poly_handle given_u(given(u, keep_u, g)), given_v(given(v, keep_v, g));
    gcd_work w;
    start(&w, u, v, names);
    w.just_degree = just_degree;
    w.run_tests = run_tests;
    w.use_general = use_general;
    w.top = top;
    run_tree(&w);
    w.answer.release_to(g);
}

/* ---- entries ---- */

/* Nested entries leave the counters of the GCD around them as they were. */
struct entry_counters {
    kept_value<int> abandoned{alg_c_count, 0}, depth{original_depth, 1};
};

void Lpolygcd(polynode **u, polynode **v, polynode **g, int, pt *names, gcd_cofactors *found) {
    entry_counters counters;
    gcd_work w;
    start(&w, *u, *v, names);
    w.run_tests = w.use_general = w.top = 1;
    w.cofactors = found;
    run_tree(&w);
    w.answer.release_to(g);
}

void Lpolygcd2(polynode **u, polynode **v, polynode **g, pt *names) { Lpolygcd(u, v, g, 1, names); }

void Lpolygcd3(polynode **u, polynode **g, pt *names) { Lpolygcd(u, u, g, 1, names); }

void gcd_0_poly(const quolynode *q, quolynode **r) {
    if (q->den) {
        error(203, blank);
        return;
    }
    polynode *p = q->num;
    poly_handle g;
    Lpolygcd3(&p, g.slot(), polynames);
    poly_to_value(g, r);
}

} // namespace tolvek
