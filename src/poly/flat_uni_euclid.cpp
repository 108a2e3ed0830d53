/* Greatest common divisors of flat polynomials: Euclid's steps one by one, and half of them at a time by recursion on
   the leading halves. */
#include "poly/flat_uni_transform.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

void hg_matrix::make_identity() {
    uni_constant(1, &a);
    b.clear();
    c.clear();
    uni_constant(1, &d);
    odd = false;
}

namespace {

void swap_polys(uni_poly &a, uni_poly &b) {
    uni_poly t(static_cast<uni_poly &&>(a));
    a = static_cast<uni_poly &&>(b);
    b = static_cast<uni_poly &&>(t);
}

/* x := x - q * y */
void take_product(const uni_field &f, uni_poly *x, const uni_poly &q, const uni_poly &y) {
    if (q.empty() || y.empty()) return;
    const std::size_t length = q.size() + y.size() - 1;
    if (std::min(q.size(), y.size()) >= uni_limit.mult) {
        uni_poly product;
        uni_mult(f, q, y, &product);
        return uni_difference(f, *x, product, x);
    }
    const std::size_t before = x->size();
    if (before < length) {
        x->resize(length);
        std::fill(x->begin() + before, x->end(), 0);
    }
    uni_add_product(f, x->data(), q.data(), q.size(), y.data(), y.size(), true);
    uni_trim(x);
}

/* One step: (x, y) := (y, x mod y), and the same for the rows of the matrix, if any. */
void euclid_step(const uni_field &f, uni_poly *x, uni_poly *y, hg_matrix *m, uni_poly *q) {
    uni_divide_in_place(f, x, *y, m ? q : nullptr);
    swap_polys(*x, *y);
    if (!m) return;
    take_product(f, &m->a, *q, m->c);
    take_product(f, &m->b, *q, m->d);
    swap_polys(m->a, m->c);
    swap_polys(m->b, m->d);
    m->odd = !m->odd;
}

/* Steps until deg y is below h. */
void euclid_until(const uni_field &f, uni_poly *x, uni_poly *y, hg_matrix *m, int64_t h) {
    uni_poly q;
    std::size_t work = 0;
    while (uni_degree(*y) >= h && !y->empty()) {
        work += y->size();
        if (work > 1 << 18) {
            safe_point();
            work = 0;
        }
        euclid_step(f, x, y, m, &q);
    }
}

/* ---- products with matrices ---- */

/* z := a * u + b * v. By rows, or one of them by transforms. */
void combine_plainly(const uni_field &f, const uni_poly &a, const uni_poly &u, const uni_poly &b, const uni_poly &v,
                     uni_poly *z) {
    uni_poly first, second;
    uni_mult(f, a, u, &first);
    uni_mult(f, b, v, &second);
    uni_sum(f, first, second, z);
}

std::size_t longest(const hg_matrix &m) {
    return std::max(std::max(m.a.size(), m.b.size()), std::max(m.c.size(), m.d.size()));
}

/* Images of the entries of a matrix. */
struct matrix_image {
    uni_transformer::image a, b, c, d;
    void transform(const uni_transformer &t, const hg_matrix &m) {
        t.transform(m.a.data(), m.a.size(), &a);
        t.transform(m.b.data(), m.b.size(), &b);
        t.transform(m.c.data(), m.c.size(), &c);
        t.transform(m.d.data(), m.d.size(), &d);
    }
};

void poured_back(const uni_transformer &t, uni_transformer::image *image, std::size_t length, uni_poly *z) {
    z->resize(length);
    t.coefficients(image, z->data(), length);
    uni_trim(z);
}

/* Applies the images of a matrix to two columns' worth of operands: (u, v) := M (u, v), results of at most `length`. */
void apply_image(const uni_transformer &t, const matrix_image &m, std::size_t length, uni_poly *u, uni_poly *v) {
    uni_transformer::image iu, iv, z;
    t.transform(u->data(), u->size(), &iu);
    t.transform(v->data(), v->size(), &iv);
    t.multiply(m.a, iu, &z);
    t.add_product(m.b, iv, &z);
    poured_back(t, &z, length, u);
    t.multiply(m.c, iu, &z);
    t.add_product(m.d, iv, &z);
    poured_back(t, &z, length, v);
}

bool by_transforms(const uni_field &f, std::size_t n, std::size_t k) {
    return f.transforms() && std::min(n, k) >= uni_limit.mult / 2 && n + k <= most_uni_points;
}

/* (u, v) := M (u, v) */
void apply_matrix(const uni_field &f, const hg_matrix &m, uni_poly *u, uni_poly *v) {
    const std::size_t n = longest(m), k = std::max(u->size(), v->size());
    if (by_transforms(f, n, k)) {
        const uni_transformer t(f, n + k - 1, 2 * std::min(n, k));
        matrix_image image;
        image.transform(t, m);
        return apply_image(t, image, n + k - 1, u, v);
    }
    uni_poly top, bottom;
    combine_plainly(f, m.a, *u, m.b, *v, &top);
    combine_plainly(f, m.c, *u, m.d, *v, &bottom);
    uni_move(&top, u);
    uni_move(&bottom, v);
}

/* r := s * r */
void multiply_matrices(const uni_field &f, const hg_matrix &s, hg_matrix *r) {
    const std::size_t n = longest(s), k = longest(*r);
    if (by_transforms(f, n, k)) {
        const uni_transformer t(f, n + k - 1, 2 * std::min(n, k));
        matrix_image image;
        image.transform(t, s);
        apply_image(t, image, n + k - 1, &r->a, &r->c);
        apply_image(t, image, n + k - 1, &r->b, &r->d);
    } else {
        apply_matrix(f, s, &r->a, &r->c);
        apply_matrix(f, s, &r->b, &r->d);
    }
    r->odd = r->odd != s.odd;
}

/* ---- half of the steps ---- */

/* high := the entries of x from k on, which x loses. */
void split_at(uni_poly *x, std::size_t k, uni_poly *high) {
    const std::size_t size = x->size() > k ? x->size() - k : 0;
    high->resize(size);
    std::copy(x->begin() + (x->size() - size), x->end(), high->begin());
    x->resize(x->size() - size);
    uni_trim(x);
}

/* x := x + high t^k */
void join_at(const uni_field &f, uni_poly *x, std::size_t k, const uni_poly &high) {
    if (high.empty()) return;
    const std::size_t before = x->size(), length = std::max(before, k + high.size());
    x->resize(length);
    if (before < length) std::fill(x->begin() + before, x->end(), 0);
    uni_add_to(f, x->data() + k, high.data(), high.size());
    uni_trim(x);
}

void half(const uni_field &f, uni_poly *x, uni_poly *y, hg_matrix *m);

/* Half of the steps of the parts of x and y from t^k on; x and y become what the same steps make of them. */
void half_of_top(const uni_field &f, uni_poly *x, uni_poly *y, std::size_t k, hg_matrix *m) {
    uni_poly high_x, high_y;
    split_at(x, k, &high_x);
    split_at(y, k, &high_y);
    half(f, &high_x, &high_y, m);
    apply_matrix(f, *m, x, y);
    join_at(f, x, k, high_x);
    join_at(f, y, k, high_y);
}

/* As uni_half_gcd. The first recursion reaches three quarters of the degree, one step goes beyond the middle of that
   part, and the second recursion comes to the half: for x of degree d it takes the part from t^(2h - d) on, whose half
   lies at t^h. What lies below cannot change a quotient. */
void half(const uni_field &f, uni_poly *x, uni_poly *y, hg_matrix *m) {
    check_stack();
    const int64_t n = uni_degree(*x), h = (n + 1) / 2;
    hg_matrix own;
    hg_matrix *r = m ? m : &own;
    if (m) m->make_identity();
    if (uni_degree(*y) < h) return;
    if (n < std::max<int64_t>(uni_limit.half_gcd, 4)) return euclid_until(f, x, y, m, h);
    safe_point();
    half_of_top(f, x, y, static_cast<std::size_t>(h), r);
    if (uni_degree(*y) < h) return;
    uni_poly q;
    euclid_step(f, x, y, m, &q);
    if (uni_degree(*y) < h) return;
    hg_matrix s;
    half_of_top(f, x, y, static_cast<std::size_t>(2 * h - uni_degree(*x)), &s);
    if (m) multiply_matrices(f, s, m);
}

/* Is a half-GCD the next thing to do? */
bool worth_halving(const uni_field &f, const uni_poly &x, const uni_poly &y) {
    return f.transforms() && uni_degree(x) >= std::max<int64_t>(uni_limit.gcd, 4) && x.size() > y.size() &&
           2 * y.size() > x.size();
}

} // namespace

void uni_half_gcd(const uni_field &f, uni_poly *x, uni_poly *y, hg_matrix *m) {
    assert(x->size() >= y->size());
    if (x->size() > y->size()) return half(f, x, y, m);
    if (m) m->make_identity();
    if (y->empty()) return;
    /* one step lets the degrees differ: M (0 1; 1 -q) */
    uni_poly q;
    uni_divide_in_place(f, x, *y, &q);
    swap_polys(*x, *y);
    half(f, x, y, m);
    if (!m) return;
    take_product(f, &m->a, q, m->b);
    take_product(f, &m->c, q, m->d);
    swap_polys(m->a, m->b);
    swap_polys(m->c, m->d);
    m->odd = !m->odd;
}

void uni_euclid(const uni_field &f, uni_poly *x, uni_poly *y) {
    uni_poly q;
    if (x->size() < y->size()) swap_polys(*x, *y);
    std::size_t work = 0;
    while (!y->empty()) {
        if (work += y->size(); work > 1 << 18) {
            safe_point();
            work = 0;
        }
        if (worth_halving(f, *x, *y)) half(f, x, y, nullptr);
        if (!y->empty()) euclid_step(f, x, y, nullptr, &q);
    }
}

void uni_gcd(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *g) {
    uni_poly x, y;
    uni_copy(a, &x);
    uni_copy(b, &y);
    uni_euclid(f, &x, &y);
    uni_make_monic(f, &x);
    uni_move(&x, g);
}

/* The column of a is followed: x = u a + ..., y = v a + ... */
void uni_extended_gcd(const uni_field &f, const uni_poly &a, const uni_poly &b, uni_poly *g, uni_poly *s, uni_poly *t) {
    uni_poly x, y, u, v, q;
    const bool swapped = a.size() < b.size();
    uni_copy(swapped ? b : a, &x);
    uni_copy(swapped ? a : b, &y);
    uni_constant(1, swapped ? &v : &u);
    while (!y.empty()) {
        safe_point();
        if (worth_halving(f, x, y)) {
            hg_matrix m;
            half(f, &x, &y, &m);
            apply_matrix(f, m, &u, &v);
            if (y.empty()) break;
        }
        uni_divide_in_place(f, &x, y, &q);
        take_product(f, &u, q, v);
        swap_polys(x, y);
        swap_polys(u, v);
    }
    const uint32_t factor = x.empty() ? 1 : f.inverse(uni_lead(x));
    uni_multiple(f, factor, x, &x);
    uni_multiple(f, factor, u, &u);
    if (t) { /* t b = g - s a */
        uni_poly product, other;
        uni_mult(f, u, a, &product);
        uni_difference(f, x, product, &product);
        if (!b.empty()) uni_divide(f, product, b, &other, nullptr);
        uni_move(&other, t);
    }
    if (s) uni_move(&u, s);
    if (g) uni_move(&x, g);
}

bool uni_inverse_modulo(const uni_field &f, const uni_poly &a, const uni_poly &m, uni_poly *s) {
    assert(uni_degree(m) > 0);
    uni_poly g, rest, inverse;
    uni_divide(f, a, m, nullptr, &rest);
    uni_extended_gcd(f, rest, m, &g, &inverse, nullptr);
    if (uni_degree(g) != 0) return false;
    uni_move(&inverse, s);
    return true;
}

} // namespace tolvek
