/* The fixture itself: what a test may take for granted. */
#include "support/fresh_system.h"

#include "quoly/quoly.h"
#include "top/driver.h"
#include "top/interrupts.h"

#include <fstream>

namespace tolvek {

TEST_F(fresh_system, starts_with_the_date_in_the_float_ring) {
    EXPECT_EQ(start_text.substr(0, 2), "\n ");
    EXPECT_EQ(errors, "No tolvekstart.txt file.\n");
    EXPECT_TRUE(flotemode && lintmode && !modularmode);
    EXPECT_TRUE(std::filesystem::is_empty(std::filesystem::current_path()));
}

TEST_F(fresh_exact_system, starts_in_the_exact_ring) { EXPECT_FALSE(flotemode || lintmode || modularmode); }

TEST_F(fresh_system, a_run_gives_the_text_between_two_prompts) { EXPECT_EQ(run("x := 3"), "\n3\n\n"); }

TEST_F(fresh_system, variables_and_the_previous_value_stay_for_the_next_run) {
    run("x := 3");
    EXPECT_EQ(value_of("x + 1"), "4");
    EXPECT_EQ(value_of("< + 1"), "5");
}

TEST_F(fresh_system, a_new_test_has_no_variable_and_no_previous_value) {
    EXPECT_EQ(value_of("<"), "0");
    EXPECT_NE(run("x").find("*** Inappropriate symbol"), std::string::npos);
}

TEST_F(fresh_system, a_level_that_is_left_open_is_discarded) {
    run("&_P\n1");
    EXPECT_EQ(levelcount, 1);
    EXPECT_EQ(run("2"), "\n2\n\n");
}

TEST_F(fresh_system, a_statement_that_swallows_its_lines_does_not_hang) { run("x := '"); }

TEST_F(fresh_system, settings_are_at_their_defaults_again) {
    EXPECT_EQ(extra_line, 1);
    run("&E");
    EXPECT_EQ(extra_line, 0);
    TearDown();
    SetUp();
    EXPECT_EQ(extra_line, 1);
}

TEST_F(fresh_system, what_error_throws_is_caught) {
    token_record symbol{"x", hash_unknown};
    EXPECT_TRUE(unwinds([&] { error(28, symbol); }));
    EXPECT_EQ(last_text, std::string("\n*** Inappropriate symbol: x\n") + message_text(28) + "\n");
}

TEST_F(fresh_exact_system, records_in_use_are_the_same_behind_a_statement_that_stores_nothing) {
    run("2^500 - 1\n0"); /* tables that are built when they are first asked for stand from here on */
    records_in_use before = count_records_in_use();
    run("2^500 - 1\n0");
    EXPECT_EQ(count_records_in_use(), before);
}

} // namespace tolvek
