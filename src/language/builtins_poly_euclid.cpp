/* Egcd: greatest common divisors with their cofactors, of integers and of polynomials in one variable over a field. */
#include "language/builtin_routines.h"
#include "language/names.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_mult.h"
#include "poly/euclid.h"
#include "poly/flat_uni.h"
#include "quoly/quoly.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

struct egcd_answer {
    quoly_handle g, s, t; /* s * a + t * b = g */
};

/* x := x - q * y */
void take_multiple(number *x, const number *q, const number *y) {
    number_handle product;
    fast_mult(q, y, &product);
    fastdiff(x, &product);
}

/* The classical loop on the magnitudes, the larger one first; the cofactors then take the signs of a and b. */
void egcd_nums(const number *a, const number *b, egcd_answer &answer) {
    number_handle x[2], s[2], t[2], q, r;
    int now = 0; /* x[now] = s[now] |a| + t[now] |b| is what is divided */
    abs_val_num(a, &x[0]);
    abs_val_num(b, &x[1]);
    for (int i = 0; i < 2; i++) {
        special_set(i == 0, &s[i]);
        special_set(i == 1, &t[i]);
    }
    if (pos_bigger(&x[1], &x[0])) now = 1;
    while (num_sign(&x[1 - now]) != 0) {
        const int by = 1 - now;
        safe_point();
        divide(&x[now], &x[by], &q, &r);
        r.release_to(&x[now]);
        take_multiple(&s[now], &q, &s[by]);
        take_multiple(&t[now], &q, &t[by]);
        now = by;
    }
    if (num_sign(a) < 0) in_place_neg(&s[now]);
    if (num_sign(b) < 0) in_place_neg(&t[now]);
    scalar_to_quoly(&x[now], answer.g.slot());
    scalar_to_quoly(&s[now], answer.s.slot());
    scalar_to_quoly(&t[now], answer.t.slot());
}

bool is_wrapper(const polynode *p) { return p->expo == 0 && !p->is_number && !p->next; }

/* The value as a polynomial with `depth` wrappers on top, unless it is constant. */
void give_padded(poly_handle &p, int depth, quolynode **q) {
    for (; depth > 0 && !is_constant(p.get()); depth--) {
        polynode *wrapped = nullptr;
        make_monomial(&wrapped, 0, p.release());
        *p.slot() = wrapped;
    }
    poly_to_value(p, q);
}

bool has_negative_exponents(const polynode *p) {
    for (; p; p = p->next)
        if (p->expo < 0 || (!p->is_number && has_negative_exponents(p->poly))) return true;
    return false;
}

/* The error that two polynomials, of which one may be a constant, raise; 0 for none. Strips the wrappers that they have
   in common, *depth of them. */
int egcd_complaint(const polynode *&a, const polynode *&b, int *depth) {
    if (laurent && (has_negative_exponents(a) || has_negative_exponents(b))) return 198;
    if (!modularmode) return 284;
    if (!mod_is_prime()) return 293;
    *depth = 0;
    while ((is_constant(a) || is_wrapper(a)) && (is_constant(b) || is_wrapper(b)) && (is_wrapper(a) || is_wrapper(b))) {
        if (is_wrapper(a)) a = a->poly;
        if (is_wrapper(b)) b = b->poly;
        ++*depth;
    }
    if (field_depth > 0 && *depth + 1 >= field_depth) return 348;
    if (!is_constant(a) && !is_constant(b) && (a->expo == 0) != (b->expo == 0)) return 349;
    return is_uni(a) && is_uni(b) ? 0 : 348;
}

/* False, and an error has been raised. */
bool egcd_polys(const polynode *a, const polynode *b, egcd_answer &answer) {
    int depth;
    if (const int complaint = egcd_complaint(a, b, &depth)) {
        error(complaint, token);
        return false;
    }
    poly_handle g, s, t;
    extended_poly_gcd(a, b, g.slot(), s.slot(), t.slot());
    give_padded(g, depth, answer.g.slot());
    give_padded(s, depth, answer.s.slot());
    give_padded(t, depth, answer.t.slot());
    return true;
}

bool egcd_values(const quolynode *a, const quolynode *b, egcd_answer &answer) {
    if (a->is_num && b->is_num) {
        if (lintmode) {
            error(modularmode ? 348 : 62, token);
            return false;
        }
        egcd_nums(a->numb, b->numb, answer);
        return true;
    }
    if ((!a->is_num && a->den) || (!b->is_num && b->den)) {
        error(186, token);
        return false;
    }
    poly_handle lone_a, lone_b; /* of a number */
    if (a->is_num) quoly_to_poly(a, lone_a.slot());
    if (b->is_num) quoly_to_poly(b, lone_b.slot());
    return egcd_polys(a->is_num ? lone_a.get() : a->num, b->is_num ? lone_b.get() : b->num, answer);
}

} // namespace

/* Egcd(a, b) and Egcd(a, b, ^s, ^t): the cofactors go to the variables s and t. */
void builtin_egcd(builtin_call &call) {
    argument a, b;
    read_two(call, a, b);
    egcd_answer answer;
    const bool done = egcd_values(a.get(), b.get(), answer);
    if (token_is(token, ",")) {
        call.read_on();
        named_place s, t;
        s.read(call);
        require_comma(call);
        t.read(call);
        if (done) {
            s.store(answer.s);
            t.store(answer.t);
        }
    }
    close_paren(call);
    if (done)
        answer.g.release_to(call.result);
    else
        call.give(1);
}

} // namespace tolvek
