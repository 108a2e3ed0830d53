/* Lists of scalars and arrays. */
#include "display/listings.h"

#include "display/show_quoly.h"
#include "language/names.h"

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

void listvars(int with_values) {
    dump(Output, with_values);
    put_text(Output, "\narrays:\n\n");
    put_format(Output, " There are %d arrays.\n", 0); /* there are none yet */
}

} // namespace tolvek
