/* The power g = f^e of a polynomial with few terms, term by term in the order of the result, each from terms that came
   before (M. Monagan and R. Pearce, Sparse polynomial powering using heaps, 2012; for one variable L. Euler).

   Let w be a linear function of the exponents whose value at the leading term of f is greater than at any other one:
   the exponents of the upper levels in mixed radix. u_i = w(f_0) - w(f_i), and U(m) = e w(f_0) - w(m) for a monomial m
   of g. From f Dg = e g Df, where D multiplies a term by its weight, follows

       f_0 U(m) g_m  =  sum over i > 0 of  f_i (e u_i - U(m_i)) g_(m_i),      m_i = m f_0 / f_i,

   and U(m) > 0 for all but the leading m, so that all g_m come out by one exact division. The m_i of one i descend as
   m does: a cursor for each i, and a heap of the cursors, give the terms of a sum together. Terms of g that no cursor
   needs any more are dropped. */
#include "poly/flat_power.h"

#include "numbers/flat_divide.h"
#include "numbers/modular.h"
#include "poly/flat_emit.h"
#include "poly/residue_arrays.h"
#include "top/interrupts.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tolvek {

namespace {

constexpr int largest_factor_bits = 61;                /* of f_i (e u_i - U) and f_0 U */
constexpr uint64_t work_between_safe_points = 1 << 18; /* in limbs of products */
constexpr uint64_t term_work = 30;                     /* of a term, however long */
constexpr std::size_t terms_between_cleanings = 4096;

/* f and the weights of its terms. */
struct power_base {
    flat_shape shape;
    poured_poly f;
    uint32_t e;
    buffer<int64_t> u;

    bool weigh();
};

/* Gives the terms their weights by as few levels as make the leading term heaviest. False where weights or the numbers
   of the recurrence grow too large. */
bool power_base::weigh() {
    const std::size_t n = f.terms();
    buffer<int64_t> w(n);
    std::fill(w.begin(), w.end(), 0);
    bool unique = false;
    for (int l = 0; l < shape.count && !unique; l++) {
        const int64_t radix = int64_t{shape.level[l].span_b} + 1;
        unique = true;
        for (std::size_t i = 0; i < n; i++) {
            if (w[i] > INT32_MAX / radix) return false;
            w[i] = w[i] * radix + static_cast<int64_t>(shape.field(l, f.key[i]));
            if (i && w[i] == w[0]) unique = false;
        }
    }
    int64_t largest_u = 0, largest_c = 1;
    u.resize(n);
    for (std::size_t i = 0; i < n; i++) {
        u[i] = w[0] - w[i];
        largest_u = std::max(largest_u, u[i]);
        largest_c = std::max(largest_c, std::abs(f.word[i]));
    }
    const double factor = (static_cast<double>(e) + 1) * static_cast<double>(largest_u);
    if (!unique) return false;
    if (modularmode) return factor < static_cast<double>(int32_t{modulus});
    return factor * static_cast<double>(largest_c) < std::ldexp(1.0, largest_factor_bits);
}

/* ---- the coefficients of g ---- */

/* Residues: the list of those that are still needed, and a sum. */
class residue_terms {
  public:
    residue_terms(const power_base &b, int) : base(b), m(static_cast<uint32_t>(int32_t{modulus})) {}

    static uint64_t cost() { return 1; }
    void begin() { /* f_0^e */
        int32_t v;
        mod_number_power(static_cast<int32_t>(base.f.word[0]), base.e, &v);
        coefficient.push(static_cast<uint32_t>(v));
    }
    void add(std::size_t i, int64_t factor, std::size_t term) {
        const uint64_t c =
            factor < 0 ? m.n - m.settle(static_cast<uint64_t>(-factor)) : m.settle(static_cast<uint64_t>(factor));
        m.add(sum, m.settle(c * static_cast<uint64_t>(base.f.word[i])), coefficient[term]);
    }
    /* Appends the sum divided by f_0 * weight, unless it is 0. */
    bool append(int64_t weight) {
        const uint64_t s = m.settle(sum);
        sum = 0;
        if (!s) return false;
        if (weight != last_weight) {
            last_weight = weight;
            last_inverse = static_cast<uint64_t>(mod_inverse(
                modmult(static_cast<int32_t>(base.f.word[0]), static_cast<int32_t>(weight % int32_t{modulus}))));
        }
        coefficient.push(static_cast<uint32_t>(m.settle(s * last_inverse)));
        return true;
    }
    void put_last(poly_emitter &out) { out.next_number()->lint_val = static_cast<int32_t>(coefficient.back()); }
    void drop_first(std::size_t n) {
        std::copy(coefficient.begin() + n, coefficient.end(), coefficient.begin());
        coefficient.resize(coefficient.size() - n);
    }

  private:
    const power_base &base;
    const residue_sum m;
    buffer<uint32_t> coefficient;
    uint64_t sum = 0, last_inverse = 0;
    int64_t last_weight = 0;
};

/* Integers: magnitudes of `width` limbs, of which `length` are used, negative for a negative number. */
class integer_terms {
  public:
    integer_terms(const power_base &b, int bits)
        : base(b), width(static_cast<std::size_t>(limbs_for(bits))), sum(width + 3) {
        clear_sum();
    }

    uint64_t cost() const { return width; }
    void begin() {
        limb *x = push_room();
        int n = 1;
        x[0] = 1;
        const uint64_t c = magnitude(base.f.word[0]);
        for (uint32_t k = 0; k < base.e; k++) {
            const limb carry = flat_mult_limb(x, x, static_cast<std::size_t>(n), c);
            if (carry) x[n++] = carry;
        }
        length.push(base.f.word[0] < 0 && base.e % 2 ? -n : n);
    }
    void add(std::size_t i, int64_t factor, std::size_t term) {
        const int64_t c = factor * base.f.word[i];
        const std::size_t n = static_cast<std::size_t>(std::abs(length[term]));
        const bool minus = (c < 0) != (length[term] < 0);
        const limb *x = &limbs[term * width];
        limb carry = (minus ? flat_sub_product : flat_add_product)(sum.data(), x, n, magnitude(c));
        for (std::size_t k = n; carry && k < sum.size(); k++) {
            const limb before = sum[k];
            sum[k] = minus ? before - carry : before + carry;
            carry = minus ? before < carry : sum[k] < carry;
        }
    }
    bool append(int64_t weight) {
        const bool negative = static_cast<int64_t>(sum.back()) < 0;
        if (negative) negate_sum();
        const std::size_t n = flat_length(sum.data(), sum.size());
        if (!n) return false;
        const uint64_t divisor = magnitude(base.f.word[0]) * static_cast<uint64_t>(weight);
        if (divisor != last_divisor) {
            last_divisor = divisor;
            prepared = limb_divisor(divisor);
        }
        flat_divide_limb(sum.data(), sum.data(), n, prepared);
        const std::size_t used = flat_length(sum.data(), n);
        std::copy(sum.begin(), sum.begin() + used, push_room());
        const int len = static_cast<int>(used);
        length.push(negative != (base.f.word[0] < 0) ? -len : len);
        clear_sum();
        return true;
    }
    void put_last(poly_emitter &out) {
        const int n = length.back();
        put_chain(limbs.end() - width, std::abs(n), n < 0 ? -1 : 1, out.next_number());
    }
    void drop_first(std::size_t n) {
        std::copy(length.begin() + n, length.end(), length.begin());
        length.resize(length.size() - n);
        std::copy(limbs.begin() + n * width, limbs.end(), limbs.begin());
        limbs.resize(limbs.size() - n * width);
    }

  private:
    static uint64_t magnitude(int64_t v) { return v < 0 ? -static_cast<uint64_t>(v) : static_cast<uint64_t>(v); }
    limb *push_room() {
        if (limbs.size() + width > room) limbs.reserve(room = 2 * (limbs.size() + width));
        limbs.resize(limbs.size() + width);
        return limbs.end() - width;
    }
    void clear_sum() { std::fill(sum.begin(), sum.end(), 0); }
    void negate_sum() {
        limb carry = 1;
        for (limb &x : sum) {
            x = ~x + carry;
            carry = carry && x == 0;
        }
    }

    const power_base &base;
    const std::size_t width;
    buffer<limb> limbs, sum;
    std::size_t room = 0;
    buffer<int32_t> length;
    uint64_t last_divisor = 1;
    limb_divisor prepared{1};
};

/* ---- the recurrence ---- */

template <class ring> class power_series {
  public:
    power_series(const power_base &b, int bits) : base(b), terms(b, bits), out(b.shape), order(b.shape, out, 0) {}
    void run(polynode **p);

  private:
    struct cursor { /* the product of f_i and the term of g that it stands at */
        uint64_t key;
        uint32_t i;
        bool operator<(const cursor &other) const { return key < other.key; }
    };
    void push(uint32_t i) {
        if (at[i] == key.size()) return waiting.push(i);
        heap.push({key[at[i]] + base.f.key[i], i});
        std::push_heap(heap.begin(), heap.end());
    }
    void append(uint64_t k, int64_t its_weight) {
        key.push(k);
        of_weight.push(its_weight);
        terms.put_last(out);
        order.add_term(k);
        for (uint32_t i : waiting) push(i);
        waiting.clear();
        if (++count % terms_between_cleanings == 0) drop_unneeded();
    }
    void add_top();
    void drop_unneeded();

    const power_base &base;
    ring terms;
    poly_emitter out;
    key_order order;
    /* The terms of g that are still needed, from the highest one on. */
    buffer<uint64_t> key;
    buffer<int64_t> of_weight; /* U */
    buffer<std::size_t> at;    /* where the cursor of f_i stands among them */
    buffer<cursor> heap;
    buffer<uint32_t> waiting; /* cursors that have reached the end */
    std::size_t count = 0;
    int64_t weight = 0; /* of the sum in work */
    uint64_t work = 0;  /* since the last safe point */
};

/* Adds the product on the top of the heap to the sum, and moves its cursor on. */
template <class ring> void power_series<ring>::add_top() {
    const uint32_t i = heap[0].i;
    std::pop_heap(heap.begin(), heap.end());
    heap.pop();
    const std::size_t term = at[i]++;
    weight = of_weight[term] + base.u[i];
    const int64_t factor = base.e * base.u[i] - of_weight[term];
    if (factor) terms.add(i, factor, term);
    push(i);
    work += term_work + terms.cost();
    if (work < work_between_safe_points) return;
    work = 0;
    safe_point();
}

template <class ring> void power_series<ring>::drop_unneeded() {
    std::size_t least = key.size();
    for (std::size_t i = 1; i < at.size(); i++) least = std::min(least, at[i]);
    if (2 * least < key.size()) return;
    terms.drop_first(least);
    std::copy(key.begin() + least, key.end(), key.begin());
    key.resize(key.size() - least);
    std::copy(of_weight.begin() + least, of_weight.end(), of_weight.begin());
    of_weight.resize(of_weight.size() - least);
    for (std::size_t i = 1; i < at.size(); i++) at[i] -= least;
}

template <class ring> void power_series<ring>::run(polynode **p) {
    const std::size_t n = base.f.terms();
    at.resize(n);
    std::fill(at.begin(), at.end(), 0);
    for (uint32_t i = 1; i < n; i++) waiting.push(i);
    terms.begin();
    append(base.f.key[0] * base.e, 0);
    while (!heap.empty()) {
        const uint64_t product = heap[0].key;
        while (!heap.empty() && heap[0].key == product) add_top();
        if (terms.append(weight)) append(product - base.f.key[0], weight);
    }
    order.end();
    out.release_to(p);
}

/* The extent of the power, for the shape. */
poly_extent extent_of_power(const poly_extent &x, uint32_t e) {
    poly_extent y;
    y.levels = x.levels;
    for (int l = 1; l <= x.levels; l++)
        y.range[l] = {static_cast<int32_t>(x.range[l].low * int64_t{e}),
                      static_cast<int32_t>(x.range[l].high * int64_t{e})};
    return y;
}

/* Terms of the power at most: as many as there are monomials of degree e in the terms, or exponents in their box. */
double most_terms(const poly_extent &x, uint32_t e) {
    double log_terms = std::lgamma(static_cast<double>(x.terms) + e) - std::lgamma(e + 1.0) -
                       std::lgamma(static_cast<double>(x.terms));
    double log_box = 0;
    for (int l = 1; l <= x.levels; l++) {
        const double span = static_cast<double>(int64_t{x.range[l].high} - x.range[l].low);
        log_box += std::log(span * e + 1);
    }
    return std::exp(std::min({log_terms, log_box, 600.0}));
}

} // namespace

bool power_flat(polynode **p, uint32_t e, const poly_extent &x) {
    if (flotemode || finf || (lintmode && !modularmode) || x.levels == 0 || x.terms < 2 || x.bits > largest_factor_bits)
        return false;
    if (modularmode && !mod_is_prime()) return false;
    power_base base;
    base.e = e;
    make_flat_shape(extent_of_power(x, e), x, 0, 0, &base.shape);
    if (base.shape.keyed > 0) return false;
    pour_poly(*p, x, base.shape, true, 0, &base.f);
    if (!base.weigh()) return false;
    for (int l = 0; l < base.shape.count; l++) base.shape.level[l].low_b = 0; /* fields of the power are shown now */
    if (modularmode) {
        power_series<residue_terms>(base, 0).run(p);
        return true;
    }
    const double bits = std::min(std::log2(x.norm), x.bits + std::log2(static_cast<double>(x.terms))) * e;
    if (bits > 1e6) return false;
    power_series<integer_terms>(base, static_cast<int>(bits) + 2).run(p);
    return true;
}

/* Measured by bench/kernels/poly.cpp (power_route): a product of terms costs about so much in the recurrence, and by
   flat products, to which a term adds its way in and out. */
constexpr double recurrence_step = 30, product_step = 2, way_of_a_term = 150, beginning = 3000;

power_costs estimate_power(const poly_extent &x, uint32_t e) {
    const double k = static_cast<double>(x.terms), all = most_terms(x, e), half = most_terms(x, e / 2);
    power_costs c;
    c.flat = all * (k - 1) * recurrence_step + beginning;
    c.steps = 0;
    for (double i = 1; i < 8; i++) /* by the sizes at eighths of the way */
        c.steps += most_terms(x, static_cast<uint32_t>(e * i / 8)) * (k * product_step + way_of_a_term) * e / 8;
    c.squares = half * half * product_step + 2 * half * way_of_a_term;
    if (e % 2) c.squares += all * (k * product_step + way_of_a_term);
    return c;
}

} // namespace tolvek
