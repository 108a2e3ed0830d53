#include "display/show_quoly.h"

#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_mult.h"
#include "numbers/number_decimal.h"
#include "quoly/quoly.h"

namespace tolvek {

/* What the parts of one value share. */
struct value_display {
    text_out *out;
    int want_continuation;
    int *column;
    int blank_after_minus;

    void put(const char *text, int columns) {
        put_text(out, text);
        *column += columns;
    }
    void break_line_at_margin() {
        if (*column < dispcutoff) return;
        if (uglyprint)
            put_char(out, continuation);
        else if (want_continuation)
            put_format(out, " %c", continuation);
        put_char(out, '\n');
        flush(out);
        *column = 0;
    }
};

/* A numerator or denominator that is a lone number. */
static void show_constant(value_display &d, const polynode *p, int right_justify) {
    display(d.out, d.want_continuation, right_justify, p->num, d.column, d.blank_after_minus);
}

static void show_quotient(value_display &d, const quolynode *q) {
    show_constant(d, q->num, 0);
    if (!q->den) return;
    d.put(uglyprint ? "/" : " / ", uglyprint ? 1 : 3);
    show_constant(d, q->den, 0);
}

/* Room for the text of the decimal form in front of the margin. */
static void count_columns(value_display &d, int columns) {
    constexpr int near_margin = 8;
    *d.column += *d.column >= dispcutoff - near_margin ? near_margin : columns;
    d.break_line_at_margin();
}

/* The decimal form of a rational: its whole part, and disp_size groups of 8 decimals, cut off and not rounded. */
static void show_decimals(value_display &d, const quolynode *q) {
    number_handle whole, rest;
    divide(q->num->num, q->den->num, &whole, &rest);
    put_text(d.out, ";  or  ");
    d.break_line_at_margin();
    count_columns(d, 7);
    if (num_sign(&whole) == 0 && num_sign(&rest) < 0) put_char(d.out, '-'); /* the 0 alone would lose the sign */
    showint(d.out, &whole, 1, 0, 0, 0, d.blank_after_minus, d.want_continuation, d.column);
    put_char(d.out, '.');
    count_columns(d, 1);

    if (num_sign(&rest) < 0) in_place_neg(&rest);
    number_handle decimals, discarded;
    fast_mult(&rest, &disp_cons, &decimals);
    divide(&decimals, q->den->num, &decimals, &discarded);
    ++*d.column;
    showint(d.out, &decimals, 0, 1, 0, 0, d.blank_after_minus, d.want_continuation, d.column);
}

static void end_value(value_display &d, int finish, int after_value, const char *terminator) {
    if (finish && d.want_continuation) {
        put_char(d.out, '\n');
    } else if (finish) {
        put_format(d.out, "%s\n", terminator);
    } else if (after_value && !d.want_continuation) {
        put_format(d.out, "%s\n", terminator);
        *d.column = 4;
    }
}

void quoly_display(text_out *out, int want_continuation, int finish, int after_value, const quolynode *q, int *column,
                   const char *terminator, int blank_after_minus, int, int as_character) {
    value_display d{out, want_continuation, column, blank_after_minus};
    if (q->is_num && as_character) {
        put_char(out, quoly_to_int(q));
    } else if (q->is_num) {
        d.blank_after_minus = 0;
        display(out, want_continuation, finish, q->numb, column, 0);
    } else {
        show_quotient(d, q);
        if (!lintmode && q->is_rat && want_continuation && disp_size > 0 && finish) show_decimals(d, q);
    }
    end_value(d, finish, after_value, terminator);
}

void quoly_display_value(text_out *out, const quolynode *q, int *column) {
    quoly_display(out, 1, 1, 0, q, column, ";", 0, 0, 0);
}

} // namespace tolvek
