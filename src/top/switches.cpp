/* The commands &x: toggles, dialogs, and everything else. */
#include "top/switches.h"

#include "language/scanner.h"
#include "top/defaults.h"
#include "top/driver.h"
#include "top/settings.h"
#include "top/switches_table.h"

#include <algorithm>

namespace tolvek {

/* ---- flags ---- */

bool is_forbidden(const switch_row &row) {
    if (!row.lintmode_error || !lintmode) return false;
    error(row.lintmode_error, token);
    return true;
}

bool store_flag(const switch_row &row, int value) {
    if (row.store)
        row.store(value);
    else
        *row.variable = value;
    if (*row.variable != value) return false;
    if (row.changed) row.changed();
    return true;
}

void say_flag(const switch_row &row, bool assigned) {
    const char *on = assigned && row.assigned_on ? row.assigned_on : row.on;
    const char *off = assigned && row.assigned_off ? row.assigned_off : row.off;
    put_format(&standard_output, *row.variable || !off ? on : off, *row.variable);
}

static void toggle(const switch_row &row, switch_call &call) {
    if (is_forbidden(row) || !store_flag(row, !*row.variable)) return;
    bool file_or_list = *call.cursor || !tt_flag;
    if (!row.quiet || !file_or_list) say_flag(row, false);
    if (!row.keeps_value) return;
    quoly_set(*row.variable, call.result);
    call.keeps_result = true;
}

/* ---- numbers ---- */

/* The value to be stored; false when it is refused. */
static bool bring_within_limits(const switch_row &row, int &value, switch_form how) {
    if (row.beyond == outside::stored) return true;
    const setting &limits = *find_setting(row.variable);
    if (value >= limits.least && value <= limits.most) return true;
    if (row.beyond == outside::refused) {
        error(row.range_error, token);
        return false;
    }
    if (row.beyond == outside::held) {
        value = std::clamp(value, limits.least, limits.most);
        return true;
    }
    value = row.replacement;
    if (how == switch_form::answer)
        say(row.replaced);
    else if (how == switch_form::assignment)
        say(row.assigned_replaced);
    return true;
}

static void say_number(const switch_row &row, switch_form how) {
    if (how == switch_form::silent_assignment) return;
    if (row.tell) return row.tell();
    const char *now = how == switch_form::assignment && row.assigned_now ? row.assigned_now : row.now;
    if (now) put_format(&standard_output, now, *row.variable);
    if (how == switch_form::answer && row.tell_answer) row.tell_answer();
}

bool store_number(const switch_row &row, int value, switch_form how) {
    if (row.reads_as) value = row.reads_as(value);
    if (!bring_within_limits(row, value, how)) return false;
    if (row.store)
        row.store(value);
    else
        *row.variable = value;
    if (row.changed) row.changed();
    say_number(row, how);
    return true;
}

static void ask_for_number(const switch_row &row, switch_call &call) {
    quoly_handle answer;
    if (!ask(row.question, answer_ring::not_modular, answer)) return;
    int value;
    if (!integer_value(answer.get(), value)) {
        error(row.number_error, token);
        return;
    }
    if (!store_number(row, value, switch_form::answer) || !row.keeps_value) return;
    answer.release_to(call.result);
    call.keeps_result = true;
}

/* ---- the command ---- */

void run_switch(switch_call &call) {
    const switch_row &row = *call.row;
    if (row.run)
        row.run(call);
    else if (row.kind == switch_kind::flag)
        toggle(row, call);
    else
        ask_for_number(row, call);
}

} // namespace tolvek
