/* Residues in one word beside the division instruction: dependent products, and sums of products.

   Each benchmark runs the loop with the 64-bit % too, compares the two answers, and reports as `of_division` how much
   of its time the loop takes. To be met: 0.7 for products with factors that are at hand, 0.2 for sums of products. */
#include "numbers/modular.h"
#include "numbers/residue_vectors.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

using namespace tolvek;

static int32_t divided_product(int32_t a, int32_t b) {
    uint64_t product = static_cast<uint64_t>(static_cast<uint32_t>(a)) * static_cast<uint32_t>(b);
    return static_cast<int32_t>(product % static_cast<uint32_t>(int32_t{modulus}));
}

constexpr std::size_t factors = 4096;

/* Units, so that products in a ring with divisors of zero do not end at 0, which is quickly divided. */
static std::vector<int32_t> random_units(uint64_t seed) {
    std::vector<int32_t> list;
    while (list.size() < factors) {
        seed = seed * 6364136223846793005u + 1442695040888963407u;
        int32_t x = static_cast<int32_t>((seed >> 33) % static_cast<uint64_t>(modulus)), y;
        if (find_inverse(x, &y)) list.push_back(x);
    }
    return list;
}

/* ---- the loops ---- */

struct by_division {
    static int32_t product(int32_t a, int32_t b) { return divided_product(a, b); }
    static int32_t sum(const std::vector<int32_t> &a, const std::vector<int32_t> &b) {
        uint64_t sum = 0;
        for (std::size_t i = 0; i < a.size(); i++) sum += static_cast<uint32_t>(divided_product(a[i], b[i]));
        return static_cast<int32_t>(sum % static_cast<uint32_t>(int32_t{modulus}));
    }
};

struct by_inverse {
    static int32_t product(int32_t a, int32_t b) { return modmult(a, b); }
    static int32_t sum(const std::vector<int32_t> &a, const std::vector<int32_t> &b) {
        return sum_of_products(a.data(), b.data(), a.size());
    }
};

using list = std::vector<int32_t>;

template <class Way> static int32_t times_list(const list &a, const list &) {
    int32_t x = 1;
    for (int32_t factor : a) x = Way::product(x, factor);
    return x;
}
template <class Way> static int32_t times_constant(const list &a, const list &) {
    int32_t x = 1;
    for (std::size_t i = 0; i < a.size(); i++) x = Way::product(x, a[0]);
    return x;
}
template <class Way> static int32_t squares(const list &a, const list &) {
    int32_t x = a[0];
    for (std::size_t i = 0; i < a.size(); i++) x = Way::product(x, x);
    return x;
}
template <class Way> static int32_t sum(const list &a, const list &b) { return Way::sum(a, b); }

/* ---- timing ---- */

using loop = int32_t (*)(const list &, const list &);

/* The best of several runs. */
static double seconds_of(loop run, const list &a, const list &b) {
    double best = 1e9;
    for (int i = 0; i < 200; i++) {
        auto start = std::chrono::steady_clock::now();
        int32_t outcome = run(a, b);
        benchmark::DoNotOptimize(outcome);
        best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return best;
}

static void compare(benchmark::State &state, loop ours, loop division) {
    modulus = static_cast<int32_t>(state.range(0));
    const list a = random_units(1), b = random_units(2);
    if (ours(a, b) != division(a, b)) {
        state.SkipWithError("the two answers differ");
        return;
    }
    for (auto _ : state) {
        int32_t outcome = ours(a, b);
        benchmark::DoNotOptimize(outcome);
    }
    state.counters["of_division"] = seconds_of(ours, a, b) / seconds_of(division, a, b);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(factors));
}

static void moduli(benchmark::internal::Benchmark *b) {
    for (int64_t m :
         {7, 48871, 65521, 1000003, 2642245, 2642246, 16777259, 268435459, 1073741827, 2147483629, 2147483644})
        b->Arg(m);
}

static void products_with_a_list(benchmark::State &s) { compare(s, times_list<by_inverse>, times_list<by_division>); }
static void products_with_a_constant(benchmark::State &s) {
    compare(s, times_constant<by_inverse>, times_constant<by_division>);
}
static void repeated_squares(benchmark::State &s) { compare(s, squares<by_inverse>, squares<by_division>); }
static void sums_of_products(benchmark::State &s) { compare(s, sum<by_inverse>, sum<by_division>); }

BENCHMARK(products_with_a_list)->Apply(moduli);
BENCHMARK(products_with_a_constant)->Apply(moduli);
BENCHMARK(repeated_squares)->Apply(moduli);
BENCHMARK(sums_of_products)->Apply(moduli);

BENCHMARK_MAIN();
