/* The scalar variables and how names are found.

   A name's record goes to the head of its chain, so that a parameter shadows a global of the same name. Whoever
   evaluates something else between finding a value and using it holds the SLOT (quolynode **), not the value, and
   reads it again: a function or a command level may have replaced it. So records that are deleted stay whole on a
   pending list until the outermost statement has ended, and at a level above 1 replaced values do too. */
#pragma once

#include "language/tokens.h"
#include "quoly/quoly.h"
#include "top/text_io.h"

namespace tolvek {

constexpr int scalar_chains = 151; /* for arrays too */
constexpr int function_chains = 71;
extern variable *sca_store[scalar_chains];

/* h := (h * 123 + byte) mod m over the bytes of the text, from h = 0. */
uint16_t hash(const char *text, int m);
/* The slot of a token, computed once. */
uint16_t hash_of(token_record &t, int m);

variable *find_variable(token_record &t); /* null: none */

/* *location := the slot of the scalar, or null if there is none. The value of an array parameter warns and gives 0,
   in the result. */
void retrieve(token_record &t, quolynode ***location, quolynode **result, stream *input, name **cursor);
/* The same for a scalar argument, with a copy of its value in the result; error 19 if there is none. */
void spec_retrieve(token_record &t, quolynode **result, quolynode ***location);
/* Creates the scalar, or replaces its value, taking the value over. */
variable *insert_var(token_record &t, quoly_handle &value);
/* Takes the newest scalar of the name off its chain; false if there is none. */
bool delete_variable(token_record &t);
/* Puts a parameter's record at the head of its chain; takes a record off it (false: it is on none); takes it off and lets
   it wait on the pending list. */
void link_variable(variable *v);
bool unlink_variable(variable *v);
void retire_variable(variable *v);
/* Calls `visit` for the slot of every value of a scalar, deleted ones that wait included. */
void visit_variables(void (*visit)(quolynode **slot, void *context), void *context);
/* Deletes all scalars at once, freeing them. For tests. */
void forget_variables();

/* Grows when scalars go, and with compiled functions when parameters come or go: what tokens are bound to is looked up
   anew then. */
extern uint64_t scalar_generation;
extern int compiled_functions; /* functions that hold bound tokens, or have held them */

/* Stores a new value in a slot; the old one goes, or waits on the pending list at a level above 1. */
void store_value(quolynode **slot, quolynode *value);
/* Frees what waits. Called when the outermost statement has ended or was unwound. */
void release_pending();

} // namespace tolvek
