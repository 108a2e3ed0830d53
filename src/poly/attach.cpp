/* The statement that changes the set of variables: its syntax and its checks. */
#include "poly/attach.h"
#include "gcd/gcd.h"
#include "language/expressions.h"
#include "language/scanner.h"
#include "top/driver.h"
#include "top/parse.h"
#include "display/progress.h"

namespace tolvek {

namespace {

struct variable_change {
    stream *input;
    name **cursor;
    bool at_head = false;
    bool cancels = false;
    token_record variable_name{};
    int level = 0; /* of the variable of that name; 0: there is none */

    void read_on() { scanner(input, token, cursor); }
    bool refuse(int n) const {
        error(n, token);
        return false;
    }
    bool refuse_name(int n) const {
        error(n, variable_name);
        return false;
    }
};

} // namespace

bool variables_may_change() {
    if (levelcount == 1 && values_held == 0) return true;
    error(73, token);
    return false;
}

/* ---- syntax: each step leaves the first token behind it, or refuses ---- */

/* Entered with "=" or ">" as the token; the answer to a question begins with the next token. */
static bool read_place(variable_change &c, bool in_place) {
    if (in_place) c.at_head = token_is(token, ">");
    c.read_on();
    if (!in_place && token_is(token, ">")) return c.refuse(362);
    return true;
}

static void read_cancel_sign(variable_change &c) {
    c.cancels = token_is(token, "-");
    if (!c.cancels) return;
    if (c.at_head) say("Warning.  '>' ignored.\n");
    c.at_head = false;
    c.read_on();
}

/* Var and an expression: the level of a variable. */
static bool read_level(variable_change &c) {
    c.read_on();
    quoly_handle level;
    {
        modular_pause pause;
        old_expre(c.input, level.slot(), c.cursor);
    }
    if (!level->is_num) return c.refuse(227);
    pt *v = variable_at(quoly_to_int(level.get()));
    if (!v) return c.refuse(c.cancels ? 169 : 124);
    set_token(c.variable_name, v->pt_name);
    return true;
}

static bool read_name(variable_change &c) {
    if (token_is(token, "Var")) return read_level(c);
    if (!is_lower_letter(first_char(token))) return c.refuse(124);
    c.variable_name = token;
    c.read_on();
    return true;
}

/* No relation can be declared yet, and the variable is not adjoined without it. */
static bool declare_relation(variable_change &c) { return c.refuse(62); }

/* ", P = " and a polynomial. */
static bool read_tail(variable_change &c) {
    if (!token_is(token, ",")) return true;
    if (c.cancels) return c.refuse(356);
    c.read_on();
    if (!token_is(token, "P")) return c.refuse(355);
    c.read_on();
    if (!token_is(token, "=")) return c.refuse(4);
    if (c.at_head) return c.refuse(361);
    return declare_relation(c);
}

static bool read_end(variable_change &c, bool in_place) {
    if (in_place) return token_is(token, ")") || c.refuse(135);
    return ends_statement(token) || c.refuse(129);
}

/* ---- checks ---- */

static bool is_possible(variable_change &c) {
    if (c.at_head && field_depth > 0) return c.refuse(360);
    if (!is_poly_name(c.variable_name.text, &c.level)) c.level = 0;
    if (c.level && !c.cancels) return c.refuse_name(126);
    if (!c.level && c.cancels) return c.refuse_name(169);
    return true;
}

static void announce(const variable_change &c) {
    if (windy || tt_flag)
        sayf(" Change of polynomial variable: %s%s.\n", c.cancels ? "cancel " : "", c.variable_name.text);
}

void attach_poly(stream *input, name **cursor, int in_place) {
    variable_change c{input, cursor};
    if (!variables_may_change() || !read_place(c, in_place)) return;
    read_cancel_sign(c);
    if (!read_name(c) || !is_possible(c) || !read_tail(c) || !read_end(c, in_place)) return;
    announce(c);
    if (!c.cancels && number_polys == most_variables) {
        error(228, c.variable_name);
        return;
    }
    free_gcd_stash(stash_drop::everything); /* its keys are places of variables */
    if (c.cancels)
        cancel_variable(c.level);
    else
        adjoin_variable(c.variable_name, c.at_head);
    if (modularmode) changed_in_modmode = 1; /* what was built on it has no meaning among the rationals */
}

} // namespace tolvek
