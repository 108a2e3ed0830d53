/* Division in one variable over residues, on arrays indexed by exponent, or on flat polynomials; and remainders of sparse polynomials of high
   degree, by powers of the variable. Sums of products are reduced late. */
#include "numbers/modular.h"
#include "poly/divide_work.h"
#include "poly/flat_uni.h"
#include "poly/measures.h"
#include "poly/mult.h"
#include "poly/mult_arrays.h"
#include "poly/residue_arrays.h"
#include "top/heap.h"
#include "top/interrupts.h"

#include <algorithm>
#include <cstdlib>

namespace tolvek {

namespace {

/* ---- sums of products in both kinds of rings ---- */

struct prime_sums {
    residue_sum m{static_cast<uint32_t>(modulus)};
    void add(uint64_t &sum, uint64_t x, uint64_t y) const { m.add(sum, x, y); }
    uint64_t settle(uint64_t v) const { return m.settle(v); }
    uint64_t minus(uint64_t v) const { return v ? m.n - v : 0; }
};
/* Modulo n below 2^16 a sum takes 2^31 products. */
struct small_sums : prime_sums {
    static void add(uint64_t &sum, uint64_t x, uint64_t y) { sum += x * y; }
};
struct table_field_sums {
    static void add(uint64_t &sum, uint64_t x, uint64_t y) {
        sum ^= static_cast<uint64_t>(field_product(static_cast<int32_t>(x), static_cast<int32_t>(y)));
    }
    static uint64_t settle(uint64_t v) { return v; }
    static uint64_t minus(uint64_t v) { return v; }
};
constexpr int32_t least_large_modulus = 65536;

template <class job> auto in_ring(job &&run) {
    if (finf) return run(table_field_sums{});
    if (modulus < least_large_modulus) return run(small_sums{});
    return run(prime_sums{});
}

/* ---- polynomials as arrays ---- */

uint64_t residue_of(const polynode *t) { return static_cast<uint64_t>(lone_residue(t)); }

struct sparse_term {
    uint32_t expo, residue;
};

/* A divisor: its terms below the leading one, and the inverse of that. */
struct lean_divisor {
    std::size_t degree;
    uint64_t inverse;
    buffer<sparse_term> tail;

    explicit lean_divisor(const polynode *b) : degree(static_cast<std::size_t>(b->expo)) {
        inverse = static_cast<uint64_t>(mod_inverse(lone_residue(b)));
        for (b = b->next; b; b = b->next)
            tail.push({static_cast<uint32_t>(b->expo), static_cast<uint32_t>(residue_of(b))});
    }
};

constexpr uint64_t work_between_safe_points = 1 << 22;

void fill_sums(const polynode *p, buffer<uint64_t> *sums) {
    sums->resize(static_cast<std::size_t>(p->expo) + 1);
    std::fill(sums->begin(), sums->end(), 0);
    for (; p; p = p->next) (*sums)[static_cast<std::size_t>(p->expo)] = residue_of(p);
}

/* Divides the rest in place: its entries from the divisor's degree on become the quotient, and those below it sums that
   are the remainder. */
template <class ring> void divide_sums(buffer<uint64_t> &rest, const lean_divisor &b, const ring &m) {
    uint64_t work = 0;
    for (std::size_t e = rest.size(); e-- > b.degree;) {
        const uint64_t v = m.settle(rest[e]);
        if (!v) {
            rest[e] = 0;
            continue;
        }
        uint64_t q = 0;
        m.add(q, v, b.inverse);
        rest[e] = q = m.settle(q);
        q = m.minus(q);
        uint64_t *from = &rest[e - b.degree];
        for (const sparse_term &t : b.tail) m.add(from[t.expo], q, t.residue);
        work += b.tail.size() + 1;
        if (work > work_between_safe_points) {
            work = 0;
            safe_point();
        }
    }
    const std::size_t below = std::min(b.degree, rest.size());
    for (std::size_t i = 0; i < below; i++) rest[i] = m.settle(rest[i]);
}

/* The polynomial of n entries. */
polynode *poly_of_residues(const uint64_t *entry, std::size_t n) {
    growing_list p;
    for (std::size_t i = n; i-- > 0;) {
        if (!entry[i]) continue;
        poly_handle c(new_number_term());
        c->num->lint_val = static_cast<int32_t>(entry[i]);
        p.append(term_of(static_cast<int64_t>(i), c));
    }
    return list_or_zero(p.release());
}

/* a becomes the array of quotient and remainder. */
std::size_t divide_lean(const polynode *a, const polynode *b, buffer<uint64_t> *rest) {
    const lean_divisor divisor(b);
    fill_sums(a, rest);
    in_ring([&](const auto &m) { divide_sums(*rest, divisor, m); });
    return divisor.degree;
}

/* The shape alone: one variable, exponents from 0 on. *terms := how many. */
bool lean_list(const polynode *p, int64_t *terms) {
    *terms = 0;
    for (; p; p = p->next) {
        if (p->expo < 0 || !(p->is_number || is_constant(p->poly))) return false;
        ++*terms;
    }
    return true;
}

} // namespace

bool lean_operands(const polynode *a, const polynode *b) {
    int64_t terms;
    return modularmode && mod_is_prime() && lean_list(a, &terms) && lean_list(b, &terms);
}

/* A step of arrays costs about a thirtieth of one of lists. The array of a sparse dividend must stay small beside the
   lists. */
bool arrays_pay(const polynode *a, const polynode *b) {
    constexpr int64_t cells_a_term = 200, most_cells = int64_t{1} << 28;
    if (a->expo >= most_cells) return false;
    return a->expo < cells_a_term * (poly_length(a) + poly_length(b) + 2);
}

/* Is the divisor filled so well that flat polynomials are quicker, whose rows have every entry? */
static bool flat_pays(const polynode *a, const polynode *b) {
    if (finf || a->expo > most_flat_degree) return false;
    return b->expo < 4 * int64_t{poly_length(b)};
}

/* For flat operands: a = q * b + r. False, and no quotient, where `exactly` is not possible. */
static bool divide_flat_lists(const polynode *a, const polynode *b, bool exactly, polynode **q, polynode **r) {
    const uni_field f = uni_field::in_force();
    uni_poly x, y, quotient, rest;
    uni_from_poly(a, &x);
    uni_from_poly(b, &y);
    uni_divide(f, x, y, q ? &quotient : nullptr, &rest);
    if (exactly && !rest.empty()) return false;
    poly_handle to_q, to_r;
    if (q) uni_to_poly(quotient, to_q.slot());
    if (r) uni_to_poly(rest, to_r.slot());
    if (q) to_q.release_to(q);
    if (r) to_r.release_to(r);
    return true;
}

void divide_in_arrays(const polynode *a, const polynode *b, polynode **q, polynode **r) {
    if (flat_pays(a, b)) {
        divide_flat_lists(a, b, false, q, r);
        return;
    }
    buffer<uint64_t> rest;
    const std::size_t degree = divide_lean(a, b, &rest), below = std::min(degree, rest.size());
    poly_handle quotient, remainder;
    if (q) *quotient.slot() = poly_of_residues(rest.data() + below, rest.size() - below);
    if (r) *remainder.slot() = poly_of_residues(rest.data(), below);
    if (q) quotient.release_to(q);
    if (r) remainder.release_to(r);
}

bool divides_in_arrays(const polynode *a, const polynode *b, polynode **q) {
    if (flat_pays(a, b)) return divide_flat_lists(a, b, true, q, nullptr);
    buffer<uint64_t> rest;
    const std::size_t degree = divide_lean(a, b, &rest), below = std::min(degree, rest.size());
    for (std::size_t i = 0; i < below; i++)
        if (rest[i]) return false;
    if (!q) return true;
    poly_handle quotient(poly_of_residues(rest.data() + below, rest.size() - below));
    quotient.release_to(q);
    return true;
}

/* ---- sparse dividends of high degree ---- */

namespace {

int bits_of(int64_t v) { return v ? 64 - __builtin_clzll(static_cast<uint64_t>(v)) : 0; }

/* The cost of a factor x^gap modulo b, in products: by steps, or by squaring. */
double gap_cost(int64_t gap, double degree) {
    const double by_steps = static_cast<double>(gap) * degree;
    const double by_squares = 2 * degree * degree * (bits_of(gap) + 1);
    return std::min(by_steps, by_squares);
}

/* The ring of residues modulo b: arrays of deg b entries. */
template <class ring> class residue_class {
  public:
    residue_class(const lean_divisor &divisor, const ring &r) : b(divisor), m(r), work(2 * b.degree) {}

    /* v := x^gap * v */
    void raise(buffer<uint64_t> &v, int64_t gap) {
        const double degree = static_cast<double>(b.degree);
        if (static_cast<double>(gap) * degree <= gap_cost(gap, degree)) return step(v, gap);
        buffer<uint64_t> power(b.degree);
        std::fill(power.begin(), power.end(), 0);
        power[0] = 1;
        for (int i = bits_of(gap); i-- > 0;) {
            multiply(power, power);
            if (gap >> i & 1) step(power, 1);
            safe_point();
        }
        multiply(v, power);
    }

  private:
    void step(buffer<uint64_t> &v, int64_t times) {
        for (; times > 0; times--) {
            const uint64_t top = v[b.degree - 1];
            for (std::size_t i = b.degree; i-- > 1;) v[i] = v[i - 1];
            v[0] = 0;
            if (!top) continue;
            uint64_t q = 0;
            m.add(q, top, b.inverse);
            q = m.minus(m.settle(q));
            for (const sparse_term &t : b.tail) {
                m.add(v[t.expo], q, t.residue);
                v[t.expo] = m.settle(v[t.expo]);
            }
            safe_point();
        }
    }
    void multiply(buffer<uint64_t> &v, const buffer<uint64_t> &w) {
        std::fill(work.begin(), work.end(), 0);
        for (std::size_t i = 0; i < b.degree; i++)
            for (std::size_t k = 0; v[i] && k < b.degree; k++) m.add(work[i + k], v[i], w[k]);
        for (uint64_t &x : work) x = m.settle(x);
        divide_sums(work, b, m);
        std::copy(work.begin(), work.begin() + b.degree, v.begin());
    }
    const lean_divisor &b;
    const ring &m;
    buffer<uint64_t> work;
};

template <class ring>
void reduce_list(const polynode *a, const lean_divisor &b, buffer<uint64_t> *value, const ring &m) {
    residue_class<ring> classes(b, m);
    value->resize(b.degree);
    std::fill(value->begin(), value->end(), 0);
    for (;; a = a->next) {
        (*value)[0] = m.settle((*value)[0]);
        uint64_t one = (*value)[0];
        m.add(one, residue_of(a), 1);
        (*value)[0] = m.settle(one);
        const int64_t gap = int64_t{a->expo} - (a->next ? a->next->expo : 0);
        if (gap) classes.raise(*value, gap);
        if (!a->next) return;
    }
}

} // namespace

bool gaps_pay(const polynode *a, const polynode *b) {
    constexpr int64_t least_degree = 1000;
    if (a->expo < least_degree || b->expo < 1) return false;
    const double degree = b->expo, length = poly_length(b);
    double cost = 0;
    const double by_arrays = (static_cast<double>(a->expo) - degree) * length;
    for (const polynode *t = a; t && cost < by_arrays; t = t->next)
        cost += degree + gap_cost(int64_t{t->expo} - (t->next ? t->next->expo : 0), degree);
    return 2 * cost < by_arrays;
}

void reduce_by_gaps(const polynode *a, const polynode *b, polynode **r) {
    const lean_divisor divisor(b);
    buffer<uint64_t> value;
    in_ring([&](const auto &m) { reduce_list(a, divisor, &value, m); });
    poly_handle remainder(poly_of_residues(value.data(), value.size()));
    remainder.release_to(r);
}

} // namespace tolvek
