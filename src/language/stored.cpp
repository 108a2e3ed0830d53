/* The records of stored statements. */
#include "language/stored.h"

#include "language/builtin_table.h"
#include "language/compile.h"
#include "language/names.h"
#include "numbers/free_lists.h"
#include "top/heap.h"

namespace tolvek {

form *formhead = nullptr;
cond *condhead = nullptr;

form *newform() {
    form *f = formhead;
    if (f)
        formhead = f->next;
    else
        f = static_cast<form *>(heap_request(sizeof(form)));
    *f = {};
    return f;
}

cond *newcond() {
    cond *c = condhead;
    if (c)
        condhead = c->free_link;
    else
        c = static_cast<cond *>(heap_request(sizeof(cond)));
    *c = {};
    return c;
}

void free_cond(cond **c) {
    cond *old = *c;
    *c = nullptr;
    if (!old) return;
    freename(old->test);
    free_form(&old->body);
    free_form(&old->else_part);
    freename(old->tokens);
    old->free_link = condhead;
    condhead = old;
}

void free_comments(comment **list) {
    while (comment *c = *list) {
        *list = c->next;
        freename(c->tokens);
        heap_release(c);
    }
}

void free_form(form **list) {
    while (form *f = *list) {
        *list = f->next;
        free_cond(&f->statement);
        free_comments(&f->comments);
        f->next = formhead;
        formhead = f;
    }
}

void free_function(function **f) {
    function *old = *f;
    *f = nullptr;
    if (!old) return;
    while (parameter *p = old->params) {
        old->params = p->next;
        heap_release(p);
    }
    free_compiled_names(&old->names);
    free_form(&old->body);
    heap_release(old);
}

void name_list::freename(name *list) { tolvek::freename(list); }

void name_list::add(const token_record &t) {
    name *n = newname();
    n->tok = t;
    int c = first_char(t);
    if (is_lower_letter(c)) n->tok.hash_slot = hash(t.text, scalar_chains);
    if (is_upper_letter(c)) {
        n->tok.hash_slot = hash(t.text, function_chains);
        n->tok.builtin = static_cast<int16_t>(find_built_in(0, numbuiltins, t.text));
    }
    (last_name ? last_name->next : first_name) = n;
    last_name = n;
}

form *form_list::add() {
    form *f = newform();
    (last_form ? last_form->next : first_form) = f;
    last_form = f;
    f->statement = newcond();
    return f;
}

} // namespace tolvek
