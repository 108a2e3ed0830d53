/* Flat polynomials: the field, sums, multiples, values, and the way from and to term lists. */
#include "poly/flat_uni.h"

#include "numbers/modular.h"
#include "poly/flat_uni_work.h"
#include "poly/model_work.h"
#include "top/interrupts.h"

#include <algorithm>

namespace tolvek {

/* Measured by bench/kernels/univariate.cpp (route_mult, route_divide, route_half_gcd, route_gcd). */
uni_limits uni_limit = {.mult = 120, .divide = 450, .half_gcd = 800, .gcd = 2000};

/* ---- the field ---- */

/* 1 / p modulo 2^32 by Newton's step: each doubles the number of right bits, from 3. */
static uint32_t inverse_modulo_word(uint32_t p) {
    uint32_t x = p;
    for (int i = 0; i < 4; i++) x *= 2 - p * x;
    return x;
}

uni_field::uni_field(uint32_t prime, bool is_table)
    : p(prime), table(is_table), p_inverse(inverse_modulo_word(prime)),
      word(static_cast<uint32_t>((uint64_t{1} << 32) % prime)),
      word_sq(static_cast<uint32_t>(uint64_t{word} * word % prime)), reciprocal(UINT64_MAX / prime + 1) {}

uni_field uni_field::in_force() {
    assert(modularmode);
    return uni_field(static_cast<uint32_t>(int32_t{modulus}), finf != 0);
}

uint32_t uni_field::inverse(uint32_t a) const {
    if (table) return static_cast<uint32_t>(field_inverse(static_cast<int32_t>(a)));
    uint32_t x = 1;
    [[maybe_unused]] const bool unit = inverse_modulo(a, word_divisor(p, reciprocal), &x);
    assert(unit);
    return x;
}

/* ---- flat polynomials ---- */

void uni_trim(uni_poly *a) { a->resize(uni_length(a->data(), a->size())); }

void uni_copy(const uni_poly &a, uni_poly *b) {
    if (&a == b) return;
    b->clear();
    b->resize(a.size());
    std::copy(a.begin(), a.end(), b->begin());
}

void uni_constant(uint32_t c, uni_poly *a) {
    a->clear();
    if (c) a->push(c);
}

bool uni_equal(const uni_poly &a, const uni_poly &b) { return std::equal(a.begin(), a.end(), b.begin(), b.end()); }

bool is_uni(const polynode *p) {
    if (p->expo > most_flat_degree || p->expo < 0) return false;
    std::size_t seen = 0;
    for (; p; p = p->next) {
        if (++seen % 4096 == 0) safe_point();
        if (p->expo < 0 || (!p->is_number && !is_constant(p->poly))) return false;
    }
    return true;
}

void uni_from_poly(const polynode *p, uni_poly *a) {
    uni_poly list;
    list.resize(static_cast<std::size_t>(p->expo) + 1);
    std::fill(list.begin(), list.end(), 0);
    std::size_t seen = 0;
    for (; p; p = p->next) {
        if (++seen % 4096 == 0) safe_point();
        const number *c = p->is_number ? p->num : p->poly->num;
        list[static_cast<std::size_t>(p->expo)] = static_cast<uint32_t>(c->lint_val);
    }
    uni_trim(&list);
    uni_move(&list, a);
}

void uni_to_poly(const uni_poly &a, polynode **p) {
    growing_list list;
    for (std::size_t e = a.size(); e-- > 0;) {
        if (e % 4096 == 0) safe_point();
        if (a[e] == 0) continue;
        polynode *c = new_number_term();
        c->num->lint_val = static_cast<int32_t>(a[e]);
        if (e > 0) make_monomial(&c, static_cast<int32_t>(e), c);
        list.append(c);
    }
    replace_poly(list_or_zero(list.release()), p);
}

/* ---- sums and multiples ---- */

/* list, with room for n entries, := a, and zeros up to n. */
static void padded_copy(const uni_poly &a, std::size_t n, uni_poly *list) {
    list->resize(n);
    std::copy(a.begin(), a.end(), list->begin());
    std::fill(list->begin() + a.size(), list->end(), 0);
}

void uni_sum(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *c) {
    uni_poly list;
    padded_copy(a, std::max(a.size(), b.size()), &list);
    uni_add_to(f, list.data(), b.data(), b.size());
    uni_trim(&list);
    uni_move(&list, c);
}

void uni_difference(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *c) {
    uni_poly list;
    padded_copy(a, std::max(a.size(), b.size()), &list);
    uni_take_from(f, list.data(), b.data(), b.size());
    uni_trim(&list);
    uni_move(&list, c);
}

void uni_multiple(const uni_field &f, uint32_t c, const uni_poly &a, uni_poly *b) {
    uni_copy(a, b);
    if (c == 0) b->clear();
    uni_scale_row(f, b->data(), b->size(), c);
}

void uni_make_monic(const uni_field &f, uni_poly *a) {
    if (a->empty() || uni_lead(*a) == 1) return;
    uni_scale_row(f, a->data(), a->size(), f.inverse(uni_lead(*a)));
}

uint32_t uni_value(const uni_field &f, const uni_poly &a, uint32_t x) {
    uint32_t v = 0;
    for (std::size_t i = a.size(); i-- > 0;) {
        if (i % 65536 == 0) safe_point();
        v = f.sum(f.product(v, x), a[i]);
    }
    return v;
}

void uni_derivative(const uni_field &f, const uni_poly &a, uni_poly *b) {
    uni_poly list;
    for (std::size_t i = 1; i < a.size(); i++) {
        if (i % 65536 == 0) safe_point();
        /* i-fold sums: in a table field the characteristic is 2 */
        list.push(f.table ? (i % 2 ? a[i] : 0) : f.product(a[i], static_cast<uint32_t>(i % f.p)));
    }
    uni_trim(&list);
    uni_move(&list, b);
}

} // namespace tolvek
