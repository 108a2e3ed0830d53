/* Dialogs: questions at the terminal, and answers as numbers. */
#include "language/expressions.h"
#include "numbers/number.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/loop.h"
#include "top/parse.h"
#include "top/switches_table.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace tolvek {

/* What the user typed behind the command waits here while the answer is read, with the token that was read of it. The
   end of the answer's line is dropped. */
class suspended_line {
  public:
    suspended_line() : behind(token), left(leftover) {
        take_rest_of_line(Input, rest);
        leftover = 0;
    }
    ~suspended_line() {
        if (!resumed) return;
        token = behind;
        leftover = left;
    }
    /* To be called when the answer was read. An error that unwinds drops the line. */
    void resume() {
        rewind_line(Input);
        put_back_line(Input, rest);
        resumed = true;
    }

  private:
    token_record behind;
    int left;
    bool resumed = false;
    buffer<char> rest;
};

/* Nothing but its terminator may stand behind the value. */
static bool answer_is_complete() {
    if (ends_statement(token) && at_line_end(Input)) return true;
    if (ends_statement(token)) scanner(&Input, token, &zilch);
    error(129, token);
    return false;
}

static bool read_answer(answer_ring ring, quoly_handle &answer) {
    if (!input_ended(Input)) Input->inside_line = true; /* an error drops the answer's line, an empty one too */
    scanner(&Input, token, &zilch);
    if (ring == answer_ring::not_modular) {
        modular_pause pause;
        old_expre(&Input, answer.slot(), &zilch);
    } else {
        old_expre(&Input, answer.slot(), &zilch);
    }
    return answer_is_complete();
}

bool ask(const char *question, answer_ring ring, quoly_handle &answer) {
    say(question);
    suspended_line line;
    kept_value<int> terminal(tt_flag, 1);
    do_prompts();
    bool complete = read_answer(ring, answer);
    line.resume();
    return complete;
}

void ask_and_run(const char *question, void (*run)()) {
    say(question);
    suspended_line line;
    kept_value<int> terminal(tt_flag, 1);
    do_prompts();
    run();
    line.resume();
}

/* ---- answers ---- */

static int integer_of_chain(const number *x) {
    bool negative = x->num_head->digit < 0;
    if (x->num_len > 2) return negative ? INT_MIN : INT_MAX;
    int64_t value = 0;
    for (const numnode *d = x->num_head; d; d = d->next) value = value * digit_radix + d->digit;
    return static_cast<int>(std::clamp<int64_t>(value, INT_MIN, INT_MAX));
}

bool integer_value(const quolynode *q, int &value) {
    if (!q || !q->is_num) return false;
    const number *x = q->numb;
    if (flotemode) {
        if (std::isnan(x->flote_val)) return false;
        value = static_cast<int>(std::llround(std::clamp<long double>(x->flote_val, INT_MIN, INT_MAX)));
    } else {
        value = lintmode ? x->lint_val : integer_of_chain(x);
    }
    return true;
}

} // namespace tolvek
