/* Rows of residues: the inner loops of products, divisions and Euclid's steps by the plain methods. Two products are
   added before one reduction. */
#include "numbers/modular.h"
#include "poly/flat_uni_work.h"
#include "top/interrupts.h"

#include <algorithm>

namespace tolvek {

namespace {

/* Products between two safe points: below a millisecond. */
constexpr std::size_t stretch = 1 << 20;

/* Counts work, and passes a safe point for every stretch of it. */
class work_counter {
  public:
    void add(std::size_t products) {
        done += products;
        if (done < stretch) return;
        done = 0;
        safe_point();
    }

  private:
    std::size_t done = 0;
};

/* c 2^32 modulo p: a factor for uni_reduce. */
inline uint32_t prepared(const uni_field &f, uint32_t c) { return f.product(c, f.word); }

/* ---- an odd modulus, and any ---- */

TOLVEK_WIDE_VECTORS
void add_row_odd(uint32_t *__restrict x, const uint32_t *__restrict y, std::size_t n, uint32_t c, uint32_t p,
                 uint32_t p_inverse) {
    for (std::size_t i = 0; i < n; i++) x[i] = uni_cut(x[i] + uni_reduce(uint64_t{c} * y[i], p, p_inverse), p);
}

/* Each product is below p 2^31, so the sum of two is below p 2^32. */
TOLVEK_WIDE_VECTORS
void add_two_rows_odd(uint32_t *__restrict x, const uint32_t *__restrict y, std::size_t n, uint32_t low, uint32_t high,
                      uint32_t p, uint32_t p_inverse) {
    for (std::size_t i = 0; i < n; i++) {
        const uint64_t t = uint64_t{low} * y[i + 1] + uint64_t{high} * y[i];
        x[i] = uni_cut(x[i] + uni_reduce(t, p, p_inverse), p);
    }
}

TOLVEK_WIDE_VECTORS
void scale_row_odd(uint32_t *x, std::size_t n, uint32_t c, uint32_t p, uint32_t p_inverse) {
    for (std::size_t i = 0; i < n; i++) x[i] = uni_reduce(uint64_t{c} * x[i], p, p_inverse);
}

TOLVEK_WIDE_VECTORS
void add_to_prime(uint32_t *__restrict x, const uint32_t *__restrict y, std::size_t n, uint32_t p) {
    for (std::size_t i = 0; i < n; i++) x[i] = uni_cut(x[i] + y[i], p);
}

TOLVEK_WIDE_VECTORS
void take_from_prime(uint32_t *__restrict x, const uint32_t *__restrict y, std::size_t n, uint32_t p) {
    for (std::size_t i = 0; i < n; i++) x[i] = uni_cut(x[i] + (p - y[i]), p);
}

} // namespace

void uni_add_row(const uni_field &f, uint32_t *x, const uint32_t *y, std::size_t n, uint32_t c) {
    if (c == 0) return;
    if (f.odd_prime()) return add_row_odd(x, y, n, prepared(f, c), f.p, f.p_inverse);
    for (std::size_t i = 0; i < n; i++) x[i] = f.sum(x[i], f.product(c, y[i]));
}

void uni_add_two_rows(const uni_field &f, uint32_t *x, const uint32_t *y, std::size_t n, uint32_t low, uint32_t high) {
    x[0] = f.sum(x[0], f.product(low, y[0]));
    x[n] = f.sum(x[n], f.product(high, y[n - 1]));
    if (f.odd_prime()) {
        add_two_rows_odd(x + 1, y, n - 1, prepared(f, low), prepared(f, high), f.p, f.p_inverse);
        return;
    }
    for (std::size_t i = 1; i < n; i++) x[i] = f.sum(x[i], f.sum(f.product(low, y[i]), f.product(high, y[i - 1])));
}

void uni_scale_row(const uni_field &f, uint32_t *x, std::size_t n, uint32_t c) {
    if (f.odd_prime()) return scale_row_odd(x, n, prepared(f, c), f.p, f.p_inverse);
    for (std::size_t i = 0; i < n; i++) x[i] = f.product(c, x[i]);
}

void uni_add_to(const uni_field &f, uint32_t *x, const uint32_t *y, std::size_t n) {
    if (!f.table) return add_to_prime(x, y, n, f.p);
    for (std::size_t i = 0; i < n; i++) x[i] ^= y[i];
}

void uni_take_from(const uni_field &f, uint32_t *x, const uint32_t *y, std::size_t n) {
    if (!f.table) return take_from_prime(x, y, n, f.p);
    for (std::size_t i = 0; i < n; i++) x[i] ^= y[i];
}

void uni_add_product(const uni_field &f, uint32_t *z, const uint32_t *x, std::size_t nx, const uint32_t *y,
                     std::size_t ny, bool minus) {
    if (nx > ny) {
        std::swap(x, y);
        std::swap(nx, ny);
    }
    work_counter work;
    std::size_t i = 0;
    for (; i + 1 < nx; i += 2) {
        uni_add_two_rows(f, z + i, y, ny, minus ? f.negative(x[i]) : x[i], minus ? f.negative(x[i + 1]) : x[i + 1]);
        work.add(2 * ny);
    }
    if (i < nx) uni_add_row(f, z + i, y, ny, minus ? f.negative(x[i]) : x[i]);
}

/* Two entries of the quotient at a time. */
void uni_divide_rows(const uni_field &f, uint32_t *x, std::size_t nx, const uint32_t *y, std::size_t ny,
                     uint32_t inverse, uint32_t *q) {
    const uint32_t factor = f.negative(inverse); /* minus the quotient is what is added */
    work_counter work;
    std::size_t k = nx - ny + 1; /* entries to come */
    for (; k >= 2; k -= 2) {
        uint32_t *at = x + (k - 2); /* y times the pair begins here */
        const uint32_t high = f.product(at[ny], factor);
        const uint32_t second = ny > 1 ? f.sum(at[ny - 1], f.product(high, y[ny - 2])) : at[ny - 1];
        const uint32_t low = f.product(second, factor);
        if (q) {
            q[k - 1] = f.negative(high);
            q[k - 2] = f.negative(low);
        }
        if (high || low) uni_add_two_rows(f, at, y, ny, low, high);
        work.add(2 * ny);
    }
    if (k == 0) return;
    const uint32_t last = f.product(x[ny - 1], factor);
    if (q) q[0] = f.negative(last);
    uni_add_row(f, x, y, ny, last);
}

} // namespace tolvek
