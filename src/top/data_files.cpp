#include "top/data_files.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace tolvek {

constexpr std::size_t longest_line = 1023;

/* White space is what lies between tokens; the closing NUL is none and ends every scan. */
static bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
static bool is_figure(char c) { return c >= '0' && c <= '9'; }

bool open_data_file(data_file &file, const char *path) {
    close_data_file(file);
    return open_text(file.source, path);
}

void close_data_file(data_file &file) {
    close_text(file.source);
    file.text = {};
    file.at = 0;
    file.fetched = false;
}

/* Reads the whole file. Where the system refuses, the text ends there. */
static void fetch(data_file &file) {
    if (file.fetched) return;
    file.fetched = true;
    constexpr std::size_t piece = 256 * 1024;
    std::size_t used = 0;
    for (;;) {
        if (file.text.size() < used + piece + 1) file.text.resize(2 * used + piece + 1);
        ssize_t count = io.read_some(file.source.fd, file.text.data() + used, file.text.size() - used - 1);
        if (count > 0)
            used += static_cast<std::size_t>(count);
        else if (count == 0 || errno != EINTR)
            break;
    }
    file.text[used] = 0;
    file.text.resize(used + 1);
    close_text(file.source);
}

static const char *end_of_text(const data_file &file) { return file.text.end() - 1; }

static const char *start_of_token(data_file &file) {
    fetch(file);
    const char *p = file.text.data() + file.at;
    while (is_space(*p)) p++;
    return p;
}

static const char *end_of_token(const data_file &file, const char *p) {
    const char *end = end_of_text(file);
    while (p < end && !is_space(*p)) p++;
    return p;
}

static void go_on_at(data_file &file, const char *p) { file.at = static_cast<std::size_t>(p - file.text.data()); }

/* Where the integer at p ends; null if none stands there. */
static const char *read_integer(const char *p, int64_t *value) {
    bool negative = *p == '-';
    if (negative || *p == '+') p++;
    if (!is_figure(*p)) return nullptr;
    constexpr int64_t limit = INT64_MAX / 10 - 1;
    int64_t magnitude = 0;
    for (; is_figure(*p); p++)
        if (magnitude <= limit) magnitude = 10 * magnitude + (*p - '0');
    *value = negative ? -magnitude : magnitude;
    return p;
}

bool next_integer(data_file &file, int64_t *value) {
    const char *p = start_of_token(file);
    const char *end = read_integer(p, value);
    go_on_at(file, end ? end : p);
    return end;
}

template <class T> static bool fill_table(data_file &file, T *table, int count) {
    int64_t value;
    for (int i = 0; i < count; i++) {
        if (!next_integer(file, &value)) return false;
        table[i] = static_cast<T>(value);
    }
    return true;
}

bool next_integers(data_file &file, int32_t *table, int count) { return fill_table(file, table, count); }
bool next_integers(data_file &file, uint16_t *table, int count) { return fill_table(file, table, count); }

bool skip_tokens(data_file &file, long count) {
    const char *p = start_of_token(file), *end = end_of_text(file);
    for (; count > 0 && p < end; count--) {
        p = end_of_token(file, p);
        while (is_space(*p)) p++;
    }
    go_on_at(file, p);
    return count <= 0;
}

long count_rest(data_file &file) {
    long count = 0;
    for (const char *p = start_of_token(file), *end = end_of_text(file); p < end; count++) {
        p = end_of_token(file, p);
        while (is_space(*p)) p++;
    }
    go_on_at(file, end_of_text(file));
    return count;
}

bool integer_from_end(data_file &file, long n, int64_t *value) {
    fetch(file);
    const char *first = file.text.data(), *p = end_of_text(file);
    for (; n > 0 && p > first; n--) {
        while (p > first && is_space(p[-1])) p--;
        while (p > first && !is_space(p[-1])) p--;
    }
    return n == 0 && read_integer(p, value);
}

static void copy_cut(const char *from, std::size_t length, char *to, std::size_t room) {
    length = std::min(length, room - 1);
    std::memcpy(to, from, length);
    to[length] = 0;
}

bool next_word(data_file &file, char *word, std::size_t room) {
    const char *p = start_of_token(file), *end = end_of_token(file, p);
    go_on_at(file, end);
    if (p == end) return false;
    copy_cut(p, static_cast<std::size_t>(end - p), word, room);
    return true;
}

bool next_line(data_file &file, char *line, std::size_t room) {
    fetch(file);
    const char *p = file.text.data() + file.at, *end = end_of_text(file);
    if (p == end) return false;
    std::size_t length = 0;
    while (p + length < end && length < longest_line && p[length] != '\n') length++;
    copy_cut(p, length, line, room);
    go_on_at(file, p + length + (p + length < end && p[length] == '\n'));
    return true;
}

} // namespace tolvek
