#include "poly/canonical.h"

namespace tolvek {

enum poly_rule { descending = 1, number_term, coefficient, collapsed, wrapper, no_zero, number_form, named };

static bool has_number_form(const number *x) {
    if (flotemode) return true;
    if (modularmode) return x->lint_val >= 0 && x->lint_val < modulus;
    return lintmode || chain_rule_broken(x) == 0;
}

/* Of one term. `alone`: it is the whole list. */
static int term_rule_broken(const polynode *t, bool alone, const pt *names) {
    if (t->is_number) {
        if (t->expo != 0 || (t->next && !laurent)) return number_term;
        if (!t->num || !has_number_form(t->num)) return number_form;
        return !alone && num_sign(t->num) == 0 ? no_zero : 0;
    }
    if (!names) return named;
    if (!t->poly) return coefficient;
    if (poly_iszero(t->poly)) return no_zero;
    if (t->expo == 0 && is_constant(t->poly)) return collapsed;
    return poly_rule_broken(t->poly, names->pt_next);
}

int poly_rule_broken(const polynode *p, const pt *names) {
    if (!p) return no_zero;
    bool alone = !p->next;
    for (; p; p = p->next) {
        if (p->next && p->next->expo >= p->expo) return descending;
        if (int broken = term_rule_broken(p, alone, names)) return broken;
    }
    return 0;
}

enum quoly_rule {
    zero_is_plain = 11,
    unit_denominator,
    denominator_sign,
    constant_is_plain,
    rational_mark,
    residue_fraction
};

static int denominator_rule_broken(const quolynode *q) {
    if (is_constant(q->den)) {
        if (lintmode) return residue_fraction;
        if (poly_eq_1(q->den) || poly_eq_m1(q->den) || poly_iszero(q->den)) return unit_denominator;
    }
    if (!lintmode && neg_leading_term(q->den)) return denominator_sign;
    return poly_rule_broken(q->den, polynames);
}

int quoly_rule_broken(const quolynode *q) {
    if (q->is_num) return has_number_form(q->numb) ? 0 : number_form;
    if (int broken = poly_rule_broken(q->num, polynames)) return broken;
    if (poly_iszero(q->num)) return zero_is_plain;
    if (!q->den && is_constant(q->num)) return constant_is_plain;
    if (q->den)
        if (int broken = denominator_rule_broken(q)) return broken;
    bool rational = q->den && is_constant(q->num) && is_constant(q->den);
    return rational != (q->is_rat != 0) ? rational_mark : 0;
}

void report_broken_rule(int rule) {
    sayf("rule %i ", rule);
    tolvek_error("a stored value is not in order.", 0);
}

} // namespace tolvek
