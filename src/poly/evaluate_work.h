/* Private to the evaluation of polynomials. */
#pragma once

#include "poly/evaluate.h"

namespace tolvek {

/* Why a list does not give every variable of a polynomial a number: it ends early, a variable stays, or one is replaced
   by a polynomial. */
enum class list_fault { none, ended, stays, no_number };

/* *value := p at the numbers of the list, in the ring in force; without use when there is a fault. */
list_fault try_number_value(const polynode *p, const polynode *list, number *value);

/* Takes the first term out of *list: its coefficient, as a polynomial of the next level. */
polynode *take_coefficient(polynode **list);

/* The sum of the terms c_i * x^(e_i) of one level at x = value / den, times den^high / value^low. Exponents lie between
   low and high, which without a denominator is not looked at. The c_i, value and den are polynomials of one and the same
   level, the next one or any other. */
class level_sum {
  public:
    explicit level_sum(const polynode *its_value, const polynode *its_den = nullptr, int32_t its_low = 0,
                       int32_t its_high = 0);
    /* The list, null included, is consumed; the c_i are other than 0. A canonical polynomial, 0 included. */
    polynode *of(polynode **list) const;

  private:
    /* Terms that follow one another: their sum times den^greatest / value^least. */
    struct block {
        poly_handle sum;
        int32_t least = 0, greatest = 0;
    };
    void first_term(polynode **list, block &b) const;
    void sum_of_terms(polynode **list, int n, block &b) const;
    void step_by_step(polynode **list, block &b) const;
    void join(block &b, block &below) const; /* b := both */

    const polynode *value, *den; /* den null: 1 */
    int32_t low, high;
    bool is_one, grows, halves;
};

} // namespace tolvek
