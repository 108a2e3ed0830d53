/* The processor time between safe points. */
#pragma once

#include "top/interrupts.h"

#include <algorithm>
#include <ctime>
#include <functional>

namespace tolvek {

inline double processor_time() {
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

/* The longest stretch without a safe point, in seconds. */
inline double longest_gap_of(const std::function<void()> &routine) {
    static double last_time, longest_gap;
    static void (*const note_gap)() = [] {
        const double now = processor_time();
        longest_gap = std::max(longest_gap, now - last_time);
        last_time = now;
    };
    longest_gap = 0;
    last_time = processor_time();
    watch_safe_points(note_gap);
    routine();
    note_gap();
    watch_safe_points(nullptr);
    return longest_gap;
}

/* What is allowed. Sanitizers slow everything down. */
#if defined(__SANITIZE_ADDRESS__) || !defined(NDEBUG)
constexpr double most_gap = 0.5;
#else
constexpr double most_gap = 0.05;
#endif

/* Of a routine that can be repeated, the least of what some runs show: a busy machine adds to some of them. */
inline double least_gap_of(const std::function<void()> &routine) {
    constexpr int most_runs = 3;
    double least = longest_gap_of(routine);
    for (int run = 1; run < most_runs && least >= most_gap; run++) least = std::min(least, longest_gap_of(routine));
    return least;
}

} // namespace tolvek
