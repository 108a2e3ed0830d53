#include "language/compile.h"

#include "language/builtin_args.h"
#include "language/execution.h"
#include "language/expressions.h"
#include "language/functions.h"
#include "language/run.h"
#include "matrix/elements.h"
#include "poly/variables.h"
#include "top/heap.h"

#include <algorithm>

namespace tolvek {

quolynode **bound_slot(reference *r) {
    if (r->is_array) return nullptr;
    if (r->generation != scalar_generation) {
        int level;
        variable *v = is_poly_name(r->tok.text, &level) ? nullptr : find_variable(r->tok);
        r->slot = v ? &v->value : nullptr;
        r->generation = scalar_generation;
    }
    return r->slot;
}

array_record *bound_array(reference *r) {
    if (!r->is_array) return nullptr;
    if (r->generation != array_generation) {
        r->array = find_array(r->tok);
        r->generation = array_generation;
    }
    return r->array;
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

    void add(const token_record &t, bool is_array) {
        if (table->count == most_compiled_names) {
            error(230, t);
            return;
        }
        reference &r = table->at[table->count++];
        r.tok = t;
        hash_of(r.tok, scalar_chains);
        r.is_array = is_array;
        r.generation = 0; /* to be looked up */
    }
};

static void add_parameters(names_handle &names, const call_frame &frame) {
    for (const variable *v = frame.bound; v; v = v->next_of_call) {
        if (v->array && v->array->sparse_head) array_error(247, v->tok);
        names.add(v->tok, v->array);
    }
}

/* [a] */
static void read_array_item(stream *input, names_handle &names, name **cursor) {
    scanner(input, token, cursor);
    const array_record *a = array_seek(token);
    if (a->sparse_head) array_error(242, token);
    names.add(token, true);
    scanner(input, token, cursor);
    require("]", 24, input, cursor);
}

/* The index of x[k]: figures, or a scalar that holds a number. */
static int64_t read_index(stream *input, name **cursor) {
    constexpr int64_t greatest = most_cells;
    scanner(input, token, cursor);
    int64_t k = 0;
    if (is_digit(first_char(token))) {
        for (; is_digit(first_char(token)); scanner(input, token, cursor))
            k = std::min(10 * k + (token.text[0] - '0'), greatest);
        return k;
    }
    const variable *v = is_lower_letter(first_char(token)) ? find_variable(token) : nullptr;
    if (!v) array_error(246, token);
    k = integer_argument(v->value, 246);
    scanner(input, token, cursor);
    return k;
}

/* x[k], with "[" as the token: the element must have a value. */
static void read_element_item(stream *input, names_handle &names, token_record &array_name, name **cursor) {
    const int64_t k = read_index(input, cursor);
    array_record *a = array_seek(array_name);
    quolynode *const *slot = array_quoly_ptr(a, element_index(a, {k, 0, false}));
    if (!slot || !*slot) array_error(29, array_name);
    if (!token_is(token, "]")) array_error(267, token);
    scanner(input, token, cursor);
    names.add(array_name, true);
}

static void read_item(stream *input, names_handle &names, name **cursor) {
    scanner(input, token, cursor);
    if (token_is(token, "[")) return read_array_item(input, names, cursor);
    if (!is_lower_letter(first_char(token))) {
        error(232, token);
        return;
    }
    token_record item = token;
    scanner(input, token, cursor);
    if (token_is(token, "[")) return read_element_item(input, names, item, cursor);
    if (!find_variable(item)) error(19, item);
    names.add(item, false);
}

/* The list of items; absent, nothing but parameters is bound. */
static void read_items(stream *input, names_handle &names, name **cursor) {
    if (!token_is(token, "(")) return;
    do read_item(input, names, cursor);
    while (token_is(token, ","));
    require(")", 231, input, cursor);
}

/* ---- binding ---- */

static reference *find_reference(const name *n, compiled_names *table) {
    const bool subscripted = n->next && token_is(n->next->tok, "[");
    for (int i = 0; i < table->count; i++)
        if (table->at[i].is_array == subscripted && same_text(n->tok, table->at[i].tok)) return &table->at[i];
    return nullptr;
}

static void bind_tokens(name *list, compiled_names *table) {
    for (name *n = list; n; n = n->next)
        if (is_lower_letter(first_char(n->tok))) n->bound = find_reference(n, table);
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
        add_parameters(names, running_frame(statcount - 1));
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

/* A later call may bring a sparse array for a parameter that is bound. */
static void check_parameters(const call_frame &frame, const compiled_names *table) {
    for (const variable *v = frame.bound; v; v = v->next_of_call)
        for (int i = 0; v->array && v->array->sparse_head && i < table->count; i++)
            if (same_text(v->tok, table->at[i].tok)) array_error(247, v->tok);
}

void compile(stream *input, quolynode **result, name **cursor) {
    if (statcount == 0) {
        error(234, token);
        return;
    }
    auto *f = const_cast<function *>(running_frame(statcount - 1).called);
    if (!f->names)
        bind_function(input, f, cursor);
    else
        check_parameters(running_frame(statcount - 1), f->names);
    eval_form(input, f->compiled_from, result);
    if (!*result) quoly_set(0, result);
    token = end_of_list;
    exit_flag = 1; /* the statements behind this one have been run */
}

} // namespace tolvek
