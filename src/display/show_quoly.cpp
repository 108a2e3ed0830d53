#include "display/show_quoly.h"

#include "display/show_poly.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_mult.h"
#include "quoly/quoly.h"
#include "top/driver.h"

namespace tolvek {

/* What the parts of one value share. */
struct value_writer {
    text_out *out;
    int *column;
    const value_style &style;
    int lines = 0;

    void put(const char *text, int columns) {
        put_text(out, text);
        *column += columns;
    }
    void fold() { checklength(out, style.want_continuation, column, &lines); }
};

/* ---- numerator and denominator ---- */

static void show_polynomial(value_writer &w, const polynode *p, int right_justify, int blank_after_minus) {
    w.lines = 0;
    poly_display(w.out, p, w.style.names, w.column, &w.lines,
                 {w.style.want_continuation, right_justify, blank_after_minus, 1});
}

static bool numerator_in_parentheses(const value_writer &w, const quolynode *q) {
    if (q->den && !poly_small(q->num)) return true;
    return !q->is_rat && !w.style.want_continuation && !monomial_list;
}

static void show_numerator(value_writer &w, const quolynode *q) {
    const bool in_parentheses = numerator_in_parentheses(w, q);
    if (w.style.want_continuation && w.style.lead_blank && promptsize > 0) put_char(w.out, ' ');
    if (in_parentheses) w.put(uglyprint ? "(" : "( ", uglyprint ? 1 : 2);
    show_polynomial(w, q->num, w.style.finish && !q->den, w.style.blank_after_minus);
    if (in_parentheses) put_text(w.out, uglyprint ? ")" : " )");
}

static void show_denominator(value_writer &w, const quolynode *q) {
    w.put(uglyprint ? "/" : " / ", uglyprint ? 1 : 3);
    const bool in_parentheses = !poly_small(q->den);
    if (in_parentheses) put_text(w.out, uglyprint ? "(" : "( ");
    show_polynomial(w, q->den, 0, 0);
    if (in_parentheses) put_text(w.out, uglyprint ? ")" : " )");
}

/* ---- the decimal form of a rational number ---- */

/* Counts in advance what stands in front of the next figures, and ends the line for them if need be. */
static void count_ahead(value_writer &w, int columns) {
    constexpr int figures_a_group = 8;
    *w.column += near_margin(*w.column, figures_a_group) ? figures_a_group : columns;
    w.fold();
}

static void show_decimal_form(value_writer &w, const quolynode *q) {
    const int to_screen = w.style.want_continuation, apart = w.style.blank_after_minus;
    number_handle whole, rest, decimals, discarded;
    divide(q->num->num, q->den->num, &whole, &rest);
    put_text(w.out, ";  or  ");
    w.fold();
    count_ahead(w, 7);
    if (num_sign(&whole) == 0 && num_sign(&rest) < 0) put_char(w.out, '-'); /* the 0 alone would lose the sign */
    showint(w.out, &whole, 1, 0, 0, 0, apart, to_screen, w.column);
    put_char(w.out, '.');
    count_ahead(w, 1);

    if (num_sign(&rest) < 0) in_place_neg(&rest);
    fast_mult(&rest, &disp_cons, &decimals);
    divide(&decimals, q->den->num, &decimals, &discarded);
    ++*w.column;
    showint(w.out, &decimals, 0, 1, 0, 0, apart, to_screen, w.column);
}

/* ---- the whole value ---- */

static bool has_decimal_form(const value_writer &w, const quolynode *q) {
    return !lintmode && q->is_rat && w.style.want_continuation && disp_size > 0 && w.style.finish;
}

static void show_plain_number(value_writer &w, const quolynode *q) {
    if (w.style.as_character)
        put_char(w.out, quoly_to_int(q) & 255);
    else
        display(w.out, w.style.want_continuation, w.style.finish, q->numb, w.column, 0);
}

static void end_value(value_writer &w) {
    const value_style &s = w.style;
    if (s.finish && s.want_continuation) {
        put_text(w.out, polynames && extra_line ? "\n\n" : "\n");
    } else if (s.finish || (s.after_value && !s.want_continuation)) {
        put_text(w.out, s.terminator);
        put_char(w.out, '\n');
        if (!s.finish) *w.column = 4;
    }
}

void quoly_display(text_out *out, const quolynode *q, int *column, const value_style &style) {
    value_writer w{out, column, style};
    if (q->is_num) {
        show_plain_number(w, q);
    } else {
        show_numerator(w, q);
        if (q->den) show_denominator(w, q);
        if (has_decimal_form(w, q)) show_decimal_form(w, q);
    }
    end_value(w);
}

void quoly_display_value(text_out *out, const quolynode *q, int *column) {
    quoly_display(out, q, column, {.want_continuation = 1, .finish = 1, .terminator = ";"});
}

} // namespace tolvek
