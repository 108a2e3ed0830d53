/* What the polynomial routines share among themselves: term lists under construction, copies and negations of lists.

   Recursion goes one frame a level and there are at most most_variables levels, so the routines look at the stack once,
   at their entry: what they use below it is a part of the reserve. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* The list of nodes from first to last goes back by one splice. What the terms hold is the caller's matter. */
inline void push_nodes(polynode *first, polynode *last) {
    last->next = polygarb;
    if constexpr (TOLVEK_POISONING) {
        for (polynode *t = first, *next; t != polygarb; t = next) {
            next = t->next;
            poison(t, sizeof(polynode));
        }
    }
    polygarb = first;
}

/* A node of expo 0 with no coefficient yet, which free_poly accepts. */
inline polynode *new_term() {
    polynode *t = newpoly();
    t->expo = 0;
    t->is_number = 0;
    t->next = nullptr;
    t->poly = nullptr;
    return t;
}

/* A term list under construction, from the head down. It goes back unless it is released. */
class growing_list {
  public:
    growing_list() = default;
    ~growing_list() {
        if (first) free_poly(&first);
    }
    growing_list(const growing_list &) = delete;
    growing_list &operator=(const growing_list &) = delete;

    void append(polynode *t) {
        t->next = nullptr;
        *end = t;
        end = &t->next;
    }
    void append_all(polynode *list) {
        for (*end = list; *end; end = &(*end)->next) {
        }
    }
    /* All the terms that are still to come. */
    void append_rest(polynode *list) { *end = list; }
    bool empty() const { return !first; }
    polynode *release() {
        polynode *list = first;
        first = nullptr;
        end = &first;
        return list;
    }

  private:
    polynode *first = nullptr;
    polynode **end = &first;
};

/* Copies of term lists, canonical or not; null gives null. They pass safe points. */
polynode *copy_list(const polynode *a);
polynode *negated_copy(const polynode *a);

/* Negates one term. */
inline void negate_term(polynode *t) {
    if (t->is_number)
        in_place_neg(t->num);
    else
        poly_inplace(t->poly);
}

/* *p := x^s * *p in place for the variable x of the list, s above 0; negative exponents may become 0. Passes no safe
   point. */
void raise_exponents(polynode **p, int32_t s);

/* The list, or the constant 0 when it is empty. */
inline polynode *list_or_zero(polynode *list) {
    if (!list) poly_set(0, &list);
    return list;
}

/* p takes the place of what *to held, which goes. */
inline void replace_poly(polynode *p, polynode **to) {
    polynode *old = *to;
    *to = p;
    if (old != p) free_poly(&old);
}

} // namespace tolvek
