#include "top/output_statement.h"

#include "display/folding.h"
#include "display/show_array.h"
#include "display/show_quoly.h"
#include "language/builtin_args.h"
#include "language/expressions.h"
#include "top/driver.h"
#include "top/output_file.h"
#include "top/parse.h"
#include "top/switches.h"
#include "top/switches_table.h"

#include <algorithm>

namespace tolvek {

struct output_call {
    stream *input;
    quolynode **result;
    name **cursor;
    text_out *out;
    bool in_list;

    void read_on() { scanner(input, token, cursor); }
    bool to_screen() const { return out == Output; }
};

/* ---- widths ---- */

/* Is the ":" in `token` the end of the statement? */
static bool nothing_follows(const output_call &w) {
    if (w.in_list) return false;
    if (*w.cursor) return !(*w.cursor)->next || is_end_of_list((*w.cursor)->next->tok);
    return at_line_end(*w.input);
}

static bool width_follows(const output_call &w) { return token_is(token, ":") && !nothing_follows(w); }

constexpr int no_width = -1;

/* What is told of the form of an item behind it. */
struct item_form {
    int width = no_width;
    bool as_character = false;
};

/* Reads the sum behind ":". */
static bool read_width(output_call &w, int &width) {
    quoly_handle value;
    modular_pause pause;
    old_expre(w.input, value.slot(), w.cursor);
    if (integer_value(value.get(), width)) return true;
    error(227, token);
    return false;
}

/* With ":" as the token. */
static bool handle_colon(output_call &w, item_form &form) {
    w.read_on();
    if (!token_is(token, "char")) return read_width(w, form.width);
    form.as_character = true;
    form.width = 0;
    w.read_on();
    if (!width_follows(w)) return true;
    w.read_on();
    return read_width(w, form.width);
}

/* ---- items ---- */

static bool handle_quote(output_call &w) {
    constexpr int longest = 255;
    char text[longest + 1];
    int length = 0;
    for (;;) {
        int line_end;
        dumbscanner(w.input, token, w.cursor, &line_end);
        if (line_end || is_end_of_list(token)) {
            error(33, quotesign);
            return false;
        }
        if (token_is(token, "'")) break;
        for (const char *c = token.text; *c && length < longest; c++) text[length++] = *c;
    }
    w.read_on();
    put_bytes(w.out, text, static_cast<std::size_t>(length));
    if (!width_follows(w)) return true;
    int width;
    w.read_on();
    if (!read_width(w, width)) return false;
    doblanks(w.out, width - length);
    return true;
}

/* A value in the form that stands behind it; `get` gives it once that has been evaluated. */
template <class Get> static bool show_item(output_call &w, Get get) {
    item_form form;
    if (w.in_list && token_is(token, ":")) {
        if (!handle_colon(w, form)) return false;
    } else if (w.in_list) {
        put_char(w.out, ' ');
    }
    const int64_t before = w.out->taken;
    int column = 0;
    quoly_display(w.out, get(), &column,
                  {.want_continuation = w.to_screen(), .as_character = form.as_character});
    const int64_t columns = w.out->taken - before;
    if (form.width != no_width) doblanks(w.out, static_cast<int>(std::max<int64_t>(0, form.width - 1 - columns)));
    return true;
}

static bool value_item(output_call &w) {
    quoly_handle value;
    (w.in_list ? old_expre : old_fact)(w.input, value.slot(), w.cursor);
    held_value held;
    const bool shown = show_item(w, [&] { return value.get(); });
    value.release_to(w.result);
    return shown;
}

static bool value_by_name(output_call &w) {
    builtin_call call{w.input, w.result, w.cursor, 0};
    named_place named;
    named.read(call);
    return show_item(w, [&] { return named.get(); });
}

/* Text for the file reads back as assignments. */
static bool array_item(output_call &w) {
    array_region region;
    item_form form;
    left_side(w.input, w.cursor, region, true, 28);
    existing(region);
    held_cells held;
    if (width_follows(w) && !handle_colon(w, form)) return false;
    arrdisplay(w.out, region,
               {.on_screen = w.to_screen(),
                .framed = !w.to_screen(),
                .as_character = form.as_character,
                .width = std::max(form.width, 0),
                .gap = 1,
                .first_row = addresser,
                .first_col = addresser});
    return true;
}

static bool one_write_out(output_call &w) {
    if (token_is(token, "'")) return handle_quote(w);
    if (token_is(token, "[")) return array_item(w);
    if (token_is(token, ";") || is_end_of_list(token)) {
        if (w.in_list) error(106, token);
        return !w.in_list;
    }
    if (w.in_list && token_is(token, "^")) return value_by_name(w);
    return value_item(w);
}

/* ---- the statement ---- */

static bool first_of_list(output_call &w) {
    if (!token_is(token, "&")) return one_write_out(w);
    text_out *file = handle_andsign(w.input, w.cursor);
    if (!file) return false;
    w.out = file;
    w.read_on();
    return true;
}

/* With "(" as the token. */
static bool write_list(output_call &w) {
    w.read_on();
    if (!first_of_list(w)) return false;
    while (!token_is(token, ")")) {
        if (!token_is(token, ",")) {
            error(105, token);
            return false;
        }
        w.read_on();
        if (!one_write_out(w)) return false;
    }
    w.read_on();
    return true;
}

void write_out(stream *input, quolynode **result, name **cursor) {
    output_call w{input, result, cursor, Output, false};
    w.read_on();
    const bool twice = token_is(token, "!");
    if (twice) w.read_on();
    w.in_list = token_is(token, "(");
    const bool whole = w.in_list ? write_list(w) : one_write_out(w);
    if (whole && (twice || !w.in_list)) put_char(w.out, '\n');
    if (twice && w.to_screen()) flush(w.out);
    if (!w.to_screen() && w.out->failed) {
        settle_output();
        abandon_statement();
    }
}

} // namespace tolvek
