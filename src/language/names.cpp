#include "language/names.h"

#include "language/functions.h"
#include "matrix/arrays.h"

#include "numbers/free_lists.h"
#include "poly/canonical.h"
#include "quoly/quoly.h"
#include "top/driver.h"

#include <cstring>

namespace tolvek {

variable *sca_store[scalar_chains];
static variable *pending_variables = nullptr;
static quolynode *pending_values = nullptr; /* through `link` */

uint64_t scalar_generation = 1;
int compiled_functions = 0;

uint16_t hash(const char *text, int m) {
    int h = 0;
    for (; *text; text++) h = (h * 123 + static_cast<unsigned char>(*text)) % m;
    return static_cast<uint16_t>(h);
}

uint16_t hash_of(token_record &t, int m) {
    if (t.hash_slot == hash_unknown) t.hash_slot = hash(t.text, m);
    return t.hash_slot;
}

/* The link that holds the newest variable of the name, or the null link at the end of its chain. */
static variable **find_link(token_record &t) {
    variable **link = &sca_store[hash_of(t, scalar_chains)];
    while (*link && !same_text((*link)->tok, t)) link = &(*link)->next;
    return link;
}

variable *find_variable(token_record &t) { return *find_link(t); }

static bool is_array_parameter(const quolynode *q) { return q && q->is_num && q->array_mark; }

void retrieve(token_record &t, quolynode ***location, quolynode **result, stream *, name **) {
    variable *v = find_variable(t);
    *location = v ? &v->value : nullptr;
    if (!v || !is_array_parameter(v->value)) return;
    sayf("Warning. %s is an array parameter used as a scalar.\n", t.text);
    sayf("  Value 0 used for %s.\n", t.text);
    flush(&standard_output);
    quoly_set(0, result);
    *location = result;
}

void spec_retrieve(token_record &t, quolynode **result, quolynode ***location) {
    variable *v = find_variable(t);
    *location = v ? &v->value : nullptr;
    if (!v) {
        error(19, t);
        quoly_set(0, result);
    } else if (is_array_parameter(v->value)) {
        sayf("Warning. %s is an array parameter.\n", t.text);
        sayf("  Value 0 used for %s.\n", t.text);
        flush(&standard_output);
        quoly_set(0, result);
    } else {
        quoly_assign(v->value, result);
    }
}

variable *insert_var(token_record &t, quoly_handle &value) {
    if (value && value->is_num) value->array_mark = 0;
    variable *v = find_variable(t);
    if (v) {
        store_value(&v->value, value.release());
        return v;
    }
    v = newvariable();
    v->tok = t;
    check_stored(value.get());
    v->value = value.release();
    link_variable(v);
    return v;
}

/* The record stays whole until the outermost statement has ended. */
static void retire(variable **link) {
    scalar_generation++;
    variable *v = *link;
    *link = v->next;
    v->next = pending_variables;
    pending_variables = v;
}

bool delete_variable(token_record &t) {
    variable **link = find_link(t);
    if (!*link) return false;
    retire(link);
    return true;
}

void link_variable(variable *v) {
    if (compiled_functions) scalar_generation++;
    variable **chain = &sca_store[hash_of(v->tok, scalar_chains)];
    v->next = *chain;
    *chain = v;
}

static variable **link_to(variable *v) {
    variable **link = &sca_store[v->tok.hash_slot];
    while (*link && *link != v) link = &(*link)->next;
    return link;
}

bool unlink_variable(variable *v) {
    variable **link = link_to(v);
    if (!*link) return false;
    if (compiled_functions) scalar_generation++;
    *link = v->next;
    return true;
}

void retire_variable(variable *v) {
    variable **link = link_to(v);
    if (*link) retire(link);
}

static void free_variables(variable **list) {
    while (variable *v = *list) {
        *list = v->next;
        free_quoly(&v->value);
        push_variable(v);
    }
}

static void visit_chain(variable *v, void (*visit)(quolynode **, void *), void *context) {
    for (; v; v = v->next)
        if (v->value) visit(&v->value, context);
}

void visit_variables(void (*visit)(quolynode **slot, void *context), void *context) {
    for (variable *chain : sca_store) visit_chain(chain, visit, context);
    visit_chain(pending_variables, visit, context);
}

void forget_variables() {
    scalar_generation++;
    for (variable *&chain : sca_store) free_variables(&chain);
}

void store_value(quolynode **slot, quolynode *value) {
    check_stored(value);
    quolynode *old = *slot;
    *slot = value;
    if (old && values_are_held()) {
        old->link = pending_values;
        pending_values = old;
    } else {
        free_quoly(&old);
    }
}

void release_pending() {
    release_retired_forms();
    free_variables(&pending_variables);
    while (quolynode *q = pending_values) {
        pending_values = q->link;
        free_quoly(&q);
    }
    release_pending_arrays();
}

} // namespace tolvek
