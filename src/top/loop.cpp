#include "top/loop.h"

#include "display/show_array.h"
#include "display/show_quoly.h"
#include "language/names.h"
#include "language/scanner.h"
#include "poly/variables.h"
#include "quoly/quoly.h"
#include "top/driver.h"
#include "top/error_report.h"
#include "top/interrupts.h"
#include "top/output_file.h"
#include "top/parse.h"
#include "top/startup.h"

#include <ctime>

namespace tolvek {

static home_ring program_ring = home_ring::flote;

/* ---- the end of the input ---- */

constexpr int passes_without_pause = 100;

static void pause_a_moment() {
    flush(&standard_output);
    timespec tenth{0, 100000000};
    nanosleep(&tenth, nullptr);
    safe_point();
}

/* Called before each statement. The end of the input ends the program with the exact home ring alone; otherwise the
   loop keeps turning, and asks the terminal anew at each pass. A terminal that has gone ends both programs. */
static void mind_end_of_input() {
    static int empty_passes = 0;
    if (leftover && leftover != ' ') return;
    ask_again(Input);
    if (!input_ended(Input)) {
        empty_passes = 0;
        return;
    }
    if (Input->failed || program_ring == home_ring::exact) throw unwind{unwind::quit};
    if (++empty_passes > passes_without_pause) pause_a_moment();
}

/* ---- one pass ---- */

static void show_value(quolynode *value) {
    bool silent = token_is(token, ":");
    if (syst_dump && noisy && !silent && !token_is(token, "@")) show_system_array(Output);
    if (extra_line) say("\n");
    if (silent) return;
    if (noisy) flush(&standard_output);
    int column = 0;
    if (noisy && !token_is(token, "@")) quoly_display_value(Output, value, &column);
    if (!polynames && noisy && extra_line) say("\n");
}

/* Reads, runs and shows one statement. False: it leaves the command level. */
static bool one_pass(quolynode **result) {
    mind_end_of_input();
    run_statement(&Input, result);
    settle_output();
    if (time_to_quit && levelcount > 1) return false;
    show_value(*result);
    syst_dump = 0;
    if (timerflag) {
        write_elapsed_time();
        if (extra_line) say("\n");
    }
    quolynode *old = prevnum;
    prevnum = *result;
    *result = nullptr;
    free_quoly(&old);
    if (levelcount == 1) release_pending();
    if (time_to_quit) {
        time_to_quit = 0;
        say(" You must use \"&q\" to quit the highest level.\n");
    }
    flush(&standard_output);
    prompt_behind_statement();
    return true;
}

void nested_loop() {
    prompt_on_new_line();
    quoly_handle value;
    while (one_pass(value.slot())) {
    }
    time_to_quit = 0;
}

/* Behind an unwinding, and once behind the start. */
static void take_up() {
    settle_output();
    free_quoly(&sysnum);
    zilch = nullptr;
    forget_reported_state(); /* the frames that were unwound have put back what they found */
    release_pending();
    say("\n");
    prompt_on_new_line();
    if (program_ring == home_ring::flote)
        enter_home_ring(program_ring);
    else
        return_to_user_ring();
}

static void run_until_unwound() {
    take_up();
    while (one_pass(&sysnum)) {
    }
}

void command_loop() {
    for (;;) {
        try {
            run_until_unwound();
        } catch (const unwind &u) {
            if (u.what == unwind::quit) return;
        }
    }
}

/* ---- the start ---- */

void start_system(home_ring home, const char *directory) {
    program_ring = home;
    starting_up = true;
    start_tables(directory);
    starting_up = false;
    accept_interrupts(true);
    say("\n ");
    showtime();
    make_quoly_constants();
    note_memory_figure();
    enter_home_ring(home);
    try {
        time_row began = mytime[time_level];
        load_startup(directory);
        totalavailablememory = 4 * initial_memory;
        mytime[time_level] = began; /* the file's statements have used the row */
        stop_clock();
        if (timerflag) {
            say("\n");
            write_elapsed_time();
        }
    } catch (const unwind &u) {
        if (u.what == unwind::quit) throw;
    }
}

static void farewell() {
    close_output();
    say("\n bye\n");
    flush(&standard_output);
}

int run_system(home_ring home, int, char **argv) {
    install_interrupt_handler();
    start_clock();
    prepare_process(argv);
    char directory[directory_room];
    find_data_directory(argv[0], directory);
    write_banner(directory);
    try {
        start_system(home, directory);
        command_loop();
    } catch (const unwind &) {
        /* &q in the start-up file */
    }
    farewell();
    return 0;
}

} // namespace tolvek
