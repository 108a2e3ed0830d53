/* The progress display of long computations, while `verbose` is on: an indented tree that counts through their loops.

   A computation enters a level, tells its counts with dumpitt, and leaves the level with decr_dumpitt:

       progress_level level;
       dumpitt("Counting to ", n, 1, 1, 1);
       for (...) { ...; dumpitt(" ", i, 0, 0, 0); }
       level.leave(n, 1, 1);

   Callers ask for `verbose` themselves. */
#pragma once

#include <cstdint>

namespace tolvek {

extern int verbose, windy; /* comments on the progress of long computations; more of them */

extern int dumpitt_level;  /* depth; 0 outside long computations */
extern int dumpitt_length; /* columns used in the line */
extern int64_t suppressor; /* product of the loop counts of the enclosing levels, held below 2^31 */

constexpr int most_shown = 1000; /* loops inside so many passes of enclosing ones say nothing */

/* Writes text and, unless it is negative, the count n; then ". ", or ": " with `colon`, unless the text is " ".
   new_line: on a new line, indented by the level. multiply: n is the count of a loop whose passes are to follow. */
void dumpitt(const char *text, int32_t n, int new_line, int multiply, int colon);

/* Leaves a level. new_line: what follows begins a new line. divide: n was the count of the loop. */
void decr_dumpitt(int32_t n, int new_line, int divide);

/* One level deeper for the life of the frame. An unwinding puts the display back as it was found. */
class progress_level {
  public:
    progress_level() : level(dumpitt_level++), length(dumpitt_length), passes(suppressor) {}
    ~progress_level() {
        if (left) return;
        dumpitt_level = level;
        dumpitt_length = length;
        suppressor = passes;
    }
    progress_level(const progress_level &) = delete;
    progress_level &operator=(const progress_level &) = delete;
    void leave(int32_t n, int new_line, int divide) {
        left = true;
        decr_dumpitt(n, new_line, divide);
    }

  private:
    int level, length;
    int64_t passes;
    bool left = false;
};

} // namespace tolvek
