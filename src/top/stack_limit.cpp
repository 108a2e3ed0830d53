#include "top/stack_limit.h"

#include "top/text_io.h"
#include "top/tolvek.h"

#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <unistd.h>

namespace tolvek {

uintptr_t stack_bound = 0;

void set_stack_limit(const void *top) {
    rlimit limit;
    if (getrlimit(RLIMIT_STACK, &limit) != 0) return;
    if (limit.rlim_cur < stack_size) { /* RLIM_INFINITY is the greatest value */
        rlimit raised = limit;
        raised.rlim_cur = stack_size;
        int result = setrlimit(RLIMIT_STACK, &raised);
        if (result != 0) {
            put_format(&standard_error, "setrlimit returned result = %d\n", result);
            flush(&standard_error);
        } else {
            limit = raised;
        }
    }
    std::size_t size = limit.rlim_cur > largest_stack ? largest_stack : static_cast<std::size_t>(limit.rlim_cur);
    std::size_t usable = size > 2 * stack_reserve ? size - stack_reserve : size / 2;
    stack_bound = reinterpret_cast<uintptr_t>(top) - usable;
}

void bound_stack(std::size_t room) { stack_bound = reinterpret_cast<uintptr_t>(__builtin_frame_address(0)) - room; }

void stack_nearly_used() {
    say("*** The stack is nearly used up: the computation is nested too deeply.\n");
    error(0, blank);
}

static void report_fault(int) {
    static const char line[] = "\n*** Tolvek has met a memory fault and must end.\n";
    if (write(STDOUT_FILENO, line, sizeof line - 1) < 0) {}
    _exit(1);
}

void install_fault_handler() {
#ifdef __SANITIZE_ADDRESS__
    return; /* the sanitizer's own report says more */
#endif
    static char own_stack[64 * 1024];
    stack_t alternate{};
    alternate.ss_sp = own_stack;
    alternate.ss_size = sizeof own_stack;
    if (sigaltstack(&alternate, nullptr) != 0) return;
    struct sigaction action {};
    action.sa_handler = report_fault;
    action.sa_flags = SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    sigaction(SIGSEGV, &action, nullptr);
}

} // namespace tolvek
