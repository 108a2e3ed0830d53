#include "numbers/int_gcd.h"

#include "numbers/flat_chains.h"
#include "numbers/flat_gcd.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/number_work.h"
#include "quoly/quoly.h"
#include "top/interrupts.h"

#include <utility>

namespace tolvek {

namespace {

uint32_t magnitude(int32_t digit) { return static_cast<uint32_t>(digit < 0 ? -digit : digit); }

bool is_zero(const number *x) { return x->num_head->digit == 0; }

/* In front of every method, none of which takes a 0: dst := the magnitude of the other operand. */
bool gcd_with_zero(const number *a, const number *b, number *dst) {
    if (!is_zero(a) && !is_zero(b)) return false;
    abs_val_num(is_zero(a) ? b : a, dst);
    return true;
}

int32_t gcd_of_digits(const number *a, const number *b) {
    return static_cast<int32_t>(smallgcd(magnitude(a->num_head->digit), magnitude(b->num_head->digit)));
}

} // namespace

uint32_t smallgcd(uint32_t a, uint32_t b) { return static_cast<uint32_t>(flat_gcd_word(a, b)); }

void binary_gcd(const number *a, const number *b, number *dst) {
    if (gcd_with_zero(a, b, dst)) return;
    if (a->num_len == 1 && b->num_len == 1)
        set_one_digit(gcd_of_digits(a, b), dst);
    else
        flat_chain_gcd(a->num_head, a->num_len, b->num_head, b->num_len, dst);
}

void gcd(const number *a, const number *b, number *dst) {
    number_handle x, y, rest;
    abs_val_num(a, &x);
    abs_val_num(b, &y);
    while (!is_zero(&y)) {
        pos_divide_noq(x.num_head, y.num_head, x.num_len, y.num_len, &rest);
        take_chain(&y, &x);
        take_chain(&rest, &y);
        safe_point();
    }
    take_chain(&x, dst);
}

/* ---- with cofactors ---- */

static void cofactors_of_digits(const number *a, const number *b, number *g, number *ca, number *cb) {
    const int32_t x = a->num_head->digit, y = b->num_head->digit, d = gcd_of_digits(a, b);
    set_one_digit(d, g);
    set_one_digit(x / d, ca);
    set_one_digit(y / d, cb);
}

/* One operand is 0: the other one over its magnitude is its sign. */
static void cofactors_with_zero(const number *a, const number *b, number *g, number *ca, number *cb) {
    const auto sign = [](const number *x) { return (x->num_head->digit > 0) - (x->num_head->digit < 0); };
    const int sign_a = sign(a), sign_b = sign(b);
    gcd_with_zero(a, b, g);
    set_one_digit(sign_a, ca);
    set_one_digit(sign_b, cb);
}

void extgcd(const number *a, const number *b, number *g, number *ca, number *cb, int *coprime) {
    if (is_zero(a) || is_zero(b))
        cofactors_with_zero(a, b, g, ca, cb);
    else if (a->num_len == 1 && b->num_len == 1)
        cofactors_of_digits(a, b, g, ca, cb);
    else
        flat_chain_extgcd(a, b, g, ca, cb);
    *coprime = is_longint(g, 1);
}

/* ---- quolys and polynomials ---- */

void gcdnum(quolynode **q1, quolynode **q2) {
    if (flotemode || lintmode) {
        quoly_set(1, q1);
        return;
    }
    if (is_zero((*q1)->numb)) {
        std::swap((*q1)->numb, (*q2)->numb);
        abs_val_num((*q1)->numb, (*q1)->numb);
        return;
    }
    binary_gcd((*q1)->numb, (*q2)->numb, (*q1)->numb);
}

/* g, which holds no chain before the first number, takes in the numbers of p; true when g is 1 and the rest need not
   be looked at. */
static bool take_in_content(const polynode *p, number *g) {
    for (; p; p = p->next) {
        safe_point();
        if (!p->is_number) {
            if (take_in_content(p->poly, g)) return true;
            continue;
        }
        if (g->num_len < 1)
            abs_val_num(p->num, g);
        else
            binary_gcd(g, p->num, g);
        if (is_longint(g, 1)) return true;
    }
    return false;
}

void find_gcdcoefs(const polynode *p, number *g) {
    number_handle content;
    take_in_content(p, &content);
    if (is_zero(&content)) {
        tolvek_error("0 in find gcd coefs.", 0);
        set_one_digit(1, &content);
    }
    take_chain(&content, g);
}

void gcd_coefs(const polynode *p, polynode **q) {
    number_handle content;
    if (flotemode || lintmode)
        setvalue(1, &content);
    else
        find_gcdcoefs(p, &content);
    polynode *lone = newpoly();
    *lone = {0, 1, nullptr, {nullptr}};
    lone->num = newimag();
    content.release_to(lone->num);
    free_poly(q);
    *q = lone;
}

} // namespace tolvek
