/* Private to the display of polynomials: what the routines share while one polynomial is shown. */
#pragma once

#include "display/show_poly.h"

namespace tolvek {

struct poly_writer {
    text_out *out;
    int *column, *lines;
    int want_continuation;
    int blank_after_minus; /* the next number, if negative, stands as a subtraction */
    bool message_due;      /* the message that the rest is left out has not been written */

    void put(const char *text, int columns) {
        put_text(out, text);
        *column += columns;
    }
};

void checklength(poly_writer &w);
void plus_sign(poly_writer &w);                                /* the plus between two terms */
void put_variable(poly_writer &w, const pt *names, int32_t e); /* the name, and "^" with an exponent other than 1 */
void write_expo(poly_writer &w, int32_t e);                    /* "^" and the exponent; nothing for 0 and 1 */
void put_number(poly_writer &w, const number *x);              /* with its sign, as blank_after_minus says */

/* Ends the line and counts it, without a flush. */
void next_line(poly_writer &w);

/* Are the lines that the screen may take used up? Then the rest is to be left out; the message appears once. */
bool suppressed(poly_writer &w);

/* Is a number shown without a minus? Residues above half_modulus have one with alt_form_display. */
bool is_shown_positive(const number *x);

/* Numbers that are left out in front of a variable, as they are shown: 1, and -1 but for its sign. */
enum class unit { none, plus, minus };
unit shown_unit(const number *x);

/* One polynomial as a list of monomials. */
void show_monomials(poly_writer &w, const polynode *p, const pt *names);

/* Does a term that is no number term break the canonical form in a way that cannot be shown: a level without a name, or
   a wrapper around a bare number? Then this was reported. */
bool broken_term(const polynode *term, const pt *names);

} // namespace tolvek
