#include "poly/measures.h"

#include "top/stack_limit.h"
#include "top/start_tables.h"

#include <climits>
#include <cmath>

namespace tolvek {

/* ---- terms ---- */

int poly_length(const polynode *p) { return fast_poly_length(p, INT_MAX - 1); }

int fast_poly_length(const polynode *p, int limit) {
    int n = 0;
    for (; p && n <= limit; p = p->next) n++;
    return n;
}

constexpr int no_field = INT_MAX; /* a level that no variable has */

static int field_level() { return field_depth > 0 ? field_depth : no_field; }

/* Adds to *n the leaf terms of p; from the level `field` on a polynomial counts 1. Stops once *n has reached stop. */
static void count_leaves(const polynode *p, int level, int field, int64_t stop, int64_t *n) {
    if (level >= field) {
        ++*n;
        return;
    }
    for (; p && *n < stop; p = p->next) {
        if (p->is_number)
            ++*n;
        else
            count_leaves(p->poly, level + 1, field, stop, n);
    }
}

static int64_t leaves(const polynode *p, int level, int field, int64_t stop) {
    check_stack();
    int64_t n = 0;
    count_leaves(p, level, field, stop, &n);
    return n;
}

int fast_numterms(const polynode *p) { return static_cast<int>(leaves(p, 1, no_field, 61)); }
int fast_f_numterms(const polynode *p, int level) { return static_cast<int>(leaves(p, level, field_level(), 101)); }
int qpoly_numterms(const polynode *p, int level) { return static_cast<int>(leaves(p, level, field_level(), 1001)); }
int64_t poly_numterms(const polynode *p, int level) { return leaves(p, level, field_level(), INT64_MAX); }

/* Of numerator and denominator. */
static int64_t leaves_of_quoly(const quolynode *q, int field) {
    if (q->is_num) return 1;
    int64_t n = leaves(q->num, 1, field, INT64_MAX);
    return q->den ? n + leaves(q->den, 1, field, INT64_MAX) : n;
}

int64_t numterms(const quolynode *q) { return leaves_of_quoly(q, no_field); }
int64_t f_numterms(const quolynode *q) { return leaves_of_quoly(q, field_level()); }

/* ---- masses ---- */

static bool in_chain_form() { return !flotemode && !lintmode; }

/* Adds to *mass what p weighs; stops once it has reached stop. */
static void add_mass(const polynode *p, int64_t stop, int64_t *mass) {
    constexpr int of_number = 31, of_digit = 8, of_node = 13;
    for (; p && *mass < stop; p = p->next) {
        if (p->is_number) {
            *mass += of_number + (in_chain_form() ? of_digit * p->num->num_len : 0);
        } else {
            *mass += of_node;
            add_mass(p->poly, stop, mass);
        }
    }
}

static int64_t mass_up_to(const polynode *p, int64_t stop) {
    check_stack();
    int64_t mass = 0;
    add_mass(p, stop, &mass);
    return mass < stop ? mass : stop;
}

int64_t simple_poly_mass(const polynode *p) { return mass_up_to(p, INT64_MAX); }
int very_simple_poly_mass(const polynode *p) { return static_cast<int>(mass_up_to(p, 251)); }
int more_simple_poly_mass(const polynode *p) { return static_cast<int>(mass_up_to(p, 351)); }

static int64_t magnitude(int64_t v) { return v < 0 ? -v : v; }

/* Is p one term under wrappers? */
static bool is_monomial(const polynode *p) {
    while (!p->next && !p->is_number) p = p->poly;
    return !p->next;
}

/* Its wrappers, and how deep the polynomial lies that its first variable stands before. */
static int64_t monomial_mass(const polynode *p) {
    int64_t wrappers = 0;
    for (; !p->is_number && p->expo == 0; p = p->poly) wrappers++;
    if (p->is_number || is_constant(p->poly)) return wrappers;
    return wrappers + poly_depth(p->poly);
}

/* In 64 bits: |expo| and both factors stay below 2^31, and a sum is cut at mass_overflow, below 2^25. */
static int64_t weighted_mass(const polynode *p, int64_t factor, int64_t weight) {
    if (laurent && is_monomial(p)) return monomial_mass(p);
    int64_t mass = 0;
    for (; p && mass < mass_overflow; p = p->next, factor = 1) {
        int64_t term;
        if (p->is_number) {
            term = lintmode ? 1 : p->num->num_len;
        } else if (p->expo == 0) {
            term = weighted_mass(p->poly, factor, weight);
        } else {
            int64_t below = weighted_mass(p->poly, 1, weight + 1);
            double size = static_cast<double>(magnitude(p->expo)) * static_cast<double>(below) *
                          static_cast<double>(factor) * static_cast<double>(weight);
            term = size < mass_overflow ? static_cast<int64_t>(size) : mass_overflow;
        }
        mass += term;
    }
    return mass < mass_overflow ? mass : mass_overflow;
}

int32_t poly_mass(const polynode *p, int32_t factor, int32_t weight) {
    check_stack();
    return static_cast<int32_t>(weighted_mass(p, factor, weight));
}

constexpr int terms_looked_at = 7;

int32_t new_poly_mass(const polynode *p, int32_t weight) {
    constexpr int64_t most = 0x10000000;
    int64_t mass = 0;
    const polynode *t = p;
    for (int i = 0; t && i < terms_looked_at; t = t->next, i++) {
        mass += magnitude(t->expo) * weight;
        if (t->is_number) continue;
        const polynode *s = t->poly;
        for (int j = 0; s && j < terms_looked_at; s = s->next, j++) mass += magnitude(s->expo) * (weight + int64_t{1});
    }
    return static_cast<int32_t>(mass < most ? mass : most);
}

/* ---- bytes and bits ---- */

int64_t sizepoly(const polynode *p) {
    int64_t bytes = 0;
    for (; p; p = p->next) {
        bytes += polynodesize;
        if (!p->is_number)
            bytes += sizepoly(p->poly);
        else
            bytes += numbersize + (in_chain_form() ? int64_t{numnodesize} * p->num->num_len : 0);
    }
    return bytes;
}

/* In lintmode the index of the top bit, elsewhere the length. */
static int number_bits(const number *x) {
    if (flotemode) {
        long double v = std::fabs(x->flote_val) + 0.5L;
        return v >= 1 && std::isfinite(v) ? std::ilogb(v) + 1 : 0;
    }
    if (lintmode) return logg2lint(x->lint_val);
    return x->num_head->digit < 0 ? logg2_neg(x) : logg2(x);
}

int max_digits(const polynode *p) {
    int most = -1;
    for (; p; p = p->next) {
        int bits = p->is_number ? number_bits(p->num) : max_digits(p->poly);
        if (bits > most) most = bits;
    }
    return most;
}

int quoly_max_digits(const quolynode *q) {
    if (q->is_num) return number_bits(q->numb);
    int above = max_digits(q->num), below = q->den ? max_digits(q->den) : -1;
    return above > below ? above : below;
}

} // namespace tolvek
