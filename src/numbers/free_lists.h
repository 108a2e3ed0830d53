/* Typed free lists in front of the stashes and the heap. A pop takes the head of a list; an empty list asks the
   stash or the heap. A push links the record in front. No list ever shrinks. Records come undefined unless their
   line says otherwise. Nothing here raises an error of its own; a heap that refuses is mem_error's matter. */
#pragma once

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

numnode *newdigit();
number *newimag();      /* num_len 0, num_link null */
polynode *newpoly();
quolynode *newquoly();
colm *newcolm();
name *newname();        /* next null, blank_after off */
variable *newvariable();

/* Pushes. A null pointer is not accepted. The values that a record points to are the caller's matter. */
void push_digit(numnode *d);
void push_imag(number *x);
void push_poly(polynode *p);
void push_quoly(quolynode *q);
void push_colm(colm *c);
void push_variable(variable *v);

/* Pushes the chain from head to tail by one splice. */
void push_digits(numnode *head, numnode *tail);

/* Gives a list of name records back; null is fine. */
void freename(name *list);

/* 5,001 digits and 5,001 polynodes, so that the first statements find their lists filled. */
void preload_free_lists();

/* Records handed out and not on their free list now: what a test compares before and after a statement. */
struct records_in_use {
    long digits, numbers, polynodes, quolynodes, colms, names, variables;
    bool operator==(const records_in_use &) const = default;
};
records_in_use count_records_in_use();

} // namespace tolvek
