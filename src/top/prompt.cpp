/* Prompts, and the ends of lines around them. */
#include "language/scanner.h"
#include "top/driver.h"
#include "top/loop.h"

namespace tolvek {

/* A prompt is counted off the input in full: its characters but one are dropped from each new line. */
static void drop_prompt_characters() {
    for (int i = 1; i < promptsize; i++) {
        int c = peek_char(Input);
        if (c == '\n' || c == no_char) return;
        take_char(Input);
    }
}

/* Drops the newline that ended the statement. False: another statement follows on the line. */
static bool drop_line_end() {
    int c = peek_char(Input);
    while (c == ' ' || c == '\t' || c == '\r') {
        take_char(Input);
        c = peek_char(Input);
    }
    if (c != '\n') return c == no_char;
    take_char(Input);
    return true;
}

void write_prompt() {
    if (levelcount >= 2) sayf("%i", levelcount);
    if (promptsize > 0) say(prompt);
}

void prompt_behind_statement() {
    write_prompt();
    bool another = leftover != 0 && leftover != ' ';
    if (!another && drop_line_end()) drop_prompt_characters();
}

void prompt_on_new_line() {
    write_prompt();
    leftover = 0;
    rewind_line(Input);
    drop_prompt_characters();
}

void do_prompts() {
    write_prompt();
    rewind_line(Input);
    leftover = 0;
}

} // namespace tolvek
