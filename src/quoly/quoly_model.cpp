/* Making, copying, freeing and reading quolys. */
#include "numbers/handles.h"
#include "numbers/modular.h"
#include "numbers/number.h"
#include "poly/canonical.h"
#include "quoly/quoly.h"
#include "top/guards.h"

#include <cmath>

namespace tolvek {

quolynode *quol_num_0 = nullptr, *quol_num_1 = nullptr;

static void mark_plain_number(quolynode *q) {
    q->is_num = 1;
    q->is_rat = q->array_mark = 0;
    q->den = nullptr;
}

/* A node whose record is there before anything can fail leaves no half-made value behind. */
static quolynode *new_plain_number() {
    number *x = newimag();
    quolynode *q = newquoly();
    mark_plain_number(q);
    q->numb = x;
    return q;
}

void init_quoly_node(quolynode *q) {
    q->numb = newimag();
    mark_plain_number(q);
}

quolynode *new_fraction(poly_handle &num, poly_handle &den) {
    quolynode *q = newquoly();
    q->is_num = q->is_rat = q->array_mark = 0;
    q->num = num.release();
    q->den = den.release();
    return q;
}

void replace_quoly(quolynode *q, quolynode **r) {
    quolynode *old = *r;
    *r = q;
    if (old != q) free_quoly(&old);
    check_stored(q);
}

/* *q as a plain number whose record may be overwritten. */
static number *plain_number(quolynode **q) {
    if (!*q || !(*q)->is_num) {
        quolynode *fresh = new_plain_number();
        free_quoly(q);
        *q = fresh;
    }
    if ((*q)->original) drop_original(*q);
    (*q)->array_mark = 0;
    return (*q)->numb;
}

void quoly_set(int32_t value, quolynode **q) { quoly_set_int64(value, q); }
void quoly_set_int64(int64_t value, quolynode **q) {
    if (modularmode && (value < 0 || value >= modulus)) value = residue_of_integer(value);
    set_int64(value, plain_number(q));
}
void quoly_set_flote(long double value, quolynode **q) { plain_number(q)->flote_val = value; }

void scalar_to_quoly(number *x, quolynode **q) {
    number *to = plain_number(q);
    free_num(to);
    to->num_head = x->num_head;
    to->num_tail = x->num_tail;
    to->num_len = x->num_len;
    to->lint_val = x->lint_val;
    to->flote_val = x->flote_val;
    x->num_head = x->num_tail = nullptr;
    x->num_len = 0;
}

void quoly_assign(const quolynode *q, quolynode **r) {
    if (q == *r) return;
    if (q->is_num) {
        int32_t mark = q->array_mark;
        num_assign(q->numb, plain_number(r));
        (*r)->array_mark = mark;
        return;
    }
    poly_handle num, den;
    poly_assign(q->num, num.slot());
    poly_assign(q->den, den.slot());
    quolynode *copy = new_fraction(num, den);
    copy->is_rat = lintmode ? 0 : q->is_rat;
    replace_quoly(copy, r);
}

void free_quoly(quolynode **q) {
    quolynode *old = *q;
    *q = nullptr;
    if (!old) return;
    if (old->is_num) {
        free_imag(&old->numb);
    } else {
        free_poly(&old->num);
        free_poly(&old->den);
    }
    push_quoly(old);
}

/* Residues have no chain, so that the chain form gives back what either has. */
void free_in_any_form(quolynode **q) {
    const kept_value<int> chains(lintmode, 0);
    free_quoly(q);
}

void drop_original(quolynode *q) { free_in_any_form(&q->original); }

static quolynode *ready_constant(int32_t value) {
    quolynode *q = new_plain_number();
    special_set(value, q->numb);
    q->numb->lint_val = value;
    q->numb->flote_val = value;
    return q;
}

void make_quoly_constants() {
    make_poly_constants();
    make_dummy_variables();
    if (quol_num_0) return;
    quol_num_0 = ready_constant(0);
    quol_num_1 = ready_constant(1);
}

/* ---- polynomials as values ---- */

void base_quoly(int level, quolynode **q) {
    poly_handle variable;
    base_poly(variable.slot(), level);
    poly_to_value(variable, q);
}

void poly_to_value(poly_handle &p, quolynode **q) {
    poly_handle none;
    if (is_constant(p.get()))
        poly_consume(p.slot(), q);
    else
        replace_quoly(new_fraction(p, none), q);
}

void polynum_to_quoly(quolynode **q) { poly_consume(&(*q)->num, q); }

void quoly_consume(quolynode **q, polynode **p) {
    scalar_to_poly((*q)->numb, p);
    free_quoly(q);
}

void quoly_to_poly(const quolynode *q, polynode **p) {
    polynode lone{0, 1, nullptr, {q->numb}};
    node_assign(&lone, p);
}

int quoly_is_zero(const quolynode *q) { return q->is_num && num_sign(q->numb) == 0; }

int32_t quoly_to_int(const quolynode *q) {
    const number *x = q->numb;
    if (flotemode) {
        if (!(std::fabs(x->flote_val) < 9.0e18L)) return 0;
        return static_cast<int32_t>(std::llround(x->flote_val));
    }
    if (lintmode) return x->lint_val;
    uint32_t value = 0;
    for (const numnode *d = x->num_head; d; d = d->next)
        value = (value << digit_bits) + static_cast<uint32_t>(d->digit);
    return static_cast<int32_t>(value);
}

} // namespace tolvek
