/* Typed free lists in front of the stashes and the heap. A pop takes the head of a list; an empty list asks the
   stash or the heap. A push links the record in front. No list ever shrinks. Records come undefined unless their
   line says otherwise. Nothing here raises an error of its own; a heap that refuses is mem_error's matter. */
#pragma once

#include "numbers/poison.h"
#include "top/records.h"

#include <cstddef>

namespace tolvek {

extern numnode *numhead;
extern number *imhead;
extern polynode *polygarb;
extern quolynode *quolygarb;
extern colm *colm_garb;
extern name *name_garb;
extern variable *var_garb;
extern fixnode *fixgarb;

/* ---- the pops and pushes themselves, in line: a list that is not empty costs no call ---- */

template <auto link, class T> inline T *pop_record(T *&head) {
    T *record = head;
    if (!record) [[unlikely]]
        return nullptr;
    unpoison(record, sizeof(T));
    head = record->*link;
    return record;
}

template <auto link, class T> inline void push_record(T *&head, T *record) {
    record->*link = head;
    head = record;
    poison(record, sizeof(T));
}

/* The rare path: one more record when its list is empty. */
numnode *more_digits();
number *more_numbers();
polynode *more_polynodes();
quolynode *more_quolynodes();
colm *more_colms();
name *more_names();
fixnode *more_fixes();

inline numnode *newdigit() {
    numnode *d = pop_record<&numnode::next>(numhead);
    return d ? d : more_digits();
}
inline polynode *newpoly() {
    polynode *p = pop_record<&polynode::next>(polygarb);
    return p ? p : more_polynodes();
}
inline quolynode *newquoly() { /* original null */
    quolynode *q = pop_record<&quolynode::link>(quolygarb);
    if (!q) q = more_quolynodes();
    q->original = nullptr;
    return q;
}
inline colm *newcolm() {
    colm *c = pop_record<&colm::next>(colm_garb);
    return c ? c : more_colms();
}
inline number *newimag() { /* num_len 0, num_link null */
    number *x = pop_record<&number::num_link>(imhead);
    if (!x) x = more_numbers();
    x->num_link = nullptr;
    x->num_len = 0;
    return x;
}
inline name *newname() { /* next and bound null, the flags off */
    name *n = pop_record<&name::next>(name_garb);
    if (!n) n = more_names();
    n->next = nullptr;
    n->blank_after = n->long_path = n->plain = n->plain_known = false;
    n->bound = nullptr;
    return n;
}
variable *newvariable(); /* all links null, no home */
inline fixnode *newfix() {
    fixnode *f = pop_record<&fixnode::next>(fixgarb);
    return f ? f : more_fixes();
}

/* Pushes. A null pointer is not accepted. The values that a record points to are the caller's matter. */
inline void push_digit(numnode *d) { push_record<&numnode::next>(numhead, d); }
inline void push_imag(number *x) { push_record<&number::num_link>(imhead, x); }
inline void push_poly(polynode *p) { push_record<&polynode::next>(polygarb, p); }
void drop_original(quolynode *q); /* quoly/quoly.h */
inline void push_quoly(quolynode *q) {
    if (q->original) [[unlikely]]
        drop_original(q);
    push_record<&quolynode::link>(quolygarb, q);
}
inline void push_colm(colm *c) { push_record<&colm::next>(colm_garb, c); }
inline void push_fix(fixnode *f) { push_record<&fixnode::next>(fixgarb, f); }
inline void push_variable(variable *v) { push_record<&variable::next>(var_garb, v); }

/* Pushes the chain from head to tail by one splice. */
inline void push_digits(numnode *head, numnode *tail) {
    tail->next = numhead;
    if constexpr (TOLVEK_POISONING) {
        for (numnode *d = head, *next; d != numhead; d = next) {
            next = d->next;
            poison(d, sizeof(numnode));
        }
    }
    numhead = head;
}

/* Gives a list of name records back; null is fine. */
void freename(name *list);

/* 5,001 digits and 5,001 polynodes, so that the first statements find their lists filled. */
void preload_free_lists();

/* Lets the free lists of digits, numbers, polynodes and quolynodes go: their records come back never. */
void abandon_free_lists();

/* Records handed out and not on their free list now: what a test compares before and after a statement. */
struct records_in_use {
    long digits, numbers, polynodes, quolynodes, colms, names, variables, fixes;
    bool operator==(const records_in_use &) const = default;
};
records_in_use count_records_in_use();

} // namespace tolvek
