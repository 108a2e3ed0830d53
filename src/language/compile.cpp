#include "language/compile.h"

#include "language/execution.h"
#include "language/expressions.h"
#include "language/functions.h"
#include "language/run.h"
#include "poly/variables.h"
#include "top/heap.h"

namespace tolvek {

quolynode **bound_slot(reference *r) {
    if (r->generation != scalar_generation) {
        int level;
        variable *v = is_poly_name(r->tok.text, &level) ? nullptr : find_variable(r->tok);
        r->slot = v ? &v->value : nullptr;
        r->generation = scalar_generation;
    }
    return r->slot;
}

void free_compiled_names(compiled_names **names) {
    heap_release(*names);
    *names = nullptr;
}

/* ---- the table ---- */

struct names_handle {
    compiled_names *table = static_cast<compiled_names *>(heap_request_cleared(sizeof(compiled_names)));
    names_handle() = default;
    ~names_handle() { free_compiled_names(&table); }
    names_handle(const names_handle &) = delete;
    names_handle &operator=(const names_handle &) = delete;

    void add(const token_record &t) {
        if (table->count == most_compiled_names) {
            error(230, t);
            return;
        }
        reference &r = table->at[table->count++];
        r.tok = t;
        hash_of(r.tok, scalar_chains);
        r.generation = scalar_generation - 1; /* to be looked up */
    }
};

static void add_parameters(names_handle &names, const function *f) {
    for (const parameter *p = f->params; p; p = p->next) names.add(p->tok);
}

static void read_item(stream *input, names_handle &names, name **cursor) {
    scanner(input, token, cursor);
    if (token_is(token, "[")) {
        scanner(input, token, cursor);
        error(28, token); /* no array exists */
    }
    if (!is_lower_letter(first_char(token))) {
        error(232, token);
        return;
    }
    token_record item = token;
    scanner(input, token, cursor);
    if (token_is(token, "[")) error(28, item); /* no array exists */
    if (!find_variable(item)) error(19, item);
    names.add(item);
}

/* The list of items; absent, nothing but parameters is bound. */
static void read_items(stream *input, names_handle &names, name **cursor) {
    if (!token_is(token, "(")) return;
    do read_item(input, names, cursor);
    while (token_is(token, ","));
    require(")", 231, input, cursor);
}

/* ---- binding ---- */

static void bind_tokens(name *list, compiled_names *table) {
    for (name *n = list; n; n = n->next)
        for (int i = 0; i < table->count && is_lower_letter(first_char(n->tok)); i++)
            if (token_is(n->tok, table->at[i].tok.text)) n->bound = &table->at[i];
}

static void bind_forms(form *list, compiled_names *table) {
    for (form *f = list; f; f = f->next) {
        cond *c = f->statement;
        bind_tokens(c->tokens, table);
        bind_tokens(c->test, table);
        bind_forms(c->body, table);
        bind_forms(c->else_part, table);
    }
}

/* ---- the statement ---- */

/* The form of the function's body whose tokens are being run; null when the word stands inside another statement. */
static form *own_form(const function *f) {
    for (form *own = f->body; own; own = own->next)
        if (own->statement->tokens && own->statement->tokens == startexpr) return own;
    return nullptr;
}

static void bind_function(stream *input, function *f, name **cursor) {
    form *own = own_form(f);
    scanner(input, token, cursor);
    names_handle names;
    if (token_is(token, "*"))
        scanner(input, token, cursor);
    else
        add_parameters(names, f);
    read_items(input, names, cursor);
    if (!own) {
        error(229, token);
        return;
    }
    f->names = names.table;
    names.table = nullptr;
    f->compiled_from = own->next;
    bind_forms(f->compiled_from, f->names);
    compiled_functions++;
}

void compile(stream *input, quolynode **result, name **cursor) {
    if (statcount == 0) {
        error(234, token);
        return;
    }
    auto *f = const_cast<function *>(running_frame(statcount - 1).called);
    if (!f->names) bind_function(input, f, cursor);
    eval_form(input, f->compiled_from, result);
    if (!*result) quoly_set(0, result);
    token = end_of_list;
    exit_flag = 1; /* the statements behind this one have been run */
}

} // namespace tolvek
