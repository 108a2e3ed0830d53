#include "gcd/log_field.h"

#include "numbers/modular.h"
#include "numbers/random.h"
#include "top/interrupts.h"

#include <algorithm>
#include <utility>

namespace tolvek {

/* ---- the tables ---- */

namespace {

constexpr int most_digits = 22;
constexpr uint64_t least_size = 1 << 12, near_size = 1 << 17, largest_size = 1 << 21;

/* k with p^k elements. */
int degree_for(uint32_t p, field_size wanted) {
    const uint64_t most = wanted == field_size::near ? near_size : largest_size;
    uint64_t size = p;
    int k = 1;
    for (; size * p <= most || (size < least_size && size * p <= largest_size); k++) size *= p;
    return k;
}

/* Polynomials of degree below k in a root of the monic polynomial x^k - sum of f_i x^i, over residues. */
struct residue_digits {
    uint32_t digit[most_digits] = {};
};

struct power_basis {
    word_divisor p;
    int k;
    residue_digits f;

    void times_root(residue_digits *a) const {
        const uint64_t top = a->digit[k - 1];
        for (int i = k - 1; i > 0; i--) a->digit[i] = p.remainder(a->digit[i - 1] + top * f.digit[i]);
        a->digit[0] = p.remainder(top * f.digit[0]);
    }
    residue_digits product(const residue_digits &a, const residue_digits &b) const {
        residue_digits c;
        for (int i = k - 1; i >= 0; i--) {
            times_root(&c);
            for (int j = 0; j < k; j++) c.digit[j] = p.remainder(c.digit[j] + uint64_t{a.digit[i]} * b.digit[j]);
        }
        return c;
    }
    bool is_one(const residue_digits &a) const {
        for (int i = 1; i < k; i++)
            if (a.digit[i]) return false;
        return a.digit[0] == 1;
    }
    /* Is the e-th power of the root 1? */
    bool root_has_power_one(uint32_t e) const {
        residue_digits one, root, power;
        one.digit[0] = 1;
        root = power = one;
        times_root(&root);
        for (int bit = 31; bit >= 0; bit--) {
            power = product(power, power);
            if (e >> bit & 1) power = product(power, root);
        }
        return is_one(power);
    }
    uint32_t index(const residue_digits &a) const {
        uint32_t n = 0;
        for (int i = k - 1; i >= 0; i--) n = n * static_cast<uint32_t>(p.n) + a.digit[i];
        return n;
    }
};

/* A root of order p^k - 1 has so many different powers: then all of the p^k - 1 polynomials but 0 are units, and it
   generates them. */
bool root_generates(const power_basis &b, uint32_t order) {
    if (!b.root_has_power_one(order)) return false;
    uint32_t rest = order;
    for (uint32_t l = 2; l <= rest; l++) {
        if (l * uint64_t{l} > rest) l = rest;
        if (rest % l) continue;
        while (rest % l == 0) rest /= l;
        if (b.root_has_power_one(order / l)) return false;
    }
    return true;
}

/* The polynomials are tried in an order of no meaning. */
power_basis generating_basis(uint32_t p, int k, uint32_t order) {
    power_basis b{word_divisor(p), k, {}};
    uint64_t state = 1;
    do
        for (int i = 0; i < k; i++) {
            state = state * 6364136223846793005u + 1442695040888963407u; /* (D. Knuth, MMIX) */
            b.f.digit[i] = b.p.remainder(state >> 33);
        }
    while (!b.f.digit[0] || !root_generates(b, order));
    return b;
}

void make_tables(uint32_t p, int k, log_tables *t) {
    uint64_t size = 1;
    for (int i = 0; i < k; i++) size *= p;
    const uint32_t order = static_cast<uint32_t>(size - 1);
    const power_basis b = generating_basis(p, k, order);
    buffer<uint32_t> element(order), logarithm(size), next(order), of_residue(p), residue(p - 1);
    residue_digits a;
    a.digit[0] = 1;
    for (uint32_t n = 0; n < order; n++, b.times_root(&a)) {
        element[n] = b.index(a);
        logarithm[element[n]] = n;
    }
    logarithm[0] = order;
    for (uint32_t n = 0; n < order; n++) {
        const uint32_t e = element[n];
        next[n] = logarithm[e % p == p - 1 ? e - (p - 1) : e + 1];
    }
    for (uint32_t r = 0; r < p; r++) {
        of_residue[r] = logarithm[r];
        if (r) residue[logarithm[r] / (order / (p - 1))] = r;
    }
    t->order = order;
    t->next = std::move(next);
    t->of_residue = std::move(of_residue);
    t->residue = std::move(residue);
    t->k = k;
    t->p = p;
}

/* Frames of several primes are there at once only where command levels are nested. */
log_tables kept[4];

log_tables *tables_for(uint32_t p, int k) {
    for (log_tables &t : kept)
        if (t.p == p && t.k == k) return &t;
    for (log_tables &t : kept) {
        if (t.users) continue;
        t.p = 0;
        make_tables(p, k, &t);
        return &t;
    }
    return nullptr;
}

} // namespace

log_field::log_field(uint32_t p, field_size size) : t(tables_for(p, degree_for(p, size))) {
    if (!t) return;
    t->users++;
    table = t->next.data();
    order = t->order;
    minus_one = p == 2 ? 0 : order / 2;
}

bool log_field::is_residue(uint32_t a, uint32_t *r) const {
    const uint32_t step = order / (t->p - 1);
    if (a != order && a % step) return false;
    *r = a == order ? 0 : t->residue[a / step];
    return true;
}

uint32_t log_field::random_unit() const { return static_cast<uint32_t>(random_31()) % order; }

/* ---- Euclid ---- */

void log_trim(const log_field &f, log_poly *a) {
    while (!a->empty() && a->back() == f.zero()) a->pop();
}

/* a := a modulo b */
static void take_remainder(const log_field &f, log_poly *a, const log_poly &b) {
    const std::size_t n = b.size();
    while (a->size() >= n) {
        const uint32_t c = f.negative(f.quotient(a->back(), b[n - 1]));
        uint32_t *at = a->data() + (a->size() - n);
        for (std::size_t i = 0; i + 1 < n; i++) at[i] = f.sum(at[i], f.product(c, b[i]));
        a->pop();
        log_trim(f, a);
    }
}

void log_gcd(const log_field &f, log_poly *a, log_poly *b) {
    while (!b->empty()) {
        safe_point();
        if (b->size() == 1) { /* a unit */
            std::swap(*a, *b);
            break;
        }
        take_remainder(f, a, *b);
        std::swap(*a, *b);
    }
    const uint32_t lead = a->back();
    for (uint32_t &c : *a) c = f.quotient(c, lead);
}

/* ---- systems ---- */

/* By divided differences (I. Newton). */
void log_interpolate(const log_field &f, const uint32_t *points, uint32_t *y, std::size_t n) {
    for (std::size_t k = 1; k < n; k++)
        for (std::size_t i = n - 1; i >= k; i--)
            y[i] = f.quotient(f.difference(y[i], y[i - 1]), f.difference(points[i], points[i - k]));
    for (std::size_t k = n - 1; k-- > 0;) /* (what stands from k + 1 on) * (z - points[k]) + y[k] */
        for (std::size_t i = k; i + 1 < n; i++) y[i] = f.difference(y[i], f.product(points[k], y[i + 1]));
}

log_vandermonde::log_vandermonde(const log_field &field, const uint32_t *m, std::size_t count)
    : f(field), roots(m), n(count) {
    master.push(f.one());
    for (std::size_t k = 0; k < n; k++) {
        master.push(f.one());
        for (std::size_t i = k; i > 0; i--) master[i] = f.difference(master[i - 1], f.product(m[k], master[i]));
        master[0] = f.negative(f.product(m[k], master[0]));
    }
}

/* With Q = master / (z - m_k), sum of q_(t-1) w_t = x_k m_k Q(m_k), since the other roots make Q vanish. */
void log_vandermonde::solve(const uint32_t *w, uint32_t *x) const {
    for (std::size_t k = 0; k < n; k++) {
        uint32_t q = f.one(), value = f.one(), sum = w[n - 1];
        for (std::size_t i = n - 1; i > 0; i--) {
            q = f.sum(master[i], f.product(roots[k], q));
            value = f.sum(f.product(value, roots[k]), q);
            sum = f.sum(sum, f.product(q, w[i - 1]));
        }
        x[k] = f.quotient(sum, f.product(roots[k], value));
    }
}

} // namespace tolvek
