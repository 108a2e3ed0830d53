/* GCDs in one variable: residues by flat arrays, floats by Euclid's algorithm with a sense for rounding. */
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "poly/euclid.h"
#include "poly/flat_uni.h"
#include "top/heap.h"
#include "top/interrupts.h"

#include <algorithm>
#include <cmath>

namespace tolvek {

/* ---- residues ---- */

/* *r := u mod v. What is left is a polynomial of lower degree, 0 included. */
static void remainder_of(const polynode *u, const polynode *v, poly_handle &r) {
    safe_point();
    poly_div_no_q(u, v, r.slot());
}

/* Divisions of lists until the degrees fit arrays. A sparse operand of high degree is reduced by powers of x. */
static polynode *gcd_of_residues(const polynode *u, const polynode *v, pt *names) {
    if (u->expo < v->expo) std::swap(u, v);
    poly_handle larger, smaller;
    while (u->expo > most_flat_degree && !is_constant(v)) {
        poly_handle r;
        remainder_of(u, v, r);
        smaller.release_to(larger.slot());
        r.release_to(smaller.slot());
        u = v;
        v = smaller.get();
    }
    poly_handle g;
    if (poly_iszero(v))
        poly_assign(u, g.slot());
    else if (is_constant(v))
        poly_set(1, g.slot());
    else
        fastest_poly_gcd(u, v, g.slot(), 1, names);
    return g.release();
}

/* The same with a look into the cache. */
static void remembered_gcd_of_residues(const polynode *u, const polynode *v, poly_handle &g, pt *names) {
    stash_attempt attempt("negative polygcd_stack_depth 2");
    const bool worth_it = int64_t{u->expo} + v->expo > small_gcd_stash_cut && minn(u->expo, v->expo) >= stash_degree;
    if (worth_it && attempt.find(u, v, names->pt_level, g.slot())) return;
    *g.slot() = gcd_of_residues(u, v, names);
    attempt.keep(u, v, names->pt_level, g.get());
}

/* ---- floats ---- */

/* Dense coefficients by exponent. The degree of 0 is -1. */
struct dense {
    buffer<long double> at;
    int64_t degree = -1;

    void settle() {
        while (degree >= 0 && at[static_cast<std::size_t>(degree)] == 0) degree--;
    }
    long double &operator[](int64_t i) { return at[static_cast<std::size_t>(i)]; }
    long double lead() { return at[static_cast<std::size_t>(degree)]; }
};

static void pour(const polynode *p, dense &a) {
    a.degree = p->expo;
    a.at.resize(static_cast<std::size_t>(a.degree) + 1);
    std::fill(a.at.begin(), a.at.end(), 0.0L);
    for (; p; p = p->next) a[p->expo] = (p->is_number ? p : p->poly)->num->flote_val;
    a.settle();
}

static polynode *poured_back(dense &a) {
    growing_list list;
    for (int64_t i = a.degree; i >= 0; i--) {
        if (a[i] == 0) continue;
        poly_handle number_term(new_number_term()), term;
        number_term->num->flote_val = a[i];
        make_monomial(term.slot(), static_cast<int32_t>(i), number_term.release());
        list.append(term.release());
    }
    return list_or_zero(list.release());
}

static void scale(dense &a) {
    long double largest = 0;
    for (int64_t i = 0; i <= a.degree; i++) largest = std::max(largest, std::fabs(a[i]));
    if (!(largest > 0) || !std::isfinite(largest)) return;
    for (int64_t i = 0; i <= a.degree; i++) a[i] /= largest;
    a.settle();
}

/* a := a mod b, without the noise: coefficients that rounding leaves where exact numbers would give 0. Each pass lowers
   the degree by dropping the head, whatever its value; both have largest coefficient 1 at the start. */
static void reduce_floats(dense &a, dense &b) {
    scale(a);
    while (a.degree >= b.degree) {
        safe_point();
        const long double f = a.lead() / b.lead();
        const int64_t shift = a.degree - b.degree;
        for (int64_t i = b.degree - 1; i >= 0; i--) a[i + shift] -= f * b[i];
        a.degree--;
    }
    while (a.degree >= 0 && !(std::fabs(a.lead()) >= flote_noise)) a.degree--; /* purges what is no number too */
    for (int64_t i = 0; i < a.degree; i++)
        if (std::fabs(a[i]) < flote_noise) a[i] = 0;
    scale(a);
}

static polynode *gcd_of_floats(const polynode *u, const polynode *v) {
    dense a, b;
    pour(u, a);
    pour(v, b);
    if (a.degree < b.degree) std::swap(a, b);
    scale(b);
    while (b.degree > 0) {
        reduce_floats(a, b);
        std::swap(a, b);
    }
    if (b.degree < 0) return poured_back(a);
    polynode *one = nullptr;
    poly_set(1, &one);
    return one;
}

/* ---- both ---- */

/* Is an operand a number, which has no GCD here? *g := 1 then. */
static bool number_among(const polynode *u, const polynode *v, const char *text, polynode **g) {
    if (!is_constant(u) && !is_constant(v)) return false;
    tolvek_error(text, 0);
    poly_set(1, g);
    return true;
}

static void univariate_gcd(const polynode *u, const polynode *v, polynode **g, int make_monic, pt *names) {
    poly_handle answer;
    if (is_single_term(u))
        monomial2(u, v, answer.slot());
    else if (is_single_term(v))
        monomial2(v, u, answer.slot());
    else if (flotemode)
        *answer.slot() = gcd_of_floats(u, v);
    else
        remembered_gcd_of_residues(u, v, answer, names);
    if (make_monic && !is_constant(answer.get())) {
        poly_handle leading;
        monic_poly(answer.slot(), leading.slot(), names);
    }
    answer.release_to(g);
}

void basic_poly_gcd(polynode *u, polynode *v, polynode **g, int make_monic, pt *names) {
    if (number_among(u, v, " number in basic_poly_gcd ", g)) return;
    univariate_gcd(u, v, g, make_monic, names);
}

void fl_basic_poly_gcd(polynode *u, polynode *v, polynode **g, int make_monic, pt *names) {
    if (number_among(u, v, " number in float basic_poly_gcd ", g)) return;
    univariate_gcd(u, v, g, make_monic, names);
}

void monomial2(const polynode *m, const polynode *p, polynode **g) {
    poly_handle factor, power;
    gcd_of_integer_contents(m, p, factor.slot());
    make_monomial(power.slot(), minn(m->expo, low_exponent(p)), factor.release());
    power.release_to(g);
}

int polys_there(const polynode *p, int level) {
    char flags[most_variables + 1] = {};
    poly_vars(p, level, flags);
    int n = 0;
    for (int i = level; i <= number_polys && i <= most_variables; i++) n += flags[i] != 0;
    return n;
}

} // namespace tolvek
