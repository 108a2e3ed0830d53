/* Images modulo a prime: making one and undoing it beside one walk over the polynomial that only sums the residues. The
   target is at most three times that walk, without any allocation where nothing vanishes; each run checks the latter, and
   that the residues of the image have the sum of the walk.

   100,000 terms with coefficients of one digit, in one variable and in four. */
#include "quoly/ring_image.h"
#include "numbers/modular.h"
#include "numbers/stash.h"
#include "poly/add.h"

#include <benchmark/benchmark.h>

using namespace tolvek;

constexpr int terms = 100000;

static uint64_t generator = 1;
static uint64_t next_random() { return generator = generator * 16807 % 2147483647; }

/* Coefficients 1 .. 2^28 - 1 but those that vanish modulo p, of either sign. */
static int32_t next_coefficient(int32_t p) {
    for (;;) {
        const int32_t c = static_cast<int32_t>(next_random() % 0xfffffff) + 1;
        if (c % p != 0) return next_random() % 2 ? c : -c;
    }
}

/* A list of n terms whose coefficients are lists of a tenth of that in the next variable, down to numbers. */
static polynode *list_of(int levels, int n, int32_t p) {
    polynode *list = nullptr;
    const int here = levels == 1 ? n : 10;
    for (int e = 1; e <= here; e++) {
        polynode *t = newpoly();
        t->expo = e;
        t->is_number = 0;
        t->next = list;
        t->poly = nullptr;
        if (levels == 1)
            poly_set(next_coefficient(p), &t->poly);
        else
            t->poly = list_of(levels - 1, n / 10, p);
        list = t;
    }
    return list;
}

static uint64_t sum_of_residues(const polynode *t, const word_divisor &n) {
    uint64_t sum = 0;
    for (; t; t = t->next) {
        if (!t->is_number) {
            sum += sum_of_residues(t->poly, n);
            continue;
        }
        const int32_t d = t->num->num_tail->digit;
        const uint32_t r = n.remainder(static_cast<uint32_t>(d < 0 ? -d : d));
        sum += d < 0 && r ? n.n - r : r;
    }
    return sum;
}

static uint64_t sum_of_image(const polynode *t) {
    uint64_t sum = 0;
    for (; t; t = t->next) sum += t->is_number ? static_cast<uint64_t>(t->num->lint_val) : sum_of_image(t->poly);
    return sum;
}

static void start() {
    if (!numstash) open_value_stashes();
    flotemode = lintmode = modularmode = 0;
}

static void walk(benchmark::State &state) {
    start();
    const int32_t p = static_cast<int32_t>(state.range(1));
    poly_handle f(list_of(static_cast<int>(state.range(0)), terms, p));
    const word_divisor n(static_cast<uint32_t>(p));
    for (auto _ : state) benchmark::DoNotOptimize(sum_of_residues(f.get(), n));
}
BENCHMARK(walk)
    ->ArgNames({"levels", "p"})
    ->ArgsProduct({{1, 4}, {97, 65521, 2147483629}})
    ->Unit(benchmark::kMicrosecond);

static void image_and_restore(benchmark::State &state) {
    start();
    const int32_t p = static_cast<int32_t>(state.range(1));
    poly_handle f(list_of(static_cast<int>(state.range(0)), terms, p));
    image_stretch work(p);
    const records_in_use before = count_records_in_use();
    for (auto _ : state) {
        poly_change_to_mod(f.slot(), false);
        restore_from_mod(&masterfix);
    }
    if (!(count_records_in_use() == before)) state.SkipWithError("records were asked for");
    if (sum_of_image(f.get()) != sum_of_residues(f.get(), word_divisor(static_cast<uint32_t>(p))))
        state.SkipWithError("wrong residues");
}
BENCHMARK(image_and_restore)
    ->ArgNames({"levels", "p"})
    ->ArgsProduct({{1, 4}, {97, 65521, 2147483629}})
    ->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
