#include "top/load.h"

#include "language/execution.h"
#include "language/poly_reader.h"
#include "language/scanner.h"
#include "quoly/quoly.h"
#include "top/driver.h"
#include "top/file_names.h"
#include "top/guards.h"
#include "top/parse.h"
#include "top/switches.h"
#include "top/switches_table.h"

#include <cstdio>

namespace tolvek {

static text_in file;
static int files_opened = 0; /* tells a statement that opened another file */

/* ---- the input file ---- */

void close_input() {
    if (!inpuf) return;
    close_text(*inpuf);
    inpuf = nullptr;
    input_file_name[0] = 0;
}

static bool open_input(const char *name) {
    close_input();
    if (!open_text(file, name)) {
        sayf(" *** Warning. %s: no such file. Read cancelled.\n", name);
        error(374, token);
        return false;
    }
    inpuf = &file;
    files_opened++;
    std::snprintf(input_file_name, sizeof input_file_name, "%s", name);
    done_load = 0;
    return true;
}

/* False: there is nothing to read. */
static bool choose_input(const char *name) {
    if (!is_usable(name, output_file_name)) return false;
    if (std::strcmp(name, "@") != 0) return open_input(name);
    if (inpuf)
        sayf(" Now closing %s.\n", input_file_name);
    else
        say(" *** Warning. No input file had been open.\n");
    close_input();
    return false;
}

/* ---- the statements ---- */

static void say_end_of_file() { sayf("*** Warning.  End of file %s encountered.\n", input_file_name); }

/* Did the end of the file stand for the terminator of the last statement? */
static bool was_cut(stream in) {
    if (!input_ended(in)) return false;
    int at = in->at;
    while (at > 0 && std::strchr(" \t\r\n", in->block[at - 1])) at--;
    return at > 0 && !std::strchr(";:@", in->block[at - 1]);
}

/* Reads one statement, and the rest of its line unless it has opened another file. */
static void read_statement(stream in, quolynode **result) {
    const int serial = files_opened;
    run_statement(&in, result);
    leftover = 0;
    if (!inpuf || files_opened != serial) return;
    if (was_cut(in)) say_end_of_file();
    skip_line(in);
}

static void read_statements(quolynode **result) {
    stream in = &file;
    if (inpuf && !skip_white_space(in) && !in->failed) say_end_of_file();
    while (inpuf && !done_load && skip_white_space(in)) {
        quoly_handle value;
        read_statement(in, value.slot());
        value.release_to(result);
    }
    if (inpuf && in->failed) sayf("*** Warning. File %s cannot be read.\n", input_file_name);
}

static void read_file(quolynode **result) {
    kept_value<int> terminal(tt_flag, 0), left(leftover, 0), path(integerflag, 0), warning_due(minus_warning, 1);
    kept_value<time_row> clock(mytime[time_level]); /* the statements use the row */
    if (!done_load) restart_text(file);
    done_load = 0;
    read_statements(result);
    if (!*result) quoly_set(0, result);
}

/* ---- the commands ---- */

/* A statement of a file that has opened another one ends there: what stands behind it is out of reach. */
static void load_chosen(switch_call &call, const char *name) {
    const int serial = files_opened;
    {
        kept_value<token_record> behind(token);
        if (choose_input(name)) read_file(call.result);
    }
    if (*call.cursor || *call.input != &file || files_opened == serial) return;
    set_token(token, ";");
    call.token_is_read = true;
}

void load(switch_call &call) {
    quoly_set(0, call.result);
    if (inpuf && call.row->code == 'r') return read_file(call.result);
    file_name answer;
    scanner(call.input, token, call.cursor);
    call.token_is_read = true;
    if (ask_for_name("Enter name of input file: \n", "*** Read cancelled\n", answer)) load_chosen(call, answer.text);
}

void load_from(switch_call &call, const char *name) {
    quoly_set(0, call.result);
    call.keeps_result = true;
    load_chosen(call, name);
}

} // namespace tolvek
