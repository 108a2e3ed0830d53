#include "numbers/flat_ratio.h"

#include "numbers/flat_lehmer.h"
#include "numbers/flat_mult.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

/* The magnitudes of the cofactors of v in a pair of remainders; their signs differ. Those before a step are s and t,
   those behind it t and s + q t. */
struct cofactor_pair {
    flat_value a, b, c, d, product;
    flat_value *s = &a, *t = &b, *next_s = &c, *next_t = &d;
    bool negative = false; /* the sign of t's cofactor */

    cofactor_pair() {
        s->make_room(1);
        t->make_room(1)[0] = 1;
        t->n = 1;
    }
    void turn() {
        flat_value *u = s, *w = t;
        s = next_s;
        t = next_t;
        next_s = u;
        next_t = w;
    }
    void apply(const lehmer_matrix &m) {
        combine(next_s, m.u0, m.v0);
        combine(next_t, m.u1, m.v1);
        turn();
        if (m.odd) negative = !negative;
    }
    void step(const limb *q, size_t nq) {
        limb *p = product.make_room(t->n + nq);
        flat_product(p, q, nq);
        product.n = flat_length(p, t->n + nq);
        flat_value_sum(*next_t, *s, product);
        next_s->set(*t);
        turn();
        negative = !negative;
    }

  private:
    /* x := u s + w t */
    void combine(flat_value *x, limb u, limb w) {
        const size_t n = t->n + 1; /* s is at most t */
        limb *r = x->make_room(n + 1);
        flat_clear(r, n + 1);
        r[s->n] = flat_mult_limb(r, s->data(), s->n, u);
        const limb carry = flat_add_product(r, t->data(), t->n, w);
        flat_add_limb(r + t->n, r + t->n, 2, carry);
        x->n = flat_length(r, n + 1);
    }
    void flat_product(limb *p, const limb *q, size_t nq) const {
        if (nq > t->n)
            flat_mult(p, q, nq, t->data(), t->n);
        else
            flat_mult(p, t->data(), t->n, q, nq);
    }
};

} // namespace

bool flat_ratio(flat_value &num, flat_value &den, const flat_value &v, const flat_value &m, const flat_value &bound) {
    const size_t n = m.n;
    buffer<limb> room(5 * n + 1);
    limb *at = room.data(), *q = at + 4 * n;
    lehmer_pair p{at, at + n, at + 2 * n, at + 3 * n, n};
    flat_copy(p.x, m.data(), n);
    flat_copy(p.y, v.data(), v.n);
    flat_clear(p.y + v.n, n - v.n);
    cofactor_pair cofactors;
    size_t work = 0;
    for (;;) {
        p.n = flat_length(p.x, p.n);
        const size_t ny = flat_length(p.y, p.n);
        if (flat_compare(p.y, ny, bound.data(), bound.n) <= 0) break;
        /* Steps from windows leave at least 64 bits less than n limbs. */
        const lehmer_matrix steps = p.n > 2 && p.n > bound.n + 2 ? p.steps() : lehmer_matrix();
        if (steps.is_identity()) {
            const size_t nq = p.n - ny + 1;
            p.divide(ny, q);
            cofactors.step(q, flat_length(q, nq));
        } else {
            p.apply(steps);
            cofactors.apply(steps);
        }
        if ((work += n) > 100000) {
            work = 0;
            safe_point();
        }
    }
    num.n = flat_length(p.y, p.n);
    flat_copy(num.make_room(num.n + 1), p.y, num.n);
    den.set(*cofactors.t);
    return cofactors.negative;
}

} // namespace tolvek
