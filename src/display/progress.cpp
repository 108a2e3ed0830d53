#include "display/progress.h"

#include "display/folding.h"
#include "numbers/number.h"

#include <cmath>

namespace tolvek {

int verbose, windy; /* values come from top/defaults.cpp at start-up */
int dumpitt_level = 0;
int dumpitt_length = 0;
int64_t suppressor = 1;

constexpr int64_t most_passes = INT32_MAX;

static void begin_line(int indent) {
    put_char(Output, '\n');
    dumpitt_length = indent;
    for (int i = 0; i < indent; i++) put_char(Output, ' ');
}

/* Columns that a positive count takes, less 1: an estimate from its binary length. */
static int columns_of(int32_t n) { return n > 0 ? static_cast<int>(std::floor(logg2lint(n) * 0.3 + 0.5)) : 0; }

static void multiply_suppressor(int32_t n) {
    suppressor *= n < 0 ? 0 : n;
    if (suppressor > most_passes) suppressor = most_passes;
}

void dumpitt(const char *text, int32_t n, int new_line, int multiply, int colon) {
    if (dumpitt_level > 1) {
        if (multiply) multiply_suppressor(n);
        if (suppressor > most_shown) return;
    } else {
        suppressor = 1;
    }
    if (new_line && dumpitt_level <= dispcutoff) begin_line(2 * dumpitt_level);
    put_text(Output, text);
    if (n >= 0) put_format(Output, "%li", static_cast<long>(n));
    if (std::strcmp(text, " ") != 0) {
        put_text(Output, colon ? ": " : ". ");
        dumpitt_length += 2;
    }
    dumpitt_length += static_cast<int>(std::strlen(text)) + 1 + columns_of(n);
    if (near_margin(dumpitt_length, -3)) begin_line(dumpitt_level);
    flush(Output);
}

void decr_dumpitt(int32_t n, int new_line, int divide) {
    constexpr int deepest_indent = 73;
    dumpitt_level--;
    if (2 * dumpitt_level < deepest_indent && verbose && new_line && suppressor <= most_shown) {
        put_char(Output, '\n');
        dumpitt_length = 2 * dumpitt_level;
        doblanks(Output, dumpitt_length);
    }
    if (!divide) return;
    if (n > 0) suppressor /= n;
    if (suppressor < 2) suppressor = 1;
}

} // namespace tolvek
