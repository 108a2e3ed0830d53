#include "top/data_files.h"

#include "top/interrupts.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <unistd.h>

namespace tolvek {

constexpr std::size_t longest_line = 1023;
constexpr int longest_token = 40; /* a longer one may be cut in two where a piece of the file ends */

/* White space is what lies between tokens; the closing NUL is none and ends every scan. */
static bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
static bool is_figure(char c) { return c >= '0' && c <= '9'; }

bool open_data_file(data_file &file, const char *path) {
    close_data_file(file);
    file.ended = !open_text(file.source, path);
    return !file.ended;
}

void close_data_file(data_file &file) {
    close_text(file.source);
    file.text = {};
    file.at = 0;
    file.ended = true;
}

static const char *end_of_text(const data_file &file) { return file.text.end() - 1; }

/* Reads at most `room` bytes; 0 at the end, and where the system refuses. An interrupt may be taken here, and throw:
   the caller has changed nothing yet. */
static std::size_t read_some(const data_file &file, char *to, std::size_t room) {
    for (;;) {
        ssize_t count = io.read_some(file.source.fd, to, room);
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR) return 0;
        safe_point();
    }
}

static void fetch_piece(data_file &file) {
    constexpr std::size_t least_piece = 32 * 1024;
    std::size_t used = file.text.empty() ? 0 : file.text.size() - 1;
    std::size_t piece = std::max(used, least_piece);
    file.text.reserve(used + piece + 1);
    std::size_t count = read_some(file, file.text.data() + used, piece);
    file.text.resize(used + count + 1);
    file.text[used + count] = 0;
    file.ended = count == 0;
    if (file.ended) close_text(file.source);
}

/* Sees to it that `wanted` bytes from the present place on have been read, where the file has so many. */
static void fetch(data_file &file, std::size_t wanted) {
    while (file.text.empty() || (!file.ended && file.text.size() - 1 - file.at < wanted)) {
        if (file.ended) { /* never opened */
            file.text.push(0);
            return;
        }
        fetch_piece(file);
    }
}

void fetch_whole(data_file &file) { fetch(file, SIZE_MAX); }

static void go_on_at(data_file &file, const char *p) { file.at = static_cast<std::size_t>(p - file.text.data()); }

/* The first character of the next token, of which enough has been read for any number or name. */
static const char *start_of_token(data_file &file) {
    for (;;) {
        fetch(file, longest_token);
        const char *p = file.text.data() + file.at;
        while (is_space(*p)) p++;
        go_on_at(file, p);
        if (file.ended || end_of_text(file) - p >= longest_token) return p;
    }
}

static const char *end_of_token(const data_file &file, const char *p) {
    const char *end = end_of_text(file);
    while (p < end && !is_space(*p)) p++;
    return p;
}

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
    for (; count > 0; count--) {
        const char *p = start_of_token(file), *end = end_of_token(file, p);
        if (p == end) return false;
        go_on_at(file, end);
    }
    return true;
}

long count_rest(data_file &file) {
    long count = 0;
    while (skip_tokens(file, 1)) count++;
    return count;
}

/* The place of a descriptor, put back as found. */
struct place_guard {
    explicit place_guard(int descriptor) : fd(descriptor), found(lseek(descriptor, 0, SEEK_CUR)) {}
    ~place_guard() { lseek(fd, found, SEEK_SET); }
    place_guard(const place_guard &) = delete;
    place_guard &operator=(const place_guard &) = delete;

  private:
    int fd;
    off_t found;
};

/* The last bytes of the file and a closing NUL. */
static void read_tail(const data_file &file, std::size_t bytes, buffer<char> &tail) {
    std::size_t used = 0;
    tail.resize(bytes + 1);
    if (file.ended) {
        used = std::min(bytes, file.text.size() - 1);
        std::memcpy(tail.data(), end_of_text(file) - used, used);
    } else {
        place_guard place(file.source.fd);
        off_t size = lseek(file.source.fd, 0, SEEK_END);
        lseek(file.source.fd, std::max<off_t>(0, size - static_cast<off_t>(bytes)), SEEK_SET);
        while (std::size_t count = used < bytes ? read_some(file, tail.data() + used, bytes - used) : 0) used += count;
    }
    tail[used] = 0;
    tail.resize(used + 1);
}

bool integer_from_end(data_file &file, long n, std::size_t bytes, int64_t *value) {
    fetch(file, 1);
    buffer<char> tail;
    read_tail(file, bytes, tail);
    const char *first = tail.data(), *p = tail.end() - 1;
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
    fetch(file, longest_line + 1);
    const char *p = file.text.data() + file.at, *end = end_of_text(file);
    if (p == end) return false;
    std::size_t length = 0;
    while (p + length < end && length < longest_line && p[length] != '\n') length++;
    copy_cut(p, length, line, room);
    go_on_at(file, p + length + (p + length < end && p[length] == '\n'));
    return true;
}

} // namespace tolvek
