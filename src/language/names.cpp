#include "language/names.h"

#include "numbers/free_lists.h"
#include "quoly/quoly.h"
#include "top/driver.h"

#include <cstring>

namespace tolvek {

variable *sca_store[scalar_chains];
static variable *pending_variables = nullptr;
static quolynode *pending_values = nullptr; /* through `link` */

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
    while (*link && std::strcmp((*link)->tok.text, t.text) != 0) link = &(*link)->next;
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
    v->param_home = nullptr;
    v->value = value.release();
    v->next = sca_store[t.hash_slot];
    sca_store[t.hash_slot] = v;
    return v;
}

bool delete_variable(token_record &t) {
    variable **link = find_link(t);
    variable *v = *link;
    if (!v) return false;
    *link = v->next;
    v->next = pending_variables;
    pending_variables = v;
    return true;
}

static void free_variables(variable **list) {
    while (variable *v = *list) {
        *list = v->next;
        free_quoly(&v->value);
        push_variable(v);
    }
}

void forget_variables() {
    for (variable *&chain : sca_store) free_variables(&chain);
}

void store_value(quolynode **slot, quolynode *value) {
    quolynode *old = *slot;
    *slot = value;
    if (old && levelcount > 1) {
        old->link = pending_values;
        pending_values = old;
    } else {
        free_quoly(&old);
    }
}

void release_pending() {
    free_variables(&pending_variables);
    while (quolynode *q = pending_values) {
        pending_values = q->link;
        free_quoly(&q);
    }
}

} // namespace tolvek
