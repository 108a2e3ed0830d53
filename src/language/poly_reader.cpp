/* A polynomial that is being read is a chain of open term lists, one for each variable that the last terms have entered:
   the list of an inner variable becomes the term of exponent 0 of the next outer one when it is finished.

       x^2 + y^3 + y + 1      x: [2|.]      open: x
                              y: [3|.] [1|.] (1)      open: y, to become [0|.] of x

   Only negative exponents lead back to an outer variable: x + y + x^-1. There a number may also turn out to belong to a
   variable that comes later: 1 + y^-1. */
#include "language/poly_reader.h"

#include "language/expressions.h"
#include "numbers/handles.h"
#include "poly/model_work.h"
#include "quoly/normal.h"
#include "top/guards.h"
#include "top/interrupts.h"
#include "top/settings.h"
#include "top/stack_limit.h"

#include <climits>

namespace tolvek {

int minus_warning = 0;

/* ---- a polynomial in the making ---- */

/* A list of terms in the variable of a level, or, with level 0, a number term. */
struct levelled {
    poly_handle list;
    int level = 0;
};

/* The list of level `inner`, as the coefficient of a term of level `outer`. */
static polynode *wrapped(polynode *list, int inner, int outer) {
    for (int k = inner - outer - 1; k > 0; k--) {
        polynode *wrapper = new_term();
        wrapper->poly = list;
        list = wrapper;
    }
    return list;
}

/* Each routine takes over what it is given. False: error 159 or 163 was reported. */
class term_lists {
  public:
    term_lists() = default;
    ~term_lists() {
        for (int i = 0; i < count; i++) free_poly(&open[i].first);
    }
    term_lists(const term_lists &) = delete;
    term_lists &operator=(const term_lists &) = delete;

    bool add_power(int level, int32_t expo, levelled &coefficient);
    bool add_number(poly_handle &c);
    bool add_polynomial(levelled &p); /* term by term */
    void finish(levelled &p);

  private:
    struct open_list {
        int level;
        polynode *first, *last;
    };
    open_list open[most_variables];
    int count = 0;
    poly_handle lone; /* a number, while no list is open */

    open_list &deepest() { return open[count - 1]; }
    bool make_room(int level, int32_t expo);
    bool open_new(int level, int32_t expo);
    void close_deepest(int level);
    void take_number_back();
    void push(int level, polynode *t) { open[count++] = {level, t, t}; }
    void append(polynode *t) {
        t->next = nullptr;
        deepest().last->next = t;
        deepest().last = t;
    }
    bool add_terms(polynode *list, int level);
    bool out_of_order() {
        error(159, token);
        return false;
    }
};

/* The deepest list becomes a term of the next one, or of a new one of an outer level. */
void term_lists::close_deepest(int level) {
    polynode *t = new_term(); /* asked for while the list still hangs here */
    const open_list inner = deepest();
    const int outer = count > 1 && open[count - 2].level >= level ? open[count - 2].level : level;
    polynode *coefficient = wrapped(inner.first, inner.level, outer);
    count--;
    t->poly = coefficient;
    if (count > 0 && deepest().level == outer)
        append(t);
    else
        push(outer, t);
}

/* The number at the end of the deepest list, which is not its only term, is `lone` again. */
void term_lists::take_number_back() {
    open_list &list = deepest();
    polynode *before = list.first;
    while (before->next != list.last) before = before->next;
    *lone.slot() = list.last;
    before->next = nullptr;
    list.last = before;
}

/* A list of an inner variable begins. What stood before it at exponent 0 can only be a number that belongs to it. */
bool term_lists::open_new(int level, int32_t expo) {
    if (count > 0 && deepest().last->is_number) {
        if (expo > 0) return out_of_order();
        take_number_back();
    }
    if (lone) {
        if (expo > 0) return out_of_order();
        push(level, lone.release());
        return true;
    }
    if (count > 0 && deepest().last->expo <= 0) return out_of_order();
    open[count++] = {level, nullptr, nullptr};
    return true;
}

/* Makes the list of the level the deepest one, if a term of the exponent is in order there. */
bool term_lists::make_room(int level, int32_t expo) {
    if (count > 0 && deepest().level > level && expo > 0) return out_of_order();
    while (count > 0 && deepest().level > level) close_deepest(level);
    if (count == 0 || deepest().level < level) return open_new(level, expo);
    return deepest().last->expo > expo || out_of_order();
}

bool term_lists::add_power(int level, int32_t expo, levelled &coefficient) {
    if (coefficient.level != 0 && coefficient.level <= level) return out_of_order();
    if (!make_room(level, expo)) return false;
    polynode *t = new_term();
    t->expo = expo;
    polynode *list = coefficient.list.release();
    t->poly = coefficient.level ? wrapped(list, coefficient.level, level) : list;
    open_list &d = deepest();
    if (d.first)
        append(t);
    else
        d.first = d.last = t;
    return true;
}

bool term_lists::add_number(poly_handle &c) {
    polynode *last = count > 0 ? deepest().last : lone.get();
    if (!last) {
        *lone.slot() = c.release();
    } else if (last->is_number) {
        num_add(last->num, c->num, last->num);
        if (num_sign(last->num) != 0) return true;
        error(163, token);
        return false;
    } else if (last->expo > 0) {
        append(c.release());
    } else {
        return out_of_order();
    }
    return true;
}

/* The terms of a list that stays its owner's until each is unlinked. */
bool term_lists::add_terms(polynode *list, int level) {
    poly_handle rest(list);
    while (rest) {
        safe_point();
        polynode *t = rest.get();
        *rest.slot() = t->next;
        t->next = nullptr;
        poly_handle term(t);
        levelled coefficient;
        if (t->is_number) {
            if (!add_number(term)) return false;
            continue;
        }
        *coefficient.list.slot() = t->poly;
        t->poly = nullptr;
        const int32_t expo = t->expo;
        if (expo == 0) {
            if (!add_terms(coefficient.list.release(), level + 1)) return false;
            continue;
        }
        if (!coefficient.list->is_number || coefficient.list->next) coefficient.level = level + 1;
        if (!add_power(level, expo, coefficient)) return false;
    }
    return true;
}

bool term_lists::add_polynomial(levelled &p) {
    if (p.level == 0) return add_number(p.list);
    return add_terms(p.list.release(), p.level);
}

void term_lists::finish(levelled &p) {
    while (count > 1) close_deepest(open[count - 2].level);
    p.level = count > 0 ? open[0].level : 0;
    if (count > 0) {
        *p.list.slot() = open[0].first;
        count = 0;
    } else {
        *p.list.slot() = lone.release();
    }
}

/* ---- reading ---- */

struct poly_source {
    stream *input;
    name **cursor;
    bool minus_seen;
    int depth; /* of parentheses: at 0 a polynomial may be 0 */

    void read_on() { scanner(input, token, cursor); }
    bool fails(int n) {
        error(n, token);
        return false;
    }
    bool close() {
        if (!token_is(token, ")")) return fails(1);
        read_on();
        return true;
    }
};

struct term_coefficient {
    levelled value;
    bool implicit = false;
    bool whole = false; /* a 0 that is the whole polynomial */
};

static bool read_polynomial(poly_source &s, term_coefficient *first, levelled &result);

/* Residues that are read as integers are brought into the ring at once. */
static void read_number_term(poly_source &s, poly_handle &p) {
    *p.slot() = new_number_term();
    number *x = p->num;
    if (!nomodpolyreadin || !modularmode) return read_coefficient(s.input, s.cursor, x);
    {
        modular_pause pause;
        setvalue(0, x);
        read_coefficient(s.input, s.cursor, x);
    }
    const int32_t residue = x->lint_val % modulus;
    x->lint_val = residue < 0 ? residue + modulus : residue;
}

static bool begins_number(int c) { return is_digit(c) || (c == '.' && flotemode); }

static bool get_the_coef(poly_source &s, bool may_be_0, term_coefficient &c) {
    bool negative = false;
    for (; token_is(token, "-"); s.read_on()) {
        negative = !negative;
        s.minus_seen = true;
    }
    if (token_is(token, "(")) {
        s.read_on();
        if (!read_polynomial(s, nullptr, c.value)) return false;
        if (poly_iszero(c.value.list.get())) return s.fails(163);
        if (!s.close()) return false;
    } else if (begins_number(first_char(token))) {
        read_number_term(s, c.value.list);
        c.whole = num_sign(c.value.list->num) == 0;
        if (c.whole) return may_be_0 || s.fails(163);
    } else {
        poly_set(1, c.value.list.slot());
        c.implicit = true;
    }
    if (negative) poly_inplace(c.value.list.get());
    return true;
}

/* The figures of an exponent, which is above 0. */
static bool getit(poly_source &s, int32_t &expo) {
    int64_t value = 0;
    for (; is_digit(first_char(token)); s.read_on()) {
        value = 10 * value + (first_char(token) - '0');
        if (value > INT32_MAX) return s.fails(162);
    }
    expo = static_cast<int32_t>(value);
    return value != 0 || s.fails(204);
}

/* Behind a variable. */
static bool read_exponent(poly_source &s, int32_t &expo) {
    expo = 1;
    if (!token_is(token, "^")) return true;
    s.read_on();
    const bool negative = token_is(token, "-");
    if (negative && !laurent) return s.fails(165);
    if (negative) s.read_on();
    if (!is_digit(first_char(token))) return s.fails(162);
    if (!getit(s, expo)) return false;
    if (negative) expo = -expo;
    return true;
}

/* What stands behind the coefficient. */
static bool read_term(poly_source &s, term_coefficient &c, term_lists &lists) {
    if (!is_lower_letter(first_char(token))) {
        if (c.implicit) return s.fails(161);
        return lists.add_polynomial(c.value);
    }
    int level;
    int32_t expo;
    if (!is_poly_name(token.text, &level)) return s.fails(160);
    s.read_on();
    return read_exponent(s, expo) && lists.add_power(level, expo, c.value);
}

/* first: a coefficient that was read already, or null. */
static bool read_polynomial(poly_source &s, term_coefficient *first, levelled &result) {
    check_stack();
    term_lists lists;
    for (bool begun = false;; begun = true) {
        safe_point();
        term_coefficient c;
        if (begun || !first) {
            if (!get_the_coef(s, !begun, c)) return false;
            if (c.whole) {
                *result.list.slot() = c.value.list.release();
                return true;
            }
        }
        if (!read_term(s, begun || !first ? c : *first, lists)) return false;
        if (token_is(token, "+"))
            s.read_on();
        else if (!token_is(token, "-"))
            break;
    }
    lists.finish(result);
    return true;
}

/* ---- numerator and denominator ---- */

static bool variable_follows() {
    int level;
    return is_lower_letter(first_char(token)) && is_poly_name(token.text, &level);
}

/* Parentheses around the whole, or around the first coefficient. */
static bool read_parenthesized(poly_source &s, levelled &p) {
    term_coefficient first;
    s.read_on();
    if (!read_polynomial(s, nullptr, first.value) || !s.close()) return false;
    if (variable_follows()) {
        if (poly_iszero(first.value.list.get())) return s.fails(163);
        return read_polynomial(s, &first, p);
    }
    p.level = first.value.level;
    *p.list.slot() = first.value.list.release();
    return true;
}

static bool poly_readin(poly_source &s, poly_handle &into) {
    levelled p;
    if (!(token_is(token, "(") ? read_parenthesized(s, p) : read_polynomial(s, nullptr, p))) return false;
    polynode *list = p.list.release();
    *into.slot() = p.level ? wrapped(list, p.level, 0) : list;
    return true;
}

static void warn_of_minus(const poly_source &s) {
    const bool as_integers = mod_is_changed > 0 || (nomodpolyreadin && modularmode);
    if (!s.minus_seen || !as_integers || !minus_warning) return;
    say("*** Warning. Negative value seen during poly readin in modular mode.\n"
        "    Check your data carefully.\n\n");
    flush(&standard_output);
    minus_warning = 0;
}

static bool read_quotient(poly_source &s, quolynode **result) {
    poly_handle num, den;
    if (!poly_readin(s, num)) return false;
    if (token_is(token, "/")) {
        if (poly_iszero(num.get())) return s.fails(164);
        s.read_on();
        if (!poly_readin(s, den)) return false;
    }
    warn_of_minus(s);
    if (!den) {
        poly_to_value(num, result);
    } else if (poly_iszero(den.get())) {
        error(22, token);
        quoly_set(1, result);
    } else {
        fraction_to_value(num, den, result);
    }
    return true;
}

void quoly_readin(stream *input, quolynode **result, name **cursor) {
    held_value held;
    quoly_handle value;
    poly_source s{input, cursor, false, 0};
    if (!read_quotient(s, value.slot())) quoly_set(0, value.slot());
    value.release_to(result);
}

} // namespace tolvek
