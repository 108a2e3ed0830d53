#include "display/progress.h"

#include "by_hand.h"

using namespace tolvek;

struct progress : exact_display {
    void SetUp() override {
        exact_display::SetUp();
        verbose = 1;
        dumpitt_level = dumpitt_length = 0;
        suppressor = 1;
    }
    void TearDown() override {
        dumpitt_level = dumpitt_length = 0;
        suppressor = 1;
        exact_display::TearDown();
    }
    std::string told(const char *text, int32_t n, int new_line, int multiply, int colon) {
        return text_of([&] { dumpitt(text, n, new_line, multiply, colon); });
    }
    std::string left(int32_t n, int new_line, int divide) {
        return text_of([&] { decr_dumpitt(n, new_line, divide); });
    }
};

TEST_F(progress, an_item_and_its_length) {
    EXPECT_EQ(told("Counting to ", 8, 0, 0, 1), "Counting to 8: ");
    EXPECT_EQ(dumpitt_length, 2 + 12 + 1 + 1); /* floor(0.3 * 3 + 0.5) */
    EXPECT_EQ(told("", 2, 0, 0, 0), "2. ");
    EXPECT_EQ(dumpitt_length, 16 + 2 + 1 + 0); /* floor(0.3 * 1 + 0.5) */
    EXPECT_EQ(told(" ", 0, 0, 0, 0), " 0");
    EXPECT_EQ(dumpitt_length, 19 + 1 + 1);
    EXPECT_EQ(told("no count", -1, 0, 0, 0), "no count. ");
    EXPECT_EQ(dumpitt_length, 21 + 2 + 8 + 1);
}

TEST_F(progress, new_lines_are_indented_by_the_level) {
    dumpitt_level = 3;
    EXPECT_EQ(told("a", 1, 1, 0, 1), "\n      a1: ");
    EXPECT_EQ(dumpitt_length, 6 + 2 + 1 + 1);
    dispcutoff = 2;
    EXPECT_EQ(told("a", 1, 1, 0, 1), "a1: \n   "); /* too deep for a line of its own; then beyond the margin */
    EXPECT_EQ(dumpitt_length, 3);
}

TEST_F(progress, a_line_ends_beyond_the_margin) {
    dumpitt_level = 1;
    dumpitt_length = 75;
    EXPECT_EQ(told(" ", 1, 0, 0, 0), " 1");    /* 77 */
    EXPECT_EQ(told("", 1, 0, 0, 0), "1. \n "); /* 77 + 2 + 1: beyond 78 */
    EXPECT_EQ(dumpitt_length, 1);
    dumpitt_length = 76;
    EXPECT_EQ(told(" ", 1, 0, 0, 0), " 1"); /* 78 is not beyond */
    EXPECT_EQ(told(" ", 1, 0, 0, 0), " 1\n ");
}

TEST_F(progress, long_loops_inside_long_loops_say_nothing) {
    dumpitt_level = 1;
    EXPECT_EQ(told("a", 900, 0, 1, 1), "a900: ");
    EXPECT_EQ(suppressor, 1); /* the outermost level counts from 1 */
    dumpitt_level = 2;
    EXPECT_EQ(told("b", 1000, 0, 1, 1), "b1000: ");
    EXPECT_EQ(suppressor, 1000);
    dumpitt_level = 3;
    EXPECT_EQ(told("c", 2, 0, 1, 1), "");
    EXPECT_EQ(told("d", 1, 0, 0, 1), "");
    EXPECT_EQ(suppressor, 2000);
    EXPECT_EQ(left(2, 1, 1), "");
    EXPECT_EQ(dumpitt_level, 2);
    EXPECT_EQ(suppressor, 1000);
    EXPECT_EQ(told("e", 1, 0, 0, 1), "e1: ");
    EXPECT_EQ(left(1000, 1, 1), "\n  ");
    EXPECT_EQ(suppressor, 1);
}

TEST_F(progress, a_product_of_counts_does_not_wrap) {
    dumpitt_level = 2;
    for (int i = 0; i < 5; i++) EXPECT_EQ(told("a", 2000000000, 0, 1, 1), "");
    EXPECT_EQ(suppressor, INT32_MAX);
    EXPECT_EQ(told("a", 0, 0, 1, 1), "a0: ");
    EXPECT_EQ(left(0, 0, 1), "");
    EXPECT_EQ(suppressor, 1);
}

TEST_F(progress, leaving_a_level) {
    dumpitt_level = 4;
    EXPECT_EQ(left(1, 1, 0), "\n      ");
    EXPECT_EQ(dumpitt_level, 3);
    EXPECT_EQ(dumpitt_length, 6);
    EXPECT_EQ(left(1, 0, 0), "");
    dumpitt_level = 37;
    EXPECT_EQ(left(1, 1, 0), "\n" + std::string(72, ' ')); /* 72 is below 73 */
    dumpitt_level = 38;
    EXPECT_EQ(left(1, 1, 0), "");
    verbose = 0;
    dumpitt_level = 2;
    EXPECT_EQ(left(1, 1, 0), "");
}

TEST_F(progress, a_level_ends_with_its_frame) {
    dumpitt_level = 2;
    dumpitt_length = 9;
    suppressor = 5;
    {
        progress_level level;
        EXPECT_EQ(dumpitt_level, 3);
        EXPECT_EQ(told("a", 4, 1, 1, 1), "\n      a4: ");
        EXPECT_EQ(suppressor, 20);
    }
    EXPECT_EQ(dumpitt_level, 2);
    EXPECT_EQ(dumpitt_length, 9);
    EXPECT_EQ(suppressor, 5);
    std::string text = text_of([&] {
        progress_level level;
        level.leave(1, 1, 1);
    });
    EXPECT_EQ(text, "\n    ");
    EXPECT_EQ(dumpitt_level, 2);
}
