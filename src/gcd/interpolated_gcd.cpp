#include "gcd/interpolated_gcd.h"

#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "numbers/modular.h"
#include "numbers/random.h"
#include "poly/add.h"
#include "poly/mult.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

/* ---- polynomials over the ring of the deepest variable y, which has level n ----

   The coefficients of a polynomial are then the lists of level n; where a number stands above that level, it is one. */

/* The value of a polynomial in y alone. */
static int32_t value_of_list(const polynode *p, int32_t a) {
    const int32_t m = modulus;
    int32_t value = 0, last = p->expo;
    for (; p; p = p->next) {
        int32_t power;
        mod_number_power(a, static_cast<uint32_t>(last - p->expo), &power);
        value = mod_add(modmult(value, power), p->is_number ? p->num->lint_val : p->poly->num->lint_val, m);
        last = p->expo;
    }
    int32_t power;
    mod_number_power(a, static_cast<uint32_t>(last), &power);
    return modmult(value, power);
}

/* p at y = a; null for 0. */
static polynode *list_at(const polynode *p, int n, int32_t a) {
    if (n == 1) {
        const int32_t value = value_of_list(p, a);
        if (!value) return nullptr;
        polynode *t = new_number_term();
        t->num->lint_val = value;
        return t;
    }
    growing_list list;
    for (; p; p = p->next) {
        safe_point();
        if (p->is_number) {
            list.append(copy_term(p));
            continue;
        }
        poly_handle coefficient(list_at(p->poly, n - 1, a));
        if (!coefficient) continue;
        if (p->expo == 0 && is_constant(coefficient.get())) {
            list.append(coefficient.release());
            continue;
        }
        polynode *t = new_term();
        t->expo = p->expo;
        t->poly = coefficient.release();
        list.append(t);
    }
    return list.release();
}

static polynode *image_at_value(const polynode *p, int n, int32_t a) { return list_or_zero(list_at(p, n, a)); }

/* The coefficient of the lexically highest term, as a polynomial in y. */
static const polynode *leading_list(const polynode *p, int n) {
    for (; n > 1 && !p->is_number; n--) p = p->poly;
    return p;
}

/* A copy of it without the terms behind a number, which belong to lists above. */
static void copy_leading_list(const polynode *p, int n, poly_handle &lc) {
    const polynode *list = leading_list(p, n);
    if (list->is_number)
        node_assign(list, lc.slot());
    else
        poly_assign(list, lc.slot());
}

static int32_t leading_value(const polynode *p, int n, int32_t a) {
    poly_handle lc;
    copy_leading_list(p, n, lc);
    return value_of_list(lc.get(), a);
}

static void gcd_in_y(const polynode *a, poly_handle &c, pt *y) {
    if (is_constant(a) || is_constant(c.get()))
        poly_set(1, c.slot());
    else
        polygcd(const_cast<polynode *>(a), c.get(), c.slot(), 0, 0, 0, y, 1, 1, 0);
}

static void add_to_content(const polynode *p, int n, poly_handle &c, pt *y) {
    if (n == 1) {
        if (!c)
            poly_assign(p, c.slot());
        else
            gcd_in_y(p, c, y);
        return;
    }
    for (; p && !(c && is_constant(c.get())); p = p->next) {
        if (p->is_number)
            poly_set(1, c.slot());
        else
            add_to_content(p->poly, n - 1, c, y);
    }
}

/* p := p divided by its content in y, which goes to c as a polynomial of level n. */
static bool without_content(poly_handle &p, int n, poly_handle &c, pt *names, pt *y) {
    add_to_content(p.get(), n, c, y);
    if (is_constant(c.get())) {
        poly_set(1, c.slot());
        return true;
    }
    poly_handle divisor;
    poly_assign(c.get(), divisor.slot());
    padded(divisor, n - 1);
    return exact_quotient(p.get(), divisor.get(), p.slot(), names);
}

static int32_t degree_in_y(const polynode *p, int n) {
    int32_t degree = 0;
    max_degree(p, n, &degree);
    return degree;
}

int compare_leading(const polynode *a, const polynode *b) {
    while (a || b) {
        const int32_t e_a = a ? a->expo : 0, e_b = b ? b->expo : 0;
        if (e_a != e_b) return e_a < e_b ? -1 : 1;
        a = a && !a->is_number ? a->poly : nullptr;
        b = b && !b->is_number ? b->poly : nullptr;
    }
    return 0;
}

/* ---- interpolation ---- */

struct interpolation {
    int n;
    pt *names;
    poly_handle sum;  /* what the images so far agree with */
    poly_handle node; /* the product of y - a over their values, padded to the level of names */
    int count = 0;

    void start() {
        poly_set(0, sum.slot());
        poly_set(1, node.slot());
        count = 0;
    }
    /* True when the image at a says nothing new. */
    bool add(int32_t a, const polynode *image) {
        const int32_t m = modulus;
        poly_handle difference(image_at_value(sum.get(), n, a)), factor;
        poly_sub(image, difference.get(), difference.slot());
        count++;
        const bool nothing = poly_iszero(difference.get());
        if (!nothing) {
            poly_handle at(image_at_value(node.get(), n, a));
            mod_num_poly_mult(mod_inverse(leading_coef(at.get())->num->lint_val), difference.slot());
            poly_mult(difference.get(), node.get(), difference.slot(), names);
            best_poly_add(sum.release(), difference.release(), sum.slot());
        }
        poly_handle y, minus_a;
        base_poly(y.slot(), n);
        poly_set(1, minus_a.slot());
        minus_a->num->lint_val = a ? m - a : 0;
        poly_add(y.get(), minus_a.get(), y.slot());
        poly_mult(node.get(), y.get(), node.slot(), names);
        return nothing;
    }
};

static bool divides_both(const polynode *u, const polynode *v, const polynode *g, pt *names) {
    if (is_constant(g)) return true;
    int failed;
    poly_handle q;
    gen_poly_divide(u, g, q.slot(), names, &failed);
    if (failed) return false;
    gen_poly_divide(v, g, q.slot(), names, &failed);
    return !failed;
}

bool interpolated_gcd(const polynode *u, const polynode *v, polynode **g, pt *names) {
    check_stack();
    const int n = std::max(deepest_level(u), deepest_level(v));
    pt *y = variable_at(names->pt_level + n - 1);
    if (n == 1 || !y || finf) return false;
    poly_handle prim_u, prim_v, c, c_v, normaliser, best;
    poly_assign(u, prim_u.slot());
    poly_assign(v, prim_v.slot());
    if (!without_content(prim_u, n, c, names, y) || !without_content(prim_v, n, c_v, names, y)) return false;
    gcd_in_y(c_v.get(), c, y);
    padded(c, n - 1);
    copy_leading_list(prim_u.get(), n, normaliser);
    poly_handle lc_v;
    copy_leading_list(prim_v.get(), n, lc_v);
    gcd_in_y(lc_v.get(), normaliser, y);
    const int64_t bound = int64_t{std::min(degree_in_y(prim_u.get(), n), degree_in_y(prim_v.get(), n))} +
                          (normaliser->is_number ? 0 : normaliser->expo);
    interpolation found{n, names, {}, {}};
    found.start();
    const int32_t m = modulus, first = static_cast<int32_t>(random_31() % m);
    for (int32_t step = 0, a = first; step < m; step++, a = a + 1 == m ? 0 : a + 1) {
        safe_point();
        if (!leading_value(prim_u.get(), n, a) || !leading_value(prim_v.get(), n, a)) continue;
        poly_handle image_u(image_at_value(prim_u.get(), n, a)), image_v(image_at_value(prim_v.get(), n, a)), h;
        polygcd(image_u.get(), image_v.get(), h.slot(), 0, 1, 0, names, 1, 1, 0);
        if (is_constant(h.get())) {
            c.release_to(g);
            return true;
        }
        const int order = found.count ? compare_leading(h.get(), best.get()) : 0;
        if (order > 0) continue;
        if (order < 0) found.start();
        if (!found.count) poly_assign(h.get(), best.slot());
        mod_num_poly_mult(value_of_list(normaliser.get(), a), h.slot());
        const bool nothing_new = found.add(a, h.get());
        if (!nothing_new && found.count <= bound) continue;
        poly_handle candidate, spare;
        poly_assign(found.sum.get(), candidate.slot());
        if (without_content(candidate, n, spare, names, y) &&
            divides_both(prim_u.get(), prim_v.get(), candidate.get(), names)) {
            poly_mult(candidate.get(), c.get(), g, names);
            return true;
        }
        if (found.count > bound + 1) return false;
    }
    return false;
}

} // namespace tolvek
