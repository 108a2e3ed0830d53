/* The table `binom` holds the rows n = 3, 6, ..., 150 to the middle. With r = n mod 3 a coefficient of the rows
   between is reached by r steps

     C(m + 1, j + 1) = C(m, j) (m + 1) / (j + 1)

   from C(n - r, k - r), each of which is a whole number. */
#include "numbers/binomials.h"

#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_mult.h"
#include "numbers/int_power.h"
#include "numbers/modular.h"
#include "numbers/number_work.h"
#include "quoly/quoly.h"
#include "top/start_tables.h"

namespace tolvek {

namespace {

constexpr int32_t last_row = 150;
constexpr int32_t last_word_row = 30;     /* of the table's lint_val */
constexpr int32_t reach = last_row + 2;   /* of the table and two steps */
constexpr int32_t last_product_row = 500; /* up to here three steps' factors are one digit: 500^3 < 2^28 */
constexpr int32_t least_refused = 1755;   /* from here on factorials are refused */

/* C(row, k) for a row of the table and 1 <= k <= row / 2. The rows before row 3 m hold 0 + 1 + 3 + 4 + 6 + 7 + ...
   entries: the offset. */
const number *table_entry(int32_t row, int32_t k) {
    const int32_t m = row / 3, even = m % 2 ? m - 1 : m, width = m % 2 ? row - 1 : row - 4;
    return binom(even * width / 4 + k - 1);
}

void refuse(int number_of_error, quolynode **q) {
    error(number_of_error, blank);
    quoly_set(1, q);
}

/* The cases without a table; true if *q is done. k is the smaller one of k and n - k. */
bool at_the_edge(int32_t n, int32_t k, quolynode **q) {
    if (k >= 1 && n > 2) return false;
    quoly_set(n == 2 && k == 1 ? 2 : 1, q);
    return true;
}

/* k is 1, or 2: n or n (n - 1) / 2. */
int64_t trivial(int32_t n, int32_t k) { return k == 1 ? n : int64_t{n} * (n - 1) / 2; }

/* x := x from .. (from + count - 1) / (divisor .. (divisor + count - 1)), which is whole; the products are digits. */
void step(number *x, int32_t from, int32_t divisor, int32_t count) {
    int32_t factor = 1, quotient = 1;
    for (int32_t i = 0; i < count; i++) {
        factor *= from + i;
        quotient *= divisor + i;
    }
    number_handle f, d, rest;
    set_one_digit(factor, &f);
    set_one_digit(quotient, &d);
    fast_mult(x, &f, x);
    divide(x, &d, x, &rest);
}

/* x := C(n, k) from C(row, k - (n - row)). */
void ascend(number *x, int32_t row, int32_t n, int32_t k) {
    int32_t t = row + 1;
    for (; n <= last_product_row && t + 2 <= n; t += 3) step(x, t, k - n + t, 3);
    for (; t <= n; t++) step(x, t, k - n + t, 1);
}

/* x := n! / k! / (n - k)! */
void by_factorials(int32_t n, int32_t k, number *x) {
    number_handle divisor, rest;
    set_one_digit(n, x);
    factorial(x);
    const int32_t below[2] = {k, n - k};
    for (const int32_t m : below) {
        set_one_digit(m, &divisor);
        factorial(&divisor);
        divide(x, &divisor, x, &rest);
    }
}

} // namespace

/* ---- the exact rings ---- */

void rat_binom(int32_t n, int32_t k, quolynode **q) {
    k = minn(k, n - k);
    if (at_the_edge(n, k, q)) return;
    const int32_t row = n <= reach ? n - n % 3 : last_row;
    const bool by_table = n <= last_product_row && k - (n - row) >= 1 && (n <= reach || k - (n - row) > 2);
    if (!by_table && k <= 2) {
        quoly_set_int64(trivial(n, k), q);
        return;
    }
    if (!by_table && n >= least_refused) {
        refuse(87, q);
        return;
    }
    number_handle x;
    if (by_table) {
        spec_num_assign(table_entry(row, k - (n - row)), &x);
        ascend(&x, row, n, k);
    } else {
        by_factorials(n, k, &x);
    }
    scalar_to_quoly(&x, q);
}

void lint_binom(int32_t n, int32_t k, quolynode **q) {
    k = minn(k, n - k);
    if (at_the_edge(n, k, q)) return;
    if (n > last_word_row) {
        refuse(239, q);
        return;
    }
    const int32_t r = n % 3;
    int64_t x = k > r ? table_entry(n - r, k - r)->lint_val : trivial(n, k);
    if (k > r)
        for (int32_t i = 1; i <= r; i++) x = x * (n - r + i) / (k - r + i);
    quoly_set(static_cast<int32_t>(x), q);
}

void flote_binom(int32_t n, int32_t k, quolynode **q) {
    k = minn(k, n - k);
    if (at_the_edge(n, k, q)) return;
    if (n > reach) {
        refuse(377, q);
        return;
    }
    const int32_t r = n % 3;
    long double x = k > r ? table_entry(n - r, k - r)->flote_val : static_cast<long double>(trivial(n, k));
    if (k > r)
        for (int32_t i = 1; i <= r; i++) x = x * (n - r + i) / (k - r + i);
    quoly_set_flote(x, q);
}

/* ---- residues ---- */

/* C(row, k) modulo `modulus` for a row of the table and any k. */
static int32_t residue_entry(int32_t row, int32_t k) {
    k = minn(k, row - k);
    if (k < 1) return k == 0 ? 1 : 0;
    const number *x = table_entry(row, k);
    return row <= last_word_row ? x->lint_val % modulus : modout(x);
}

void mod_binom(int32_t n, int32_t k, quolynode **q) {
    k = minn(k, n - k);
    if (mod_is_prime() && modulus > k) {
        n %= modulus;
        if (n < k) {
            quoly_set(0, q);
            return;
        }
        k = minn(k, n - k);
    }
    if (at_the_edge(n, k, q)) {
        (*q)->numb->lint_val %= modulus;
        return;
    }
    const int32_t r = n % 3, row = n - r;
    if (n > last_row) {
        refuse(87, q);
        return;
    }
    if (r && k <= r) {
        quoly_set(static_cast<int32_t>(trivial(n, k) % modulus), q);
        return;
    }
    int64_t sum = residue_entry(row, k);
    if (r == 1) sum += residue_entry(row, k - 1);
    if (r == 2) sum += 2 * int64_t{residue_entry(row, k - 1)} + residue_entry(row, k - 2);
    quoly_set(static_cast<int32_t>(sum % modulus), q);
}

} // namespace tolvek
