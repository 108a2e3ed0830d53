/* The start of the process: stack, stashes, data directory, tables, start-up file. */
#pragma once

#include <cstddef>

namespace tolvek {

constexpr std::size_t directory_room = 1080;

/* The stack limit, the fault handler and the five stashes. */
void prepare_process(char **argv);

/* The folder BACKWARD/ beside the executable that `started_as` names, symbolic links followed, with a slash at its
   end. */
void find_data_directory(const char *started_as, char directory[directory_room]);

/* The path of the executable started as `name`: 0 a path from the root, 2 a relative one that was resolved, 1 one
   that was not, -1 with an empty path when it is not found. */
int GetExecName(const char *name, char path[1024]);

/* Copies the next element of a list with colons; the rest of the list, or null at its end. */
const char *getPathElement(const char *list, char *element, std::size_t room);

void write_banner(const char *directory);

/* Defaults and tables (fatal errors end the process). */
void start_tables(const char *directory);

/* initial_memory and virtual_cut from what is available now. */
void note_memory_figure();

/* Reads tolvekstart.txt of the working directory, else of the data directory: a figure in mebibytes, then statements
   whose results are not shown. May throw. */
void load_startup(const char *directory);

} // namespace tolvek
