/* Long integers and rationals beside GMP, and the cut-offs between the methods.

   Each `beside` benchmark checks the answer against GMP's, and reports as of_gmp how many times GMP's time is taken;
   `allowed` is the figure to be met. Without GMP they are left out. The `method` benchmarks time one operation by one
   method each at lengths around a cut-off:

     flat_mult_method      flat_karatsuba_cut, flat_transform_cut and the two for squares (limbs)
     flat_divide_method    flat_divide_cut (limbs)
     flat_radix_method     flat_radix_cut (limbs)
     chain_method          flat_mult_cut, flat_quotient_cut, flat_root_cut, flat_decimal_cut (digits of 28 bits), and
                           flat_figures_cut (figures) */
#include "numbers/flat_chains.h"
#include "numbers/flat_divide.h"
#include "numbers/flat_mult.h"
#include "numbers/flat_radix.h"
#include "numbers/flat_transform.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_gcd.h"
#include "numbers/int_mult.h"
#include "numbers/int_power.h"
#include "numbers/number_decimal.h"
#include "numbers/number_work.h"
#include "numbers/rationals.h"
#include "numbers/stash.h"
#include "quoly/quoly.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <time.h>
#include <vector>

using namespace tolvek;

namespace {

std::mt19937_64 rnd(20240229);

std::vector<limb> rand_limbs(size_t n) {
    std::vector<limb> a(n);
    for (limb &w : a) w = rnd();
    a.back() |= limb{1} << 63;
    return a;
}

/* A positive chain of about so many decimal digits. */
void rand_of_decimals(long decimals, number *x) {
    const int len = static_cast<int>(static_cast<double>(decimals) * 3.3219281 / digit_bits) + 1;
    growing_chain chain;
    for (int i = 0; i < len; i++) chain.append(1 + static_cast<int32_t>(rnd() % (digit_radix - 1)));
    chain.give_to(x);
}

void rand_of_length(int len, number *x) {
    growing_chain chain;
    for (int i = 0; i < len; i++) chain.append(1 + static_cast<int32_t>(rnd() % (digit_radix - 1)));
    chain.give_to(x);
}

} // namespace

/* ---- beside GMP ---- */

#ifdef TOLVEK_BESIDE_GMP
#include <gmp.h>

namespace {

struct gmp_number {
    mpz_t value;
    gmp_number() { mpz_init(value); }
    explicit gmp_number(const number *x) : gmp_number() {
        std::vector<uint32_t> digits;
        for (const numnode *d = x->num_head; d; d = d->next)
            digits.push_back(static_cast<uint32_t>(std::abs(d->digit)));
        mpz_import(value, digits.size(), 1, sizeof(uint32_t), 0, 32 - digit_bits, digits.data());
        if (x->num_head->digit < 0) mpz_neg(value, value);
    }
    ~gmp_number() { mpz_clear(value); }
    gmp_number(const gmp_number &) = delete;
    gmp_number &operator=(const gmp_number &) = delete;
    operator mpz_ptr() { return value; }
};

bool same(const number *x, mpz_srcptr y) { return mpz_cmp(gmp_number(x).value, y) == 0; }

/* Of this thread, so that other programs count little. */
double seconds_used() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

/* Seconds a call: the best of several stretches of at least 10 ms. */
template <class F> double best_time(F f) {
    double best = 1e9;
    for (int round = 0; round < 5; round++) {
        for (long count = 1;; count *= 2) {
            const double start = seconds_used();
            for (long i = 0; i < count; i++) f();
            const double taken = seconds_used() - start;
            if (taken < 0.01) continue;
            best = std::min(best, taken / static_cast<double>(count));
            break;
        }
    }
    return best;
}

template <class F, class G> void beside(benchmark::State &state, F ours, G theirs, double allowed) {
    for (auto _ : state) ours();
    state.counters["of_gmp"] = best_time(ours) / best_time(theirs);
    if (allowed > 0) state.counters["allowed"] = allowed;
}

void expect(benchmark::State &state, bool right) {
    if (!right) state.SkipWithError("not GMP's answer");
}

double allowed_product(int64_t decimals) { return decimals <= 100 ? 15 : decimals > 100000 ? 8 : 6; }

void beside_product(benchmark::State &state) {
    number_handle a, b, c;
    rand_of_decimals(state.range(0), &a);
    rand_of_decimals(state.range(0), &b);
    gmp_number x(&a), y(&b), z;
    beside(
        state, [&] { fast_mult(&a, &b, &c); }, [&] { mpz_mul(z, x, y); }, allowed_product(state.range(0)));
    expect(state, same(&c, z));
}
BENCHMARK(beside_product)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);

void beside_square(benchmark::State &state) {
    number_handle a, c;
    rand_of_decimals(state.range(0), &a);
    gmp_number x(&a), z;
    beside(
        state, [&] { fast_mult(&a, &a, &c); }, [&] { mpz_mul(z, x, x); }, allowed_product(state.range(0)));
    expect(state, same(&c, z));
}
BENCHMARK(beside_square)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);

void beside_quotient(benchmark::State &state) {
    number_handle a, b, q, r;
    rand_of_decimals(2 * state.range(0), &a);
    rand_of_decimals(state.range(0), &b);
    gmp_number x(&a), y(&b), z, w;
    beside(
        state, [&] { pos_divide(&a, &b, &q, &r); }, [&] { mpz_tdiv_qr(z, w, x, y); }, 6);
    expect(state, same(&q, z) && same(&r, w));
}
BENCHMARK(beside_quotient)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);

void beside_gcd(benchmark::State &state) {
    number_handle a, b, g;
    rand_of_decimals(state.range(0), &a);
    rand_of_decimals(state.range(0), &b);
    gmp_number x(&a), y(&b), z;
    beside(
        state, [&] { binary_gcd(&a, &b, &g); }, [&] { mpz_gcd(z, x, y); }, 6);
    expect(state, same(&g, z));
}
BENCHMARK(beside_gcd)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000);

void beside_root(benchmark::State &state) {
    number_handle a, s;
    rand_of_decimals(state.range(0), &a);
    gmp_number x(&a), z;
    beside(
        state, [&] { int_sqrt(&a, &s, 1); }, [&] { mpz_sqrt(z, x); }, 0);
    expect(state, same(&s, z));
}
BENCHMARK(beside_root)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000);

std::string *written;
ssize_t keep_text(int, const char *from, size_t count) {
    written->append(from, count);
    return static_cast<ssize_t>(count);
}

/* The display of a chain on one line. */
void print(const number *x, std::string *text) {
    text->clear();
    written = text;
    const io_hooks found = io;
    io.write_some = keep_text;
    dispcutoff = INT32_MAX;
    text_out out(-1);
    int column = 0;
    showint(&out, x, 1, 0, 0, 0, 0, 1, &column);
    flush(&out);
    io = found;
}

void beside_printing(benchmark::State &state) {
    number_handle a;
    rand_of_decimals(state.range(0), &a);
    gmp_number x(&a);
    std::string text;
    std::vector<char> figures(mpz_sizeinbase(x, 10) + 2);
    beside(
        state, [&] { print(&a, &text); }, [&] { mpz_get_str(figures.data(), 10, x); }, 6);
    text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
    expect(state, text == figures.data());
}
BENCHMARK(beside_printing)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);

void beside_reading(benchmark::State &state) {
    number_handle a;
    std::string figures(static_cast<size_t>(state.range(0)), '7');
    for (char &c : figures) c = static_cast<char>('1' + rnd() % 9);
    gmp_number z;
    beside(
        state, [&] { number_from_figures(figures.data(), figures.size(), &a); },
        [&] { mpz_set_str(z, figures.c_str(), 10); }, 0);
    expect(state, same(&a, z));
}
BENCHMARK(beside_reading)->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);

/* x := base^e */
void power_of(int32_t base, uint32_t e, number *x) {
    set_one_digit(base, x);
    number_power(x, e);
}

/* The sum of (a + i) (b + i), i = 1 .. count, for a = 3^e, b = 7^f. */
void beside_sum_of_products(benchmark::State &state) {
    const uint32_t e = static_cast<uint32_t>(state.range(0)), f = static_cast<uint32_t>(state.range(1));
    const long count = state.range(2);
    number_handle a, b, sum;
    gmp_number x, y, z, total;
    const auto ours = [&] {
        power_of(3, e, &a);
        power_of(7, f, &b);
        set_one_digit(0, &sum);
        number_handle p;
        for (long i = 0; i < count; i++) {
            fastsum(&a, &number_1);
            fastsum(&b, &number_1);
            fast_mult(&a, &b, &p);
            fastsum(&sum, &p);
        }
    };
    const auto theirs = [&] {
        mpz_ui_pow_ui(x, 3, e);
        mpz_ui_pow_ui(y, 7, f);
        mpz_set_ui(total, 0);
        for (long i = 0; i < count; i++) {
            mpz_add_ui(x, x, 1);
            mpz_add_ui(y, y, 1);
            mpz_mul(z, x, y);
            mpz_add(total, total, z);
        }
    };
    beside(state, ours, theirs, 6);
    expect(state, same(&sum, total));
}
BENCHMARK(beside_sum_of_products)
    ->Args({20960, 11833, 2000})
    ->Args({2095903, 1183294, 20})
    ->Unit(benchmark::kMillisecond);

/* 1 + 1 / 2^p + ... + 1 / count^p from the left. */
void beside_sum_of_fractions(benchmark::State &state) {
    const int power = static_cast<int>(state.range(0));
    const int32_t count = static_cast<int32_t>(state.range(1));
    quoly_handle sum;
    mpq_t total, next;
    mpq_inits(total, next, nullptr);
    const auto term = [power](int32_t k) { return power == 2 ? k * k : k; };
    const auto ours = [&] {
        quoly_set(0, sum.slot());
        quoly_handle k, one_over_k;
        for (int32_t i = 1; i <= count; i++) {
            quoly_set(term(i), k.slot());
            quoly_quot(quol_num_1, k.get(), one_over_k.slot(), 0);
            quoly_add(sum.get(), one_over_k.get(), sum.slot());
        }
    };
    const auto theirs = [&] {
        mpq_set_ui(total, 0, 1);
        for (int32_t i = 1; i <= count; i++) {
            mpq_set_ui(next, 1, static_cast<unsigned long>(term(i)));
            mpq_add(total, total, next);
        }
    };
    beside(state, ours, theirs, 6);
    expect(state, same(sum->num->num, mpq_numref(total)) && same(sum->den->num, mpq_denref(total)));
    mpq_clears(total, next, nullptr);
}
BENCHMARK(beside_sum_of_fractions)->Args({1, 20000})->Args({2, 10000})->Unit(benchmark::kMillisecond);

/* count! by one factor after another. */
void beside_running_product(benchmark::State &state) {
    const int32_t count = static_cast<int32_t>(state.range(0));
    number_handle product, factor;
    gmp_number z;
    const auto ours = [&] {
        set_one_digit(1, &product);
        for (int32_t i = 2; i <= count; i++) {
            set_one_digit(i, &factor);
            fast_mult(&product, &factor, &product);
        }
    };
    const auto theirs = [&] {
        mpz_set_ui(z, 1);
        for (int32_t i = 2; i <= count; i++) mpz_mul_ui(z, z, static_cast<unsigned long>(i));
    };
    beside(state, ours, theirs, 6);
    expect(state, same(&product, z));
}
BENCHMARK(beside_running_product)->Arg(25206)->Unit(benchmark::kMillisecond);

} // namespace
#endif

/* ---- methods beside each other ---- */

namespace {

enum mult_method { school, halves, transform };

void flat_mult_method(benchmark::State &state, mult_method method, bool square) {
    const size_t n = static_cast<size_t>(state.range(0));
    const std::vector<limb> a = rand_limbs(n), b = rand_limbs(n);
    const std::vector<limb> &other = square ? a : b;
    std::vector<limb> c(2 * n), scratch(flat_karatsuba_room(n));
    const size_t found = flat_transform_cut, found_square = flat_square_transform_cut;
    flat_transform_cut = flat_square_transform_cut = SIZE_MAX;
    for (auto _ : state) {
        if (method == transform)
            flat_mult_transform(c.data(), a.data(), n, other.data(), n);
        else if (method == halves && square)
            flat_square_karatsuba(c.data(), a.data(), n, scratch.data());
        else if (method == halves)
            flat_mult_karatsuba(c.data(), a.data(), b.data(), n, scratch.data());
        else if (square)
            flat_square_school(c.data(), a.data(), n);
        else
            flat_mult_school(c.data(), a.data(), n, b.data(), n);
    }
    flat_transform_cut = found;
    flat_square_transform_cut = found_square;
}
void short_lengths(benchmark::internal::Benchmark *b) {
    for (int n = 12; n <= 48; n += 4) b->Arg(n);
}
void long_lengths(benchmark::internal::Benchmark *b) {
    for (int n = 500; n <= 1500; n += 100) b->Arg(n);
}
BENCHMARK_CAPTURE(flat_mult_method, product_school, school, false)->Apply(short_lengths);
BENCHMARK_CAPTURE(flat_mult_method, product_halves, halves, false)->Apply(short_lengths)->Apply(long_lengths);
BENCHMARK_CAPTURE(flat_mult_method, product_transform, transform, false)->Apply(long_lengths);
BENCHMARK_CAPTURE(flat_mult_method, square_school, school, true)->Apply(short_lengths);
BENCHMARK_CAPTURE(flat_mult_method, square_halves, halves, true)->Apply(short_lengths)->Apply(long_lengths);
BENCHMARK_CAPTURE(flat_mult_method, square_transform, transform, true)->Apply(long_lengths);

void flat_divide_method(benchmark::State &state) {
    const size_t n = static_cast<size_t>(state.range(0)), found = flat_divide_cut;
    flat_divide_cut = static_cast<size_t>(state.range(1));
    const std::vector<limb> a = rand_limbs(2 * n), b = rand_limbs(n);
    std::vector<limb> q(n + 1), r(n);
    for (auto _ : state) flat_divide(q.data(), r.data(), a.data(), 2 * n, b.data(), n);
    flat_divide_cut = found;
}
BENCHMARK(flat_divide_method)->ArgsProduct({{52, 100, 200, 520, 5191}, {30, 40, 50, 60, 80}});

void flat_radix_method(benchmark::State &state, bool reading) {
    const size_t n = static_cast<size_t>(state.range(0)), found = flat_radix_cut;
    flat_radix_cut = static_cast<size_t>(state.range(1));
    const std::vector<limb> a = rand_limbs(n);
    const std::string figures(n * 19, '7');
    std::vector<uint32_t> groups(flat_groups_room(n));
    std::vector<limb> value(flat_figures_room(figures.size()));
    for (auto _ : state) {
        if (reading)
            flat_from_figures(value.data(), figures.data(), figures.size());
        else
            flat_to_groups(groups.data(), a.data(), n);
    }
    flat_radix_cut = found;
}
BENCHMARK_CAPTURE(flat_radix_method, printing, false)->ArgsProduct({{52, 520, 5191}, {10, 20, 30, 40, 60}});
BENCHMARK_CAPTURE(flat_radix_method, reading, true)->ArgsProduct({{52, 520, 5191}, {10, 20, 30, 40, 60}});

enum chain_operation { product, quotient, root, decimal, reading };

/* The chain's own method (cut-offs out of reach) or the flat one. */
void chain_method(benchmark::State &state, chain_operation operation, bool flat) {
    const int len = static_cast<int>(state.range(0)), cut = flat ? 2 : INT32_MAX;
    const int found[4] = {flat_mult_cut, flat_quotient_cut, flat_root_cut, flat_decimal_cut};
    const size_t found_figures = flat_figures_cut;
    flat_mult_cut = flat_quotient_cut = flat_root_cut = flat_decimal_cut = cut;
    flat_figures_cut = flat ? 1 : SIZE_MAX;
    const std::string figures(static_cast<size_t>(len), '7');
    number_handle a, b, twice, q, r;
    rand_of_length(len, &a);
    rand_of_length(len, &b);
    rand_of_length(2 * len, &twice);
    for (auto _ : state) {
        switch (operation) {
        case product: fast_mult(&a, &b, &q); break;
        case quotient: pos_divide(&twice, &b, &q, &r); break;
        case root: int_sqrt(&a, &q, 1); break;
        case decimal:
            if (flat)
                flat_chain_base_10(a.num_head, len, &q);
            else
                make_base_10(&a, &q);
            break;
        case reading: number_from_figures(figures.data(), figures.size(), &q);
        }
    }
    flat_mult_cut = found[0];
    flat_quotient_cut = found[1];
    flat_root_cut = found[2];
    flat_decimal_cut = found[3];
    flat_figures_cut = found_figures;
}
void digit_lengths(benchmark::internal::Benchmark *b) {
    for (int n : {2, 3, 4, 5, 6, 8, 10, 12, 16, 24}) b->Arg(n);
}
BENCHMARK_CAPTURE(chain_method, product_chain, product, false)->Apply(digit_lengths);
BENCHMARK_CAPTURE(chain_method, product_flat, product, true)->Apply(digit_lengths);
BENCHMARK_CAPTURE(chain_method, quotient_chain, quotient, false)->Apply(digit_lengths);
BENCHMARK_CAPTURE(chain_method, quotient_flat, quotient, true)->Apply(digit_lengths);
BENCHMARK_CAPTURE(chain_method, root_chain, root, false)->Apply(digit_lengths);
BENCHMARK_CAPTURE(chain_method, root_flat, root, true)->Apply(digit_lengths);
BENCHMARK_CAPTURE(chain_method, decimal_chain, decimal, false)->Apply(digit_lengths);
BENCHMARK_CAPTURE(chain_method, decimal_flat, decimal, true)->Apply(digit_lengths);
BENCHMARK_CAPTURE(chain_method, reading_chain, reading, false)->Apply(digit_lengths)->Arg(32)->Arg(64);
BENCHMARK_CAPTURE(chain_method, reading_flat, reading, true)->Apply(digit_lengths)->Arg(32)->Arg(64);

} // namespace

int main(int argc, char **argv) {
    open_value_stashes();
    flotemode = lintmode = modularmode = 0;
    set_number_constants();
    make_quoly_constants();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
