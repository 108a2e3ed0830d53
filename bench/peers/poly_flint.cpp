/* The problems of kernels/poly.cpp by FLINT: best of several runs, in milliseconds of processor time. */
#include <flint/fmpz_mpoly.h>
#include <flint/fmpz_poly.h>
#include <flint/nmod_mpoly.h>
#include <flint/nmod_poly.h>

#include <algorithm>
#include <cstdio>
#include <ctime>

static ulong generator = 1;
static ulong next_random() { return generator = generator * 16807 % 2147483647; }

static double now() {
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return 1e3 * static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_nsec);
}

template <class Routine> static void tell(const char *name, Routine routine) {
    double best = 1e99, first = 0;
    const double begin = now();
    for (int i = 0; i < 3 || now() - begin < 300; i++) {
        const double start = now();
        routine();
        best = std::min(best, now() - start);
        if (i == 0) first = best;
    }
    std::printf("%-40s best %9.3f ms   first %9.3f ms\n", name, best, first);
}

static void dense4() {
    const char *x[] = {"x", "y", "z", "t"};
    fmpz_mpoly_ctx_t c;
    fmpz_mpoly_ctx_init(c, 4, ORD_LEX);
    fmpz_mpoly_t base, f, g, h;
    for (auto p : {base, f, g, h}) fmpz_mpoly_init(p, c);
    fmpz_mpoly_set_str_pretty(base, "1+x+y+z+t", x, c);
    tell("product/dense4", [&] {
        fmpz_mpoly_pow_ui(f, base, 20, c);
        fmpz_mpoly_add_ui(g, f, 1, c);
        fmpz_mpoly_mul(h, f, g, c);
    });
}

static void sparse5() {
    const char *x[] = {"x", "y", "z", "t", "u"};
    fmpz_mpoly_ctx_t c;
    fmpz_mpoly_ctx_init(c, 5, ORD_LEX);
    fmpz_mpoly_t a, b, f, g, h;
    for (auto p : {a, b, f, g, h}) fmpz_mpoly_init(p, c);
    fmpz_mpoly_set_str_pretty(a, "1+x+y+2*z^2+3*t^3+5*u^5", x, c);
    fmpz_mpoly_set_str_pretty(b, "1+u+t+2*z^2+3*y^3+5*x^5", x, c);
    tell("product/sparse5", [&] {
        fmpz_mpoly_pow_ui(f, a, 10, c);
        fmpz_mpoly_pow_ui(g, b, 10, c);
        fmpz_mpoly_mul(h, f, g, c);
    });
}

static void powers() {
    const char *x[] = {"x", "y", "z"};
    fmpz_mpoly_ctx_t c;
    fmpz_mpoly_ctx_init(c, 3, ORD_LEX);
    fmpz_mpoly_t f, g;
    for (auto p : {f, g}) fmpz_mpoly_init(p, c);
    fmpz_mpoly_set_str_pretty(f, "1+x+y+z", x, c);
    tell("power/Z/180", [&] { fmpz_mpoly_pow_ui(g, f, 180, c); });
    nmod_mpoly_ctx_t m;
    nmod_mpoly_ctx_init(m, 3, ORD_LEX, 46337);
    nmod_mpoly_t u, v;
    for (auto p : {u, v}) nmod_mpoly_init(p, m);
    nmod_mpoly_set_str_pretty(u, "1+x+y+z", x, m);
    tell("power/46337/120", [&] { nmod_mpoly_pow_ui(v, u, 120, m); });
}

static void random4() {
    fmpz_mpoly_ctx_t c;
    fmpz_mpoly_ctx_init(c, 4, ORD_LEX);
    fmpz_mpoly_t f, g, h;
    for (auto p : {f, g, h}) fmpz_mpoly_init(p, c);
    generator = 1;
    for (auto p : {f, g}) {
        for (int i = 0; i < 2000; i++) {
            ulong e[4];
            for (ulong &k : e) k = next_random() % 1000;
            fmpz_mpoly_push_term_si_ui(p, static_cast<slong>(next_random() % 199) - 99, e, c);
        }
        fmpz_mpoly_sort_terms(p, c);
        fmpz_mpoly_combine_like_terms(p, c);
    }
    tell("product/random4", [&] { fmpz_mpoly_mul(h, f, g, c); });
}

static void univariate_integers() {
    fmpz_poly_t f, g, h;
    for (auto p : {f, g, h}) fmpz_poly_init(p);
    generator = 1;
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
    tell("product/univariate/Z/5000", [&] { fmpz_poly_mul(h, f, g); });
}

static void univariate_residues(const char *name, ulong m) {
    nmod_poly_t f, g, h;
    for (auto p : {f, g, h}) nmod_poly_init(p, m);
    generator = 1;
    for (auto p : {f, g})
        for (int e = 0; e <= 20000; e++) nmod_poly_set_coeff_ui(p, e, next_random() % m);
    tell(name, [&] { nmod_poly_mul(h, f, g); });
}

int main() {
    dense4();
    sparse5();
    powers();
    random4();
    univariate_integers();
    univariate_residues("product/univariate/65521/20000", 65521);
    univariate_residues("product/univariate/2147483629/20000", 2147483629);
}
