/* The operator #: values in the place of variables, all at once.

   Values n_j / d_j go into a polynomial p without a division: its terms are summed up over the common denominator of all
   the powers that occur, and one quotient at the end is reduced. With m_j and h_j the least and the greatest exponent of
   the j-th variable, p at the values is S / D with D = the product of n_j^(-m_j) d_j^(h_j). The terms of one level are
   summed up from the coefficients of the levels below, which have got their values already. */
#include "language/tokens.h"
#include "poly/evaluate_work.h"
#include "poly/model_work.h"
#include "quoly/calculus.h"
#include "top/heap.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

namespace {

/* The j-th value, and the range of the j-th variable's exponents in the polynomial at work. */
struct substitute {
    polynode lone;         /* a plain number as a polynomial */
    const polynode *value; /* the numerator */
    const polynode *den;   /* null: 1 */
    int32_t low, high;
};

class substitution {
  public:
    substitution(const quolynode *const *values, int number_of_values)
        : count(number_of_values), list(number_of_values) {
        for (int j = 0; j < count; j++) {
            substitute &s = list[j];
            if (values[j]->is_num) {
                s.lone = {0, 1, nullptr, {values[j]->numb}};
                s.value = &s.lone;
                s.den = nullptr;
            } else {
                s.value = values[j]->num;
                s.den = values[j]->den;
            }
        }
    }

    /* *q := p at the values; false, and error 22, when p has a negative power of a variable whose value is 0. */
    bool value_of(const polynode *p, quoly_handle &q) {
        measure(p);
        for (int j = 0; j < count; j++)
            if (list[j].low < 0 && poly_iszero(list[j].value)) {
                error(22, quotsign);
                return false;
            }
        if (number_value(p, q)) return true;
        poly_handle sum(list_or_zero(walk(p, 0)));
        poly_to_value(sum, q.slot());
        for (int j = 0; j < count; j++) {
            if (list[j].low < 0) divide(q, list[j].value, -list[j].low);
            if (list[j].den) divide(q, list[j].den, list[j].high);
        }
        return true;
    }

  private:
    void measure(const polynode *p) {
        for (int j = 0; j < count; j++) list[j].low = list[j].high = 0;
        widen(p, 0);
    }
    void widen(const polynode *p, int j) {
        for (; j < count && p; p = p->next) {
            list[j].low = std::min(list[j].low, p->expo);
            list[j].high = std::max(list[j].high, p->expo);
            if (!p->is_number) widen(p->poly, j + 1);
        }
    }

    /* Where every variable of p gets a number: true, and *q := the value. */
    bool number_value(const polynode *p, quoly_handle &q) {
        if (!no_denominators_from(0)) return false;
        evaluation_list numbers;
        for (const substitute &s : list) {
            if (!is_constant(s.value)) return false;
            numbers.put(s.value->num);
        }
        quoly_set(0, q.slot());
        return try_number_value(p, numbers.get(), q->numb) == list_fault::none;
    }

    /* p is of level j + 1, the result of level 1; null for 0. Every d_i is there with the power h_i, i >= j. */
    polynode *walk(const polynode *p, int j) {
        if (is_constant(p) && no_denominators_from(j)) return num_sign(p->num) ? copy_list(p) : nullptr;
        if (j == count) return padded(copy_list(p), j);
        safe_point();
        growing_list terms;
        for (const polynode *t = p; t; t = t->next) {
            polynode lone = *t;
            lone.next = nullptr;
            poly_handle c(walk(t->is_number ? &lone : t->poly, j + 1));
            if (!c || poly_iszero(c.get())) continue;
            polynode *term = new_term();
            terms.append(term);
            term->expo = t->expo;
            term->poly = c.release();
        }
        if (terms.empty()) return nullptr;
        poly_handle rest(terms.release());
        const substitute &s = list[j];
        return level_sum(s.value, s.den, s.low, s.high).of(rest.slot());
    }
    bool no_denominators_from(int j) const {
        for (; j < count; j++)
            if (list[j].den || list[j].low < 0) return false;
        return true;
    }
    static polynode *padded(polynode *p, int k) {
        for (; k > 0; k--) make_monomial(&p, 0, p);
        return p;
    }

    /* q := q / by^e */
    static void divide(quoly_handle &q, const polynode *by, int32_t e) {
        if (e == 0) return;
        poly_handle power;
        poly_assign(by, power.slot());
        quoly_handle divisor;
        poly_to_value(power, divisor.slot());
        quoly_compute_power(divisor.slot(), static_cast<uint32_t>(e));
        fast_quoly_quot(q.slot(), divisor.get(), 0);
    }

    int count;
    buffer<substitute> list;
};

} // namespace

void get_evalquoly(quolynode **q, const quolynode *const *values, int count) {
    check_stack();
    if ((*q)->is_num || ((*q)->is_rat && !lintmode)) return;
    substitution at(values, count);
    quoly_handle num, den;
    bool defined = at.value_of((*q)->num, num);
    if (defined && (*q)->den) {
        defined = at.value_of((*q)->den, den);
        if (defined && quoly_is_zero(den.get())) {
            error(210, token_record{"#", hash_unknown});
            defined = false;
        }
        if (defined) fast_quoly_quot(num.slot(), den.get(), 0);
    }
    if (!defined) quoly_set(1, num.slot());
    num.release_to(q);
}

} // namespace tolvek
