/* The display of values: numbers, polynomials, and quotients of polynomials. */
#pragma once

#include "poly/variables.h"
#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

struct value_style {
    int want_continuation = 0; /* the text goes to the screen; otherwise it is text for a file, which reads back */
    int finish = 0;            /* a whole value: the end of the line follows, behind the terminator in a file */
    int after_value = 0;       /* in a file the terminator and a newline follow, and the column is 4 */
    const char *terminator = "";
    const pt *names = polynames;
    int blank_after_minus = 0;
    int lead_blank = 0;   /* a blank in front of a polynomial on the screen, when there is a prompt */
    int as_character = 0; /* a number is shown as the byte that it stands for */
};

/* Shows one value. `column` counts the characters of the line and goes on from the value given.

   Numerator and denominator stand in parentheses unless poly_small says that they need none; in a file every polynomial
   does, unless monomial_list is on. On the screen each of the two has its own count of lines (show_poly.h), and behind
   a finished rational number its decimal form follows, with disp_size groups of 8 decimals, cut off and not rounded. A
   finished value has a further newline on the screen while there are polynomial variables and extra_line is on. */
void quoly_display(text_out *out, const quolynode *q, int *column, const value_style &style);

/* The value of a statement, on the screen. */
void quoly_display_value(text_out *out, const quolynode *q, int *column);

} // namespace tolvek
