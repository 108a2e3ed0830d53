/* Built-in functions between polynomials and arrays. */
#include "language/builtin_array_args.h"
#include "language/builtin_routines.h"
#include "matrix/array_arithmetic.h"
#include "poly/coefficients.h"
#include "poly/measures.h"
#include "top/interrupts.h"

#include <algorithm>
#include <cstdlib>

namespace tolvek {

/* The numerator of an argument that has no denominator: error 186. Null: the argument is a plain number. */
static const polynode *numerator_of(const argument &a) {
    const quolynode *q = a.get();
    if (q->is_num) return nullptr;
    if (q->den) array_error(186, token);
    return q->num;
}

/* Calls visit(powers) for each term, the exponents being those of all levels. */
template <class Visit> static void for_terms(const polynode *p, int level, power_product &powers, Visit visit) {
    for (; p; p = p->next) {
        safe_point();
        powers.expo[level] = p->expo;
        if (p->is_number) {
            visit(powers);
        } else {
            for_terms(p->poly, level + 1, powers, visit);
        }
    }
    powers.expo[level] = 0;
}

/* ---- Monlist ---- */

/* *q := the product of powers of the first `levels` variables. */
static void power_product_value(const power_product &powers, int levels, quolynode **q) {
    quoly_set(1, q);
    for (int level = 1; level <= levels; level++) {
        if (powers.expo[level] == 0) continue;
        poly_handle one, monomial;
        quoly_handle power, variable;
        base_quoly(level, variable.slot());
        quoly_compute_power(variable.slot(), static_cast<uint32_t>(std::abs(powers.expo[level])));
        if (powers.expo[level] > 0)
            fast_quoly_mult(q, variable.get());
        else
            fast_quoly_quot(q, variable.get(), 0);
    }
}

/* Monlist(p, [a]): a sparse array of one column, the products of powers of p from the leading one down. */
void builtin_monomial_list(builtin_call &call) {
    argument p;
    check_for_paren(call);
    call.read_on();
    p.read(call);
    const polynode *poly = numerator_of(p);
    if (!token_is(token, ",")) array_error(202, token);
    call.read_on();
    if (!token_is(token, "[")) array_error(178, token);
    array_region region;
    left_side(call.input, call.cursor, region, false, 182);
    if (token_is(region.tok, "%")) array_error(296, region.tok);
    if (region.sub) array_error(182, region.tok);
    close_paren(call);
    power_product powers;
    buffer<power_product> all;
    const int levels = number_polys;
    if (poly)
        for_terms(poly, 1, powers, [&](const power_product &m) { all.push(m); });
    else
        all.push(powers);
    const auto count = static_cast<int32_t>(all.size());
    sparse_handle rows(count);
    row_walk walk(rows.get());
    for (const power_product &m : all) {
        quoly_handle value;
        power_product_value(m, levels, value.slot());
        row_builder(&*walk).add(1, value);
        walk.next();
    }
    quick_sparse_create(rows.release(), region.tok, count, 1, true);
    new_array = 1;
    call.give(count);
}

/* ---- Poly ---- */

/* A coefficient and the exponent of the first variable beside it. */
struct poly_term {
    const quolynode *coefficient;
    int64_t exponent;
};

static void gather_terms(const matrix_value &m, buffer<poly_term> &terms) {
    if (m.is_sparse()) {
        row_walk walk(m.sparse);
        for (int64_t r = 0; r < m.rows; r++, walk.next())
            for (const colm *c = *walk; c; c = c->next) terms.push({c->value, (c->column - int64_t{1}) * m.rows + r});
    } else {
        for (int64_t i = 0; i < m.size; i++)
            if (!quoly_is_zero(m.cell(i))) terms.push({m.cell(i), i});
    }
    std::sort(terms.begin(), terms.end(),
              [](const poly_term &a, const poly_term &b) { return a.exponent < b.exponent; });
}

static void value_of_term(const poly_term &term, quolynode **q) {
    if (term.exponent > INT32_MAX) array_error(32, token);
    quoly_assign(term.coefficient, q);
    if (term.exponent == 0) return;
    quoly_handle power;
    base_quoly(1, power.slot());
    quoly_compute_power(power.slot(), static_cast<uint32_t>(term.exponent));
    fast_quoly_mult(q, power.get());
}

/* *sum := the sum of some terms, by halves: each half is a list of about as many terms as the other. */
static void sum_of_terms(const poly_term *terms, std::size_t count, quolynode **sum) {
    safe_point();
    if (count == 0) return quoly_set(0, sum);
    if (count == 1) return value_of_term(*terms, sum);
    quoly_handle low, high;
    sum_of_terms(terms, count / 2, low.slot());
    sum_of_terms(terms + count / 2, count - count / 2, high.slot());
    best_quoly_add(high.slot(), low.release());
    high.release_to(sum);
}

/* Poly([a]): the cells, column by column, are the coefficients of 1, x, x^2, ... for the first variable x. */
void builtin_array_to_polynomial(builtin_call &call) {
    check_for_paren(call);
    matrix_value m;
    read_array_factor(call, m);
    close_paren(call);
    if (m.is_scalar()) array_error(72, token);
    if (number_polys == 0 && m.size > 1) array_error(278, token);
    m.fill_holes();
    buffer<poly_term> terms;
    gather_terms(m, terms);
    held_value coefficients;
    sum_of_terms(terms.data(), terms.size(), call.result);
}

/* ---- Totdeg ---- */

/* The weight of each variable: cell by cell of the array, 1 for all without one. */
static void read_weights(builtin_call &call, int64_t *weight) {
    call.read_on();
    array_argument argument(call);
    if (token_is(argument.region.tok, "%")) array_error(296, argument.region.tok);
    const array_record *a = argument.whole();
    for (int level = 1; level <= number_polys; level++) {
        const bool there = !a->sparse_head && level <= a->size && element(a, level - 1);
        weight[level] = there ? integer_argument(element(a, level - 1), 227) : 0;
    }
}

/* Totdeg(p): the greatest sum of exponents of a term; Totdeg(p, [w]): with weights of the variables. */
void builtin_total_degree(builtin_call &call) {
    argument p;
    int64_t weight[most_variables + 2];
    for (int64_t &w : weight) w = 1;
    check_for_paren(call);
    call.read_on();
    p.read(call);
    const polynode *poly = numerator_of(p);
    if (token_is(token, ",")) read_weights(call, weight);
    close_paren(call);
    const int levels = number_polys;
    int64_t most = INT64_MIN;
    power_product powers;
    if (poly)
        for_terms(poly, 1, powers, [&](const power_product &m) {
            int64_t degree = 0;
            for (int level = 1; level <= levels; level++) degree += weight[level] * m.expo[level];
            if (degree > most) most = degree;
        });
    quoly_set_int64(poly ? most : 0, call.result);
}

} // namespace tolvek
