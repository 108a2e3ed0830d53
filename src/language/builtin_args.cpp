#include "language/builtin_args.h"

#include "language/names.h"
#include "language/parameters.h"
#include "matrix/elements.h"
#include "numbers/number.h"
#include "poly/variables.h"
#include "top/driver.h"

#include <cmath>
#include <utility>

namespace tolvek {

const quolynode *argument::get() const {
    if (by_name) return named.get();
    return own ? own.get() : quol_num_0;
}

void argument::read_own(builtin_call &call) {
    old_expre(call.input, own.slot(), call.cursor);
    values_held++;
}

void argument::read(builtin_call &call) {
    by_name = token_is(token, "^");
    if (by_name)
        named.read(call);
    else
        read_own(call);
}

void argument::read_expression(builtin_call &call) {
    call.read_on();
    if (token_is(token, "^")) {
        error(313, token);
        call.read_on();
    }
    read_own(call);
}

changed_argument::changed_argument(builtin_call &call) : by_name(token_is(token, "^")) { value.read(call); }

void changed_argument::give(quoly_handle &fresh, builtin_call &call) {
    if (!by_name)
        fresh.release_to(call.result);
    else
        value.where().store(fresh);
}

void check_for_paren(builtin_call &call) {
    call.read_on();
    if (!token_is(token, "(")) error(177, token);
}

void require_comma(builtin_call &call) {
    if (!token_is(token, ","))
        error(202, token);
    else
        call.read_on();
}

void close_paren(builtin_call &call) { require(")", 1, call.input, call.cursor); }

void standard_read(builtin_call &call, argument &a) {
    check_for_paren(call);
    call.read_on();
    a.read(call);
    close_paren(call);
}

void read_two(builtin_call &call, argument &a, argument &b) {
    check_for_paren(call);
    call.read_on();
    a.read(call);
    require_comma(call);
    b.read(call);
}

/* ---- places by name ---- */

void named_place::read_element(builtin_call &call, token_record &array_name) {
    const coordinates c = evalcoords(call.input, call.cursor, "]", ",", false);
    array_record *a = array_seek(array_name);
    const int64_t index = element_index(a, c);
    at.slot = array_quoly_ptr(a, index);
    if (a->sparse_head) {
        at.array = a;
        at.index = index;
    }
    cells_held++;
    call.read_on();
}

void named_place::read(builtin_call &call) {
    if (token_is(token, "^")) call.read_on();
    token_record wanted = token;
    int level;
    if (is_poly_name(wanted.text, &level)) error(125, wanted);
    call.read_on();
    if (token_is(wanted, "<")) {
        at.slot = &prevnum;
    } else if (token_is(token, "[")) {
        read_element(call, wanted);
    } else if (variable *v = find_variable(wanted)) {
        at.slot = &v->value;
    } else {
        error(19, wanted);
    }
}

void named_place::store(quoly_handle &value) const {
    bring_into_ring(at.slot, value.slot());
    if (at.array)
        store_sparse_element(at, value.release());
    else if (at.slot)
        store_value(at.slot, value.release());
}

void named_place::exchange(const named_place &other) const {
    if (!at.array && !other.at.array && !ring_is_paused()) {
        std::swap(*at.slot, *other.at.slot);
        return;
    }
    quoly_handle mine, its;
    quoly_assign(get(), mine.slot());
    quoly_assign(other.get(), its.slot());
    store(its);
    other.store(mine);
}

/* ---- what arguments hold ---- */

polynomial_view::polynomial_view(const quolynode *q) {
    if (q->is_num) {
        lone = {0, 1, nullptr, {q->numb}};
        seen = &lone;
        return;
    }
    seen = q->num;
    if (!q->den) return;
    error(186, token);
    lone = {0, 1, nullptr, {quol_num_0->numb}};
    seen = &lone;
}

int variable_argument(const quolynode *q) {
    int level = 0;
    if (!is_poly_var(q, &level)) {
        error(282, token);
        return 0;
    }
    return level;
}

int64_t integer_argument(const quolynode *q, int n) {
    constexpr long double greatest = 9.0e18L;
    constexpr int most_digits = 2; /* 56 bits */
    if (q->is_num) {
        const number *x = q->numb;
        if (flotemode && std::fabs(x->flote_val) < greatest) return std::llround(x->flote_val);
        if (lintmode && !flotemode) return x->lint_val;
        if (!flotemode && !lintmode && x->num_len <= most_digits)
            return x->num_len == 1 ? x->num_head->digit
                                   : (static_cast<int64_t>(x->num_head->digit) * digit_radix) + x->num_tail->digit;
    }
    error(n, token);
    return 0;
}

} // namespace tolvek
