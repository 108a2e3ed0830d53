#include "language/short_path.h"

#include "language/compile.h"
#include "language/names.h"
#include "language/scanner.h"
#include "matrix/elements.h"
#include "numbers/number.h"
#include "poly/variables.h"
#include "quoly/quoly.h"
#include "top/driver.h"

#include <cmath>

namespace tolvek {

/* ---- the two rings ---- */

struct ring_of_wholes {
    using value = int64_t;
    static constexpr bool divides = false;
    static bool read(const number *x, value &v) {
        if (x->num_len < 1 || x->num_len > 2) return false;
        v = x->num_head->digit;
        if (x->num_len == 2) v = v * digit_radix + x->num_head->next->digit;
        return true;
    }
    static bool add(value &a, value b) { return !__builtin_add_overflow(a, b, &a); }
    static bool subtract(value &a, value b) { return !__builtin_sub_overflow(a, b, &a); }
    static bool multiply(value &a, value b) { return !__builtin_mul_overflow(a, b, &a); }
    static bool divide(value &, value) { return false; }
    static bool negate(value &a) { return !__builtin_sub_overflow(value{0}, a, &a); }
    static bool is_step(value v) { return v < digit_radix && v > -digit_radix; }
    static void write(value v, number *x) { set_int64(v, x); }
    static bool coordinate(value v, int64_t &c) {
        c = v;
        return true;
    }
};

struct ring_of_flotes {
    using value = long double;
    static constexpr bool divides = true;
    static bool read(const number *x, value &v) {
        v = x->flote_val;
        return true;
    }
    static bool add(value &a, value b) {
        a += b;
        return true;
    }
    static bool subtract(value &a, value b) {
        a -= b;
        return true;
    }
    static bool multiply(value &a, value b) {
        a *= b;
        return true;
    }
    static bool divide(value &a, value b) {
        if (b == 0) return false;
        a /= b;
        return true;
    }
    static bool negate(value &a) {
        a = -a;
        return true;
    }
    static bool is_step(value) { return true; }
    static void write(value v, number *x) { x->flote_val = v; }
    static bool coordinate(value v, int64_t &c) {
        constexpr long double greatest = 9.0e18L;
        if (!(std::fabs(v) < greatest)) return false;
        c = std::llround(v);
        return true;
    }
};

/* ---- reading ---- */

static bool is_char(const name *n, char c) { return n->tok.text[0] == c && !n->tok.text[1]; }

/* The scalar that a token names; null: none, or a variable of polynomials. */
static quolynode **slot_of(name *n) {
    if (n->bound)
        if (quolynode **slot = bound_slot(n->bound)) return slot;
    int level;
    if (polynames && is_poly_name(n->tok.text, &level)) return nullptr;
    variable *v = find_variable(n->tok);
    return v ? &v->value : nullptr;
}

/* The array that a token names; null: none, or a variable of polynomials. */
static array_record *array_of(name *n) {
    if (n->bound)
        if (array_record *a = bound_array(n->bound)) return a;
    int level;
    if (polynames && is_poly_name(n->tok.text, &level)) return nullptr;
    return find_array(n->tok);
}

/* Reads along a stored list. Each routine takes what it reads and answers whether it could. */
template <class ring> struct short_reader {
    using value = typename ring::value;
    static constexpr int most_nested = 8;   /* parentheses */
    static constexpr int most_figures = 18; /* stay below 2^63; 10^18 is a float without loss */

    name *at;              /* the next token */
    bool for_good = false; /* the tokens alone made it give up */
    int nested = 0;

    bool give_up() {
        for_good = true;
        return false;
    }

    /* The whole number in brackets, from 0. */
    bool coordinate(int64_t &c) {
        value v;
        if (!sum(v) || !ring::coordinate(v, c)) return false;
        c -= addresser;
        return true;
    }

    /* x[i] or x[i,j]: its array and the index from 0. */
    bool element(array_record *&a, int64_t &index) {
        a = array_of(at);
        if (!a) return false;
        at = at->next->next;
        if (!coordinate(index)) return false;
        if (is_char(at, ',')) {
            int64_t column;
            at = at->next;
            if (!coordinate(column) || index < 0 || index >= a->rows || column < 0 || column >= a->cols()) return false;
            index += column * a->rows;
        }
        if (!is_char(at, ']')) return give_up();
        at = at->next;
        return index >= 0 && index < a->size;
    }

    bool element_value(value &v) {
        array_record *a;
        int64_t index;
        if (!element(a, index)) return false;
        quolynode *const *slot = array_quoly_ptr(a, index);
        if (!slot) v = 0; /* a sparse array has no entry there */
        return !slot || (*slot && (*slot)->is_num && ring::read((*slot)->numb, v));
    }

    bool scalar(value &v) {
        if (is_char(at->next, '[')) return element_value(v);
        quolynode **slot = slot_of(at);
        if (!slot || !*slot || !(*slot)->is_num || (*slot)->array_mark || !ring::read((*slot)->numb, v)) return false;
        at = at->next;
        return true;
    }

    /* Figures, at most most_figures of them in all: how many there are. */
    int figures(int64_t &v, int before) {
        int count = before;
        for (; count < most_figures && is_digit(first_char(at->tok)); count++, at = at->next)
            v = 10 * v + (at->tok.text[0] - '0');
        return count;
    }

    /* One division of exact operands gives the float that is nearest to what is written. */
    bool literal(value &v) {
        int64_t written = 0;
        int whole = figures(written, 0), count = whole;
        if (is_char(at, '.')) {
            if (!ring::divides) return false;
            at = at->next;
            count = figures(written, whole);
        }
        if (!whole || is_digit(first_char(at->tok)) || is_char(at, '.')) return give_up();
        v = static_cast<value>(written);
        value power = 1;
        for (int i = whole; i < count; i++) power *= 10;
        if (count > whole) ring::divide(v, power);
        return true;
    }

    bool parenthesis(value &v) {
        if (++nested > most_nested) return give_up();
        at = at->next;
        if (!sum(v)) return false;
        if (!is_char(at, ')')) return give_up();
        at = at->next;
        nested--;
        return true;
    }

    bool factor(value &v) {
        int c = first_char(at->tok);
        if (is_lower_letter(c)) return scalar(v);
        if (is_digit(c)) return literal(v);
        if (c == '(') return parenthesis(v);
        if (c != '-') return give_up();
        at = at->next;
        return factor(v) && ring::negate(v);
    }

    bool product(value &v) {
        if (!factor(v)) return false;
        for (;;) {
            int c = first_char(at->tok);
            if (c != '*' && c != '/') return true;
            if (c == '/' && !ring::divides) return false;
            at = at->next;
            value right;
            if (!factor(right) || !(c == '*' ? ring::multiply(v, right) : ring::divide(v, right))) return false;
        }
    }

    bool terms(value &v) {
        if (!product(v)) return false;
        for (;;) {
            int c = first_char(at->tok);
            if (c != '+' && c != '-') return true;
            at = at->next;
            value right;
            if (!product(right) || !(c == '+' ? ring::add(v, right) : ring::subtract(v, right))) return false;
        }
    }

    /* Does the token end a sum? Postfix operators, factors side by side and the like do not. */
    bool ends_sum() const {
        const token_record &t = at->tok;
        switch (first_char(t)) {
        case ')':
        case ']':
        case ',':
        case ';':
        case '<':
        case '>':
        case '=': return true;
        case ' ': return true; /* a marked word of a loop head */
        case 'o': return token_is(t, "or");
        case 'a': return token_is(t, "and");
        default: return is_end_of_list(t);
        }
    }

    bool sum(value &v) { return terms(v) && (ends_sum() || give_up()); }
};

/* ---- the entries ---- */

static bool ring_of_short_wholes() { return !flotemode && !lintmode; }

static void go_to(name *n, name **cursor) {
    *cursor = n;
    token = n->tok;
    currentchar = n->next;
}

template <class ring> static bool read_sum(name **cursor, typename ring::value &v) {
    name *start = *cursor;
    if (!start || start->long_path) return false;
    short_reader<ring> reader{start};
    if (!reader.sum(v)) {
        start->long_path = reader.for_good;
        return false;
    }
    go_to(reader.at, cursor);
    return true;
}

bool short_sum(name **cursor, short_number &v) {
    if (flotemode) return read_sum<ring_of_flotes>(cursor, v.flote);
    return ring_of_short_wholes() && read_sum<ring_of_wholes>(cursor, v.whole);
}

bool short_flote_sum(name **cursor, long double &v) { return read_sum<ring_of_flotes>(cursor, v); }

bool short_sum(name **cursor, quolynode **result) {
    short_number v;
    if (!short_sum(cursor, v)) return false;
    flotemode ? quoly_set_flote(v.flote, result) : quoly_set_int64(v.whole, result);
    return true;
}

/* ---- comparisons ---- */

/* The characters of a relation that stands at n; 0: none does. */
static int relation_length(const name *n) {
    int c = first_char(n->tok);
    if (c == '=') return 1;
    if (c != '<' && c != '>') return 0;
    int next = first_char(n->next->tok);
    return next == '=' || (c == '<' && next == '>') ? 2 : 1;
}

template <class value> static bool holds_between(value a, const name *relation, int length, value b) {
    bool strict = length == 1;
    switch (first_char(relation->tok)) {
    case '=': return a == b;
    case '>': return strict ? a > b : a >= b;
    default: return strict ? a < b : first_char(relation->next->tok) == '>' ? a != b : a <= b;
    }
}

static bool can_follow_comparison(const token_record &t) {
    return is_end_of_list(t) || token_is(t, "]") || token_is(t, "or") || token_is(t, "and");
}

template <class ring> static bool read_comparison(name **cursor, bool &holds) {
    name *start = *cursor;
    if (!start || start->long_path) return false;
    short_reader<ring> reader{start};
    typename ring::value left, right;
    if (!reader.sum(left)) {
        start->long_path = reader.for_good;
        return false;
    }
    name *relation = reader.at;
    int length = relation_length(relation);
    if (length) {
        reader.at = length == 2 ? relation->next->next : relation->next;
        if (!reader.sum(right)) return false;
        holds = holds_between(left, relation, length, right);
    } else {
        holds = left == 1;
    }
    if (!can_follow_comparison(reader.at->tok)) return false;
    go_to(reader.at, cursor);
    return true;
}

bool short_comparison(name **cursor, bool &holds) {
    if (flotemode) return read_comparison<ring_of_flotes>(cursor, holds);
    return ring_of_short_wholes() && read_comparison<ring_of_wholes>(cursor, holds);
}

/* ---- statements ---- */

template <class ring> static void set_number(quolynode **q, typename ring::value v) {
    if (!*q || !(*q)->is_num) quoly_set(0, q);
    (*q)->array_mark = 0;
    ring::write(v, (*q)->numb);
}

/* Where something may hold the old value, a new one takes its place. */
template <class ring> static void store_short(quolynode **slot, typename ring::value v) {
    if (!values_are_held() && *slot && (*slot)->is_num && !(*slot)->original) {
        set_number<ring>(slot, v);
        return;
    }
    quoly_handle fresh;
    set_number<ring>(fresh.slot(), v);
    store_value(slot, fresh.release());
}

/* The value behind x :+ and its like: one factor, or 1. */
template <class ring> static bool read_step(short_reader<ring> &reader, typename ring::value &step) {
    step = 1;
    int c = first_char(reader.at->tok);
    if (!is_lower_letter(c) && !is_digit(c) && c != '(') return true;
    return reader.factor(step) && ring::is_step(step);
}

/* Behind x : . The new value of x. */
template <class ring>
static bool read_new_value(short_reader<ring> &reader, const quolynode *old, typename ring::value &v) {
    int op = first_char(reader.at->tok);
    reader.at = reader.at->next;
    if (op == '=') return reader.sum(v);
    if (op != '+' && op != '-' && !(op == '*' && integerflag)) return reader.give_up();
    if (!old->is_num || !ring::read(old->numb, v)) return false;
    typename ring::value step;
    if (!read_step(reader, step)) return false;
    return op == '+' ? ring::add(v, step) : op == '-' ? ring::subtract(v, step) : ring::multiply(v, step);
}

/* Behind the ":" that stands behind a target. */
template <class ring>
static bool assign(short_reader<ring> &reader, name *tokens, quolynode **slot, quolynode **result) {
    typename ring::value v;
    const quolynode *old = *slot ? *slot : quol_num_0;
    if (!read_new_value(reader, old, v) || !is_end_of_list(reader.at->tok)) {
        tokens->long_path = reader.for_good;
        return false;
    }
    store_short<ring>(slot, v);
    set_number<ring>(result, 0);
    token = reader.at->tok;
    return true;
}

template <class ring> static bool assign_scalar(name *tokens, quolynode **result) {
    short_reader<ring> reader{tokens->next->next};
    quolynode **slot = slot_of(tokens);
    if (!slot || !*slot || ((*slot)->is_num && (*slot)->array_mark)) return false;
    return assign(reader, tokens, slot, result);
}

/* An entry of a sparse array may come or go with its value: that is not done here. */
template <class ring>
static bool assign_element(short_reader<ring> &reader, name *tokens, array_record *a, int64_t index,
                           quolynode **result) {
    if (a->sparse_head) return false;
    reader.at = reader.at->next;
    return assign(reader, tokens, &element(a, index), result);
}

template <class ring> static bool run_sum(name *tokens, quolynode **result) {
    short_reader<ring> reader{tokens};
    typename ring::value v;
    if (!reader.sum(v) || !is_end_of_list(reader.at->tok)) {
        tokens->long_path = reader.for_good;
        return false;
    }
    set_number<ring>(result, v);
    token = reader.at->tok;
    return true;
}

template <class ring> static bool run_short(name *tokens, quolynode **result) {
    if (!is_lower_letter(first_char(tokens->tok))) return run_sum<ring>(tokens, result);
    if (is_char(tokens->next, ':')) return assign_scalar<ring>(tokens, result);
    if (!is_char(tokens->next, '[')) return run_sum<ring>(tokens, result);
    short_reader<ring> reader{tokens};
    array_record *a;
    int64_t index;
    if (!reader.element(a, index)) {
        tokens->long_path = reader.for_good;
        return false;
    }
    return is_char(reader.at, ':') ? assign_element(reader, tokens, a, index, result) : run_sum<ring>(tokens, result);
}

bool short_statement(name *tokens, quolynode **result) {
    if (tokens->long_path) return false;
    if (flotemode) return run_short<ring_of_flotes>(tokens, result);
    return ring_of_short_wholes() && run_short<ring_of_wholes>(tokens, result);
}

} // namespace tolvek
