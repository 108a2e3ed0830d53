/* The canonical form as a function. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* 0, or the number of the first rule of the canonical form (model.h) that p breaks, 8 for more levels than names. */
int poly_rule_broken(const polynode *p, const pt *names);
inline bool poly_is_canonical(const polynode *p) { return poly_rule_broken(p, polynames) == 0; }

/* 0, or the first rule that a finished quoly breaks: 11 zero with a denominator or as a polynomial, 12 a denominator of
   1 or -1, 13 its sign, 14 a constant that is no plain number, 15 is_rat, 16 a constant denominator in lintmode; or the
   rule that numerator or denominator break. */
int quoly_rule_broken(const quolynode *q);

/* What an operation on values gives, and what a variable or a cell is given, obeys the rules: debug and sanitizer builds
   look. */
#if !defined(NDEBUG) || TOLVEK_POISONING
constexpr bool stored_values_are_checked = true;
#else
constexpr bool stored_values_are_checked = false;
#endif
void report_broken_rule(int rule);
inline void check_stored(const quolynode *q) {
    if constexpr (stored_values_are_checked)
        if (int rule = q ? quoly_rule_broken(q) : 0) report_broken_rule(rule);
}

} // namespace tolvek
