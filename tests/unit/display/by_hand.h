/* Polynomials and variables put together by hand, and what is shown of them.

   t(2, n(3)) is a term of exponent 2 with the coefficient 3, list({...}) a list of terms, wrap(p) the term of exponent
   0 around p. So with the variables x, y: list({t(2, list({t(1, n(1)), n(5)})), n(-1)}) is (y + 5)x^2 - 1. */
#pragma once

#include "display/show_poly.h"
#include "display/show_quoly.h"
#include "numbers/number.h"
#include "poly/canonical.h"
#include "poly/model.h"
#include "quoly/quoly.h"
#include "support/fresh_system.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace tolvek {

inline polynode *n(int64_t v) {
    polynode *p = newpoly();
    *p = {0, 1, nullptr, {.num = newimag()}};
    set_int64(v, p->num);
    return p;
}
inline polynode *t(int32_t e, polynode *coefficient) {
    polynode *p = newpoly();
    *p = {e, 0, nullptr, {.poly = coefficient}};
    return p;
}
inline polynode *wrap(polynode *p) { return t(0, p); }
inline polynode *list(std::initializer_list<polynode *> terms) {
    polynode *last = nullptr;
    for (polynode *term : terms) {
        if (last) last->next = term;
        last = term;
    }
    return *terms.begin();
}

/* A polynomial of one variable with the coefficients 1 and the exponents from `top` down. */
inline polynode *powers(int32_t top, int count) {
    polynode *head = nullptr, **end = &head;
    for (int i = 0; i < count; i++, end = &(*end)->next) *end = t(top - i, n(1));
    return head;
}

/* A quotient; q->is_rat as both are numbers or not. */
inline quolynode *quotient(polynode *a, polynode *b) {
    quolynode *q = newquoly();
    *q = {};
    q->num = a;
    q->den = b;
    q->is_rat = !lintmode && b && is_constant(a) && is_constant(b);
    return q;
}

template <class base> struct display_test : base {
    int column = 0, lines = 0;
    std::vector<pt> variables;

    void SetUp() override {
        base::SetUp();
        name_variables({"x"});
    }
    void TearDown() override {
        polynames = nullptr;
        number_polys = 0;
        laurent = 0;
        set_ring(ring_state{});
        base::TearDown();
    }
    void name_variables(std::initializer_list<const char *> names) {
        variables.assign(names.size(), pt{});
        int level = 0;
        for (const char *name : names) {
            pt &v = variables[static_cast<std::size_t>(level)];
            std::strcpy(v.pt_name, name);
            v.pt_level = ++level;
        }
        for (std::size_t i = 0; i + 1 < variables.size(); i++) variables[i].pt_next = &variables[i + 1];
        polynames = variables.empty() ? nullptr : variables.data();
        number_polys = level;
    }
    void take_modulus(int32_t m) {
        ring_state r = current_ring();
        r.lintmode = r.modularmode = 1;
        r.modulus = m;
        set_ring(r);
    }

    std::string shown(polynode *p, const poly_style &style = {.want_continuation = 1}) {
        poly_handle owner(p);
        column = lines = 0;
        return this->text_of([&] { poly_display(Output, p, polynames, &column, &lines, style); });
    }
    std::string in_file(polynode *p) { return shown(p, {}); }

    std::string value_shown(quolynode *q, const value_style &style) {
        column = 0;
        std::string text = this->text_of([&] { quoly_display(Output, q, &column, style); });
        free_quoly(&q);
        return text;
    }
    std::string on_screen(quolynode *q) { return value_shown(q, {.want_continuation = 1}); }
    std::string value_in_file(quolynode *q) { return value_shown(q, {.terminator = ";"}); }
};

using exact_display = display_test<fresh_exact_system>;
using float_display = display_test<fresh_system>;

} // namespace tolvek
