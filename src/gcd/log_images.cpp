#include "gcd/log_images.h"

#include "top/interrupts.h"

#include <algorithm>
#include <utility>

namespace tolvek {

/* ---- values of terms ---- */

static void take_logarithms(const log_field &f, term_table *t) {
    t->reduce(f.prime());
    for (uint32_t &c : t->coefficient) c = f.of_residue(c);
    t->value.resize(t->terms());
    t->ratio.resize(t->terms());
}

log_images::log_images(const log_field &field, sparse_work &tables) : f(field), work(tables) {
    for (term_table *t : {&work.u, &work.v, &work.normaliser}) take_logarithms(f, t);
}

/* The values of the terms, times x to their powers of the variable. */
void log_images::add_power(term_table *t, int variable, uint32_t x) const {
    buffer<uint32_t> powers(static_cast<std::size_t>(t->degree(variable)) + 1);
    uint32_t power = f.one();
    for (uint32_t &place : powers) {
        place = power;
        power = f.shifted(power, x);
    }
    for (std::size_t i = 0; i < t->terms(); i++)
        t->value[i] = f.shifted(t->value[i], powers[static_cast<std::size_t>(t->exponents(i)[variable])]);
}

/* The image in one variable, by the values of the terms without its power; false where the degree falls. */
bool log_images::image_in(const term_table &t, int variable, log_poly *image) const {
    image->resize(static_cast<std::size_t>(t.degree(variable)) + 1);
    std::fill(image->begin(), image->end(), f.zero());
    for (std::size_t i = 0; i < t.terms(); i++) {
        uint32_t &c = (*image)[static_cast<std::size_t>(t.exponents(i)[variable])];
        c = f.sum(c, t.value[i]);
    }
    return image->back() != f.zero();
}

static void start_with_coefficients(term_table *t) {
    std::copy(t->coefficient.begin(), t->coefficient.end(), t->value.begin());
}

/* ---- degrees ---- */

bool log_images::find_degrees(int32_t *degree) {
    for (int k = 0; k < work.variables; k++) point[k] = f.random_unit();
    for (int k = 0; k < work.variables; k++) {
        safe_point();
        degree[k] = 0;
        if (work.u.degree(k) == 0 || work.v.degree(k) == 0) continue;
        log_poly image[2];
        for (const int i : {0, 1}) {
            term_table *t = i ? &work.v : &work.u;
            start_with_coefficients(t);
            for (int l = 0; l < work.variables; l++)
                if (l != k) add_power(t, l, point[l]);
            if (!image_in(*t, k, &image[i])) return false;
        }
        log_gcd(f, &image[0], &image[1]);
        degree[k] = static_cast<int32_t>(image[0].size()) - 1;
    }
    return true;
}

/* ---- images in the main variable ---- */

/* The points of a stage: powers of random elements for the variables that are there, x for its own, and the fixed ones for
   those to come. The first one is set, and so are the steps. */
void log_images::set_values(int stage, uint32_t x) {
    for (term_table *t : {&work.u, &work.v, &work.normaliser}) {
        start_with_coefficients(t);
        if (stage < work.variables) add_power(t, stage, x);
        for (int l = stage + 1; l < work.variables; l++) add_power(t, l, point[l]);
        for (std::size_t i = 0; i < t->terms(); i++) t->value[i] = f.shifted(t->value[i], t->ratio[i]);
    }
}

void log_images::next_point() {
    for (term_table *t : {&work.u, &work.v, &work.normaliser})
        for (std::size_t i = 0; i < t->terms(); i++) t->value[i] = f.shifted(t->value[i], t->ratio[i]);
}

/* The image of the GCD, times the value of the normaliser. */
outcome log_images::take_image(log_poly *image) {
    safe_point();
    log_poly of_v, factor;
    if (!image_in(work.u, 0, image) || !image_in(work.v, 0, &of_v) || !image_in(work.normaliser, 0, &factor))
        return outcome::bad_points;
    log_gcd(f, image, &of_v);
    if (image->size() == 1) return outcome::coprime;
    for (uint32_t &c : *image) c = f.product(c, factor[0]);
    return outcome::found;
}

/* ---- stages ---- */

/* No variable but the main one is there. */
outcome log_images::start() {
    for (int k = 1; k < work.variables; k++) point[k] = f.random_unit();
    for (term_table *t : {&work.u, &work.v, &work.normaliser}) std::fill(t->ratio.begin(), t->ratio.end(), f.one());
    set_values(1, point[1]);
    log_poly image;
    const outcome seen = take_image(&image);
    if (seen != outcome::found) return seen;
    known.clear();
    main_degree = static_cast<int32_t>(image.size()) - 1;
    for (int32_t e = main_degree - 1; e >= 0; e--)
        if (const uint32_t c = image[static_cast<std::size_t>(e)]; c != f.zero()) known.push({e, 0, c});
    return outcome::found;
}

void log_images::find_groups() {
    groups.clear();
    for (std::size_t i = 0; i < known.size(); i++)
        if (i > 0 && known[i].main == known[i - 1].main)
            groups.back().count++;
        else
            groups.push({i, 1});
}

/* Random elements whose powers take the place of the variables that are there. False where two terms of a group have the
   same value. */
bool log_images::choose_ratios(int stage) {
    for (term_table *t : {&work.u, &work.v, &work.normaliser}) std::fill(t->ratio.begin(), t->ratio.end(), f.one());
    monomial.resize(known.size());
    std::fill(monomial.begin(), monomial.end(), f.one());
    for (int l = 1; l < stage; l++) {
        const uint32_t x = f.random_unit();
        for (term_table *t : {&work.u, &work.v, &work.normaliser})
            for (std::size_t i = 0; i < t->terms(); i++)
                t->ratio[i] = f.shifted(t->ratio[i], f.power(x, static_cast<uint32_t>(t->exponents(i)[l])));
        for (std::size_t i = 0; i < known.size(); i++)
            monomial[i] = f.shifted(monomial[i], f.power(x, static_cast<uint32_t>(work.exponent(known[i], l))));
    }
    buffer<uint32_t> sorted;
    for (const group &g : groups) {
        sorted.clear();
        for (std::size_t i = 0; i < g.count; i++) sorted.push(monomial[g.first + i]);
        std::sort(sorted.begin(), sorted.end());
        if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end()) return false;
    }
    return true;
}

/* The coefficients of the known terms where the variable of the stage is x. */
outcome log_images::take_values(int stage, uint32_t x, uint32_t *to, std::size_t stride) {
    std::size_t longest = 0;
    for (const group &g : groups) longest = std::max(longest, g.count);
    buffer<uint32_t> seen(longest * static_cast<std::size_t>(main_degree));
    set_values(stage, x);
    for (std::size_t n = 0; n < longest; n++) {
        log_poly image;
        const outcome taken = take_image(&image);
        if (taken != outcome::found) return taken;
        if (image.size() != static_cast<std::size_t>(main_degree) + 1) return outcome::bad_points;
        for (std::size_t e = 0; e + 1 < image.size(); e++) seen[e * longest + n] = image[e];
        next_point();
    }
    buffer<uint32_t> solution(longest);
    for (const group &g : groups) {
        safe_point();
        const log_vandermonde system(f, &monomial[g.first], g.count);
        system.solve(&seen[static_cast<std::size_t>(known[g.first].main) * longest], solution.data());
        for (std::size_t i = 0; i < g.count; i++) to[(g.first + i) * stride] = solution[i];
    }
    return outcome::found;
}

/* The variable of the stage comes in: a known term becomes its product with a polynomial in it. */
outcome log_images::lift(int stage) {
    constexpr int attempts = 10;
    const std::size_t points = work.degree_bound(stage) + 1;
    find_groups();
    for (int i = 1; !choose_ratios(stage); i++)
        if (i == attempts) return outcome::hopeless;
    buffer<uint32_t> x(points), y(points * known.size());
    x[0] = point[stage];
    for (std::size_t i = 0; i < known.size(); i++) y[i * points] = known[i].coefficient;
    for (std::size_t n = 1; n < points; n++) {
        do x[n] = f.random_unit();
        while (std::find(x.begin(), x.begin() + n, x[n]) != x.begin() + n);
        const outcome taken = take_values(stage, x[n], y.data() + n, points);
        if (taken != outcome::found) return taken;
    }
    buffer<image_term> more;
    for (std::size_t i = 0; i < known.size(); i++) {
        safe_point();
        uint32_t *c = &y[i * points];
        log_interpolate(f, x.data(), c, points);
        for (std::size_t e = points; e-- > 0;)
            if (c[e] != f.zero()) more.push({known[i].main, known[i].exponent + e * work.step_of(stage), c[e]});
    }
    known = std::move(more);
    return outcome::found;
}

/* The leading coefficient is the normaliser. False where a coefficient is no residue. */
bool log_images::collect() {
    work.terms.clear();
    for (std::size_t i = 0; i < work.normaliser.terms(); i++)
        work.terms.push({main_degree, work.packed(work.normaliser.exponents(i)), work.normaliser.coefficient[i]});
    for (const image_term &t : known) work.terms.push(t);
    for (image_term &t : work.terms)
        if (!f.is_residue(t.coefficient, &t.coefficient)) return false;
    return true;
}

outcome log_images::find_terms(const int32_t *degree) {
    if (!work.set_radices(degree)) return outcome::hopeless;
    outcome seen = start();
    for (int stage = 1; stage < work.variables && seen == outcome::found; stage++)
        if (work.degree_bound(stage) > 0) seen = lift(stage);
    if (seen != outcome::found) return seen;
    return collect() ? outcome::found : outcome::bad_points;
}

} // namespace tolvek
