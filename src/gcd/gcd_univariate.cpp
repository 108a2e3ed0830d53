/* GCDs in one variable: Euclid's algorithm on arrays of residues and of floats. */
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "numbers/modular.h"
#include "top/heap.h"
#include "top/interrupts.h"

#include <algorithm>
#include <cmath>

namespace tolvek {

/* Dense coefficients by exponent. The degree of 0 is -1. */
template <class T> struct dense {
    buffer<T> at;
    int64_t degree = -1;

    void settle() {
        while (degree >= 0 && at[static_cast<std::size_t>(degree)] == T{0}) degree--;
    }
    T &operator[](int64_t i) { return at[static_cast<std::size_t>(i)]; }
    T lead() { return at[static_cast<std::size_t>(degree)]; }
};

template <class T> static T value_of(const number *x) {
    if constexpr (std::is_same_v<T, int32_t>)
        return x->lint_val;
    else
        return x->flote_val;
}

template <class T> static void pour(const polynode *p, dense<T> &a) {
    a.degree = p->expo;
    a.at.resize(static_cast<std::size_t>(a.degree) + 1);
    std::fill(a.at.begin(), a.at.end(), T{0});
    for (; p; p = p->next) a[p->expo] = value_of<T>(p->is_number ? p->num : p->poly->num);
    a.settle();
}

template <class T> static polynode *poured_back(dense<T> &a) {
    growing_list list;
    for (int64_t i = a.degree; i >= 0; i--) {
        if (a[i] == T{0}) continue;
        poly_handle term(new_number_term());
        if constexpr (std::is_same_v<T, int32_t>)
            term->num->lint_val = a[i];
        else
            term->num->flote_val = a[i];
        if (i > 0) {
            polynode *power = new_term();
            power->expo = static_cast<int32_t>(i);
            power->poly = term.release();
            *term.slot() = power;
        }
        list.append(term.release());
    }
    return list_or_zero(list.release());
}

/* ---- residues ---- */

/* a := a mod b. The inner loop multiplies by a known factor. */
static void reduce_residues(dense<int32_t> &a, dense<int32_t> &b) {
    const int32_t m = modulus, inverse = mod_inverse(b.lead());
    while (a.degree >= b.degree) {
        safe_point();
        const int32_t f = modmult(a.lead(), inverse);
        const int64_t shift = a.degree - b.degree;
        for (int64_t i = b.degree; i >= 0; i--)
            if (b[i]) a[i + shift] = mod_sub(a[i + shift], modmult(f, b[i]), m);
        a.settle();
    }
}

/* ---- floats ---- */

static void scale(dense<long double> &a) {
    long double largest = 0;
    for (int64_t i = 0; i <= a.degree; i++) largest = std::max(largest, std::fabs(a[i]));
    if (!(largest > 0) || !std::isfinite(largest)) return;
    for (int64_t i = 0; i <= a.degree; i++) a[i] /= largest;
    a.settle();
}

/* a := a mod b, without the noise: coefficients that rounding leaves where exact numbers would give 0. Each pass lowers
   the degree by dropping the head, whatever its value; both have largest coefficient 1 at the start. */
static void reduce_floats(dense<long double> &a, dense<long double> &b) {
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

/* ---- Euclid ---- */

template <class T>
static polynode *euclid(const polynode *u, const polynode *v, void (*reduce)(dense<T> &, dense<T> &)) {
    dense<T> a, b;
    pour(u, a);
    pour(v, b);
    if (a.degree < b.degree) std::swap(a, b);
    if constexpr (std::is_same_v<T, long double>) scale(b);
    while (b.degree > 0) {
        reduce(a, b);
        std::swap(a, b);
    }
    if (b.degree == 0) {
        polynode *one = nullptr;
        poly_set(1, &one);
        return one;
    }
    return poured_back(a);
}

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
        *answer.slot() = euclid<long double>(u, v, reduce_floats);
    else
        *answer.slot() = euclid<int32_t>(u, v, reduce_residues);
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
