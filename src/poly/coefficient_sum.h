/* Sums of products of coefficients, which products and divisions of lists compute one exponent after the other. Products
   are summed in the order in which they come: for floats, whose sums depend on it, in this very order, otherwise two by
   two, so that long sums are not walked again and again. */
#pragma once

#include "numbers/handles.h"
#include "poly/model.h"

namespace tolvek {

/* The number that a coefficient is, or null. */
inline const number *lone_number(const polynode *t) {
    if (t->is_number) return t->num;
    return is_constant(t->poly) ? t->poly->num : nullptr;
}

/* The sum of products of coefficients that come one by one. */
class coefficient_sum {
  public:
    ~coefficient_sum() {
        for (int k = 0; k < parts; k++) free_poly(&part[k]);
        free_poly(&constant);
    }
    coefficient_sum(const coefficient_sum &) = delete;
    coefficient_sum &operator=(const coefficient_sum &) = delete;

    /* The routine for products of two polynomials. */
    using route = void (*)(const polynode *a, const polynode *b, polynode **p, pt *names);
    explicit coefficient_sum(route r) : mult(r) {}

    /* Adds the product of the coefficients of two terms. */
    void add(const polynode *s, const polynode *t, pt *names);
    polynode *take(); /* the sum, null for 0; nothing is left */

  private:
    void add_poly(polynode *p);
    void add_numbers(const number *x, const number *y);

    /* Part k is a sum of 2^k polynomials, or null: a sum of two such takes its place in the next. Floats have one
       part. */
    static constexpr int most_parts = 40;
    const route mult;
    polynode *part[most_parts];
    int parts = 0;
    polynode *constant = nullptr; /* the sum of products of numbers; of floats only until a polynomial comes */
    number_handle product;
};

} // namespace tolvek
