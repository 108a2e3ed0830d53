#include "top/switches.h"

#include "language/expressions.h"
#include "top/driver.h"
#include "top/loop.h"

namespace tolvek {

/* ---- toggles ---- */

struct toggle {
    int code;
    int *flag;
    bool quiet; /* says nothing inside a stored list */
    const char *on_text, *off_text;
};

static const toggle toggles[] = {
    {'E', &extra_line, false, " Will do extra line after display.\n", " No extra line after display.\n"},
    {'N', &noisy, false, " Will display results.\n", " Displaying results is deactivated.\n"},
    {'b', &close_inpuf, false, " Will close input file if error occurs while loading.\n",
     " Will not immediately close input file if error occurs while loading.\n"},
    {'e', &errorpush, true, " Will push new level after errors.\n", " Pushing after errors is deactivated.\n"},
    {'t', &timerflag, false, " Timing enabled.\n", " Timing disabled.\n"},
};

static bool run_toggle(const switch_call &call) {
    for (const toggle &row : toggles) {
        if (row.code != call.code) continue;
        *row.flag = !*row.flag;
        if (!row.quiet || !*call.cursor) say(*row.flag ? row.on_text : row.off_text);
        return true;
    }
    return false;
}

/* ---- commands ---- */

static void panic_stop(switch_call &) { error(0, blank); }

static void quit(switch_call &) { throw unwind{unwind::quit}; }

static void leave_level(switch_call &) { time_to_quit = 1; }

static void new_level(switch_call &call) {
    error(-1, blank);
    call.token_is_read = !tt_flag && !*call.cursor;
}

struct command {
    int code;
    void (*run)(switch_call &);
};

static const command commands[] = {
    {'@', panic_stop},
    {'q', quit},
    {'Q', quit},
    {code_leave_level, leave_level},
    {code_new_level, new_level},
};

bool run_switch(switch_call &call) {
    if (run_toggle(call)) return true;
    for (const command &row : commands) {
        if (row.code != call.code) continue;
        row.run(call);
        return true;
    }
    return false;
}

} // namespace tolvek
