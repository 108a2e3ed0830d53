/* Built-in functions that look at the system from inside: values as they lie in memory, and the free lists. */
#include "display/show_poly.h"
#include "display/show_quoly.h"
#include "language/builtin_routines.h"
#include "numbers/free_lists.h"
#include "poly/model.h"
#include "poly/variables.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

void builtin_abandon_lists(builtin_call &call) {
    abandon_free_lists();
    call.read_on();
}

static void show_value_with(const quolynode *q, const pt *names) {
    int column = 0;
    say("\n");
    quoly_display(Output, q, &column, {.want_continuation = 1, .finish = 1, .terminator = ";", .names = names});
}

void builtin_show_value(builtin_call &call) {
    argument value;
    standard_read(call, value);
    show_value_with(value.get(), polynames);
}

/* The tree of the numerator, then that of the denominator; a plain number is shown as it is. */
void builtin_show_tree(builtin_call &call) {
    argument value;
    standard_read(call, value);
    const quolynode *q = value.get();
    if (q->is_num) return show_value_with(q, polynames);
    say("\n");
    crude_poly_disp(Output, 1, q->num, 1, polynames);
    crude_poly_disp(Output, 1, q->den, 1, polynames);
}

static int depth(const polynode *p) {
    check_stack();
    int deepest = 0;
    for (; p; p = p->next)
        if (!p->is_number) deepest = std::max(deepest, 1 + depth(p->poly));
    return deepest;
}

/* The levels are shown with names of the system's own, z, y, ..., whatever the table of variables says. */
void builtin_show_levels(builtin_call &call) {
    constexpr int own_names = 78;
    argument value;
    standard_read(call, value);
    const quolynode *q = value.get();
    if (!q->is_num && std::max(depth(q->num), depth(q->den)) > own_names) {
        say("*** Warning: too many variables (> 78). Can't do ZZ3.\n");
        abandon_statement();
    }
    make_dummy_variables();
    show_value_with(q, dodo);
}

} // namespace tolvek
