#include "gcd/sparse_images.h"

#include "numbers/modular.h"
#include "numbers/random.h"
#include "poly/model_work.h"
#include "top/interrupts.h"

#include <algorithm>
#include <new>

namespace tolvek {

/* ---- operands ---- */

void term_table::pour_list(const polynode *p, int at, int32_t *now) {
    for (; p; p = p->next) {
        if ((terms() & 1023) == 0) safe_point();
        now[at] = p->expo;
        if (!p->is_number) {
            pour_list(p->poly, at + 1, now);
            continue;
        }
        for (int k = at + 1; k < variables; k++) now[k] = 0;
        for (int k = 0; k < variables; k++) {
            expo.push(now[k]);
            int32_t &degree = degrees[static_cast<std::size_t>(k)];
            degree = std::max(degree, now[k]);
        }
        given.push(p->num);
    }
}

void term_table::pour(const polynode *p, int first, int its_variables) {
    int32_t now[most_variables] = {};
    variables = its_variables;
    degrees.resize(static_cast<std::size_t>(variables));
    std::fill(degrees.begin(), degrees.end(), 0);
    pour_list(p, first, now);
}

bool term_table::reduce(uint32_t p) {
    coefficient.resize(terms());
    for (std::size_t i = 0; i < terms(); i++) {
        if ((i & 1023) == 0) safe_point();
        coefficient[i] = lintmode ? static_cast<uint32_t>(given[i]->lint_val) : chain_modulo(given[i], p);
    }
    return coefficient[0] != 0;
}

void sparse_work::pour(const polynode *first, const polynode *second, const polynode *its_normaliser,
                       int its_variables) {
    variables = its_variables;
    u.pour(first, 0, variables);
    v.pour(second, 0, variables);
    normaliser.pour(its_normaliser, 1, variables);
}

bool sparse_work::has_high_degrees() const {
    constexpr int32_t highest = 5000;
    for (int k = 0; k < variables; k++)
        if (u.degree(k) > highest || v.degree(k) > highest) return true;
    return false;
}

namespace {

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

uint32_t random_residue(const uni_field &f) { return static_cast<uint32_t>(random_31()) % (f.p - 2) + 1; }

} // namespace

/* ---- recurrences, one for each coefficient ---- */

class sparse_work::recurrences {
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
    bool are_settled(std::size_t n) const {
        for (std::size_t i = 0; i < n; i++)
            if (!list[i].is_settled()) return false;
        return true;
    }

  private:
    recurrence *list;
    std::size_t count = 0;
};

/* ---- degrees ---- */

/* One point serves all variables: what one has contributed to a term is taken out again where it leads. */
bool sparse_work::find_degrees(const uni_field &f, int first, int32_t *bounds) {
    power_tables powers, inverses;
    for (int k = 0; k < variables; k++) {
        const uint32_t x = random_residue(f);
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
    for (int k = first; k < variables; k++) {
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
        if (k == 0 && bounds[k] > 0) break;
    }
    return true;
}

bool sparse_work::set_radices(const int32_t *degree) {
    constexpr uint64_t most = uint64_t{1} << 60;
    bound = 1;
    for (int k = variables - 1; k > 0; k--) {
        radix[k] = static_cast<uint64_t>(degree[k]) + static_cast<uint64_t>(normaliser.degree(k)) + 1;
        weight[k] = bound;
        if (radix[k] > most / bound) return false;
        bound *= radix[k];
    }
    return true;
}

outcome sparse_work::set_radices(const uni_field &f) {
    int32_t degree[most_variables];
    if (!find_degrees(f, 1, degree)) return outcome::bad_points;
    return set_radices(degree) && bound <= f.p / 4 ? outcome::found : outcome::hopeless;
}

/* ---- points ---- */

/* The first point, w^(s K_j) for the variable j, and the steps to the next ones. */
void sparse_work::start(const uni_field &f, uint32_t w, uint64_t s, term_table *t) const {
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

outcome sparse_work::take_images(const uni_field &f) {
    const uint32_t w = random_residue(f), s = random_residue(f);
    constexpr std::size_t most_images = 1 << 15;
    const int32_t of_u = u.degree(0), of_v = v.degree(0);
    start(f, w, s, &u);
    start(f, w, s, &v);
    start(f, w, s, &normaliser);
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
        if (foretold && of_coefficient.are_settled(degree))
            return collect(f, w, s, of_coefficient, degree) ? outcome::found : outcome::bad_points;
        next_point(f, &u);
        next_point(f, &v);
        next_point(f, &normaliser);
    }
    return outcome::hopeless;
}

/* ---- the answer ---- */

bool sparse_work::collect(const uni_field &f, uint32_t w, uint64_t s, recurrences &of_coefficient, std::size_t degree) {
    buffer<sparse_term> list;
    terms.clear();
    uint64_t wanted = 0;
    for (std::size_t i = 0; i < normaliser.terms(); i++)
        if (normaliser.coefficient[i]) list.push({packed(normaliser.exponents(i)), normaliser.coefficient[i]});
    for (std::size_t i = 0; i < degree; i++) wanted += of_coefficient[i].length();
    const logarithms logs(f, w, bound, wanted);
    for (std::size_t i = degree;; i--) {
        for (const sparse_term &t : list) terms.push({static_cast<int32_t>(i), t.exponent, t.coefficient});
        if (i == 0) return true;
        if (!sparse_terms(f, of_coefficient[i - 1], w, s, logs, bound, &list)) return false;
    }
}

static polynode *constant_of(uint32_t c, uint32_t p) {
    polynode *t = new_number_term();
    if (lintmode)
        t->num->lint_val = static_cast<int32_t>(c);
    else
        set_int64(c > p / 2 ? int64_t{c} - p : c, t->num);
    return t;
}

polynode *sparse_work::built_part(const buffer<image_term> &list, std::size_t from, std::size_t to, int variable,
                                  uint32_t p) const {
    growing_list result;
    while (from < to) {
        const int32_t e = exponent(list[from], variable);
        std::size_t end = from + 1;
        while (end < to && exponent(list[end], variable) == e) end++;
        const bool last = variable == variables - 1;
        poly_handle c(last ? constant_of(list[from].coefficient, p) : built_part(list, from, end, variable + 1, p));
        poly_handle term;
        make_monomial(term.slot(), e, c.release());
        result.append(term.release());
        from = end;
    }
    return list_or_zero(result.release());
}

} // namespace tolvek
