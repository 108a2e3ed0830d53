#include "top/text_io.h"

#include "top/interrupts.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace tolvek {

text_in standard_input(STDIN_FILENO);
text_out standard_output(STDOUT_FILENO);
text_out standard_error(STDERR_FILENO);
text_out *Output = &standard_output;

/* Waits for the descriptor with SIGINT blocked but for the wait itself, so that an interrupt which comes between
   the caller's look at the note and the read is not slept over. */
static ssize_t read_some_from_system(int fd, char *to, std::size_t room) {
    sigset_t only_interrupt, before;
    sigemptyset(&only_interrupt);
    sigaddset(&only_interrupt, SIGINT);
    sigprocmask(SIG_BLOCK, &only_interrupt, &before);
    pollfd wanted{fd, POLLIN, 0};
    bool pending = interrupt_pending();
    int ready = pending ? -1 : ppoll(&wanted, 1, nullptr, &before);
    int why = pending ? EINTR : errno;
    sigprocmask(SIG_SETMASK, &before, nullptr);
    if (ready < 0) {
        errno = why;
        return -1;
    }
    ssize_t count = read(fd, to, room);
    if (count == 0 && (wanted.revents & POLLERR)) { /* a terminal that has gone reads as an end */
        errno = EIO;
        return -1;
    }
    return count;
}

static ssize_t write_some_to_system(int fd, const char *from, std::size_t count) { return write(fd, from, count); }

io_hooks io{read_some_from_system, write_some_to_system};

/* ---- reading ---- */

static bool has_text(stream in) { return in->replay_at < in->replay.size() || in->at < in->end; }

/* A command level that opens meanwhile may read more than its own lines. */
static bool fill_block(stream in) {
    if (in->ended || in->failed || in->fd < 0) return false;
    if (in == &standard_input) flush(&standard_output);
    for (;;) {
        ssize_t count = io.read_some(in->fd, in->block, sizeof in->block);
        if (count > 0) {
            in->at = 0;
            in->end = static_cast<int>(count);
            return true;
        }
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
            safe_point();
            if (has_text(in)) return true;
            continue;
        }
        in->ended = true;
        in->failed = count < 0;
        return false;
    }
}

int peek_char(stream in) {
    while (!has_text(in))
        if (!fill_block(in)) return no_char;
    if (in->replay_at < in->replay.size()) return static_cast<unsigned char>(in->replay[in->replay_at]);
    return static_cast<unsigned char>(in->block[in->at]);
}

int take_char(stream in) {
    int c = peek_char(in);
    if (c == no_char) return c;
    if (in->replay_at < in->replay.size())
        in->replay_at++;
    else
        in->at++;
    in->inside_line = c != '\n';
    return c;
}

void ask_again(stream in) { in->ended = in->failed = false; }

void rewind_line(stream in) {
    while (in->inside_line && take_char(in) != no_char) {
    }
    in->inside_line = false;
    ask_again(in);
}

void take_rest_of_line(stream in, buffer<char> &line) {
    while (in->inside_line) {
        int c = take_char(in);
        if (c == no_char) break;
        line.push(static_cast<char>(c));
    }
    in->inside_line = false;
    ask_again(in);
}

void put_back_line(stream in, const buffer<char> &line) {
    if (line.empty()) return;
    buffer<char> text;
    for (char c : line) text.push(c);
    while (in->replay_at < in->replay.size()) text.push(in->replay[in->replay_at++]);
    in->replay = static_cast<buffer<char> &&>(text);
    in->replay_at = 0;
    in->inside_line = true;
}

bool open_text(text_in &in, const char *path) {
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    in.fd = fd;
    in.at = in.end = 0;
    in.ended = in.failed = in.inside_line = false;
    in.replay.clear();
    in.replay_at = 0;
    return true;
}

void close_text(text_in &in) {
    if (in.fd >= 0) close(in.fd);
    in.fd = -1;
    in.at = in.end = 0;
    in.replay.clear();
    in.replay_at = 0;
}

void restart_text(text_in &in) {
    ask_again(&in);
    if (lseek(in.fd, 0, SEEK_SET) < 0) return; /* a pipe goes on where it stands */
    in.at = in.end = 0;
    in.inside_line = false;
}

/* ---- writing ---- */

void flush(text_out *out) {
    int at = 0;
    while (at < out->used && !out->failed) {
        ssize_t count = io.write_some(out->fd, out->block + at, static_cast<std::size_t>(out->used - at));
        if (count > 0)
            at += static_cast<int>(count);
        else if (errno == EAGAIN) {
            pollfd wanted{out->fd, POLLOUT, 0};
            poll(&wanted, 1, 100);
        } else if (errno != EINTR) {
            out->failed = true;
            out->why = errno;
        }
    }
    out->used = 0;
}

void put_char(text_out *out, int c) {
    if (out->used == sizeof out->block) flush(out);
    out->block[out->used++] = static_cast<char>(c);
    out->count++;
    out->taken++;
    out->line_begun = c != '\n';
}

void fresh_line(text_out *out) {
    if (out->line_begun) put_char(out, '\n');
}

void put_bytes(text_out *out, const char *bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; i++) put_char(out, bytes[i]);
}

void put_text(text_out *out, const char *text) { put_bytes(out, text, std::strlen(text)); }

static void put_formatted(text_out *out, const char *format, va_list arguments) {
    char line[1400]; /* the longest format writes a path of 1,080 bytes */
    int length = std::vsnprintf(line, sizeof line, format, arguments);
    if (length > 0) put_bytes(out, line, std::min(static_cast<std::size_t>(length), sizeof line - 1));
}

void put_format(text_out *out, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    put_formatted(out, format, arguments);
    va_end(arguments);
}

void say(const char *text) { put_text(&standard_output, text); }

void sayf(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    put_formatted(&standard_output, format, arguments);
    va_end(arguments);
}

} // namespace tolvek
