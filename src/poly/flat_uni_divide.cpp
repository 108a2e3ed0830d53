/* Division of flat polynomials: by rows, and by Newton's method for the inverse of the reversed divisor. */
#include "poly/flat_uni_transform.h"
#include "top/interrupts.h"

#include <algorithm>
#include <new>

namespace tolvek {

namespace {

/* Modulo x^n, z := 1 / b: b[0] is not 0. By rows: z[k] = -z[0] (b[1] z[k-1] + ... + b[k] z[0]). */
void inverse_by_rows(const uni_field &f, const uint32_t *b, std::size_t nb, std::size_t n, uint32_t *z) {
    z[0] = f.inverse(b[0]);
    const uint32_t factor = f.negative(z[0]);
    for (std::size_t k = 1; k < n; k++) {
        uint32_t sum = 0;
        for (std::size_t i = 1; i <= std::min(k, nb - 1); i++) sum = f.sum(sum, f.product(b[i], z[k - i]));
        z[k] = f.product(sum, factor);
    }
}

constexpr std::size_t first_inverse = 16;

/* z, right modulo x^m, becomes right modulo x^n with m < n <= 2m: z := z - z (b z - 1). In the product b z modulo
   x^points - 1 the coefficients from 2m on fall upon those below m, which are known. */
void newton_step(const uni_field &f, const uint32_t *b, std::size_t nb, std::size_t m, std::size_t n, uint32_t *z) {
    const uni_transformer t(f, n, m);
    uni_transformer::image image_z, image, product;
    uni_poly rest(n);
    t.transform(z, m, &image_z);
    t.transform(b, std::min(nb, n), &image);
    t.multiply(image, image_z, &product);
    t.coefficients(&product, rest.data(), n);
    t.transform(rest.data() + m, n - m, &image);
    t.multiply(image, image_z, &product);
    t.coefficients(&product, rest.data(), n - m);
    for (std::size_t i = 0; i < n - m; i++) z[m + i] = f.negative(rest[i]);
}

void inverse_series(const uni_field &f, const uint32_t *b, std::size_t nb, std::size_t n, uint32_t *z) {
    if (n <= first_inverse) return inverse_by_rows(f, b, nb, n, z);
    const std::size_t m = (n + 1) / 2;
    inverse_series(f, b, nb, m, z);
    newton_step(f, b, nb, m, n, z);
}

/* A divisor with the inverse of its reversal, as many coefficients as quotients have at one time. */
class newton_divisor {
  public:
    newton_divisor(const uni_field &f, const uni_poly &b, std::size_t quotient)
        : field(f), divisor(b), span(std::min(quotient, b.size())), for_quotient(f, 2 * span - 1, span),
          for_rest(f, b.size(), span) {
        uni_poly reversed(b.size());
        std::reverse_copy(b.begin(), b.end(), reversed.begin());
        uni_poly z(span);
        inverse_series(f, reversed.data(), b.size(), span, z.data());
        for_quotient.transform(z.data(), span, &inverse);
        for_rest.transform(b.data(), b.size(), &image);
    }

    /* x[0 .. nx) becomes the remainder in its first entries, and zeros; q, if not null, the quotient. nx is at least the
       divisor's length. */
    void divide(uint32_t *x, std::size_t nx, uint32_t *q) {
        std::size_t left = nx - divisor.size() + 1;
        while (left) {
            const std::size_t count = std::min(left, span);
            left -= count;
            block(x + left, count, q ? q + left : nullptr);
        }
    }

  private:
    /* `count` coefficients of the quotient of x, of count + divisor.size() - 1 entries. */
    void block(uint32_t *x, std::size_t count, uint32_t *q) {
        safe_point();
        const std::size_t length = divisor.size() + count - 1;
        part.resize(std::max(count, for_rest.points()));
        std::reverse_copy(x + (length - count), x + length, part.begin());
        for_quotient.transform(part.data(), count, &work);
        for_quotient.multiply(work, inverse, &product);
        for_quotient.coefficients(&product, part.data(), count);
        std::reverse(part.begin(), part.begin() + count);
        if (q) std::copy(part.begin(), part.begin() + count, q);
        for_rest.transform(part.data(), count, &work);
        for_rest.multiply(work, image, &product);
        for_rest.coefficients(&product, part.data(), for_rest.points());
        /* modulo x^points - 1; the remainder is shorter than that */
        const std::size_t points = for_rest.points();
        for (std::size_t from = points; from < length; from += points)
            uni_add_to(field, x, x + from, std::min(points, length - from));
        uni_take_from(field, x, part.data(), divisor.size() - 1);
        std::fill(x + (divisor.size() - 1), x + length, 0);
    }

    const uni_field field;
    const uni_poly &divisor;
    const std::size_t span;
    uni_transformer for_quotient, for_rest;
    uni_transformer::image inverse, image, work, product;
    uni_poly part;
};

bool divides_by_newton(const uni_field &f, std::size_t nx, std::size_t ny) {
    const std::size_t least = std::max<std::size_t>(uni_limit.divide, 2);
    return f.transforms() && ny >= least && nx - ny + 1 >= least && 2 * ny <= most_uni_points;
}

} // namespace

void uni_divide_in_place(const uni_field &f, uni_poly *x, const uni_poly &y, uni_poly *q) {
    if (q) q->clear();
    if (x->size() < y.size()) return;
    if (q) q->resize(x->size() - y.size() + 1);
    if (divides_by_newton(f, x->size(), y.size()))
        newton_divisor(f, y, x->size() - y.size() + 1).divide(x->data(), x->size(), q ? q->data() : nullptr);
    else
        uni_divide_rows(f, x->data(), x->size(), y.data(), y.size(), f.inverse(uni_lead(y)), q ? q->data() : nullptr);
    x->resize(y.size() - 1);
    uni_trim(x);
}

void uni_divide(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *q, uni_poly *r) {
    assert(!b.empty());
    safe_point();
    uni_poly rest, quotient;
    uni_copy(a, &rest);
    uni_divide_in_place(f, &rest, b, q ? &quotient : nullptr);
    if (q) uni_move(&quotient, q);
    if (r) uni_move(&rest, r);
}

bool uni_divides(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *q) {
    uni_poly quotient, rest;
    uni_divide(f, a, b, q ? &quotient : nullptr, &rest);
    if (!rest.empty()) return false;
    if (q) uni_move(&quotient, q);
    return true;
}

/* ---- powers ---- */

namespace {

/* Remainders by one divisor, again and again. */
class reducer {
  public:
    reducer(const uni_field &f, const uni_poly &m) : field(f), divisor(m) {
        if (divides_by_newton(f, 2 * m.size() - 1, m.size())) {
            fast = static_cast<newton_divisor *>(room);
            new (fast) newton_divisor(f, m, m.size());
        }
    }
    ~reducer() {
        if (fast) fast->~newton_divisor();
    }
    reducer(const reducer &) = delete;
    reducer &operator=(const reducer &) = delete;

    void reduce(uni_poly *x) {
        if (x->size() < divisor.size()) return;
        if (!fast) return uni_divide_in_place(field, x, divisor, nullptr);
        fast->divide(x->data(), x->size(), nullptr);
        uni_trim(x);
    }

  private:
    const uni_field field;
    const uni_poly &divisor;
    newton_divisor *fast = nullptr;
    alignas(newton_divisor) unsigned char room_bytes[sizeof(newton_divisor)];
    void *const room = room_bytes;
};

} // namespace

void uni_power_modulo(const uni_field &f, const uni_poly &a, const number *e, const uni_poly &m, uni_poly *b) {
    reducer by_m(f, m);
    uni_poly base, power;
    uni_copy(a, &base);
    by_m.reduce(&base);
    uni_constant(1, &power);
    by_m.reduce(&power);
    bool begun = false;
    for (const numnode *d = e->num_head; d; d = d->next)
        for (int bit = digit_bits - 1; bit >= 0; bit--) {
            if (begun) {
                uni_mult(f, power, power, &power);
                by_m.reduce(&power);
            }
            if (!(d->digit >> bit & 1)) continue;
            begun = true;
            uni_mult(f, power, base, &power);
            by_m.reduce(&power);
        }
    uni_move(&power, b);
}

} // namespace tolvek
