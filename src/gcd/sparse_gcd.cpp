/* The deeper variables become powers of one, y_j = w^(K_j), so that different exponents within the degrees of the answer
   make different powers (L. Kronecker). At the points w^s, w^(s+1), ... Euclid's algorithm gives monic images in the main
   variable, which are multiplied by the values of a polynomial that the leading coefficient of the GCD divides. Each
   coefficient of what results is a sparse polynomial in one variable; its values are taken until it is found
   (sparse_interpolation.h). So the number of images is about twice the number of terms of the longest coefficient,
   whatever the degrees are. (Compare J. Hu, M. Monagan, 2016.) */
#include "gcd/sparse_gcd.h"

#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "gcd/sparse_interpolation.h"
#include "numbers/random.h"
#include "poly/measures.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>
#include <new>

namespace tolvek {

namespace {

/* ---- operands ---- */

/* A polynomial as its terms. Variables count from 0, the main one. */
struct term_table {
    int variables = 0;
    buffer<int32_t> expo; /* `variables` for each term, the main one first */
    buffer<uint32_t> coefficient;
    buffer<uint32_t> value, ratio; /* of what stands in front of the main variable at the current point; step by step */

    std::size_t terms() const { return coefficient.size(); }
    const int32_t *exponents(std::size_t i) const { return &expo[i * static_cast<std::size_t>(variables)]; }
    int32_t degree(int variable) const {
        int32_t most = 0;
        for (std::size_t i = 0; i < terms(); i++) most = std::max(most, exponents(i)[variable]);
        return most;
    }
};

void pour_terms(const polynode *p, int at, int32_t *now, term_table *t) {
    for (; p; p = p->next) {
        if ((t->terms() & 1023) == 0) safe_point();
        now[at] = p->expo;
        if (!p->is_number) {
            pour_terms(p->poly, at + 1, now, t);
            continue;
        }
        for (int i = at + 1; i < t->variables; i++) now[i] = 0;
        for (int i = 0; i < t->variables; i++) t->expo.push(now[i]);
        t->coefficient.push(static_cast<uint32_t>(p->num->lint_val));
    }
}

void pour(const polynode *p, int first, int variables, term_table *t) {
    int32_t now[most_variables] = {};
    t->variables = variables;
    pour_terms(p, first, now, t);
}

/* The image in one variable, the values of the terms being known; false where the degree falls. */
bool image_in(const uni_field &f, const term_table &t, int variable, int32_t degree, uni_poly *image) {
    buffer<uint64_t> sums(static_cast<std::size_t>(degree) + 1); /* below 2^31 each: 2^33 of them fit */
    std::fill(sums.begin(), sums.end(), 0);
    for (std::size_t i = 0; i < t.terms(); i++) sums[static_cast<std::size_t>(t.exponents(i)[variable])] += t.value[i];
    const word_divisor p(f.p, f.reciprocal);
    image->resize(sums.size());
    for (std::size_t i = 0; i < sums.size(); i++) (*image)[i] = p.remainder(sums[i]);
    return uni_lead(*image) != 0;
}

void next_point(const uni_field &f, term_table *t) {
    const word_divisor p(f.p, f.reciprocal);
    for (std::size_t i = 0; i < t->terms(); i++) t->value[i] = p.product(t->value[i], t->ratio[i]);
}

/* The powers of one residue for each variable. */
class power_tables {
  public:
    void add(const uni_field &f, uint32_t x, int32_t degree) {
        begin[count++] = powers.size();
        uint32_t power = 1;
        for (int32_t e = 0; e <= degree; e++, power = f.product(power, x)) powers.push(power);
    }
    void add_none() { begin[count++] = powers.size(); }
    uint32_t at(int variable, int32_t e) const { return powers[begin[variable] + static_cast<std::size_t>(e)]; }

  private:
    buffer<uint32_t> powers;
    std::size_t begin[most_variables];
    int count = 0;
};

/* x times the powers for the exponents e of the variables from `first` on. */
uint32_t monomial_value(const uni_field &f, uint32_t x, const power_tables &powers, const int32_t *e, int first,
                        int variables) {
    const word_divisor p(f.p, f.reciprocal);
    for (int k = first; k < variables; k++)
        if (e[k]) x = p.product(powers.at(k, e[k]), x);
    return x;
}

/* ---- recurrences, one for each coefficient ---- */

class recurrences {
  public:
    explicit recurrences(std::size_t n)
        : list(static_cast<recurrence *>(heap_request(std::max<std::size_t>(n, 1) * sizeof(recurrence)))) {
        for (; count < n; count++) new (list + count) recurrence;
    }
    ~recurrences() {
        while (count) list[--count].~recurrence();
        heap_release(list);
    }
    recurrences(const recurrences &) = delete;
    recurrences &operator=(const recurrences &) = delete;
    recurrence &operator[](std::size_t i) { return list[i]; }

  private:
    recurrence *list;
    std::size_t count = 0;
};

/* ---- the GCD at work ---- */

struct found_term {
    int32_t main;
    uint64_t exponent; /* of the one variable */
    uint32_t coefficient;
};

enum class outcome { found, coprime, bad_points, hopeless };

struct sparse_work {
    const uni_field f = uni_field::in_force();
    int variables;
    pt *names;
    term_table u, v, normaliser; /* the last one divides both leading coefficients */
    uint64_t radix[most_variables], weight[most_variables], bound = 1;
    uint32_t w = 0;
    uint64_t s = 0;
    buffer<found_term> terms;

    uint32_t random_residue() const { return static_cast<uint32_t>(random_31()) % (f.p - 2) + 1; }
    bool find_degrees(int32_t *bounds);
    bool set_radices();
    uint64_t packed(const int32_t *exponents) const;
    void start(term_table *t) const;
    outcome take_images();
    bool collect(recurrences &of_coefficient, std::size_t degree);
    polynode *built(std::size_t from, std::size_t to, int variable) const;
    int32_t digit(std::size_t i, int variable) const;
};

/* ---- degrees ---- */

/* bounds: the degrees of the GCD in the variables below the main one, never too low; they are met unless the point is
   unlucky. One point serves all: what a variable has contributed to a term is taken out again where it leads. */
bool sparse_work::find_degrees(int32_t *bounds) {
    power_tables powers, inverses;
    for (int k = 0; k < variables; k++) {
        const uint32_t x = random_residue();
        const int32_t degree = std::max(u.degree(k), v.degree(k));
        powers.add(f, x, degree);
        inverses.add(f, f.inverse(x), degree);
    }
    for (term_table *t : {&u, &v}) {
        t->value.resize(t->terms());
        t->ratio.resize(t->terms());
        for (std::size_t i = 0; i < t->terms(); i++)
            t->ratio[i] = monomial_value(f, t->coefficient[i], powers, t->exponents(i), 0, variables);
    }
    for (int k = 1; k < variables; k++) {
        safe_point();
        bounds[k] = 0;
        if (u.degree(k) == 0 || v.degree(k) == 0) continue;
        for (term_table *t : {&u, &v})
            for (std::size_t i = 0; i < t->terms(); i++)
                t->value[i] = f.product(inverses.at(k, t->exponents(i)[k]), t->ratio[i]);
        uni_poly a, b, g;
        if (!image_in(f, u, k, u.degree(k), &a) || !image_in(f, v, k, v.degree(k), &b)) return false;
        uni_gcd(f, a, b, &g);
        bounds[k] = static_cast<int32_t>(uni_degree(g));
    }
    return true;
}

/* False where the powers of w cannot tell the exponents apart. */
bool sparse_work::set_radices() {
    int32_t degree[most_variables];
    if (!find_degrees(degree)) return false;
    bound = 1;
    for (int k = variables - 1; k > 0; k--) {
        radix[k] = static_cast<uint64_t>(degree[k]) + static_cast<uint64_t>(normaliser.degree(k)) + 1;
        weight[k] = bound;
        bound *= radix[k];
        if (bound > f.p / 4) return false;
    }
    return true;
}

/* ---- points ---- */

uint64_t sparse_work::packed(const int32_t *exponents) const {
    uint64_t e = 0;
    for (int k = 1; k < variables; k++) e = (e + static_cast<uint64_t>(exponents[k]) * weight[k]) % (f.p - 1);
    return e;
}

/* The first point, w^(s K_j) for the variable j, and the steps to the next ones. */
void sparse_work::start(term_table *t) const {
    power_tables steps, points;
    steps.add_none();
    points.add_none();
    for (int k = 1; k < variables; k++) {
        const uint32_t step = field_power(f, w, weight[k]);
        steps.add(f, step, t->degree(k));
        points.add(f, field_power(f, step, s), t->degree(k));
    }
    t->value.resize(t->terms());
    t->ratio.resize(t->terms());
    for (std::size_t i = 0; i < t->terms(); i++) {
        if ((i & 4095) == 0) safe_point();
        t->ratio[i] = monomial_value(f, 1, steps, t->exponents(i), 1, variables);
        t->value[i] = monomial_value(f, t->coefficient[i], points, t->exponents(i), 1, variables);
    }
}

/* ---- images ---- */

bool all_settled(recurrences &of_coefficient, std::size_t n) {
    for (std::size_t i = 0; i < n; i++)
        if (!of_coefficient[i].is_settled()) return false;
    return true;
}

outcome sparse_work::take_images() {
    constexpr std::size_t most_images = 1 << 15;
    const int32_t of_u = u.degree(0), of_v = v.degree(0);
    start(&u);
    start(&v);
    start(&normaliser);
    std::size_t degree = 0;
    recurrences of_coefficient(static_cast<std::size_t>(std::min(of_u, of_v)));
    const std::size_t most = static_cast<std::size_t>(std::min<uint64_t>(most_images, 2 * bound + 8));
    for (std::size_t n = 0; n < most; n++) {
        safe_point();
        uni_poly a, b, g, factor;
        if (!image_in(f, u, 0, of_u, &a) || !image_in(f, v, 0, of_v, &b) || !image_in(f, normaliser, 0, 0, &factor))
            return outcome::bad_points;
        uni_gcd(f, a, b, &g);
        if (g.size() == 1) return outcome::coprime;
        if (n == 0) degree = g.size() - 1;
        if (g.size() - 1 != degree) return outcome::bad_points;
        bool foretold = n > 0;
        for (std::size_t i = 0; i < degree; i++) foretold &= of_coefficient[i].add(f, f.product(g[i], factor[0]));
        if (foretold && all_settled(of_coefficient, degree))
            return collect(of_coefficient, degree) ? outcome::found : outcome::bad_points;
        next_point(f, &u);
        next_point(f, &v);
        next_point(f, &normaliser);
    }
    return outcome::hopeless;
}

/* ---- the answer ---- */

bool sparse_work::collect(recurrences &of_coefficient, std::size_t degree) {
    buffer<sparse_term> list;
    terms.clear();
    uint64_t wanted = 0;
    for (std::size_t i = 0; i < normaliser.terms(); i++)
        list.push({packed(normaliser.exponents(i)), normaliser.coefficient[i]});
    for (std::size_t i = 0; i < degree; i++) wanted += of_coefficient[i].length();
    const logarithms logs(f, w, bound, wanted);
    for (std::size_t i = degree;; i--) {
        for (const sparse_term &t : list) terms.push({static_cast<int32_t>(i), t.exponent, t.coefficient});
        if (i == 0) return true;
        if (!sparse_terms(f, of_coefficient[i - 1], w, s, logs, bound, &list)) return false;
    }
}

int32_t sparse_work::digit(std::size_t i, int variable) const {
    if (variable == 0) return terms[i].main;
    return static_cast<int32_t>(terms[i].exponent / weight[variable] % radix[variable]);
}

/* The terms `from` to `to`, which agree in the variables above, as a polynomial. */
polynode *sparse_work::built(std::size_t from, std::size_t to, int variable) const {
    growing_list list;
    while (from < to) {
        const int32_t e = digit(from, variable);
        std::size_t end = from + 1;
        while (end < to && digit(end, variable) == e) end++;
        poly_handle c, term;
        if (variable == variables - 1) {
            *c.slot() = new_number_term();
            c->num->lint_val = static_cast<int32_t>(terms[from].coefficient);
        } else {
            *c.slot() = built(from, end, variable + 1);
        }
        make_monomial(term.slot(), e, c.release());
        list.append(term.release());
        from = end;
    }
    return list.release();
}

} // namespace

/* ---- the routine ---- */

static void leading_coefficient(const polynode *p, poly_handle &lc) {
    if (p->is_number)
        node_assign(p, lc.slot());
    else
        poly_assign(p->poly, lc.slot());
}

/* A polynomial in the deeper variables that the leading coefficient of the GCD divides. */
static void find_normaliser(const polynode *u, const polynode *v, poly_handle &c, pt *names) {
    poly_handle of_v;
    leading_coefficient(u, c);
    leading_coefficient(v, of_v);
    if (is_constant(c.get()) || is_constant(of_v.get()))
        poly_set(1, c.slot());
    else
        polygcd(c.get(), of_v.get(), c.slot(), 0, 1, 0, names->pt_next, 1, 1, 0);
}

/* g := g divided by its content, if that divides u and v then. */
static bool is_answer(const polynode *u, const polynode *v, poly_handle &g, pt *names) {
    poly_handle c;
    content(g.get(), c.slot(), names, 0, 0, 1);
    if (!poly_eq_1(c.get())) {
        padded(c, 1);
        if (!exact_quotient(g.get(), c.get(), g.slot(), names)) return false;
    }
    return trial_poly_divide_noq(u, g.get(), names, 0, 0) && trial_poly_divide_noq(v, g.get(), names, 0, 0);
}

bool sparse_gcd(const polynode *u, const polynode *v, polynode **g, pt *names) {
    constexpr int32_t highest_degree = 5000, least_prime = 1000;
    constexpr int attempts = 3;
    check_stack();
    sparse_work work;
    work.variables = std::max(deepest_level(u), deepest_level(v));
    work.names = names;
    if (!work.f.odd_prime() || work.f.p < least_prime || work.variables < 2) return false;
    poly_handle normaliser;
    pour(u, 0, work.variables, &work.u);
    pour(v, 0, work.variables, &work.v);
    for (int k = 0; k < work.variables; k++)
        if (work.u.degree(k) > highest_degree || work.v.degree(k) > highest_degree) return false;
    find_normaliser(u, v, normaliser, names);
    pour(normaliser.get(), 1, work.variables, &work.normaliser);
    for (int i = 0; i < attempts; i++) {
        if (!work.set_radices()) return false;
        work.w = work.random_residue();
        work.s = work.random_residue();
        const outcome seen = work.take_images();
        if (seen == outcome::hopeless) return false;
        if (seen == outcome::coprime) {
            poly_set(1, g);
            return true;
        }
        if (seen == outcome::bad_points) continue;
        poly_handle answer(work.built(0, work.terms.size(), 0));
        if (!is_answer(u, v, answer, names)) continue;
        answer.release_to(g);
        return true;
    }
    return false;
}

} // namespace tolvek
