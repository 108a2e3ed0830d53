#include "poly/coefficient_sum.h"

#include "poly/add.h"
#include "poly/mult_work.h"

namespace tolvek {

void coefficient_sum::add_poly(polynode *p) {
    if (flotemode && constant) { /* what has come before counts first */
        part[parts++] = constant;
        constant = nullptr;
    }
    for (int k = 0; k < parts; k++) {
        if (!part[k]) {
            part[k] = p;
            return;
        }
        polynode *other = part[k];
        part[k] = nullptr;
        best_poly_add(other, p, &p);
        if (flotemode) {
            part[k] = p;
            return;
        }
    }
    part[parts++] = p;
}

void coefficient_sum::add_numbers(const number *x, const number *y) {
    if (flotemode && parts > 0) {
        polynode *p = new_number_term();
        number_product(x, y, p->num);
        return add_poly(p);
    }
    if (!constant) {
        constant = new_number_term();
        return number_product(x, y, constant->num);
    }
    number_product(x, y, &product);
    if (flotemode || lintmode)
        num_add(constant->num, &product, constant->num);
    else
        fastsum(constant->num, &product);
}

void coefficient_sum::add(const polynode *s, const polynode *t, pt *names) {
    const number *x = lone_number(s), *y = lone_number(t);
    if (x && y) return add_numbers(x, y);
    poly_handle p;
    if (x)
        scalar_by_poly(x, t->poly, p.slot());
    else if (y)
        scalar_by_poly(y, s->poly, p.slot());
    else
        mult(s->poly, t->poly, p.slot(), names);
    add_poly(p.release());
}

polynode *coefficient_sum::take() {
    polynode *sum = constant;
    constant = nullptr;
    for (int k = 0; k < parts; k++) {
        if (!part[k]) continue;
        polynode *p = part[k];
        part[k] = nullptr;
        if (sum)
            best_poly_add(sum, p, &sum);
        else
            sum = p;
    }
    parts = 0;
    if (sum && poly_iszero(sum)) free_poly(&sum);
    return sum;
}

} // namespace tolvek
