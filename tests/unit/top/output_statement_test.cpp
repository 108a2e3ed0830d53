/* Output statements: items, widths, texts, and what is refused. */
#include "support/fresh_system.h"
#include "top/driver.h"
#include "top/output_file.h"

#include <fstream>
#include <sstream>

namespace tolvek {

static std::string contents(const std::string &path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

struct output_statement : fresh_exact_system {
    /* What a statement writes before its value is shown. */
    std::string written(const std::string &statement) {
        std::string text = run(statement + ":");
        return text.substr(0, text.empty() ? 0 : text.size() - 1); /* less the blank line of a silent statement */
    }
};

TEST_F(output_statement, a_factor_alone_ends_its_line) {
    EXPECT_EQ(written("!7"), "7\n");
    EXPECT_EQ(written("!!7"), "7\n");
    EXPECT_EQ(written("!'a text'"), "a text\n");
    EXPECT_EQ(run("!;"), "\n\n        0\n\n");
}

TEST_F(output_statement, a_factor_alone_leaves_its_value) {
    EXPECT_EQ(run("!7"), "7\n\n        7\n\n");
    EXPECT_EQ(value_of("<"), "7");
}

TEST_F(output_statement, values_of_a_list_have_a_blank_in_front_and_no_newline_behind) {
    EXPECT_EQ(written("!(1, 2 + 3, 'x', -4)"), " 1 5x -4");
    EXPECT_EQ(written("!!(1, 2 + 3, 'x', -4)"), " 1 5x -4\n");
}

TEST_F(output_statement, a_width_fills_values_up_to_one_column_less) {
    EXPECT_EQ(written("!!(12:6, '|', 3:2 + 2, '|')"), "12   |3  |\n");
    EXPECT_EQ(written("!!(123456:4, '|')"), "123456|\n");
}

TEST_F(output_statement, a_width_fills_texts_up_to_it) {
    EXPECT_EQ(written("!!('abc':6, '|')"), "abc   |\n");
    EXPECT_EQ(written("!!('abcdef':3, '|')"), "abcdef|\n");
    EXPECT_EQ(written("!'abc':5"), "abc  \n");
}

TEST_F(output_statement, blanks_stop_short_of_the_margin) {
    EXPECT_EQ(written("!!('':100, '|')"), std::string(64, ' ') + "|\n");
    EXPECT_EQ(written("!!('':72, '|')"), std::string(72, ' ') + "|\n");
    EXPECT_EQ(written("!!('':73, '|')"), std::string(64, ' ') + "|\n");
}

TEST_F(output_statement, numbers_are_written_as_characters) {
    EXPECT_EQ(written("!!(72:char, 105:char, 33:char:4, '|')"), "Hi!  |\n");
}

TEST_F(output_statement, a_name_behind_a_caret_is_shown_in_place) {
    run("q := 25:");
    EXPECT_EQ(written("!!(^q, ^q:5, '|')"), " 2525  |\n");
}

TEST_F(output_statement, rationals_have_no_decimal_form) {
    EXPECT_EQ(written("!(1/3)"), " 1 / 3");
    EXPECT_EQ(run("1/3").find("1 / 3;  or  0."), 1u);
}

TEST_F(output_statement, texts_keep_255_characters) {
    EXPECT_EQ(written("!'" + std::string(300, 'a') + "'"), std::string(255, 'a') + "\n");
}

TEST_F(output_statement, a_width_is_evaluated_outside_the_modular_ring) {
    run("&(p = 7)");
    EXPECT_EQ(written("!!('ab':9, '|', 8:5 + 4, '|')"), "ab       |1       |\n");
}

TEST_F(output_statement, a_colon_at_the_end_of_the_line_ends_the_statement) {
    EXPECT_EQ(run("!'abc':"), "abc\n\n");
    run("q := 3:");
    EXPECT_EQ(run("!q:"), "3\n\n");
}

static bool has_message(const std::string &text, const std::string &message) {
    return text.find(message) != std::string::npos;
}

TEST_F(output_statement, what_is_refused) {
    EXPECT_TRUE(has_message(run("!(1] 2)"), "separated by \",\"")) << "105";
    EXPECT_TRUE(has_message(run("!(1"), "separated by \",\"")) << "105 at the end of the line";
    EXPECT_TRUE(has_message(run("!(1, ;)"), "\";\" is not allowed in the list")) << "106";
    EXPECT_TRUE(has_message(run("!(;)"), "\";\" is not allowed in the list")) << "106";
    EXPECT_TRUE(has_message(run("!'abc"), "before the closing quote")) << "33";
    EXPECT_TRUE(has_message(run("!(&p, 1)"), "only an \"o\" can follow")) << "261";
    EXPECT_TRUE(has_message(run("!(&o, 1)"), "no output file")) << "263";
    EXPECT_TRUE(has_message(run("!(^zz)"), "not defined")) << "19";
    EXPECT_EQ(value_of("1 + 1"), "2");
}

TEST_F(output_statement, functions_write_too) {
    run("Func F(n) = for i = 1, n do !!('i':4, i:3, '|') od; !'done'; n.");
    EXPECT_EQ(written("F(2)"), "i   1 |\ni   2 |\ndone\n");
}

TEST_F(output_statement, a_list_goes_to_the_output_file) {
    ASSERT_TRUE(open_output("out"));
    EXPECT_EQ(written("!!(&o, 'x := ', 5, ';')"), "");
    EXPECT_EQ(contents("out"), "x :=  5;\n") << "written when the statement has ended";
    run("&(J = t)");
    EXPECT_EQ(written("!!(&o, t^2 + 1)"), "");
    EXPECT_EQ(contents("out"), "x :=  5;\n ( t^2 + 1 )\n");
}

TEST_F(output_statement, a_file_is_kept_until_something_is_written) {
    write_file("out", "old");
    ASSERT_TRUE(open_output("out"));
    EXPECT_EQ(contents("out"), "old");
    close_output();
    EXPECT_EQ(contents("out"), "old");
    ASSERT_TRUE(open_output("out"));
    run("!(&o, 'new')");
    EXPECT_EQ(contents("out"), "new");
    close_output();
    int files = 0;
    for ([[maybe_unused]] const auto &entry : std::filesystem::directory_iterator(".")) files++;
    EXPECT_EQ(files, 1) << "the file beside it is gone";
}

TEST_F(output_statement, a_full_disk_is_told) {
    ASSERT_TRUE(open_output("/dev/full"));
    EXPECT_TRUE(has_message(run("!(&o, 1)"), "File /dev/full cannot be written"));
    EXPECT_TRUE(has_message(run("for i = 1, 100000 do !!(&o, i) od; !'behind'"), "cannot be written"));
    EXPECT_FALSE(has_message(run("for i = 1, 100000 do !!(&o, i) od; !'behind'"), "behind"))
        << "the statement ends at the first write that is refused";
    EXPECT_EQ(value_of("1 + 1"), "2");
}

TEST_F(output_statement, a_folder_that_is_not_there_is_told) {
    EXPECT_EQ(text_of([] { open_output("no/such/file"); }),
              "*** Warning. File no/such/file cannot be written: No such file or directory.\n");
    EXPECT_EQ(outpuf, nullptr);
}

TEST_F(fresh_system, floats_have_widths_too) { EXPECT_EQ(run("!!(25.5:6, '|'):"), "25.5 |\n\n"); }

} // namespace tolvek
