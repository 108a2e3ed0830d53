#include "top/error_report.h"

#include "language/execution.h"
#include "language/scanner.h"
#include "language/stored.h"
#include "top/driver.h"

#include <algorithm>
#include <cstring>

namespace tolvek {

/* ---- heading ---- */

static void write_heading(const failure &f) {
    if (f.number == 0) {
        say("*** Panic stop.\n");
        if (levelcount == 1 && statcount == 0) say("    You were already at the lowest level.\n");
    } else if (f.number < 0) {
        say("*** New command level.\n");
    } else {
        sayf("*** Inappropriate symbol: %s\n", f.symbol.text);
        out_err_mess(f.number);
        if (f.number == 139) {
            say("that you have just deleted.  Any reference to this parameter \n");
            sayf("%s may crash Tolvek. There may be other such dangling array parameters.\n", f.symbol.text);
        }
    }
}

/* ---- a definition that fails is cancelled ---- */

static void write_comment(const name *comment) {
    if (!comment) return;
    say("    {");
    for (; comment && !is_end_of_list(comment->tok); comment = comment->next) say(comment->tok.text);
    say(" }\n");
}

static void write_cancelled(const char *which, const name *comment, const name *line) {
    sayf("Here is the last line %sread:\n", which);
    write_comment(comment);
    listchars(&standard_output, line);
    say("\n");
    sayf("*** Definition of %s cancelled.\n", current_func.text);
}

static void report_definition(const failure &f) {
    if (f.number == 132)
        write_cancelled("", last_comm, last_good_one);
    else if (f.number == 38 || f.number == 103 || (f.number == 129 && func_def_count >= 1))
        write_cancelled("successfully ", nullptr, last_attached);
}

/* ---- a file being loaded ---- */

static void write_line_of_file(stream in) {
    constexpr int longest = 254;
    for (int i = 0; i < longest && peek_char(in) != '\n'; i++) {
        int c = take_char(in);
        if (c == no_char) break;
        put_char(&standard_output, c);
    }
    if (peek_char(in) == '\n') take_char(in);
    say("\n");
}

static void report_loaded_file(const failure &f) {
    if (f.number < 0 || tt_flag || !inpuf) return;
    say("*** Stopped right before this:\n");
    for (int i = 0; i < 3 && !input_ended(inpuf); i++) write_line_of_file(inpuf);
    if (!close_inpuf) return;
    close_text(*inpuf);
    sayf("\n*** Closing file %s\n", input_file_name);
    input_file_name[0] = 0;
    inpuf = nullptr;
}

/* ---- the statement's tokens ---- */

static void report_tokens(const failure &f) {
    if (f.number <= 0 || !tt_flag || recent_tokens.count == 0) return;
    say("*** Error occurred at this point:\n");
    recent_tokens.write();
    if (statcount > 0) say("\n");
}

/* ---- the functions being evaluated ---- */

/* Writes names with their repetitions: ten of a run, then how many more. */
struct frame_writer {
    char remembered[token_bytes] = "";
    int repeats = 0;
    int written = 0;

    void end_run() {
        if (repeats < 10) return;
        sayf(" ... %d more with this name. \n", repeats - 9);
    }
    void write_name(const char *text) {
        sayf("%s ", text);
        if (++written % 20 == 0) say("\n ");
    }
    void add(const char *text) {
        if (std::strcmp(text, remembered) != 0) {
            end_run();
            std::strcpy(remembered, text);
            repeats = 0;
            write_name(text);
        } else if (repeats++ < 9) {
            write_name(text);
        }
    }
};

static void report_functions() {
    if (statcount == 0) return;
    say("*** The most recent function evaluations were:\n ");
    frame_writer writer;
    for (int i = statcount - 1; i >= std::max(0, statcount - frames_reported); i--)
        writer.add(running_frame(i).called->tok.text);
    writer.end_run();
}

/* ---- the stored statement being evaluated ---- */

static void write_whole_list(const name *list) {
    int column = 0;
    for (const name *n = list; n; n = n->next) {
        const char *text = is_end_of_list(n->tok) ? ";" : n->tok.text;
        say(text);
        column += static_cast<int>(std::strlen(text));
        if (column > 68) {
            say("\n");
            column = 0;
        }
    }
    say("\n");
}

static void write_list_up_to(const name *list, const name *stop) {
    for (const name *n = list; n && n != stop; n = n->next)
        if (!is_end_of_list(n->tok)) say(n->tok.text);
}

static void report_stored_statement() {
    if (!startexpr && !prev_expr) return;
    say("\n*** Function was interrupted at:\n");
    write_whole_list(prev_expr);
    write_list_up_to(startexpr, currentchar);
    if (extra_line) say("\n");
}

void forget_reported_state() {
    recent_tokens.clear();
    leave_flag = exit_flag = cycle_flag = cancelflag = 0;
    matrix_eval = 0;
    syst_dump = 0;
    startexpr = prev_expr = currentchar = nullptr;
}

void report_failure(const failure &f) {
    write_heading(f);
    report_definition(f);
    report_loaded_file(f);
    report_tokens(f);
    report_functions();
    report_stored_statement();
    forget_reported_state();
}

} // namespace tolvek
