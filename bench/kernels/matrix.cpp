/* Products of matrices, those of dense ones with a check of one entry of the answer. peer_matrix (bench/peers) tells the
   times of FLINT for the same operands. */
#include "matrix/array_arithmetic.h"
#include "matrix/flat_matrix.h"
#include "numbers/number.h"
#include "numbers/stash.h"
#include "poly/model.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

using namespace tolvek;

struct ring_of {
    explicit ring_of(int32_t m) {
        flotemode = 0;
        lintmode = modularmode = m > 0;
        modulus = m > 0 ? m : -1;
    }
    ring_guard found;
};

/* Entries as the peers have them. */
static int64_t left_entry(int64_t i, int64_t j, int64_t p) {
    return p ? (i * 7919 * j * 104729 + i) % p : 5000000000 + i * 7919 * j * 104729 % 4999999937;
}
static int64_t right_entry(int64_t i, int64_t j, int64_t p) {
    return p ? (i * 15485863 * j + j) % p : 5000000000 + i * 15485863 * j % 4999999937;
}

static void fill(matrix_value &m, int n, int64_t (*entry)(int64_t, int64_t, int64_t), int64_t p) {
    m.make_dense(n, n);
    for (int64_t j = 0; j < n; j++)
        for (int64_t i = 0; i < n; i++) quoly_set_int64(entry(i, j, p), &m.cell(j * n + i));
}

static void require_entry(bool right) {
    if (right) return;
    std::puts("a wrong entry");
    std::exit(1);
}

/* The entry (1, 2) by itself, modulo a word. */
static uint64_t plain_entry(int n, int64_t p, uint64_t m) {
    unsigned __int128 sum = 0;
    for (int k = 0; k < n; k++)
        sum += static_cast<unsigned __int128>(left_entry(1, k, p)) * static_cast<uint64_t>(right_entry(k, 2, p)) % m;
    return static_cast<uint64_t>(sum % m);
}

static void dense_product(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0));
    const auto p = static_cast<int32_t>(state.range(1));
    ring_of ring(p);
    matrix_value a, b, c;
    fill(a, n, left_entry, p);
    fill(b, n, right_entry, p);
    for (auto _ : state) matrix_product(a, b, c);
    const uint32_t m = p ? static_cast<uint32_t>(p) : 2147483629;
    const number *x = c.cell(int64_t{2} * n + 1)->numb;
    require_entry(plain_entry(n, p, m) == (p ? static_cast<uint32_t>(x->lint_val) : chain_modulo(x, m)));
}
BENCHMARK(dense_product)->Args({300, 0})->Args({500, 65521})->Args({500, 2147483629})->Unit(benchmark::kMillisecond);

/* Five entries a row, spread by a fixed rule. */
static void fill_sparse(matrix_value &m, int32_t n, int32_t p) {
    sparse_handle rows(n);
    uint64_t state = 1;
    for (int32_t r = 1; r <= n; r++)
        for (int k = 0; k < 5; k++) {
            state = state * 6364136223846793005u + 1442695040888963407u;
            quoly_handle value;
            quoly_set(static_cast<int32_t>(state >> 33) % (p - 1) + 1, value.slot());
            sparse_adjoin(rows.get(), r, static_cast<int32_t>((state >> 20) % static_cast<uint64_t>(n)) + 1, value);
        }
    m.make_sparse(rows.release(), n, n);
}

static void sparse_square(benchmark::State &state) {
    const auto n = static_cast<int32_t>(state.range(0));
    ring_of ring(65521);
    matrix_value a, c;
    fill_sparse(a, n, 65521);
    for (auto _ : state) matrix_product(a, a, c);
    state.counters["entries"] = static_cast<double>(sparse_count(c.sparse, n));
}
BENCHMARK(sparse_square)->Arg(100000)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv) {
    open_value_stashes();
    preload_free_lists();
    set_number_constants();
    make_poly_constants();
    make_quoly_constants();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
