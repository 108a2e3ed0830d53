#include "top/interrupts.h"

#include "top/tolvek.h"

namespace tolvek {

volatile std::sig_atomic_t attention = 0;
static volatile std::sig_atomic_t noted = 0;
static bool accepted = false;
static void (*watching)() = nullptr;

static void interrupt(int) {
    noted = 1;
    attention = 1;
}

bool interrupt_pending() { return accepted && noted; }

void note_interrupt() { interrupt(SIGINT); }

void install_interrupt_handler() {
    struct sigaction action {};
    action.sa_handler = interrupt;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0; /* no SA_RESTART: a read at the prompt comes back */
    sigaction(SIGINT, &action, nullptr);
}

void accept_interrupts(bool yes) {
    accepted = yes;
    if (noted) attention = 1;
}

void watch_safe_points(void (*watch)()) {
    watching = watch;
    attention = watching || noted;
}

void take_attention() {
    if (watching) watching();
    attention = watching != nullptr; /* before noted is read: a note that comes in between sets it again */
    if (!interrupt_pending()) return;
    noted = 0;
    error(-1, blank);
}

} // namespace tolvek
