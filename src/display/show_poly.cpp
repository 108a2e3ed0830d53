/* Polynomials in nested form. */
#include "display/show_poly.h"

#include "display/show_work.h"
#include "poly/model.h"
#include "top/guards.h"
#include "top/interrupts.h"

namespace tolvek {

int monomial_list, do_line_sup; /* values come from top/defaults.cpp at start-up */

/* ---- parentheses and signs ---- */

/* Does a term begin without a minus of its own: a positive number, or what stands in parentheses? A term of exponent 0
   takes the answer of its coefficient if `deep`, and has no parentheses of its own otherwise. */
static bool need_to(const polynode *term, bool deep) {
    for (;; term = term->poly) {
        if (term->is_number) return is_shown_positive(term->num);
        if (term->expo != 0) return !is_constant(term->poly);
        if (!deep) return false;
    }
}

/* Does a term behind another one show a minus, which takes the place of the plus? */
static bool brings_its_sign(const polynode *term) {
    const polynode *n = term->is_number ? term : is_constant(term->poly) ? term->poly : nullptr;
    if (n) return !is_shown_positive(n->num);
    if (term->expo != 0 || pos_leading_coef(term)) return false;
    const polynode *d = term->poly;
    if (d->is_number) return true; /* with terms of negative exponent behind it */
    if (d->expo != 0) return is_constant(d->poly);
    return !need_to(d->poly, true);
}

static bool is_small_power(const polynode *p) {
    return !p->next && is_constant(p->poly) && shown_unit(p->poly->num) != unit::none;
}

int poly_small(const polynode *p) {
    while (!p->is_number && p->expo == 0) {
        if (p->next) return 0;
        p = p->poly;
    }
    return p->is_number ? !p->next : is_small_power(p);
}

/* ---- one term ---- */

static void show_terms(poly_writer &w, const polynode *p, const pt *names);

/* A minus for -1, nothing for 1. The minus itself is not counted. */
static void show_unit(poly_writer &w, unit which) {
    if (which == unit::plus) return;
    w.put("-", 0);
    if (w.blank_after_minus && !uglyprint) w.put(" ", 1);
    checklength(w);
}

/* The coefficient of a term that is no number term. False: only its sign was shown, if anything. */
static bool show_coefficient(poly_writer &w, const polynode *term, const pt *names) {
    if (!is_constant(term->poly)) {
        show_terms(w, term->poly, names->pt_next);
        return true;
    }
    const unit which = shown_unit(term->poly->num);
    if (which == unit::none)
        put_number(w, term->poly->num);
    else
        show_unit(w, which);
    return which == unit::none;
}

/* False: the list is broken, or the rest is to be left out. */
static bool show_term(poly_writer &w, const polynode *term, const pt *names) {
    if (broken_term(term, names)) return false;
    const bool in_parentheses = need_to(term, false);
    if (in_parentheses) {
        checklength(w);
        w.put("(", 1);
        w.blank_after_minus = 0;
    }
    const bool is_shown = show_coefficient(w, term, names);
    if (in_parentheses) {
        w.put(")", 1);
        checklength(w);
    }
    if (suppressed(w)) return false;
    w.blank_after_minus = 0;
    if (term->expo == 0) return true;
    if (uglyprint && is_shown) put_char(w.out, '*');
    put_variable(w, names, term->expo);
    return true;
}

/* A number term. False: the list is broken. */
static bool show_number_term(poly_writer &w, const polynode *term) {
    put_number(w, term->num);
    w.blank_after_minus = 0;
    if (!term->next || laurent) return true;
    tolvek_error(" Warning! numb next not nil in this polynomial.", 1);
    put_char(w.out, '\n');
    return false;
}

/* What stands in front of a term that is not the first. */
static void show_sign(poly_writer &w, const polynode *term) {
    ++*w.column;
    if (brings_its_sign(term))
        w.blank_after_minus = 1;
    else
        plus_sign(w);
}

/* The blank between two terms, or a line end, which has no mark under uglyprint. */
static void part_terms(poly_writer &w) {
    if (!near_margin(*w.column)) {
        if (!uglyprint) w.put(" ", 1);
    } else if (uglyprint) {
        put_char(w.out, '\n');
        *w.column = 0;
        ++*w.lines;
    } else {
        next_line(w);
    }
}

static void show_terms(poly_writer &w, const polynode *p, const pt *names) {
    for (const polynode *term = p; term; term = term->next) {
        if (term != p) {
            part_terms(w);
            show_sign(w, term);
            if (suppressed(w)) return;
        }
        safe_point();
        if (!(term->is_number ? show_number_term(w, term) : show_term(w, term, names))) return;
    }
}

void poly_display(text_out *out, const polynode *p, const pt *names, int *column, int *lines, const poly_style &style) {
    poly_writer w{out, column, lines, style.want_continuation, style.blank_after_minus, true};
    if (is_constant(p) && style.allow_bare_number)
        display(out, style.want_continuation, style.right_justify, p->num, column, 0);
    else if (monomial_list && names && names->pt_next)
        show_monomials(w, p, names);
    else
        show_terms(w, p, names);
}

/* ---- the raw tree ---- */

static void indent_by(text_out *out, int levels) {
    for (int i = 0; i < levels; i++) put_text(out, "  ");
}

static void show_list(text_out *out, int want_continuation, const polynode *p) {
    kept_value<int> compact(uglyprint, 1);
    int column = 0;
    for (const polynode *term = p; term; term = term->next) {
        if (!term->is_number) {
            put_format(out, "%li ", static_cast<long>(term->expo));
            continue;
        }
        put_char(out, '*');
        display(out, want_continuation, 0, term->num, &column, 0);
        put_char(out, ' ');
    }
    put_char(out, '\n');
}

void crude_poly_disp(text_out *out, int want_continuation, const polynode *p, int indent, const pt *names) {
    if (!p) return;
    indent_by(out, indent - 1);
    put_format(out, "%s: ", names ? names->pt_name : " ");
    show_list(out, want_continuation, p);
    if (is_constant(p)) return;
    for (const polynode *term = p; term; term = term->next) {
        if (term->is_number) {
            indent_by(out, indent + 1);
            put_text(out, " **\n");
        } else {
            crude_poly_disp(out, want_continuation, term->poly, indent + 2, names ? names->pt_next : nullptr);
        }
    }
}

} // namespace tolvek
