#include "support/fresh_system.h"

#include "language/execution.h"
#include "language/functions.h"
#include "language/names.h"
#include "language/scanner.h"
#include "matrix/arrays.h"
#include "numbers/stash.h"
#include "poly/variables.h"
#include "quoly/quoly.h"
#include "top/driver.h"
#include "top/interrupts.h"
#include "top/loop.h"
#include "top/output_file.h"
#include "top/stack_limit.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <unistd.h>

namespace tolvek {

namespace {

/* ---- what stands in for the terminal ---- */

struct terminal {
    std::string input;
    std::size_t at = 0;
    int reads_at_end = 0;
    std::string output, errors;
    fresh_system *of = nullptr;
};
terminal screen;

/* A statement that swallows the end of its lines ends the system by a failed read, and does not hang the test. */
constexpr int most_reads_at_end = 20;

ssize_t read_text(int fd, char *to, std::size_t room) {
    if (fd != STDIN_FILENO) return read(fd, to, room);
    if (screen.of && screen.of->before_read) screen.of->before_read();
    if (interrupt_pending()) {
        errno = EINTR;
        return -1;
    }
    std::size_t count = std::min(room, screen.input.size() - screen.at);
    if (count == 0 && ++screen.reads_at_end > most_reads_at_end) {
        errno = EIO;
        return -1;
    }
    screen.input.copy(to, count, screen.at);
    screen.at += count;
    return static_cast<ssize_t>(count);
}

ssize_t write_text(int fd, const char *from, std::size_t count) {
    if (fd != STDOUT_FILENO && fd != STDERR_FILENO) return write(fd, from, count);
    (fd == STDOUT_FILENO ? screen.output : screen.errors).append(from, count);
    return static_cast<ssize_t>(count);
}

std::string taken_output() {
    flush(&standard_output);
    std::string text;
    text.swap(screen.output);
    return text;
}

std::string taken_errors() {
    flush(&standard_error);
    std::string text;
    text.swap(screen.errors);
    return text;
}

void discard(text_out &out) {
    out.used = 0;
    out.failed = out.line_begun = false;
}

/* ---- globals that no table of defaults holds ---- */

void reset_statement() {
    zilch = nullptr;
    free_quoly(&sysnum);
    token = {};
    set_token(token, "");
    leftover = semicount = 0;
    currentchar = startexpr = prev_expr = nullptr;
    recent_tokens.clear();
    clear_statement_counters();
    warn_cnt = ddummy = bozo = 0;
    syst_dump = time_to_quit = 0;
    tt_flag = 1;
    tripval = 20;
    exit_flag = leave_flag = cycle_flag = cancelflag = done_load = 0;
    matrix_eval = want_sparse = doing_sys_func = in_sys_func = func_def_count = 0;
    end_all_calls();
    levelcount = time_level = 1;
    for (int i = 0; i < time_rows; i++) time_off[i] = breaktime[i] = {};
    was_modulus = -1;
}

void reset_session() {
    reset_statement();
    free_quoly(&prevnum);
    release_pending();
    forget_functions();
    forget_variables();
    forget_arrays();
    forget_poly_variables(); /* once no value holds them */
    inpuf = nullptr;
    input_file_name[0] = 0;
    close_output();
    initial_memory = virtual_cut = totalavailablememory = 0;
    set_token(current_func, "");
    last_good_one = last_comm = last_attached = nullptr;
    Input = &standard_input;
    Output = &standard_output;
    discard(standard_output);
    discard(standard_error);
}

} // namespace

const char *data_directory() { return TOLVEK_DATA_DIRECTORY; }

std::string trimmed(const std::string &text) {
    const char *white = " \n\t\r";
    std::size_t from = text.find_first_not_of(white);
    if (from == std::string::npos) return "";
    return text.substr(from, text.find_last_not_of(white) - from + 1);
}

/* ---- start and end ---- */

void fresh_system::start() {
    if (!polystash) open_value_stashes();
    set_ring(ring_state{});
    reset_session();
    start_clock();
    start_system(home, data_directory());
    start_text = taken_output();
    errors = taken_errors();
}

void fresh_system::SetUp() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tolvek_XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
    folder_before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    io = {read_text, write_text};
    screen = {};
    screen.of = this;
    bound_stack(4 * 1024 * 1024);
    start();
}

void fresh_system::TearDown() {
    watch_safe_points(nullptr);
    reset_session();
    screen.of = nullptr;
    std::filesystem::current_path(folder_before);
    std::filesystem::remove_all(folder);
}

void fresh_system::leave_all_levels() {
    reset_statement();
    return_to_user_ring();
    release_pending();
}

/* ---- input and output ---- */

void fresh_system::set_input(const std::string &text) {
    screen.input = text;
    screen.at = 0;
    screen.reads_at_end = 0;
    text_in &in = standard_input;
    in.at = in.end = 0;
    in.ended = in.failed = in.inside_line = false;
    in.replay.clear();
    in.replay_at = 0;
    leftover = 0;
}

static std::string without(const std::string &prefix, std::string text, const std::string &suffix) {
    if (text.compare(0, prefix.size(), prefix) == 0) text.erase(0, prefix.size());
    bool ends = text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
    if (ends) text.erase(text.size() - suffix.size());
    return text;
}

std::string fresh_system::run(const std::string &lines) {
    std::string first_prompt = std::string("\n") + prompt;
    bool whole = !lines.empty() && lines.back() == '\n';
    set_input(lines + (whole ? "&q\n" : "\n&q\n"));
    taken_output();
    command_loop();
    std::string last_prompt = (levelcount > 1 ? std::to_string(levelcount) : "") + prompt;
    std::string text = without(first_prompt, taken_output(), last_prompt);
    errors += taken_errors();
    leave_all_levels();
    return text;
}

std::string fresh_system::value_of(const std::string &expression) { return trimmed(run(expression)); }

bool fresh_system::unwinds(const std::function<void()> &routine) {
    taken_output();
    bool unwound = false;
    try {
        routine();
    } catch (const unwind &) {
        unwound = true;
        return_to_user_ring();
    }
    last_text = taken_output();
    errors += taken_errors();
    return unwound;
}

std::string fresh_system::text_of(const std::function<void()> &routine) {
    unwinds(routine);
    return last_text;
}

void fresh_system::write_file(const std::string &name, const std::string &text) {
    std::ofstream(folder / name, std::ios::binary) << text;
}

} // namespace tolvek
