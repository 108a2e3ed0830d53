/* Sums and products. The term and expression loops take operands by address and copy only what they must own. */
#include "language/expressions.h"

#include "language/char_sets.h"
#include "language/names.h"
#include "language/short_path.h"
#include "matrix/arrays.h"
#include "numbers/number.h"
#include "top/interrupts.h"

namespace tolvek {

int values_held = 0;

void own_value(place &at, quolynode **result) {
    if (!*result) {
        if (at.slot && *at.slot)
            quoly_assign(*at.slot, result);
        else
            quoly_set(0, result);
    }
    at.slot = result;
}

void move_value(place &at, quolynode **result) {
    if (!*result && at.slot && *at.slot && at.slot != result) {
        quoly_handle one;
        quoly_set(1, one.slot());
        if (!values_are_held()) {
            *result = *at.slot;
            *at.slot = one.release();
            drop_original(*result);
        } else { /* the value may be an operand of what is under way */
            quoly_assign(*at.slot, result);
            store_value(at.slot, one.release());
        }
    }
    own_value(at, result);
}

void require(const char *text, int n, stream *input, name **cursor) {
    if (!token_equals(token, text))
        error(n, token);
    else
        scanner(input, token, cursor);
}

/* ---- products ---- */

/* Does the token continue a product? The words "or" and "and" end it. */
static bool continues_term() {
    int c = first_char(token);
    if (is_letter(c)) return !token_is(token, "or") && !token_is(token, "and");
    return PSet_Test(term_set, c) && token.text[1] == 0;
}

struct product_sign {
    int op;      /* '*', '/', '\\' or '|' */
    bool no_gcd; /* "//": numerators without a common factor */
};

/* Reads the operator, which is "*" when factors stand side by side, and leaves the first token behind it. */
static product_sign read_product_sign(stream *input, name **cursor) {
    int c = first_char(token);
    if (is_letter(c) || c == '(') return {'*', false};
    scanner(input, token, cursor);
    if (!token_is(token, "/")) return {c, false};
    if (c != '/') error(339, token);
    scanner(input, token, cursor);
    return {c, c == '/'};
}

static void multiply_in_place(product_sign sign, quolynode **a, const quolynode *b) {
    if (sign.op == '*')
        fast_quoly_mult(a, b);
    else if (sign.op == '/')
        fast_quoly_quot(a, b, sign.no_gcd);
    else
        quoly_mod_or_div(*a, b, a, sign.op);
}

static void multiply_into(product_sign sign, const quolynode *a, const quolynode *b, quolynode **r) {
    if (sign.op == '*')
        quoly_mult(a, b, r);
    else if (sign.op == '/')
        quoly_quot(a, b, r, sign.no_gcd);
    else
        quoly_mod_or_div(a, b, r, sign.op);
}

/* The value at a place, or the constant 0. It is read anew after anything else was evaluated. */
static const quolynode *value_at(const place &at) { return at.slot && *at.slot ? *at.slot : quol_num_0; }

void term(stream *input, place &at, quolynode **result, name **cursor) {
    fact(input, at, result, cursor, 0);
    while (continues_term()) {
        safe_point();
        product_sign sign = read_product_sign(input, cursor);
        if (!at.slot) own_value(at, result);
        quoly_handle temporary;
        place right;
        {
            held_value left;
            held_cells cell(at.cell);
            fact(input, right, temporary.slot(), cursor, 0);
        }
        if (*result)
            multiply_in_place(sign, result, value_at(right));
        else
            multiply_into(sign, value_at(at), value_at(right), result);
        at = {};
        at.slot = result;
    }
}

void half_term(stream *input, quolynode **result, name **cursor) {
    while (continues_term()) {
        safe_point();
        product_sign sign = read_product_sign(input, cursor);
        quoly_handle right;
        {
            held_value left;
            old_fact(input, right.slot(), cursor);
        }
        multiply_in_place(sign, result, right.get());
    }
}

void old_term(stream *input, quolynode **result, name **cursor) {
    old_fact(input, result, cursor);
    half_term(input, result, cursor);
}

/* ---- sums ---- */

static bool continues_sum() { return token_is(token, "+") || token_is(token, "-"); }

/* A sum that is only at its place, and what is added to it: owned, or at a place too. */
static void add_to_place(const quolynode *left, bool minus, quoly_handle &owned, const place &right,
                         quolynode **result) {
    if (!owned) {
        (minus ? quoly_sub : quoly_add)(left, value_at(right), result);
    } else if (minus) {
        quoly_sub(left, owned.get(), result);
    } else {
        *result = owned.release();
        better_quoly_add(*result, left, result);
    }
}

/* plain: nothing that is stored changes while the operands are read, and none is copied. */
static void sum(stream *input, place &at, quolynode **result, name **cursor, bool plain) {
    term(input, at, result, cursor);
    while (continues_sum()) {
        safe_point();
        bool minus = token_is(token, "-");
        scanner(input, token, cursor);
        if (!plain) own_value(at, result);
        quoly_handle temporary;
        place right;
        {
            held_value left;
            held_cells cell(at.cell);
            term(input, right, temporary.slot(), cursor);
        }
        if (!*result)
            add_to_place(value_at(at), minus, temporary, right, result);
        else if (temporary)
            (minus ? best_quoly_sub : best_quoly_add)(result, temporary.release());
        else
            (minus ? better_quoly_sub : better_quoly_add)(*result, value_at(right), result);
        at = {};
        at.slot = result;
    }
}

void expre(stream *input, place &at, quolynode **result, name **cursor) {
    sum(input, at, result, cursor, false);
    if (token_is(token, ":")) assignment(input, at, result, cursor);
}

/* Names of scalars, figures, parentheses and operators between them, up to the end of a stored statement: no calls, no
   assignments, and no "*" in front of a name, which takes its value away. */
static bool reads_only(const name *n) {
    auto begins_factor = [](int c) { return c == '(' || c == '+' || c == '-' || c == '*' || c == '/' || c == '^'; };
    for (int before = '('; !is_end_of_list(n->tok) && !token_is(n->tok, ";"); n = n->next) {
        const int c = first_char(n->tok);
        if (!is_lower_letter(c) && !is_digit(c) && c != ')' && !begins_factor(c)) return false;
        if (c == '*' && begins_factor(before)) return false;
        before = c;
    }
    return true;
}

static bool is_plain(name *start) {
    if (!start) return false;
    if (!start->plain_known) {
        start->plain = reads_only(start);
        start->plain_known = true;
    }
    return start->plain;
}

static void rest_of_sum(stream *input, quolynode **result, name **cursor) {
    while (continues_sum()) {
        safe_point();
        bool minus = token_is(token, "-");
        scanner(input, token, cursor);
        quoly_handle right;
        {
            held_value left;
            old_term(input, right.slot(), cursor);
        }
        (minus ? best_quoly_sub : best_quoly_add)(result, right.release());
    }
}

void old_expre(stream *input, quolynode **result, name **cursor) {
    if (short_sum(cursor, result)) return;
    if (is_plain(*cursor)) {
        place at;
        sum(input, at, result, cursor, true);
        own_value(at, result);
        return;
    }
    old_term(input, result, cursor);
    rest_of_sum(input, result, cursor);
}

void half_expre(stream *input, quolynode **result, name **cursor) {
    int c = first_char(token);
    if (c == '!' || c == '#' || c == '^' || c == '"') half_fact(input, result, cursor);
    half_term(input, result, cursor);
    rest_of_sum(input, result, cursor);
}

/* ---- exponents ---- */

static void copy_exponent(quoly_handle &exponent, number *out) {
    if (!exponent->is_num) {
        error(116, token);
        quoly_set(1, exponent.slot());
    }
    num_assign(exponent->numb, out);
}

void get_exponent(stream *input, name **cursor, number *out, int mode) {
    modular_pause pause;
    scanner(input, token, cursor);
    if (mode == 1) {
        quoly_handle exponent;
        old_fact(input, exponent.slot(), cursor);
        copy_exponent(exponent, out);
    } else {
        chain_form exact; /* before the handle: a chain goes back only in its own ring */
        quoly_handle exponent;
        old_expre(input, exponent.slot(), cursor);
        copy_exponent(exponent, out);
    }
}

} // namespace tolvek
