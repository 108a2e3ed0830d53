#include "top/file_names.h"

#include "language/scanner.h"
#include "matrix/array_names.h"
#include "top/driver.h"
#include "top/parse.h"
#include "top/switches_table.h"

#include <sys/stat.h>

namespace tolvek {

/* ---- arrays of codes ---- */

static bool append_codes(const array_region &r, file_name &into) {
    std::size_t length = 0;
    for (int64_t i = 0; i < r.size() && length < into.longest; i++) {
        const quolynode *q = element(r.array, i);
        int code = 0;
        if (!q) continue;
        if (!integer_value(q, code)) {
            error(260, r.tok);
            return false;
        }
        if (code != ' ') into.text[length++] = static_cast<char>(code);
    }
    into.text[length] = 0;
    return true;
}

bool name_from_array(stream *input, name **cursor, file_name &into) {
    array_region r;
    left_side(input, cursor, r, false, 28);
    existing(r);
    if (!r.is_whole()) {
        error(258, r.tok);
        return false;
    }
    if (r.array->sparse_head) {
        error(259, r.tok);
        return false;
    }
    return append_codes(r, into);
}

/* ---- answers ---- */

/* The answer that is being read, as the dialog passes nothing on. */
static struct {
    file_name *into;
    const char *cancelled;
    bool given;
} answer;

static bool read_quoted() {
    std::size_t length = 0;
    for (;;) {
        int line_end;
        dumbscanner(&Input, token, &zilch, &line_end);
        if (line_end) {
            error(33, quotesign);
            return false;
        }
        if (token_is(token, "'")) return true;
        if (length == answer.into->longest) {
            say("*** Warning. Name is too long.\n");
            return false;
        }
        answer.into->text[length++] = token.text[0];
        answer.into->text[length] = 0;
    }
}

static bool ends_name(int c) { return c == no_char || c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == ';'; }

static bool read_bare() {
    std::size_t length = 0;
    while (!ends_name(peek_char(Input))) {
        if (length == answer.into->longest) {
            say("*** Warning. Name is too long.\n");
            return false;
        }
        answer.into->text[length++] = static_cast<char>(take_char(Input));
    }
    answer.into->text[length] = 0;
    say("\n");
    return true;
}

static void read_answer() {
    answer.given = false;
    if (!input_ended(Input)) Input->inside_line = true; /* the answer's line is dropped, an empty one too */
    if (at_line_end(Input)) {
        answer.given = true; /* an empty name, which is refused as such */
        return;
    }
    const int c = peek_char(Input);
    if (c == '@') {
        say(answer.cancelled);
    } else if (c == '\'') {
        take_char(Input);
        answer.given = read_quoted();
    } else if (c == '[') {
        scanner(&Input, token, &zilch);
        answer.given = name_from_array(&Input, &zilch, *answer.into);
    } else {
        answer.given = read_bare();
    }
}

bool ask_for_name(const char *question, const char *cancelled, file_name &into) {
    answer = {&into, cancelled, false};
    ask_and_run(question, read_answer);
    return answer.given;
}

/* ---- what a name may be ---- */

/* Do both name one file of the disk? */
static bool same_file(const char *a, const char *b) {
    struct stat of_a, of_b;
    if (std::strcmp(a, b) == 0) return true;
    if (stat(a, &of_a) != 0 || stat(b, &of_b) != 0 || !S_ISREG(of_a.st_mode)) return false;
    return of_a.st_dev == of_b.st_dev && of_a.st_ino == of_b.st_ino;
}

bool is_usable(const char *name, const char *other) {
    if (!*name) {
        error(248, blank);
        return false;
    }
    if (*other && same_file(name, other)) {
        error(149, token);
        return false;
    }
    return true;
}

} // namespace tolvek
