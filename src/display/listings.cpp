/* Lists of scalars and arrays. */
#include "display/listings.h"

#include "display/show_quoly.h"
#include "language/names.h"
#include "matrix/arrays.h"

#include <algorithm>

namespace tolvek {

void sort_vars(listed_name *rows, int count) {
    std::sort(rows, rows + count, [](const listed_name &a, const listed_name &b) {
        const int order = std::strcmp(a.text, b.text);
        return order != 0 ? order < 0 : a.place < b.place;
    });
}

/* All scalars in the order of their chains, where the newest record of a name comes first. The records stay whole
   while the list is shown, also if a command level opens meanwhile and deletes them. */
static void collect_scalars(buffer<listed_name> &rows) {
    for (const variable *chain : sca_store)
        for (const variable *v = chain; v; v = v->next) rows.push({v->tok.text, static_cast<int>(rows.size()), v});
}

static void write_p_stuff(text_out *out, const variable *v, int with_values) {
    put_format(out, " %s", v->tok.text);
    if (with_values && v->value && v->value->is_num && v->value->array_mark) {
        put_text(out, " := array parameter.");
    } else if (with_values && v->value) {
        put_text(out, " := ");
        int column = static_cast<int>(std::strlen(v->tok.text)) + 5;
        quoly_display(out, v->value, &column, {.want_continuation = 1, .terminator = ";"});
    }
    put_char(out, '\n');
}

void dump(text_out *out, int with_values) {
    constexpr int most_of_one_name = 10;
    buffer<listed_name> rows;
    collect_scalars(rows);
    const int count = static_cast<int>(rows.size());
    if (count <= most_sorted) sort_vars(rows.data(), count);
    for (int i = 0, end; i < count; i = end) {
        for (end = i; end < count && std::strcmp(rows[end].text, rows[i].text) == 0;) end++;
        const int shown = std::min(end - i, most_of_one_name);
        for (int j = i; j < i + shown; j++)
            write_p_stuff(out, static_cast<const variable *>(rows[j].record), with_values);
        if (end - i > shown) put_format(out, " ... %d more with this name. \n", end - i - shown);
    }
}

/* ---- arrays ---- */

constexpr int most_described = 1500;

static void describe_sorted(text_out *out, buffer<listed_name> &rows) {
    constexpr int most_of_one_name = 9;
    const int count = static_cast<int>(rows.size());
    sort_vars(rows.data(), count);
    for (int i = 0, end; i < count; i = end) {
        for (end = i; end < count && std::strcmp(rows[end].text, rows[i].text) == 0;) end++;
        const int shown = std::min(end - i, most_of_one_name);
        for (int j = i; j < i + shown; j++) arrdescribe(out, static_cast<const array_record *>(rows[j].record));
        if (end - i > shown) put_format(out, " ... %d more with this name. \n", end - i - shown);
    }
}

/* Many arrays: in the order of the chains, 20 of each at most. */
static void describe_chains(text_out *out) {
    constexpr int most_of_one_chain = 20;
    int described = 0;
    for (const array_record *chain : arr_store) {
        int of_chain = 0;
        for (const array_record *a = chain; a; a = a->next) {
            if (++of_chain > most_of_one_chain || described >= most_described) continue;
            arrdescribe(out, a);
            described++;
        }
        if (of_chain > most_of_one_chain && described <= most_described)
            put_format(out, " ... %d more.\n", of_chain - most_of_one_chain);
    }
}

static void list_arrays(text_out *out) {
    buffer<listed_name> rows;
    for (const array_record *chain : arr_store)
        for (const array_record *a = chain; a; a = a->next) rows.push({a->tok.text, static_cast<int>(rows.size()), a});
    const int count = static_cast<int>(rows.size());
    if (count <= most_sorted)
        describe_sorted(out, rows);
    else
        describe_chains(out);
    if (count > most_described) put_text(out, "   ....\n");
    put_format(out, " There are %d arrays.\n", count);
    if (count > most_described) put_format(out, "   %d were not described here.\n", count - most_described);
}

void listvars(int with_values) {
    dump(Output, with_values);
    put_text(Output, "\narrays:\n\n");
    list_arrays(Output);
}

} // namespace tolvek
