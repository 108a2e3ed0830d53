/* The display of polynomials.

   Nested form: terms from the highest exponent down, each coefficient in front of its variable, and in parentheses if
   it is more than a number: (y + 1)x^2 - 3x + 1. As a list of monomials (monomial_list): the variables of a monomial
   from the innermost to the outermost, 3*y*x^2 - 3*x + 1.

   What is shown to the screen ends after 151 lines with a message, unless do_line_sup is off; text for a file is never
   cut. No routine here changes a value. */
#pragma once

#include "display/folding.h"
#include "top/tolvek.h"

namespace tolvek {

extern int monomial_list; /* polynomials of several variables are shown as lists of monomials */
extern int do_line_sup;   /* long polynomials are cut short on the screen */

constexpr int most_lines_on_screen = 151;

struct poly_style {
    int want_continuation = 0; /* the text goes to the screen */
    int right_justify = 0;     /* of a polynomial that is a bare number */
    int blank_after_minus = 0; /* a negative number at the beginning stands as a subtraction: "- " */
    int allow_bare_number = 1; /* a polynomial that is a bare number is shown as one */
};

/* Shows p, in the variables from `names` on: nested, or as a list of monomials if monomial_list is on and names has a
   successor. `column` counts the characters of the line, `lines` the lines; both go on from the values given. A list
   that is not canonical is reported as an internal error, and the rest of it left out. */
void poly_display(text_out *out, const polynode *p, const pt *names, int *column, int *lines, const poly_style &style);

/* Is p shown without a sum or a product, so that it needs no parentheses in a quotient? A number, a power of one
   variable, or the negative of one. */
int poly_small(const polynode *p);

/* The nodes of p as an indented tree, for inspection: a line for each list, with the exponents of its terms and a
   star for each number term. indent: 1 for the first list. names may be null. */
void crude_poly_disp(text_out *out, int want_continuation, const polynode *p, int indent, const pt *names);

} // namespace tolvek
