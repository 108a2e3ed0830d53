#include "gcd/sparse_gcd.h"

#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "gcd/log_images.h"
#include "gcd/sparse_images.h"
#include "numbers/handles.h"
#include "numbers/int_mult.h"
#include "numbers/modular.h"
#include "numbers/primes.h"
#include "poly/add.h"
#include "poly/measures.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

constexpr int attempts = 3;

/* ---- preparation ---- */

static void leading_coefficient(const polynode *p, poly_handle &lc) {
    if (p->is_number)
        node_assign(p, lc.slot());
    else
        poly_assign(p->poly, lc.slot());
}

/* A polynomial in the deeper variables that divides both leading coefficients and that the one of the GCD divides. */
static void find_normaliser(const polynode *u, const polynode *v, poly_handle &c, pt *names) {
    poly_handle of_v;
    leading_coefficient(u, c);
    leading_coefficient(v, of_v);
    if (is_constant(c.get()) || is_constant(of_v.get()))
        gcd_of_integer_contents(c.get(), of_v.get(), c.slot());
    else
        polygcd(c.get(), of_v.get(), c.slot(), 0, 1, 0, names->pt_next, 1, 1, 0);
}

/* The tables of the operands, without residues; false where the method is not for them. */
static bool prepare(const polynode *u, const polynode *v, poly_handle &normaliser, sparse_work &work, pt *names) {
    check_stack();
    const int variables = std::max(deepest_level(u), deepest_level(v));
    if (variables < 2) return false;
    find_normaliser(u, v, normaliser, names);
    work.pour(u, v, normaliser.get(), variables);
    return !work.has_high_degrees();
}

/* g := g divided by its content, if that divides u and v then. */
static bool is_answer(const polynode *u, const polynode *v, poly_handle &g, pt *names, polynode **u2 = nullptr,
                      polynode **v2 = nullptr) {
    poly_handle c;
    content(g.get(), c.slot(), names, 0, 0, 1);
    if (!poly_eq_1(c.get())) {
        padded(c, 1);
        if (!exact_quotient(g.get(), c.get(), g.slot(), names)) return false;
    }
    positive_sign(g);
    return divided_by(u, g.get(), u2, names) && divided_by(v, g.get(), v2, names);
}

static bool reduce_all(sparse_work &work, uint32_t p) {
    work.normaliser.reduce(p);
    const bool keeps_u = work.u.reduce(p), keeps_v = work.v.reduce(p);
    return keeps_u && keeps_v;
}

static outcome images_of(sparse_work &work, const uni_field &f, bool is_first) {
    const outcome seen = is_first ? work.set_radices(f) : outcome::found;
    return seen == outcome::found ? work.take_images(f) : seen;
}

/* ---- modulo a prime ---- */

/* g := the GCD, if the work has its terms, or if there are none to be found. */
static bool take_answer(outcome seen, const polynode *u, const polynode *v, const sparse_work &work, polynode **g,
                        pt *names) {
    if (seen == outcome::coprime) {
        poly_set(1, g);
        return true;
    }
    if (seen != outcome::found) return false;
    poly_handle answer(work.built(work.terms, static_cast<uint32_t>(int32_t{modulus})));
    if (!is_answer(u, v, answer, names)) return false;
    answer.release_to(g);
    return true;
}

/* Over the field of residues itself, where that has enough elements. */
static bool residues_suffice(sparse_work &work, const polynode *u, const polynode *v, polynode **g, pt *names) {
    constexpr uint32_t least_prime = 1000;
    const uni_field f = uni_field::in_force();
    if (!f.odd_prime() || f.p < least_prime) return false;
    reduce_all(work, f.p);
    for (int i = 0; i < attempts; i++) {
        const outcome seen = images_of(work, f, true);
        if (take_answer(seen, u, v, work, g, names)) return true;
        if (seen == outcome::hopeless) break;
    }
    return false;
}

static bool field_suffices(const log_field &f, sparse_work &work, const polynode *u, const polynode *v, polynode **g,
                           pt *names) {
    if (!f.is_there()) return false;
    log_images images(f, work);
    for (int i = 0; i < attempts; i++) {
        int32_t degree[most_variables];
        if (!images.find_degrees(degree)) continue;
        const outcome seen = degree[0] ? images.find_terms(degree) : outcome::coprime;
        if (take_answer(seen, u, v, work, g, names)) return true;
        if (seen == outcome::hopeless) break;
    }
    return false;
}

bool sparse_gcd(const polynode *u, const polynode *v, polynode **g, pt *names) {
    const uint32_t p = static_cast<uint32_t>(int32_t{modulus});
    poly_handle normaliser;
    sparse_work work;
    if (finf || !prepare(u, v, normaliser, work, names)) return false;
    if (residues_suffice(work, u, v, g, names)) return true;
    for (const field_size size : {field_size::near, field_size::large})
        if (p < log_field::largest_prime && field_suffices(log_field(p, size), work, u, v, g, names)) return true;
    return false;
}

/* ---- degrees ---- */

/* The tables of the operands alone. */
struct operand_tables {
    poly_handle one; /* the normaliser */
    sparse_work work;

    bool pour(const polynode *u, const polynode *v) {
        poly_set(1, one.slot());
        work.pour(u, v, one.get(), std::max(deepest_level(u), deepest_level(v)));
        return !work.has_high_degrees();
    }
};

static void tell_degrees(const sparse_work &work, const int32_t *degrees, int32_t *degree, bool *coprime) {
    *degree = degrees[0];
    *coprime = degrees[0] == 0 && std::all_of(degrees, degrees + work.variables, [](int32_t d) { return d == 0; });
}

bool degrees_over_larger_field(const polynode *u, const polynode *v, int32_t *degree, bool *coprime) {
    const uint32_t p = static_cast<uint32_t>(int32_t{modulus});
    if (finf || p > log_field::largest_prime) return false;
    const log_field f(p);
    operand_tables of;
    if (!f.is_there() || !of.pour(u, v)) return false;
    log_images images(f, of.work);
    int32_t degrees[most_variables];
    if (!images.find_degrees(degrees)) return false;
    tell_degrees(of.work, degrees, degree, coprime);
    return true;
}

bool degrees_modulo_large_prime(const polynode *u, const polynode *v, int32_t *degree, bool *coprime) {
    const uni_field f(2147483629);
    operand_tables of;
    int32_t degrees[most_variables];
    if (!of.pour(u, v) || !reduce_all(of.work, f.p) || !of.work.find_degrees(f, 0, degrees)) return false;
    tell_degrees(of.work, degrees, degree, coprime);
    return true;
}

/* ---- over the integers ---- */

/* An integer polynomial known modulo a product of primes, by Newton's form of Chinese remainders: what a further prime
   adds is a multiple of that product. */
struct known_images {
    poly_handle sum;
    number_handle product;
    bool nothing_new = false; /* the last prime has only confirmed the others */

    void start() {
        free_poly(sum.slot());
        setvalue(1, &product);
    }
    /* False, and nothing is added, where the image and the sum have different monomials: one of them has met a root of
       unity of low order, or a prime that divides a coefficient. */
    bool add(const sparse_work &work, const uni_field &f);

  private:
    bool find_digits(const sparse_work &work, const uni_field &f, buffer<image_term> *digits);
};

/* The terms of the image less those of the sum, divided by the product. */
bool known_images::find_digits(const sparse_work &work, const uni_field &f, buffer<image_term> *digits) {
    term_table known;
    known.pour(sum.get(), 0, work.variables);
    known.reduce(f.p);
    if (known.terms() != work.terms.size()) return false;
    const uint32_t factor = f.inverse(chain_modulo(&product, f.p));
    for (std::size_t i = 0; i < known.terms(); i++) {
        const image_term &t = work.terms[i];
        if (t.main != known.exponents(i)[0] || t.exponent != work.packed(known.exponents(i))) return false;
        const uint32_t digit = f.product(f.difference(t.coefficient, known.coefficient[i]), factor);
        if (digit) digits->push({t.main, t.exponent, digit});
    }
    return true;
}

bool known_images::add(const sparse_work &work, const uni_field &f) {
    if (!sum) {
        *sum.slot() = work.built(work.terms, f.p);
        nothing_new = false;
    } else {
        buffer<image_term> digits;
        if (!find_digits(work, f, &digits)) return false;
        nothing_new = digits.empty();
        if (!nothing_new) {
            poly_handle step(work.built(digits, f.p));
            num_poly_mult(step.slot(), &product);
            best_poly_add(sum.release(), step.release(), sum.slot());
        }
    }
    number_handle prime;
    set_int64(f.p, &prime);
    fast_mult(&product, &prime, &product);
    return true;
}

/* The largest coefficient of a polynomial that the first prime leaves is near p / 2 unless that is the answer. */
static bool are_small(const buffer<image_term> &terms, uint32_t p) {
    for (const image_term &t : terms)
        if (std::min(t.coefficient, p - t.coefficient) > p / 8) return false;
    return true;
}

bool sparse_integer_gcd(const polynode *u, const polynode *v, polynode **g, pt *names, polynode **u2, polynode **v2) {
    constexpr int most_primes = 1000, bad_primes = 10;
    poly_handle normaliser;
    sparse_work work;
    known_images known;
    if (!prepare(u, v, normaliser, work, names)) return false;
    known.start();
    int32_t p = 2147483629 + 2, degree = 0;
    int bad = 0; /* primes and candidates that came to nothing */
    for (int i = 0; i < most_primes && bad < bad_primes; i++) {
        do p -= 2;
        while (!is_prime(p));
        const uni_field f(static_cast<uint32_t>(p));
        if (!reduce_all(work, f.p)) continue;
        const outcome seen = images_of(work, f, !known.sum);
        if (seen == outcome::coprime) {
            poly_set(1, g);
            return true;
        }
        if (seen == outcome::hopeless) return false;
        if (seen == outcome::bad_points || (known.sum && work.terms[0].main > degree)) {
            bad++;
            continue;
        }
        if (known.sum && work.terms[0].main < degree) known.start();
        degree = work.terms[0].main;
        bool is_first = !known.sum;
        if (!known.add(work, f)) {
            bad++;
            is_first = true;
            known.start();
            known.add(work, f);
        }
        if (is_first ? !are_small(work.terms, f.p) : !known.nothing_new) continue;
        poly_handle answer;
        poly_assign(known.sum.get(), answer.slot());
        if (is_answer(u, v, answer, names, u2, v2)) {
            answer.release_to(g);
            return true;
        }
        bad++;
    }
    return false;
}

} // namespace tolvek
