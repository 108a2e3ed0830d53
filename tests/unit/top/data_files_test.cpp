#include "top/data_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

using namespace tolvek;

namespace {

struct data_file_test : testing::Test {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("tolvek_data_file_" + std::to_string(::getpid()) + "_" +
                                                  testing::UnitTest::GetInstance()->current_test_info()->name());
    data_file file;

    void hold(const std::string &text) {
        std::ofstream(path, std::ios::binary) << text;
        ASSERT_TRUE(open_data_file(file, path.c_str()));
    }
    void TearDown() override {
        close_data_file(file);
        std::filesystem::remove(path);
    }
    int64_t next() {
        int64_t value = -77;
        EXPECT_TRUE(next_integer(file, &value));
        return value;
    }
    std::string word(std::size_t room) {
        std::string text(room, '?');
        return next_word(file, text.data(), room) ? text.c_str() : "(none)";
    }
    std::string line(std::size_t room) {
        std::string text(room, '?');
        return next_line(file, text.data(), room) ? text.c_str() : "(none)";
    }
};

TEST_F(data_file_test, a_file_that_is_not_there_cannot_be_opened) {
    EXPECT_FALSE(open_data_file(file, (path.string() + "_missing").c_str()));
    EXPECT_FALSE(open_data_file(file, ""));
}

TEST_F(data_file_test, integers_stand_between_any_white_space) {
    hold("  1\t-2\n\n+3\r\n4");
    for (int64_t expected : {1, -2, 3, 4}) EXPECT_EQ(next(), expected);
    int64_t value = 5;
    EXPECT_FALSE(next_integer(file, &value));
    EXPECT_EQ(value, 5);
}

TEST_F(data_file_test, what_is_no_integer_is_not_passed_over) {
    hold("12 abc 13");
    EXPECT_EQ(next(), 12);
    int64_t value = 5;
    EXPECT_FALSE(next_integer(file, &value));
    EXPECT_EQ(value, 5);
    EXPECT_EQ(word(10), "abc");
    EXPECT_EQ(next(), 13);
}

TEST_F(data_file_test, a_sign_alone_is_no_integer) {
    hold("- 1");
    int64_t value = 5;
    EXPECT_FALSE(next_integer(file, &value));
    EXPECT_EQ(word(10), "-");
    EXPECT_EQ(next(), 1);
}

TEST_F(data_file_test, integers_of_any_length_do_not_overflow) {
    hold(std::string("9223372036854775800 ").append(400, '9').append(" 7"));
    EXPECT_GT(next(), int64_t{1} << 59);
    EXPECT_GT(next(), int64_t{1} << 59);
    EXPECT_EQ(next(), 7);
}

TEST_F(data_file_test, a_table_keeps_what_the_file_does_not_fill) {
    hold("1 2 70000");
    int32_t table[4] = {9, 9, 9, 9};
    EXPECT_FALSE(next_integers(file, table, 4));
    EXPECT_EQ(table[0], 1);
    EXPECT_EQ(table[2], 70000);
    EXPECT_EQ(table[3], 9);
}

TEST_F(data_file_test, tokens_are_skipped_and_counted) {
    hold(" a bb 3\n4 5 ");
    EXPECT_TRUE(skip_tokens(file, 0));
    EXPECT_TRUE(skip_tokens(file, 2));
    EXPECT_EQ(next(), 3);
    EXPECT_EQ(count_rest(file), 2);
    EXPECT_EQ(count_rest(file), 0);
    EXPECT_TRUE(skip_tokens(file, -3));
    EXPECT_FALSE(skip_tokens(file, 1));
}

TEST_F(data_file_test, integers_are_found_from_the_end) {
    hold("1 22 -333 ");
    int64_t value = 0;
    EXPECT_TRUE(integer_from_end(file, 1, 100, &value));
    EXPECT_EQ(value, -333);
    EXPECT_TRUE(integer_from_end(file, 3, 100, &value));
    EXPECT_EQ(value, 1);
    EXPECT_FALSE(integer_from_end(file, 4, 100, &value));
    EXPECT_EQ(next(), 1) << "the place of the next token stays";
}

TEST_F(data_file_test, the_end_is_looked_at_without_reading_what_lies_before) {
    std::string text;
    for (int i = 0; i < 100000; i++) text += std::to_string(i) + "\n";
    hold(text);
    EXPECT_EQ(next(), 0);
    int64_t value = 0;
    EXPECT_TRUE(integer_from_end(file, 2, 20, &value));
    EXPECT_EQ(value, 99998);
    EXPECT_FALSE(integer_from_end(file, 5, 20, &value)) << "not within the last 20 bytes";
    EXPECT_LT(file.text.size(), 40000u);
    for (int i = 1; i < 100000; i++) ASSERT_EQ(next(), i);
    EXPECT_TRUE(integer_from_end(file, 1, 20, &value)) << "of a file that was read to its end";
    EXPECT_EQ(value, 99999);
}

TEST_F(data_file_test, white_space_longer_than_a_piece_is_passed_over) {
    hold(std::string(1, '1').append(200000, ' ').append(1, '2').append(70000, '\n'));
    EXPECT_EQ(next(), 1);
    EXPECT_EQ(next(), 2);
    EXPECT_EQ(count_rest(file), 0);
}

TEST_F(data_file_test, words_and_lines_are_cut_to_their_room) {
    hold("abcdefgh ij\n klm\n\nlast");
    EXPECT_EQ(word(4), "abc");
    EXPECT_EQ(word(4), "ij");
    EXPECT_EQ(line(10), "");
    EXPECT_EQ(line(3), " k");
    EXPECT_EQ(line(10), "");
    EXPECT_EQ(line(10), "last");
    EXPECT_EQ(line(10), "(none)");
    EXPECT_EQ(word(10), "(none)");
}

TEST_F(data_file_test, a_long_line_counts_as_several) {
    hold(std::string(1500, 'x').append("\nend\n"));
    EXPECT_EQ(line(2000), std::string(1023, 'x'));
    EXPECT_EQ(line(2000), std::string(477, 'x'));
    EXPECT_EQ(line(2000), "end");
}

TEST_F(data_file_test, a_file_longer_than_a_piece_is_read_whole) {
    std::string text;
    for (int i = 0; i < 300000; i++) text += std::to_string(i) + "\n";
    hold(text);
    EXPECT_TRUE(skip_tokens(file, 299999));
    EXPECT_EQ(next(), 299999);
    EXPECT_EQ(count_rest(file), 0);
}

TEST_F(data_file_test, empty_files_and_nul_bytes_end_in_no_token) {
    hold("");
    int64_t value = 5;
    EXPECT_FALSE(next_integer(file, &value));
    EXPECT_EQ(count_rest(file), 0);
    EXPECT_FALSE(integer_from_end(file, 1, 100, &value));
    hold(std::string("1\0 2", 4));
    EXPECT_EQ(next(), 1);
    EXPECT_FALSE(next_integer(file, &value));
    EXPECT_EQ(count_rest(file), 2);
}

} // namespace
