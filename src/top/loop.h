/* The command loop: one pass is one statement. */
#pragma once

#include "top/ring.h"

namespace tolvek {

/* Runs the system at level 1 until &q; returns 0. argv[0] and PATH say where the data directory is. */
int run_system(home_ring home, int argc, char **argv);

/* Reads and runs statements at the present command level until &_p leaves it. */
void nested_loop();

/* The same start and loop for a program that has found its data directory (with a slash at its end). */
void start_system(home_ring home, const char *directory);
void command_loop();

/* The level number, above 1, and the prompt. */
void write_prompt();
/* The prompt of a fresh line: what is left of the line that is being read is discarded. */
void prompt_on_new_line();
/* The prompt behind a statement: its newline is dropped, unless another statement follows on the line. */
void prompt_behind_statement();
/* The prompt for an answer that is read from the terminal: the newline of the question's statement is dropped. */
void do_prompts();

} // namespace tolvek
