#include "language/scanner.h"
#include "numbers/number_decimal.h"
#include "top/driver.h"
#include "top/guards.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace tolvek;

namespace {

/* A stream that holds the text alone. */
struct text_source {
    text_in in;
    stream at = &in;
    explicit text_source(const std::string &text) {
        for (char c : text) in.replay.push(c);
        leftover = 0;
        recent_tokens.clear();
    }
};

std::vector<std::string> tokens_of(const std::string &text, int count) {
    text_source source(text);
    std::vector<std::string> found;
    name *cursor = nullptr;
    for (int i = 0; i < count; i++) {
        token_record t;
        scanner(&source.at, t, &cursor);
        found.push_back(t.text);
    }
    return found;
}

using texts = std::vector<std::string>;

TEST(scanner, names_take_letters_digits_and_underscores) {
    EXPECT_EQ(tokens_of("ab_1 C2x+7", 6), (texts{"ab_1", "C2x", "+", "7", ";", ";"}));
}

TEST(scanner, a_number_is_a_run_of_one_digit_tokens) { EXPECT_EQ(tokens_of("12 3\n", 4), (texts{"1", "2", "3", ";"})); }

TEST(scanner, a_name_of_fifteen_letters_is_a_name_of_ten_and_one_of_five) {
    EXPECT_EQ(tokens_of("abcdefghijklmno;", 3), (texts{"abcdefghij", "klmno", ";"}));
}

TEST(scanner, a_newline_at_the_terminal_ends_the_statement_and_stays_unread) {
    text_source source("x\ny");
    name *cursor = nullptr;
    token_record t;
    scanner(&source.at, t, &cursor);
    scanner(&source.at, t, &cursor);
    EXPECT_STREQ(t.text, ";");
    EXPECT_EQ(peek_char(source.at), '\n');
    scanner(&source.at, t, &cursor);
    EXPECT_STREQ(t.text, ";");
}

TEST(scanner, a_newline_in_a_file_is_white_space) {
    kept_value<int> file(tt_flag, 0);
    EXPECT_EQ(tokens_of("1\n2 x\ny", 4), (texts{"1", "2", "x", "y"}));
}

TEST(scanner, the_end_of_input_is_a_semicolon_for_ever) { EXPECT_EQ(tokens_of("", 3), (texts{";", ";", ";"})); }

TEST(scanner, a_back_quote_continues_the_statement_on_the_next_line) {
    EXPECT_EQ(tokens_of("x + ` what stands here is skipped\n y\n", 4), (texts{"x", "+", "y", ";"}));
    EXPECT_EQ(tokens_of("ab`\ncd\n", 3), (texts{"ab", "cd", ";"}));
}

TEST(scanner, a_continuation_clears_the_count_of_empty_lines) {
    semicount = 7;
    tokens_of("`\n1", 1);
    EXPECT_EQ(semicount, 0);
}

TEST(scanner, a_byte_above_127_is_a_token_of_its_own) {
    EXPECT_EQ(tokens_of("\xC2\xA5", 2), (texts{"\xC2", "\xA5"}));
    EXPECT_EQ(tokens_of("x\xB0", 2), (texts{"x", "\xB0"}));
}

TEST(scanner, tabs_and_carriage_returns_are_white_space) { EXPECT_EQ(tokens_of("\t a\r\t b", 2), (texts{"a", "b"})); }

TEST(scanner, a_fresh_token_has_no_hash) {
    text_source source("x");
    token_record t{"", 5};
    name *cursor = nullptr;
    scanner(&source.at, t, &cursor);
    EXPECT_EQ(t.hash_slot, hash_unknown);
}

TEST(scanner, a_stored_list_gives_its_tokens_with_their_hashes_and_reads_nothing) {
    name last{end_of_list, false, nullptr}, second{{"y", 121}, false, &last}, first{{"x", 120}, false, &second};
    name *cursor = &first;
    text_source source("z");
    token_record t;
    scanner(&source.at, t, &cursor);
    EXPECT_STREQ(t.text, "y");
    EXPECT_EQ(t.hash_slot, 121);
    EXPECT_EQ(currentchar, &last);
    EXPECT_EQ(recent_tokens.count, 0);
    scanner(&source.at, t, &cursor);
    EXPECT_TRUE(is_end_of_list(t));
    EXPECT_EQ(peek_char(source.at), 'z');
}

TEST(token_ring, keeps_the_last_sixty_tokens_in_order) {
    std::string text;
    for (int i = 0; i < 75; i++) text += static_cast<char>('0' + i % 10);
    tokens_of(text, 75);
    ASSERT_EQ(recent_tokens.count, 60);
    for (int i = 0; i < 60; i++)
        EXPECT_EQ(recent_tokens.at[(recent_tokens.oldest + i) % 60].text[0], '0' + (i + 15) % 10);
}

TEST(dumbscanner, keeps_white_space_and_reports_the_end_of_a_line) {
    text_source source("a b\nc");
    name *cursor = nullptr;
    token_record t;
    int line_end;
    std::string seen;
    for (int i = 0; i < 3; i++) {
        dumbscanner(&source.at, t, &cursor, &line_end);
        EXPECT_EQ(line_end, 0);
        seen += t.text;
    }
    EXPECT_EQ(seen, "a b");
    dumbscanner(&source.at, t, &cursor, &line_end);
    EXPECT_EQ(line_end, 1);
    EXPECT_STREQ(t.text, "\r");
    dumbscanner(&source.at, t, &cursor, &line_end);
    EXPECT_STREQ(t.text, "c");
    dumbscanner(&source.at, t, &cursor, &line_end);
    EXPECT_EQ(line_end, 1);
    EXPECT_STREQ(t.text, ";");
}

TEST(dumbscanner, a_continuation_is_a_blank_and_takes_the_line_with_it) {
    text_source source("`skipped\nz");
    name *cursor = nullptr;
    token_record t;
    int line_end;
    dumbscanner(&source.at, t, &cursor, &line_end);
    EXPECT_STREQ(t.text, " ");
    dumbscanner(&source.at, t, &cursor, &line_end);
    EXPECT_STREQ(t.text, "z");
}

TEST(spec_scanner, a_name_runs_on_across_blanks) {
    text_source source("a b+");
    name *cursor = nullptr;
    token_record t;
    int line_end;
    spec_scanner(&source.at, t, &cursor, &line_end);
    EXPECT_STREQ(t.text, "ab");
    EXPECT_EQ(line_end, 0);
    spec_scanner(&source.at, t, &cursor, &line_end);
    EXPECT_STREQ(t.text, "+");
}

TEST(spec_scanner, tells_that_a_line_end_was_crossed) {
    kept_value<int> file(tt_flag, 0);
    text_source source("1\n 2");
    name *cursor = nullptr;
    token_record t;
    int line_end;
    spec_scanner(&source.at, t, &cursor, &line_end);
    EXPECT_EQ(line_end, 0);
    spec_scanner(&source.at, t, &cursor, &line_end);
    EXPECT_STREQ(t.text, "2");
    EXPECT_EQ(line_end, 1);
}

TEST(spec_scanner, a_continuation_counts_as_a_line_end) {
    text_source source("`\n+");
    name *cursor = nullptr;
    token_record t;
    int line_end;
    spec_scanner(&source.at, t, &cursor, &line_end);
    EXPECT_STREQ(t.text, "+");
    EXPECT_EQ(line_end, 1);
}

} // namespace
