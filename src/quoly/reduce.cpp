/* Cofactors, and the repair of divisors that do not divide. */
#include "quoly/reduce.h"

#include "display/progress.h"
#include "gcd/gcd.h"
#include "gcd/rough_gcd.h"
#include "poly/divide.h"
#include "top/text_io.h"

#include <cassert>

namespace tolvek {

/* Over floats the divisor counts that divides to within rounding, in several variables too; Lpolygcd finds there what
   divides exactly. It wants its operands by address: while laurent is on it sets parts of them aside for a time. */
static void gcd_with_all_tests(const polynode *a, const polynode *b, polynode **g, gcd_cofactors *found) {
    if (flotemode) return rough_gcd(a, b, g, polynames);
    polynode *u = const_cast<polynode *>(a), *v = const_cast<polynode *>(b);
    Lpolygcd(&u, &v, g, 1, polynames, found);
}

void (*gcd_of_parts)(const polynode *a, const polynode *b, polynode **g, gcd_cofactors *found) = gcd_with_all_tests;

namespace {

/* One reduction: what is divided, by what, and the cofactors so far. */
struct reduction {
    const polynode *a, *b;
    polynode **g;
    poly_handle a2, b2;

    void give_up() {
        poly_assign(a, a2.slot());
        poly_assign(b, b2.slot());
        poly_set(1, g);
    }
};

} // namespace

/* ---- exact division ---- */

static bool divides(const polynode *a, const polynode *g, poly_handle &q) {
    if (flotemode) return rough_poly_divide(a, g, q.slot(), polynames);
    if (!is_constant(g)) return trial_poly_divide(a, g, q.slot(), polynames, 0);
    int failed = 0;
    gen_poly_divide(a, g, q.slot(), polynames, &failed);
    return !failed;
}

/* 0, or the number of the operand that the divisor does not divide. */
static int undivided_operand(reduction &w) {
    if (!divides(w.a, *w.g, w.a2)) return 1;
    return divides(w.b, *w.g, w.b2) ? 0 : 2;
}

/* ---- repair ---- */

static void tell_warning(const char *before, int number, const char *behind) {
    if (verbose) sayf("%s%i%s", before, number, behind);
}

/* Turns off the fastest test that is on; `operand` is the one that was not divided. */
static void distrust_fast_tests(int operand) {
    if (try_rat) {
        try_rat = 0;
        tell_warning(" Warning ", operand,
                     ". A fast probabilistic test for exact poly division has been turned off (&_t).\n");
    } else if (rat_yes) {
        rat_yes = 0;
        tell_warning(" Warning ", operand + 2,
                     ". Another fast probabilistic test for exact poly division has been turned off.\n");
    } else {
        tell_warning(" *** Warning ", operand + 4, ". A  fast probabilistic gcd algorithm is being retried.\n");
    }
}

void reduce(const polynode *a, const polynode *b, polynode **g, polynode **a2, polynode **b2, gcd_cofactors *known) {
    assert(a != *g && b != *g);
    if (known && known->of_u && known->of_v) {
        known->of_u.release_to(a2);
        known->of_v.release_to(b2);
        return;
    }
    reduction w{a, b, g, poly_handle(), poly_handle()};
    for (int round = 0; int operand = undivided_operand(w); round++) {
        if (flotemode || round == most_reductions) {
            w.give_up();
            break;
        }
        distrust_fast_tests(operand);
        gcd_of_parts(a, b, g, nullptr);
    }
    w.a2.release_to(a2);
    w.b2.release_to(b2);
}

} // namespace tolvek
