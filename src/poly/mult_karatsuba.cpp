/* Karatsuba's product of term lists (A. Karatsuba and Yu. Ofman, 1962), for lists that are nearly dense.

   With x the variable of the level, both operands are cut into a = x^s H + L, the terms of H with s taken off their
   exponents, and a b = x^2s Ha Hb + x^s ((Ha + La)(Hb + Lb) - Ha Hb - La Lb) + La Lb. H and L are copies of the nodes
   of the top level only; they share the coefficients with the operand. */
#include "numbers/poured.h"
#include "poly/add.h"
#include "poly/measures.h"
#include "poly/model_work.h"
#include "poly/mult_work.h"
#include "top/stack_limit.h"

#include <cstdlib>

namespace tolvek {

namespace {

/* The two parts of an operand; they are canonical. */
class split_list {
  public:
    /* The cut is at the exponent s + last. Both parts have terms. */
    split_list(const polynode *p, int n, int32_t s, int32_t last) : node(static_cast<std::size_t>(n)) {
        std::size_t i = 0;
        high = &node[0];
        for (; p->expo >= int64_t{s} + last; p = p->next) shift_term(p, s, &node[i++]);
        node[i - 1].next = nullptr;
        low = p;
    }
    const polynode *high, *low;

  private:
    void shift_term(const polynode *t, int32_t s, polynode *to) {
        *to = *t;
        to->next = to + 1;
        to->expo = t->expo - s;
        if (t->is_number) { /* its exponent is not 0 any more */
            constant = *t;
            constant.next = nullptr;
            to->is_number = 0;
            to->poly = &constant;
        } else if (to->expo == 0 && is_constant(t->poly)) {
            to->is_number = 1;
            to->num = t->poly->num;
        }
    }
    flat_array<polynode, 64> node;
    polynode constant; /* the coefficient that a number term of the operand has become */
};

using route = void (*)(const polynode *a, const polynode *b, polynode **p, pt *names);

void karatsuba(const split_list &a, const split_list &b, int32_t s, polynode **p, route mult, pt *names) {
    const bool square = &a == &b;
    poly_handle top, bottom, middle;
    {
        poly_handle sum_a, sum_b;
        poly_add(a.high, a.low, sum_a.slot());
        if (!square) poly_add(b.high, b.low, sum_b.slot());
        mult(sum_a.get(), square ? sum_a.get() : sum_b.get(), middle.slot(), names);
    }
    mult(a.high, b.high, top.slot(), names);
    better_poly_sub(middle.release(), top.get(), middle.slot());
    mult(a.low, b.low, bottom.slot(), names);
    better_poly_sub(middle.release(), bottom.get(), middle.slot());
    raise_exponents(middle.slot(), s);
    best_poly_add(middle.release(), bottom.release(), middle.slot());
    raise_exponents(top.slot(), s);
    raise_exponents(top.slot(), s);
    polynode *product = nullptr;
    best_poly_add(top.release(), middle.release(), &product);
    replace_poly(product, p);
}

/* The exponent of the middle of the list above its last one. */
int32_t middle_of(const polynode *p, int n, int32_t last) {
    for (int i = n / 2 - 1; i > 0; i--) p = p->next;
    return p->expo - last;
}

void split_and_multiply(const polynode *a, const polynode *b, int32_t last_a, int32_t last_b, polynode **p, route mult,
                        pt *names) {
    const int n_a = poly_length(a), n_b = a == b ? n_a : poly_length(b);
    const int32_t s = minn(middle_of(a, n_a, last_a), middle_of(b, n_b, last_b));
    const split_list of_a(a, n_a, s, last_a);
    if (a == b) return karatsuba(of_a, of_a, s, p, mult, names);
    const split_list of_b(b, n_b, s, last_b);
    karatsuba(of_a, of_b, s, p, mult, names);
}

void simplest_route(const polynode *a, const polynode *b, polynode **p, pt *) {
    simplest_poly_mult(a, b, p, 0, 0, 0, 0);
}

} // namespace

void karatsuba_lists(const polynode *a, const polynode *b, int32_t last_a, int32_t last_b, polynode **p, pt *names) {
    split_and_multiply(a, b, last_a, last_b, p, mult_lists, names);
    fold_if_related(p, names);
}

/* The product by one of the lean routes. */
void simplest_poly_mult(const polynode *a, const polynode *b, polynode **p, int n_a, int n_b, int32_t last_a,
                        int32_t last_b) {
    check_stack();
    if (is_constant(a) || is_constant(b)) return mult_lists(a, b, p, nullptr);
    if (n_a == 0) {
        int lean = 1;
        n_a = exp_poly_length(a, &last_a, &lean);
        n_b = exp_poly_length(b, &last_b, &lean);
    }
    if (modulus >= 3 && !finf && int64_t{a->expo} + b->expo <= fast_gcd_size)
        fastest_standard(a, b, std::abs(n_a), std::abs(n_b), p);
    else if (minn(n_a, n_b) < maxx(fast_mult_cut, 2))
        simplest_standard(a, b, std::abs(n_a), std::abs(n_b), p);
    else
        split_and_multiply(a, b, last_a, last_b, p, simplest_route, nullptr);
}

} // namespace tolvek
