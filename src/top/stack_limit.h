/* The stack, the only bound of recursion. Recursive routines call check_stack() at their head: before the stack is used
   up it writes a line of text and makes a panic stop, so that a user lands on the prompt and not in a crash. */
#pragma once

#include <cstddef>
#include <cstdint>

namespace tolvek {

constexpr std::size_t stack_size = 0x2000000;       /* asked for at the start: 32 MiB */
constexpr std::size_t largest_stack = 0x10000000;   /* what "unlimited" is cut to */
constexpr std::size_t stack_reserve = 256 * 1024;   /* kept for the report and the way out */

extern uintptr_t stack_bound; /* frames below this address are too deep; 0: no bound is known */

/* Raises the soft limit to stack_size where it is lower, and computes the bound from the limit as it then stands.
   `top` is an address in the frame of main, or above it. */
void set_stack_limit(const void *top);

/* A bound of its own for a test: `room` bytes below the caller's frame. */
void bound_stack(std::size_t room);

void stack_nearly_used(); /* always throws */

inline void check_stack() {
    if (reinterpret_cast<uintptr_t>(__builtin_frame_address(0)) < stack_bound) [[unlikely]]
        stack_nearly_used();
}

/* Reports a segmentation fault in one line, on a stack of its own, and ends the process. */
void install_fault_handler();

} // namespace tolvek
