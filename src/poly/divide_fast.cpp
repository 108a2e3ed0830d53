/* Recursive division of lists by a monic divisor, in the manner of Karatsuba's product (T. Jebelean, Practical integer
   division with Karatsuba complexity, 1997, for polynomials).

   With h = deg b / 2 rounded down, b = B1 x^h + B0 and a = A1 x^2h + A0, the quotient of A1 by B1 is the high part of
   the quotient, and what it leaves, less its product with B0, is divided by B1 again. Where deg a is above 2 deg b - 1
   the remainder may have the degree of b or more; a classical division then ends the step. Parts are views: copies of
   the nodes of the top level, which share the coefficients of the operand. */
#include "poly/add.h"
#include "poly/divide_work.h"
#include "poly/measures.h"
#include "poly/mult.h"
#include "top/heap.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

namespace {

/* The terms of a list from exponent `from` up to below `to`, with `from` taken off. */
class part_of_list {
  public:
    part_of_list(const polynode *p, int64_t from, int64_t to) {
        while (p && p->expo >= to) p = p->next;
        std::size_t n = 0;
        for (const polynode *t = p; t && t->expo >= from; t = t->next) n++;
        node.resize(n);
        for (std::size_t i = 0; i < n; i++, p = p->next) {
            node[i] = *p;
            node[i].next = i + 1 < n ? &node[i + 1] : nullptr;
            node[i].expo = static_cast<int32_t>(p->expo - from);
            if (p->is_number && node[i].expo != 0) { /* a number term that was taken down further than to 0 */
                constant = *p;
                constant.next = nullptr;
                node[i].is_number = 0;
                node[i].poly = &constant;
            } else if (!p->is_number && node[i].expo == 0 && is_constant(p->poly)) {
                node[i].is_number = 1;
                node[i].num = p->poly->num;
            }
        }
    }
    const polynode *get() const { return node.empty() ? nullptr : node.data(); }

  private:
    buffer<polynode> node;
    polynode constant;
};

void zero_and_copy(const polynode *a, poly_handle *q, poly_handle *r) {
    poly_set(0, q->slot());
    poly_assign(a, r->slot());
}

/* All steps of this file go by handles; a may be null for 0. */
void divide_classically(const polynode *a, const polynode *b, poly_handle *q, poly_handle *r, pt *names) {
    if (!a) {
        poly_set(0, q->slot());
        poly_set(0, r->slot());
    } else if (poly_iszero(a) || a->expo < b->expo) {
        zero_and_copy(a, q, r);
    } else if (is_constant(b)) { /* 1 */
        poly_assign(a, q->slot());
        poly_set(0, r->slot());
    } else {
        divide_by_steps(a, b, q->slot(), r->slot(), names, {});
    }
}

void by_halves(const polynode *a, const polynode *b, poly_handle *q, poly_handle *r, pt *names);
void by_shifts(const polynode *a, const polynode *b, poly_handle *q, poly_handle *r, pt *names);

void by_ratio(const polynode *a, const polynode *b, poly_handle *q, poly_handle *r, pt *names) {
    if (a && 4 * int64_t{a->expo} > 9 * int64_t{b->expo})
        by_shifts(a, b, q, r, names);
    else
        by_halves(a, b, q, r, names);
}

/* r := x^h r - q B0 */
void correct(poly_handle *r, const poly_handle &q, const part_of_list &low, int32_t h, pt *names) {
    raise_exponents(r->slot(), h);
    if (!low.get() || poly_iszero(q.get())) return;
    poly_handle product;
    poly_mult(q.get(), low.get(), product.slot(), names);
    best_poly_sub(r->release(), product.release(), r->slot());
}

void by_halves(const polynode *a, const polynode *b, poly_handle *q, poly_handle *r, pt *names) {
    check_stack();
    const int32_t least = std::max(div_poly_cutoff, 2);
    if (!a || b->expo < 2 || 3 * int64_t{a->expo} < 4 * int64_t{b->expo} || fast_poly_length(b, least) < least)
        return divide_classically(a, b, q, r, names);
    const int32_t h = b->expo / 2;
    constexpr int64_t top = INT64_MAX;
    const part_of_list b_high(b, h, top), b_low(b, 0, h), a_high(a, 2 * int64_t{h}, top), a_low(a, 0, 2 * int64_t{h});
    poly_handle q1, q2;
    by_ratio(a_high.get(), b_high.get(), &q1, r, names);
    correct(r, q1, b_low, h, names);
    poly_handle rest(r->release());
    by_ratio(rest.get(), b_high.get(), &q2, r, names);
    correct(r, q2, b_low, h, names);
    if (a_low.get()) better_poly_add(r->release(), a_low.get(), r->slot());
    raise_exponents(q1.slot(), h);
    best_poly_add(q1.release(), q2.release(), q->slot());
    if (poly_iszero(r->get()) || r->get()->expo < b->expo) return;
    poly_handle more, reduced;
    divide_classically(r->get(), b, &more, &reduced, names);
    reduced.release_to(r->slot());
    best_poly_add(q->release(), more.release(), q->slot());
}

/* b is shifted up, so that the degrees have a better ratio. */
void by_shifts(const polynode *a, const polynode *b, poly_handle *q, poly_handle *r, pt *names) {
    check_stack();
    const int32_t least = std::max(div_poly_cutoff, 2);
    if (!a || fast_poly_length(b, least) < least) return divide_classically(a, b, q, r, names);
    const int64_t s = std::min<int64_t>(3 * int64_t{b->expo} / 5, a->expo / 2 - int64_t{b->expo});
    if (s <= 0) return by_halves(a, b, q, r, names);
    const part_of_list shifted(b, -s, INT64_MAX);
    poly_handle rest, more;
    by_halves(a, shifted.get(), q, &rest, names);
    raise_exponents(q->slot(), static_cast<int32_t>(s));
    by_halves(rest.get(), b, &more, r, names);
    best_poly_add(q->release(), more.release(), q->slot());
}

/* Blocks of 2 deg b exponents from the top: the remainder so far stands above the next block. Where the remainder is 0
   the blocks without terms are passed over. */
void by_blocks(const polynode *a, const polynode *b, poly_handle *q, poly_handle *r, pt *names) {
    const int64_t width = 2 * int64_t{b->expo};
    growing_list parts;
    poly_set(0, r->slot());
    const polynode *at = a;
    for (int64_t block = a->expo / width; block >= 0; block--) {
        safe_point();
        const bool empty = !at || at->expo < block * width;
        if (empty && poly_iszero(r->get())) {
            if (!at) break;
            block = at->expo / width;
        }
        const part_of_list part(at, block * width, INT64_MAX);
        raise_exponents(r->slot(), static_cast<int32_t>(width));
        if (part.get()) better_poly_add(r->release(), part.get(), r->slot());
        while (at && at->expo >= block * width) at = at->next;
        poly_handle quotient, rest(r->release());
        by_ratio(rest.get(), b, &quotient, r, names);
        if (poly_iszero(quotient.get())) continue;
        if (block > 0) raise_exponents(quotient.slot(), static_cast<int32_t>(block * width));
        parts.append_all(quotient.release());
    }
    *q->slot() = list_or_zero(parts.release());
}

bool with_negative_exponents(const polynode *a, const polynode *b) {
    return lowest_exponent(a) < 0 || lowest_exponent(b) < 0;
}

using division = void (*)(const polynode *a, const polynode *b, poly_handle *q, poly_handle *r, pt *names);

void divide_to(division road, const polynode *a, const polynode *b, polynode **r, polynode **q, pt *names) {
    poly_handle quotient, remainder;
    if (with_negative_exponents(a, b) || is_constant(b)) road = divide_classically;
    road(a, b, &quotient, &remainder, names);
    quotient.release_to(q);
    remainder.release_to(r);
}

} // namespace

void fast_mod_and_div(const polynode *a, const polynode *b, polynode **r, polynode **q, pt *names, int) {
    division road = by_blocks;
    if (4 * int64_t{a->expo} <= 9 * int64_t{b->expo})
        road = by_halves;
    else if (3 * int64_t{a->expo} < 10 * int64_t{b->expo})
        road = by_shifts;
    divide_to(road, a, b, r, q, names);
}

void karat_mod_and_div(int, const polynode *a, const polynode *b, polynode **r, polynode **q, pt *names) {
    divide_to(by_halves, a, b, r, q, names);
}

void three_case(int, const polynode *a, const polynode *b, polynode **r, polynode **q, pt *names) {
    divide_to(by_shifts, a, b, r, q, names);
}

} // namespace tolvek
