/* Numbers written out, with line management. */
#include "numbers/flat_chains.h"
#include "numbers/handles.h"
#include "numbers/number_decimal.h"
#include "numbers/number_work.h"
#include "top/interrupts.h"

#include <cmath>

namespace tolvek {

int disp_size = 5;
int dispcutoff = 76;
int uglyprint = 0;
char continuation = '`';
int alt_form_display = 1;

constexpr int figures_a_group = 8;
constexpr int groups_between_safe_points = 1000;

/* ---- line management ---- */

/* Ends the line, with the mark that it goes on. */
static void break_line(text_out *out, int *column) {
    if (!uglyprint) put_char(out, ' ');
    put_char(out, continuation);
    put_char(out, '\n');
    *column = 0;
}

/* Before a group of figures: at the line limit a blank, and a break where a continuation is wanted. */
static void space_before_group(text_out *out, int want_continuation, int *column) {
    if (*column < dispcutoff || uglyprint) return;
    if (want_continuation) break_line(out, column);
    put_char(out, ' ');
}

/* Leading zeros up to disp_size groups. */
static void write_pad(text_out *out, int decimal_groups, int want_continuation, int *column) {
    for (int group = decimal_groups; group < disp_size; group++) {
        put_text(out, "00000000");
        *column += figures_a_group;
        if (*column < dispcutoff) continue;
        if (uglyprint || want_continuation) break_line(out, column);
        put_char(out, ' ');
    }
}

/* ---- groups of figures ---- */

static int figures_of(int32_t group) {
    int count = 1;
    for (; group >= 10; group /= 10) count++;
    return count;
}

static void write_figures(text_out *out, int32_t group, int count) {
    char figures[figures_a_group];
    for (int i = count; i > 0; group /= 10) figures[--i] = static_cast<char>('0' + group % 10);
    put_bytes(out, figures, static_cast<std::size_t>(count));
}

/* The first group, without leading zeros. */
static void write_bare_group(text_out *out, int32_t digit, int right_justify, int *column) {
    const int32_t group = digit < 0 ? -digit : digit;
    const int count = figures_of(group);
    if (right_justify) {
        for (int i = count; i < figures_a_group; i++) put_char(out, ' ');
        put_char(out, digit < 0 ? '-' : ' ');
    }
    write_figures(out, group, count);
    *column += right_justify ? figures_a_group : count;
}

static void write_decimal(text_out *out, const number *x, int first_bare, int right_justify, int want_continuation,
                          int *column) {
    int group = 0;
    for (const numnode *d = x->num_head; d; d = d->next, group++) {
        if (group > 0) space_before_group(out, want_continuation, column);
        if (group == 0 && first_bare) {
            write_bare_group(out, d->digit, right_justify, column);
        } else {
            write_figures(out, d->digit < 0 ? -d->digit : d->digit, figures_a_group);
            *column += figures_a_group;
        }
        if (group % groups_between_safe_points == groups_between_safe_points - 1) safe_point();
    }
}

void showint(text_out *out, const number *x, int first_bare, int pad, int is_decimal, int right_justify,
             int blank_after_minus, int want_continuation, int *column) {
    number_handle converted;
    const number *decimal = x;
    if (!is_decimal && x->num_len > 0) {
        if (x->num_len >= flat_decimal_cut)
            flat_chain_base_10(x->num_head, x->num_len, &converted);
        else
            make_base_10(x, &converted);
        decimal = &converted;
    }
    const int groups = decimal->num_len > 0 ? decimal->num_len : 0;
    if (pad) write_pad(out, groups, want_continuation, column);
    if (groups == 0) return;
    if (groups > 1 && decimal->num_head->digit == 0) tolvek_error("bad 0 node found in showint", 1);
    if (!right_justify && decimal->num_head->digit < 0) {
        put_text(out, blank_after_minus && !uglyprint ? "- " : "-");
        ++*column;
    }
    write_decimal(out, decimal, first_bare, right_justify, want_continuation, column);
}

/* ---- in the form in force ---- */

static void display_small(text_out *out, int32_t shown, int *column, int blank_after_minus) {
    int64_t v = shown;
    if (modularmode && alt_form_display && !finf && shown > half_modulus) v -= modulus;
    if (blank_after_minus && v < 0) {
        put_text(out, "- ");
        v = -v;
    }
    put_format(out, "%li", static_cast<long>(v));
    const int top_bit = logg2lint(static_cast<int32_t>(v)); /* -1 for 0 */
    *column += top_bit < 0 ? 1 : static_cast<int>(std::floor(0.3 * top_bit + 0.5)) + 1;
}

void display(text_out *out, int want_continuation, int right_justify, const number *x, int *column,
             int blank_after_minus) {
    if (flotemode) {
        if (blank_after_minus)
            put_format(out, "- %.20Lg", -x->flote_val);
        else
            put_format(out, "%.20Lg", x->flote_val);
    } else if (lintmode) {
        display_small(out, x->lint_val, column, blank_after_minus);
    } else {
        showint(out, x, 1, 0, 0, right_justify, blank_after_minus, want_continuation, column);
    }
}

} // namespace tolvek
