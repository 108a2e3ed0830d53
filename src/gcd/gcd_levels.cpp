#include "gcd/gcd_levels.h"

#include "poly/model_work.h"
#include "top/heap.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <utility>

namespace tolvek {

/* A term list under exchange. Terms x^e y^f D come by ascending e, then by ascending f, so that x^e D is always the
   first term of the coefficient of y^f. */
class exchanged_list {
  public:
    void start_pass() { place = &lowest; }
    /* coefficient: that of y^f; it is consumed. */
    void add(int32_t e, int32_t f, poly_handle &coefficient) {
        while (*place && (*place)->expo < f) place = &(*place)->next;
        if (!*place || (*place)->expo != f) {
            polynode *t = new_term();
            t->expo = f;
            t->next = *place;
            *place = t;
        }
        polynode *term = nullptr;
        make_monomial(&term, e, coefficient.release());
        term->next = (*place)->poly;
        (*place)->poly = term;
    }
    /* The highest exponent first, and the number term without its wrapper. */
    polynode *release() {
        polynode *list = nullptr;
        while (polynode *t = lowest) {
            lowest = std::exchange(t->next, list);
            if (t->expo == 0 && is_constant(t->poly)) {
                polynode *number_term = t->poly;
                number_term->next = t->next;
                push_poly(t);
                t = number_term;
            }
            list = t;
        }
        return list_or_zero(list);
    }
    exchanged_list() = default;
    ~exchanged_list() { free_poly(&lowest); }
    exchanged_list(const exchanged_list &) = delete;
    exchanged_list &operator=(const exchanged_list &) = delete;

  private:
    polynode *lowest = nullptr; /* ascending */
    polynode **place = &lowest;
};

/* A copy of the coefficient of a term, as a polynomial of the next level. */
static void copy_coefficient(const polynode *t, poly_handle &copy) {
    if (t->is_number)
        node_assign(t, copy.slot());
    else
        poly_assign(t->poly, copy.slot());
}

/* The terms from the last one on. */
static buffer<const polynode *> terms_of(const polynode *p) {
    buffer<const polynode *> terms;
    for (; p; p = p->next) terms.push(p);
    for (std::size_t i = 0, k = terms.size(); i + 1 < k; i++) std::swap(terms[i], terms[--k]);
    return terms;
}

polynode *levels_exchanged(const polynode *p) {
    exchanged_list list;
    for (const polynode *t : terms_of(p)) {
        safe_point();
        list.start_pass();
        poly_handle coefficient;
        if (t->is_number) {
            copy_coefficient(t, coefficient);
            list.add(t->expo, 0, coefficient);
            continue;
        }
        for (const polynode *s : terms_of(t->poly)) {
            copy_coefficient(s, coefficient);
            list.add(t->expo, s->expo, coefficient);
        }
    }
    return list.release();
}

void swap_levels_1_2(polynode **p) { replace_poly(levels_exchanged(*p), p); }

/* A copy of p in which every coefficient that is no number has become change(coefficient, k); the change keeps
   constants constant. */
static polynode *with_coefficients(const polynode *p, int k, polynode *(*change)(const polynode *, int)) {
    growing_list list;
    for (; p; p = p->next) {
        if (p->is_number) {
            list.append(copy_term(p));
            continue;
        }
        poly_handle changed(change(p->poly, k));
        polynode *t = new_term();
        t->expo = p->expo;
        t->poly = changed.release();
        list.append(t);
    }
    return list.release();
}

polynode *level_to_front(const polynode *p, int k) {
    check_stack();
    if (k <= 1 || is_constant(p)) return copy_list(p);
    if (k == 2) return levels_exchanged(p);
    poly_handle second(with_coefficients(p, k - 1, level_to_front));
    return levels_exchanged(second.get());
}

polynode *level_from_front(const polynode *p, int k) {
    check_stack();
    if (k <= 1 || is_constant(p)) return copy_list(p);
    poly_handle second(levels_exchanged(p));
    if (k == 2) return second.release();
    return with_coefficients(second.get(), k - 1, level_from_front);
}

} // namespace tolvek
