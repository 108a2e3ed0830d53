#include "language/parameters.h"

#include "language/execution.h"
#include "language/expressions.h"
#include "matrix/array_names.h"
#include "matrix/elements.h"
#include "numbers/free_lists.h"
#include "poly/variables.h"
#include "top/guards.h"

namespace tolvek {

/* ---- a call being set up ---- */

pending_call::~pending_call() {
    while (variable *v = first) {
        first = v->next_of_call;
        if (v->array) drop_parameter_array(v->array);
        free_quoly(&v->value);
        push_variable(v);
    }
}

variable *pending_call::add(const parameter *p) {
    variable *v = newvariable();
    v->tok = p->tok;
    v->by_reference = p->by_reference;
    *place = v;
    place = &v->next_of_call;
    return v;
}

bool pending_call::has_arrays() const {
    const variable *v = first;
    while (v && !v->array) v = v->next_of_call;
    return v != nullptr;
}

variable *pending_call::link() {
    for (variable *v = first; v; v = v->next_of_call)
        if (v->array && !is_linked(v->array->aliased)) array_error(28, v->array->aliased->tok);
    for (variable *v = first; v; v = v->next_of_call) {
        link_variable(v);
        if (v->array) link_array(v->array);
    }
    variable *list = first;
    first = nullptr;
    return list;
}

/* ---- arguments ---- */

/* An element of an array as the home of a by-reference parameter. */
static void read_element_reference(stream *input, variable *v, name **cursor) {
    const coordinates c = evalcoords(input, cursor, "]", ",", false);
    array_record *a = array_seek(v->home);
    v->home_index = element_index(a, c);
    quolynode **slot = array_quoly_ptr(a, v->home_index);
    if (!slot) {
        error(318, v->home);
        v->by_reference = false;
    }
    quoly_assign(slot && *slot ? *slot : quol_num_0, &v->value);
    scanner(input, token, cursor);
}

/* Entered with the first token of the argument, or the ")" that stands in its place. */
static void read_reference(stream *input, variable *v, name **cursor) {
    if (token_is(token, ")")) error(206, v->tok);
    if (token_is(token, "^")) scanner(input, token, cursor);
    int level;
    if (!is_lower_letter(first_char(token)) || is_poly_name(token.text, &level)) error(207, token);
    v->home = token;
    scanner(input, token, cursor);
    if (token_is(token, "[")) return read_element_reference(input, v, cursor);
    quolynode **slot;
    spec_retrieve(v->home, &v->value, &slot);
}

/* [a] or [%[n]] : the parameter shares the elements of the array. */
static void read_array(stream *input, variable *v, name **cursor) {
    array_region region;
    left_side(input, cursor, region, false);
    if (region.sub) array_error(24, region.tok);
    v->array = new_parameter_array(v->tok, existing(region));
    quoly_set(0, &v->value);
    v->value->array_mark = 1;
}

static void read_value(stream *input, variable *v, name **cursor) {
    if (token_is(token, ")"))
        quoly_set(0, &v->value);
    else if (token_is(token, "["))
        read_array(input, v, cursor);
    else
        old_expre(input, &v->value, cursor);
}

/* Behind an argument: "," goes on to the next parameter, ")" leaves the others 0. */
static void read_arguments(stream *input, const function *f, pending_call &call, name **cursor) {
    for (const parameter *p = f->params; p; p = p->next) {
        int level;
        if (is_poly_name(p->tok.text, &level)) error(125, p->tok);
        variable *v = call.add(p);
        if (!token_is(token, ")")) scanner(input, token, cursor);
        kept_value<int> earlier(values_held, values_held + (p != f->params));
        held_cells arrays(call.has_arrays());
        (p->by_reference ? read_reference : read_value)(input, v, cursor);
        if (!token_is(token, ",") && !token_is(token, ")")) error(14, token);
    }
    if (!token_is(token, ")")) error(15, token);
}

void read_call(stream *input, const function *f, pending_call &call, token_record &behind, name **cursor) {
    scanner(input, behind, cursor);
    if (!f->params) return;
    bool has_list = token_is(behind, "(");
    token = behind;
    if (!has_list) set_token(token, ")");
    read_arguments(input, f, call, cursor);
    if (has_list) scanner(input, behind, cursor);
}

/* ---- the end of a call ---- */

/* The slot of the caller's variable or element; null when it has gone. */
static void give_to_element(variable *v) {
    array_record *a = find_array(v->home);
    if (!a || v->home_index >= a->size) return;
    quolynode **slot = array_quoly_ptr(a, v->home_index);
    if (!slot) return;
    bring_into_ring(slot, &v->value);
    if (a->sparse_head)
        store_sparse_element({nullptr, a, v->home_index}, v->value);
    else
        store_element(slot, v->value);
    v->value = nullptr;
}

/* By name, once all parameters are off the tables. A home that has gone drops the value. */
static void give_back(variable *v) {
    if (!v->by_reference) return;
    if (v->home_index >= 0) return give_to_element(v);
    variable *home = find_variable(v->home);
    if (!home) return;
    bring_into_ring(&home->value, &v->value);
    store_value(&home->value, v->value);
    v->value = nullptr;
}

/* Has another array of the name taken the place of the parameter, or nothing at all? */
static bool is_lost(variable *v) {
    array_record *newest = find_array(v->tok);
    if (newest == v->array) return false;
    if (!newest || newest->is_parameter()) return true;
    sayf("*** Warning. On function termination, found an array with the same name as an \n"
         "       array parameter, namely: %s\n",
         v->tok.text);
    return true;
}

/* Takes the arrays of the parameters off their table; the name of one that was lost, or null. */
static const variable *unlink_arrays(call_frame &frame) {
    const variable *lost = nullptr;
    for (variable *v = frame.bound; v; v = v->next_of_call) {
        if (!v->array) continue;
        if (is_lost(v)) lost = v;
        end_parameter_array(v->array);
        v->array = nullptr;
    }
    return lost;
}

void remove_args(call_frame &frame) {
    for (variable *v = frame.bound; v; v = v->next_of_call) unlink_variable(v);
    const variable *lost = unlink_arrays(frame);
    const token_record lost_name = lost ? lost->tok : blank;
    for (variable *v = frame.bound; v; v = v->next_of_call) give_back(v);
    while (variable *v = frame.bound) {
        frame.bound = v->next_of_call;
        free_quoly(&v->value);
        push_variable(v);
    }
    if (lost) error(30, lost_name);
}

bool is_parameter(quolynode *const *slot) {
    for (int i = statcount; i-- > 0;)
        for (const variable *v = running_frame(i).bound; v; v = v->next_of_call)
            if (&v->value == slot) return true;
    return false;
}

void abandon_args(call_frame &frame) {
    for (variable *v = frame.bound; v; v = v->next_of_call) retire_variable(v);
    if (unlink_arrays(frame)) out_err_mess(30);
}

} // namespace tolvek
