/* What the process is given before it reads anything. */
#include "numbers/stash.h"
#include "numbers/free_lists.h"
#include "top/stack_limit.h"
#include "top/start_tables.h"
#include "top/startup.h"
#include "top/text_io.h"
#include "top/tolvek.h"

#include <cstring>
#include <initializer_list>
#include <unistd.h>

namespace tolvek {

/* The highest address of the stack: behind the texts of the arguments and of the environment. */
static const void *top_of_stack(char **argv) {
    const char *top = reinterpret_cast<const char *>(argv);
    for (char **list : {argv, environ})
        for (; list && *list; list++)
            if (*list > top) top = *list + std::strlen(*list);
    return top;
}

void prepare_process(char **argv) {
    set_stack_limit(top_of_stack(argv));
    install_fault_handler();
    open_value_stashes();
}

void write_banner(const char *directory) {
    say("\n Tolvek " TOLVEK_VERSION " for 64-bit Linux\n");
    sayf("Reading initialization data from directory %s\n", directory);
    say(" initializing...\n");
    flush(&standard_output);
}

void start_tables(const char *directory) { initialize(directory); }

} // namespace tolvek
