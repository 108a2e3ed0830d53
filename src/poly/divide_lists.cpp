/* The classical division of term lists, one exponent after the other from the top.

   Each term of the quotient with the tail of the divisor makes a row of products in descending order, which a heap
   merges with the others and with the terms of the dividend (S. Johnson, Sparse polynomial arithmetic, 1974; M. Monagan
   and R. Pearce, Polynomial division using dynamic arrays, heaps, and packed exponent vectors, 2007). What is left at an
   exponent is divided by the leading coefficient, which gives the next term of the quotient, or belongs to the
   remainder. So neither operand is copied or rewritten, and no rest is walked again and again. */
#include "poly/add.h"
#include "poly/coefficient_sum.h"
#include "poly/divide_work.h"
#include "poly/flat_divide.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

namespace {

class step_division {
  public:
    step_division(const polynode *a, const polynode *b, pt *names, const division_rule &the_rule, bool want_remainder)
        : at(a), lead(b), below(names_below(names)), rule(the_rule), with_remainder(want_remainder), sum(poly_mult),
          by_number(led_by_number(b) ? top_number(b) : &number_1) {
        find_least(a, b);
    }
    bool run();
    growing_list quotient, remainder;

  private:
    /* The exponent below which the quotient has no term: an exact one of a domain begins where it must. */
    void find_least(const polynode *a, const polynode *b) {
        const int64_t least = int64_t{lowest_exponent(a)} - lowest_exponent(b);
        if (rule.power_units)
            least_expo = least;
        else
            least_expo = least > 0 && ring_is_domain() && !rule.rough && !with_remainder ? least : 0;
    }
    /* The coefficient of what is left at e. It stands in *own, or lies in a as it is, `lone` for a number term. Null
       for 0. */
    const polynode *next_coefficient(int64_t e, poly_handle *own, polynode *lone);
    bool divide_coefficient(const polynode *c, poly_handle *q);
    void append(int64_t e, poly_handle &c);
    int64_t next_exponent() const {
        if (rows.empty()) return at->expo;
        return at ? std::max<int64_t>(at->expo, rows[0].expo) : rows[0].expo;
    }
    void advance_top();

    const polynode *at; /* the terms of a that are still to come */
    const polynode *const lead;
    pt *const below;
    const division_rule rule;
    const bool with_remainder;
    int64_t least_expo;
    coefficient_sum sum;
    number_divisor by_number;
    buffer<product_row> rows;
    uint32_t places = 0;
};

void step_division::advance_top() {
    std::pop_heap(rows.begin(), rows.end(), comes_later);
    product_row &r = rows.back();
    r.inner = r.inner->next;
    if (!r.inner) return rows.pop();
    r.expo = int64_t{r.outer->expo} + r.inner->expo;
    std::push_heap(rows.begin(), rows.end(), comes_later);
}

const polynode *step_division::next_coefficient(int64_t e, poly_handle *own, polynode *lone) {
    for (; !rows.empty() && rows[0].expo == e; advance_top()) {
        safe_point();
        sum.add(rows[0].outer, rows[0].inner, below);
    }
    const polynode *c = nullptr;
    if (at && at->expo == e) {
        c = coefficient_of(at, lone);
        at = at->next;
    }
    *own->slot() = sum.take();
    if (!*own) return c;
    poly_inplace(own->get());
    if (c) better_poly_add(own->release(), c, own->slot());
    return poly_iszero(own->get()) ? nullptr : own->get();
}

bool step_division::divide_coefficient(const polynode *c, poly_handle *q) {
    if (led_by_number(lead)) {
        bool exact;
        *q->slot() = number_quotient(c, by_number, &exact);
        return exact;
    }
    return divides_exactly(c, lead->poly, q->slot(), below, rule);
}

/* The term x^e * c of the quotient, and its row. */
void step_division::append(int64_t e, poly_handle &c) {
    polynode *t = term_of(e, c);
    quotient.append(t);
    if (!lead->next) return;
    rows.push({e + lead->next->expo, places++, t, lead->next});
    std::push_heap(rows.begin(), rows.end(), comes_later);
}

/* False when the division is not exact and no remainder is wanted. */
bool step_division::run() {
    while (at || !rows.empty()) {
        safe_point();
        const int64_t e = next_exponent();
        poly_handle own;
        polynode lone;
        const polynode *c = next_coefficient(e, &own, &lone);
        if (!c) continue;
        const int64_t q_expo = e - lead->expo;
        if (q_expo < least_expo) {
            if (with_remainder) {
                if (!own) poly_assign(c, own.slot());
                remainder.append(term_of(e, own));
            } else if (rule.rough) {
                return true;
            } else {
                return false;
            }
            continue;
        }
        poly_handle term;
        if (!divide_coefficient(c, &term) && !rule.rough) return false;
        if (!term || poly_iszero(term.get())) continue;
        append(q_expo, term);
    }
    return true;
}

} // namespace

bool divide_by_steps(const polynode *a, const polynode *b, polynode **q, polynode **r, pt *names,
                     const division_rule &rule) {
    check_stack();
    step_division d(a, b, names, rule, r);
    if (!d.run()) return false;
    poly_handle quotient(list_or_zero(d.quotient.release()));
    if (r) replace_poly(list_or_zero(d.remainder.release()), r);
    if (q) quotient.release_to(q);
    return true;
}

/* ---- the roads of an exact division ---- */

static bool quotient_by_constant(const polynode *a, const polynode *b, polynode **q) {
    number_divisor d(b->num);
    bool exact;
    polynode *quotient = number_quotient(a, d, &exact);
    if (!exact) return false;
    if (q)
        replace_poly(list_or_zero(quotient), q);
    else
        free_poly(&quotient);
    return true;
}

static bool constant_quotient(int32_t v, polynode **q) {
    if (q) poly_set(v, q);
    return true;
}

bool divides_exactly(const polynode *a, const polynode *b, polynode **q, pt *names, const division_rule &rule) {
    check_stack();
    if (is_constant(b)) return quotient_by_constant(a, b, q);
    if (poly_iszero(a)) return constant_quotient(0, q);
    if (a == b) return constant_quotient(1, q);
    if (!rule.power_units && (is_constant(a) || a->expo < b->expo)) return false;
    if (!rule.power_units && lean_operands(a, b) && arrays_pay(a, b)) return divides_in_arrays(a, b, q);
    if (!rule.rough && !any_relation(names)) {
        const flat_verdict verdict = divide_flat(a, b, q, rule.power_units);
        if (verdict != flat_verdict::unfit) return verdict == flat_verdict::divides;
    }
    return divide_by_steps(a, b, q, nullptr, names, rule);
}

} // namespace tolvek
