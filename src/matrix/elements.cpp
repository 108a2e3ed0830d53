#include "matrix/elements.h"

#include "matrix/sparse.h"
#include "poly/variables.h"
#include "top/driver.h"

#include <cmath>

namespace tolvek {

/* ---- coordinates ---- */

int64_t coordinate_value(const quolynode *q) {
    constexpr long double greatest = 9.0e18L;
    constexpr int most_digits = 2; /* 56 bits */
    if (!q->is_num) array_error(118, token);
    const number *x = q->numb;
    if (flotemode) {
        if (!(std::fabs(x->flote_val) < greatest)) array_error(27, token);
        return std::llround(x->flote_val);
    }
    if (lintmode) return x->lint_val;
    if (x->num_len > most_digits) array_error(27, token);
    int64_t value = 0;
    for (const numnode *d = x->num_head; d; d = d->next) value = value * digit_radix + d->digit;
    return value;
}

int64_t coordinate(stream *input, name **cursor, bool no_negative) {
    quoly_handle value;
    old_expre(input, value.slot(), cursor);
    int64_t c = coordinate_value(value.get());
    if (no_negative && c < 0) array_error(314, token);
    return c;
}

static int64_t read_coordinate(stream *input, name **cursor, bool no_negative) {
    scanner(input, token, cursor);
    return coordinate(input, cursor, no_negative);
}

/* In a modular ring an index is an integer all the same: x[7] is the seventh element modulo 5 too. */
coordinates evalcoords(stream *input, name **cursor, const char *end, const char *separator, bool no_negative) {
    modular_pause pause;
    coordinates c;
    c.a = read_coordinate(input, cursor, no_negative);
    if (token_equals(token, separator)) {
        c.b = read_coordinate(input, cursor, no_negative);
        c.two = true;
    }
    if (!token_equals(token, end)) array_error(61, token);
    return c;
}

/* ---- elements ---- */

/* One coordinate counts down the columns, in sparse arrays too. */
int64_t element_index(const array_record *a, const coordinates &c) {
    const int64_t first = c.a - addresser;
    if (!c.two) {
        if (first < 0 || first >= a->size) array_error(27, a->tok);
        return first;
    }
    const int64_t col = c.b - addresser;
    if (first < 0 || first >= a->rows || col < 0 || col >= a->cols()) array_error(27, a->tok);
    return col * a->rows + first;
}

quolynode **array_quoly_ptr(array_record *a, int64_t index) {
    if (!a->sparse_head) return &element(a, index);
    sparse_place at = place_of(index, 0, a, false);
    colm *c = get_sparse_colm(a->sparse_head, at.row, at.column);
    return c ? &c->value : nullptr;
}

/* An element of an ordinary array; one without a value becomes 0. */
static void ordinary_element(array_record *a, int64_t index, place &at) {
    at.slot = array_quoly_ptr(a, index);
    at.cell = true;
    if (!*at.slot) quoly_set(0, at.slot);
}

static void sparse_element(array_record *a, int64_t index, place &at, quolynode **result) {
    at.slot = array_quoly_ptr(a, index);
    if (token_is(token, ":")) {
        at.array = a;
        at.index = index;
    } else if (at.slot) {
        quoly_assign(*at.slot, result); /* the entry may go before the value is used */
    } else {
        quoly_set(0, result);
    }
}

/* The array is looked for behind its coordinates, which may have made or deleted it. */
void new_arretrieve(stream *input, name **cursor, token_record &array_name, place &at, quolynode **result) {
    coordinates c = evalcoords(input, cursor, "]", ",", false);
    array_record *a = find_array(array_name);
    if (!a) array_error(28, array_name);
    int64_t index = element_index(a, c);
    scanner(input, token, cursor);
    if (a->sparse_head)
        sparse_element(a, index, at, result);
    else
        ordinary_element(a, index, at);
}

/* A copy: the system array may be replaced before the value is used. */
void syst_element(stream *input, name **cursor, quolynode **result) {
    if (syst_is_empty()) array_error(175, token);
    coordinates c = evalcoords(input, cursor, "]", ",", false);
    quolynode **slot = array_quoly_ptr(&syst, element_index(&syst, c));
    if (slot && !*slot) {
        quoly_set(0, slot);
        warn_uninitialized("[<]");
    }
    quoly_assign(slot ? *slot : quol_num_0, result);
    scanner(input, token, cursor);
}

void store_sparse_element(const place &at, quolynode *value) {
    sparse_store(place_of(at.index, 0, at.array, false), at.array, value);
}

/* ---- statements ---- */

static void check_array_name(const token_record &t) {
    int level;
    if (!is_lower_letter(first_char(t))) array_error(40, t);
    if (is_poly_name(t.text, &level)) array_error(125, t);
}

/* An array of a name that exists hides the old one. */
void create_array(stream *input, name **cursor) {
    do {
        scanner(input, token, cursor);
        check_array_name(token);
        token_record array_name = token;
        scanner(input, token, cursor);
        if (!token_is(token, "[")) array_error(178, token);
        coordinates c = evalcoords(input, cursor, "]", ",", true);
        scanner(input, token, cursor);
        const int64_t cols = c.two ? c.b : 1;
        if (token_is(token, "Sparse")) {
            sparse_create(array_name, c.a, cols, !c.two, true);
            scanner(input, token, cursor);
        } else {
            insertarr(array_name, c.a, cols, !c.two);
        }
        new_array = 1;
    } while (token_is(token, ","));
}

void make_sparse(stream *input, name **cursor) {
    scanner(input, token, cursor);
    bool parenthesis = token_is(token, "(");
    if (parenthesis) scanner(input, token, cursor);
    if (!token_is(token, "[")) array_error(178, token);
    scanner(input, token, cursor);
    if (token_is(token, "<")) array_error(176, token);
    array_record *a = array_seek(token);
    scanner(input, token, cursor);
    if (!token_is(token, "]")) array_error(24, token);
    scanner(input, token, cursor);
    if (parenthesis) require(")", 1, input, cursor);
    if (a->sparse_head) return; /* it is sparse already */
    if (a->is_parameter()) array_error(138, a->tok);
    fill_sparse(a);
}

} // namespace tolvek
