/* Polynomials in one variable modulo word primes: division, common divisors, and the sizes at which the way changes.

   To be met: quotient and remainder of degree 20,000 by 10,000, and common divisors of
   degrees 2,000 and 20,000 with a tenth in common, in at most 1.5 times the time of PARI/GP (divrem, gcd of Mod
   polynomials) in the same hour on the same machine; ten times the degree costs at most 50 times as much. */
#include "poly/flat_uni.h"
#include "top/guards.h"

#include <benchmark/benchmark.h>

#include <random>

using namespace tolvek;

static const uint32_t primes[] = {65521, 2147483629};

static void random_poly(const uni_field &f, int64_t d, uni_poly *a) {
    static std::mt19937_64 rnd(1);
    a->clear();
    for (int64_t i = 0; i <= d; i++) a->push(static_cast<uint32_t>(rnd() % (f.p - 1)) + 1);
}

/* With a common factor of a tenth of the degree. */
static void related(const uni_field &f, int64_t d, uni_poly *a, uni_poly *b) {
    uni_poly g;
    random_poly(f, d / 10, &g);
    random_poly(f, d - d / 10, a);
    random_poly(f, d - d / 10, b);
    uni_mult(f, *a, g, a);
    uni_mult(f, *b, g, b);
}

static void division(benchmark::State &state) {
    const uni_field f(primes[state.range(0)]);
    uni_poly a, b, q, r, product;
    random_poly(f, 2 * state.range(1), &a);
    random_poly(f, state.range(1), &b);
    for (auto _ : state) uni_divide(f, a, b, &q, &r);
    uni_mult(f, q, b, &product);
    uni_sum(f, product, r, &product);
    if (!uni_equal(product, a)) state.SkipWithError("q * b + r is not a");
}
BENCHMARK(division)->ArgsProduct({{0, 1}, {1000, 10000}})->Unit(benchmark::kMillisecond);

static void common_divisor(benchmark::State &state) {
    const uni_field f(primes[state.range(0)]);
    uni_poly a, b, g;
    related(f, state.range(1), &a, &b);
    for (auto _ : state) uni_gcd(f, a, b, &g);
    if (uni_degree(g) < state.range(1) / 10 || !uni_divides(f, a, g, nullptr) || !uni_divides(f, b, g, nullptr))
        state.SkipWithError("not the common divisor");
}
BENCHMARK(common_divisor)->ArgsProduct({{0, 1}, {2000, 20000}})->Unit(benchmark::kMillisecond);

/* ---- both ways at sizes around the change: the last argument is 0 for the plain way, 1 for the long one ---- */

constexpr uint32_t never = 1u << 30;

static void route_mult(benchmark::State &state) {
    const uni_field f(primes[state.range(0)]);
    const kept_value<uni_limits> kept(uni_limit);
    uni_limit.mult = state.range(2) ? 2 : never;
    uni_poly a, b, c;
    random_poly(f, state.range(1), &a);
    random_poly(f, state.range(1), &b);
    for (auto _ : state) uni_mult(f, a, b, &c);
}
BENCHMARK(route_mult)->ArgsProduct({{0, 1}, {60, 100, 120, 160, 240}, {0, 1}});

static void route_divide(benchmark::State &state) {
    const uni_field f(primes[state.range(0)]);
    const kept_value<uni_limits> kept(uni_limit);
    uni_limit.divide = state.range(2) ? 2 : never;
    uni_poly a, b, q;
    random_poly(f, 2 * state.range(1), &a);
    random_poly(f, state.range(1), &b);
    for (auto _ : state) uni_divide(f, a, b, &q, nullptr);
}
BENCHMARK(route_divide)->ArgsProduct({{0, 1}, {200, 300, 400, 600}, {0, 1}});

static void route_half_gcd(benchmark::State &state) {
    const uni_field f(primes[state.range(0)]);
    const kept_value<uni_limits> kept(uni_limit);
    uni_limit.half_gcd = state.range(2) ? static_cast<uint32_t>(state.range(1)) : never;
    uni_poly a, b;
    random_poly(f, state.range(1), &a);
    random_poly(f, state.range(1) - 1, &b);
    for (auto _ : state) {
        uni_poly x, y;
        hg_matrix m;
        uni_copy(a, &x);
        uni_copy(b, &y);
        uni_half_gcd(f, &x, &y, &m);
    }
}
BENCHMARK(route_half_gcd)->ArgsProduct({{0, 1}, {300, 400, 600, 800, 1200}, {0, 1}});

static void route_gcd(benchmark::State &state) {
    const uni_field f(primes[state.range(0)]);
    const kept_value<uni_limits> kept(uni_limit);
    uni_limit.gcd = state.range(2) ? static_cast<uint32_t>(state.range(1)) : never;
    uni_poly a, b, g;
    related(f, state.range(1), &a, &b);
    for (auto _ : state) uni_gcd(f, a, b, &g);
}
BENCHMARK(route_gcd)->ArgsProduct({{0, 1}, {800, 1200, 1600, 2000, 3000, 4000}, {0, 1}});

BENCHMARK_MAIN();
