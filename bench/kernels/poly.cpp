/* Products, powers and exact quotients of polynomials, each with a check of its answer: its number of terms and its value at
   x, y, z, t, u = 2, 3, 5, 7, 11, modulo the ring's modulus or else 2147483629. bench/products.py runs them beside the
   peers and knows what they are to be measured by.

   The pairs route/... tell where the cut-offs lie: flat_product_cut (route/lists beside route/flat) and the constants
   of flat_dense.cpp and flat_residues.cpp (route/flat beside route/transforms and route/residues). */
#include "numbers/stash.h"
#include "poly/add.h"
#include "poly/divide_work.h"
#include "poly/flat_dense.h"
#include "poly/flat_product.h"
#include "poly/flat_residues.h"
#include "poly/measures.h"
#include "poly/mult.h"
#include "poly/mult_work.h"
#include "poly/power_work.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

using namespace tolvek;

/* ---- operands ---- */

/* Answers are told by their value modulo this. */
static uint64_t check_modulus() { return modularmode ? static_cast<uint64_t>(int32_t{modulus}) : 2147483629; }
constexpr uint64_t points[] = {2, 3, 5, 7, 11};

static uint64_t generator = 1;
static uint64_t next_random() { return generator = generator * 16807 % 2147483647; }

struct ring_of {
    explicit ring_of(int32_t m) {
        flotemode = 0;
        lintmode = modularmode = m > 0;
        modulus = m > 0 ? m : -1;
    }
    ring_guard found;
};

/* c times the variable of the level to the power e. */
static void add_power(polynode **p, int level, int32_t e, int32_t c) {
    poly_handle v;
    base_poly(v.slot(), level);
    polynode *t = v.get();
    while (t->expo == 0) t = t->poly;
    t->expo = e;
    setvalue(c, t->poly->num);
    best_poly_add(*p, v.release(), p);
}

/* 1 + the sum of the variables up to a level. */
static void linear_form(int levels, polynode **p) {
    poly_set(1, p);
    for (int k = 1; k <= levels; k++) add_power(p, k, 1, 1);
}

/* Terms with exponents below 1000 in four variables and coefficients -99 .. 99, 0 left out. */
static void random_terms(int n, polynode **p) {
    poly_set(0, p);
    for (; n > 0; n--) {
        int32_t e[4];
        for (int32_t &x : e) x = static_cast<int32_t>(next_random() % 1000);
        const int32_t c = static_cast<int32_t>(next_random() % 199) - 99;
        if (c == 0) continue;
        polynode *t = nullptr;
        poly_set(c, &t);
        for (int l = 3; l >= 0; l--) {
            polynode *power = nullptr;
            make_monomial(&power, e[l], t);
            t = power;
        }
        best_poly_add(*p, t, p);
    }
}

/* Degree d; 30-digit coefficients in the chain form: three words of 31 bits and one of 7. */
static void univariate(int d, polynode **p) {
    poly_set(0, p);
    for (int e = 0; e <= d; e++) {
        number *c = newimag();
        setvalue(static_cast<int32_t>(next_random() % (modularmode ? static_cast<uint64_t>(int32_t{modulus}) : 128)),
                 c);
        for (int k = 0; !modularmode && k < 3; k++) {
            number x{}, radix{};
            set_int64(int64_t{1} << 31, &radix);
            fast_mult(c, &radix, c);
            set_int64(static_cast<int64_t>(next_random()), &x);
            num_add(c, &x, c);
            special_free(&x);
            special_free(&radix);
        }
        polynode *t = nullptr;
        scalar_to_poly(c, &t);
        push_imag(c);
        if (poly_iszero(t)) {
            free_poly(&t);
            continue;
        }
        polynode *power = nullptr;
        make_monomial(&power, e, t);
        best_poly_add(power, *p, p);
    }
}

/* ---- times and checks ---- */

static double processor_seconds() {
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

static uint64_t power_modulo(uint64_t b, uint64_t e, uint64_t m) {
    uint64_t r = 1;
    for (; e; e >>= 1, b = b * b % m)
        if (e & 1) r = r * b % m;
    return r;
}

static uint64_t value_of(const polynode *p, const uint64_t *point) {
    const uint64_t m = check_modulus();
    uint64_t sum = 0;
    for (; p; p = p->next) {
        uint64_t c = 0;
        if (!p->is_number) {
            c = value_of(p->poly, point + 1);
        } else if (modularmode) {
            c = static_cast<uint64_t>(p->num->lint_val);
        } else {
            int64_t v = 0;
            for (const numnode *d = p->num->num_head; d; d = d->next)
                v = (v * digit_radix + d->digit) % static_cast<int64_t>(m);
            c = static_cast<uint64_t>(v < 0 ? v + static_cast<int64_t>(m) : v);
        }
        sum = (sum + c * power_modulo(*point, static_cast<uint64_t>(p->expo), m)) % m;
    }
    return sum;
}

/* What an answer must be; 0: it is only told. */
struct answer {
    int64_t terms = 0;
    uint64_t value = 0;
};

static void check_answer(benchmark::State &state, const polynode *p, answer expected) {
    const int64_t terms = poly_numterms(p, 1);
    const uint64_t value = value_of(p, points);
    state.counters["terms"] = static_cast<double>(terms);
    state.counters["value"] = static_cast<double>(value);
    if (expected.terms && terms != expected.terms) state.SkipWithError("wrong number of terms");
    if (expected.value && value != expected.value) state.SkipWithError("wrong value");
}

/* Times routine(p), without the freeing of the result. */
template <class Routine> static void time_routine(benchmark::State &state, answer expected, Routine routine) {
    poly_handle p;
    for (auto _ : state) {
        state.PauseTiming();
        free_poly(p.slot());
        state.ResumeTiming();
        routine(p.slot());
    }
    check_answer(state, p.get(), expected);
}

/* ---- the figures ---- */

/* A product, power or quotient to be timed. */
struct figure {
    const char *name;
    int32_t modulus; /* 0: over the integers */
    void (*operands)(polynode **f, polynode **g);
    void (*compute)(polynode *f, polynode *g, polynode **p);
    answer expected;
};

static void no_operands(polynode **, polynode **) {}
static void product(polynode *f, polynode *g, polynode **p) { poly_mult(f, g, p, nullptr); }

static void dense4(polynode *, polynode *, polynode **p) {
    poly_handle f, g, one;
    linear_form(4, f.slot());
    compute_power(f.slot(), 20, nullptr);
    poly_set(1, one.slot());
    poly_add(f.get(), one.get(), g.slot());
    poly_mult(f.get(), g.get(), p, nullptr);
}

/* (1 + x + y + 2z^2 + 3t^3 + 5u^5)^10 and (1 + u + t + 2z^2 + 3y^3 + 5x^5)^10 */
static void sparse_powers(polynode **f, polynode **g) {
    poly_set(1, f);
    poly_set(1, g);
    constexpr int32_t exponents[] = {1, 1, 2, 3, 5}, coefficients[] = {1, 1, 2, 3, 5};
    for (int k = 0; k < 5; k++) {
        add_power(f, k + 1, exponents[k], coefficients[k]);
        const int from_end = k == 2 ? 3 : 5 - k; /* u, t, z, y, x */
        add_power(g, from_end, exponents[k], coefficients[k]);
    }
    compute_power(f, 10, nullptr);
    compute_power(g, 10, nullptr);
}
static void sparse5(polynode *, polynode *, polynode **p) {
    poly_handle f, g;
    sparse_powers(f.slot(), g.slot());
    poly_mult(f.get(), g.get(), p, nullptr);
}

/* Dividend and divisor. */
static void dense_multiple(polynode **f, polynode **g) {
    linear_form(4, f);
    linear_form(4, g);
    compute_power(f, 20, nullptr);
    compute_power(g, 10, nullptr);
}
static void sparse_multiple(polynode **f, polynode **g) {
    sparse_powers(g, f);
    poly_mult(*f, *g, f, nullptr);
}
static void quotient(polynode *f, polynode *g, polynode **p) {
    if (!divides_exactly(f, g, p, nullptr, {})) poly_set(0, p);
}

template <int e> static void power(polynode *, polynode *, polynode **p) {
    linear_form(3, p);
    compute_power(p, e, nullptr);
}

static void random_operands(polynode **f, polynode **g) {
    random_terms(2000, f);
    random_terms(2000, g);
}
template <int degree> static void univariate_operands(polynode **f, polynode **g) {
    univariate(degree, f);
    univariate(degree, g);
}

static const figure figures[] = {
    {"dense4", 0, no_operands, dense4, {135751, 987308672}},
    {"sparse5", 0, no_operands, sparse5, {2096600, 451945313}},
    {"quotient4", 0, dense_multiple, quotient, {1001, 1349435226}},
    {"quotient5", 0, sparse_multiple, quotient, {3003, 1979355374}},
    {"power/Z", 0, no_operands, power<180>, {1004731, 1222793497}},
    {"power/46337", 46337, no_operands, power<120>, {302621, 0}},
    {"random4", 0, random_operands, product, {}},
    {"univariate/Z", 0, univariate_operands<5000>, product, {}},
    {"univariate/65521", 65521, univariate_operands<20000>, product, {}},
    {"univariate/2147483629", 2147483629, univariate_operands<20000>, product, {}},
};

static void time_figure(benchmark::State &state, const figure &x) {
    ring_of ring(x.modulus);
    generator = 1;
    poly_handle f, g;
    x.operands(f.slot(), g.slot());
    answer expected = x.expected;
    if (x.compute == product) expected.value = value_of(f.get(), points) * value_of(g.get(), points) % check_modulus();
    time_routine(state, expected, [&](polynode **p) { x.compute(f.get(), g.get(), p); });
}

static double seconds_of(const figure &x, polynode *f, polynode *g, polynode **p) {
    const double start = processor_seconds();
    x.compute(f, g, p);
    return processor_seconds() - start;
}

/* Tells the seconds of the first computation of a fresh process, the median of some more, and the answer. */
static void tell_figure(const figure &x) {
    ring_of ring(x.modulus);
    poly_handle f, g, p;
    x.operands(f.slot(), g.slot());
    std::printf("first %.9f\n", seconds_of(x, f.get(), g.get(), p.slot()));
    std::printf("terms %lld\n", static_cast<long long>(poly_numterms(p.get(), 1)));
    std::printf("value %llu\n", static_cast<unsigned long long>(value_of(p.get(), points)));
    std::vector<double> again;
    while (again.size() < 5) {
        free_poly(p.slot());
        again.push_back(seconds_of(x, f.get(), g.get(), p.slot()));
    }
    std::sort(again.begin(), again.end());
    std::printf("again %.9f\n", again[2]);
}

/* ---- where the routes cross ---- */

using route = void (*)(const polynode *a, const poly_extent &xa, const polynode *b, const poly_extent &xb,
                       polynode **p);

static void by_lists(const polynode *a, const poly_extent &, const polynode *b, const poly_extent &, polynode **p) {
    mult_lists(a, b, p, nullptr);
}

/* Both operands: (1 + variables)^n over the modulus; the argument is n. */
static void route_time(benchmark::State &state, route mult, int32_t m, int variables) {
    ring_of ring(m);
    poly_handle a, b;
    linear_form(variables, a.slot());
    power_by_squares(a.slot(), static_cast<uint32_t>(state.range(0)), nullptr);
    poly_assign(a.get(), b.slot());
    poly_extent xa, xb;
    time_routine(state, {0, 0}, [&](polynode **p) {
        xa = poly_extent();
        xb = poly_extent();
        measure_poly(a.get(), &xa);
        measure_poly(b.get(), &xb);
        mult(a.get(), xa, b.get(), xb, p);
    });
    state.counters["products"] = static_cast<double>(xa.terms) * static_cast<double>(xb.terms);
}

static void register_routes() {
    const struct {
        const char *name;
        route mult;
        int most[4]; /* the highest power in 1, 2, 3 variables */
    } routes[] = {{"lists", by_lists, {0, 128, 12, 6}},
                  {"flat", mult_flat, {0, 2048, 64, 16}},
                  {"transforms", mult_dense, {0, 2048, 64, 16}},
                  {"residues", mult_residues, {0, 32768, 64, 16}}};
    for (const auto &r : routes)
        for (int32_t m : {0, 46337, 2147483629}) {
            if (r.mult == (m ? mult_dense : mult_residues)) continue;
            for (int variables = 1; variables <= 3; variables++) {
                const std::string name = std::string("route/") + r.name + "/" + (m ? std::to_string(m) : "Z") + "/" +
                                         std::to_string(variables);
                benchmark::RegisterBenchmark(name.c_str(), route_time, r.mult, m, variables)
                    ->RangeMultiplier(2)
                    ->Range(2, r.most[variables])
                    ->Unit(benchmark::kMicrosecond);
            }
        }
}

int main(int argc, char **argv) {
    open_value_stashes();
    preload_free_lists();
    set_number_constants();
    make_poly_constants();
    poly_cutoff = 20;
    fast_mult_cut = 10;
    fast_gcd_size = 22008;
    for (const figure &x : figures)
        if (argc == 3 && std::string(argv[1]) == "--figure" && x.name == std::string(argv[2])) {
            tell_figure(x);
            return 0;
        }
    for (const figure &x : figures) benchmark::RegisterBenchmark(x.name, time_figure, x)->Unit(benchmark::kMillisecond);
    register_routes();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
