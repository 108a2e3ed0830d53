#include "display/show_array.h"

#include "display/folding.h"
#include "display/show_poly.h"
#include "display/show_quoly.h"
#include "matrix/sparse.h"
#include "poly/measures.h"
#include "top/driver.h"
#include "top/interrupts.h"

#include <cstring>

namespace tolvek {

/* One rectangle on its way. */
struct array_writer {
    text_out *out;
    const array_region &region;
    const array_picture &picture;
    int64_t rows, cols;
    int indent = 0;
    int column = 0;    /* counted roughly, as folding wants it */
    int64_t begun = 0; /* the count of characters in front of the element */

    void begin_element() {
        column = 0;
        begun = out->count;
    }
    /* Blanks up to the width behind the element, and `least` of them at least. */
    void fill_up(int least) {
        const int64_t room = picture.width - (out->count - begun);
        doblanks(out, static_cast<int>(room > least ? room : least));
    }

    bool is_last(int64_t r, int64_t c) const { return r == rows - 1 && c == cols - 1; }
    /* The value of a cell; null: it has none. */
    const quolynode *cell(int64_t r, int64_t c) const {
        const array_record *a = region.array;
        const int64_t i = region.index(r, c);
        if (!a->sparse_head) return element(a, i);
        return spar_retrieve(a->sparse_head, static_cast<int32_t>(i % a->rows) + 1,
                             static_cast<int32_t>(i / a->rows) + 1);
    }
    void put_blanks(int64_t n) { doblanks(out, static_cast<int>(n)); }
};

/* ---- single elements ---- */

static void put_label(array_writer &w, int64_t r, int64_t c) {
    const long row = w.picture.first_row + r, col = w.picture.first_col + c;
    if (w.region.array->one_dim)
        put_format(w.out, " %s[%2ld] := ", w.region.tok.text, row);
    else
        put_format(w.out, " %s[%2ld,%2ld] := ", w.region.tok.text, row, col);
}

/* A polynomial in a file is read fastest by the command &_n. */
static void mark_polynomial(array_writer &w, const quolynode *q) {
    const array_picture &p = w.picture;
    if (p.on_screen || !p.framed || monomial_list || uglyprint || q->is_num || (q->is_rat && !lintmode)) return;
    put_text(w.out, "&_n ");
}

static void put_character(array_writer &w, const quolynode *q) {
    if (!q->is_num) array_error(121, w.region.tok);
    quoly_display(w.out, q, &w.column, {.want_continuation = w.picture.on_screen, .as_character = 1});
}

static void put_value(array_writer &w, const quolynode *q, const char *terminator, int after_value) {
    mark_polynomial(w, q);
    quoly_display(w.out, q, &w.column,
                  {.want_continuation = w.picture.on_screen, .after_value = after_value, .terminator = terminator});
}

/* ---- by rows ---- */

static bool is_paged(const array_writer &w) { return w.region.array != &syst; }

/* What stands in front of the first row, and the indent of the others. */
static void begin_rows(array_writer &w) {
    constexpr int indent_of_rows = 3;
    const array_picture &p = w.picture;
    w.indent = p.on_screen && is_paged(w) ? 0 : indent_of_rows;
    if (p.on_screen && is_paged(w) && p.framed) {
        if (levelcount > 1) put_format(w.out, "%d", levelcount);
        put_format(w.out, "%s[%s] := ", prompt, w.region.tok.text);
        const int frame = prompt[0] == carriage_return_mode ? 8 : 9;
        w.indent = static_cast<int>(std::strlen(prompt) + std::strlen(w.region.tok.text)) + frame + (levelcount > 1);
    }
    if (!p.on_screen) return;
    if (p.framed)
        put_text(w.out, "[[ ");
    else if (!uglyprint)
        w.put_blanks(w.indent);
}

static void end_row(array_writer &w, int64_t r) {
    const array_picture &p = w.picture;
    if (!p.on_screen) return;
    if (r < w.rows - 1) {
        if (!p.framed)
            put_char(w.out, '\n');
        else if (uglyprint)
            put_text(w.out, "], [\n");
        else
            put_format(w.out, " %c\n", continuation);
        w.put_blanks(w.indent);
    } else if (p.framed) {
        put_text(w.out, p.as_character ? " ]]\n" : w.rows == 1 ? "  ]]\n" : "   ]]\n");
    }
}

static void put_separator(array_writer &w, int64_t r, int64_t c) {
    const bool more = uglyprint ? c < w.cols - 1 : !w.is_last(r, c);
    if (!w.picture.on_screen)
        put_text(w.out, "; \n");
    else if (more)
        put_char(w.out, ',');
}

/* An element that has no value: on the screen alone, as a file needs no statement for it. */
static void put_missing(array_writer &w, int64_t r, int64_t c) { put_text(w.out, w.is_last(r, c) ? " * " : " *,"); }

static void put_element(array_writer &w, int64_t r, int64_t c) {
    const array_picture &p = w.picture;
    const quolynode *q = w.cell(r, c);
    if (!p.on_screen && (!q || q == quol_num_0)) return;
    w.begin_element();
    if (!q) {
        put_missing(w, r, c);
    } else {
        if (!p.on_screen) put_label(w, r, c);
        if (p.as_character) {
            put_character(w, q);
        } else {
            if (p.framed && p.width > 1) {
                put_char(w.out, ' ');
                w.column = 1;
            }
            put_value(w, q, ",", 0);
            put_separator(w, r, c);
        }
    }
    if (p.on_screen && c < w.cols - 1) w.fill_up(p.as_character ? 0 : p.gap);
}

static void by_rows(array_writer &w) {
    begin_rows(w);
    for (int64_t r = 0; r < w.rows; r++) {
        safe_point();
        for (int64_t c = 0; c < w.cols; c++) put_element(w, r, c);
        end_row(w, r);
    }
    if (w.picture.on_screen && w.picture.framed) flush(w.out);
}

/* ---- item by item ---- */

static void begin_item(array_writer &w, int64_t r, int64_t c) {
    const array_picture &p = w.picture;
    w.column = 0;
    if (!p.framed) return;
    if (p.on_screen) {
        put_label(w, r, c);
        w.column = static_cast<int>(std::strlen(w.region.tok.text)) + (w.region.array->one_dim ? 15 : 18);
    } else if (r == 0 && c == 0) {
        put_format(w.out, "[%s] := [( ", w.region.tok.text);
    } else {
        put_text(w.out, "          ");
    }
}

static void put_item(array_writer &w, int64_t r, int64_t c) {
    const array_picture &p = w.picture;
    const char *terminator = w.is_last(r, c) ? " " : ",";
    begin_item(w, r, c);
    const quolynode *q = w.cell(r, c);
    if (!q) {
        if (p.on_screen)
            put_text(w.out, "not defined.");
        else
            put_format(w.out, "0%s", terminator);
        put_char(w.out, '\n');
        return;
    }
    if (p.as_character)
        put_character(w, q);
    else
        put_value(w, q, terminator, 1);
    if (p.on_screen || p.as_character) put_char(w.out, '\n');
}

static void by_items(array_writer &w) {
    const bool on_screen = w.picture.on_screen;
    for (int64_t c = 0; c < w.cols; c++) {
        for (int64_t r = 0; r < w.rows; r++) {
            safe_point();
            put_item(w, r, c);
        }
        const bool last = c == w.cols - 1;
        if (w.rows > 1 && (on_screen || !last)) put_text(w.out, " \n");
        if (!on_screen && last && w.picture.framed) put_text(w.out, "          )];\n");
    }
}

void arrdisplay(text_out *out, const array_region &region, const array_picture &picture) {
    if (region.array->sparse_head && region.is_whole() && picture.on_screen == picture.item_by_item) {
        if (picture.on_screen)
            sparse_display(out, region.array, true);
        else
            better_sparse_display(out, region.array);
        return;
    }
    array_writer w{out, region, picture, region.rows, region.cols};
    (picture.item_by_item ? by_items : by_rows)(w);
}

/* ---- literals of small values ---- */

bool all_small(const array_record *a) {
    constexpr int most_digits = 10; /* nodes of a chain */
    for (int64_t i = 0; i < a->size; i++) {
        const quolynode *q = element(a, i);
        if (!q || (q->is_num && (lintmode || q->numb->num_len < most_digits))) continue;
        if (q->is_num || lintmode || !q->is_rat) return false;
        if (q->num->num->num_len + q->den->num->num_len > most_digits) return false;
    }
    return true;
}

static void put_small(array_writer &w, int64_t r, int64_t c) {
    const quolynode *q = w.cell(r, c);
    const bool last = w.is_last(r, c);
    w.begin_element();
    if (!q) {
        put_text(w.out, last ? "0  " : "0, ");
    } else {
        put_char(w.out, ' ');
        put_value(w, q, ",", 0);
        if (!last) put_text(w.out, ", ");
    }
    if (c < w.cols - 1) w.fill_up(0);
}

void arrdis(text_out *out, const array_region &region, int width) {
    constexpr int frame = 9; /* "[] := [[ " */
    array_writer w{out, region, {.width = width}, region.rows, region.cols};
    put_format(out, "[%s] := [[ ", region.tok.text);
    for (int64_t r = 0; r < w.rows; r++) {
        safe_point();
        for (int64_t c = 0; c < w.cols; c++) put_small(w, r, c);
        if (w.cols > 1 && r < w.rows - 1) {
            put_char(out, '\n');
            w.put_blanks(static_cast<int>(std::strlen(region.tok.text)) + frame);
        }
    }
    put_text(out, w.cols > 1 ? "   ]];\n" : "  ]];\n");
}

/* ---- sparse arrays ---- */

/* One row on its way: "[4, [1, x], [7, 3] ]". */
static void put_sparse_row(text_out *out, const colm *c, int64_t row, int indent, int column, bool on_screen) {
    constexpr int longest_line = 151, indent_of_pairs = 3;
    put_format(out, "[%ld", static_cast<long>(row));
    column += 3;
    for (; c; c = c->next) {
        put_format(out, ", [%ld, ", static_cast<long>(c->column) + addresser - 1);
        column += 7;
        quoly_display(out, c->value, &column, {.want_continuation = on_screen});
        put_char(out, ']');
        column++;
        if (column < longest_line || !c->next) continue;
        if (on_screen) put_format(out, " %c", continuation);
        put_text(out, " \n");
        doblanks(out, indent + indent_of_pairs);
        column = indent + indent_of_pairs;
    }
    put_text(out, " ]");
}

static int begin_sparse(text_out *out, const array_record *a, bool on_screen) {
    constexpr int frame = 8; /* "[] := [ " */
    if (on_screen && a == &syst) {
        put_char(out, '[');
        return 1;
    }
    const char *before = on_screen ? prompt : "";
    put_format(out, "%s[%s] := [ ", before, a->tok.text);
    return static_cast<int>(std::strlen(before) + std::strlen(a->tok.text)) + frame;
}

void sparse_display(text_out *out, const array_record *a, bool on_screen) {
    const int indent = begin_sparse(out, a, on_screen);
    bool first = true;
    row_walk row(a->sparse_head);
    for (int64_t r = 0; r < a->rows; r++, row.next()) {
        if (!*row) continue;
        safe_point();
        if (!first) {
            if (on_screen) put_format(out, " %c", continuation);
            put_text(out, " \n");
            doblanks(out, indent);
        }
        first = false;
        put_sparse_row(out, *row, r + addresser, indent, indent, on_screen);
    }
    put_text(out, on_screen ? " ] \n \n" : " ]; \n \n");
}

void better_sparse_display(text_out *out, const array_record *a) {
    row_walk row(a->sparse_head);
    for (int64_t r = 0; r < a->rows; r++, row.next()) {
        safe_point();
        for (const colm *c = *row; c; c = c->next) {
            put_format(out, "%s[%ld, %ld] := ", a->tok.text, static_cast<long>(r) + addresser,
                       static_cast<long>(c->column) + addresser - 1);
            int column = 0;
            quoly_display(out, c->value, &column, {});
            put_text(out, ";\n");
        }
    }
    put_text(out, " \n");
}

/* ---- the system array ---- */

/* Columns that a short value takes; -1: it is long. */
static int columns_of(const quolynode *q) {
    static text_out nowhere(-1);
    constexpr int most_digits = 8, most_terms = 4, most_bits = 100;
    if (q->is_num ? !lintmode && q->numb->num_len > most_digits : numterms(q) > most_terms) return -1;
    if (!q->is_num && !lintmode && quoly_max_digits(q) > most_bits) return -1;
    nowhere.failed = true; /* what is written there is dropped */
    int column = 0;
    const int64_t before = nowhere.count;
    quoly_display(&nowhere, q, &column, {.want_continuation = 1});
    nowhere.used = 0;
    return static_cast<int>(nowhere.count - before);
}

/* The width that aligns the columns; 0 if a value is too long for that. */
static int aligning_width(const array_record *a) {
    constexpr int widest = 30, comma_and_blank = 2;
    int width = 1;
    for (int64_t i = 0; i < a->size; i++) {
        const quolynode *q = element(a, i);
        const int columns = q ? columns_of(q) : 1;
        if (columns < 0 || columns > widest) return 0;
        width = columns > width ? columns : width;
    }
    return width + comma_and_blank;
}

void show_system_array(text_out *out) {
    if (syst_is_empty()) return;
    if (syst.sparse_head) {
        sparse_display(out, &syst, true);
        return;
    }
    array_region region;
    whole_array(&syst, region);
    arrdisplay(
        out, region,
        {.on_screen = true, .width = aligning_width(&syst), .gap = 1, .first_row = addresser, .first_col = addresser});
    fresh_line(out);
}

} // namespace tolvek
