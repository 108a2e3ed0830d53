/* The dense products of kernels/matrix.cpp by FLINT: peer_matrix tells the processor time of the best of five runs. */
#include <flint/fmpz_mat.h>
#include <flint/nmod_mat.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

static double processor_seconds() {
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

static double best_of_five(const std::function<void()> &compute) {
    double best = 1e9;
    for (int i = 0; i < 5; i++) {
        const double start = processor_seconds();
        compute();
        best = std::min(best, processor_seconds() - start);
    }
    return best;
}

static void integers(slong n) {
    fmpz_mat_t a, b, c;
    for (auto *m : {a, b, c}) fmpz_mat_init(m, n, n);
    for (slong i = 0; i < n; i++)
        for (slong j = 0; j < n; j++) {
            fmpz_set_si(fmpz_mat_entry(a, i, j), 5000000000 + i * 7919 * j * 104729 % 4999999937);
            fmpz_set_si(fmpz_mat_entry(b, i, j), 5000000000 + i * 15485863 * j % 4999999937);
        }
    std::printf("dense_product/%ld/0 %.1f ms\n", n, 1000 * best_of_five([&] { fmpz_mat_mul(c, a, b); }));
    for (auto *m : {a, b, c}) fmpz_mat_clear(m);
}

static void residues(slong n, ulong p) {
    nmod_mat_t a, b, c;
    for (auto *m : {a, b, c}) nmod_mat_init(m, n, n, p);
    for (slong i = 0; i < n; i++)
        for (slong j = 0; j < n; j++) {
            nmod_mat_entry(a, i, j) = static_cast<ulong>(i * 7919 * j * 104729 + i) % p;
            nmod_mat_entry(b, i, j) = static_cast<ulong>(i * 15485863 * j + j) % p;
        }
    std::printf("dense_product/%ld/%lu %.1f ms\n", n, p, 1000 * best_of_five([&] { nmod_mat_mul(c, a, b); }));
    for (auto *m : {a, b, c}) nmod_mat_clear(m);
}

int main() {
    integers(300);
    residues(500, 65521);
    residues(500, 2147483629);
}
