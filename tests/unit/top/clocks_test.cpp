/* The report of the time that a statement took. */
#include "support/fresh_system.h"

#include "top/driver.h"

using namespace tolvek;

namespace {

struct clocks : fresh_system {
    std::string report(int64_t wall, int64_t ticks) {
        mytime[time_level] = {wall, ticks};
        return text_of(write_elapsed_time);
    }
};

constexpr int64_t second = 1000000, minute = 60 * second;

TEST_F(clocks, below_five_seconds_processor_time_alone_is_told) {
    EXPECT_EQ(report(4, second + second / 2), " Elapsed CPU time:  1.500\n");
    EXPECT_EQ(report(0, 1000), " Elapsed CPU time:  0.001\n");
}

TEST_F(clocks, below_a_minute_the_real_seconds_come_first) {
    EXPECT_EQ(report(5, second + second / 2), " Elapsed real time:  5.  CPU time:  1.500\n");
    EXPECT_EQ(report(59, 12 * second + 4000), " Elapsed real time: 59.  CPU time: 12.004\n");
}

TEST_F(clocks, below_an_hour_minutes_and_seconds_of_both) {
    EXPECT_EQ(report(65, minute + second / 2), " Elapsed real time:  1: 5.  CPU time: 1: 0.500\n");
}

TEST_F(clocks, from_an_hour_on_hours_minutes_and_seconds) {
    EXPECT_EQ(report(3725, 61 * minute + second + second / 2), " Elapsed real time: 1: 2: 5.  CPU time: 61: 1.500\n");
}

TEST_F(clocks, hours_of_processor_time_do_not_wrap) {
    EXPECT_EQ(report(100000, 1000 * minute), " Elapsed real time: 27:46:40.  CPU time: 1000: 0.000\n");
}

TEST_F(clocks, decimals_that_round_up_to_a_whole_second_show_as_000) {
    EXPECT_EQ(report(1, 2 * second - 1), " Elapsed CPU time:  1.000\n");
}

TEST_F(clocks, the_time_at_a_level_is_not_charged_to_the_statement_beneath) {
    start_clock();
    time_off[time_level] = {100, 500 * second};
    stop_clock();
    EXPECT_LE(mytime[time_level].wall, -99);
    EXPECT_LE(mytime[time_level].ticks, -499 * second);
    EXPECT_TRUE(time_off[time_level].wall == 0 && time_off[time_level].ticks == 0);
}

TEST_F(clocks, the_date_is_written_as_asctime_does) {
    std::string text = text_of(showtime);
    ASSERT_EQ(text.size(), 25u); /* such as "Sun Sep 16 01:03:52 1973\n" */
    EXPECT_EQ(text[3], ' ');
    EXPECT_EQ(text[13], ':');
    EXPECT_EQ(text[24], '\n');
}

} // namespace
