#include "numbers/flat_chains.h"

#include "numbers/flat_divide.h"
#include "numbers/flat_gcd.h"
#include "numbers/flat_mult.h"
#include "numbers/flat_pour.h"
#include "numbers/flat_radix.h"
#include "numbers/flat_root.h"
#include "numbers/handles.h"

namespace tolvek {

int flat_mult_cut = 4;
int flat_quotient_cut = 4;
int flat_gcd_cut = 2;
int flat_root_cut = 3;
int flat_decimal_cut = 12;
std::size_t flat_figures_cut = 32;

namespace {

int32_t sign_of(const numnode *head) { return head->digit < 0 ? -1 : 1; }

/* q := a / b, which goes up, with the sign of the original. */
void exact_quotient(const poured_limbs &a, const limb *b, size_t n, int32_t sign, number *q) {
    if (n == 1 && b[0] == 1) {
        chain_from_limbs(a.data, a.n, sign, q);
        return;
    }
    limb_array quotient(a.n - n + 1);
    flat_divide(quotient.data, nullptr, a.data, a.n, b, n);
    chain_from_limbs(quotient.data, quotient.size, sign, q);
}

void copy_limbs(limb_array &dst, const poured_limbs &src) { flat_copy(dst.data, src.data, src.n); }

} // namespace

void flat_chain_mult(const numnode *a, int len_a, const numnode *b, int len_b, number *dst) {
    const int32_t sign = sign_of(a) * sign_of(b);
    const poured_limbs x(a, len_a);
    if (a == b && len_a == len_b) {
        limb_array square(2 * x.size);
        flat_square(square.data, x.data, x.size);
        chain_from_limbs(square.data, square.size, sign, dst);
        return;
    }
    const poured_limbs y(b, len_b);
    limb_array product(x.size + y.size);
    flat_mult(product.data, x.data, x.size, y.data, y.size);
    chain_from_limbs(product.data, product.size, sign, dst);
}

void flat_chain_divide(const numnode *a, int len_a, const numnode *b, int len_b, number *q, number *r) {
    const poured_limbs x(a, len_a), y(b, len_b);
    number_handle rest;
    if (x.n < y.n) {
        chain_from_limbs(x.data, x.n, 1, &rest);
        if (q) chain_from_limbs(nullptr, 0, 1, q);
    } else {
        limb_array quotient(q ? x.n - y.n + 1 : 0), remainder(y.n);
        flat_divide(q ? quotient.data : nullptr, remainder.data, x.data, x.n, y.data, y.n);
        chain_from_limbs(remainder.data, y.n, 1, &rest);
        if (q) chain_from_limbs(quotient.data, quotient.size, 1, q);
    }
    take_chain(&rest, r);
}

void flat_chain_gcd(const numnode *a, int len_a, const numnode *b, int len_b, number *dst) {
    const poured_limbs x(a, len_a), y(b, len_b);
    limb_array g(x.n < y.n ? x.n : y.n);
    const size_t n = flat_gcd(g.data, x.data, x.n, y.data, y.n);
    chain_from_limbs(g.data, n, 1, dst);
}

void flat_chain_extgcd(const number *a, const number *b, number *g, number *ca, number *cb) {
    const poured_limbs x(a), y(b);
    const int32_t sign_a = sign_of(a->num_head), sign_b = sign_of(b->num_head);
    limb_array used_x(x.n), used_y(y.n), divisor(x.n < y.n ? x.n : y.n);
    copy_limbs(used_x, x);
    copy_limbs(used_y, y);
    const size_t n = flat_gcd(divisor.data, used_x.data, x.n, used_y.data, y.n);
    number_handle cofactor_a, cofactor_b;
    exact_quotient(x, divisor.data, n, sign_a, &cofactor_a);
    exact_quotient(y, divisor.data, n, sign_b, &cofactor_b);
    chain_from_limbs(divisor.data, n, 1, g);
    take_chain(&cofactor_a, ca);
    take_chain(&cofactor_b, cb);
}

void flat_chain_root(const numnode *x, int len, number *dst) {
    const poured_limbs a(x, len);
    limb_array root((a.n + 1) / 2);
    flat_root(root.data, a.data, a.n);
    chain_from_limbs(root.data, root.size, 1, dst);
}

void flat_chain_base_10(const numnode *x, int len, number *dst) {
    const int32_t sign = sign_of(x);
    const poured_limbs a(x, len);
    flat_array<uint32_t, 2 * limbs_nearby> groups(flat_groups_room(a.n));
    const size_t count = flat_to_groups(groups.data, a.data, a.n);
    chain_from_flat(groups.data, count, sign, dst);
}

void flat_chain_figures(const char *figures, std::size_t count, number *x) {
    limb_array value(flat_figures_room(count));
    chain_from_limbs(value.data, flat_from_figures(value.data, figures, count), 1, x);
}

} // namespace tolvek
