/* The figures of kernels/poly.cpp by FLINT: peer_poly NAME tells what bench_poly --figure NAME does. */
#include <flint/fmpz_mpoly.h>
#include <flint/fmpz_poly.h>
#include <flint/nmod_mpoly.h>
#include <flint/nmod_poly.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

static ulong generator = 1;
static ulong next_random() { return generator = generator * 16807 % 2147483647; }

static double processor_seconds() {
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

struct answer {
    slong terms;
    ulong value;
};

static void tell(const std::function<void()> &compute, const std::function<answer()> &result) {
    std::vector<double> seconds;
    answer found{};
    while (seconds.size() < 6) {
        const double start = processor_seconds();
        compute();
        seconds.push_back(processor_seconds() - start);
        if (seconds.size() == 1) found = result();
    }
    std::printf("first %.9f\nterms %ld\nvalue %lu\n", seconds[0], found.terms, found.value);
    std::sort(seconds.begin() + 1, seconds.end());
    std::printf("again %.9f\n", seconds[3]);
}

/* ---- several variables ---- */

constexpr ulong check_modulus = 2147483629;
static const char *variables[] = {"x", "y", "z", "t", "u"};

struct ring_over_z {
    fmpz_mpoly_ctx_t c;
    explicit ring_over_z(int n) { fmpz_mpoly_ctx_init(c, n, ORD_LEX); }
    void read(fmpz_mpoly_t p, const char *text) const {
        fmpz_mpoly_init(p, c);
        if (text) fmpz_mpoly_set_str_pretty(p, text, variables, c);
    }
    answer of(const fmpz_mpoly_t p) const {
        fmpz point[5] = {2, 3, 5, 7, 11}, *at[5] = {point, point + 1, point + 2, point + 3, point + 4};
        nmod_mpoly_ctx_t m;
        nmod_mpoly_ctx_init(m, c->minfo->nvars, ORD_LEX, check_modulus);
        nmod_mpoly_t residues;
        nmod_mpoly_init(residues, m);
        std::vector<ulong> e(static_cast<size_t>(c->minfo->nvars));
        for (slong i = 0; i < fmpz_mpoly_length(p, c); i++) {
            fmpz_mpoly_get_term_exp_ui(e.data(), p, i, c);
            const ulong r = fmpz_fdiv_ui(p->coeffs + i, check_modulus);
            if (r) nmod_mpoly_push_term_ui_ui(residues, r, e.data(), m);
        }
        const ulong primes[] = {2, 3, 5, 7, 11};
        return {fmpz_mpoly_length(p, c), nmod_mpoly_evaluate_all_ui(residues, primes, m)};
    }
};

static void dense4() {
    const ring_over_z r(4);
    fmpz_mpoly_t base, f, g, h;
    r.read(base, "1+x+y+z+t");
    for (auto p : {f, g, h}) r.read(p, nullptr);
    tell(
        [&] {
            fmpz_mpoly_pow_ui(f, base, 20, r.c);
            fmpz_mpoly_add_ui(g, f, 1, r.c);
            fmpz_mpoly_mul(h, f, g, r.c);
        },
        [&] { return r.of(h); });
}

static void sparse5() {
    const ring_over_z r(5);
    fmpz_mpoly_t a, b, f, g, h;
    r.read(a, "1+x+y+2*z^2+3*t^3+5*u^5");
    r.read(b, "1+u+t+2*z^2+3*y^3+5*x^5");
    for (auto p : {f, g, h}) r.read(p, nullptr);
    tell(
        [&] {
            fmpz_mpoly_pow_ui(f, a, 10, r.c);
            fmpz_mpoly_pow_ui(g, b, 10, r.c);
            fmpz_mpoly_mul(h, f, g, r.c);
        },
        [&] { return r.of(h); });
}

static void quotient4() {
    const ring_over_z r(4);
    fmpz_mpoly_t base, f, g, h;
    r.read(base, "1+x+y+z+t");
    for (auto p : {f, g, h}) r.read(p, nullptr);
    fmpz_mpoly_pow_ui(f, base, 20, r.c);
    fmpz_mpoly_pow_ui(g, base, 10, r.c);
    tell([&] { fmpz_mpoly_divides(h, f, g, r.c); }, [&] { return r.of(h); });
}

static void quotient5() {
    const ring_over_z r(5);
    fmpz_mpoly_t a, b, f, h;
    r.read(a, "1+x+y+2*z^2+3*t^3+5*u^5");
    r.read(b, "1+u+t+2*z^2+3*y^3+5*x^5");
    for (auto p : {f, h}) r.read(p, nullptr);
    fmpz_mpoly_pow_ui(a, a, 10, r.c);
    fmpz_mpoly_pow_ui(b, b, 10, r.c);
    fmpz_mpoly_mul(f, a, b, r.c);
    tell([&] { fmpz_mpoly_divides(h, f, a, r.c); }, [&] { return r.of(h); });
}

static void power_over_z() {
    const ring_over_z r(3);
    fmpz_mpoly_t f, g;
    r.read(f, "1+x+y+z");
    r.read(g, nullptr);
    tell([&] { fmpz_mpoly_pow_ui(g, f, 180, r.c); }, [&] { return r.of(g); });
}

static void power_of_residues() {
    nmod_mpoly_ctx_t m;
    nmod_mpoly_ctx_init(m, 3, ORD_LEX, 46337);
    nmod_mpoly_t f, g;
    for (auto p : {f, g}) nmod_mpoly_init(p, m);
    nmod_mpoly_set_str_pretty(f, "1+x+y+z", variables, m);
    const ulong primes[] = {2, 3, 5};
    tell([&] { nmod_mpoly_pow_ui(g, f, 120, m); },
         [&] {
             return answer{nmod_mpoly_length(g, m), nmod_mpoly_evaluate_all_ui(g, primes, m)};
         });
}

static void random4() {
    const ring_over_z r(4);
    fmpz_mpoly_t f, g, h;
    r.read(h, nullptr);
    for (auto p : {f, g}) {
        r.read(p, nullptr);
        for (int i = 0; i < 2000; i++) {
            ulong e[4];
            for (ulong &k : e) k = next_random() % 1000;
            fmpz_mpoly_push_term_si_ui(p, static_cast<slong>(next_random() % 199) - 99, e, r.c);
        }
        fmpz_mpoly_sort_terms(p, r.c);
        fmpz_mpoly_combine_like_terms(p, r.c);
    }
    tell([&] { fmpz_mpoly_mul(h, f, g, r.c); }, [&] { return r.of(h); });
}

/* ---- one variable ---- */

static void univariate_integers() {
    fmpz_poly_t f, g, h;
    for (auto p : {f, g, h}) fmpz_poly_init(p);
    for (auto p : {f, g})
        for (int e = 0; e <= 5000; e++) {
            fmpz_t v;
            fmpz_init_set_ui(v, next_random() % 128);
            for (int k = 0; k < 3; k++) {
                fmpz_mul_2exp(v, v, 31);
                fmpz_add_ui(v, v, next_random());
            }
            fmpz_poly_set_coeff_fmpz(p, e, v);
        }
    tell([&] { fmpz_poly_mul(h, f, g); },
         [&] {
             nmod_poly_t residues;
             nmod_poly_init(residues, check_modulus);
             slong terms = 0;
             for (slong i = 0; i < fmpz_poly_length(h); i++) {
                 fmpz_t v;
                 fmpz_init(v);
                 fmpz_poly_get_coeff_fmpz(v, h, i);
                 terms += !fmpz_is_zero(v);
                 nmod_poly_set_coeff_ui(residues, i, fmpz_fdiv_ui(v, check_modulus));
             }
             return answer{terms, nmod_poly_evaluate_nmod(residues, 2)};
         });
}

static void univariate_residues(ulong m) {
    nmod_poly_t f, g, h;
    for (auto p : {f, g, h}) nmod_poly_init(p, m);
    for (auto p : {f, g})
        for (int e = 0; e <= 20000; e++) nmod_poly_set_coeff_ui(p, e, next_random() % m);
    tell([&] { nmod_poly_mul(h, f, g); },
         [&] {
             slong terms = 0;
             for (slong i = 0; i < nmod_poly_length(h); i++) terms += nmod_poly_get_coeff_ui(h, i) != 0;
             return answer{terms, nmod_poly_evaluate_nmod(h, 2)};
         });
}

int main(int argc, char **argv) {
    const std::string name = argc > 1 ? argv[1] : "";
    if (name == "dense4") dense4();
    if (name == "sparse5") sparse5();
    if (name == "quotient4") quotient4();
    if (name == "quotient5") quotient5();
    if (name == "power/Z") power_over_z();
    if (name == "power/46337") power_of_residues();
    if (name == "random4") random4();
    if (name == "univariate/Z") univariate_integers();
    if (name == "univariate/65521") univariate_residues(65521);
    if (name == "univariate/2147483629") univariate_residues(2147483629);
}
