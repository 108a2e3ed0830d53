/* Interrupts. The SIGINT handler only notes that it was called. The note is taken at safe points: places where
   every list is linked, every operand whole and nothing half changed. There error(-1, blank) opens a command
   level on the stack of the interrupted computation, and safe_point() returns when the user resumes.

   Put safe points by work, not by loop count: no stretch of more than 50 ms without one, and none while a list is
   half linked or an operand is borrowed. A safe point may throw (a panic stop at the level). */
#pragma once

#include <csignal>
#include <cstdint>

namespace tolvek {

/* Other than 0: a safe point has something to do. Written by the handler. */
extern volatile std::sig_atomic_t attention;

void take_attention();

inline void safe_point() {
    if (attention) [[unlikely]]
        take_attention();
}

/* Makes SIGINT note itself. Until accept_interrupts(true) a note waits. */
void install_interrupt_handler();
void accept_interrupts(bool yes);

/* An interrupt is noted and will be taken at the next safe point. */
bool interrupt_pending();

/* Notes an interrupt, as the handler does. */
void note_interrupt();

/* For tests: `watch`, when set, is called at every safe point, before a noted interrupt is taken. */
void watch_safe_points(void (*watch)());

} // namespace tolvek
