/* A variable set to 1, and its level taken out. */
#include "poly/add.h"
#include "poly/model_work.h"
#include "quoly/quoly.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <cassert>
#include <utility>

namespace tolvek {

namespace {

/* A sum of many polynomials, added up like a binary counter: part[i] is 0 or the sum of 2^i of them. So each term is
   merged about log2 of their number times. */
class balanced_sum {
  public:
    balanced_sum() = default;
    ~balanced_sum() {
        for (polynode *&p : part) free_poly(&p);
    }
    balanced_sum(const balanced_sum &) = delete;
    balanced_sum &operator=(const balanced_sum &) = delete;

    void add(polynode *p) { /* p is consumed */
        int i = 0;
        for (; part[i]; i++) best_poly_add(std::exchange(part[i], nullptr), p, &p);
        part[i] = p;
    }
    polynode *total() {
        polynode *sum = nullptr;
        for (polynode *&p : part) {
            if (!p) continue;
            if (sum)
                best_poly_add(std::exchange(p, nullptr), sum, &sum);
            else
                sum = std::exchange(p, nullptr);
        }
        return list_or_zero(sum);
    }

  private:
    static constexpr int most_parts = 40;
    polynode *part[most_parts] = {};
};

} // namespace

/* Takes the first term out of *list: its coefficient, as a polynomial of the next level. */
static polynode *take_coefficient(polynode **list) {
    polynode *t = *list;
    *list = t->next;
    t->next = nullptr;
    if (t->is_number) return t;
    polynode *c = t->poly;
    push_poly(t);
    return c;
}

/* The sum of the coefficients of *p, which is consumed. */
static polynode *sum_of_coefficients(polynode **p) {
    balanced_sum sum;
    while (*p) sum.add(take_coefficient(p));
    return sum.total();
}

/* The same at a deeper level: every coefficient is evaluated, and the canonical form restored. */
static polynode *evaluated_coefficients(polynode **p, int level) {
    growing_list result;
    while (*p) {
        int32_t expo = (*p)->expo;
        poly_handle c(take_coefficient(p));
        eval_at_one(c.slot(), level - 1);
        if (poly_iszero(c.get())) continue;
        poly_handle term;
        make_monomial(term.slot(), expo, c.release());
        result.append(term.release());
    }
    return list_or_zero(result.release());
}

void eval_at_one(polynode **p, int level) {
    check_stack();
    safe_point();
    if (is_constant(*p)) return;
    poly_handle list(std::exchange(*p, nullptr));
    if (level > 1)
        *p = evaluated_coefficients(list.slot(), level);
    else
        make_monomial(p, 0, sum_of_coefficients(list.slot()));
}

void remove_one(polynode **p, int level) {
    if (is_constant(*p)) return;
    if (level > 1) {
        for (polynode *t = *p; t; t = t->next)
            if (!t->is_number) remove_one(&t->poly, level - 1);
        return;
    }
    assert((*p)->expo == 0 && !(*p)->next);
    *p = take_coefficient(p);
}

void remove_poly_var(quolynode *q, int level) {
    if (q->is_num) return;
    remove_one(&q->num, level);
    if (q->den) remove_one(&q->den, level);
}

} // namespace tolvek
