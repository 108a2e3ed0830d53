/* Natural numbers of any length in flat limbs, with their room: what a routine takes that computes several steps on
   chains between one pouring in and one pouring out. Short ones live on the stack of the routine. */
#pragma once

#include "numbers/flat_pour.h"

namespace tolvek {

struct flat_value {
    size_t n = 0; /* limbs of the normal value; 0 for 0 */

    flat_value() = default;
    explicit flat_value(const number *x) { set(x); } /* the magnitude of a chain */
    flat_value(const flat_value &) = delete;
    flat_value &operator=(const flat_value &) = delete;

    limb *data() { return at; }
    const limb *data() const { return at; }
    bool is_zero() const { return n == 0; }
    bool is_one() const { return n == 1 && at[0] == 1; }

    /* Room for so many limbs; the value is undefined then. */
    limb *make_room(size_t limbs) {
        if (limbs > room) {
            far.resize(limbs);
            at = far.data();
            room = limbs;
        }
        return at;
    }
    void set(const number *x) {
        make_room(limbs_of_digits(x->num_len));
        n = pour_limbs(at, x->num_head, x->num_len);
    }
    void set(const flat_value &x) {
        flat_copy(make_room(x.n), x.at, x.n);
        n = x.n;
    }

  private:
    size_t room = limbs_nearby;
    limb *at = nearby;
    limb nearby[limbs_nearby];
    buffer<limb> far;
};

/* dst := a b, a + b, |a - b|. dst is none of the operands. flat_value_difference tells whether a < b. */
void flat_value_product(flat_value &dst, const flat_value &a, const flat_value &b);
void flat_value_sum(flat_value &dst, const flat_value &a, const flat_value &b);
int flat_value_difference(flat_value &dst, const flat_value &a, const flat_value &b);

/* g := gcd(a, b), neither of which is 0; g is neither. */
void flat_value_gcd(flat_value &g, const flat_value &a, const flat_value &b);

/* x := x / d, which leaves no remainder. */
void flat_value_cancel(flat_value &x, const flat_value &d);

} // namespace tolvek
