/* Products of residue arrays: the plain one with delayed reduction, and Karatsuba's (A. Karatsuba and Yu. Ofman, 1962). */
#include "poly/mult_arrays.h"

#include "numbers/modular.h"
#include "numbers/poured.h"
#include "poly/mult_work.h"
#include "poly/residue_arrays.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>
#include <cstdlib>

namespace tolvek {

/* ---- the plain products ---- */

/* The sum of the products of x[i] and y[k - i], reduced. */
static int32_t convolution(const int32_t *x, const int32_t *y_at_k, int from, int to, const residue_sum &m) {
    uint64_t sum = 0;
    if (m.n < 65536) { /* 2^31 products of two such residues stay below 2^63 */
        for (int i = from; i <= to; i++)
            sum += uint64_t{static_cast<uint32_t>(x[i])} * static_cast<uint32_t>(y_at_k[-i]);
    } else {
        for (int i = from; i <= to; i++) m.add(sum, static_cast<uint32_t>(x[i]), static_cast<uint32_t>(y_at_k[-i]));
    }
    return static_cast<int32_t>(m.settle(sum));
}

static bool good_ranges(const int32_t *x, const int32_t *y, int lo_x, int hi_x, int lo_y, int hi_y) {
    if (hi_x < lo_x || hi_y < lo_y) {
        sayf(" ** bad exps onevar %i, %i, %i, %i\n", lo_x, hi_x, lo_y, hi_y);
        tolvek_error("potential 0 in onevar_mult.", 1);
        return false;
    }
    if (x[hi_x] == 0 || y[hi_y] == 0) {
        sayf(" ** bad upper limits, onevar %i, %i, %i, %i, %i, %i\n", lo_x, hi_x, lo_y, hi_y, x[hi_x], y[hi_y]);
        tolvek_error("0 upper value in onevar_mult.", 1);
        return false;
    }
    return true;
}

void onevar_mult(const int32_t *x, const int32_t *y, int32_t *z, int lo_x, int hi_x, int lo_y, int hi_y) {
    if (!good_ranges(x, y, lo_x, hi_x, lo_y, hi_y)) return;
    if (finf) return slower_onevar_mult(x, y, z, lo_x, hi_x, lo_y, hi_y);
    const residue_sum m(static_cast<uint32_t>(modulus));
    for (int k = lo_x + lo_y; k <= hi_x + hi_y; k++)
        z[k] = convolution(x, y + k, maxx(lo_x, k - hi_y), minn(hi_x, k - lo_y), m);
}

void slower_onevar_mult(const int32_t *x, const int32_t *y, int32_t *z, int lo_x, int hi_x, int lo_y, int hi_y) {
    for (int k = lo_x + lo_y; k <= hi_x + hi_y; k++) {
        int32_t sum = 0;
        for (int i = maxx(lo_x, k - hi_y); i <= minn(hi_x, k - lo_y); i++)
            sum = mod_add(sum, modmult(x[i], y[k - i]), modulus);
        z[k] = sum;
    }
}

void simple_onevar_mult(const int32_t *x, const int32_t *y, int32_t *z, int deg_x, int deg_y) {
    std::fill(z, z + deg_x + deg_y + 1, 0);
    for (int i = 0; i <= deg_x; i++)
        for (int k = 0; k <= deg_y; k++) z[i + k] = mod_add(z[i + k], modmult(x[i], y[k]), modulus);
}

/* ---- Karatsuba's product ---- */

/* The index of the highest entry other than 0 of z[lo .. hi], lo - 1 when there is none. */
static int highest_entry(const int32_t *z, int lo, int hi) {
    while (hi >= lo && z[hi] == 0) hi--;
    return hi;
}

/* A recursion: the tops must not be 0. */
static void product_of_parts(const int32_t *x, int lo_x, int hi_x, const int32_t *y, int lo_y, int hi_y, int32_t *z,
                             const char *complaint) {
    if (x[hi_x] == 0 || y[hi_y] == 0) {
        sayf("bad 0: %i, %i, %i, %i\n", lo_x, hi_x, lo_y, hi_y);
        tolvek_error(complaint, 1);
        return;
    }
    fast_array_onevar_mult(x, y, z, lo_x, hi_x, lo_y, hi_y);
}

using work_array = flat_array<int32_t, 256>;

/* x and y begin at index 0 with an entry other than 0 and end at their degrees; d_x <= d_y < 2 d_x. Of the three
   products the one of the low halves goes to z at once. */
static void karatsuba(const int32_t *x, int d_x, const int32_t *y, int d_y, int32_t *z) {
    const int m = d_x / 2;
    const int low_x = highest_entry(x, 0, m - 1), low_y = highest_entry(y, 0, m - 1);
    product_of_parts(x, 0, low_x, y, 0, low_y, z, " bad 0 one in fast_array_onevar_mult.");
    std::fill(z + low_x + low_y + 1, z + d_x + d_y + 1, 0);

    work_array sum_x(static_cast<std::size_t>(d_x + 1)), sum_y(static_cast<std::size_t>(d_y + 1));
    work_array middle(static_cast<std::size_t>(d_x + d_y + 1)), high(static_cast<std::size_t>(d_x + d_y + 1));
    int top_x, top_y, top = -1, ignored;
    onevar_self_add(x, sum_x.data, 0, d_x, m, &top_x);
    onevar_self_add(y, sum_y.data, 0, d_y, m, &top_y);
    if (top_x >= 0 && top_y >= 0) {
        product_of_parts(sum_x.data, 0, top_x, sum_y.data, 0, top_y, middle.data,
                         " bad 0 two in fast_array_onevar_mult.");
        top = top_x + top_y;
    }
    const int top_high = d_x + d_y - 2 * m;
    product_of_parts(x + m, 0, d_x - m, y + m, 0, d_y - m, high.data, " bad 0 three in fast_array_onevar_mult.");
    onevar_sub(middle.data, z, middle.data, 0, top, low_x + low_y, &top);
    onevar_sub(middle.data, high.data, middle.data, 0, top, top_high, &top);
    onevar_add_shift(z, middle.data, z, 0, d_x + d_y, top, m, &ignored);
    onevar_add_shift(z, high.data, z, 0, d_x + d_y, top_high, 2 * m, &ignored);
}

/* The same for d_y of 2 d_x and more: the d_x highest entries of y apart from the others. */
static void split_longer(const int32_t *x, int d_x, const int32_t *y, int d_y, int32_t *z) {
    const int cut = d_y - d_x;
    int low_of_top = cut;
    while (y[low_of_top] == 0) low_of_top++;
    const int top_of_rest = highest_entry(y, 0, cut - 1);
    const std::size_t room = static_cast<std::size_t>(d_x + d_y + 1);
    work_array upper(room), lower(room);
    product_of_parts(x, 0, d_x, y, low_of_top, d_y, upper.data, " bad 0 one in fast_array_onevar_mult.");
    product_of_parts(x, 0, d_x, y, 0, top_of_rest, lower.data, " bad 0 two in fast_array_onevar_mult.");
    int ignored;
    onevar_add(lower.data, upper.data, z, 0, d_x + top_of_rest, low_of_top, d_x + d_y, &ignored);
}

constexpr int least_karatsuba = 2;  /* below it there is no half */
constexpr int most_unbalanced = 15; /* times the shorter one's length: splitting the longer one does not pay beyond */

void fast_array_onevar_mult(const int32_t *x, const int32_t *y, int32_t *z, int lo_x, int hi_x, int lo_y, int hi_y) {
    check_stack();
    const int lo = lo_x + lo_y;
    while (lo_x <= hi_x && x[lo_x] == 0) lo_x++;
    while (lo_y <= hi_y && y[lo_y] == 0) lo_y++;
    if (lo_x > hi_x || lo_y > hi_y) {
        sayf(" ** bad exps fast_array_onevar %i, %i, %i, %i\n", lo_x, hi_x, lo_y, hi_y);
        tolvek_error("bad exps in fast_array_onevar_mult.", 1);
        return;
    }
    std::fill(z + lo, z + lo_x + lo_y, 0);
    safe_point();
    x += lo_x;
    y += lo_y;
    z += lo_x + lo_y;
    int d_x = hi_x - lo_x, d_y = hi_y - lo_y;
    if (d_y < d_x) {
        std::swap(x, y);
        std::swap(d_x, d_y);
    }
    if (d_x < maxx(poly_cutoff, least_karatsuba) || d_y > most_unbalanced * d_x)
        onevar_mult(x, y, z, 0, d_x, 0, d_y);
    else if (d_y < 2 * d_x)
        karatsuba(x, d_x, y, d_y, z);
    else
        split_longer(x, d_x, y, d_y, z);
}

int fast_0_array_onevar_mult(const int32_t *x, const int32_t *y, int32_t *z, int lo_x, int hi_x, int lo_y, int hi_y) {
    if (x[hi_x] == 0 || y[hi_y] == 0) {
        z[0] = 0;
        return 0;
    }
    fast_array_onevar_mult(x, y, z, lo_x, hi_x, lo_y, hi_y);
    return hi_x + hi_y;
}

/* ---- sums ---- */

/* z[i] := x[i] + y[i - shift] or the difference, from lo to the higher end; entries outside their ranges are 0. */
template <bool minus>
static void combine(const int32_t *x, int lo_x, int hi_x, const int32_t *y, int lo_y, int hi_y, int shift, int32_t *z,
                    int *top) {
    const int lo = minn(lo_x, lo_y + shift), hi = maxx(hi_x, hi_y + shift);
    for (int i = lo; i <= hi; i++) {
        const int32_t u = i >= lo_x && i <= hi_x ? x[i] : 0;
        const int32_t v = i >= lo_y + shift && i <= hi_y + shift ? y[i - shift] : 0;
        z[i] = minus ? mod_sub(u, v, modulus) : mod_add(u, v, modulus);
    }
    *top = highest_entry(z, lo, hi);
}

/* A range that ends just below its beginning is empty; anything less is a break. */
static bool good_order(const char *name, int lo, int hi_x, int hi_y) {
    if (hi_x >= lo - 1 && hi_y >= lo - 1) return true;
    sayf("** %s %i, %i, %i, %i\n", name, lo, hi_x, lo, hi_y);
    return false;
}

void onevar_add(const int32_t *x, const int32_t *y, int32_t *z, int lo_x, int hi_x, int lo_y, int hi_y, int *top) {
    if (hi_x < lo_x - 1 || hi_y < lo_y - 1) {
        sayf("** onevar_add %i, %i, %i, %i\n", lo_x, hi_x, lo_y, hi_y);
        tolvek_error(" onevar_add reversed degrees. ", 1);
        return;
    }
    combine<false>(x, lo_x, hi_x, y, lo_y, hi_y, 0, z, top);
}

void onevar_sub(const int32_t *x, const int32_t *y, int32_t *z, int lo, int hi_x, int hi_y, int *top) {
    combine<true>(x, lo, hi_x, y, lo, hi_y, 0, z, top);
}

void onevar_add_shift(const int32_t *x, const int32_t *y, int32_t *z, int lo, int hi_x, int hi_y, int shift, int *top) {
    if (!good_order("onevar_add_shift", lo, hi_x, hi_y)) {
        tolvek_error(" onevar_add_shift reversed degrees.", 1);
        return;
    }
    combine<false>(x, lo, hi_x, y, lo, hi_y, shift, z, top);
}

void onevar_sub_shift(const int32_t *x, const int32_t *y, int32_t *z, int lo, int hi_x, int hi_y, int shift, int *top) {
    if (!good_order("onevar_sub_shift", lo, hi_x, hi_y)) {
        tolvek_error(" onevar_sub_shift reversed degrees.", 1);
        return;
    }
    combine<true>(x, lo, hi_x, y, lo, hi_y, shift, z, top);
}

void onevar_self_add(const int32_t *x, int32_t *t, int lo, int hi, int m, int *top) {
    combine<false>(x, lo, lo + m - 1, x + m, lo, hi - m, 0, t, top);
}

/* ---- polynomials to arrays and back ---- */

/* The residue at the bottom of a term. */
static int32_t residue_of(const polynode *t) {
    while (!t->is_number) t = t->poly;
    return t->num->lint_val;
}

void fill_poly_array(const polynode *p, int32_t *arr) {
    std::fill(arr, arr + p->expo + 1, 0);
    for (; p; p = p->next) arr[p->expo] = residue_of(p);
}

void fill_poly1_array(const polynode *p, int32_t *arr, int *deg) {
    *deg = p->expo;
    fill_poly_array(p, arr);
}

void array_to_poly(const int32_t *arr, int deg, polynode **p) {
    if (deg == 0) return poly_set(arr[0], p);
    poly_handle list;
    polynode **end = list.slot();
    for (int e = deg; e >= 0; e--) {
        if (arr[e] == 0) continue;
        poly_handle term(new_number_term());
        term->num->lint_val = arr[e];
        if (e > 0) {
            polynode *t = nullptr;
            make_monomial(&t, e, term.release());
            *end = t;
        } else {
            *end = term.release();
        }
        end = &(*end)->next;
    }
    if (!list) poly_set(0, list.slot());
    list.release_to(p);
}

/* Skips the zeros at the low end of z's factors: z[0 .. lo_x + lo_y - 1] is 0. */
static int lowest_entry(const int32_t *x) {
    int lo = 0;
    while (x[lo] == 0) lo++;
    return lo;
}

void k_fastest_poly_mult(const polynode *a, const polynode *b, polynode **p) {
    const int deg_a = a->expo, deg_b = b->expo, deg = deg_a + deg_b;
    work_array x(static_cast<std::size_t>(deg_a + 1)), y(static_cast<std::size_t>(deg_b + 1));
    work_array z(static_cast<std::size_t>(deg + 1));
    fill_poly_array(a, x.data);
    fill_poly_array(b, y.data);
    if (x[static_cast<std::size_t>(deg_a)] == 0 || y[static_cast<std::size_t>(deg_b)] == 0)
        sayf("BAD 4: %i, %i, %i, %i\n", deg_a, x[static_cast<std::size_t>(deg_a)], deg_b,
             y[static_cast<std::size_t>(deg_b)]);
    if (deg_a > poly_cutoff && deg_b > poly_cutoff) {
        fast_array_onevar_mult(x.data, y.data, z.data, 0, deg_a, 0, deg_b);
    } else {
        const int lo_a = lowest_entry(x.data), lo_b = lowest_entry(y.data);
        std::fill(z.data, z.data + lo_a + lo_b, 0);
        onevar_mult(x.data, y.data, z.data, lo_a, deg_a, lo_b, deg_b);
    }
    array_to_poly(z.data, deg, p);
}

void fastest_standard(const polynode *a, const polynode *b, int n_a, int n_b, polynode **p) {
    if (4 * int64_t{n_a} > a->expo && 4 * int64_t{n_b} > b->expo)
        k_fastest_poly_mult(a, b, p);
    else
        simplest_standard(a, b, n_a, n_b, p);
}

} // namespace tolvek
