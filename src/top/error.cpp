/* The one way in which a computation fails: report, then unwind to level 1 or open a command level.

   error(n, symbol) runs these steps in order:
     1  a fresh line; the symbol of the end of a list is written ";"
     2  errors 19 and 22 at a level above 1 are warnings
     3  does it unwind? (n = 0, or n above 0 without push)
     4  the report (error_report.cpp)
     5  an unwinding takes the functions' frames down and throws
     6  otherwise a command level is opened on this stack (levels.cpp), and error returns when it is left */
#include "gcd/gcd.h"
#include "language/execution.h"
#include "language/functions.h"
#include "language/scanner.h"
#include "top/driver.h"
#include "top/error_report.h"
#include "top/levels.h"
#include "top/settings.h"

namespace tolvek {

const token_record blank{" ", hash_unknown};

int levelcount = 1;
int errorpush = 0;
int close_inpuf = 0;
bool starting_up = false;

static bool is_downgraded(int n) { return levelcount > 1 && (n == 19 || n == 22); }

static bool opens_level(int n) {
    bool push = errorpush && (statcount >= 1 || levelcount > 1);
    return n < 0 || (n > 0 && push);
}

/* What a computation leaves behind in globals when it is abandoned. Everything that its frames own or have changed
   goes back by their handles and guards. */
static void forget_computation() {
    want_sparse = in_sys_func = 0;
    tripval = 20;
    clear_statement_counters();
    if (lookupgcd > 0) free_gcd_stash();
    was_modulus = -1;
    end_all_calls();
    levelcount = time_level = 1;
    for (time_row &row : time_off) row = {};
    doing_sys_func = func_def_count = 0;
    last_good_one = last_comm = last_attached = nullptr;
    tt_flag = 1;
    time_to_quit = 0;
    set_token(token, "");
    flush(&standard_output);
}

int error(int n, const token_record &symbol) {
    failure f{n, is_end_of_list(symbol) ? semicolon : symbol, !opens_level(n)};
    warn_cnt = 0;
    if (extra_line) say("\n");
    if (n > 0 && is_downgraded(n)) {
        warning(n, f.symbol.text);
        recent_tokens.clear();
        return 0;
    }
    if (!f.unwinds) {
        open_level(f);
        return 0;
    }
    report_failure(f);
    forget_computation();
    throw unwind{unwind::to_top};
}

void abandon_statement() {
    forget_reported_state();
    forget_computation();
    throw unwind{unwind::to_top};
}

} // namespace tolvek
