/* The start-up file. */
#include "language/scanner.h"
#include "numbers/storage_report.h"
#include "quoly/quoly.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/parse.h"
#include "top/startup.h"

#include <cstdio>

namespace tolvek {

/* The file, closed at the end of its frame. */
struct startup_stream {
    text_in file;
    ~startup_stream() { close_text(file); }
};

void note_memory_figure() {
    initial_memory = memavail() / 4;
    virtual_cut = memavail() / 5;
}

static bool open_startup(text_in &file, const char *directory) {
    char path[directory_room + 32];
    std::snprintf(path, sizeof path, "%stolvekstart.txt", directory);
    return open_text(file, "tolvekstart.txt") || open_text(file, path);
}

/* The first line: mebibytes, each counted as 225,000 words of four bytes. Without a figure the present one stays. */
static void read_memory_figure(stream in) {
    constexpr uint64_t words_a_mebibyte = 225000, greatest = 1u << 30;
    skip_white_space(in);
    if (!is_digit(peek_char(in))) return;
    uint64_t mebibytes = 0;
    while (is_digit(peek_char(in))) {
        mebibytes = 10 * mebibytes + static_cast<uint64_t>(take_char(in) - '0');
        if (mebibytes > greatest) mebibytes = greatest;
    }
    sayf(" Amount of RAM you specified (mbytes): %lu.\n", static_cast<unsigned long>(mebibytes));
    initial_memory = mebibytes * words_a_mebibyte;
    virtual_cut = initial_memory / 5;
}

static void run_startup_statements(stream in) {
    while (skip_white_space(in)) {
        quoly_handle value;
        run_statement(&in, value.slot());
        if (token_is(token, ":")) error(129, token);
        leftover = 0;
        skip_line(in);
    }
    leftover = 0;
}

void load_startup(const char *directory) {
    kept_value<int> terminal(tt_flag, 0), left(leftover, 0), fast_path(integerflag);
    startup_stream startup;
    if (!open_startup(startup.file, directory)) {
        put_text(&standard_error, "No tolvekstart.txt file.\n");
        flush(&standard_error);
        return;
    }
    read_memory_figure(&startup.file);
    run_startup_statements(&startup.file);
}

} // namespace tolvek
