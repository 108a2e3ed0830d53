/* The whole system inside a unit test.

   fresh_system starts it in the float ring, fresh_exact_system in the exact one: with the data files of the build, in
   an empty working folder, every global at its default and no variable defined. What it writes is kept apart, what it
   reads comes from strings, and what `error` throws is caught.

     TEST_F(fresh_system, an_assignment_shows_its_value) { EXPECT_EQ(run("x := 3"), "\n3\n\n"); }

   run() works as a user does at the prompt: its lines go through the command loop, and variables and settings stay
   for the next run(). text_of() and unwinds() call routines of the core directly. */
#pragma once

#include "numbers/free_lists.h"
#include "top/tolvek.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

namespace tolvek {

class fresh_system : public ::testing::Test {
  public:
    explicit fresh_system(home_ring ring = home_ring::flote) : home(ring) {}

    /* Runs lines at the prompt of level 1. The text that appears, from behind the first prompt to the last one, which
       is left out too. A level that the lines leave open is discarded. */
    std::string run(const std::string &lines);

    /* What is shown of an expression's value, without the blanks and newlines around it. */
    std::string value_of(const std::string &expression);

    /* What a routine writes. It may unwind. */
    std::string text_of(const std::function<void()> &routine);

    /* Does a routine unwind to the prompt? What it writes is left in last_text. */
    bool unwinds(const std::function<void()> &routine);

    /* Calls a routine with an input of its own: reads of standard input get this text, then its end. */
    void set_input(const std::string &text);

    /* A file in the working folder, which a start-up file or a statement can name. */
    void write_file(const std::string &name, const std::string &text);

    /* Leaves all levels and frames as an unwinding does, without a word. */
    void leave_all_levels();

    std::string start_text; /* written while the system started */
    std::string errors;     /* written on standard error since the start */
    std::string last_text;  /* of unwinds() */
    std::filesystem::path folder;

    /* Called whenever the system is about to read standard input, with the text written so far. */
    std::function<void()> before_read;

  protected:
    void SetUp() override;
    void TearDown() override;

  private:
    void start();

    home_ring home;
    std::filesystem::path folder_before;
};

struct fresh_exact_system : fresh_system {
    fresh_exact_system() : fresh_system(home_ring::exact) {}
};

/* The folder of the data files, with a slash at its end. */
const char *data_directory();

/* The text without blanks and newlines at its ends. */
std::string trimmed(const std::string &text);

} // namespace tolvek
