#include "numbers/flat_value.h"

#include "numbers/flat_divide.h"
#include "numbers/flat_gcd.h"
#include "numbers/flat_mult.h"

namespace tolvek {

void flat_value_product(flat_value &dst, const flat_value &a, const flat_value &b) {
    dst.n = 0;
    if (a.n == 0 || b.n == 0) return;
    limb *const to = dst.make_room(a.n + b.n);
    if (&a == &b)
        flat_square(to, a.data(), a.n);
    else
        flat_mult(to, a.data(), a.n, b.data(), b.n);
    dst.n = flat_length(to, a.n + b.n);
}

void flat_value_sum(flat_value &dst, const flat_value &a, const flat_value &b) {
    if (a.n < b.n) {
        flat_value_sum(dst, b, a);
        return;
    }
    limb *const to = dst.make_room(a.n + 1);
    to[a.n] = flat_add(to, a.data(), a.n, b.data(), b.n);
    dst.n = flat_length(to, a.n + 1);
}

int flat_value_difference(flat_value &dst, const flat_value &a, const flat_value &b) {
    if (flat_compare(a.data(), a.n, b.data(), b.n) < 0) {
        flat_value_difference(dst, b, a);
        return 1;
    }
    limb *const to = dst.make_room(a.n);
    flat_sub(to, a.data(), a.n, b.data(), b.n);
    dst.n = flat_length(to, a.n);
    return 0;
}

void flat_value_gcd(flat_value &g, const flat_value &a, const flat_value &b) {
    if (a.n < b.n) {
        flat_value_gcd(g, b, a);
        return;
    }
    if (b.n == 1) { /* no copies */
        const limb rest = flat_mod_limb(a.data(), a.n, b.data()[0]);
        g.make_room(1)[0] = rest ? flat_gcd_word(b.data()[0], rest) : b.data()[0];
        g.n = 1;
        return;
    }
    flat_value x, y;
    x.set(a);
    y.set(b);
    g.n = flat_gcd(g.make_room(b.n), x.data(), x.n, y.data(), y.n);
}

void flat_value_cancel(flat_value &x, const flat_value &d) {
    if (x.n == 0 || d.is_one()) return;
    const size_t n = x.n - d.n + 1;
    flat_divide(x.data(), nullptr, x.data(), x.n, d.data(), d.n);
    x.n = flat_length(x.data(), n);
}

} // namespace tolvek
