#include "top/driver.h"

#include <cstdio>
#include <ctime>

namespace tolvek {

int time_level = 1;
time_row mytime[time_rows];
time_row time_off[time_rows];
time_row breaktime[time_rows];

constexpr int64_t ticks_a_second = 1000000;

time_row time_now() {
    timespec used;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return {std::time(nullptr), used.tv_sec * ticks_a_second + used.tv_nsec / 1000};
}

void start_clock() { mytime[time_level] = time_now(); }

void stop_clock() {
    time_row &row = mytime[time_level], &off = time_off[time_level];
    time_row now = time_now();
    row = {now.wall - row.wall - off.wall, now.ticks - row.ticks - off.ticks};
    off = {};
}

void write_elapsed_time() {
    auto wall = static_cast<unsigned long>(mytime[time_level].wall);
    int64_t ticks = mytime[time_level].ticks;
    auto minutes = static_cast<unsigned long>(ticks / (60 * ticks_a_second));
    auto seconds = static_cast<unsigned long>(ticks / ticks_a_second % 60);

    /* Only the decimals are kept: a fraction that rounds up to 1.000 shows as 000. */
    char fraction[10];
    std::snprintf(fraction, sizeof fraction, "%0.3f",
                  static_cast<double>(static_cast<float>(ticks % ticks_a_second) / static_cast<float>(ticks_a_second)));
    const char *decimals = fraction + 2;

    if (wall >= 3600)
        sayf(" Elapsed real time: %lu:%2lu:%2lu.  CPU time: %lu:%2lu.%s\n", wall / 3600, wall % 3600 / 60, wall % 60,
             minutes, seconds, decimals);
    else if (wall >= 60)
        sayf(" Elapsed real time: %2lu:%2lu.  CPU time: %lu:%2lu.%s\n", wall / 60, wall % 60, minutes, seconds,
             decimals);
    else if (wall >= 5)
        sayf(" Elapsed real time: %2lu.  CPU time: %2lu.%s\n", wall, seconds, decimals);
    else
        sayf(" Elapsed CPU time: %2lu.%s\n", seconds, decimals);
}

void showtime() {
    std::time_t now = std::time(nullptr);
    std::tm broken_down;
    char text[32];
    if (localtime_r(&now, &broken_down) && asctime_r(&broken_down, text)) say(text);
}

} // namespace tolvek
