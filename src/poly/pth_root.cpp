/* Roots of the order of the characteristic p, over a finite field of prime size or one held in tables. There
   (f + g)^p = f^p + g^p, so a polynomial is a p-th power when all its exponents are multiples of p. */
#include "numbers/modular.h"
#include "poly/derivative.h"
#include "poly/model_work.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <cassert>
#include <utility>

namespace tolvek {

static int32_t characteristic() { return finf ? 2 : int32_t{modulus}; }

/* In a prime field every element is its own p-th power. */
void pth_root_of_number(number *x) {
    if (finf) x->lint_val = modular_sqrt(x->lint_val);
}

static bool exponents_divide(const polynode *p, int32_t by) {
    for (; p; p = p->next) {
        safe_point();
        if (!p->is_number && (p->expo % by != 0 || !exponents_divide(p->poly, by))) return false;
    }
    return true;
}

static void take_roots(polynode *p, int32_t by) {
    for (; p; p = p->next) {
        if (p->is_number) {
            pth_root_of_number(p->num);
        } else {
            p->expo /= by;
            take_roots(p->poly, by);
        }
    }
}

/* The root is built aside, so that an interrupt finds *p whole. */
bool whole_pth_root(polynode **p) {
    assert(modularmode && mod_is_prime());
    check_stack();
    const int32_t by = characteristic();
    if (!exponents_divide(*p, by)) return false;
    poly_handle root;
    poly_assign(*p, root.slot());
    take_roots(root.get(), by);
    root.release_to(p);
    return true;
}

} // namespace tolvek
