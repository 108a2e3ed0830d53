#include "gcd/sparse_interpolation.h"

#include "top/interrupts.h"

#include <algorithm>

namespace tolvek {

uint32_t field_power(const uni_field &f, uint32_t x, uint64_t e) {
    uint32_t y = 1;
    for (; e; e >>= 1, x = f.product(x, x))
        if (e & 1) y = f.product(y, x);
    return y;
}

/* ---- recurrences ---- */

/* The coefficient of z^i; the constant term is 1. */
static uint32_t at(const uni_poly &p, std::size_t i) { return i < p.size() ? p[i] : i == 0; }

uint32_t recurrence::discrepancy(const uni_field &f) const {
    const std::size_t n = values.size() - 1;
    uint32_t sum = values[n];
    for (std::size_t i = 1; i <= order && i < connection.size(); i++)
        sum = f.sum(sum, f.product(connection[i], values[n - i]));
    return sum;
}

static void lengthen(uni_poly *p, std::size_t n) {
    if (p->empty()) p->push(1);
    while (p->size() < n) p->push(0);
}

/* connection := connection - by / before_by * z^since * before */
void recurrence::correct(const uni_field &f, uint32_t by) {
    const uint32_t factor = f.negative(f.product(by, f.inverse(before_by)));
    const std::size_t most = std::max<std::size_t>(before.size(), 1);
    lengthen(&connection, most + since);
    for (std::size_t i = 0; i < most; i++)
        connection[i + since] = f.sum(connection[i + since], f.product(factor, at(before, i)));
}

bool recurrence::add(const uni_field &f, uint32_t value) {
    values.push(value);
    const std::size_t n = values.size() - 1;
    const uint32_t by = discrepancy(f);
    if (by == 0) {
        since++;
        return true;
    }
    if (2 * order > n) {
        correct(f, by);
        since++;
        return false;
    }
    uni_poly kept;
    uni_copy(connection, &kept);
    correct(f, by);
    before = std::move(kept);
    before_by = by;
    order = n + 1 - order;
    since = 1;
    return false;
}

void recurrence::roots_polynomial(uni_poly *p) const {
    p->resize(order + 1);
    for (std::size_t i = 0; i <= order; i++) (*p)[i] = at(connection, order - i);
}

/* ---- logarithms ---- */

static std::size_t place_of(uint32_t x, std::size_t mask) {
    return static_cast<std::size_t>((uint64_t{x} * 0x9E3779B97F4A7C15u) >> 32) & mask;
}

logarithms::logarithms(const uni_field &field, uint32_t w, uint64_t its_bound, uint64_t wanted)
    : f(field), bound(its_bound) {
    constexpr uint64_t most_steps = 1 << 17;
    steps = 1;
    while (steps < most_steps && steps * steps < bound * std::max<uint64_t>(wanted, 1)) steps *= 2;
    steps = std::min(steps, bound);
    mask = 1;
    while (mask < 2 * steps) mask *= 2;
    table.resize(mask);
    std::fill(table.begin(), table.end(), entry{0, 0});
    mask--;
    uint32_t power = 1;
    for (uint64_t e = 0; e < steps; e++, power = f.product(power, w)) {
        std::size_t i = place_of(power, mask);
        while (table[i].exponent_plus_1 && table[i].power != power) i = (i + 1) & mask;
        if (!table[i].exponent_plus_1) table[i] = {power, static_cast<uint32_t>(e + 1)};
    }
    back = f.inverse(power);
}

bool logarithms::find(uint32_t x, uint64_t *e) const {
    for (uint64_t large = 0; large < bound; large += steps, x = f.product(x, back)) {
        for (std::size_t i = place_of(x, mask); table[i].exponent_plus_1; i = (i + 1) & mask) {
            if (table[i].power != x) continue;
            *e = large + table[i].exponent_plus_1 - 1;
            return *e < bound;
        }
    }
    return false;
}

/* ---- roots ---- */

/* The roots of p among the powers of w, by trial of each exponent. */
static bool roots_by_trial(const uni_field &f, const uni_poly &p, uint32_t w, uint64_t bound, buffer<uint32_t> *roots) {
    const std::size_t degree = p.size() - 1;
    uint32_t x = 1;
    for (uint64_t e = 0; e < bound && roots->size() < degree; e++, x = f.product(x, w)) {
        if ((e & 255) == 0) safe_point();
        if (uni_value(f, p, x) == 0) roots->push(x);
    }
    return roots->size() == degree;
}

/* h := (z + shift)^((p - 1) / 2) - 1 modulo p */
static void half_power(const uni_field &f, const uni_poly &p, uint32_t shift, uni_poly *h) {
    uni_poly base;
    base.push(shift);
    base.push(1);
    uni_divide(f, base, p, nullptr, &base);
    uni_constant(1, h);
    for (uint32_t bit = 1u << 30; bit; bit >>= 1) {
        uni_mult(f, *h, *h, h);
        if (((f.p - 1) / 2) & bit) uni_mult(f, *h, base, h);
        uni_divide(f, *h, p, nullptr, h);
    }
    uni_poly one;
    uni_constant(1, &one);
    uni_difference(f, *h, one, h);
}

/* The roots of p, which is monic. False where it does not split into different factors of degree 1. */
static bool roots_by_splitting(const uni_field &f, const uni_poly &p, buffer<uint32_t> *roots, uint32_t shift) {
    constexpr int most_shifts = 64;
    if (p.size() == 1) return true;
    if (p.size() == 2) {
        roots->push(f.negative(p[0]));
        return true;
    }
    for (int i = 0; i < most_shifts; i++, shift = f.sum(shift, 1)) {
        safe_point();
        uni_poly h, g, rest;
        half_power(f, p, shift, &h);
        uni_gcd(f, h, p, &g);
        if (g.size() < 2 || g.size() == p.size()) continue;
        uni_divide(f, p, g, &rest, nullptr);
        return roots_by_splitting(f, g, roots, shift) && roots_by_splitting(f, rest, roots, shift);
    }
    return false;
}

static bool find_roots(const uni_field &f, const uni_poly &p, uint32_t w, uint64_t bound, buffer<uint32_t> *roots) {
    constexpr uint64_t trials_a_root = 600; /* splitting costs about as much as so many values */
    const uint64_t degree = p.size() - 1;
    if (bound <= trials_a_root * degree) return roots_by_trial(f, p, w, bound, roots);
    return f.odd_prime() && roots_by_splitting(f, p, roots, 1);
}

/* ---- coefficients ---- */

/* The quotient of p by z - x, for a root x, and its value at x. The sum of its coefficients times the values of the
   sequence is this value times the coefficient of x. */
static uint32_t coefficient_of_root(const uni_field &f, const uni_poly &p, uint32_t x, const buffer<uint32_t> &values) {
    uint32_t q = 0, sum = 0, value = 0;
    for (std::size_t i = p.size() - 1; i-- > 0;) {
        q = f.sum(f.product(q, x), p[i + 1]);
        sum = f.sum(sum, f.product(q, values[i]));
        value = f.sum(f.product(value, x), q);
    }
    return value ? f.product(sum, f.inverse(value)) : 0;
}

bool sparse_terms(const uni_field &f, const recurrence &values, uint32_t w, uint64_t s, const logarithms &logs,
                  uint64_t bound, buffer<sparse_term> *terms) {
    terms->clear();
    if (values.length() == 0) return true;
    uni_poly p;
    buffer<uint32_t> roots;
    values.roots_polynomial(&p);
    if (!find_roots(f, p, w, bound, &roots)) return false;
    for (const uint32_t x : roots) {
        uint64_t e;
        const uint32_t c = coefficient_of_root(f, p, x, values.sequence());
        if (x == 0 || c == 0 || !logs.find(x, &e)) return false;
        terms->push({e, f.product(c, f.inverse(field_power(f, x, s)))});
    }
    std::sort(terms->begin(), terms->end(),
              [](const sparse_term &a, const sparse_term &b) { return a.exponent > b.exponent; });
    return true;
}

} // namespace tolvek
